#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <utility>

namespace tracelet {

/// What goes wrong with a simulated board, for tests. As made, nothing does.
struct Faults {
    bool unplugged = false;            ///< every call fails but Info and StopStream
    std::string readError = {};        ///< unless "": every reading fails with this text
    std::string refusedRate = {};      ///< unless "": SettleSampleRate fails with this text
    std::string refusedStart = {};     ///< unless "": StartStream fails with this text
    std::uint64_t lostScans = 0;       ///< the next ReadStream loses so many scans, once
    std::chrono::milliseconds slow{0}; ///< time that every reading takes longer
};

/// Faults that the test sets and the user-interface and reading threads see.
class FaultSwitch {
public:
    void Set(Faults value) {
        const std::lock_guard lock(mutex);
        faults = std::move(value);
    }
    [[nodiscard]] Faults Get() const {
        const std::lock_guard lock(mutex);
        return faults;
    }
    /// The scans to lose, which are none from then on.
    [[nodiscard]] std::uint64_t TakeLostScans() {
        const std::lock_guard lock(mutex);
        return std::exchange(faults.lostScans, 0);
    }

private:
    mutable std::mutex mutex;
    Faults faults;
};

/// Raises when the board is unplugged.
void CheckPlugged(const Faults& faults);

/// Raises when the board is unplugged or readings fail.
void CheckReading(const Faults& faults);

/// Raises `text` unless it is "".
void CheckRefusal(const std::string& text);

} // namespace tracelet
