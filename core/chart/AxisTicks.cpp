#include "core/chart/AxisTicks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tracelet {

namespace {

constexpr double LargestEnd = 1e100;
constexpr int MostZeros = 5;   ///< decimals, or zeros before the point, of ticks that are never powers
constexpr int FittedParts = 8; ///< of a fitted range, at most
constexpr int FewParts = 4;    ///< of one that had to widen, so that it need not soon again
constexpr double WellFilled = 0.4;
constexpr double OtherView = 1.5; ///< a window so many times as long or short as before is another one
constexpr double BadlyFilled = 0.2;
constexpr int Patience = 3; ///< windows

double TenTo(int exponent) {
    return std::pow(10.0, exponent);
}

double Bounded(double value) {
    return std::isnan(value) ? 0 : std::clamp(value, -LargestEnd, LargestEnd);
}

std::string Plain(std::int64_t digits, int exponent) {
    std::string text =
        std::to_string(std::abs(digits)) + std::string(static_cast<std::size_t>(std::max(0, exponent)), '0');
    if (exponent < 0) {
        const auto places = static_cast<std::size_t>(-exponent);
        if (text.size() <= places)
            text.insert(0, places + 1 - text.size(), '0');
        text.insert(text.size() - places, 1, '.');
    }
    return digits < 0 ? "-" + text : text;
}

std::string Power(std::int64_t digits, int exponent) {
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

/// A tick in units of ten to the exponent that are small enough to read.
struct Digits {
    std::int64_t digits;
    int exponent;
};

Digits DigitsOf(std::int64_t number, TickStep step) {
    constexpr std::int64_t fewer = 10'000;
    if (step.mantissa < fewer)
        return {number * step.mantissa, step.exponent};
    int exponent = step.exponent;
    for (std::int64_t rest = step.mantissa; rest >= fewer; rest /= 10)
        ++exponent;
    return {std::llround(step.At(number) / TickStep{1, exponent}.At(1)), exponent};
}

std::string Written(std::int64_t number, TickStep step, bool powers) {
    const auto [digits, exponent] = DigitsOf(number, step);
    if (digits == 0)
        return "0";
    return powers ? Power(digits, exponent) : Plain(digits, exponent);
}

/// The tick with the shortest number.
std::int64_t Roundest(TickRange ticks) {
    std::int64_t roundest = ticks.first;
    for (std::int64_t unit = 1; unit <= std::max(std::abs(ticks.first), std::abs(ticks.last)); unit *= 10) {
        const std::int64_t last = ticks.last - (ticks.last % unit + unit) % unit;
        if (last < ticks.first)
            break;
        roundest = last;
    }
    return roundest;
}

AxisSpan Rounded(AxisSpan span, int mostParts) {
    const double unit = StepFor(span.Length() * 1.05, mostParts).At(1);
    return {std::floor(span.low / unit) * unit, std::ceil(span.high / unit) * unit};
}

} // namespace

double TickStep::At(std::int64_t number) const {
    const double units = static_cast<double>(number) * static_cast<double>(mantissa);
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

TickStep StepOf(double length) {
    constexpr int digits = 15;
    const int exponent = static_cast<int>(std::floor(std::log10(length))) + 1 - digits;
    TickStep step{std::llround(exponent < 0 ? length * TenTo(-exponent) : length / TenTo(exponent)),
                  exponent};
    return Multiple(step, 1);
}

TickStep Multiple(TickStep step, std::int64_t times) {
    step.mantissa *= times;
    while (step.mantissa % 10 == 0) {
        step.mantissa /= 10;
        ++step.exponent;
    }
    return step;
}

TickRange TicksWithin(double low, double high, TickStep step) {
    const double unit = step.At(1);
    constexpr double tolerance = 1e-9; // of a step: a tick at the very end counts
    const double first = std::ceil(low / unit - tolerance);
    const double last = std::floor(high / unit + tolerance);
    constexpr double most = 1e14; // doubles tell whole numbers and their hundredths apart up to here
    if (!(std::abs(first) < most && std::abs(last) < most))
        return {};
    return {static_cast<std::int64_t>(first), static_cast<std::int64_t>(last)};
}

TickForm FormFor(TickRange ticks, TickStep step, std::size_t longest) {
    std::array<std::size_t, 2> widest{}; // plain and as a power
    for (std::int64_t tick = ticks.first; tick <= ticks.last; ++tick)
        for (const bool powers : {false, true})
            widest[powers] = std::max(widest[powers], Written(tick, step, powers).size());
    TickForm form{std::abs(DigitsOf(0, step).exponent) > MostZeros && widest[1] < widest[0]};
    if (widest[form.powers] > longest) {
        form.base = Roundest(ticks);
        form.powers = FormFor({ticks.first - form.base, ticks.last - form.base}, step).powers;
    }
    return form;
}

std::string TickText(std::int64_t number, TickStep step, TickForm form) {
    if (form.base != 0 && number == form.base) {
        const auto [digits, exponent] = DigitsOf(number, step);
        const TickStep rounded = Multiple({digits, exponent}, 1);
        return Plain(rounded.mantissa, rounded.exponent);
    }
    const std::string text = Written(number - form.base, step, form.powers);
    return form.base != 0 && number > form.base ? "+" + text : text;
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
    if (inside && length >= WellFilled * current.Length())
        return current;
    const AxisSpan fitted = Rounded(DrawnSpan(low, high), FittedParts);
    const bool roomy = inside && fitted.Length() > WellFilled * current.Length();
    return roomy ? current : fitted;
}

AxisSpan CalmSpan::Next(double low, double high, AxisSpan current, AxisSpan window) {
    const double length = window.Length();
    const bool otherWindow = length > OtherView * windowLength || OtherView * length < windowLength;
    const bool filled = high - low >= BadlyFilled * current.Length();
    if (otherWindow || filled || window.high < filledAt)
        filledAt = window.high;
    windowLength = length;
    if (otherWindow || window.high - filledAt > Patience * length)
        return FittedSpan(low, high, current);
    if (low >= current.low && high <= current.high)
        return current;
    return Rounded(DrawnSpan(std::min(low, current.low), std::max(high, current.high)), FewParts);
}

} // namespace tracelet
