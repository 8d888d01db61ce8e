#include "devices/display/ZelGraph.h"

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

/// Rows that the trace covers: the highest and lowest of its pixels, and how many columns have any.
struct Covered {
    int highest = std::numeric_limits<int>::max();
    int lowest = -1;
    int columns = 0;
};

Covered TraceOf(ZelGraph& graph) {
    const QImage image = graph.grab().toImage().convertToFormat(QImage::Format_RGB32);
    Covered covered;
    for (int x = 0; x < image.width(); ++x) {
        bool any = false;
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(x, y) != GreenPixel)
                continue;
            any = true;
            covered.highest = std::min(covered.highest, y);
            covered.lowest = std::max(covered.lowest, y);
        }
        covered.columns += any ? 1 : 0;
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

TEST_F(ZelGraphPixelsTest, LoneSpikeShowsAtEveryZoomWithTheSameHeight) {
    constexpr int Samples = 2000000;
    constexpr int Spike = 1234567;
    std::vector<float> values(Samples, 0.0F);
    values[Spike] = 8.0F;
    graph.SetXAxisMax(Samples);
    Append(values, 1.0);
    graph.AxisSetRange(XAxis, 0, Samples);
    const Covered whole = TraceOf(graph);
    EXPECT_GT(whole.columns, 600);
    for (const double span : {1e6, 1e5, 1e4, 1e3, 100.0, 10.0}) {
        graph.AxisSetRange(XAxis, Spike - span / 3, Spike + span * 2 / 3);
        const Covered covered = TraceOf(graph);
        EXPECT_NEAR(covered.highest, whole.highest, 1) << span;
        EXPECT_NEAR(covered.lowest, whole.lowest, 1) << span;
    }
}

TEST_F(ZelGraphPixelsTest, SpikeKeepsItsHeightWhileItScrolls) {
    std::vector<float> values(100000, 0.0F);
    values[99000] = 8.0F;
    graph.AxisSetRange(XAxis, 0, 50000);
    Append(values, 1.0);
    const int height = TraceOf(graph).highest;
    const std::vector<float> quiet(777, 0.0F);
    for (int frame = 0; frame < 20; ++frame) {
        Append(quiet, 1.0);
        EXPECT_EQ(TraceOf(graph).highest, height) << frame;
    }
}

TEST_F(ZelGraphPixelsTest, SingleSamplesStandAtTheirPlaces) {
    Append({0.0F, 5.0F, 0.0F, -5.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F}, 1.0);
    const Covered all = TraceOf(graph);
    graph.AxisSetRange(XAxis, 1.5, 3.5); // without the upper peak
    const Covered part = TraceOf(graph);
    EXPECT_EQ(part.lowest, all.lowest);
    EXPECT_GT(part.highest, all.highest + 50);
}

TEST_F(ZelGraphPixelsTest, HiddenPlotAndClearedGraphDrawNothing) {
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
