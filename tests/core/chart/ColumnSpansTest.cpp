#include "core/chart/ColumnSpans.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <limits>
#include <random>
#include <vector>

namespace tracelet {
namespace {

using Point = SampleStore::Point;

/// What drawing every sample covers in a column: each segment that reaches into it, cut at its edges. One
/// with an infinite end stands upright there.
Extent PlainLine(const std::vector<Point>& points, double left, double right) {
    Extent extent;
    const auto add = [&](double y) { extent.Add(static_cast<float>(y)); };
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point& b = points[i];
        if (b.x >= left && b.x < right)
            add(b.y);
        if (i == 0 || points[i - 1].x > b.x)
            continue;
        const Point& a = points[i - 1];
        bool upright = false;
        for (const Point& end : {a, b}) {
            if (!std::isinf(end.y))
                continue;
            upright = true;
            if (end.x >= left && end.x < right) {
                add(a.y);
                add(b.y);
            }
        }
        if (upright || !(a.x < right && b.x >= left) || std::isnan(a.y + b.y))
            continue;
        const auto at = [&](double x) {
            return b.x > a.x ? a.y + (b.y - a.y) * ((x - a.x) / (b.x - a.x)) : b.y;
        };
        add(at(std::max(a.x, left)));
        add(at(std::min(b.x, right)));
    }
    return extent;
}

/// The same where each sample's value is held until the next sample.
Extent PlainStep(const std::vector<Point>& points, double left, double right) {
    Extent extent;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point& a = points[i];
        const bool inside = a.x >= left && a.x < right;
        const bool held =
            i + 1 < points.size() && points[i + 1].x >= a.x && a.x < left && points[i + 1].x >= left;
        if (inside || held)
            extent.Add(static_cast<float>(a.y));
    }
    return extent;
}

struct Case {
    const char* name;
    std::function<void(SampleStore&, std::mt19937&)> fill;
    double from;
    double to;
};

void AppendBlock(SampleStore& store, double start, double step, int count,
                 const std::function<float(int)>& valueAt) {
    for (int done = 0; done < count; done += 256) {
        std::vector<float> block;
        for (int i = done; i < std::min(count, done + 256); ++i)
            block.push_back(valueAt(i));
        store.AppendEven(start + done * step, step, static_cast<std::int64_t>(block.size()), 1, block.data());
    }
}

float Noise(std::mt19937& random) {
    return std::normal_distribution<float>()(random);
}

/// Noise that is infinite or no number at times.
float Odd(std::mt19937& random) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float odd[] = {infinity, -infinity, std::numeric_limits<float>::quiet_NaN()};
    const auto kind = random() % 40;
    return kind < std::size(odd) ? odd[kind] : Noise(random);
}

/// Same infinity, or closer than samples are stored.
bool Near(float a, float b) {
    return a == b || std::abs(a - b) <= 1e-5F;
}

