// What stands around the traces: axes at their sides, grid, names of digital lines.

#include "window/chart/ChartFrame.h"
#include "window/chart/ZelGraph.h"

#include <QImage>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace tracelet {
namespace {

constexpr std::uint32_t Green = 0x00FF00;
constexpr std::uint32_t Red = 0x0000FF;

/// Rows between `top` and `bottom` with a pixel of about this colour in the columns `from` to `to`.
std::vector<int> RowsOf(ZelGraph& graph, QColor color, int from, int to) {
    const QImage image = graph.grab().toImage();
    std::vector<int> rows;
    for (int y = 0; y < image.height(); ++y)
        for (int x = from; x < to; ++x) {
            const QColor pixel = image.pixelColor(x, y);
            const int off = std::abs(pixel.red() - color.red()) + std::abs(pixel.green() - color.green()) +
                            std::abs(pixel.blue() - color.blue());
            if (off < 120) {
                rows.push_back(y);
                break;
            }
        }
    return rows;
}

class ZelGraphFrame : public testing::Test {
protected:
    ZelGraphFrame() { graph.resize(600, 400); }

    void AddLine(const char16_t* name, std::uint32_t color, double level) {
        graph.AddPlot({QString::fromUtf16(name), color, 0, DigitalAxis, level});
    }
    [[nodiscard]] int RowOf(double level) const {
        const QRect area = graph.PlotRect();
        const double low = graph.AxisMin(DigitalAxis);
        const double share = (level - low) / (graph.AxisMax(DigitalAxis) - low);
        return area.bottom() - static_cast<int>(share * area.height());
    }

