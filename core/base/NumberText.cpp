#include "core/base/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tracelet {
namespace {

constexpr std::size_t LongestDouble = 400; // fixed notation of the largest double

template <typename T>
std::string Formatted(T value, std::chars_format format, int precision) {
    std::array<char, LongestDouble> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision);
    return std::string(buffer.data(), end.ptr);
}

// A text such as "-0.00" says nothing that "0.00" does not.
std::string WithoutNegativeZero(std::string text) {
    if (text.starts_with('-') && text.find_first_of("123456789in") == std::string::npos)
        text.erase(0, 1);
    return text;
}

double Reread(const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// Fixed notation, halves away from zero as format patterns round.
std::string Fixed(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double scaled = value * scale;
    if (std::abs(scaled) < 1e15) {
        // 15 digits settle halves that binary fractions only come near, as 0.00005 does.
        const double settled = Reread(Formatted(scaled, std::chars_format::general, 15));
        value = std::round(settled) / scale;
    }
    return WithoutNegativeZero(Formatted(value, std::chars_format::fixed, decimals));
}

} // namespace

std::string NumberText(double value) {
    return Formatted(value, std::chars_format::general, 15);
}

std::string NumberText(float value) {
    return Formatted(value, std::chars_format::general, 7);
}

std::string NumberText(std::int32_t value) {
    return std::to_string(value);
}

std::string OptionalDecimalsText(double value) {
    std::string text = Fixed(value, 4);
    if (text.find('.') == std::string::npos)
        return text;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
        text.pop_back();
    return WithoutNegativeZero(text);
}

std::string GroupedText(double value) {
    std::string text = Fixed(value, 0);
    const std::size_t first = text.starts_with('-') ? 1 : 0;
    if (text.find_first_not_of("0123456789", first) != std::string::npos)
        return text;
    for (std::size_t at = text.size(); at > first + 3;)
        text.insert(at -= 3, 1, ',');
    return text;
}

std::string TwoDigitText(std::int32_t value) {
    std::string text = std::to_string(value);
    const std::size_t first = text.starts_with('-') ? 1 : 0;
    while (text.size() < first + 2)
        text.insert(first, 1, '0');
    return text;
}

std::string DisplayText(double value) {
    std::string text = Fixed(value, 6);
    if (value != 0.0 && text == "0.000000") {
        std::string power = Formatted(value, std::chars_format::general, 3);
        if (const std::size_t padding = power.find("e-0"); padding != std::string::npos)
            power.erase(padding + 2, 1);
        return power;
    }
    const std::size_t first = text.starts_with('-') ? 1 : 0;
    if (text.size() > first + 1 && text[first] == '0' && text[first + 1] == '.')
        text.erase(first, 1);
    return text;
}

std::string TimeSpanText(double seconds) {
    if (seconds < 10.0)
        return NumberText(Reread(Fixed(seconds, 1))) + " s";
    if (seconds < 120.0)
        return Fixed(seconds, 0) + " s";
    return seconds < 7200.0 ? Fixed(seconds / 60.0, 0) + " min" : Fixed(seconds / 3600.0, 0) + " h";
}

std::string ClockText(double seconds) {
    const auto whole = static_cast<std::int64_t>(std::min(std::max(0.0, seconds), 1e9));
    const auto part = [](std::int64_t value) { return TwoDigitText(static_cast<std::int32_t>(value)); };
    return part(whole / 3600) + ':' + part(whole / 60 % 60) + ':' + part(whole % 60);
}

std::string PaceText(double reached, double asked) {
    constexpr std::array Prefixes{"", " k", " M", " G"};
    std::size_t prefix = 0;
    double scale = 1.0;
    for (; asked / scale >= 1000.0 && prefix + 1 < Prefixes.size(); ++prefix)
        scale *= 1000.0;
    std::string goal = OptionalDecimalsText(asked / scale) + Prefixes[prefix];
    if (reached <= 0.0)
        return goal;
    constexpr const char* FigureSpace = "\u2007"; // as wide as a digit
    const int decimals = asked < 1.0 ? 4 : asked / scale < 10.0 ? 2 : 1;
    const std::string at = Fixed(reached / scale, decimals);
    const std::size_t length = Fixed(asked / scale, decimals).size();
    std::string padding;
    for (std::size_t missing = at.size(); missing < length; ++missing)
        padding += FigureSpace;
    return padding + at + " of " + goal;
}

std::string SizeText(std::int64_t bytes) {
    constexpr std::array Units{" kB", " MB", " GB", " TB"};
    if (bytes < 1000)
        return std::to_string(bytes) + " bytes";
    std::size_t unit = 0;
    double size = static_cast<double>(bytes) / 1000.0;
    for (; size >= 999.95 && unit + 1 < Units.size(); ++unit)
        size /= 1000.0;
    return Fixed(size, 1) + Units[unit];
}

} // namespace tracelet
