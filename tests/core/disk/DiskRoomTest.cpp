#include "core/disk/DiskRoom.h"

#include <gtest/gtest.h>

namespace tracelet {
namespace {

TEST(DiskRoom, IsToldBelowTenMinutesInStepsThatGetFiner) {
    const struct {
        std::int64_t freeBytes;
        double bytesPerSecond;
        const char* warning;
    } table[] = {
        {60000, 100, ""},
        {59999, 100, "Disk full in about 9 min"},
        {48000, 100, "Disk full in about 8 min"},
        {12000, 100, "Disk full in about 2 min"},
        {11999, 100, "Disk full in about 110 s"},
        {2000, 100, "Disk full in about 20 s"},
        {1999, 100, "Disk full in a few seconds"},
        {0, 100, "Disk full in a few seconds"},
        {0, 0, ""},    // nothing is written
        {-1, 100, ""}, // unknown
        {1000000, 2e12, "Disk full in a few seconds"},
        {std::int64_t{1} << 62, 64e6, ""},
    };
    for (const auto& row : table)
        EXPECT_EQ(DiskRoomWarning(row.freeBytes, row.bytesPerSecond), row.warning)
            << row.freeBytes << " at " << row.bytesPerSecond;
}

} // namespace
} // namespace tracelet
