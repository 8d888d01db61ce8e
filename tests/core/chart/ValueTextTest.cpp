#include "core/chart/ValueText.h"

#include <gtest/gtest.h>

#include <limits>

namespace tracelet {
namespace {

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

TEST(ValueText, AFormHasFiveDigitsOfItsLargestNumber) {
    struct Case {
        double largest;
        const char* text;
    };
    for (const auto& [largest, text] : {Case{1, "1.0000"},
                                        {0, "0.0000"},
                                        {9.5, "9.5000"},
                                        {9.99999, "10.000"},
                                        {-9.99999, "-10.000"},
                                        {123.456, "123.46"},
                                        {32767, "32767"},
                                        {-65535, "-65535"},
                                        {1234567, "1234567"},
                                        {1e7, "1.0000e+07"},
                                        {0.0012345, "0.0012345"},
                                        {0.00012345, "1.2345e-04"},
                                        {Nan, "\u2013"},
                                        {Inf, "\u221e"},
                                        {-Inf, "-\u221e"}})
        EXPECT_EQ(ValueText(largest), text) << largest;
}

TEST(ValueText, ValuesOfOneFormHaveTheirPointsBelowEachOther) {
    const ValueForm form = FormOf(10);
    EXPECT_EQ(ValueText(10, form), "10.000");
    EXPECT_EQ(ValueText(-0.0123456, form), "-0.012");
    EXPECT_EQ(ValueText(-0.0001, form), "0.000");
    EXPECT_EQ(ValueText(0, FormOf(1e-9)), "0.0000e+00");
    EXPECT_EQ(ValueText(Nan, form), "\u2013");
}

TEST(ValueText, PrefixesKeepFiveDigits) {
    struct Case {
        double value;
        const char* text;
    };
    for (const auto& [value, text] : {Case{1, "1.0000 s"},
                                      {0.00123456, "1.2346 ms"},
                                      {-12345.6, "-12.346 ks"},
                                      {999.996, "1.0000 ks"},
                                      {0.1, "100.00 ms"},
                                      {1e-6, "1.0000 \u00b5s"},
                                      {2.5e-9, "2.5000 ns"},
                                      {0, "0.0000 s"},
                                      {5e10, "50.000 Gs"},
                                      {1e15, "1000000 Gs"},
                                      {Inf, "\u2013"},
                                      {Nan, "\u2013"}})
        EXPECT_EQ(PrefixedText(value, "s"), text) << value;
}

TEST(ValueText, TimesHaveTheDecimalsThatTheAxisTellsApart) {
    EXPECT_EQ(TimeText(1.23456, 0.01), "1.23 s");
    EXPECT_EQ(TimeText(1.23456, 0.002), "1.235 s");
    EXPECT_EQ(TimeText(1.23456, 5), "1 s");
    EXPECT_EQ(TimeText(1, 1e-15), "1.000000000 s");
}

} // namespace
} // namespace tracelet