const std::vector<Case> Cases = {
    {"none", [](SampleStore&, std::mt19937&) {}, 0, 10},
    {"one", [](SampleStore& store, std::mt19937&) { store.AppendPoint(0, 5, 3); }, 0, 10},
    {"sparse",
     [](SampleStore& s, std::mt19937& r) { AppendBlock(s, 0, 1, 11, [&](int) { return Noise(r); }); }, 0, 10},
    {"one a column",
     [](SampleStore& s, std::mt19937& r) { AppendBlock(s, 0, 0.1, 101, [&](int) { return Noise(r); }); }, 0,
     10},
    {"a few a column",
     [](SampleStore& s, std::mt19937& r) { AppendBlock(s, 0, 0.013, 800, [&](int) { return Noise(r); }); }, 0,
     10},
    {"dense noise",
     [](SampleStore& s, std::mt19937& r) { AppendBlock(s, 0, 1e-4, 100'000, [&](int) { return Noise(r); }); },
     0, 10},
    {"dense sine",
     [](SampleStore& s, std::mt19937&) {
         AppendBlock(s, 0, 1e-4, 100'000, [](int i) { return static_cast<float>(std::sin(i * 0.004)); });
     },
     0, 10},
    {"lone spike",
     [](SampleStore& s, std::mt19937&) {
         AppendBlock(s, 0, 1e-4, 100'000, [](int i) { return i == 54'321 ? 8.F : 0.F; });
     },
     0, 10},
    {"inside a long window",
     [](SampleStore& s, std::mt19937& r) { AppendBlock(s, 3, 1e-3, 2000, [&](int) { return Noise(r); }); }, 0,
     100},
    {"zoomed between two samples",
     [](SampleStore& s, std::mt19937& r) { AppendBlock(s, 0, 1, 100, [&](int) { return Noise(r); }); }, 50.2,
     50.7},
    {"times of their own",
     [](SampleStore& s, std::mt19937& r) {
         double x = 0;
         for (int i = 0; i < 5000; ++i, x += std::uniform_real_distribution(0.0, 0.004)(r))
             s.AppendPoint(0, x, static_cast<double>(Noise(r)));
     },
     0, 10},
    {"bursts and gaps",
     [](SampleStore& s, std::mt19937& r) {
         for (int burst = 0; burst < 10; ++burst)
             AppendBlock(s, burst * 1.0, 1e-4, 500, [&](int) { return Noise(r); });
     },
     0, 10},
    {"several at one time",
     [](SampleStore& s, std::mt19937& r) {
         for (int i = 0; i < 300; ++i)
             s.AppendPoint(0, i / 3 * 0.1, static_cast<double>(Noise(r)));
     },
     0, 10},
    {"time goes back",
     [](SampleStore& s, std::mt19937& r) {
         AppendBlock(s, 4, 0.01, 500, [&](int) { return Noise(r); });
         AppendBlock(s, 1, 0.02, 300, [&](int) { return 3 + Noise(r); });
     },
     0, 10},
    {"oldest dropped",
     [](SampleStore& s, std::mt19937& r) {
         s.SetLimit(3210);
         AppendBlock(s, 0, 1e-3, 10'000, [&](int) { return Noise(r); });
     },
     0, 10},
    {"infinite now and then",
     [](SampleStore& s, std::mt19937& r) { AppendBlock(s, 0, 0.07, 150, [&](int) { return Odd(r); }); }, 0,
     10},
    {"infinite in dense noise",
     [](SampleStore& s, std::mt19937& r) { AppendBlock(s, 0, 1e-3, 10'000, [&](int) { return Odd(r); }); }, 0,
     10},
    {"far from zero",
     [](SampleStore& s, std::mt19937& r) {
         AppendBlock(s, 1e6, 1e-3, 10'000, [&](int) { return Noise(r); });
     },
     1e6, 1e6 + 10},
};

class ColumnSpansTest : public testing::TestWithParam<int> {};

TEST_P(ColumnSpansTest, CoverWhatDrawingEverySampleCovers) {
    const int columns = GetParam();
    for (const Case& item : Cases) {
        std::mt19937 random(3);
        SampleStore store;
        store.AddPlot();
        item.fill(store, random);
        std::vector<Point> points;
        for (std::int64_t i = 0; i < store.Count(0); ++i)
            points.push_back(store.At(0, i));
        const ColumnGrid grid{0, (item.to - item.from) / columns};
        const std::int64_t first = grid.ColumnOf(item.from);
        for (const Joint joint : {Joint::Line, Joint::Step}) {
            ColumnSpans finder;
            std::vector<Extent> spans(static_cast<std::size_t>(columns));
            finder.Find(store, 0, grid, first, joint, spans);
            // A plain renderer needs long for dense data: check a part of the columns there.
            const std::size_t every = points.size() > 20'000 ? 7 : 1;
            for (std::size_t i = 0; i < spans.size(); i += every) {
                const double left = grid.Edge(first + static_cast<std::int64_t>(i));
                const double right = grid.Edge(first + static_cast<std::int64_t>(i) + 1);
                const Extent plain =
                    joint == Joint::Line ? PlainLine(points, left, right) : PlainStep(points, left, right);
                ASSERT_EQ(spans[i].Empty(), plain.Empty()) << item.name << " column " << i;
                if (plain.Empty())
                    continue;
                ASSERT_TRUE(Near(spans[i].low, plain.low)) << item.name << " column " << i;
                ASSERT_TRUE(Near(spans[i].high, plain.high)) << item.name << " column " << i;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Columns, ColumnSpansTest, testing::Values(1, 7, 100, 333));

TEST(ColumnSpans, WhatIsNoNumberInterruptsTheTrace) {
    SampleStore store;
    store.AddPlot();
    const double nan = std::nan("");
    for (const Point& point : std::vector<Point>{{0, 1}, {1, 1}, {2, nan}, {3, 1}, {4, 1}})
        store.AppendPoint(0, point.x, point.y);
    ColumnSpans finder;
    std::vector<Extent> spans(50);
    for (const Joint joint : {Joint::Line, Joint::Step}) {
        finder.Find(store, 0, {0, 0.1}, 0, joint, spans);
        EXPECT_FALSE(spans[5].Empty());
        EXPECT_TRUE(spans[25].Empty());
        EXPECT_FALSE(spans[35].Empty());
    }
    EXPECT_FALSE(spans[15].Empty()) << "a step holds its value up to the gap";
}

TEST(ColumnSpans, PlotsOfOneScanAskedForInTurnGetTheirOwnValues) {
    SampleStore store;
    for (int i = 0; i < 3; ++i)
        store.AddPlot();
    for (int i = 0; i < 100; ++i)
        store.AppendScan(i * 0.1, std::vector<float>{1, 2, 3});
    ColumnSpans finder;
    std::vector<Extent> spans(20);
    for (int plot = 0; plot < 3; ++plot) {
        finder.Find(store, plot, {0, 0.25}, 5, Joint::Line, spans);
        for (const Extent& span : spans)
            EXPECT_EQ(span, (Extent{static_cast<float>(plot + 1), static_cast<float>(plot + 1)}));
    }
}

TEST(ColumnSpans, TellWhichSamplesStandApart) {
    SampleStore store;
    store.AddPlot();
    for (const double x : {0.0, 5.0, 10.0, 10.5, 20.0, 30.0})
        store.AppendPoint(0, x, 1);
    ColumnSpans finder;
    std::vector<Extent> spans(40);
    finder.Find(store, 0, {0, 1}, 0, Joint::Line, spans);
    std::vector<std::int64_t> columns;
    for (const ColumnSpans::Apart& apart : finder.Separate(4))
        columns.push_back(apart.column);
    EXPECT_EQ(columns, (std::vector<std::int64_t>{0, 5, 20, 30}));
    EXPECT_EQ(finder.Separate(6).size(), 2U) << "those at 20 and 30";
}

TEST(ColumnSpans, TellInWhichColumnsALineStandsAlone) {
    SampleStore store;
    store.AddPlot();
    const double nan = std::nan("");
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<Point> points = {{1.1, nan}, {1.5, 7},         {1.9, nan}, {4.5, 1},
                                       {5.5, 2},   {7.5, nan},       {9.5, 3},   {10.2, nan},
                                       {10.4, 4},  {10.6, nan},      {12.5, 5},  {13.5, infinity},
                                       {14.5, 6},  {14.7, infinity}, {20.5, nan}};
    for (const Point& point : points)
        store.AppendPoint(0, point.x, point.y);
    ColumnSpans finder;
    std::vector<Extent> spans(30);
    finder.Find(store, 0, {0, 1}, 0, Joint::Line, spans);
    std::vector<std::pair<std::int64_t, float>> found;
    for (const ColumnSpans::Lone& lone : finder.LoneColumns())
        found.emplace_back(lone.column, lone.value);
    EXPECT_EQ(found, (std::vector<std::pair<std::int64_t, float>>{{1, 7}, {9, 3}, {10, 4}, {12, 5}}));
    finder.Find(store, 0, {0, 1}, 20, Joint::Line, spans);
    EXPECT_TRUE(finder.LoneColumns().empty());
}

TEST(ColumnSpans, TellWhereSamplesCrowd) {
    SampleStore store;
    store.AddPlot();
    for (const double x : {0.0, 0.5, 1.0, 1.2, 1.4, 1.6, 2.5})
        store.AppendPoint(0, x, 1);
    ColumnSpans finder;
    std::vector<Extent> spans(4);
    finder.Find(store, 0, {0, 1}, 0, Joint::Line, spans);
    EXPECT_EQ(std::vector<int>(finder.Crowded().begin(), finder.Crowded().end()),
              (std::vector<int>{0, 1, 0, 0}));
}

TEST(ExtentBetween, IsOfTheSamplesInATimeSpanBothEndsIncluded) {
    SampleStore store;
    store.AddPlot();
    EXPECT_TRUE(ExtentBetween(store, 0, 0, 10).Empty());
    for (int i = 0; i <= 10; ++i)
        store.AppendPoint(0, i, i);
    EXPECT_EQ(ExtentBetween(store, 0, 2, 5), (Extent{2, 5}));
    EXPECT_EQ(ExtentBetween(store, 0, 2.5, 4.5), (Extent{3, 4}));
    EXPECT_TRUE(ExtentBetween(store, 0, 2.5, 2.6).Empty());
    EXPECT_EQ(ExtentBetween(store, 0, -100, 100), (Extent{0, 10}));
}

TEST(ExtentBetween, PassesOverInfiniteSamples) {
    SampleStore store;
    store.AddPlot();
    for (int i = 0; i < 1000; ++i)
        store.AppendPoint(0, i, i % 100 == 50 ? (i % 200 == 50 ? HUGE_VAL : -HUGE_VAL) : i);
    EXPECT_EQ(ExtentBetween(store, 0, 10, 980), (Extent{10, 980}));
    EXPECT_EQ(ExtentBetween(store, 0, 50, 150), (Extent{51, 149}));
    EXPECT_TRUE(ExtentBetween(store, 0, 50, 50).Empty());
}

TEST(ColumnGrid, ColumnsFarAwayAreKeptWithinBounds) {
    const ColumnGrid grid{0, 1e-9};
    EXPECT_EQ(grid.ColumnOf(1e300), ColumnGrid::Limit);
    EXPECT_EQ(grid.ColumnOf(-1e300), -ColumnGrid::Limit);
    EXPECT_EQ(grid.ColumnOf(std::nan("")), 0);
    EXPECT_EQ(grid.ColumnOf(-1e-10), -1);
}

} // namespace
} // namespace tracelet
