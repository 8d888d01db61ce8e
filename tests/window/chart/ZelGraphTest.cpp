#include "window/chart/ZelGraph.h"

#include "core/base/RunTimeError.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
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
        EXPECT_EQ(DescriptionOf([&, low = low, high = high] { graph.AxisSetRange(XAxis, low, high); }),
                  "Invalid axis range");
    EXPECT_EQ(graph.XAxisMax(), 10);
}

TEST(ZelGraph, RunningTimeGoesOnWhereTheBlockEnds) {
    ZelGraph graph;
    graph.AddPlot({});
    const std::vector<float> data(1000, 1);
    const auto append = [&](double step) {
        graph.AppendSamples(step, ZelGraph::PlotInterleaved(1000, 1, std::span<const float>(data)));
    };
    for (int i = 0; i < 100; ++i)
        append(1e-4);
    EXPECT_EQ(graph.NextX(), 100'000 * 1e-4) << "no error piles up";
    append(1e-3);
    EXPECT_DOUBLE_EQ(graph.NextX(), 11);
    graph.SetNextX(5);
    EXPECT_EQ(graph.NextX(), 5);
    append(1e-3);
    EXPECT_EQ(graph.NextX(), 6);
    EXPECT_EQ(graph.PointAt(0, 101'000).x(), 5);
}

TEST(ZelGraph, RunningTimeGoesOnWithoutPlots) {
    ZelGraph graph;
    const std::vector<std::int32_t> data(10);
    graph.AppendSamples(0.5, ZelGraph::PlotInterleaved(5, 2, std::span<const std::int32_t>(data)));
    EXPECT_EQ(graph.NextX(), 2.5);
}

TEST(ZelGraph, ClearedGraphKeepsPlotsAxesRunningTimeAndMode) {
    ZelGraph graph;
    graph.AddPlot({QStringLiteral("AI 0"), 0xff, 2, VoltageAxis});
    graph.SetMouseMode(MouseXPan);
    const std::vector<float> data(200, 1);
    graph.AppendSamples(0.1, ZelGraph::PlotInterleaved(200, 1, std::span<const float>(data)));
    graph.ClearData();
    EXPECT_EQ(graph.PointCount(0), 0);
    EXPECT_EQ(graph.PlotCount(), 1);
    EXPECT_EQ(graph.Plot(0).name, QStringLiteral("AI 0"));
    EXPECT_DOUBLE_EQ(graph.XAxisMax(), 19.9);
    EXPECT_EQ(graph.NextX(), 20);
    EXPECT_EQ(graph.MouseMode(), MouseXPan);
    graph.AppendSamples(0.1, ZelGraph::PlotInterleaved(1, 1, std::span<const float>(data)));
    EXPECT_EQ(graph.PointAt(0, 0).x(), 20) << "goes on at the right edge";
    EXPECT_EQ(graph.XAxisMax(), 20);
}

TEST(ZelGraph, BlockBeforeTheAxisMovesItToItsStart) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.AxisSetRange(XAxis, 90, 100);
    const std::vector<float> data(5, 1);
    graph.AppendSamples(1, ZelGraph::PlotInterleaved(5, 1, std::span<const float>(data)));
    EXPECT_EQ(graph.XAxisMin(), 0);
    EXPECT_EQ(graph.XAxisMax(), 10);
}

TEST(ZelGraph, BlockLongerThanTheAxisEndsAtItsRightEdge) {
    ZelGraph graph;
    graph.AddPlot({});
    const std::vector<float> data(1001, 1);
    graph.AppendSamples(0.1, ZelGraph::PlotInterleaved(1001, 1, std::span<const float>(data)));
    EXPECT_EQ(graph.XAxisMax(), 100);
    EXPECT_EQ(graph.XAxisMin(), 90);
}

TEST(ZelGraph, EndsMayBeWrittenInEitherOrder) {
    ZelGraph graph;
    graph.SetXAxisMin(50);
    EXPECT_EQ(graph.XAxisMin(), 50);
    EXPECT_EQ(graph.XAxisMax(), 10);
    EXPECT_FALSE(graph.grab().isNull());
    graph.SetXAxisMax(60);
    graph.SetXAxisMax(0);
    graph.SetXAxisMin(-10);
    EXPECT_EQ(graph.XAxisMin(), -10);
    EXPECT_EQ(graph.XAxisMax(), 0);
    const float value[] = {1};
    graph.AddPlot({});
    graph.AppendScan(1, value);
    EXPECT_EQ(graph.XAxisMin(), -9);
}

TEST(ZelGraph, SamplesThatDoNotFillTheirBlockAreRefused) {
    ZelGraph graph;
    graph.AddPlot({});
    const std::vector<float> data(7);
    for (const auto& [count, channels] :
         {std::pair{4, 2}, {8, 1}, {-1, 2}, {1, -2}, {2'000'000'000, 2'000'000'000}})
        EXPECT_EQ(DescriptionOf([&, count = count, channels = channels] {
                      (void)ZelGraph::PlotInterleaved(count, channels, std::span<const float>(data));
                  }),
                  "Overflow");
    SampleBlock block = ZelGraph::PlotInterleaved(3, 2, std::span<const float>(data));
    block.countPerChannel = 4;
    EXPECT_EQ(DescriptionOf([&] { graph.AppendSamples(1, block); }), "Overflow");
    const double inf = std::numeric_limits<double>::infinity();
    for (const double step : {inf, -inf, -1.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(DescriptionOf([&] {
                      graph.AppendSamples(step,
                                          ZelGraph::PlotInterleaved(3, 2, std::span<const float>(data)));
                  }),
                  "Overflow");
    EXPECT_EQ(graph.PointCount(0), 0);
    graph.AppendSamples(1, ZelGraph::PlotInterleaved(0, 3, std::span<const float>()));
    EXPECT_EQ(graph.NextX(), 0);
}

TEST(ZelGraph, PointsAtNoTimeAreLeftOut) {
    ZelGraph graph;
    graph.AddPlot({});
    const float value[] = {1};
    for (const double x :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        graph.AddPoint(0, x, 1);
        graph.AppendScan(x, value);
    }
    EXPECT_EQ(graph.PointCount(0), 0);
    EXPECT_EQ(graph.XAxisMax(), 10);
}

TEST(ZelGraph, PlotsKeepTheirSamplesWhenTheyAreSetAnew) {
    ZelGraph graph;
    graph.AddPlot({QStringLiteral("a"), 1, 0, VoltageAxis});
    graph.AddPoint(0, 1, 2);
    graph.SetPlot(0, {QStringLiteral("b"), 0x80000016, 4, TemperatureAxis});
    EXPECT_EQ(graph.Plot(0).name, QStringLiteral("b"));
    EXPECT_EQ(graph.Plot(0).color, 0x80000016U);
    EXPECT_EQ(graph.Plot(0).lineStyle, 4);
    EXPECT_EQ(graph.Plot(0).axis, TemperatureAxis);
    EXPECT_EQ(PointsOf(graph, 0), (std::vector<QPointF>{{1, 2}}));
    graph.RemovePlots();
    EXPECT_EQ(graph.PlotCount(), 0);
    EXPECT_EQ(graph.AddPlot({}), 0);
    EXPECT_EQ(graph.PointCount(0), 0);
    EXPECT_TRUE(graph.PlotVisible(0));
}

TEST(ZelGraph, AxesShowWhenAVisiblePlotUsesThem) {
    ZelGraph graph;
    const auto shown = [&] {
        return std::vector<bool>{graph.AxisVisible(1), graph.AxisVisible(2), graph.AxisVisible(3)};
    };
    EXPECT_EQ(shown(), (std::vector<bool>{true, false, false}));
    const int digital = graph.AddPlot({{}, 0, 0, DigitalAxis});
    EXPECT_EQ(shown(), (std::vector<bool>{false, true, false}));
    const int temperature = graph.AddPlot({{}, 0, 0, TemperatureAxis});
    EXPECT_EQ(shown(), (std::vector<bool>{false, true, true}));
    graph.AddPlot({{}, 0, 0, VoltageAxis});
    EXPECT_EQ(shown(), (std::vector<bool>{true, true, true}));
    graph.SetPlotVisible(temperature, false);
    graph.SetPlotVisible(digital, false);
    EXPECT_EQ(shown(), (std::vector<bool>{true, false, false}));
    graph.SetPlotVisible(digital, true);
    graph.SetAxisVisible(DigitalAxis, false);
    EXPECT_EQ(shown(), (std::vector<bool>{true, false, false}));
    graph.SetAxisVisible(DigitalAxis, true);
    EXPECT_EQ(shown(), (std::vector<bool>{true, true, false}));
}

TEST(ZelGraph, AutomaticTimeAxisSpansTheHeldData) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.SetAxisAutoScale(XAxis, true);
    EXPECT_EQ(graph.XAxisMax(), 10) << "nothing held yet";
    graph.SetChartLength(5);
    for (int i = 0; i <= 20; ++i)
        graph.AddPoint(0, 100 + i, 1);
    EXPECT_EQ(graph.XAxisMin(), 116);
    EXPECT_EQ(graph.XAxisMax(), 120);
    EXPECT_TRUE(graph.AxisAutoScale(XAxis));
    graph.SetAxisAutoScale(XAxis, false);
    graph.AddPoint(0, 121, 1);
    EXPECT_EQ(graph.XAxisMin(), 117) << "goes on from the range it had";
}

TEST(ZelGraph, AutomaticTimeAxisPassesOverHiddenPlots) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.AddPlot({});
    graph.SetAxisAutoScale(XAxis, true);
    graph.AddPoint(0, 1, 1);
    graph.AddPoint(0, 3, 1);
    graph.AddPoint(1, 50, 1);
    EXPECT_EQ(graph.XAxisMax(), 50);
    graph.SetPlotVisible(1, false);
    EXPECT_EQ(graph.XAxisMin(), 1);
    EXPECT_EQ(graph.XAxisMax(), 3);
}

TEST(ZelGraph, AutomaticAxisKeepsItsFlagWhenEndsAreWritten) {
    ZelGraph graph;
    graph.SetAxisAutoScale(XAxis, true);
    graph.SetXAxisMin(1);
    graph.SetXAxisMax(2);
    EXPECT_TRUE(graph.AxisAutoScale(XAxis));
    graph.AxisSetRange(XAxis, 3, 4);
    EXPECT_FALSE(graph.AxisAutoScale(XAxis));
}

TEST(ZelGraph, AutomaticValueAxisFitsTheVisibleData) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.AddPlot({});
    graph.AddPlot({{}, 0, 0, TemperatureAxis});
    graph.SetAxisAutoScale(VoltageAxis, true);
    for (int i = 0; i <= 10; ++i) {
        const float values[] = {0.3F * static_cast<float>(i % 2), 50, 1000};
        graph.AppendScan(i, values);
    }
    EXPECT_GE(graph.AxisMax(VoltageAxis), 50);
    EXPECT_EQ(graph.AxisMax(TemperatureAxis), 100);
    graph.SetPlotVisible(1, false);
    EXPECT_LE(graph.AxisMin(VoltageAxis), 0);
    EXPECT_GE(graph.AxisMax(VoltageAxis), 0.3);
    EXPECT_LE(graph.AxisMax(VoltageAxis), 1);
    const double held = graph.AxisMax(VoltageAxis);
    const float small[] = {0.2F, 50, 1000};
    graph.AppendScan(10.5, small);
    EXPECT_EQ(graph.AxisMax(VoltageAxis), held) << "no fidgeting";
}

TEST(ZelGraph, AutomaticValueAxisPassesOverInfiniteSamples) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.SetAxisAutoScale(VoltageAxis, true);
    for (int i = 0; i <= 10; ++i)
        graph.AddPoint(0, i, i == 3 ? HUGE_VAL : i == 7 ? -HUGE_VAL : 40.0 + i);
    EXPECT_GE(graph.AxisMax(VoltageAxis), 50);
    EXPECT_LE(graph.AxisMax(VoltageAxis), 100);
    EXPECT_GE(graph.AxisMin(VoltageAxis), 0);
}

