#include "window/chart/ZelGraph.h"

#include <QImage>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace tracelet {
namespace {

constexpr std::uint32_t Green = 0x00FF00;
const QRgb GreenPixel = qRgb(0, 255, 0);
constexpr double Infinity = std::numeric_limits<double>::infinity();
const double NotANumber = std::numeric_limits<double>::quiet_NaN();

/// What the trace covers: the highest and lowest row of its pixels, how many columns have any, the most in
/// one column, and how many columns have as many.
struct Covered {
    int highest = std::numeric_limits<int>::max();
    int lowest = -1;
    int columns = 0;
    int tallest = 0;
    int full = 0;
};

Covered TraceOf(ZelGraph& graph) {
    const QImage image = graph.grab().toImage().convertToFormat(QImage::Format_RGB32);
    Covered covered;
    for (int x = 0; x < image.width(); ++x) {
        int rows = 0;
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(x, y) != GreenPixel)
                continue;
            ++rows;
            covered.highest = std::min(covered.highest, y);
            covered.lowest = std::max(covered.lowest, y);
        }
        covered.columns += rows > 0 ? 1 : 0;
        covered.full = rows > covered.tallest ? 1 : covered.full + (rows == covered.tallest ? 1 : 0);
        covered.tallest = std::max(covered.tallest, rows);
    }
    return covered;
}

class ZelGraphPixelsTest : public testing::Test {
protected:
    ZelGraphPixelsTest() {
        graph.resize(800, 500);
        graph.AddPlot({QStringLiteral("AI 0"), Green, 0, VoltageAxis});
        graph.show();
    }

    void Append(const std::vector<float>& values, double step) {
        graph.AppendSamples(step,
                            ZelGraph::PlotInterleaved(static_cast<std::int32_t>(values.size()), 1, values));
    }

    ZelGraph graph;
};

/// Of every line style.
class ZelGraphStylesTest : public ZelGraphPixelsTest, public testing::WithParamInterface<std::int32_t> {
protected:
    ZelGraphStylesTest() { graph.SetPlot(0, {QStringLiteral("AI 0"), Green, GetParam(), VoltageAxis}); }
};

INSTANTIATE_TEST_SUITE_P(Styles, ZelGraphStylesTest, testing::Range(0, 5));

TEST_P(ZelGraphStylesTest, LoneSpikeShowsAtEveryZoomWithTheSameHeight) {
    constexpr int Samples = 2000000;
    constexpr int Spike = 1234567;
    std::vector<float> values(Samples, 0.0F);
    values[Spike] = 8.0F;
    graph.SetXAxisMax(Samples);
    Append(values, 1.0);
    graph.AxisSetRange(XAxis, 0, Samples);
    const Covered whole = TraceOf(graph);
    EXPECT_GT(whole.columns, GetParam() == 0 ? 600 : 200);
    for (const double span : {1e6, 1e5, 1e4, 1e3, 100.0, 10.0}) {
        graph.AxisSetRange(XAxis, Spike - span / 3, Spike + span * 2 / 3);
        const Covered covered = TraceOf(graph);
        EXPECT_NEAR(covered.highest, whole.highest, 1) << span;
        EXPECT_NEAR(covered.lowest, whole.lowest, 1) << span;
    }
}

TEST_P(ZelGraphStylesTest, SpikesAreDrawnInFullWhileTheyScroll) {
    constexpr int Spikes = 12;
    std::vector<float> values(100000, 0.0F);
    for (std::size_t i = 0; i < Spikes; ++i)
        values[95000 + 373 * i] = 8.0F;
    graph.AxisSetRange(XAxis, 0, 50000);
    Append(values, 1.0);
    const int highest = TraceOf(graph).highest;
    const std::vector<float> quiet(777, 0.0F);
    for (int frame = 0; frame < 20; ++frame) {
        Append(quiet, 1.0);
        const Covered now = TraceOf(graph);
        EXPECT_EQ(now.highest, highest) << frame;
        EXPECT_EQ(now.full, Spikes) << frame;
    }
}

TEST_P(ZelGraphStylesTest, SpikeOnADenseTraceStandsOutAsOnASolidOne) {
    for (const int spike : {50000, 50017, 50029, 50041, 50053, 50071}) {
        std::vector<float> values(100000);
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = 0.4F * static_cast<float>(std::sin(static_cast<double>(i) * 1.7));
        values[static_cast<std::size_t>(spike)] = 6.0F;
        graph.ClearData();
        graph.SetNextX(0);
        graph.AxisSetRange(XAxis, 0, 100000);
        Append(values, 1.0);
        const Covered styled = TraceOf(graph);
        graph.SetPlot(0, {QStringLiteral("AI 0"), Green, 0, VoltageAxis});
        const Covered solid = TraceOf(graph);
        EXPECT_EQ(styled.highest, solid.highest) << spike;
        EXPECT_EQ(styled.tallest, solid.tallest) << spike;
        graph.SetPlot(0, {QStringLiteral("AI 0"), Green, GetParam(), VoltageAxis});
    }
}

