#pragma once

namespace tracelet {

/// Ends of an axis as they were written, and how the time axis follows samples.
struct AxisEnds {
    double minimum = 0;
    double maximum = 10;
    double span = 10; ///< kept exactly while the axis scrolls
    bool automatic = false;

    void SetMinimum(double value);
    void SetMaximum(double value);
    void SetBoth(double low, double high);
    /// Moves both ends, span kept.
    void MoveTo(double newMinimum);

    /// Takes the part between two fractions of what is drawn (0 the lower end, 1 the upper one; beyond them
    /// it grows). One that doubles cannot tell apart changes nothing.
    void TakePart(double from, double to);
    /// Moves by a fraction of what is drawn.
    void Pan(double fraction);

    /// Scrolls so that a point at `x` is seen: one beyond the maximum stands at the right edge, one before
    /// the minimum at the left one. Ends that are equal, reversed or no numbers stay.
    void Follow(double x);

    bool operator==(const AxisEnds&) const = default;
};

} // namespace tracelet