TEST(ZelGraph, ColoursResolve) {
    EXPECT_EQ(ResolvedColor(0x0000ff), QColor(255, 0, 0));
    EXPECT_EQ(ResolvedColor(0xff8001), QColor(1, 0x80, 255));
    EXPECT_EQ(ResolvedColor(0x80000016), QColor(0xe3, 0xe3, 0xe3));
    EXPECT_EQ(ResolvedColor(0x80000001), QColor(0xe3, 0xe3, 0xe3));
}

TEST(ZelGraph, TellsOnceThatMemoryIsSpentAndGoesOn) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.SetMemoryBudget(200'000);
    QSignalSpy errors(&graph, &ZelGraph::Error);
    std::vector<float> data(1000);
    for (int block = 0; block < 300; ++block) {
        data.back() = static_cast<float>(block);
        graph.AppendSamples(1e-3, ZelGraph::PlotInterleaved(1000, 1, std::span<const float>(data)));
    }
    ASSERT_EQ(errors.count(), 1);
    EXPECT_EQ(errors[0][1].toString(), QStringLiteral("Out of memory!"));
    EXPECT_GT(graph.PointCount(0), 10'000);
    EXPECT_LE(graph.HeldBytes(), 300'000);
    const QPointF newest = graph.PointAt(0, graph.PointCount(0) - 1);
    EXPECT_EQ(newest.y(), 299);
    EXPECT_DOUBLE_EQ(newest.x(), 299.999);
    graph.SetMemoryBudget(1'000'000'000);
    graph.SetChartLength(0);
    const std::int64_t before = graph.PointCount(0);
    for (int block = 0; block < 100; ++block)
        graph.AppendSamples(1e-3, ZelGraph::PlotInterleaved(1000, 1, std::span<const float>(data)));
    EXPECT_EQ(graph.PointCount(0), before + 100'000) << "a new chart length lifts the bound";
}

TEST(ZelGraph, KeepsThreeQuartersWhenMemoryIsSpent) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.SetMemoryBudget(1'000'000);
    const std::vector<float> data(300'000);
    graph.AppendSamples(1e-3, ZelGraph::PlotInterleaved(300'000, 1, std::span<const float>(data)));
    EXPECT_GT(graph.PointCount(0), 170'000);
    EXPECT_LE(graph.HeldBytes(), 1'000'000);
}

TEST(ZelGraph, MemoryBudgetEndsAtHalfOfTheMachine) {
    ZelGraph graph;
    const std::int64_t half = graph.MemoryBudget();
    graph.SetMemoryBudget(1'000'000);
    EXPECT_EQ(graph.MemoryBudget(), 1'000'000);
    graph.SetMemoryBudget(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(graph.MemoryBudget(), half);
    graph.SetMemoryBudget(-1);
    EXPECT_EQ(graph.MemoryBudget(), 0);
}

TEST(ZelGraph, StartingAnewGivesTheWholeLengthAfterMemoryWasSpent) {
    const std::function<void(ZelGraph&)> ways[] = {[](ZelGraph& graph) { graph.ClearData(); },
                                                   [](ZelGraph& graph) {
                                                       graph.RemovePlots();
                                                       graph.AddPlot({});
                                                   }};
    for (const auto& startAnew : ways) {
        ZelGraph graph;
        graph.AddPlot({});
        graph.SetMemoryBudget(200'000);
        const std::vector<float> data(100'000);
        const SampleBlock block = ZelGraph::PlotInterleaved(100'000, 1, std::span<const float>(data));
        graph.AppendSamples(1e-3, block);
        ASSERT_LT(graph.PointCount(0), 100'000);
        graph.SetMemoryBudget(1'000'000'000);
        startAnew(graph);
        graph.AppendSamples(1e-3, block);
        EXPECT_EQ(graph.PointCount(0), 100'000);
    }
}

TEST(ZelGraph, LengthOfZeroOrLessKeepsEverything) {
    ZelGraph graph;
    graph.AddPlot({});
    for (const std::int32_t length : {0, -5}) {
        graph.SetChartLength(length);
        EXPECT_EQ(graph.ChartLength(), length);
        graph.ClearData();
        for (int i = 0; i < 5000; ++i)
            graph.AddPoint(0, i, i);
        EXPECT_EQ(graph.PointCount(0), 5000);
    }
}

TEST(ZelGraph, PropertiesReachTheSameValues) {
    ZelGraph graph;
    graph.AddPlot({});
    EXPECT_TRUE(graph.setProperty("XAxisMin", 3.0));
    EXPECT_TRUE(graph.setProperty("XAxisMax", 8.0));
    EXPECT_TRUE(graph.setProperty("ChartLength", 77));
    EXPECT_TRUE(graph.setProperty("MouseMode", 7));
    EXPECT_EQ(graph.XAxisMin(), 3);
    EXPECT_EQ(graph.XAxisMax(), 8);
    EXPECT_EQ(graph.ChartLength(), 77);
    EXPECT_EQ(graph.MouseMode(), 7);
    EXPECT_EQ(graph.property("PlotCount"), 1);
}

TEST(ZelGraph, IsReachedByKeyboardAndHasAName) {
    const ZelGraph graph;
    EXPECT_TRUE(graph.focusPolicy() & Qt::TabFocus);
    EXPECT_FALSE(graph.accessibleName().isEmpty());
}

} // namespace
} // namespace tracelet
