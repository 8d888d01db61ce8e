#include "core/drivers/simulated/SimulatedStream.h"

#include "core/base/RunTimeError.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace tracelet {
namespace {

constexpr std::uint64_t Endless = std::numeric_limits<std::uint64_t>::max();
constexpr double LongestWait = 0.050;   // seconds
constexpr double PortionLength = 0.005; // seconds of samples that a read waits for

StreamBuffer FirstSamples(StreamBuffer buffer, std::size_t count) {
    return std::visit([count](auto span) { return StreamBuffer(span.first(count)); }, buffer);
}

} // namespace

void SimulatedStream::Start(const StreamSetup& setup, std::shared_ptr<const SampleTables> tables,
                            std::optional<std::uint64_t> firstScan, bool paced,
                            std::optional<std::uint64_t> most) {
    const std::lock_guard lock(mutex);
    const std::uint64_t first = firstScan.value_or(0) * setup.channels.size();
    if (run)
        throw RunTimeError("The board is acquiring already");
    ++runNumber;
    run = Run{.tables = std::move(tables),
              .start = Clock::now(),
              .sampleRate = setup.sampleRate,
              .form = setup.form,
              .scanSamples = setup.channels.size(),
              .triggered = firstScan.has_value(),
              .paced = paced,
              .next = first,
              .left = setup.totalSamples == 0 ? Endless : setup.totalSamples,
              .never = most ? first + *most * setup.channels.size() : Endless};
}

void SimulatedStream::Stop() {
    {
        const std::lock_guard lock(mutex);
        run.reset();
    }
    stopped.notify_all();
}

bool SimulatedStream::IsRunning() const {
    const std::lock_guard lock(mutex);
    return run.has_value();
}

// Samples that can be handed over now.
std::uint64_t SimulatedStream::Due() const {
    if (!run->triggered)
        return 0;
    const std::uint64_t coming = run->next < run->never ? std::min(run->left, run->never - run->next) : 0;
    if (!run->paced)
        return coming;
    const std::chrono::duration<double> elapsed = Clock::now() - run->start;
    const auto converted = static_cast<std::uint64_t>(std::floor(elapsed.count() * run->sampleRate));
    return converted > run->next ? std::min(converted - run->next, coming) : 0;
}

// Waits until enough samples for a worthwhile read are due, or the longest wait is over. False when the
// stream was stopped meanwhile.
bool SimulatedStream::WaitForSamples(std::unique_lock<std::mutex>& lock, std::size_t room) {
    const std::uint64_t awaited = runNumber;
    const Clock::time_point begin = Clock::now();
    const double portion = std::clamp(run->sampleRate * PortionLength, 1.0, static_cast<double>(room));
    while (run && runNumber == awaited) {
        const auto missing = std::min(portion, static_cast<double>(run->left)) - static_cast<double>(Due());
        const std::chrono::duration<double> waited = Clock::now() - begin;
        const double rest = LongestWait - waited.count();
        if (missing <= 0.0 || rest <= 0.0)
            return true;
        const std::chrono::duration<double> pause(std::clamp(missing / run->sampleRate, 1e-5, rest));
        stopped.wait_for(lock, pause);
    }
    return false;
}

// False when the stream was stopped meanwhile.
bool SimulatedStream::Pause(std::unique_lock<std::mutex>& lock, std::chrono::milliseconds time) {
    if (time.count() == 0)
        return true;
    const std::uint64_t awaited = runNumber;
    stopped.wait_for(lock, time, [&] { return !run || runNumber != awaited; });
    return run && runNumber == awaited;
}

StreamRead SimulatedStream::Read(StreamBuffer buffer, FaultSwitch& faults) {
    const std::size_t room = SizeOf(buffer);
    std::unique_lock lock(mutex);
    if (!run)
        return {0, StreamState::Ended};
    const Faults now = faults.Get();
    CheckReading(now);
    if (FormOf(buffer) != run->form)
        throw Fault::TypeMismatch();
    if (room == 0)
        return {0, StreamState::Running};
    if (!Pause(lock, now.slow) || !WaitForSamples(lock, room))
        return {0, StreamState::Ended};

    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(Due(), room));
    const std::uint64_t first = run->next;
    const std::shared_ptr<const SampleTables> tables = run->tables;
    const std::uint64_t lost = faults.TakeLostScans();
    StreamState state = lost > 0 ? StreamState::Overrun : StreamState::Running;
    run->next += count + lost * run->scanSamples;
    if (run->left != Endless)
        run->left -= count;
    if (run->left == 0) {
        run.reset();
        state = StreamState::Ended;
    }
    lock.unlock();
    tables->Fill(first, FirstSamples(buffer, count));
    return {count, state};
}

} // namespace tracelet
