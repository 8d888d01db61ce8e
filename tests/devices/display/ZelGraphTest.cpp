#include "devices/display/ZelGraph.h"

#include "base/RunTimeError.h"

#include <QTest>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace tracelet {
namespace {

std::vector<QPointF> PointsOf(const ZelGraph& graph, int plot) {
    std::vector<QPointF> points;
    for (std::int64_t i = 0; i < graph.PointCount(plot); ++i)
        points.push_back(graph.PointAt(plot, i));
    return points;
}

std::string DescriptionOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const RunTimeError& error) {
        return error.what();
    }
    return "";
}

TEST(ZelGraph, FirstStateIsAnEmptyChartOfTenSecondsAndTenVolts) {
    const ZelGraph graph;
    EXPECT_EQ(graph.PlotCount(), 0);
    EXPECT_EQ(graph.XAxisMin(), 0);
    EXPECT_EQ(graph.XAxisMax(), 10);
    EXPECT_EQ(graph.AxisMin(VoltageAxis), -10);
    EXPECT_EQ(graph.AxisMax(VoltageAxis), 10);
    EXPECT_EQ(graph.AxisMin(DigitalAxis), -1);
    EXPECT_EQ(graph.AxisMax(DigitalAxis), 29);
    EXPECT_EQ(graph.AxisMin(TemperatureAxis), 0);
    EXPECT_EQ(graph.AxisMax(TemperatureAxis), 100);
    EXPECT_TRUE(graph.AxisVisible(XAxis));
    EXPECT_TRUE(graph.AxisVisible(VoltageAxis));
    EXPECT_FALSE(graph.AxisVisible(DigitalAxis));
    EXPECT_FALSE(graph.AxisVisible(TemperatureAxis));
    EXPECT_EQ(graph.ChartLength(), 0);
    EXPECT_EQ(graph.NextX(), 0);
    EXPECT_EQ(graph.MouseMode(), MouseNone);
}

TEST(ZelGraph, BlockIsSpreadOverTheFirstPlots) {
    ZelGraph graph;
    for (int i = 0; i < 3; ++i)
        graph.AddPlot({});
    const std::vector<float> data = {1, 10, 2, 20, 3, 30};
    graph.AppendSamples(0.5, ZelGraph::PlotInterleaved(3, 2, std::span<const float>(data)));
    EXPECT_EQ(PointsOf(graph, 0), (std::vector<QPointF>{{0, 1}, {0.5, 2}, {1, 3}}));
    EXPECT_EQ(PointsOf(graph, 1), (std::vector<QPointF>{{0, 10}, {0.5, 20}, {1, 30}}));
    EXPECT_EQ(graph.PointCount(2), 0);
    EXPECT_EQ(graph.NextX(), 1.5);
}

TEST(ZelGraph, IndexOutsideIsRefused) {
    ZelGraph graph;
    graph.AddPlot({});
    const std::string refused = "Subscript out of range";
    EXPECT_EQ(DescriptionOf([&] { (void)graph.Plot(1); }), refused);
    EXPECT_EQ(DescriptionOf([&] { (void)graph.Plot(-1); }), refused);
    EXPECT_EQ(DescriptionOf([&] { graph.SetPlot(1, {}); }), refused);
    EXPECT_EQ(DescriptionOf([&] { graph.AddPoint(1, 0, 0); }), refused);
    EXPECT_EQ(DescriptionOf([&] { (void)graph.PointAt(0, 0); }), refused);
    EXPECT_EQ(DescriptionOf([&] { (void)graph.AxisMin(4); }), refused);
    EXPECT_EQ(DescriptionOf([&] { graph.SetAxisMax(-1, 0); }), refused);
}

TEST(ZelGraph, NewestPointStandsAtTheRightEdge) {
    ZelGraph graph;
    graph.AddPlot({});
    const float value[] = {1};
    graph.AppendScan(10, value);
    EXPECT_EQ(graph.XAxisMin(), 0);
    graph.AppendScan(12.5, value);
    EXPECT_EQ(graph.XAxisMin(), 2.5);
    EXPECT_EQ(graph.XAxisMax(), 12.5);
    graph.AddPoint(0, 1, 1);
    EXPECT_EQ(graph.XAxisMin(), 1);
    EXPECT_EQ(graph.XAxisMax(), 11);
}

TEST(ZelGraph, ChartLengthKeepsTheNewestPoints) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.SetChartLength(3);
    for (int i = 0; i < 10; ++i)
        graph.AddPoint(0, i, i);
    EXPECT_EQ(PointsOf(graph, 0), (std::vector<QPointF>{{7, 7}, {8, 8}, {9, 9}}));
    graph.SetChartLength(2);
    EXPECT_EQ(graph.PointCount(0), 3); // what is drawn stays until more comes
    graph.AddPoint(0, 10, 10);
    EXPECT_EQ(PointsOf(graph, 0), (std::vector<QPointF>{{9, 9}, {10, 10}}));
}

TEST(ZelGraph, RangeOfEqualReversedOrEndlessEndsIsRefused) {
    ZelGraph graph;
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto& [low, high] :
         {std::pair{1.0, 1.0}, {2.0, 1.0}, {0.0, inf}, {-inf, 0.0}, {nan, 1.0}, {0.0, nan}})
        EXPECT_EQ(DescriptionOf([&] { graph.AxisSetRange(XAxis, low, high); }), "Invalid axis range");
    EXPECT_EQ(graph.XAxisMax(), 10);
}

} // namespace
} // namespace tracelet
