#pragma once

#include "core/base/Table.h"

#include <cstdint>

namespace tracelet {

/// The contiguous block of digital ports that is polled: from the first to the last port with a selected
/// line, unselected ports in between included.
struct PortBlock {
    std::int32_t start = 0;
    std::int32_t count = 0;
    std::int32_t lines = 0; ///< selected lines of all ports

    bool operator==(const PortBlock&) const = default;
};

/// How DerivePortBlock ended.
enum class PortBlockOutcome {
    Found,
    Empty,  ///< no line is selected: count and lines are 0, start is the port count
    Failed, ///< the masks do not cover the ports; what the block held from there on is unchanged
};

/// Number of set bits.
[[nodiscard]] std::uint8_t CountBit1(std::uint8_t value);

/// Derives the block from the line masks of `portCount` ports; `masks` has one spare element behind the
/// last port, which counts among the lines.
[[nodiscard]] PortBlockOutcome DerivePortBlock(const Table<std::uint8_t>& masks, std::int32_t portCount,
                                               PortBlock& block);

} // namespace tracelet