TEST_P(ZelGraphStylesTest, SingleValidSampleIsMarked) {
    for (const double odd : {NotANumber, Infinity, -Infinity}) {
        graph.ClearData();
        graph.SetNextX(0);
        const auto gap = static_cast<float>(odd);
        graph.AxisSetRange(VoltageAxis, 4, 6); // shows only the sample in the middle and what is infinite
        Append({0.0F, gap, 5.0F, gap, 0.0F}, 2.0);
        int cells = 0;
        const QImage image = graph.grab().toImage().convertToFormat(QImage::Format_RGB32);
        const QRect area = graph.PlotRect();
        const QPoint middle(area.left() + area.width() * 4 / 10, area.top() + area.height() / 2);
        for (int y = -5; y <= 5; ++y)
            for (int x = -5; x <= 5; ++x)
                cells += image.pixel(middle + QPoint(x, y)) == GreenPixel ? 1 : 0;
        EXPECT_EQ(cells, 9) << odd;
    }
}

TEST_F(ZelGraphPixelsTest, InfiniteSampleIsDrawnAtItsOwnTime) {
    Append({0.0F, 0.0F, std::numeric_limits<float>::infinity(), 0.0F, 0.0F, 0.0F}, 2.0);
    const QImage image = graph.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRect area = graph.PlotRect();
    const int base = TraceOf(graph).lowest - 3;
    std::vector<int> columns;
    for (int x = area.left(); x <= area.right(); ++x)
        if (image.pixel(x, base) == GreenPixel) {
            columns.push_back(x);
            for (int y = area.top(); y <= base; ++y)
                ASSERT_EQ(image.pixel(x, y), GreenPixel) << "up to the edge of the plot area";
        }
    ASSERT_EQ(columns.size(), 1U);
    EXPECT_NEAR(columns.front(), area.left() + area.width() * 4 / 10, 1);
}

TEST_P(ZelGraphStylesTest, SingleSamplesStandAtTheirPlaces) {
    Append({0.0F, 5.0F, 0.0F, -5.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F}, 1.0);
    const Covered all = TraceOf(graph);
    graph.AxisSetRange(XAxis, 1.5, 3.5); // without the upper peak
    const Covered part = TraceOf(graph);
    EXPECT_EQ(part.lowest, all.lowest);
    EXPECT_GT(part.highest, all.highest + 50);
}

TEST_P(ZelGraphStylesTest, HiddenPlotAndClearedGraphDrawNothing) {
    Append({0.0F, 5.0F, 0.0F}, 1.0);
    EXPECT_GT(TraceOf(graph).columns, 0);
    graph.SetPlotVisible(0, false);
    EXPECT_EQ(TraceOf(graph).columns, 0);
    graph.SetPlotVisible(0, true);
    EXPECT_GT(TraceOf(graph).columns, 0);
    graph.ClearData();
    EXPECT_EQ(TraceOf(graph).columns, 0);
}

TEST_F(ZelGraphPixelsTest, LineStylesLeaveDifferentGaps) {
    Append({0.0F, 0.0F}, 10.0);
    int solid = 0;
    for (std::int32_t style = 0; style < 5; ++style) {
        graph.SetPlot(0, {QStringLiteral("AI 0"), Green, style, VoltageAxis});
        const int columns = TraceOf(graph).columns;
        if (style == 0)
            solid = columns;
        else
            EXPECT_LT(columns, solid) << style;
        EXPECT_GT(columns, 50) << style;
    }
    graph.SetPlot(0, {QStringLiteral("AI 0"), Green, 17, VoltageAxis});
    EXPECT_EQ(TraceOf(graph).columns, solid);
}

TEST_F(ZelGraphPixelsTest, OddAxesAndDataAreDrawnSomehow) {
    const std::vector<std::vector<float>> data = {
        {},
        {1.0F},
        {1.0F, 2.0F, 3.0F},
        {1.0F, std::numeric_limits<float>::quiet_NaN(), 3.0F},
        {1.0F, std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(), 3.0F},
        {3e38F, -3e38F, 1e-38F}};
    const std::pair<double, double> ends[] = {
        {0, 10},         {5, 5},           {10, 0},         {0, 1e-9},     {0, 1e12},
        {-1e300, 1e300}, {1e15, 1e15 + 1}, {NotANumber, 1}, {0, Infinity}, {-Infinity, Infinity}};
    for (const auto& values : data) {
        for (const auto& [low, high] : ends) {
            for (const int axis : {XAxis, VoltageAxis}) {
                graph.ClearData();
                graph.SetNextX(0.0);
                graph.AxisSetRange(XAxis, 0, 10);
                graph.AxisSetRange(VoltageAxis, -10, 10);
                Append(values, 1.0);
                try {
                    graph.SetAxisMin(axis, low);
                    graph.SetAxisMax(axis, high);
                } catch (const std::exception&) { // an axis may refuse; what it shows must still be drawn
                }
                EXPECT_FALSE(graph.grab().isNull());
            }
        }
        graph.SetAxisAutoScale(XAxis, true);
        graph.SetAxisAutoScale(VoltageAxis, true);
        EXPECT_FALSE(graph.grab().isNull());
        graph.SetAxisAutoScale(XAxis, false);
        graph.SetAxisAutoScale(VoltageAxis, false);
    }
}

} // namespace
} // namespace tracelet
