#pragma once

#include "core/base/Table.h"
#include "core/boards/Board.h"

#include <cstdint>

namespace tracelet {

/// Range and wiring of the channels of a board, with one spare element behind the last channel, which can be
/// selected but not wired anew. Channels beyond it raise "Subscript out of range".
class ChannelSettings {
public:
    ChannelSettings() = default;
    /// Every channel, the spare element too, in the board's first range, single-ended if the board can be
    /// wired so.
    ChannelSettings(const AnalogBoardInfo& board, std::int32_t channelCount);

    /// True for a channel or the spare element.
    [[nodiscard]] bool Has(std::int32_t channel) const { return channel >= 0 && channel < ranges.Count(); }

    [[nodiscard]] std::int32_t ConnectionOf(std::int32_t channel) const { return connections[channel]; }
    /// Wires a channel and, unless the board is of the unpaired family, its partner of the pair (even, odd)
    /// as well. Ignored when the board cannot be wired so, or the pair has no partner.
    void Connect(std::int32_t channel, std::int32_t code);

    [[nodiscard]] const InputRange& RangeOf(std::int32_t channel) const { return ranges[channel]; }
    void SetRange(std::int32_t channel, const InputRange& range) { ranges[channel] = range; }

    [[nodiscard]] ChannelSetup SetupOf(std::int32_t channel) const;
    [[nodiscard]] const Table<std::int32_t>& Connections() const { return connections; }

private:
    bool pairs = true;
    bool singleEnded = true;
    bool differential = true;
    Table<std::int32_t> connections;
    Table<InputRange> ranges;
};

} // namespace tracelet
