#pragma once

#include "core/base/Table.h"
#include "core/boards/Board.h"

#include <cstdint>

namespace tracelet {

/// The other channel of a differential pair: 0 and 1, 2 and 3, …
[[nodiscard]] std::int32_t PartnerOf(std::int32_t channel);

/// Channel numbering of an analog board. A differential pair (even channel, odd channel) is one logical
/// channel, except on boards of the unpaired family.
struct ChannelNumbers {
    const AnalogBoardInfo& board;           ///< without channels, numbering raises "Division by zero"
    const Table<std::int32_t>& connections; ///< wiring code by physical channel; only 1 is differential

    /// Logical number of a physical channel. A channel beyond the table raises "Subscript out of range".
    [[nodiscard]] std::int32_t PhysToLogical(std::int32_t channel) const;

    /// Physical number of a logical channel. `channel` is raised by one for every odd member of a
    /// differential pair passed on the way; a caller that needs it unchanged passes a copy.
    [[nodiscard]] std::int32_t LogicalToPhys(std::int32_t& channel) const;

    /// Number of logical channels; half a pair counts 0.5, the sum is rounded to nearest, halves to even.
    [[nodiscard]] std::int32_t LogicalCount() const;

    /// Physical channel of scan position `position` of a scan that starts at channel `scanStart`.
    [[nodiscard]] std::int32_t ScannedChannel(std::int32_t scanStart, std::int32_t position) const;
};

} // namespace tracelet
