#pragma once

#include <cstdint>
#include <string>

namespace tracelet {

/// Distance between ticks: mantissa (above 0) times ten to the exponent.
struct TickStep {
    std::int64_t mantissa = 1;
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

/// The step that is `length` (above 0, finite) to 15 digits.
[[nodiscard]] TickStep StepOf(double length);

/// `times` (above 0) steps in one.
[[nodiscard]] TickStep Multiple(TickStep step, std::int64_t times);

/// Ticks of `step` within low <= tick <= high; none where doubles cannot tell neighbouring ticks apart.
[[nodiscard]] TickRange TicksWithin(double low, double high, TickStep step);

/// How the ticks of an axis are written.
struct TickForm {
    bool powers = false;   ///< "5e-9"; else all ticks with the same decimals: "0.25", "-40"
    std::int64_t base = 0; ///< other than 0: this tick is written in full, the others as what they add to it
    bool operator==(const TickForm&) const = default;
};

/// Powers where decimals or zeros are many and powers shorter; a base where a text would still be longer than
/// `longest` characters.
[[nodiscard]] TickForm FormFor(TickRange ticks, TickStep step, std::size_t longest = std::string::npos);

/// Tick `number` as text: "0.25", "-40", "2e+11", "+5e-9". Exact for steps of up to four digits, else within
/// a thousandth of the step.
[[nodiscard]] std::string TickText(std::int64_t number, TickStep step, TickForm form);

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

/// Range of an automatic axis while the data pass by: it widens at once, by more than it must, and narrows
/// only after three windows of time that fill little of it. The first data, and data of a window of quite
/// another length, are fitted at once.
class CalmSpan {
public:
    /// Range for data from `low` to `high`, seen in a window of time; `current` is the present one.
    [[nodiscard]] AxisSpan Next(double low, double high, AxisSpan current, AxisSpan window);
    /// What comes next is the first again.
    void Forget() { windowLength = 0; }

private:
    double windowLength = 0; ///< seconds, of the last call
    double filledAt = 0;     ///< end of the last window that filled some of the range
};

} // namespace tracelet
