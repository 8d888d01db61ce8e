#pragma once

#include "core/base/Table.h"
#include "core/boards/Board.h"

#include <cstdint>

namespace tracelet {

// What a choice in the range dialog changes in the thermocouple tables. A channel or partner outside the
// tables raises "Subscript out of range"; what was changed before stays changed.

/// The thermocouple tables, by physical channel.
struct ThermoTables {
    Table<bool>& isThermo;
    Table<std::uint8_t>& type;
    Table<std::uint8_t>& scale;
    Table<std::uint8_t>& expChan;
};

/// Gives the channel a type, and its partner the same when `connection` is 1.
void ChooseType(const ThermoTables& tables, std::int32_t channel, std::uint8_t type, std::int32_t connection);

/// Gives all channels 0 … `channelCount` - 1 a scale: it is one setting.
void ChooseScale(const ThermoTables& tables, std::int32_t channelCount, std::uint8_t scale);

/// The channel became half of a pair: its partner takes over all but the scale.
void ShareWithPartner(const ThermoTables& tables, std::int32_t channel);

/// Makes `channel` an analog or a thermocouple one. If that is news, and `pairConnection` is 1, the partner
/// of `pairChannel` becomes the same, but never on boards whose channels do not pair up.
void ChooseKind(const ThermoTables& tables, const AnalogBoardInfo& board, std::int32_t channel, bool thermo,
                std::int32_t pairChannel, std::int32_t pairConnection);

} // namespace tracelet
