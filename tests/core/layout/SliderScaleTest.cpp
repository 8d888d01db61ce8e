#include "core/layout/SliderScale.h"

#include <gtest/gtest.h>

#include <limits>

namespace tracelet {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

TEST(SliderScale, FractionsOfALinearRange) {
    const SliderScale scale{0.0, 100.0, false};
    EXPECT_EQ(scale.Fraction(0.0), 0.0);
    EXPECT_EQ(scale.Fraction(25.0), 0.25);
    EXPECT_EQ(scale.Fraction(100.0), 1.0);
    EXPECT_EQ(scale.Fraction(-5.0), 0.0);
    EXPECT_EQ(scale.Fraction(1e300), 1.0);
    EXPECT_EQ(scale.Fraction(Infinity), 1.0);
    EXPECT_EQ(scale.Fraction(-Infinity), 0.0);
}

TEST(SliderScale, ValuesOfFractions) {
    const SliderScale scale{-10.0, 30.0, false};
    EXPECT_EQ(scale.ValueAt(0.0), -10.0);
    EXPECT_EQ(scale.ValueAt(0.5), 10.0);
    EXPECT_EQ(scale.ValueAt(1.0), 30.0);
    EXPECT_EQ(scale.ValueAt(-0.2), -10.0);
    EXPECT_EQ(scale.ValueAt(1.7), 30.0);
}

TEST(SliderScale, StepsStartFromWithinTheRange) {
    const SliderScale scale{0.0, 100.0, false};
    EXPECT_EQ(scale.Stepped(0.1, 0.01), 0.1 + 1.0);
    EXPECT_EQ(scale.Stepped(50.0, -0.1), 40.0);
    EXPECT_EQ(scale.Stepped(99.5, 0.01), 100.0);
    EXPECT_EQ(scale.Stepped(0.5, -0.01), 0.0);
    EXPECT_EQ(scale.Stepped(5000.0, -0.01), 99.0);
    EXPECT_EQ(scale.Stepped(-5000.0, 0.01), 1.0);
}

TEST(SliderScale, LogarithmicStepsMultiply) {
    const SliderScale scale{1.0, 10000.0, true};
    EXPECT_DOUBLE_EQ(scale.ValueAt(0.25), 10.0);
    EXPECT_DOUBLE_EQ(scale.ValueAt(0.5), 100.0);
    EXPECT_EQ(scale.ValueAt(1.0), 10000.0);
    EXPECT_DOUBLE_EQ(scale.Fraction(1000.0), 0.75);
    EXPECT_EQ(scale.Fraction(0.0), 0.0);
    EXPECT_EQ(scale.Fraction(-3.0), 0.0);
    EXPECT_DOUBLE_EQ(scale.Stepped(10.0, 0.25), 100.0);
    EXPECT_DOUBLE_EQ(scale.Stepped(10.0, -0.25), 1.0);
    EXPECT_EQ(scale.Stepped(5000.0, 0.25), 10000.0);
}

TEST(SliderScale, ARangeThatReachesZeroStaysLinear) {
    const SliderScale scale{0.0, 100.0, true};
    EXPECT_EQ(scale.ValueAt(0.5), 50.0);
    EXPECT_EQ(scale.Fraction(50.0), 0.5);
    EXPECT_EQ(scale.Stepped(50.0, 0.1), 60.0);
}

TEST(SliderScale, AnEmptyRangeHasOnePlace) {
    const SliderScale scale{7.0, 7.0, false};
    EXPECT_EQ(scale.Fraction(7.0), 0.0);
    EXPECT_EQ(scale.ValueAt(0.5), 7.0);
    EXPECT_EQ(scale.Stepped(3.0, 0.1), 7.0);
}

} // namespace
} // namespace tracelet
