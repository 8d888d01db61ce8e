#include "settings/DeviceFamily.h"

#include "devices/drivers/ChannelNumbers.h"

#include <gtest/gtest.h>

namespace tracelet {
namespace {

TEST(DeviceFamily, IsReadFromPartsOfTheName) {
    const struct {
        const char* name;
        bool unpaired;
        bool thermocouples;
        bool choiceAfterPairing;
    } cases[] = {
        {"", false, false, false},          {"No Device", false, false, false},
        {"Merula 64", false, false, false}, {"05", true, false, false},
        {"Board 0 5", false, false, false}, {"X050", true, false, false},
        {"6601", false, false, true},       {"6601HG", false, true, true},
        {"6601hg", false, false, true},     {"Alcedo 6601HG rev 2", false, true, true},
        {"6602", false, false, false},      {"6605", true, false, false},
        {"6605HG", true, true, false},      {"6605hg", true, false, false},
        {"3605", true, true, false},        {"36050", true, true, false},
        {"3601", false, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(IsUnpairedFamily(c.name), c.unpaired);
        EXPECT_EQ(IsThermocoupleFamily(c.name), c.thermocouples);
        EXPECT_EQ(ShowsChoiceAfterPairing(c.name), c.choiceAfterPairing);
    }
}

TEST(PartnerOf, IsTheOtherOfThePair) {
    const std::int32_t cases[][2] = {{0, 1}, {1, 0}, {2, 3}, {3, 2}, {14, 15}, {15, 14}, {63, 62}};
    for (const auto& [channel, partner] : cases)
        EXPECT_EQ(PartnerOf(channel), partner) << channel;
}

} // namespace
} // namespace tracelet
