#pragma once

#include <cstdint>

namespace tracelet {

// Playback speed is in scans a second. Up to ten scans a second each tick plays one scan and the ticks follow
// the speed; above that a tick comes every 100 ms and plays more.

constexpr std::int32_t PlaybackTickMs = 100;

/// Whether playback can run at this speed at all: above 0 and finite.
[[nodiscard]] bool IsPlaybackSpeed(double speed);

/// Scans that a tick plays, 1 or more. "Overflow" for a speed whose tick holds more scans than 32 bits count.
[[nodiscard]] std::int32_t ScansPerTick(double speed);

/// Milliseconds from tick to tick, 100 or more. "Overflow" for a speed too slow for 32 bits.
[[nodiscard]] std::int32_t TickInterval(double speed);

/// Values that a tick plays at most, well below a second's work: 64 channels at 15,625 scans a second reach a
/// hundred times their own rate with less.
constexpr std::int64_t MostValuesATick = std::int64_t{1} << 24;

/// Of the `scans` that a tick should play, those that it does play when each has so many values: a tick that
/// would keep the window from its user plays fewer, one at least.
[[nodiscard]] std::int32_t AffordableScans(std::int32_t scans, std::int64_t valuesPerScan);

/// Speeds between which the user moves the speed slider.
struct SpeedRange {
    double lowest = 0.0;
    double highest = 0.0;
};

/// A hundredth to a hundred times the recording's own rate, as far as ScansPerTick and TickInterval reach.
[[nodiscard]] SpeedRange UserSpeedRange(double ownRate);

} // namespace tracelet
