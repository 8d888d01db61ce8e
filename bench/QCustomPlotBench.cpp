// The frames of the strip chart drawn by QCustomPlot, a part of chart_bench.

#include "bench/ChartRounds.h"

#include <qcustomplot.h>

namespace {

using namespace chart_bench;

struct Settings {
    const char* name = "";
    bool adaptive = true;
    bool fastLines = false;
    bool squeeze = true;
    double pen = 1;
    bool oneBuffer = true;
};

// PeerSetting measures them: the first is the best one that can last. Fast polylines are slower than Qt's own
// for thin lines. Without squeezing, points that have left the picture stay in memory for ever. None is
// antialiased, labels are cached, nothing is selectable; OpenGL needs a display with OpenGL and a library
// built for it.
constexpr Settings Variants[] = {
    {"best"},
    {"not adaptive", false},
    {"fast lines", true, true},
    {"never squeezed", true, false, false},
    {"cosmetic pen", true, false, true, 0},
    {"overlay in a buffer of its own", true, false, true, 1, false},
};

class PeerChart {
public:
    explicit PeerChart(std::int64_t points, const Settings& settings = Variants[0])
        : span(static_cast<double>(points) * Step) {
        plot.setNotAntialiasedElements(QCP::aeAll);
        plot.setPlottingHint(QCP::phCacheLabels, true);
        plot.setPlottingHint(QCP::phFastPolylines, settings.fastLines);
        if (settings.oneBuffer)
            plot.layer(QStringLiteral("overlay"))->setMode(QCPLayer::lmLogical);
        plot.setInteractions(QCP::Interactions());
        for (int i = 0; i < Plots; ++i) {
            QCPGraph* graph = plot.addGraph();
            graph->setPen(QPen(QColor::fromRgb(PlotColor(i)), settings.pen));
            graph->setSelectable(QCP::stNone);
            graph->setAdaptiveSampling(settings.adaptive);
            graph->data()->setAutoSqueeze(settings.squeeze);
        }
        plot.yAxis->setRange(-10, 10);
        plot.xAxis->setRange(0, span);
        Show(plot);
    }

    void Append(int count) {
        const float* values = TheStream().Next();
        block.resize(count);
        for (int i = 0; i < Plots; ++i) {
            for (int scan = 0; scan < count; ++scan)
                block[scan] = {x + scan * Step, static_cast<double>(values[scan * Plots + i])};
            plot.graph(i)->data()->add(block, true);
            plot.graph(i)->data()->removeBefore(x + count * Step - span);
        }
        x += count * Step;
        plot.xAxis->setRange(x - span, x);
    }

    void Paint() { plot.replot(QCustomPlot::rpImmediateRefresh); }

    void SetSpan(double seconds) {
        span = seconds;
        plot.xAxis->setRange(x - span, x);
    }
    [[nodiscard]] double Span() const { return span; }
    [[nodiscard]] QWidget& Widget() { return plot; }
    [[nodiscard]] QRect Canvas() const { return plot.axisRect()->rect(); }
    [[nodiscard]] static bool IsTrace(QRgb color) {
        return qRed(color) != qGreen(color) || qRed(color) != qBlue(color); // all else is grey
    }

private:
    QCustomPlot plot;
    QVector<QCPGraphData> block; ///< of one plot
    double x = 0;
    double span = 0;
};

/// A scrolled frame at other settings than those that proved best.
void PeerSetting(benchmark::State& bench) {
    ScrollSetting<PeerChart>(bench, Variants[bench.range(0)]);
}

constexpr auto& PeerScroll = Scroll<PeerChart>;
constexpr auto& PeerRedraw = Redraw<PeerChart>;
constexpr auto& PeerResize = Resize<PeerChart>;
constexpr auto& PeerMemory = Memory<PeerChart>;
constexpr auto& PeerShift = Shift<PeerChart>;

BENCHMARK(PeerScroll)->Apply(Sizes);
BENCHMARK(PeerRedraw)->Apply(Sizes);
BENCHMARK(PeerResize)->Apply(Large);
BENCHMARK(PeerMemory)->Apply(Once);
BENCHMARK(PeerShift)->Apply(Once);
BENCHMARK(PeerSetting)
    ->ArgsProduct({benchmark::CreateDenseRange(0, std::size(Variants) - 1, 1), {1000, 100000}})
    ->Apply(Measured);

} // namespace
