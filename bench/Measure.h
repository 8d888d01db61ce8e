#pragma once

#include <cstdint>

/// Readings of the process that every measurement uses.
namespace measure {

/// Processor time of all threads of the process, user and kernel, seconds.
[[nodiscard]] double CpuSeconds();
/// Time since the machine started, seconds; the same in every process.
[[nodiscard]] double WallSeconds();
/// Memory of the process that is resident now, MiB.
[[nodiscard]] double ResidentMiB();
/// Calls of malloc, calloc, realloc and their kin by all threads so far.
[[nodiscard]] std::int64_t Allocations();

} // namespace measure
