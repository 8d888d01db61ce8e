#pragma once

#include "core/boards/Board.h"

#include <cstdint>

namespace tracelet {

// Converter codes. A converter of n bits divides a range into 2^n steps, code 0 at the lower limit. As a raw
// count (SampleForm RawCounts), 16-bit boards hand the code over with its top bit turned, so that the middle
// of the range is 0 and the count is signed; boards of fewer bits hand it over as it is in the low bits, and
// what the bits above hold is the board's own affair.

/// Highest code of a converter of `resolution` bits (1 to 16).
[[nodiscard]] std::int32_t HighestCode(std::int32_t resolution);

/// Code that is nearest to `value`, halves to even; 0 or the highest code beyond the range's ends.
[[nodiscard]] std::int32_t CodeOf(double value, const InputRange& range, std::int32_t resolution);

/// Value in volts or milliamperes: first + (second - first) * code / 2^resolution.
[[nodiscard]] double ValueOf(std::int32_t code, const InputRange& range, std::int32_t resolution);

/// The raw count of a code, and the code of a raw count.
[[nodiscard]] std::int16_t CountOf(std::int32_t code, std::int32_t resolution);
[[nodiscard]] std::int32_t CodeOfCount(std::int16_t count, std::int32_t resolution);

} // namespace tracelet
