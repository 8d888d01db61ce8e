#pragma once

#include <cstddef>
#include <cstdint>

namespace tracelet {

// Numbers as text at the speed of a large export. The bytes are those of printf in the "C" locale, whatever
// the locale is: "." as decimal separator, "nan", "-nan", "inf", "-inf" for what is no finite number.

/// Bytes that every writer below may touch from `out` on, beyond the end of its text too.
inline constexpr std::size_t GeneralTextRoom = 48;

/// Writes `value` as "%.15g" does and returns the end of the text; no terminating 0.
[[nodiscard]] char* PutGeneral(double value, char* out);

/// Writes `value` as "%.7g" does and returns the end of the text; no terminating 0.
[[nodiscard]] char* PutGeneral(float value, char* out);

/// Writes the decimal digits of `value` and returns the end of the text; no terminating 0.
[[nodiscard]] char* PutLong(std::int32_t value, char* out);

} // namespace tracelet
