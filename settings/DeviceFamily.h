#pragma once

#include <cstdint>
#include <string_view>

namespace tracelet {

// What the name of a board tells about it. Every rule is a case-sensitive search for a part of the name.

/// The board may have thermocouple inputs; whether it has them, the thermocouple control knows.
[[nodiscard]] bool IsThermocoupleFamily(std::string_view deviceName);

/// After two channels became a pair, the choice between analog and thermocouple is shown anew.
[[nodiscard]] bool ShowsChoiceAfterPairing(std::string_view deviceName);

/// The other channel of a differential pair: 0 and 1, 2 and 3, …
[[nodiscard]] std::int32_t PartnerOf(std::int32_t channel);

} // namespace tracelet
