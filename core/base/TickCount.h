#pragma once

#include <cstdint>
#include <functional>

namespace tracelet {

/// A millisecond counter that wraps at 2^32. Differences of two readings are taken unsigned, so they survive
/// the wrap.
using TickClock = std::function<std::uint32_t()>;

/// Milliseconds of the monotonic clock, from an arbitrary start.
[[nodiscard]] std::uint32_t GetTickCount();

} // namespace tracelet
