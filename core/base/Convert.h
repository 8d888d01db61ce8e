#pragma once

#include <cstdint>
#include <string_view>

namespace tracelet {

/// Nearest 32-bit integer, halves to the even neighbour. Outside the 32-bit range, or not a number:
/// "Overflow".
[[nodiscard]] std::int32_t CLng(double value);

/// Largest integer not above `value`, as a 32-bit integer; "Overflow" outside the range.
[[nodiscard]] std::int32_t Int(double value);

/// Sum of two counts, the highest number there is where it is beyond.
[[nodiscard]] std::int32_t SumOrHighest(std::int32_t a, std::int32_t b);

/// Quotient of two numbers; a zero divisor raises "Division by zero" (0 / 0 raises "Overflow", as the
/// quotient is no number).
[[nodiscard]] double Quotient(double dividend, double divisor);

/// Truncating remainder, sign of the dividend; a zero divisor raises "Division by zero".
[[nodiscard]] std::int32_t Mod(std::int32_t dividend, std::int32_t divisor);

/// Number written in `text`, whatever the locale: blanks around it, a sign, decimals behind ".", an exponent
/// ("1e3", "1E+3", "1d3") and commas between digits of the integer part are read. Anything else, the empty
/// text too, raises "Type mismatch"; a number beyond the range of double raises "Overflow".
[[nodiscard]] double TextToDouble(std::string_view text);

/// CLng of TextToDouble.
[[nodiscard]] std::int32_t TextToLong(std::string_view text);

} // namespace tracelet
