// The same frames as chart_bench drawn by Qwt, in a program of its own since it stands on Qt 5.

#include "bench/ChartRounds.h"

#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_series_data.h>

namespace {

using namespace chart_bench;

/// The newest points of a plot, ready to be read: they stand one behind the other in memory, and the window
/// goes back to the front of the buffer once in a while.
class NewestPoints : public QwtSeriesData<QPointF> {
public:
    explicit NewestPoints(std::size_t points) : most(points) {}

    void Append(double x, double y) {
        if (values.empty())
            values.reserve(2 * most + BlockScans);
        if (values.size() == values.capacity()) {
            values.erase(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(first));
            first = 0;
        }
        values.emplace_back(x, y);
        if (values.size() - first > most)
            ++first;
    }

    size_t size() const override { return values.size() - first; }
    QPointF sample(size_t i) const override { return values[first + i]; }
    QRectF boundingRect() const override {
        return values.empty() ? QRectF()
                              : QRectF(values[first].x(), -10, values.back().x() - values[first].x(), 20);
    }

private:
    std::vector<QPointF> values;
    std::size_t most;
    std::size_t first = 0;
};

struct Settings {
    const char* name = "";
    bool filter = false;
    bool clip = false;
    bool backingStore = false;
    double pen = 1;
    bool lean = false; ///< MinimizeMemory
};

// QwtSetting measures them: the first is the best. With noise on every trace hardly a point falls together
// with its neighbour and nearly all are visible, so that filtering and clipping cost more than they save; the
// aggressive filter came with 6.2; ImageBuffer is for dots; OpenGL canvases need a display with OpenGL.
constexpr Settings Variants[] = {
    {"best"},
    {"filter", true},
    {"clipping", false, true},
    {"filter and clipping", true, true},
    {"backing store", false, false, true},
    {"cosmetic pen", false, false, false, 0},
    {"filter, minimize memory", true, false, false, 1, true},
};

class QwtChart {
public:
    explicit QwtChart(std::int64_t points, const Settings& settings = Variants[0])
        : span(static_cast<double>(points) * Step) {
        plot.setAutoReplot(false);
        auto* canvas = new QwtPlotCanvas;
        canvas->setFrameStyle(QFrame::NoFrame);
        canvas->setPaintAttribute(QwtPlotCanvas::BackingStore, settings.backingStore);
        canvas->setPaintAttribute(QwtPlotCanvas::Opaque, true);
        canvas->setPaintAttribute(QwtPlotCanvas::ImmediatePaint, true);
        plot.setCanvas(canvas);
        plot.setAxisScale(QwtPlot::yLeft, -10, 10);
        for (int i = 0; i < Plots; ++i) {
            auto* curve = new QwtPlotCurve;
            curve->setPen(QPen(QColor::fromRgb(PlotColor(i)), settings.pen));
            curve->setPaintAttribute(QwtPlotCurve::ClipPolygons, settings.clip);
            curve->setPaintAttribute(QwtPlotCurve::FilterPoints, settings.filter);
            curve->setPaintAttribute(QwtPlotCurve::MinimizeMemory, settings.lean);
            series.push_back(new NewestPoints(static_cast<std::size_t>(points)));
            curve->setData(series.back());
            curve->attach(&plot);
        }
        Show(plot);
    }

    void Append(int count) {
        const float* block = TheStream().Next();
        for (int i = 0; i < Plots; ++i)
            for (int scan = 0; scan < count; ++scan)
                series[static_cast<std::size_t>(i)]->Append(x + scan * Step,
                                                            static_cast<double>(block[scan * Plots + i]));
        x += count * Step;
        plot.setAxisScale(QwtPlot::xBottom, x - span, x);
    }

    void Paint() {
        plot.replot();
        QApplication::processEvents(); // axes repaint by event
    }

    void SetSpan(double seconds) {
        span = seconds;
        plot.setAxisScale(QwtPlot::xBottom, x - span, x);
    }
    [[nodiscard]] double Span() const { return span; }
    [[nodiscard]] QWidget& Widget() { return plot; }
    [[nodiscard]] QRect Canvas() const { return plot.canvas()->geometry(); }
    [[nodiscard]] static bool IsTrace(QRgb color) {
        return qRed(color) != qGreen(color) || qRed(color) != qBlue(color); // all else is grey
    }

private:
    QwtPlot plot;
    std::vector<NewestPoints*> series; ///< of the curves
    double x = 0;
    double span = 0;
};

void QwtSetting(benchmark::State& bench) {
    ScrollSetting<QwtChart>(bench, Variants[bench.range(0)]);
}

constexpr auto& QwtScroll = Scroll<QwtChart>;
constexpr auto& QwtRedraw = Redraw<QwtChart>;
constexpr auto& QwtResize = Resize<QwtChart>;
constexpr auto& QwtMemory = Memory<QwtChart>;
constexpr auto& QwtShift = Shift<QwtChart>;

BENCHMARK(QwtScroll)->Apply(Sizes);
BENCHMARK(QwtRedraw)->Apply(Sizes);
BENCHMARK(QwtResize)->Apply(Large);
BENCHMARK(QwtMemory)->Apply(Once);
BENCHMARK(QwtShift)->Apply(Once);
BENCHMARK(QwtSetting)
    ->ArgsProduct({benchmark::CreateDenseRange(0, std::size(Variants) - 1, 1), {1000, 100000}})
    ->Apply(Measured);

} // namespace

int main(int argc, char** argv) {
    return chart_bench::Main(argc, argv);
}
