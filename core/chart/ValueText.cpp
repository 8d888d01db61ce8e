#include "core/chart/ValueText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tracelet {

namespace {

constexpr int Digits = 5;
constexpr int LeastExponent = -3; ///< of numbers written without one
constexpr int MostExponent = 6;
constexpr int MostDecimals = 9;
constexpr auto Dash = "\u2013";

/// Of the number as it is written with so many digits: 9.99999 is 10.000.
int ExponentOf(double value) {
    value = std::abs(value);
    if (!std::isfinite(value) || value == 0)
        return 0;
    const auto exponent = static_cast<int>(std::floor(std::log10(value)));
    return value >= (10 - 0.5 * std::pow(10.0, 1 - Digits)) * std::pow(10.0, exponent) ? exponent + 1
                                                                                       : exponent;
}

std::string Formatted(double value, std::chars_format format, int decimals) {
    std::array<char, 400> buffer; // the largest double has 309 digits
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, decimals);
    std::string text(buffer.data(), end.ptr);
    if (text.starts_with('-') && text.find_first_of("123456789") == std::string::npos)
        text.erase(0, 1); // -0.00
    return text;
}

} // namespace

ValueForm FormOf(double largest) {
    const int exponent = ExponentOf(largest);
    if (exponent < LeastExponent || exponent > MostExponent)
        return {Digits - 1, true};
    return {std::max(0, Digits - 1 - exponent), false};
}

std::string ValueText(double value, ValueForm form) {
    if (std::isnan(value))
        return Dash;
    if (std::isinf(value))
        return value > 0 ? "\u221e" : "-\u221e";
    return Formatted(value, form.exponent ? std::chars_format::scientific : std::chars_format::fixed,
                     form.decimals);
}

std::string ValueText(double value) {
    return ValueText(value, FormOf(value));
}

std::string PrefixedText(double value, const char* unit) {
    constexpr std::array Prefixes = {"p", "n", "\u00b5", "m", "", "k", "M", "G"};
    constexpr int Least = -4; // of the thousands that the first one stands for
    if (!std::isfinite(value))
        return Dash;
    const auto thousands = static_cast<int>(std::floor(ExponentOf(value) / 3.0));
    const int prefix = std::clamp(thousands, Least, Least + static_cast<int>(Prefixes.size()) - 1);
    return ValueText(value / std::pow(1000.0, prefix)) + " " +
           Prefixes[static_cast<std::size_t>(prefix - Least)] + unit;
}

std::string TimeText(double seconds, double resolution) {
    const auto decimals = static_cast<int>(std::ceil(-std::log10(resolution)));
    return ValueText(seconds, {std::clamp(decimals, 0, MostDecimals), false}) + " s";
}

} // namespace tracelet
