#pragma once

#include "core/boards/Board.h"

#include <string>

namespace tracelet {

/// An input range as lists and tables show it: "-10 ~ 10 V", "0.3125 ~ 5 V", "4 ~ 20 mA".
[[nodiscard]] std::string RangeText(const InputRange& range);

} // namespace tracelet
