// The timer control beside a thread that sleeps until absolute deadlines, both skipping deadlines that they
// missed: ticks kept at 1 ms, drift at 10 ms. On an idle machine at least 0.97 of the thread's ticks are
// kept, and the lateness at the end is that at the beginning.
//
// timer_bench [seconds]   30 unless given

#include "devices/controls/ZelHiResTimerCtl.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <span>
#include <thread>
#include <vector>

namespace {

constexpr std::int64_t Second = 1'000'000'000; // in nanoseconds, as all times here
constexpr std::int64_t Millisecond = 1'000'000;

std::int64_t Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * Second + now.tv_nsec;
}

std::size_t SleepingTicks(std::int64_t period, const std::atomic<bool>& stop) {
    std::size_t ticks = 0;
    for (std::int64_t deadline = Now() + period; !stop;) {
        timespec until{};
        until.tv_sec = static_cast<time_t>(deadline / Second);
        until.tv_nsec = static_cast<long>(deadline % Second);
        while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) != 0) {
        }
        ++ticks;
        deadline += (1 + std::max<std::int64_t>(Now() - deadline, 0) / period) * period;
    }
    return ticks;
}

struct Run {
    std::int64_t start = 0;          // of the first period
    std::vector<std::int64_t> ticks; // moments of the control's ticks
    std::size_t threadTicks = 0;
};

// Runs both for so many seconds.
Run Measure(int milliseconds, int seconds) {
    Run run;
    run.ticks.reserve(static_cast<std::size_t>(seconds) * 1000 / static_cast<std::size_t>(milliseconds) + 10);
    std::atomic<bool> stop = false;
    std::thread thread([&] { run.threadTicks = SleepingTicks(milliseconds * Millisecond, stop); });
    tracelet::ZelHiResTimerCtl control;
    QObject::connect(&control, &tracelet::ZelHiResTimerCtl::OnTimer, &control,
                     [&] { run.ticks.push_back(Now()); });
    run.start = Now();
    control.AddTimer(QStringLiteral("Bench"), milliseconds, true);
    QTimer::singleShot(seconds * 1000, Qt::PreciseTimer, QCoreApplication::instance(),
                       &QCoreApplication::quit);
    QCoreApplication::exec();
    stop = true;
    thread.join();
    return run;
}

// Nanoseconds from the deadline before each tick to the tick.
std::vector<std::int64_t> Lateness(const Run& run, std::int64_t period) {
    std::vector<std::int64_t> late;
    late.reserve(run.ticks.size());
    for (std::int64_t tick : run.ticks)
        late.push_back((tick - run.start) % period);
    return late;
}

double MedianMicroseconds(std::span<const std::int64_t> values) {
    std::vector<std::int64_t> sorted(values.begin(), values.end());
    std::ranges::sort(sorted);
    return sorted.empty() ? 0.0 : static_cast<double>(sorted[sorted.size() / 2]) / 1e3;
}

void Report(int milliseconds, int seconds) {
    const std::int64_t period = milliseconds * Millisecond;
    const Run run = Measure(milliseconds, seconds);
    const std::vector<std::int64_t> late = Lateness(run, period);
    const std::size_t tenth = late.size() / 10;
    std::vector<std::int64_t> sorted = late;
    std::ranges::sort(sorted);
    std::printf("%2d ms over %d s: %zu ticks, thread %zu, due %d: ratio %.4f\n", milliseconds, seconds,
                run.ticks.size(), run.threadTicks, seconds * 1000 / milliseconds,
                static_cast<double>(run.ticks.size()) /
                    static_cast<double>(std::max<std::size_t>(run.threadTicks, 1)));
    if (tenth == 0)
        return;
    std::printf("      lateness: median %.0f us, 99 %% below %.0f us; drift from the first to the last tenth "
                "%.0f us\n",
                MedianMicroseconds(late), static_cast<double>(sorted[sorted.size() * 99 / 100]) / 1e3,
                MedianMicroseconds(std::span(late).last(tenth)) -
                    MedianMicroseconds(std::span(late).first(tenth)));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const int seconds = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 30;
    Report(1, seconds);
    Report(10, seconds);
    return 0;
}
