#include "core/settings/BoxRules.h"

#include "core/base/Convert.h"
#include "core/base/RunTimeError.h"

namespace tracelet {
namespace {

constexpr double LowestCount = 4096.0;

constexpr BoxRule AnyNumber(bool isInteger, std::string_view refusal, std::string_view putBack) {
    BoxRule rule;
    rule.isInteger = isInteger;
    rule.notNumberText = refusal;
    rule.putBack = putBack;
    return rule;
}

constexpr BoxRule AtLeast(double lowest, bool isInteger, std::string_view outsideText,
                          std::string_view notNumberText, std::string_view putBack) {
    BoxRule rule = AnyNumber(isInteger, notNumberText, putBack);
    rule.lowest = lowest;
    rule.outsideText = outsideText;
    return rule;
}

constexpr BoxRule Between(double lowest, double highest, std::string_view refusal, std::string_view putBack) {
    BoxRule rule = AtLeast(lowest, true, refusal, refusal, putBack);
    rule.highest = highest;
    return rule;
}

} // namespace

namespace BoxRules {
constexpr BoxRule ScanStart = AnyNumber(true, "please input a valid number", "0");
constexpr BoxRule ScanNumber = AnyNumber(true, "please input a valid number", "1");
constexpr BoxRule Count = AtLeast(LowestCount, true, "DataCount should be at least 4096 for FAI",
                                  "Please input a valid number", "4096");
constexpr BoxRule SampleRate =
    AtLeast(1.0, false, "Sample rate should not be less than 1", "Please input a valide number", "1");
constexpr BoxRule TriggerVoltage = AnyNumber(false, "Invalid trigger voltage", "1");
constexpr BoxRule TriggerDelayTime = AnyNumber(false, "Invalid delay time", "0");
constexpr BoxRule TriggerAfterTime = AnyNumber(false, "Invalid after time for about mode", "0");
constexpr BoxRule TimeInterval = Between(1.0, 65535.0, "please input a number between 1 and 65535", "65535");
} // namespace BoxRules

std::optional<std::string_view> Refusal(const BoxRule& rule, std::string_view text) {
    try {
        const double value = rule.isInteger ? TextToLong(text) : TextToDouble(text);
        if (value < rule.lowest || value > rule.highest)
            return rule.outsideText;
        return std::nullopt;
    } catch (const RunTimeError&) {
        return rule.notNumberText;
    }
}

std::int32_t CyclicSampleCount(double sampleRate) {
    const double half = sampleRate / 2.0;
    return CLng(half < LowestCount ? LowestCount : half);
}

} // namespace tracelet
