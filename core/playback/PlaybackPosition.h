#pragma once

#include <cstdint>

namespace tracelet {

// Places in a recording: a scan index, its time on the graph, and the percentage that the position slider
// shows.

/// Scan at `percent` (0 to 100) of a recording of `scanCount` scans, to the nearest.
[[nodiscard]] std::int32_t ScanAt(double percent, std::int32_t scanCount);

/// Percentage after a tick has played `scans` scans from `percent` on; unchanged in a recording of no scans.
/// It may pass 100.
[[nodiscard]] double AdvancedPercent(double percent, std::int32_t scans, std::int32_t scanCount);

/// Seconds from the start of the recording to scan `scan`; "Overflow" when that is no finite number.
[[nodiscard]] double ScanTime(std::int64_t scan, double scanInterval);

/// Points a plot of the graph keeps when a recording is opened: the scans of 20 seconds. "Division by zero"
/// for an interval of 0, "Overflow" beyond 32 bits.
[[nodiscard]] std::int32_t OpeningChartLength(double scanInterval);

} // namespace tracelet
