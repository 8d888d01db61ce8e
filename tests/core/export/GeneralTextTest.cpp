#include "tests/core/export/GeneralTextSweep.h"

#include <clocale>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

template <typename Number>
std::string Text(Number value) {
    char text[GeneralTextRoom];
    return std::string(text, PutGeneral(value, text));
}

std::string LongText(std::int32_t value) {
    char text[GeneralTextRoom];
    return std::string(text, PutLong(value, text));
}

void ExpectNoDifference(const GeneralTextSweep& sweep, std::uint64_t atLeast) {
    EXPECT_GE(sweep.Compared(), atLeast);
    EXPECT_EQ(sweep.Different(), 0U) << sweep.FirstDifference();
}

TEST(GeneralText, WritesFifteenDigitsOfDoubles) {
    EXPECT_EQ(Text(0.0), "0");
    EXPECT_EQ(Text(-0.0), "-0");
    EXPECT_EQ(Text(0.1), "0.1");
    EXPECT_EQ(Text(0.1 + 0.2), "0.3");
    EXPECT_EQ(Text(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(Text(-2.0 / 3.0), "-0.666666666666667");
    EXPECT_EQ(Text(0.0001), "0.0001");
    EXPECT_EQ(Text(0.00001), "1e-05");
    EXPECT_EQ(Text(0.0000125), "1.25e-05");
    EXPECT_EQ(Text(123456789012345.0), "123456789012345");
    EXPECT_EQ(Text(1e15), "1e+15");
    EXPECT_EQ(Text(1e100), "1e+100");
    EXPECT_EQ(Text(5e-324), "4.94065645841247e-324");
    EXPECT_EQ(Text(-1.7976931348623157e308), "-1.79769313486232e+308");
}

TEST(GeneralText, WritesSevenDigitsOfFloats) {
    EXPECT_EQ(Text(0.0F), "0");
    EXPECT_EQ(Text(-0.0F), "-0");
    EXPECT_EQ(Text(0.1F), "0.1");
    EXPECT_EQ(Text(1.0F / 3.0F), "0.3333333");
    EXPECT_EQ(Text(-9.995117F), "-9.995117");
    EXPECT_EQ(Text(1e6F), "1000000");
    EXPECT_EQ(Text(1e7F), "1e+07");
    EXPECT_EQ(Text(1234567.5F), "1234568");
    EXPECT_EQ(Text(1234568.5F), "1234568");
    EXPECT_EQ(Text(3.4028235e38F), "3.402823e+38");
}

TEST(GeneralText, WritesWhatIsNoFiniteNumberAsPrintfDoes) {
    using Double = std::numeric_limits<double>;
    using Float = std::numeric_limits<float>;
    EXPECT_EQ(Text(Double::infinity()), "inf");
    EXPECT_EQ(Text(-Double::infinity()), "-inf");
    EXPECT_EQ(Text(Double::quiet_NaN()), "nan");
    EXPECT_EQ(Text(-Double::quiet_NaN()), "-nan");
    EXPECT_EQ(Text(Float::infinity()), "inf");
    EXPECT_EQ(Text(-Float::infinity()), "-inf");
    EXPECT_EQ(Text(Float::quiet_NaN()), "nan");
    EXPECT_EQ(Text(-Float::quiet_NaN()), "-nan");
}

TEST(GeneralText, WritesIntegers) {
    EXPECT_EQ(LongText(0), "0");
    EXPECT_EQ(LongText(7), "7");
    EXPECT_EQ(LongText(-4096), "-4096");
    EXPECT_EQ(LongText(99999999), "99999999");
    EXPECT_EQ(LongText(100000000), "100000000");
    EXPECT_EQ(LongText(2147483647), "2147483647");
    EXPECT_EQ(LongText(-2147483647 - 1), "-2147483648");
}

TEST(GeneralText, IgnoresTheLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr)
        GTEST_SKIP() << "no comma-decimal locale on this machine";
    EXPECT_EQ(Text(0.5), "0.5");
    EXPECT_EQ(Text(0.5F), "0.5");
    EXPECT_EQ(Text(1e300), "1e+300");
    std::setlocale(LC_ALL, before.c_str());
}

TEST(GeneralText, EqualsPrintfOnAwkwardDoubles) {
    GeneralTextSweep sweep(1);
    sweep.CheckEdges<double>();
    ExpectNoDifference(sweep, 300000);
}

TEST(GeneralText, EqualsPrintfOnAwkwardFloats) {
    GeneralTextSweep sweep(1);
    sweep.CheckEdges<float>();
    ExpectNoDifference(sweep, 200000);
}

TEST(GeneralText, EqualsPrintfOnIntegers) {
    GeneralTextSweep sweep(1);
    sweep.CheckLongEdges();
    ExpectNoDifference(sweep, 40000);
}

TEST(GeneralText, EqualsPrintfOnRandomNumbers) {
    GeneralTextSweep sweep(2);
    for (int i = 0; i < 50000; ++i)
        sweep.CheckRandom();
    ExpectNoDifference(sweep, 450000);
}

TEST(GeneralTextSweep, SeesADifference) {
    GeneralTextSweep sweep(3);
    const std::string written = "0.1";
    sweep.CompareText("0.1", 3, written.data(), written.data() + 3);
    EXPECT_EQ(sweep.Different(), 0U);
    sweep.CompareText("0.2", 3, written.data(), written.data() + 3);
    sweep.CompareText("0.12", 4, written.data(), written.data() + 3);
    EXPECT_EQ(sweep.Different(), 2U);
    EXPECT_EQ(sweep.Compared(), 3U);
    EXPECT_EQ(sweep.FirstDifference(), "\"0.1\" instead of \"0.2\"");
}

} // namespace
} // namespace tracelet
