#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace tracelet {

/// What a text box of the settings dialog accepts, and what happens when it does not.
struct BoxRule {
    bool isInteger = false; ///< read as an integer, rounded to nearest; else as a double
    double lowest = -std::numeric_limits<double>::infinity();
    double highest = std::numeric_limits<double>::infinity();
    std::string_view outsideText;   ///< message for a number outside the limits
    std::string_view notNumberText; ///< message for any other text
    std::string_view putBack;       ///< text that replaces a refused one
};

/// The message that refuses `text`; nothing when it is accepted.
[[nodiscard]] std::optional<std::string_view> Refusal(const BoxRule& rule, std::string_view text);

namespace BoxRules {
extern const BoxRule ScanStart;
extern const BoxRule ScanNumber;
extern const BoxRule Count;
extern const BoxRule SampleRate;
extern const BoxRule TriggerVoltage;
extern const BoxRule TriggerDelayTime;
extern const BoxRule TriggerAfterTime;
extern const BoxRule TimeInterval;
} // namespace BoxRules

/// Conversions of one buffer of cyclic input: half a second's worth at `sampleRate` hertz, 4096 at least.
/// "Overflow" when that is beyond a 32-bit number.
[[nodiscard]] std::int32_t CyclicSampleCount(double sampleRate);

} // namespace tracelet
