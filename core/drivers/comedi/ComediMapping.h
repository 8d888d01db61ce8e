#pragma once

#include "core/boards/Board.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tracelet {

// How Comedi's terms become ours. Plain arithmetic that needs neither the library nor a board.

/// Bits of a converter whose highest code is `maxdata`.
[[nodiscard]] std::int32_t BitsOf(std::uint32_t maxdata);

/// Raw count of a code of a converter of `bits` bits, as ConverterCounts.h has it; of a converter of more
/// than 16 bits the upper 16 count.
[[nodiscard]] std::int16_t CountOfWideCode(std::uint32_t code, std::int32_t bits);

/// Input range for Comedi's range number `code`. Nothing for one without a unit or a span.
[[nodiscard]] std::optional<InputRange> InputRangeOf(std::int32_t code, double lowest, double highest,
                                                     RangeUnit unit);

/// Nanoseconds that `conversions` conversions take at `rate` hertz, to nearest and clamped to 32 bits; and
/// back.
[[nodiscard]] std::uint32_t PeriodOf(double rate, std::int32_t conversions);
[[nodiscard]] double RateOf(std::uint32_t period, std::int32_t conversions);

/// Eight or, at a subdevice's end, fewer lines that are read as one port.
struct PortPlace {
    std::uint32_t subdevice = 0;
    std::uint32_t firstLine = 0; ///< a multiple of 8
    std::uint32_t lines = 8;     ///< 1 to 8; the bits above them are 0

    bool operator==(const PortPlace&) const = default;
};

/// The ports of a subdevice of so many lines.
[[nodiscard]] std::vector<PortPlace> PortsOf(std::uint32_t subdevice, std::uint32_t lines);

/// State of a port in `bits`, the lines of its subdevice from line `firstLine` div 32 times 32 on.
[[nodiscard]] std::uint8_t PortState(const PortPlace& place, std::uint32_t bits);

/// Number of the device node "comedi<number>"; nothing for other names, those of subdevices too.
[[nodiscard]] std::optional<std::int32_t> NodeNumber(std::string_view name);

/// What an error number of a call to a board means to a user; `otherwise` for numbers without a text.
[[nodiscard]] std::string BoardErrorText(int errorNumber, std::string_view otherwise);

} // namespace tracelet
