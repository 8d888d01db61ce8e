// The timer control beside a thread that sleeps until absolute deadlines, both skipping deadlines that they
// missed, while the main window paints a full chart 30 times a second: the share of the thread's ticks that
// the control kept, and how much later its ticks come at the end than at the beginning.

#include "bench/BenchWindow.h"
#include "bench/Measure.h"
#include "window/chart/ZelGraph.h"
#include "window/controls/ZelHiResTimerCtl.h"

#include <QEventLoop>
#include <QTimer>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <ctime>
#include <span>
#include <thread>
#include <vector>

namespace {

using namespace tracelet;

constexpr int Seconds = 30;
constexpr int FramesASecond = 30;
constexpr int Plots = 16;

int SleepingTicks(std::int64_t period, const std::atomic<bool>& stop) { // nanoseconds
    constexpr std::int64_t Second = 1'000'000'000;
    const auto now = [] { return static_cast<std::int64_t>(measure::WallSeconds() * 1e9); };
    int ticks = 0;
    for (std::int64_t deadline = now() + period; !stop;) {
        timespec until{};
        until.tv_sec = static_cast<time_t>(deadline / Second);
        until.tv_nsec = static_cast<long>(deadline % Second);
        while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) != 0) {
        }
        ++ticks;
        deadline += (1 + std::max<std::int64_t>(now() - deadline, 0) / period) * period;
    }
    return ticks;
}

// A chart of 100,000 points a plot that moves on by a thirtieth of a second's scans and is painted.
class MovingChart {
public:
    explicit MovingChart(ZelGraph& painted) : graph(painted) {
        graph.RemovePlots();
        for (int i = 0; i < Plots; ++i)
            graph.AddPlot({});
        graph.SetChartLength(100000);
        graph.SetXAxisMax(4.0);
        for (std::size_t i = 0; i < block.size(); ++i)
            block[i] = 8 * std::sin(static_cast<float>(i) * 0.001F);
        for (int i = 0; i < 121; ++i)
            Append();
        QObject::connect(&frames, &QTimer::timeout, &graph, [this] {
            Append();
            graph.repaint();
        });
        frames.setTimerType(Qt::PreciseTimer);
        frames.start(1000 / FramesASecond);
    }

private:
    static constexpr int Scans = 25000 / FramesASecond;
    void Append() {
        graph.AppendSamples(1.0 / 25000,
                            ZelGraph::PlotInterleaved(Scans, Plots, std::span<const float>(block)));
    }

    ZelGraph& graph;
    std::vector<float> block = std::vector<float>(std::size_t{Scans} * Plots);
    QTimer frames;
};

double MedianLateness(std::span<const double> ticks, double start, double period) { // seconds
    std::vector<double> late;
    for (const double tick : ticks)
        late.push_back(std::fmod(tick - start, period));
    std::ranges::sort(late);
    return late.empty() ? 0.0 : late[late.size() / 2];
}

void Timer(benchmark::State& bench) {
    const auto milliseconds = static_cast<int>(bench.range(0));
    const double period = milliseconds / 1000.0;
    BenchWindow window;
    const MovingChart chart(*window->ZelGraph1);
    for (auto _ : bench) {
        std::vector<double> ticks;
        ticks.reserve(static_cast<std::size_t>(Seconds / period) + 10);
        std::atomic<bool> stop = false;
        int threadTicks = 0;
        std::thread thread(
            [&] { threadTicks = SleepingTicks(static_cast<std::int64_t>(milliseconds) * 1'000'000, stop); });
        ZelHiResTimerCtl control;
        QObject::connect(&control, &ZelHiResTimerCtl::OnTimer, &control,
                         [&] { ticks.push_back(measure::WallSeconds()); });
        const double start = measure::WallSeconds();
        control.AddTimer(QStringLiteral("Bench"), milliseconds, true);
        QEventLoop loop;
        QTimer::singleShot(Seconds * 1000, Qt::PreciseTimer, &loop, &QEventLoop::quit);
        loop.exec();
        stop = true;
        thread.join();
        const std::span<const double> all(ticks);
        const std::size_t tenth = all.size() / 10;
        bench.counters["ticks_kept"] = static_cast<double>(all.size()) / std::max(threadTicks, 1);
        bench.counters["late_us"] = 1e6 * MedianLateness(all, start, period);
        bench.counters["drift_us"] = 1e6 * (MedianLateness(all.last(tenth), start, period) -
                                            MedianLateness(all.first(tenth), start, period));
    }
}

BENCHMARK(Timer)->Arg(1)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(Timer)->Arg(10)->Iterations(1);

} // namespace
