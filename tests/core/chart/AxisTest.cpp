#include "core/chart/AxisEnds.h"
#include "core/chart/AxisTicks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace tracelet {
namespace {

const double Inf = std::numeric_limits<double>::infinity();
const double Nan = std::numeric_limits<double>::quiet_NaN();

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
    const TickRange nowhere = TicksWithin(Nan, Nan, {1, 0});
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
                                   {-3, {5, 11}, "-1.5e+12"}, {1, {2, -10}, "2e-10"},
                                   {1, {1, -13}, "1e-13"},    {36000000, {1, -3}, "36000.000"}};
    for (const Row& row : rows)
        EXPECT_EQ(TickText(row.number, row.step, FormFor({row.number, row.number}, row.step)), row.text);
}

TEST(AxisTicks, AnyLengthIsAStepToFifteenDigits) {
    EXPECT_EQ(StepOf(0.04), (TickStep{4, -2}));
    EXPECT_EQ(StepOf(100), (TickStep{1, 2}));
    EXPECT_EQ(StepOf(0.1 + 0.2), (TickStep{3, -1}));
    EXPECT_EQ(StepOf(2.5e-7), (TickStep{25, -8}));
    EXPECT_EQ(StepOf(999.999999999999), (TickStep{999999999999999, -12}));
    for (const double length : {1.0 / 3, 1e-90 / 7, 1e90 / 7})
        EXPECT_NEAR(StepOf(length).At(1) / length, 1, 1e-14);
    EXPECT_EQ(Multiple({25, -2}, 2), (TickStep{5, -1}));
    EXPECT_EQ(Multiple({4, -2}, 5), (TickStep{2, -1}));
}

TEST(AxisTicks, LongStepsAreWrittenToAThousandth) {
    const TickStep step = StepOf(0.24631578947368);
    const TickRange ticks{0, 12};
    EXPECT_EQ(TickText(1, step, FormFor(ticks, step)), "0.2463");
    EXPECT_EQ(TickText(11, step, FormFor(ticks, step)), "2.7095");
    EXPECT_EQ(TickText(0, step, FormFor(ticks, step)), "0");
    const TickStep tiny = StepOf(2.4631578947368e-8);
    EXPECT_EQ(TickText(3, tiny, FormFor(ticks, tiny)), "7.389e-8");
}

/// Texts of the ticks of an axis, blanks between them.
std::string TextsOf(double low, double high, double parts, std::size_t longest) {
    const TickStep step = StepFor(high - low, parts);
    const double margin = step.At(1) / 100; // the ends are no exact decimals
    const TickRange ticks = TicksWithin(low - margin, high + margin, step);
    const TickForm form = FormFor(ticks, step, longest);
    std::string texts;
    for (std::int64_t tick = ticks.first; tick <= ticks.last; ++tick)
        texts += (texts.empty() ? "" : " ") + TickText(tick, step, form);
    return texts;
}

