#include "devices/display/AxisTicks.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tracelet {

namespace {

constexpr double largestEnd = 1e100;
constexpr int fixedDigits = 12; ///< longest number written without exponent
constexpr int mostParts = 8;    ///< of a fitted range
constexpr double wellFilled = 0.4;

double TenTo(int exponent) {
    return std::pow(10.0, exponent);
}

double Bounded(double value) {
    return std::isnan(value) ? 0 : std::clamp(value, -largestEnd, largestEnd);
}

std::string Scientific(std::int64_t digits, int exponent) {
    while (digits != 0 && digits % 10 == 0) {
        digits /= 10;
        ++exponent;
    }
    std::string text = std::to_string(digits);
    const std::size_t head = digits < 0 ? 2 : 1;
    exponent += static_cast<int>(text.size() - head);
    if (text.size() > head)
        text.insert(head, 1, '.');
    return text + (exponent < 0 ? "e-" : "e+") + std::to_string(std::abs(exponent));
}

} // namespace

double TickStep::At(std::int64_t number) const {
    const double units = static_cast<double>(number) * mantissa;
    return exponent < 0 ? units / TenTo(-exponent) : units * TenTo(exponent);
}

TickStep StepFor(double span, double parts) {
    const double least = span / parts;
    TickStep step{1, static_cast<int>(std::floor(std::log10(least)))};
    constexpr double tolerance = 1 - 1e-12; // of the division above
    while (step.At(1) < least * tolerance) {
        if (step.mantissa == 5)
            step = {1, step.exponent + 1};
        else
            step.mantissa = step.mantissa == 1 ? 2 : 5;
    }
    return step;
}

TickRange TicksWithin(double low, double high, TickStep step) {
    const double unit = step.At(1);
    constexpr double tolerance = 1e-9; // of a step: a tick at the very end counts
    const double first = std::ceil(low / unit - tolerance);
    const double last = std::floor(high / unit + tolerance);
    constexpr double most = 1e15; // doubles tell whole numbers apart up to here
    if (!(std::abs(first) < most && std::abs(last) < most))
        return {};
    return {static_cast<std::int64_t>(first), static_cast<std::int64_t>(last)};
}

std::string TickText(std::int64_t number, TickStep step) {
    const std::int64_t digits = number * step.mantissa;
    if (digits == 0)
        return "0";
    const std::string plain = std::to_string(std::abs(digits));
    const int decimals = std::max(0, -step.exponent);
    const int whole = static_cast<int>(plain.size()) + step.exponent;
    if (decimals > fixedDigits - 1 || std::max(whole, 1) + decimals > fixedDigits || step.exponent > 5)
        return Scientific(digits, step.exponent);
    std::string text = plain + std::string(static_cast<std::size_t>(std::max(0, step.exponent)), '0');
    if (decimals > 0) {
        const auto places = static_cast<std::size_t>(decimals);
        if (text.size() <= places)
            text.insert(0, places + 1 - text.size(), '0');
        text.insert(text.size() - places, 1, '.');
    }
    return digits < 0 ? "-" + text : text;
}

AxisSpan DrawnSpan(double minimum, double maximum) {
    AxisSpan span{Bounded(minimum), Bounded(maximum)};
    if (span.low > span.high)
        std::swap(span.low, span.high);
    const double size = std::max(std::abs(span.low), std::abs(span.high));
    const double least = std::max(size * 1e-12, 1e-100);
    if (span.Length() >= least)
        return span;
    const double middle = span.low + span.Length() / 2;
    const double half = span.Length() > 0 ? least : std::max(0.5, least);
    return {middle - half, middle + half};
}

AxisSpan FittedSpan(double low, double high, AxisSpan current) {
    const double length = high - low;
    const bool inside = low >= current.low && high <= current.high;
    if (inside && length >= wellFilled * current.Length())
        return current;
    const AxisSpan data = DrawnSpan(low, high);
    const TickStep step = StepFor(data.Length() * 1.05, mostParts);
    const double unit = step.At(1);
    const AxisSpan fitted{std::floor(data.low / unit) * unit, std::ceil(data.high / unit) * unit};
    const bool roomy = inside && fitted.Length() > wellFilled * current.Length();
    return roomy ? current : fitted;
}

} // namespace tracelet
