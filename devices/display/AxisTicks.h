#pragma once

#include <cstdint>
#include <string>

namespace tracelet {

/// Distance between ticks: mantissa (1, 2 or 5) times ten to the exponent.
struct TickStep {
    int mantissa = 1;
    int exponent = 0;

    /// Place of tick `number`, counted from 0.
    [[nodiscard]] double At(std::int64_t number) const;
    bool operator==(const TickStep&) const = default;
};

/// Numbers of the ticks from `first` to `last`; none when first > last.
struct TickRange {
    std::int64_t first = 0;
    std::int64_t last = -1;
    bool operator==(const TickRange&) const = default;
};

/// Smallest 1-2-5 step that cuts `span` (above 0, finite) into at most `parts` (at least 1) parts. It depends
/// on the span alone, so an axis that scrolls keeps its step.
[[nodiscard]] TickStep StepFor(double span, double parts);

/// Ticks of `step` within low <= tick <= high; none where doubles cannot tell neighbouring ticks apart.
[[nodiscard]] TickRange TicksWithin(double low, double high, TickStep step);

/// Tick `number` as text, exact, all ticks of a step with the same decimals: "0.25", "-40", "2e+11".
[[nodiscard]] std::string TickText(std::int64_t number, TickStep step);

/// Ends of an axis as they are drawn.
struct AxisSpan {
    double low = 0;
    double high = 1;
    [[nodiscard]] double Length() const { return high - low; }
    bool operator==(const AxisSpan&) const = default;
};

/// What is drawn for ends as they were written: reversed ends are swapped, equal ones and ones too close to
/// tell pixels apart are moved apart, endless ones and ones that are no numbers brought within bounds.
[[nodiscard]] AxisSpan DrawnSpan(double minimum, double maximum);

/// Range with round ends that fits data from `low` to `high`. Keeps `current` as long as the data stay inside
/// and fill a good part of it, so that an automatic axis does not fidget.
[[nodiscard]] AxisSpan FittedSpan(double low, double high, AxisSpan current);

} // namespace tracelet
