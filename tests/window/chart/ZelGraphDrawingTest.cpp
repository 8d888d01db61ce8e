#include "core/base/Convert.h"
#include "window/chart/ZelGraph.h"

#include <QImage>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace tracelet {
namespace {

constexpr std::uint32_t Green = 0x00ff00;
constexpr double MarkDistance = 24; ///< samples so many columns apart are marked
constexpr int SignReach = 4;        ///< columns beside one that decide which signs it has
constexpr std::int64_t SignPeriod = 16;

/// Pixels {column, row} of the plot area, or those that a plain renderer finds.
using PixelSet = std::set<std::pair<int, int>>;

PixelSet GreenPixels(ZelGraph& graph) {
    const QImage image = graph.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRect area = graph.PlotRect();
    PixelSet found;
    for (int y = 0; y < area.height(); ++y)
        for (int x = 0; x < area.width(); ++x)
            if (image.pixel(area.left() + x, area.top() + y) == qRgb(0, 255, 0))
                found.emplace(x, y);
    return found;
}

/// Draws every sample, segment by segment, and knows which pixels are too close to call: those whose edge a
/// segment touches within rounding.
class PlainRenderer {
public:
    PlainRenderer(const ZelGraph& source, int axis)
        : graph(source), area(graph.PlotRect()), top(graph.AxisMax(axis)),
          perUnit((area.height() - 1) / (graph.AxisMax(axis) - graph.AxisMin(axis))),
          width((graph.XAxisMax() - graph.XAxisMin()) / area.width()),
          firstColumn(static_cast<std::int64_t>(std::ceil(graph.XAxisMax() / width - 1e-6)) - area.width()) {}

    void Line(QPointF a, QPointF b) {
        const int from = std::max(-SignReach, ColumnOf(a.x()) - 1);
        const int to = std::min(area.width() - 1 + SignReach, ColumnOf(b.x()) + 1);
        for (int column = from; column <= to; ++column) {
            const double left = std::max(a.x(), Edge(column));
            const double right = std::min(b.x(), Edge(column + 1));
            if (left > right)
                continue;
            const bool touches = right - left <= 1e-9 * width && b.x() > a.x();
            Rows(column, At(a, b, left), At(a, b, right), touches);
        }
    }
    void Point(QPointF point) {
        const int column = ColumnOf(point.x());
        if (column >= -SignReach && column < area.width() + SignReach)
            Rows(column, point.y(), point.y(), false);
    }
    void Mark(QPointF point) {
        const int row = RowOf(point.y());
        const int column = ColumnOf(point.x());
        for (int x = column - 1; x <= column + 1; ++x)
            for (int y = row - 1; y <= row + 1; ++y)
                Add(drawn, x, y);
    }

    [[nodiscard]] double Spacing(QPointF a, QPointF b) const { return (b.x() - a.x()) / width; }

    void Compare(const PixelSet& found, const std::string& name) {
        Signs(above, 0, 1);
        Signs(below, area.height() - 1, -1);
        ASSERT_FALSE(drawn.empty()) << name;
        int missing = 0;
        int surplus = 0;
        for (const auto& pixel : drawn)
            missing += !found.contains(pixel) && !doubtful.contains(pixel) ? 1 : 0;
        for (const auto& pixel : found)
            surplus += !drawn.contains(pixel) && !doubtful.contains(pixel) ? 1 : 0;
        EXPECT_EQ(missing, 0) << name << ", of " << drawn.size();
        EXPECT_EQ(surplus, 0) << name << ", of " << drawn.size();
        EXPECT_LT(doubtful.size(), drawn.size() / 3 + 30) << name;
    }

private:
    [[nodiscard]] double Edge(int column) const { return static_cast<double>(firstColumn + column) * width; }
    [[nodiscard]] int ColumnOf(double x) const {
        return static_cast<int>(
            std::clamp(std::floor(x / width) - static_cast<double>(firstColumn), -9.0, 1e5));
    }
    [[nodiscard]] double Height(double y) const { return (top - y) * perUnit + 0.5; }
    [[nodiscard]] int RowOf(double y) const { return static_cast<int>(std::floor(Height(y))); }
    static double At(QPointF a, QPointF b, double x) {
        return b.x() > a.x() ? a.y() + (b.y() - a.y()) * (x - a.x()) / (b.x() - a.x()) : a.y();
    }
    void Add(PixelSet& pixels, int column, int row) const {
        if (column >= 0 && column < area.width() && row >= 0 && row < area.height())
            pixels.emplace(column, row);
    }
    void Rows(int column, double y1, double y2, bool touches) {
        const double upper = Height(std::max(y1, y2));
        const double lower = Height(std::min(y1, y2));
        for (int row = static_cast<int>(std::floor(upper)); row <= static_cast<int>(std::floor(lower)); ++row)
            Add(touches ? doubtful : drawn, column, row);
        Leave(above, column, -upper, touches);
        Leave(below, column, lower - area.height(), touches);
        for (const double end : {upper, lower}) {
            const double next = std::floor(end + 0.5);
            if (std::abs(end - next) < 1e-3) {
                Add(doubtful, column, static_cast<int>(next));
                Add(doubtful, column, static_cast<int>(next) - 1);
            }
        }
    }

