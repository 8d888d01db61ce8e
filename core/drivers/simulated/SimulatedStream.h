#pragma once

#include "core/boards/Board.h"
#include "core/drivers/simulated/Faults.h"
#include "core/drivers/simulated/SampleTables.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace tracelet {

/// A hardware-paced acquisition of a simulated board. Samples are computed when they are read, so none is
/// lost however late the reader comes, unless a fault asks for it.
class SimulatedStream {
public:
    /// A stream whose first scan is `firstScan` of the signals; nothing when its trigger never comes. `paced`
    /// keeps real time: sample n falls due n conversions after the start, samples before `firstScan`
    /// included. After `most` scans, if that is told, nothing more comes. A stream that runs raises.
    void Start(const StreamSetup& setup, std::shared_ptr<const SampleTables> tables,
               std::optional<std::uint64_t> firstScan, bool paced, std::optional<std::uint64_t> most);

    /// See AnalogBoard::ReadStream.
    [[nodiscard]] StreamRead Read(StreamBuffer buffer, FaultSwitch& faults);

    /// See AnalogBoard::StopStream.
    void Stop();

    [[nodiscard]] bool IsRunning() const;

private:
    using Clock = std::chrono::steady_clock;

    struct Run {
        std::shared_ptr<const SampleTables> tables;
        Clock::time_point start;
        double sampleRate = 0.0; // hertz
        SampleForm form = AnalogValues;
        std::size_t scanSamples = 1;
        bool triggered = true;
        bool paced = true;
        std::uint64_t next = 0;  // sample of the signals that is handed over next
        std::uint64_t left = 0;  // samples until the end
        std::uint64_t never = 0; // sample that never comes, nor those behind it
    };

    [[nodiscard]] std::uint64_t Due() const;
    [[nodiscard]] bool WaitForSamples(std::unique_lock<std::mutex>& lock, std::size_t room);
    [[nodiscard]] bool Pause(std::unique_lock<std::mutex>& lock, std::chrono::milliseconds time);

    mutable std::mutex mutex;
    std::condition_variable stopped;
    std::optional<Run> run;
    std::uint64_t runNumber = 0; // tells a waiting reader that its stream is no more
};

} // namespace tracelet
