#include "core/recordings/ScaleCodes.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::ElementsAre;

TEST(Convert2Float, ScalesTwelveBitCodes) {
    const std::int32_t codes[] = {0, 2048, 4095, 4096};
    const double range[] = {10.0, -10.0};
    float values[4] = {};
    Convert2Float(codes, values, range, 4, 1);
    EXPECT_THAT(values, ElementsAre(-10.0F, 0.0F, 9.9951171875F, 10.0F));
}

TEST(Convert2Float, TakesEachChannelsOwnRange) {
    const std::int32_t codes[] = {0, 4095, 1024, 0, 4096, -4096, 99};
    const double range[] = {10.0, -10.0, 5.0, 0.0};
    float values[7] = {0, 0, 0, 0, 0, 0, 7.0F};
    Convert2Float(codes, values, range, 3, 2);
    EXPECT_THAT(values,
                ElementsAre(-10.0F, static_cast<float>(5.0 * 4095 / 4096), -5.0F, 0.0F, 10.0F, -5.0F, 7.0F));
}

TEST(Convert2Float, SurvivesCodesAtTheEndsOfTheirType) {
    const std::int32_t codes[] = {INT32_MIN, INT32_MAX};
    const double range[] = {1.0, -1.0};
    float values[2] = {};
    Convert2Float(codes, values, range, 2, 1);
    EXPECT_FLOAT_EQ(values[0], -1048577.0F);
    EXPECT_FLOAT_EQ(values[1], 1048575.0F);
}

TEST(Convert2Float, ChecksItsArrays) {
    const std::int32_t codes[4] = {};
    const double range[4] = {};
    float values[4] = {};
    const auto fault = [](auto l, auto d, auto r, std::int32_t scans, std::int32_t channels) {
        return FaultOf([&] { Convert2Float(l, d, r, scans, channels); });
    };
    const std::span l(codes);
    const std::span d(values);
    const std::span r(range);
    EXPECT_EQ(fault(l, d, r, 2, 2), "");
    EXPECT_EQ(fault(l, d, r, 5, 1), "Subscript out of range");
    EXPECT_EQ(fault(l.first(3), d, r, 2, 2), "Subscript out of range");
    EXPECT_EQ(fault(l, d.first(3), r, 2, 2), "Subscript out of range");
    EXPECT_EQ(fault(l, d, r.first(3), 2, 2), "Subscript out of range");
    EXPECT_EQ(fault(l, d, r, INT32_MAX, INT32_MAX), "Subscript out of range");
    EXPECT_EQ(fault(l, d, r, -1, 2), "");
    EXPECT_EQ(fault(l, d, r, 2, 0), "");
}

TEST(Convert2Float, RefusesWhatNoFloatHolds) {
    const std::int32_t codes[] = {4096};
    const double range[] = {1e300, 0.0};
    float values[1] = {};
    EXPECT_EQ(FaultOf([&] { Convert2Float(codes, values, range, 1, 1); }), "Overflow");
}

} // namespace
} // namespace tracelet
