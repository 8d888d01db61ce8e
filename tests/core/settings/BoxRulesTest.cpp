#include "core/settings/BoxRules.h"

#include "core/base/RunTimeError.h"

#include <gtest/gtest.h>

#include <limits>

namespace tracelet {
namespace {

constexpr std::string_view Accepted = "";
constexpr std::string_view ScanText = "please input a valid number";
constexpr std::string_view CountText = "DataCount should be at least 4096 for FAI";
constexpr std::string_view CountNumberText = "Please input a valid number";
constexpr std::string_view RateText = "Sample rate should not be less than 1";
constexpr std::string_view RateNumberText = "Please input a valide number";
constexpr std::string_view VoltageText = "Invalid trigger voltage";
constexpr std::string_view DelayText = "Invalid delay time";
constexpr std::string_view AfterText = "Invalid after time for about mode";
constexpr std::string_view IntervalText = "please input a number between 1 and 65535";

TEST(Refusal, FollowsTheBox) {
    using namespace BoxRules;
    const struct {
        const BoxRule& rule;
        std::string_view text;
        std::string_view message;
    } cases[] = {
        {ScanStart, "0", Accepted},
        {ScanStart, "-1", Accepted},
        {ScanStart, "99999", Accepted},
        {ScanStart, " 2 ", Accepted},
        {ScanStart, "1.5", Accepted},
        {ScanStart, "", ScanText},
        {ScanStart, "abc", ScanText},
        {ScanStart, "2147483648", ScanText},
        {ScanNumber, "16", Accepted},
        {ScanNumber, "1,000", Accepted},
        {ScanNumber, "", ScanText},
        {ScanNumber, "1 2", ScanText},
        {ScanNumber, "-2147483649", ScanText},
        {Count, "4096", Accepted},
        {Count, "4,096", Accepted},
        {Count, "4.096e3", Accepted},
        {Count, "4095.5", Accepted}, // halves to even: 4096
        {Count, "4095.49", CountText},
        {Count, "4095", CountText},
        {Count, "0", CountText},
        {Count, "-5000", CountText},
        {Count, "2147483647", Accepted},
        {Count, "2147483648", CountNumberText},
        {Count, "1e400", CountNumberText},
        {Count, "", CountNumberText},
        {Count, "12x", CountNumberText},
        {SampleRate, "1", Accepted},
        {SampleRate, "1.0", Accepted},
        {SampleRate, "1e300", Accepted},
        {SampleRate, "20,000.5", Accepted},
        {SampleRate, "0.999999", RateText},
        {SampleRate, "0", RateText},
        {SampleRate, "-1000", RateText},
        {SampleRate, "1e400", RateNumberText},
        {SampleRate, "fast", RateNumberText},
        {SampleRate, "", RateNumberText},
        {SampleRate, "nan", RateNumberText},
        {SampleRate, "inf", RateNumberText},
        {TriggerVoltage, "-2.5", Accepted},
        {TriggerVoltage, "0", Accepted},
        {TriggerVoltage, "", VoltageText},
        {TriggerVoltage, "2 v", VoltageText},
        {TriggerDelayTime, "12.5", Accepted},
        {TriggerDelayTime, "-1", Accepted},
        {TriggerDelayTime, "ms", DelayText},
        {TriggerAfterTime, "1e-3", Accepted},
        {TriggerAfterTime, "--1", AfterText},
        {TimeInterval, "1", Accepted},
        {TimeInterval, "65535", Accepted},
        {TimeInterval, "65,535", Accepted},
        {TimeInterval, "65535.5", IntervalText}, // halves to even: 65536
        {TimeInterval, "65535.4", Accepted},
        {TimeInterval, "0.6", Accepted},
        {TimeInterval, "0.5", IntervalText}, // halves to even: 0
        {TimeInterval, "0", IntervalText},
        {TimeInterval, "-1", IntervalText},
        {TimeInterval, "65536", IntervalText},
        {TimeInterval, "1e10", IntervalText},
        {TimeInterval, "", IntervalText},
        {TimeInterval, "x", IntervalText},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Refusal(c.rule, c.text).value_or(Accepted), c.message) << '"' << c.text << '"';
}

TEST(Refusal, PutsItsOwnTextBack) {
    using namespace BoxRules;
    EXPECT_EQ(ScanStart.putBack, "0");
    EXPECT_EQ(ScanNumber.putBack, "1");
    EXPECT_EQ(Count.putBack, "4096");
    EXPECT_EQ(SampleRate.putBack, "1");
    EXPECT_EQ(TriggerVoltage.putBack, "1");
    EXPECT_EQ(TriggerDelayTime.putBack, "0");
    EXPECT_EQ(TriggerAfterTime.putBack, "0");
    EXPECT_EQ(TimeInterval.putBack, "65535"); // the upper bound, not the lower
}

TEST(CyclicSampleCount, IsHalfASecondButFourThousandAtLeast) {
    const struct {
        double rate;
        std::int32_t count;
    } cases[] = {{0.0, 4096},    {1.0, 4096},    {1000.0, 4096},   {8191.9, 4096},
                 {8192.0, 4096}, {8193.0, 4096}, {8195.0, 4098},   {8194.0, 4097},
                 {1e5, 50000},   {1e6, 500'000}, {20e6, 10000000}, {4294967293.0, 2147483646}};
    for (const auto& c : cases)
        EXPECT_EQ(CyclicSampleCount(c.rate), c.count) << c.rate;
    EXPECT_THROW((void)CyclicSampleCount(1e300), RunTimeError);
    EXPECT_THROW((void)CyclicSampleCount(std::numeric_limits<double>::quiet_NaN()), RunTimeError);
}

} // namespace
} // namespace tracelet
