#pragma once

#include <string>

namespace tracelet {

/// An input range as lists and tables show it: "-10 ~ 10 V", "0.3125 ~ 5 V". Limits are in volts, or in
/// milliamperes when `second` is exactly 20: "4 ~ 20 mA".
[[nodiscard]] std::string RangeText(double first, double second);

} // namespace tracelet
