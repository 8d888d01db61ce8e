#pragma once

#include "core/base/UniqueFd.h"
#include "core/drivers/serial/LineReader.h"

#include <cstdint>
#include <span>

namespace tracelet {

/// Rates that a serial line is tried at, the usual ones first.
[[nodiscard]] std::span<const std::int32_t> UsualBauds();

/// Opens a source for reading without waiting for it. `stop` becomes readable when nobody wants it any more.
/// Raises with a text for the user.
[[nodiscard]] UniqueFd OpenSource(const LineSource& source, int stop);

[[nodiscard]] bool IsNetworkAddress(const std::string& address);

/// Sets 8 data bits, no parity, one stop bit and this rate on a serial line, and forgets what had come.
/// Raises for a rate that the line cannot have.
void SetBaud(int descriptor, std::int32_t baud);

} // namespace tracelet