    ZelGraph graph;
};

TEST_F(ZelGraphFrame, FirstAxisStandsAtTheLeftFurtherOnesAtTheRight) {
    graph.AddPlot({{}, 0, 0, VoltageAxis});
    const QRect one = graph.PlotRect();
    EXPECT_GT(one.left(), 600 - one.right());
    graph.AddPlot({{}, 0, 0, TemperatureAxis});
    const QRect two = graph.PlotRect();
    EXPECT_EQ(two.left(), one.left());
    EXPECT_LT(two.right(), one.right() - 20);
}

TEST_F(ZelGraphFrame, LossesAreMarkedWhereTheyAre) {
    constexpr QColor Loss{0xff, 0x52, 0x52};
    graph.AddPlot({{}, 0, 0, VoltageAxis});
    graph.AxisSetRange(XAxis, 0, 10);
    graph.MarkLoss(2, 2, QStringLiteral("a"));
    graph.MarkLoss(5, 5, QStringLiteral("b"));
    graph.MarkLoss(5, 6, QStringLiteral("c")); // goes on
    EXPECT_EQ(graph.LossMarkCount(), 2);
    const QImage image = graph.grab().toImage();
    const QRect area = graph.PlotRect();
    const auto at = [&](double seconds) {
        return image.pixelColor(area.left() + static_cast<int>(std::floor(seconds / 10 * area.width())),
                                area.bottom() - 3);
    };
    EXPECT_EQ(at(2), Loss);
    EXPECT_EQ(at(5), Loss);
    EXPECT_NE(at(5.5), at(6.5)) << "a veil where time went on";
    EXPECT_NE(at(5.5), Loss);
    EXPECT_EQ(at(2.1), at(6.5));
    graph.AxisSetRange(XAxis, 3, 4);
    EXPECT_EQ(graph.LossAt(area.center().x()), QString());
    graph.AxisSetRange(XAxis, 5.4, 5.6);
    EXPECT_EQ(graph.LossAt(area.center().x()), QStringLiteral("c")) << "from end to end";
    graph.ClearLossMarks();
    EXPECT_EQ(graph.LossAt(area.center().x()), QString());
}

TEST_F(ZelGraphFrame, TooSmallAGraphHasNoPlotArea) {
    for (const QSize size : {QSize(72, 400), QSize(600, 52), QSize(1, 1)}) {
        graph.resize(size);
        EXPECT_TRUE(graph.PlotRect().isEmpty()) << size.width() << " x " << size.height();
        (void)graph.grab();
    }
    graph.resize(200, 120);
    EXPECT_FALSE(graph.PlotRect().isEmpty());
}

TEST_F(ZelGraphFrame, LowGraphHasTwoTicksAtLeast) {
    graph.resize(600, 140);
    graph.SetAxisTitle(VoltageAxis, {});
    for (double low = 11; low < 40; low += 0.7) {
        graph.AxisSetRange(VoltageAxis, low, low + 12);
        const int right = graph.PlotRect().left() - 5;
        const std::vector<int> rows = RowsOf(graph, QColor(ChartColor::Label), 0, right);
        ASSERT_FALSE(rows.empty());
        EXPECT_GT(rows.back() - rows.front(), 20) << low;
    }
}

TEST_F(ZelGraphFrame, GridRowsStandAtTheTicks) {
    const QRect area = graph.PlotRect();
    const QImage image = graph.grab().toImage();
    const QColor ground = image.pixelColor(area.left() + 5, area.top() + 5);
    std::vector<int> rows;
    for (int y = area.top() + 2; y < area.bottom() - 2; ++y)
        if (image.pixelColor(area.left() + 5, y) != ground)
            rows.push_back(y);
    ASSERT_EQ(rows.size(), 3U); // -5, 0 and 5 V
    EXPECT_NEAR(rows[1], area.center().y(), 1);
    EXPECT_NEAR(rows[1] - rows[0], area.height() / 4.0, 1.01);
}

/// Columns of the plot area, counted from its left edge, with a grid line from top to bottom.
std::vector<int> GridColumns(ZelGraph& graph) {
    const QImage image = graph.grab().toImage();
    const QRect area = graph.PlotRect();
    std::vector<int> columns;
    for (int x = area.left(); x <= area.right(); ++x) {
        bool line = true;
        for (int y = area.top(); y <= area.bottom(); ++y)
            line = line && image.pixel(x, y) == ChartColor::Grid;
        if (line)
            columns.push_back(x - area.left());
    }
    return columns;
}

TEST_F(ZelGraphFrame, TenDivisionsAreTenDivisions) {
    for (const auto& [start, division] :
         {std::pair{0.0, 1.0}, {0.3, 1.0}, {7.7, 0.04}, {100.0, 25.0}, {2.5, 0.2463157}, {0.0, 1e-7}}) {
        for (const QSize size : {QSize(200, 200), QSize(600, 400), QSize(3000, 1500)}) {
            graph.resize(size);
            graph.SetXAxisMin(start);
            graph.SetXAxisMax(start + 10 * division);
            graph.SetDivision(division);
            const int width = graph.PlotRect().width();
            const std::vector<int> columns = GridColumns(graph);
            ASSERT_GE(columns.size(), 9U) << division << " in " << width;
            EXPECT_LE(columns.size(), 11U) << division << " in " << width;
            for (const int column : columns) {
                const double place = start / division + 10.0 * column / width;
                EXPECT_NEAR(place, std::round(place), 20.0 / width) << division << " in " << width;
            }
        }
    }
}

TEST_F(ZelGraphFrame, GridOfAnAxisOfOtherThanTenDivisionsHasRoundSteps) {
    graph.SetDivision(0.7);
    const std::vector<int> columns = GridColumns(graph);
    ASSERT_GE(columns.size(), 2U);
    const double seconds = 10.0 * (columns[1] - columns[0]) / graph.PlotRect().width();
    EXPECT_NEAR(seconds, 2.0, 0.05);
}

TEST_F(ZelGraphFrame, DivisionsMoveWithTheData) {
    graph.SetDivision(1.0);
    const int plot = graph.AddPlot({{}, 0, 0, VoltageAxis});
    const int width = graph.PlotRect().width();
    double newest = 10;
    for (const double step : {0.0, 0.25, 0.25, 3.1, 0.05}) {
        newest += step;
        graph.AddPoint(plot, newest, NAN);
        for (const int column : GridColumns(graph)) {
            const double time = newest - 10 + 10.0 * column / width;
            EXPECT_NEAR(time, std::round(time), 10.0 / width * 2);
        }
    }
}

/// Widths of the pieces of text in the rows of the time labels, a blank of `gap` columns being an end.
std::vector<int> LabelWidths(ZelGraph& graph, int gap) {
    const QImage image = graph.grab().toImage();
    const int top = graph.PlotRect().bottom() + 6;
    std::vector<int> widths;
    int begin = -1;
    int end = -1;
    for (int x = 0; x < image.width(); ++x) {
        bool ink = false;
        for (int y = top; y < top + 12; ++y)
            ink = ink || image.pixel(x, y) != ChartColor::Ground;
        if (!ink)
            continue;
        if (begin >= 0 && x - end > gap) {
            widths.push_back(end - begin);
            begin = x;
        }
        begin = begin < 0 ? x : begin;
        end = x;
    }
    widths.push_back(end - begin);
    return widths;
}

TEST_F(ZelGraphFrame, TimeLabelsNeverTouch) {
    for (const auto& [start, division] :
         {std::pair{1000.0, 0.01}, {3600.0, 1e-6}, {0.001, 0.0001}, {123.0, 0.25}, {5.0, 0.2463157}})
        for (const bool divided : {true, false})
            for (int width = 220; width < 1000; width += 13) {
                graph.resize(width, 300);
                graph.SetDivision(divided ? division : 0);
                graph.AxisSetRange(XAxis, start, start + 10 * division);
                const std::vector<int> widths = LabelWidths(graph, 4);
                const auto [least, most] = std::ranges::minmax(widths); // all have as many digits
                ASSERT_LT(most, 1.3 * least) << start << " " << division << " in " << width;
            }
}

TEST_F(ZelGraphFrame, UnitIsDrawnBehindTheTitle) {
    graph.SetAxisTitle(VoltageAxis, QStringLiteral("AI Data"));
    const QImage bare = graph.grab().toImage();
    graph.SetAxisUnit(VoltageAxis, QStringLiteral("mA"));
    EXPECT_NE(graph.grab().toImage(), bare);
    EXPECT_EQ(graph.AxisTitle(VoltageAxis), QStringLiteral("AI Data"));
    EXPECT_EQ(graph.AxisUnit(VoltageAxis), QStringLiteral("mA"));
    graph.SetAxisUnit(VoltageAxis, {});
    EXPECT_EQ(graph.grab().toImage(), bare);
}

TEST_F(ZelGraphFrame, DigitalLineIsNamedAtTheMiddleBetweenItsLevels) {
    graph.SetAxisMin(DigitalAxis, -1.0);
    graph.SetAxisMax(DigitalAxis, 3.0);
    AddLine(u"MMMM", Green, 1.0);
    const std::vector<int> rows = RowsOf(graph, Qt::green, 0, graph.PlotRect().left() - 2);
    ASSERT_FALSE(rows.empty());
    EXPECT_NEAR((rows.front() + rows.back()) / 2, RowOf(1.5), 4);
}

TEST_F(ZelGraphFrame, NamesOfVisibleLinesAreAllThere) {
    AddLine(u"MMMM", Green, 0.0);
    AddLine(u"MMMM", Red, 1.5);
    const auto named = [&](QColor color) {
        return !RowsOf(graph, color, 0, graph.PlotRect().left() - 2).empty();
    };
    for (const double end : {29.0, 299.0, 2999.0}) {
        graph.SetAxisMax(DigitalAxis, end);
        EXPECT_TRUE(named(Qt::green)) << end;
        EXPECT_TRUE(named(Qt::red)) << end;
    }
    graph.AxisSetRange(DigitalAxis, 0.9, 1.4); // of the green line only the upper level
    EXPECT_TRUE(named(Qt::green));
    EXPECT_FALSE(named(Qt::red));
    graph.AxisSetRange(DigitalAxis, 1.6, 99);
    EXPECT_FALSE(named(Qt::green));
    EXPECT_TRUE(named(Qt::red));
}

TEST_F(ZelGraphFrame, NamesInDarkColoursAreReadable) {
    AddLine(u"MMMM", 0x400000, 0.0);
    int brightest = 0;
    const QImage image = graph.grab().toImage();
    for (int y = graph.PlotRect().top(); y < graph.PlotRect().bottom(); ++y)
        for (int x = 0; x < graph.PlotRect().left() - 2; ++x)
            brightest = std::max(brightest, qGray(image.pixel(x, y)));
    EXPECT_GT(brightest, 100);
}

TEST_F(ZelGraphFrame, AHintStandsInTheChartUntilTheFirstSample) {
    graph.AddPlot({QStringLiteral("one"), Green, 0, VoltageAxis, 0});
    const QImage plain = graph.grab().toImage();
    graph.SetHint(QStringLiteral("Press Start"));
    EXPECT_EQ(graph.Hint(), QStringLiteral("Press Start"));
    EXPECT_NE(graph.grab().toImage(), plain);
    graph.AddPoint(0, 1.0, std::nan("")); // no trace is seen
    EXPECT_EQ(graph.grab().toImage(), plain);
    graph.ClearData();
    EXPECT_NE(graph.grab().toImage(), plain);
    graph.SetHint({});
    EXPECT_EQ(graph.grab().toImage(), plain);
}

} // namespace
} // namespace tracelet
