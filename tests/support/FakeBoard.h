#pragma once

#include "core/base/RunTimeError.h"
#include "core/boards/BoardList.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <sched.h>

namespace tracelet {

/// An analog board whose stream the test feeds: sample n has the value n, a scan reads 100 * channel + the
/// upper limit of its range. What was asked of it is recorded.
class FakeBoard final : public AnalogBoard {
public:
    static constexpr std::uint64_t Unlimited = std::numeric_limits<std::uint64_t>::max();

    FakeBoard() {
        info.name = "Fake 8";
        info.driver = "Fakes";
        info.resolution = 16;
        info.channelCount = 8;
        info.ranges = {{3, -10, 10}, {5, 0, 5}, {6, 4, 20}};
        info.externalPacer = true;
        info.hardwareTrigger = true;
        info.lowestRate = 10;
        info.highestRate = 1e6;
    }

    // For tests, on any thread.

    /// Lets so many more samples come.
    void Feed(std::uint64_t samples) {
        Change([&] { fed = samples == Unlimited ? Unlimited : fed + samples; });
    }
    /// Loses whole scans once all that was fed has been read.
    void LoseScans(std::uint64_t scans) {
        Change([&] { lost = scans; });
    }
    /// Fails with `text` once all that was fed has been read.
    void FailNext(const std::string& text) {
        Change([&] { failure = text; });
    }
    /// Ends the stream once all that was fed has been read.
    void EndNext() {
        Change([&] { ending = true; });
    }
    /// Calls of these do not return, stopped or not, until they are released.
    void HangIn(bool inReads, bool inStops) {
        Change([&] {
            hangsInRead = inReads;
            hangsInStop = inStops;
        });
    }
    void Release() { HangIn(false, false); }
    /// Every call that may fail throws a number instead of an exception.
    void ThrowNumbers(bool value) {
        Change([&] { throwsNumbers = value; });
    }
    /// Reads come back at once though there is nothing to read.
    void BeHasty() {
        Change([&] { hasty = true; });
    }
    /// Reads claim so many samples more than they were asked for.
    void Claim(std::size_t samples) {
        Change([&] { claimed = samples; });
    }
    /// A loss or a failure is still to be told.
    [[nodiscard]] bool HasNews() const {
        const std::lock_guard lock(mutex);
        return lost > 0 || !failure.empty();
    }
    [[nodiscard]] int Reads() const {
        const std::lock_guard lock(mutex);
        return reads;
    }
    /// Scheduling policy of the thread that read last.
    [[nodiscard]] int ReadingPolicy() const {
        const std::lock_guard lock(mutex);
        return readingPolicy;
    }
    [[nodiscard]] std::uint64_t SamplesRead() const {
        const std::lock_guard lock(mutex);
        return handedOut;
    }
    [[nodiscard]] bool IsStreaming() const {
        const std::lock_guard lock(mutex);
        return streaming;
    }

    AnalogBoardInfo info;
    std::string refusedOpen;
    std::string refusedStart;
    std::string refusedScan;
    std::optional<double> settledRate; ///< what every rate is settled to
    int opened = 0;
    StreamSetup started;
    std::vector<ChannelSetup> scanned;

    // AnalogBoard

    [[nodiscard]] const AnalogBoardInfo& Info() const override { return info; }
    void Open() override {
        Refuse(refusedOpen);
        ++opened;
    }
    [[nodiscard]] double SettleSampleRate(double rate, std::int32_t channelCount) const override {
        Refuse({});
        if (settledRate)
            return *settledRate;
        return std::min(rate, info.highestRate) - 0.25 * (channelCount - 1);
    }
    void ReadScan(std::span<const ChannelSetup> channels, std::span<double> values) override {
        Refuse(refusedScan);
        scanned.assign(channels.begin(), channels.end());
        for (std::size_t i = 0; i < channels.size(); ++i)
            values[i] = 100.0 * channels[i].channel + channels[i].range.second;
    }
    [[nodiscard]] ThermocoupleReading ReadThermocouple(const ChannelSetup& channel, std::int32_t,
                                                       ThermocoupleType) override {
        Refuse(refusedScan);
        scanned = {channel};
        return {0.0, 25.0};
    }
    void StartStream(const StreamSetup& setup) override {
        Refuse(refusedStart);
        const std::lock_guard lock(mutex);
        if (streaming)
            throw RunTimeError("streaming already");
        started = setup;
        streaming = true;
        next = handedOut = 0;
    }
    [[nodiscard]] StreamRead ReadStream(StreamBuffer buffer) override {
        Refuse({});
        std::unique_lock lock(mutex);
        ++reads;
        readingPolicy = sched_getscheduler(0) & ~SCHED_RESET_ON_FORK;
        changed.wait(lock, [&] { return !hangsInRead; });
        changed.wait_for(lock, std::chrono::milliseconds(hasty ? 0 : 50), [&] {
            return !streaming || handedOut < fed || lost > 0 || !failure.empty() || ending;
        });
        if (!streaming)
            return {0, StreamState::Ended};
        if (handedOut == fed)
            return HandOutNews();
        const std::size_t room = std::visit([](auto span) { return span.size(); }, buffer);
        std::uint64_t count = std::min<std::uint64_t>(room, fed - handedOut);
        if (started.totalSamples != 0)
            count = std::min(count, started.totalSamples - handedOut);
        std::visit([&](auto span) { Fill(span.first(count)); }, buffer);
        handedOut += count;
        if (started.totalSamples != 0 && handedOut == started.totalSamples)
            return {count, StreamState::Ended};
        return {count + claimed, StreamState::Running};
    }
    void StopStream() override {
        {
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return !hangsInStop; });
            streaming = false;
            fed = 0;
        }
        changed.notify_all();
        Refuse({});
    }

private:
    template <typename Action>
    void Change(Action action) {
        {
            const std::lock_guard lock(mutex);
            action();
        }
        changed.notify_all();
    }

    void Refuse(const std::string& text) const {
        if (throwsNumbers)
            throw 42;
        if (!text.empty())
            throw RunTimeError(text);
    }

    StreamRead HandOutNews() {
        if (lost > 0) {
            next += std::exchange(lost, 0) * started.channels.size();
            return {0, StreamState::Overrun};
        }
        Refuse(std::exchange(failure, {}));
        return {0, std::exchange(ending, false) ? StreamState::Ended : StreamState::Running};
    }

    template <typename Sample>
    void Fill(std::span<Sample> samples) {
        for (Sample& sample : samples)
            sample = static_cast<Sample>(next++);
    }

    mutable std::mutex mutex;
    std::condition_variable changed;
    bool streaming = false;
    bool ending = false;
    bool hangsInRead = false;
    bool hangsInStop = false;
    std::atomic<bool> throwsNumbers = false;
    bool hasty = false;
    std::size_t claimed = 0;
    int reads = 0;
    int readingPolicy = -1;
    std::uint64_t fed = 0;       // samples that may be handed out since the start
    std::uint64_t handedOut = 0; // samples since the start
    std::uint64_t next = 0;      // number of the next sample, with the lost ones
    std::uint64_t lost = 0;      // scans
    std::string failure;
};

/// A list entry of a board.
inline BoardEntry<AnalogBoard> EntryOf(std::shared_ptr<AnalogBoard> board) {
    BoardEntry<AnalogBoard> entry;
    entry.name = board->Info().name;
    entry.driver = board->Info().driver;
    entry.simulated = board->Info().simulated;
    entry.board = std::move(board);
    return entry;
}

} // namespace tracelet
