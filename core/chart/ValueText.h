#pragma once

#include <string>

namespace tracelet {

// Numbers to be read beside the chart. The decimal separator is "." whatever the locale; what is not a number
// is a dash.

/// How the values of a plot are written, so that their points stand below each other and do not jump.
struct ValueForm {
    int decimals = 4;
    bool exponent = false; ///< as 1.2345e-06
    bool operator==(const ValueForm&) const = default;
};

/// The form in which a number as large as `largest` has five digits. Below 0.001 and from 10,000,000 on it
/// has an exponent; 0 and what is not finite count as 1.
[[nodiscard]] ValueForm FormOf(double largest);
[[nodiscard]] std::string ValueText(double value, ValueForm form);
/// In its own form.
[[nodiscard]] std::string ValueText(double value);

/// With five digits and a prefix of the unit: "1.2346 ms", "-12.346 kHz".
[[nodiscard]] std::string PrefixedText(double value, const char* unit);

/// A time on an axis that tells `resolution` seconds (above 0) apart: "1.234 s" for 0.002.
[[nodiscard]] std::string TimeText(double seconds, double resolution);

} // namespace tracelet
