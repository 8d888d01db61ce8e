#include "window/controls/ZelHiResTimerCtl.h"

#include "core/base/RunTimeError.h"
#include "core/base/UniqueFd.h"

#include <QPointer>
#include <QSocketNotifier>

#include <cerrno>
#include <ctime>
#include <utility>

#include <sys/timerfd.h>
#include <unistd.h>

namespace tracelet {
namespace {

constexpr std::int64_t NanosecondsPerSecond = 1'000'000'000;

timespec ToTimespec(std::int64_t nanoseconds) {
    timespec time{};
    time.tv_sec = static_cast<time_t>(nanoseconds / NanosecondsPerSecond);
    time.tv_nsec = static_cast<long>(nanoseconds % NanosecondsPerSecond);
    return time;
}

std::int64_t MonotonicNow() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * NanosecondsPerSecond + now.tv_nsec;
}

void RequireInterval(std::int32_t intervalMs) {
    if (intervalMs < 1)
        throw RunTimeError("A timer interval must be at least 1 ms");
}

} // namespace

// A descriptor that becomes readable at each deadline. The kernel counts deadlines from the start, so that
// none shifts the next; several that passed unseen read as one.
struct ZelHiResTimerCtl::Timer {
    explicit Timer(std::int32_t intervalMs)
        : interval(intervalMs), descriptor(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
          notifier(descriptor.Get(), QSocketNotifier::Read) {}

    void Start() {
        const std::int64_t period = std::int64_t{interval} * 1'000'000;
        SetTime({ToTimespec(period), ToTimespec(MonotonicNow() + period)});
        missed = 0;
    }
    // Also forgets deadlines that have passed unseen.
    void Stop() { SetTime({}); }
    void SetTime(const itimerspec& time) {
        if (timerfd_settime(descriptor.Get(), TFD_TIMER_ABSTIME, &time, nullptr) != 0)
            throw Fault::FromErrno(errno);
    }
    // How many deadlines have passed since the last call.
    std::int64_t TakeDeadlines() {
        std::uint64_t passed = 0;
        const bool any = read(descriptor.Get(), &passed, sizeof passed) == sizeof passed;
        return any ? static_cast<std::int64_t>(passed) : 0;
    }

    std::int32_t interval; // milliseconds
    bool enabled = false;
    bool ticking = false;    // a handler runs
    std::int64_t missed = 0; // deadlines without a tick
    const UniqueFd descriptor;
    QSocketNotifier notifier; // goes before the descriptor
};

ZelHiResTimerCtl::ZelHiResTimerCtl(QObject* parent) : QObject(parent) {}
ZelHiResTimerCtl::~ZelHiResTimerCtl() = default;

ZelHiResTimerCtl::Timer& ZelHiResTimerCtl::Find(const QString& name) const {
    const auto found = timers.find(name);
    if (found == timers.end())
        throw RunTimeError("There is no timer \"" + name.toStdString() + "\"");
    return *found->second;
}

bool ZelHiResTimerCtl::TimerExists(const QString& name) const {
    return timers.contains(name);
}

void ZelHiResTimerCtl::AddTimer(const QString& name, std::int32_t intervalMs, bool enabled) {
    RequireInterval(intervalMs);
    if (TimerExists(name))
        throw RunTimeError("There is a timer \"" + name.toStdString() + "\" already");
    auto timer = std::make_unique<Timer>(intervalMs);
    connect(&timer->notifier, &QSocketNotifier::activated, this,
            [this, name, added = timer.get()] { Tick(name, *added); });
    timers.emplace(name, std::move(timer));
    SetTimerEnabled(name, enabled);
}

std::int32_t ZelHiResTimerCtl::TimerInterval(const QString& name) const {
    return Find(name).interval;
}

void ZelHiResTimerCtl::SetTimerInterval(const QString& name, std::int32_t intervalMs) {
    RequireInterval(intervalMs);
    Timer& timer = Find(name);
    timer.interval = intervalMs;
    if (timer.enabled)
        timer.Start();
}

bool ZelHiResTimerCtl::TimerEnabled(const QString& name) const {
    return Find(name).enabled;
}

void ZelHiResTimerCtl::SetTimerEnabled(const QString& name, bool enabled) {
    Timer& timer = Find(name);
    if (timer.enabled == enabled)
        return;
    if (enabled)
        timer.Start();
    else
        timer.Stop();
    timer.enabled = enabled;
}

std::int64_t ZelHiResTimerCtl::TakeMissedTicks(const QString& name) {
    return std::exchange(Find(name).missed, 0);
}

void ZelHiResTimerCtl::Tick(const QString& name, Timer& timer) {
    const std::int64_t passed = timer.TakeDeadlines();
    if (passed == 0)
        return;
    timer.missed += timer.ticking ? passed : passed - 1;
    if (timer.ticking)
        return;
    timer.ticking = true;
    const QPointer<ZelHiResTimerCtl> self(this);
    emit OnTimer(name);
    if (!self)
        return;
    timer.ticking = false;
    timer.missed += timer.TakeDeadlines(); // those of the handler's time are dropped
}

} // namespace tracelet
