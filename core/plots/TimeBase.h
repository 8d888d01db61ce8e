#pragma once

#include <cstdint>

namespace tracelet {

// Arithmetic of the time axis. The graph spans ten divisions of `secondsPerDivision` seconds. Chart lengths
// are points a plot; "Overflow" beyond 32 bits, "Division by zero" for a zero period.

/// The value one step up or down from `secondsPerDivision`: times or divided by five, within 1e-6 to 100.
[[nodiscard]] double SteppedDivision(double secondsPerDivision, bool up);

/// Fast input at `rate` conversions a second over `channels` channels.
[[nodiscard]] std::int32_t FastChartLength(double secondsPerDivision, double rate, std::int32_t channels);

/// Polled input every `intervalMs` milliseconds: the scans a second are rounded first, one point is added.
[[nodiscard]] std::int32_t PolledChartLength(double secondsPerDivision, std::int32_t intervalMs);

/// A recording with `scanInterval` seconds between scans: the scans a second are rounded first.
[[nodiscard]] std::int32_t HistoryChartLength(double secondsPerDivision, double scanInterval);

/// Points of an X axis from `minimum` to `maximum` at the start of polled input, rounded down, and one more.
[[nodiscard]] std::int32_t PolledStartChartLength(double minimum, double maximum, std::int32_t intervalMs);

/// Window of cyclic fast input: ten seconds, or 100,000 points from 25 kHz on.
struct CyclicWindow {
    double seconds = 0.0;
    std::int32_t chartLength = 0;
};
[[nodiscard]] CyclicWindow CyclicFastWindow(double rate);

} // namespace tracelet
