// What stands around the traces: axes at their sides, grid, names of digital lines.

#include "devices/display/ChartFrame.h"
#include "devices/display/ZelGraph.h"

#include <QImage>
#include <gtest/gtest.h>

#include <algorithm>
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

TEST_F(ZelGraphFrame, TooSmallAGraphHasNoPlotArea) {
    for (const QSize size : {QSize(72, 400), QSize(600, 52), QSize(1, 1)}) {
        graph.resize(size);
        EXPECT_TRUE(graph.PlotRect().isEmpty()) << size.width() << " x " << size.height();
        (void)graph.grab();
    }
    graph.resize(200, 120);
    EXPECT_FALSE(graph.PlotRect().isEmpty());
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

} // namespace
} // namespace tracelet
