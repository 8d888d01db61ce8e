// CPU time of one frame of the strip chart, append and paint of 16 plots, beside QCustomPlot at its best
// settings and beside a widget that only clears itself and draws a grid with labels.

#include "bench/ChartRounds.h"
#include "window/chart/ChartFrame.h"
#include "window/chart/ZelGraph.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>

namespace {

using namespace chart_bench;
using tracelet::ZelGraph;

/// Ground, grid and labels as a widget without any cleverness draws them.
class BareGrid : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(0x10, 0x15, 0x1a));
        const QRect plot = rect().adjusted(44, 20, -12, -36);
        painter.setPen(QColor(0x2b, 0x33, 0x3b));
        for (int i = 0; i <= 10; ++i) {
            const int x = plot.left() + plot.width() * i / 10;
            const int y = plot.top() + plot.height() * i / 10;
            painter.drawLine(x, plot.top(), x, plot.bottom());
            painter.drawLine(plot.left(), y, plot.right(), y);
        }
        painter.setPen(QColor(0xaa, 0xb6, 0xc1));
        for (int i = 0; i <= 10; ++i) {
            const int x = plot.left() + plot.width() * i / 10;
            const int y = plot.top() + plot.height() * i / 10;
            painter.drawText(x - 10, plot.bottom() + 16, QString::number(i * 0.1, 'f', 1));
            painter.drawText(8, y + 4, QString::number(10 - 2 * i));
        }
    }
};

void BareFrame(benchmark::State& bench) {
    BareGrid widget;
    Show(widget);
    for (auto _ : bench)
        widget.repaint();
}

class GraphChart {
public:
    explicit GraphChart(std::int64_t points) {
        for (int i = 0; i < Plots; ++i)
            graph.AddPlot({QString::number(i), PlotColor(i), 0});
        graph.SetChartLength(static_cast<std::int32_t>(points));
        graph.SetXAxisMax(static_cast<double>(points) * Step);
        Show(graph);
    }

    void Append(int count) {
        const std::span<const float> block(TheStream().Next(), static_cast<std::size_t>(count) * Plots);
        graph.AppendSamples(Step, ZelGraph::PlotInterleaved(count, Plots, block));
    }
    void Paint() { graph.repaint(); }
    void SetSpan(double seconds) {
        graph.AxisSetRange(tracelet::XAxis, graph.XAxisMax() - seconds, graph.XAxisMax());
    }
    [[nodiscard]] double Span() const { return graph.XAxisMax() - graph.XAxisMin(); }
    [[nodiscard]] QWidget& Widget() { return graph; }
    [[nodiscard]] QRect Canvas() const { return graph.PlotRect(); }
    [[nodiscard]] static bool IsTrace(QRgb color) {
        return color != tracelet::ChartColor::Ground && color != tracelet::ChartColor::Grid;
    }

private:
    ZelGraph graph;
};

/// Samples that nobody sees.
void GraphAppend(benchmark::State& bench) {
    GraphChart chart(bench.range(0));
    Fill(chart, bench.range(0));
    chart.Widget().hide();
    for (auto _ : bench)
        chart.Append(BlockScans);
}

/// 64 plots that get one scan with its own time each tick, as polled input feeds them: ten seconds at 1 ms.
class PolledGraph {
public:
    static constexpr int Plots = 64;
    static constexpr double Period = 0.001; ///< seconds
    static constexpr int FrameTicks = 16;   ///< of a display at 60 frames a second
    static constexpr int Held = 10001;

    PolledGraph() {
        for (int i = 0; i < Plots; ++i)
            graph.AddPlot({QString::number(i), PlotColor(i), 0});
        graph.SetXAxisMax(10);
        graph.SetChartLength(Held);
        Show(graph);
    }

    void Tick() {
        constexpr int Scans = BlockScans * chart_bench::Plots / Plots;
        if (tick % Scans == 0)
            values = TheStream().Next();
        graph.AppendScan(static_cast<double>(tick) * Period, std::span(values, Plots));
        values += Plots;
        ++tick;
    }
    [[nodiscard]] bool FrameDue() const { return tick % FrameTicks == 0; }
    void Paint() { graph.repaint(); }
    [[nodiscard]] ZelGraph& Graph() { return graph; }

private:
    ZelGraph graph;
    const float* values = nullptr;
    std::int64_t tick = 0;
};

