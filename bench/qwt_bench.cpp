// The same frames as chart_bench drawn by Qwt, in a program of its own since it stands on Qt 5.

#include "bench/ChartData.h"

#include <QApplication>
#include <benchmark/benchmark.h>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_series_data.h>

namespace {

using namespace chart_bench;

/// The newest points of a plot, without copies: the series computes each point from a ring.
class RingSeries : public QwtSeriesData<QPointF> {
public:
    explicit RingSeries(std::size_t points) : values(points) {}

    void Append(float value) { values[static_cast<std::size_t>(count++) % values.size()] = value; }

    size_t size() const override { return std::min(values.size(), static_cast<std::size_t>(count)); }
    QPointF sample(size_t i) const override {
        const std::int64_t index = count - static_cast<std::int64_t>(size()) + static_cast<std::int64_t>(i);
        return {static_cast<double>(index) * step,
                static_cast<double>(values[static_cast<std::size_t>(index) % values.size()])};
    }
    QRectF boundingRect() const override {
        return {static_cast<double>(count - static_cast<std::int64_t>(size())) * step, -10,
                static_cast<double>(size()) * step, 20};
    }

private:
    std::vector<float> values;
    std::int64_t count = 0;
};

struct Peer {
    QwtPlot plot;
    std::vector<RingSeries*> series;
    double x = 0;
    double span = 0;

    explicit Peer(std::int64_t points) : span(static_cast<double>(points) * step) {
        plot.setAutoReplot(false);
        auto* canvas = new QwtPlotCanvas;
        canvas->setFrameStyle(QFrame::NoFrame);
        canvas->setPaintAttribute(QwtPlotCanvas::BackingStore, false);
        canvas->setPaintAttribute(QwtPlotCanvas::Opaque, true);
        canvas->setPaintAttribute(QwtPlotCanvas::ImmediatePaint, true);
        plot.setCanvas(canvas);
        plot.setAxisScale(QwtPlot::yLeft, -10, 10);
        for (int i = 0; i < plots; ++i) {
            auto* curve = new QwtPlotCurve;
            curve->setPen(QPen(QColor::fromRgb(0x40a0ffU + static_cast<unsigned>(i) * 0x70503U), 1));
            curve->setPaintAttribute(QwtPlotCurve::ClipPolygons, true);
            curve->setPaintAttribute(QwtPlotCurve::FilterPoints, true);
            series.push_back(new RingSeries(static_cast<std::size_t>(points)));
            curve->setData(series.back());
            curve->attach(&plot);
        }
        plot.resize(width, height);
        plot.show();
        QApplication::processEvents();
    }

    void Append() {
        const float* block = TheStream().Next();
        for (int i = 0; i < plots; ++i)
            for (int scan = 0; scan < blockScans; ++scan)
                series[static_cast<std::size_t>(i)]->Append(block[scan * plots + i]);
        x += blockScans * step;
        plot.setAxisScale(QwtPlot::xBottom, x - span, x);
    }
};

void QwtScroll(benchmark::State& bench) {
    Peer peer(bench.range(0));
    for (int i = 0; i < BlocksFor(bench.range(0)); ++i)
        peer.Append();
    for (auto _ : bench) {
        peer.Append();
        peer.plot.replot();
        QApplication::processEvents(); // axes repaint by event
    }
}

void QwtRedraw(benchmark::State& bench) {
    Peer peer(bench.range(0));
    for (int i = 0; i < BlocksFor(bench.range(0)); ++i)
        peer.Append();
    bool wide = false;
    for (auto _ : bench) {
        peer.plot.setAxisScale(QwtPlot::xBottom, peer.x - (wide ? peer.span : 0.9 * peer.span), peer.x);
        wide = !wide;
        peer.plot.replot();
        QApplication::processEvents();
    }
}

void Sizes(benchmark::internal::Benchmark* bench) {
    for (const int points : {1000, 100000, 1000000})
        bench->Arg(points);
    bench->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->Repetitions(5)->ReportAggregatesOnly();
}

BENCHMARK(QwtScroll)->Apply(Sizes);
BENCHMARK(QwtRedraw)->Apply(Sizes);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
