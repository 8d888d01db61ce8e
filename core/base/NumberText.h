#pragma once

#include <cstdint>
#include <string>

namespace tracelet {

// Numbers as text. The decimal separator is "." whatever the locale.

/// Shortest general form with at most 15 significant digits (the "%.15g" form): "0.1", "1e-05", "1e+15".
[[nodiscard]] std::string NumberText(double value);

/// The same with at most 7 significant digits ("%.7g").
[[nodiscard]] std::string NumberText(float value);

/// Decimal digits of an integer.
[[nodiscard]] std::string NumberText(std::int32_t value);

/// Pattern "0.####": at most four decimals, rounded half away from zero, no bare decimal point: "-10",
/// "0.3125".
[[nodiscard]] std::string OptionalDecimalsText(double value);

/// Pattern "#,##0": rounded to an integer, commas between thousands: "20,000", "0".
[[nodiscard]] std::string GroupedText(double value);

/// Pattern "00": at least two digits: "07", "123".
[[nodiscard]] std::string TwoDigitText(std::int32_t value);

/// Pattern ".#####0": six decimals, no zero before the point: "1.000000", ".200000". A number too small for
/// them has three digits and a power of ten: "2.5e-7".
[[nodiscard]] std::string DisplayText(double value);

/// A time for people: "0.4 s", "12 s", from two minutes on "35 min", from two hours on "30 h".
[[nodiscard]] std::string TimeSpanText(double seconds);

/// A time of the clock since its start: "00:01:07", from 100 hours on "100:00:00". Fractions are cut off.
[[nodiscard]] std::string ClockText(double seconds);

/// A rate beside the one that was asked for, in the same power of 1000: "9.98 of 10", "99.9 of 100 k". The
/// first part is as long for rates near the other. Without a rate reached only the other: "100 k".
[[nodiscard]] std::string PaceText(double reached, double asked);

/// A size for people, in powers of 1000: "812 bytes", "2.1 MB".
[[nodiscard]] std::string SizeText(std::int64_t bytes);

} // namespace tracelet
