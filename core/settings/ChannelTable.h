#pragma once

#include "core/base/Table.h"
#include "core/boards/Board.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tracelet {

/// What the table of channels shows of one channel.
struct ChannelFacts {
    std::int32_t connection = 0; ///< 0 single-ended, any other differential
    bool isThermo = false;
    std::uint8_t thermoType = 0; ///< index into the type names
    std::uint8_t expChan = 0;    ///< expansion channel
    InputRange range;            ///< of an analog channel
};

enum ChannelColumn {
    ChannelName,
    LogicalName,
    ConnectionName,
    KindName,
    RangeOrType,
    ExpansionName,
    ChannelColumns
};

using ChannelRow = std::array<std::string, ChannelColumns>;

/// The rows of all channels of a board, channel 0 first. Both members of a differential pair bear the same
/// logical name, except on boards whose channels never pair up. A thermocouple type beyond `typeNames`
/// raises "Subscript out of range".
[[nodiscard]] std::vector<ChannelRow> ChannelRows(const AnalogBoardInfo& board,
                                                  std::span<const ChannelFacts> channels,
                                                  const Table<std::string>& typeNames);

} // namespace tracelet
