#include "core/base/NumberText.h"

#include <clocale>
#include <gtest/gtest.h>

#include <limits>

namespace tracelet {
namespace {

TEST(NumberText, ShortestGeneralForm) {
    EXPECT_EQ(NumberText(0.1), "0.1");
    EXPECT_EQ(NumberText(0.1 + 0.2), "0.3");
    EXPECT_EQ(NumberText(1.0), "1");
    EXPECT_EQ(NumberText(1e15), "1e+15");
    EXPECT_EQ(NumberText(123456789012345.0), "123456789012345");
    EXPECT_EQ(NumberText(0.00001), "1e-05");
    EXPECT_EQ(NumberText(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(NumberText(1.0F / 3.0F), "0.3333333");
    EXPECT_EQ(NumberText(0.1F), "0.1");
    EXPECT_EQ(NumberText(std::int32_t{-2147483647 - 1}), "-2147483648");
}

TEST(NumberText, IgnoresTheLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr)
        GTEST_SKIP() << "no comma-decimal locale on this machine";
    EXPECT_EQ(NumberText(0.5), "0.5");
    EXPECT_EQ(OptionalDecimalsText(0.5), "0.5");
    EXPECT_EQ(DisplayText(0.2), ".200000");
    std::setlocale(LC_ALL, before.c_str());
}

TEST(OptionalDecimalsText, LeavesNoBarePoint) {
    EXPECT_EQ(OptionalDecimalsText(-10.0), "-10");
    EXPECT_EQ(OptionalDecimalsText(10.0), "10");
    EXPECT_EQ(OptionalDecimalsText(0.0), "0");
    EXPECT_EQ(OptionalDecimalsText(-0.0), "0");
    EXPECT_EQ(OptionalDecimalsText(0.3125), "0.3125");
    EXPECT_EQ(OptionalDecimalsText(1.25), "1.25");
    EXPECT_EQ(OptionalDecimalsText(0.00005), "0.0001");
    EXPECT_EQ(OptionalDecimalsText(-0.00004), "0");
    EXPECT_EQ(OptionalDecimalsText(100.0), "100");
}

TEST(OptionalDecimalsText, RoundsTheHalvesThatTheDigitsShow) {
    EXPECT_EQ(OptionalDecimalsText(0.00015), "0.0002"); // times 1e4 it is 1.4999999999999998
    EXPECT_EQ(OptionalDecimalsText(-0.00015), "-0.0002");
    EXPECT_EQ(OptionalDecimalsText(0.00014999999), "0.0001");
}

TEST(ClockText, CountsHoursMinutesAndSeconds) {
    EXPECT_EQ(ClockText(0.0), "00:00:00");
    EXPECT_EQ(ClockText(67.999), "00:01:07");
    EXPECT_EQ(ClockText(3600.0), "01:00:00");
    EXPECT_EQ(ClockText(360000.0), "100:00:00");
    EXPECT_EQ(ClockText(-1.0), "00:00:00");
    EXPECT_EQ(ClockText(std::numeric_limits<double>::quiet_NaN()), "00:00:00");
    EXPECT_EQ(ClockText(1e300), "277777:46:40");
}

TEST(PaceText, TellsBothRatesInOnePower) {
    EXPECT_EQ(PaceText(9.91, 10.0), "\u20079.9 of 10"); // "10.0" has a digit more
    EXPECT_EQ(PaceText(10.0, 10.0), "10.0 of 10");
    EXPECT_EQ(PaceText(99870.0, 100000.0), "\u200799.9 of 100 k");
    EXPECT_EQ(PaceText(100000.0, 100000.0), "100.0 of 100 k");
    EXPECT_EQ(PaceText(1e6, 1e6), "1.00 of 1 M");
    EXPECT_EQ(PaceText(33.3, 1000.0 / 30), "33.3 of 33.3333");
    EXPECT_EQ(PaceText(0.0305, 0.0305), "0.0305 of 0.0305");
    EXPECT_EQ(PaceText(999.6, 1000.0), "1.00 of 1 k");
    EXPECT_EQ(PaceText(0.0, 250.0), "250");
    EXPECT_EQ(PaceText(5e12, 5e12), "5000.0 of 5000 G");
}

TEST(GroupedText, SeparatesThousands) {
    EXPECT_EQ(GroupedText(0), "0");
    EXPECT_EQ(GroupedText(999), "999");
    EXPECT_EQ(GroupedText(20000), "20,000");
    EXPECT_EQ(GroupedText(1000000), "1,000,000");
    EXPECT_EQ(GroupedText(-20000), "-20,000");
    EXPECT_EQ(GroupedText(2.5), "3");
    EXPECT_EQ(GroupedText(-0.4), "0");
}

TEST(GroupedText, KeepsTheDigitsOfLargeNumbers) {
    EXPECT_EQ(GroupedText(999'999'999'999'999.0), "999,999,999,999,999");
    EXPECT_EQ(GroupedText(1'234'567'890'123'456.0), "1,234,567,890,123,456");
    EXPECT_EQ(GroupedText(-1'234'567'890'123'456.0), "-1,234,567,890,123,456");
}

TEST(GroupedText, LeavesWhatIsNoNumberAlone) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(GroupedText(infinity), "inf");
    EXPECT_EQ(GroupedText(-infinity), "-inf");
    EXPECT_EQ(OptionalDecimalsText(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(TwoDigitText, PadsWithZeros) {
    EXPECT_EQ(TwoDigitText(0), "00");
    EXPECT_EQ(TwoDigitText(7), "07");
    EXPECT_EQ(TwoDigitText(63), "63");
    EXPECT_EQ(TwoDigitText(128), "128");
    EXPECT_EQ(TwoDigitText(-1), "-01");
}

TEST(DisplayText, SixDecimalsWithoutLeadingZero) {
    EXPECT_EQ(DisplayText(1.0), "1.000000");
    EXPECT_EQ(DisplayText(0.2), ".200000");
    EXPECT_EQ(DisplayText(0.000001), ".000001");
    EXPECT_EQ(DisplayText(100.0), "100.000000");
    EXPECT_EQ(DisplayText(0.0), ".000000");
    EXPECT_EQ(DisplayText(-0.5), "-.500000");
}

TEST(DisplayText, WhatSixDecimalsCannotShowIsAPower) {
    EXPECT_EQ(DisplayText(0.0000005), ".000001");
    EXPECT_EQ(DisplayText(2.5e-7), "2.5e-7");
    EXPECT_EQ(DisplayText(-2.4631e-8), "-2.46e-8");
    EXPECT_EQ(DisplayText(5e-12), "5e-12");
    EXPECT_EQ(DisplayText(0.0), ".000000");
}

TEST(NumberText, TimeSpansGetCoarserAsTheyGrow) {
    const std::pair<double, const char*> table[] = {
        {0.0, "0 s"},    {0.04, "0 s"},      {0.44, "0.4 s"},  {9.94, "9.9 s"},  {9.96, "10 s"},
        {12.4, "12 s"},  {119.4, "119 s"},   {120.0, "2 min"}, {209.0, "3 min"}, {7199.0, "120 min"},
        {7200.0, "2 h"}, {108000.0, "30 h"}, {1e300, nullptr},
    };
    for (const auto& [seconds, text] : table) {
        if (text != nullptr)
            EXPECT_EQ(TimeSpanText(seconds), text);
        else
            EXPECT_FALSE(TimeSpanText(seconds).empty());
    }
}

TEST(NumberText, SizesHaveTheUnitThatFits) {
    const std::pair<std::int64_t, const char*> table[] = {
        {0, "0 bytes"},         {999, "999 bytes"},        {1000, "1.0 kB"},
        {2149999, "2.1 MB"},    {999949, "999.9 kB"},      {999950, "1.0 MB"},
        {5000000000, "5.0 GB"}, {1999999999999, "2.0 TB"}, {std::int64_t{1} << 62, "4611686.0 TB"},
    };
    for (const auto& [bytes, text] : table)
        EXPECT_EQ(SizeText(bytes), text) << bytes;
}

} // namespace
} // namespace tracelet