    enum class Away { No, Perhaps, Surely };

    /// Notes a column whose trace goes `beyond` an edge.
    void Leave(std::map<int, Away>& edge, int column, double beyond, bool touches) {
        const bool close = std::abs(beyond) < 1e-3;
        if (beyond > 0 || close)
            edge[column] = std::max(edge[column], touches || close ? Away::Perhaps : Away::Surely);
    }

    /// Arrowheads at an edge where the trace leaves it and at regular times while it stays away; rows are
    /// counted from the edge.
    void Signs(std::map<int, Away> away, int edge, int inwards) {
        for (int column = -SignReach + 1; column < area.width() + SignReach; ++column) {
            const Away before = away[column - 1];
            const bool due = (firstColumn + column) % SignPeriod == 0;
            if (away[column] == Away::No || (before == Away::Surely && !due))
                continue;
            const bool sure = away[column] == Away::Surely && (due || before == Away::No);
            for (int row = 0; row < SignReach; ++row)
                for (int x = column - row; x <= column + row; ++x)
                    Add(sure ? drawn : doubtful, x, edge + inwards * row);
        }
    }

    const ZelGraph& graph;
    QRect area;
    double top;
    double perUnit;
    double width;
    std::int64_t firstColumn;
    PixelSet drawn;
    PixelSet doubtful;
    std::map<int, Away> above; ///< by column
    std::map<int, Away> below;
};

/// What drawing every held sample of plot 0 must cover.
void ExpectAllSamplesDrawn(ZelGraph& graph, const std::string& name) {
    PlainRenderer plain(graph, VoltageAxis);
    const std::int64_t count = graph.PointCount(0);
    for (std::int64_t i = 0; i < count; ++i) {
        const QPointF here = graph.PointAt(0, i);
        plain.Point(here);
        if (i > 0)
            plain.Line(graph.PointAt(0, i - 1), here);
        const bool apart = (i == 0 || plain.Spacing(graph.PointAt(0, i - 1), here) >= MarkDistance) &&
                           (i + 1 == count || plain.Spacing(here, graph.PointAt(0, i + 1)) >= MarkDistance);
        if (apart)
            plain.Mark(here);
    }
    plain.Compare(GreenPixels(graph), name);
}

struct Data {
    const char* name;
    std::function<float(int)> valueAt;
};

std::vector<Data> DataKinds() {
    static std::mt19937 random(5);
    static std::normal_distribution<float> noise;
    return {{"noise", [](int) { return 2 * noise(random); }},
            {"sine", [](int i) { return 8 * static_cast<float>(std::sin(i * 0.01)); }},
            {"square", [](int i) { return i / 100 % 2 == 0 ? -7.3F : 6.1F; }},
            {"spikes", [](int i) { return i % 1009 == 500 ? 9.5F : 0.1F; }},
            {"ramp beyond the axis", [](int i) { return static_cast<float>(i % 37) * 0.9F - 17; }}};
}

class ZelGraphDrawing : public testing::Test {
protected:
    ZelGraphDrawing() {
        graph.resize(500, 300);
        graph.AddPlot({QStringLiteral("AI 0"), Green, 0, VoltageAxis});
        graph.show();
    }
    /// A plot of each line style but the first.
    void AddStyles() {
        for (std::int32_t style = 1; style < 5; ++style)
            graph.AddPlot(
                {QStringLiteral("AI"), 0x4080c0U + static_cast<std::uint32_t>(style), style, VoltageAxis});
    }
    void Append(int from, int count, double step, const std::function<float(int)>& valueAt) {
        const int plots = graph.PlotCount();
        std::vector<float> block;
        for (int i = 0; i < count * plots; ++i)
            block.push_back(valueAt(from + i / plots));
        graph.AppendSamples(step, ZelGraph::PlotInterleaved(count, plots, std::span<const float>(block)));
    }
    ZelGraph graph;
};

TEST_F(ZelGraphDrawing, CoversThePixelsOfEverySampleWhateverTheWindowsLength) {
    for (const Data& data : DataKinds()) {
        graph.ClearData();
        graph.SetNextX(0);
        Append(0, 12'000, 0.001, data.valueAt);
        for (const auto& [low, high] : {std::pair{0.0, 12.0},
                                        {-3.0, 40.0},
                                        {2.0, 12.0},
                                        {5.0, 6.0},
                                        {7.001, 7.05},
                                        {3.1, 3.1137},
                                        {4.0, 4.004}}) {
            graph.AxisSetRange(XAxis, low, high);
            ExpectAllSamplesDrawn(graph, std::string(data.name) + " " + std::to_string(low));
        }
    }
}

TEST_F(ZelGraphDrawing, CoversThePixelsOfSamplesWithTimesOfTheirOwn) {
    std::mt19937 random(8);
    std::exponential_distribution<double> gap(400);
    for (const Data& data : DataKinds()) {
        graph.ClearData();
        graph.AxisSetRange(XAxis, 0, 10);
        double x = 0;
        for (int i = 0; i < 4000; ++i, x += gap(random))
            graph.AddPoint(0, x, static_cast<double>(data.valueAt(i)));
        for (const auto& [low, high] : {std::pair{0.0, 10.0}, {2.0, 3.0}, {1.5, 1.52}}) {
            graph.AxisSetRange(XAxis, low, high);
            ExpectAllSamplesDrawn(graph, data.name);
        }
    }
}

TEST_F(ZelGraphDrawing, PaintedPieceByPieceEqualsPaintedAtOnce) {
    std::mt19937 random(2);
    std::normal_distribution<float> noise;
    AddStyles();
    graph.SetChartLength(3000);
    graph.AxisSetRange(XAxis, 0, 2);
    for (int frame = 0; frame < 60; ++frame) {
        Append(frame * 137, 137, 0.001,
               [&](int) { return 3 * noise(random) * (random() % 50 == 0 ? 3 : 1); });
        const QImage pieces = graph.grab().toImage();
        if (frame % 6 != 0)
            continue;
        graph.SetPlot(0, graph.Plot(0)); // draws everything anew
        ASSERT_EQ(pieces, graph.grab().toImage()) << frame;
    }
}

TEST_F(ZelGraphDrawing, PaintedPointByPointEqualsPaintedAtOnceWithMarksAndFewPoints) {
    std::mt19937 random(2);
    std::uniform_real_distribution<double> value(-9, 9);
    std::uniform_real_distribution<double> gap(0, 0.3);
    AddStyles();
    graph.AddPlot({QStringLiteral("DI"), 0xffff, 0, DigitalAxis});
    graph.SetChartLength(17);
    const double odd[] = {NAN, NAN, HUGE_VAL, -HUGE_VAL};
    double x = 0;
    for (int point = 0; point < 200; ++point, x += gap(random)) {
        for (int plot = 0; plot < 5; ++plot)
            graph.AddPoint(plot, x, point % 3 == plot % 3 ? odd[random() % 4] : value(random));
        graph.AddPoint(5, x + 0.01, std::floor(value(random)) + 10);
        const QImage pieces = graph.grab().toImage();
        graph.SetPlot(0, graph.Plot(0));
        ASSERT_EQ(pieces, graph.grab().toImage()) << point;
    }
}

/// Shift, in columns, that best maps the earlier plot area onto the later one, and the pixels of the trace
/// that differ then.
std::pair<int, int> ShiftedDifference(const PixelSet& before, const PixelSet& after, int columns, int quiet) {
    int best = 0;
    int least = 1 << 30;
    for (int shift = 0; shift < columns; ++shift) {
        int different = 0;
        for (const auto& [x, y] : before)
            if (x - shift >= 0)
                different += after.contains({x - shift, y}) ? 0 : 1;
        for (const auto& [x, y] : after)
            if (x + shift < columns - quiet)
                different += before.contains({x + shift, y}) ? 0 : 1;
        if (different < least) {
            least = different;
            best = shift;
        }
    }
    return {best, least};
}

TEST_F(ZelGraphDrawing, ScrollingMovesTheTraceWithoutChangingAPixel) {
    std::mt19937 random(4);
    std::normal_distribution<float> noise;
    const auto spiky = [&](int) { return noise(random) * (random() % 1000 == 0 ? 2 : 1); };
    graph.resize(200, 120);
    graph.AxisSetRange(XAxis, 0, 10);
    Append(0, 40'000, 0.0003, spiky);
    for (const int scans : {100, 1234, 2500, 777}) {
        for (std::int32_t style = 0; style < 5; ++style) {
            graph.SetPlot(0, {QStringLiteral("AI 0"), Green, style, VoltageAxis});
            const PixelSet before = GreenPixels(graph);
            Append(0, scans, 0.0003, spiky);
            const PixelSet after = GreenPixels(graph);
            // The newest columns still change with those behind them.
            const auto [shift, different] = ShiftedDifference(before, after, graph.PlotRect().width(), 4);
            EXPECT_EQ(different, 0) << scans << " scans moved by " << shift << ", style " << style;
        }
    }
}

TEST_F(ZelGraphDrawing, SpikeOfOneSampleInTenMillionShowsAtEveryZoom) {
    constexpr int block = 100'000;
    constexpr int spike = 6'543'210;
    std::vector<float> values(block, 0.0F);
    graph.SetXAxisMax(10);
    for (int done = 0; done < 10'000'000; done += block) {
        values.assign(block, 0.0F);
        if (spike / block == done / block)
            values[spike % block] = 8.0F;
        graph.AppendSamples(1e-6, ZelGraph::PlotInterleaved(block, 1, std::span<const float>(values)));
    }
    const double x = spike * 1e-6;
    for (double span = 10; span > 3e-6; span /= 3) {
        graph.AxisSetRange(XAxis, x - 0.4 * span, x + 0.6 * span);
        const double row = 2.0 * (graph.PlotRect().height() - 1) / 20.0 + 0.5;
        const bool marked = span / graph.PlotRect().width() * MarkDistance <= 1e-6;
        for (std::int32_t style = 0; style < 5; ++style) {
            graph.SetPlot(0, {QStringLiteral("AI 0"), Green, style, VoltageAxis});
            int highest = 1 << 30;
            for (const auto& pixel : GreenPixels(graph))
                highest = std::min(highest, pixel.second);
            EXPECT_EQ(highest, static_cast<int>(std::floor(row)) - (marked ? 1 : 0)) << span << ", " << style;
        }
    }
}

TEST_F(ZelGraphDrawing, DigitalLinesAreDrawnAsSteps) {
    graph.SetPlot(0, {QStringLiteral("DI 0:0"), Green, 0, DigitalAxis});
    graph.AddPoint(0, 0, 0);
    graph.AddPoint(0, 4, 1);
    graph.AddPoint(0, 8, 0);
    graph.AddPoint(0, 10, 0);
    const QRect area = graph.PlotRect();
    const PixelSet found = GreenPixels(graph);
    const auto rowOf = [&](double y) {
        return static_cast<int>(std::floor((29 - y) * (area.height() - 1) / 30.0 + 0.5));
    };
    const auto columnOf = [&](double x) { return static_cast<int>(x / 10 * area.width()); };
    for (const auto& [x, y] :
         {std::pair{0.5, 0.0}, {3.9, 0.0}, {4.1, 1.0}, {7.9, 1.0}, {8.1, 0.0}, {9.9, 0.0}}) {
        const int column = columnOf(x);
        EXPECT_TRUE(found.contains({column, rowOf(y)})) << x;
        EXPECT_FALSE(found.contains({column, rowOf(1 - y)})) << x;
    }
    for (int row = rowOf(1); row <= rowOf(0); ++row)
        EXPECT_TRUE(found.contains({columnOf(4.0), row})) << "the edge is upright";
}

TEST_F(ZelGraphDrawing, LaterPlotsLieOverEarlierOnes) {
    graph.AddPlot({QStringLiteral("AI 1"), 0xff, 0, VoltageAxis});
    const float values[] = {3, 3};
    graph.AppendScan(0, values);
    graph.AppendScan(10, values);
    EXPECT_LT(GreenPixels(graph).size(), 10U);
    graph.SetPlotVisible(1, false);
    EXPECT_GT(GreenPixels(graph).size(), 100U);
}

TEST_F(ZelGraphDrawing, LinesAreAsThickAsTheDisplaysScaleAsks) {
    const double scale = graph.devicePixelRatioF();
    const int thickness = std::max(1, CLng(scale));
    graph.AddPoint(0, 0, -5);
    graph.AddPoint(0, 5, -5);
    graph.AddPoint(0, 5, 5);
    graph.AddPoint(0, 10, 5);
    graph.grab(); // lets the layout settle
    QImage image = graph.grab().toImage().convertToFormat(QImage::Format_RGB32);
    image.setDevicePixelRatio(1);
    const QRect area = graph.PlotRect();
    EXPECT_EQ(image.width(), static_cast<int>(std::floor(graph.width() * scale)));
    const auto inked = [&](double x, double y) {
        return image.pixel(static_cast<int>(x * scale), static_cast<int>(y * scale)) == qRgb(0, 255, 0);
    };
    int rows = 0;
    int columns = 0;
    for (double y = area.top(); y < area.center().y(); y += 1 / scale)
        rows += inked(area.left() + 0.75 * area.width(), y) ? 1 : 0;
    for (double x = area.left(); x < area.right(); x += 1 / scale)
        columns += inked(x, area.center().y()) ? 1 : 0;
    EXPECT_EQ(rows, thickness);
    EXPECT_EQ(columns, thickness);
}

TEST_F(ZelGraphDrawing, TracesOfEveryStyleAreThickerOnALargeChart) {
    for (const auto& [size, thickness] : {std::pair{QSize(1700, 850), 1}, {QSize(3640, 1900), 2}}) {
        graph.resize(size);
        for (std::int32_t style = 0; style < 5; ++style) {
            graph.RemovePlots();
            graph.AddPlot({QStringLiteral("AI 0"), Green, style, VoltageAxis});
            for (const double x : {0.0, 5.0, 10.0})
                graph.AddPoint(0, x, 3);
            std::map<int, int> rows; // by column
            for (const auto& [x, y] : GreenPixels(graph))
                ++rows[x];
            const int middle = graph.PlotRect().width() / 2;
            for (const auto& [x, count] : rows) {
                const bool isMarked = x < 20 || std::abs(x - middle) < 20 || x > 2 * middle - 20; // a sample
                ASSERT_TRUE(isMarked || count == thickness) << style << ' ' << x;
            }
            ASSERT_GT(static_cast<int>(rows.size()), middle / 2);
        }
    }
}

TEST_F(ZelGraphDrawing, SignsTellInThePlotsColourWhereItLeavesItsOwnAxis) {
    graph.SetPlot(0, {QStringLiteral("AI 0"), 0xff0000, 0, VoltageAxis});
    graph.AddPlot({QStringLiteral("AI 1"), Green, 0, TemperatureAxis});
    graph.AddPlot({QStringLiteral("DI 0:0"), Green, 0, DigitalAxis, 1.5});
    graph.AxisSetRange(TemperatureAxis, 20, 30);
    graph.AxisSetRange(DigitalAxis, 20, 25);
    for (int i = 0; i <= 1000; ++i) {
        graph.AddPoint(0, i * 0.01, 5);
        graph.AddPoint(1, i * 0.01, i > 250 && i < 500 ? 40 : 25);
        graph.AddPoint(2, i * 0.01, 1.5); // far below, where zoomed lines often are
    }
    const int height = graph.PlotRect().height();
    const double width = graph.PlotRect().width() / 10.0;
    int above = 0;
    for (const auto& [x, y] : GreenPixels(graph)) {
        EXPECT_LT(y, height - 4) << "no sign of the line";
        if (y != 0)
            continue;
        ++above; // the tip of an arrowhead
        EXPECT_GT(x, 2.5 * width - 5);
        EXPECT_LT(x, 5 * width + 5);
    }
    EXPECT_NEAR(above, 2.5 * width / 16 + 2, 2) << "with the trace itself on its way there and back";
    graph.AxisSetRange(TemperatureAxis, 20, 50);
    for (const auto& [x, y] : GreenPixels(graph))
        EXPECT_GT(y, 10);
}

} // namespace
} // namespace tracelet
