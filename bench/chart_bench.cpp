// CPU time of one frame of the strip chart: append 2,500 scans of 16 plots and paint, beside a general
// plotting widget at its best settings and beside a widget that only clears itself and draws a grid with
// labels.

#include "bench/ChartData.h"
#include "devices/display/ZelGraph.h"

#include <QApplication>
#include <QPainter>
#include <benchmark/benchmark.h>
#ifdef TRACELET_BENCH_QCUSTOMPLOT
#include <qcustomplot.h>
#endif

#include <memory>

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

void Show(QWidget& widget) {
    widget.resize(width, height);
    widget.show();
    QApplication::processEvents();
}

std::unique_ptr<ZelGraph> FilledGraph(std::int64_t points) {
    auto graph = std::make_unique<ZelGraph>();
    for (int i = 0; i < plots; ++i)
        graph->AddPlot({QString::number(i), 0x40a0ffU + static_cast<std::uint32_t>(i) * 0x70503U, 0});
    graph->SetChartLength(static_cast<std::int32_t>(points));
    graph->SetXAxisMax(static_cast<double>(points) * step);
    Show(*graph);
    return graph;
}

void Append(ZelGraph& graph) {
    const std::span<const float> block(TheStream().Next(), static_cast<std::size_t>(blockScans) * plots);
    graph.AppendSamples(step, ZelGraph::PlotInterleaved(blockScans, plots, block));
}

void BareFrame(benchmark::State& bench) {
    BareGrid widget;
    Show(widget);
    for (auto _ : bench)
        widget.repaint();
}

void GraphScroll(benchmark::State& bench) {
    const auto graph = FilledGraph(bench.range(0));
    for (int i = 0; i < BlocksFor(bench.range(0)); ++i)
        Append(*graph);
    graph->repaint();
    for (auto _ : bench) {
        Append(*graph);
        graph->repaint();
    }
}

void GraphRedraw(benchmark::State& bench) {
    const auto graph = FilledGraph(bench.range(0));
    for (int i = 0; i < BlocksFor(bench.range(0)); ++i)
        Append(*graph);
    const double full = graph->XAxisMax() - graph->XAxisMin();
    const double end = graph->XAxisMax();
    bool wide = false;
    for (auto _ : bench) {
        graph->AxisSetRange(tracelet::XAxis, end - (wide ? full : 0.9 * full), end);
        wide = !wide;
        graph->repaint();
    }
}

void GraphAppend(benchmark::State& bench) {
    const auto graph = FilledGraph(bench.range(0));
    graph->hide();
    for (int i = 0; i < BlocksFor(bench.range(0)); ++i)
        Append(*graph);
    for (auto _ : bench)
        Append(*graph);
    std::int64_t held = 0;
    for (int i = 0; i < plots; ++i)
        held += graph->PointCount(i);
    bench.counters["bytes_a_sample"] = static_cast<double>(graph->HeldBytes()) / static_cast<double>(held);
}

/// One scan of 64 plots with its own time, as a tick of polled sampling appends it.
void GraphTick(benchmark::State& bench) {
    ZelGraph graph;
    for (int i = 0; i < 64; ++i)
        graph.AddPlot({QString::number(i), 0x40a0ffU, 0});
    graph.SetChartLength(10001);
    Show(graph);
    std::vector<float> scan(64);
    std::int64_t tick = 0;
    const auto paints = bench.range(0) != 0;
    for (auto _ : bench) {
        for (std::size_t i = 0; i < scan.size(); ++i)
            scan[i] =
                static_cast<float>(static_cast<double>(i) / 4 - 8 + 0.001 * static_cast<double>(tick % 97));
        graph.AppendScan(static_cast<double>(tick) * 0.001, scan);
        if (paints && tick % 16 == 0)
            graph.repaint();
        ++tick;
    }
}

#ifdef TRACELET_BENCH_QCUSTOMPLOT

struct Peer {
    QCustomPlot plot;
    double x = 0;
    double span = 0;

    explicit Peer(std::int64_t points) : span(static_cast<double>(points) * step) {
        plot.setNotAntialiasedElements(QCP::aeAll);
        plot.setPlottingHints(QCP::phFastPolylines | QCP::phCacheLabels);
        plot.setInteractions(QCP::Interactions());
        for (int i = 0; i < plots; ++i) {
            QCPGraph* graph = plot.addGraph();
            graph->setPen(
                QPen(QColor::fromRgb(0xffU << 24 | (0x40a0ffU + static_cast<unsigned>(i) * 0x70503U)), 1));
            graph->setAdaptiveSampling(true);
        }
        plot.yAxis->setRange(-10, 10);
        plot.xAxis->setRange(0, span);
        Show(plot);
    }

    void Append() {
        const float* block = TheStream().Next();
        QVector<QCPGraphData> points(blockScans);
        for (int i = 0; i < plots; ++i) {
            for (int scan = 0; scan < blockScans; ++scan)
                points[scan] = {x + scan * step, static_cast<double>(block[scan * plots + i])};
            plot.graph(i)->data()->add(points, true);
            plot.graph(i)->data()->removeBefore(x + blockScans * step - span);
        }
        x += blockScans * step;
        plot.xAxis->setRange(x - span, x);
    }
};

void PeerScroll(benchmark::State& bench) {
    Peer peer(bench.range(0));
    for (int i = 0; i < BlocksFor(bench.range(0)); ++i)
        peer.Append();
    for (auto _ : bench) {
        peer.Append();
        peer.plot.replot(QCustomPlot::rpImmediateRefresh);
    }
}

void PeerRedraw(benchmark::State& bench) {
    Peer peer(bench.range(0));
    for (int i = 0; i < BlocksFor(bench.range(0)); ++i)
        peer.Append();
    bool wide = false;
    for (auto _ : bench) {
        peer.plot.xAxis->setRange(peer.x - (wide ? peer.span : 0.9 * peer.span), peer.x);
        wide = !wide;
        peer.plot.replot(QCustomPlot::rpImmediateRefresh);
    }
}

#endif

void Sizes(benchmark::internal::Benchmark* bench) {
    for (const int points : {1000, 100000, 1000000})
        bench->Arg(points);
    bench->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->ReportAggregatesOnly();
}

BENCHMARK(BareFrame)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->Repetitions(5)
    ->ReportAggregatesOnly();
BENCHMARK(GraphScroll)->Apply(Sizes);
BENCHMARK(GraphRedraw)->Apply(Sizes);
BENCHMARK(GraphAppend)->Apply(Sizes);
BENCHMARK(GraphTick)
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMicrosecond)
    ->MeasureProcessCPUTime()
    ->Repetitions(5)
    ->ReportAggregatesOnly();
#ifdef TRACELET_BENCH_QCUSTOMPLOT
BENCHMARK(PeerScroll)->Apply(Sizes);
BENCHMARK(PeerRedraw)->Apply(Sizes);
#endif

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