/// A frame while events are handled, as in the window; argument 1: with the read-out and two cursors.
void GraphLive(benchmark::State& bench) {
    GraphChart chart(bench.range(1));
    auto& graph = static_cast<ZelGraph&>(chart.Widget());
    if (bench.range(0) != 0) {
        graph.ShowReadOut(true);
        QKeyEvent step(QEvent::KeyPress, Qt::Key_Left, Qt::ControlModifier);
        QCoreApplication::sendEvent(&graph, &step);
        QKeyEvent other(QEvent::KeyPress, Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
        QCoreApplication::sendEvent(&graph, &other);
    }
    Fill(chart, bench.range(1));
    for (auto _ : bench) {
        chart.Append(BlockScans);
        QCoreApplication::processEvents();
        chart.Paint();
    }
}

/// One tick; argument 1: with its share of the paints.
void GraphTick(benchmark::State& bench) {
    PolledGraph polled;
    for (int i = 0; i < PolledGraph::Held; ++i)
        polled.Tick();
    const bool paints = bench.range(0) != 0;
    polled.Graph().setVisible(paints);
    for (auto _ : bench) {
        polled.Tick();
        if (paints && polled.FrameDue())
            polled.Paint();
    }
}

/// Cost of a piece of work in the first and the last of many minutes.
class Minutes {
public:
    template <typename Work>
    void Measure(Work work) {
        const double start = Cpu();
        work();
        costs.push_back(Cpu() - start);
    }
    /// Median of the pieces measured since the last call, in microseconds.
    [[nodiscard]] double Median() {
        std::nth_element(costs.begin(), costs.begin() + std::ssize(costs) / 2, costs.end());
        const double median = costs[costs.size() / 2];
        costs.clear();
        return median * 1e6;
    }

private:
    [[nodiscard]] static double Cpu() {
        timespec now{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
    }
    std::vector<double> costs;
};

/// Feeds an hour at speed, `perMinute` pieces of work a minute, and tells what the first minute and the last
/// one cost a piece and what the heap gained between. The minutes between may only `feed`.
template <typename Work, typename Feed>
void MeasureHour(benchmark::State& bench, int perMinute, Work work, Feed feed) {
    Minutes minutes;
    const auto minute = [&] {
        for (int i = 0; i < perMinute; ++i)
            minutes.Measure(work);
        return minutes.Median();
    };
    const double first = minute();
    const double heap = HeapInUse();
    for (int i = 0; i < 58 * perMinute; ++i)
        feed();
    const double last = minute();
    bench.counters["first_minute_us"] = first;
    bench.counters["last_minute_us"] = last;
    bench.counters["last_to_first"] = last / first;
    bench.counters["heap_growth_bytes"] = HeapInUse() - heap;
}

/// 16 plots of 100,000 points at 25 kS/s, ten frames a second, for an hour; a piece is a frame.
void GraphHour(benchmark::State& bench) {
    for (auto _ : bench) {
        GraphChart chart(bench.range(0));
        Fill(chart, bench.range(0));
        const auto frame = [&] {
            chart.Append(BlockScans);
            chart.Paint();
        };
        MeasureHour(bench, 600, frame, frame);
    }
}

/// The polled chart for an hour; a piece is the ticks of one frame.
void GraphTickHour(benchmark::State& bench) {
    for (auto _ : bench) {
        PolledGraph polled;
        for (int i = 0; i < 2 * PolledGraph::Held; ++i)
            polled.Tick();
        const auto ticks = [&] {
            for (int i = 0; i < PolledGraph::FrameTicks; ++i)
                polled.Tick();
        };
        MeasureHour(
            bench, 3750,
            [&] {
                ticks();
                polled.Paint();
            },
            ticks);
    }
}

constexpr auto& GraphScroll = Scroll<GraphChart>;
constexpr auto& GraphRedraw = Redraw<GraphChart>;
constexpr auto& GraphResize = Resize<GraphChart>;
constexpr auto& GraphMemory = Memory<GraphChart>;
constexpr auto& GraphShift = Shift<GraphChart>;

BENCHMARK(BareFrame)->Apply(Measured);
BENCHMARK(GraphScroll)->Apply(Sizes);
BENCHMARK(GraphRedraw)->Apply(Sizes);
BENCHMARK(GraphResize)->Apply(Large);
BENCHMARK(GraphAppend)->Apply(Sizes);
BENCHMARK(GraphTick)->Arg(0)->Arg(1)->Apply(Measured)->Unit(benchmark::kMicrosecond);
BENCHMARK(GraphLive)->ArgsProduct({{0, 1}, {100'000, 1'000'000}})->Apply(Measured);
BENCHMARK(GraphMemory)->Apply(Once);
BENCHMARK(GraphShift)->Apply(Once);
BENCHMARK(GraphHour)->Apply(Once);
BENCHMARK(GraphTickHour)->Iterations(1)->Apply(Measured);

} // namespace

int main(int argc, char** argv) {
    return chart_bench::Main(argc, argv);
}
