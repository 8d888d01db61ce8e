#include "devices/display/AxisEnds.h"
#include "devices/display/AxisTicks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace tracelet {
namespace {

const double inf = std::numeric_limits<double>::infinity();
const double nan = std::numeric_limits<double>::quiet_NaN();

TEST(AxisTicks, StepsAreOneTwoOrFive) {
    struct Row {
        double span;
        double parts;
        TickStep step;
    };
    const std::vector<Row> rows = {
        {10, 10, {1, 0}},    {10, 9, {2, 0}},    {10, 5, {2, 0}},    {10, 4, {5, 0}},    {10, 2, {5, 0}},
        {10, 1, {1, 1}},     {1, 10, {1, -1}},   {0.3, 3, {1, -1}},  {20, 10, {2, 0}},   {25, 10, {5, 0}},
        {1e-9, 5, {2, -10}}, {1e12, 5, {2, 11}}, {99.9, 10, {1, 1}}, {100.1, 10, {2, 1}}};
    for (const Row& row : rows)
        EXPECT_EQ(StepFor(row.span, row.parts), row.step) << row.span << " in " << row.parts;
}

TEST(AxisTicks, TicksStandOnMultiplesOfTheStepEndsIncluded) {
    EXPECT_EQ(TicksWithin(0, 10, {2, 0}), (TickRange{0, 5}));
    EXPECT_EQ(TicksWithin(0.1, 9.9, {2, 0}), (TickRange{1, 4}));
    EXPECT_EQ(TicksWithin(-1, 1, {5, -1}), (TickRange{-2, 2}));
    EXPECT_EQ(TicksWithin(0.3, 0.7, {1, -1}), (TickRange{3, 7}));
}

TEST(AxisTicks, TicksThatDoublesCannotTellApartAreLeftOut) {
    const TickRange none = TicksWithin(1e18, 1e18 + 256, {1, 0});
    EXPECT_GT(none.first, none.last);
    const TickRange nowhere = TicksWithin(nan, nan, {1, 0});
    EXPECT_GT(nowhere.first, nowhere.last);
}

TEST(AxisTicks, PlacesAreExactDecimals) {
    EXPECT_EQ((TickStep{1, -1}.At(3)), 0.3);
    EXPECT_EQ((TickStep{2, 3}.At(-4)), -8000);
    EXPECT_EQ((TickStep{5, -6}.At(1)), 5e-6);
}

TEST(AxisTicks, TextsAreExactWithTheSameDecimals) {
    struct Row {
        std::int64_t number;
        TickStep step;
        const char* text;
    };
    const std::vector<Row> rows = {{0, {1, -3}, "0"},         {1, {2, 0}, "2"},
                                   {-5, {2, 0}, "-10"},       {3, {1, -1}, "0.3"},
                                   {10, {1, -1}, "1.0"},      {-1, {5, -2}, "-0.05"},
                                   {125, {2, -2}, "2.50"},    {7, {1, 3}, "7000"},
                                   {2, {5, 5}, "1000000"},    {2, {1, 6}, "2e+6"},
                                   {1, {2, 11}, "2e+11"},     {3, {5, 11}, "1.5e+12"},
                                   {-3, {5, 11}, "-1.5e+12"}, {1, {2, -10}, "0.0000000002"},
                                   {1, {1, -13}, "1e-13"},    {36000000, {1, -3}, "36000.000"}};
    for (const Row& row : rows)
        EXPECT_EQ(TickText(row.number, row.step), row.text);
}

TEST(AxisTicks, StepDoesNotDependOnWhereTheAxisStands) {
    for (double start = 0; start < 50; start += 0.37) {
        const TickStep step = StepFor(start + 10 - start, 7);
        EXPECT_EQ(step, (TickStep{2, 0}));
    }
}

TEST(DrawnSpan, OddEndsBecomeSomethingThatCanBeDrawn) {
    EXPECT_EQ(DrawnSpan(0, 10), (AxisSpan{0, 10}));
    EXPECT_EQ(DrawnSpan(10, 0), (AxisSpan{0, 10}));
    EXPECT_EQ(DrawnSpan(5, 5), (AxisSpan{4.5, 5.5}));
    EXPECT_EQ(DrawnSpan(0, 1e-9), (AxisSpan{0, 1e-9}));
    EXPECT_EQ(DrawnSpan(0, 1e12), (AxisSpan{0, 1e12}));
    for (const double low : {-inf, -1e300, -1e9, 0.0, 1e-300, 5.0, 1e300, inf, nan})
        for (const double high : {-inf, -1e300, -1e9, 0.0, 1e-300, 5.0, 1e300, inf, nan}) {
            const AxisSpan span = DrawnSpan(low, high);
            EXPECT_TRUE(std::isfinite(span.Length())) << low << " " << high;
            EXPECT_GT(span.Length(), 0) << low << " " << high;
        }
}

TEST(FittedSpan, EndsAreRoundAndHoldTheData) {
    EXPECT_EQ(FittedSpan(-3.2, 4.1, {100, 200}), (AxisSpan{-4, 5}));
    EXPECT_EQ(FittedSpan(0, 0.83, {100, 200}), (AxisSpan{0, 1}));
    const AxisSpan constant = FittedSpan(5, 5, {100, 200});
    EXPECT_LT(constant.low, 5);
    EXPECT_GT(constant.high, 5);
}

TEST(FittedSpan, DoesNotFidgetWhileTheDataStayAndFillIt) {
    const AxisSpan current{-5, 5};
    EXPECT_EQ(FittedSpan(-4.9, 4.9, current), current);
    EXPECT_EQ(FittedSpan(-3, 2, current), current);
    EXPECT_NE(FittedSpan(-3, 5.1, current), current) << "beyond";
    EXPECT_NE(FittedSpan(-0.5, 0.5, current), current) << "too small";
}

TEST(AxisEnds, FollowKeepsTheSpan) {
    AxisEnds ends;
    ends.SetBoth(0, 10);
    ends.Follow(10);
    EXPECT_EQ(ends.minimum, 0);
    ends.Follow(10.1);
    EXPECT_EQ(ends.maximum, 10.1);
    EXPECT_EQ(ends.minimum, 10.1 - 10);
    for (int i = 0; i < 100'000; ++i)
        ends.Follow(10.1 + i * 0.1);
    EXPECT_EQ(ends.span, 10);
    EXPECT_EQ(ends.minimum, ends.maximum - 10) << "no drift";
    ends.Follow(3);
    EXPECT_EQ(ends.minimum, 3);
    EXPECT_EQ(ends.maximum, 13);
}

TEST(AxisEnds, OddEndsStayAsWritten) {
    for (const auto& [low, high] : {std::pair{5.0, 5.0}, {10.0, 0.0}, {nan, 1.0}, {0.0, inf}, {-inf, inf}}) {
        AxisEnds ends;
        ends.SetMinimum(low);
        ends.SetMaximum(high);
        ends.Follow(1e6);
        ends.Follow(-1e6);
        EXPECT_EQ(ends.maximum, high);
        EXPECT_TRUE(ends.minimum == low || std::isnan(low));
    }
}

TEST(AxisEnds, FollowPassesOverTimesThatAreNone) {
    AxisEnds ends;
    ends.Follow(inf);
    ends.Follow(nan);
    EXPECT_EQ(ends.minimum, 0);
    EXPECT_EQ(ends.maximum, 10);
}

} // namespace
} // namespace tracelet