TEST(AxisTicks, AnAxisIsWrittenInOneShortForm) {
    struct Row {
        double low;
        double high;
        const char* texts;
    };
    const Row rows[] = {{-10, 10, "-10 -5 0 5 10"},
                        {0, 0.0001, "0 0.00005 0.00010"},
                        {0, 5e-6, "0 2e-6 4e-6"},
                        {-1e-8, 1e-8, "-1e-8 -5e-9 0 5e-9 1e-8"},
                        {3e-9, 5e-9, "3e-9 3.5e-9 4e-9 4.5e-9 5e-9"},
                        {0, 4e6, "0 1e+6 2e+6 3e+6 4e+6"},
                        {200000, 600000, "200000 300000 400000 500000 600000"},
                        {273.15, 273.19, "273.15 273.16 273.17 273.18 273.19"},
                        {1 - 1e-8, 1 + 1e-8, "-1e-8 -5e-9 1 +5e-9 +1e-8"},
                        {-2.5 - 4e-9, -2.5, "-4e-9 -3e-9 -2e-9 -1e-9 -2.5"},
                        {1e12, 1e12 + 4, "1000000000000 +1 +2 +3 +4"}};
    for (const Row& row : rows)
        EXPECT_EQ(TextsOf(row.low, row.high, 4, 9), row.texts);
    EXPECT_EQ(TextsOf(3600, 3600.00002, 4, std::string::npos),
              "3600.000000 3600.000005 3600.000010 3600.000015 3600.000020")
        << "times are whole, however long";
    EXPECT_EQ(TextsOf(3600, 3600.0000099, 2, std::string::npos), "3600.000000 3600.000005");
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
    for (const double low : {-Inf, -1e300, -1e9, 0.0, 1e-300, 5.0, 1e300, Inf, Nan})
        for (const double high : {-Inf, -1e300, -1e9, 0.0, 1e-300, 5.0, 1e300, Inf, Nan}) {
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

/// An axis whose data pass through a window of ten seconds.
class CalmSpanTest : public testing::Test {
protected:
    AxisSpan Show(double low, double high, double end) {
        return axis = fit.Next(low, high, axis, {end - 10, end});
    }

    CalmSpan fit;
    AxisSpan axis{0, 100};
};

TEST_F(CalmSpanTest, FirstDataAreFittedAtOnce) {
    EXPECT_EQ(Show(280.5, 291, 10), (AxisSpan{280, 292}));
    fit.Forget();
    EXPECT_EQ(Show(20.5, 31, 10), (AxisSpan{20, 32}));
}

TEST_F(CalmSpanTest, WidensAtOnceWithRoomToGo) {
    Show(0, 90, 10);
    EXPECT_EQ(Show(0, 101, 10.1), (AxisSpan{0, 150}));
    EXPECT_EQ(Show(-3, 101, 10.2), (AxisSpan{-50, 150}));
}

TEST_F(CalmSpanTest, RampIsHeldWithFewChanges) {
    const auto changesOver = [this](double degreesInWindow) {
        int changes = 0;
        fit.Forget();
        for (double top = 30; top < 1000; top += 0.5) {
            const AxisSpan before = axis;
            const double bottom = std::max(20.0, top - degreesInWindow);
            Show(bottom, top, 10 + 10 * top / degreesInWindow);
            EXPECT_LE(axis.low, bottom);
            EXPECT_GE(axis.high, top);
            changes += axis == before ? 0 : 1;
        }
        return changes;
    };
    EXPECT_LE(changesOver(1000), 15);
    EXPECT_LE(changesOver(10), 120) << "every ten degrees there is nothing left of what was seen";
}

TEST_F(CalmSpanTest, PeaksThatComeAgainMoveNothing) {
    Show(0, 90, 10);
    for (double end = 10; end < 300; end += 0.1) {
        const bool peakInWindow = std::fmod(end, 35) < 12; // out of sight for more than a window
        EXPECT_EQ(Show(20, peakInWindow ? 90 : 21, end), (AxisSpan{0, 100})) << end;
    }
}

TEST_F(CalmSpanTest, NarrowsAfterThreeQuietWindows) {
    Show(0, 90, 10);
    EXPECT_EQ(Show(20, 31, 40), (AxisSpan{0, 100}));
    EXPECT_EQ(Show(20, 31, 40.1), (AxisSpan{20, 32}));
    Show(20, 95, 50);
    Show(20, 31, 75);
    EXPECT_EQ(Show(20, 31, 5), (AxisSpan{20, 100})) << "a time that goes back begins the wait anew";
    EXPECT_EQ(Show(20, 31, 34.9), (AxisSpan{20, 100}));
    EXPECT_EQ(Show(20, 31, 35.1), (AxisSpan{20, 32}));
}

TEST_F(CalmSpanTest, AnotherZoomOfTheTimeIsFittedAtOnce) {
    Show(0, 90, 10);
    EXPECT_EQ(fit.Next(20, 31, axis, {4, 12}), axis) << "nearly the same";
    EXPECT_EQ(fit.Next(20, 31, axis, {4, 6}), (AxisSpan{20, 32}));
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
    for (const auto& [low, high] : {std::pair{5.0, 5.0}, {10.0, 0.0}, {Nan, 1.0}, {0.0, Inf}, {-Inf, Inf}}) {
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
    ends.Follow(Inf);
    ends.Follow(Nan);
    EXPECT_EQ(ends.minimum, 0);
    EXPECT_EQ(ends.maximum, 10);
}

TEST(AxisEnds, PartsLieBetweenFractionsOfWhatIsDrawn) {
    const struct {
        double from, to, minimum, maximum;
    } rows[] = {{0.25, 0.5, 2.5, 5},       {-0.5, 1.5, -5, 15}, {0.5, 0.5, 0, 10}, {0.6, 0.4, 0, 10},
                {0.5, 0.5 + 1e-15, 0, 10}, {0, Inf, 0, 10},     {0, Nan, 0, 10}};
    for (const auto& row : rows) {
        AxisEnds ends;
        ends.automatic = true;
        ends.TakePart(row.from, row.to);
        EXPECT_EQ(ends.minimum, row.minimum) << row.from << ' ' << row.to;
        EXPECT_EQ(ends.maximum, row.maximum) << row.from << ' ' << row.to;
        EXPECT_EQ(ends.automatic, row.minimum == 0) << "one that changed nothing stays automatic";
    }
}

TEST(AxisEnds, PanKeepsTheSpan) {
    AxisEnds ends;
    ends.automatic = true;
    ends.Pan(0.25);
    EXPECT_EQ(ends.minimum, 2.5);
    EXPECT_EQ(ends.maximum, 12.5);
    EXPECT_EQ(ends.span, 10);
    EXPECT_FALSE(ends.automatic);
    ends.SetBoth(8, 4); // drawn from 4 to 8
    ends.Pan(-0.5);
    EXPECT_EQ(ends.minimum, 2);
    EXPECT_EQ(ends.maximum, 6);
}

} // namespace
} // namespace tracelet
