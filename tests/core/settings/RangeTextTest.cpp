#include "core/settings/RangeText.h"

#include <gtest/gtest.h>

namespace tracelet {
namespace {

TEST(RangeText, ShowsLimitsWithUnit) {
    const struct {
        double first;
        double second;
        const char* text;
        RangeUnit unit = RangeUnit::Unstated;
    } cases[] = {
        {-10, 10, "-10 ~ 10 V"},
        {0, 10, "0 ~ 10 V"},
        {-2.5, 2.5, "-2.5 ~ 2.5 V"},
        {-1.25, 1.25, "-1.25 ~ 1.25 V"},
        {-0.005, 0.005, "-0.005 ~ 0.005 V"},
        {0.3125, 0.6250, "0.3125 ~ 0.625 V"},
        {-0.00005, 0.00004, "-0.0001 ~ 0 V"},
        {0, 20, "0 ~ 20 mA"},
        {4, 20, "4 ~ 20 mA"},
        {-20, 20, "-20 ~ 20 mA"},
        {20, 10, "20 ~ 10 V"},
        {0, 20.00001, "0 ~ 20 V"},
        {0, 19.9999, "0 ~ 19.9999 V"},
        {0, 0, "0 ~ 0 V"},
        {0, 20, "0 ~ 20 V", RangeUnit::Volts},
        {0, 32, "0 ~ 32 mA", RangeUnit::Milliamperes},
        {0, 20, "0 ~ 20", RangeUnit::Numbers},
    };
    for (const auto& c : cases)
        EXPECT_EQ(RangeText({0, c.first, c.second, c.unit}), c.text);
}

} // namespace
} // namespace tracelet
