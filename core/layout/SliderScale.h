#pragma once

namespace tracelet {

/// Where values stand on a slider: fraction 0 is the lower end of the groove, 1 the upper.
struct SliderScale {
    double minimum = 0.0;
    double maximum = 100.0;
    /// Equal lengths of the groove multiply the value; taken only while the whole range lies above 0.
    bool logarithmic = false;

    [[nodiscard]] double Clamped(double value) const;
    /// 0 to 1; a value outside the range stands at the nearer end.
    [[nodiscard]] double Fraction(double value) const;
    /// Value at a fraction; the ends give exactly minimum and maximum, fractions beyond them too.
    [[nodiscard]] double ValueAt(double fraction) const;
    /// `value`, first brought into the range, moved on by a fraction of the groove, within the range.
    [[nodiscard]] double Stepped(double value, double fraction) const;

private:
    [[nodiscard]] bool Multiplies() const { return logarithmic && minimum > 0.0; }
};

} // namespace tracelet
