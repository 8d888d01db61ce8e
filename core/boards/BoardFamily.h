#pragma once

#include "core/boards/Board.h"

namespace tracelet {

// What the family of a board tells about it. A family is known by a part of the device name, upper and lower
// case told apart. A board of no family follows none of these rules, whatever its name holds: its description
// alone says what it can do.

/// The "05" family: channels do not pair up, their numbers are used as they are, and a polled scan without
/// thermocouples is not read but taken as zeros.
[[nodiscard]] bool IsUnpairedFamily(const AnalogBoardInfo& board);

/// The user may choose between voltages and thermocouples: the families "6601HG", "6605HG" and "3605".
/// Whether the board does read thermocouples, the thermocouple control knows.
[[nodiscard]] bool OffersThermocouples(const AnalogBoardInfo& board);

/// A differential channel takes two of the thermocouple control's numbers: the "6605" family.
[[nodiscard]] bool DoublesThermoChannels(const AnalogBoardInfo& board);

/// After two channels became a pair, the choice between voltage and thermocouple is shown anew: "6601".
[[nodiscard]] bool ShowsChoiceAfterPairing(const AnalogBoardInfo& board);

/// Only the low 12 bits of a raw count are the sample: "6602".
[[nodiscard]] bool CountsHaveTwelveBits(const AnalogBoardInfo& board);

/// The range is in milliamperes, not volts: it says so, or leaves it to its upper limit, which is then
/// exactly 20.
[[nodiscard]] bool IsMilliamperes(const InputRange& range);

/// "V", "mA", or "" for numbers of their own.
[[nodiscard]] const char* UnitOf(const InputRange& range);

} // namespace tracelet
