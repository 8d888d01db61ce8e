// What software polling costs: the whole program's share of one core with 64 analog channels read, drawn and
// recorded every millisecond, and a tick's cost at the beginning and at the end of an hour.

#include "bench/BenchWindow.h"
#include "bench/Measure.h"
#include "window/chart/ZelGraph.h"
#include "window/controls/ZelAI.h"
#include "window/controls/ZelHiResTimerCtl.h"
#include "window/widgets/ZelButton.h"

#include <QCheckBox>
#include <QEventLoop>
#include <QPushButton>
#include <QTimer>
#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

using namespace tracelet;

void StartPolling(frmMain& window, std::int32_t channels) {
    window.M1.SoftMode = true;
    window.nTimerInterval = 1;
    window.ZelAI1->SetScanChannelCount(channels);
    window.BuildPlots(false, true);
    window.ZelButton1->click();
    window.CkAISave2Disk->click();
    window.BtnStart->click();
    if (!window.isSystemRunning || !window.bAISaveToDisk)
        std::abort();
}

void RunFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

// The window as it stands open: painting at the display's rate, ticks from the real timer. Time reported is
// processor time a second; the chart is filled by twelve seconds' scans beforehand.
void PolledSession(benchmark::State& bench) {
    constexpr int Seconds = 8;
    std::uint32_t skipped = 0;
    BenchWindow window([&] { return GetTickCount() + skipped; });
    StartPolling(*window, 64);
    for (int tick = 0; tick < 12000; ++tick, ++skipped)
        window->ZelHiResTimerCtl1_OnTimer(frmMain::PollTimer);
    RunFor(500);
    for (auto _ : bench) {
        const std::int32_t ticks = window->TickCount;
        const std::int64_t allocations = measure::Allocations();
        const double cpu = measure::CpuSeconds();
        const double wall = measure::WallSeconds();
        RunFor(Seconds * 1000);
        const double elapsed = measure::WallSeconds() - wall;
        const double share = (measure::CpuSeconds() - cpu) / elapsed;
        const auto done = static_cast<double>(window->TickCount - ticks);
        bench.SetIterationTime(share);
        bench.counters["cpu_percent"] = 100 * share;
        bench.counters["ticks_kept"] = done / (1000 * elapsed);
        bench.counters["allocations_a_tick"] =
            static_cast<double>(measure::Allocations() - allocations) / done;
    }
}

// The tick alone, without frames.
void PolledTick(benchmark::State& bench) {
    std::uint32_t now = 0;
    BenchWindow window([&] { return now; });
    StartPolling(*window, static_cast<std::int32_t>(bench.range(0)));
    window->ZelHiResTimerCtl1->SetTimerEnabled(frmMain::PollTimer, false);
    const auto tick = [&] {
        ++now;
        window->ZelHiResTimerCtl1_OnTimer(frmMain::PollTimer);
    };
    for (int i = 0; i < 30000; ++i)
        tick();
    const std::int64_t before = measure::Allocations();
    for (auto _ : bench)
        tick();
    bench.counters["allocations"] =
        static_cast<double>(measure::Allocations() - before) / static_cast<double>(bench.iterations());
}

// An hour of ticks at 1 ms, 16 channels, as fast as they go, with 30 frames a second drawn. Compared are its
// second and its last minute: in the first one the chart fills.
void PolledHour(benchmark::State& bench) {
    constexpr int Minute = 60000; // ticks
    std::uint32_t now = 0;
    BenchWindow window([&] { return now; });
    StartPolling(*window, 16);
    window->ZelHiResTimerCtl1->SetTimerEnabled(frmMain::PollTimer, false);
    const auto runMinute = [&] { // microseconds of processor time a tick, frames included
        const double cpu = measure::CpuSeconds();
        for (int tick = 0; tick < Minute; ++tick) {
            ++now;
            window->ZelHiResTimerCtl1_OnTimer(frmMain::PollTimer);
            if (tick % 33 == 0)
                window->ZelGraph1->repaint();
        }
        return (measure::CpuSeconds() - cpu) / Minute * 1e6;
    };
    for (auto _ : bench) {
        runMinute();
        const double second = runMinute();
        const double memory = measure::ResidentMiB();
        for (int i = 2; i < 59; ++i)
            runMinute();
        const double last = runMinute();
        bench.counters["last_to_second_minute"] = last / second;
        bench.counters["us_a_tick"] = last;
        bench.counters["grown_MiB"] = measure::ResidentMiB() - memory;
    }
}

BENCHMARK(PolledSession)->Iterations(1)->Repetitions(5)->UseManualTime()->ReportAggregatesOnly();
BENCHMARK(PolledTick)
    ->Arg(1)
    ->Arg(64)
    ->Unit(benchmark::kMicrosecond)
    ->MeasureProcessCPUTime()
    ->Repetitions(5)
    ->ReportAggregatesOnly();
BENCHMARK(PolledHour)->Iterations(1)->Unit(benchmark::kSecond)->MeasureProcessCPUTime();

} // namespace
