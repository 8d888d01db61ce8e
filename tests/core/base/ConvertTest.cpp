#include "core/base/Convert.h"

#include "core/base/RunTimeError.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace tracelet {
namespace {

using testing::ThrowsMessage;

const auto Overflows = ThrowsMessage<RunTimeError>("Overflow");
const auto Mismatches = ThrowsMessage<RunTimeError>("Type mismatch");

TEST(CLng, RoundsToNearestHalvesToEven) {
    const struct {
        double value;
        std::int32_t expected;
    } cases[] = {{0.5, 0},       {1.5, 2},
                 {2.5, 2},       {3.5, 4},
                 {-0.5, 0},      {-1.5, -2},
                 {-2.5, -2},     {0.49999, 0},
                 {333.333, 333}, {2147483647.4, 2147483647},
                 {4095.5, 4096}, {-2147483648.5, -2147483647 - 1}};
    for (const auto& c : cases)
        EXPECT_EQ(CLng(c.value), c.expected) << c.value;
}

TEST(CLng, RefusesWhatNoLongHolds) {
    for (double value : {2147483647.5, -2147483649.0, 1e300, -1e300, std::numeric_limits<double>::infinity(),
                         std::numeric_limits<double>::quiet_NaN()})
        EXPECT_THAT([&] { (void)CLng(value); }, Overflows) << value;
}

TEST(Int, RoundsDown) {
    EXPECT_EQ(Int(100.0), 100);
    EXPECT_EQ(Int(99.999), 99);
    EXPECT_EQ(Int(-0.1), -1);
    EXPECT_THAT([] { (void)Int(2147483648.0); }, Overflows);
}

TEST(Quotient, RefusesZeroDivisors) {
    EXPECT_DOUBLE_EQ(Quotient(20.0, 0.1), 200.0);
    EXPECT_THAT([] { (void)Quotient(20.0, 0.0); }, ThrowsMessage<RunTimeError>("Division by zero"));
    EXPECT_THAT([] { (void)Quotient(0.0, 0.0); }, Overflows);
}

TEST(Mod, KeepsTheSignOfTheDividend) {
    EXPECT_EQ(Mod(17, 16), 1);
    EXPECT_EQ(Mod(-1, 16), -1);
    EXPECT_EQ(Mod(std::numeric_limits<std::int32_t>::min(), -1), 0);
    EXPECT_THAT([] { (void)Mod(1, 0); }, ThrowsMessage<RunTimeError>("Division by zero"));
}

TEST(TextToDouble, ReadsWhatUsersType) {
    const struct {
        const char* text;
        double expected;
    } cases[] = {{"0", 0},        {" 12 ", 12},   {"-1.5", -1.5}, {"+3", 3},      {"- 3", -3},
                 {".5", 0.5},     {"5.", 5},      {"1e3", 1000},  {"1E-2", 0.01}, {"2d2", 200},
                 {"4,096", 4096}, {"1,2,3", 123}, {"\t7", 7},     {"1e-999", 0}};
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(TextToDouble(c.text), c.expected) << c.text;
}

TEST(TextToDouble, RefusesWhatIsNoNumber) {
    for (const char* text : {"", " ", "abc", "1a", "1 2", "--1", ".", "-", ",1", "1e", "1e+", "0x10", "1.2.3",
                             "nan", "inf", "1.0,0"})
        EXPECT_THAT([&] { (void)TextToDouble(text); }, Mismatches) << text;
    EXPECT_THAT([] { (void)TextToDouble("1e999"); }, Overflows);
    EXPECT_THAT([] { (void)TextToDouble(std::string_view("1\0", 2)); }, Mismatches);
}

TEST(TextToLong, RoundsAndChecksTheRange) {
    EXPECT_EQ(TextToLong("4095.5"), 4096);
    EXPECT_EQ(TextToLong("2.5"), 2);
    EXPECT_THAT([] { (void)TextToLong("2147483648"); }, Overflows);
    EXPECT_THAT([] { (void)TextToLong("x"); }, Mismatches);
}

} // namespace
} // namespace tracelet
