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

    /// Scrolls so that a point at `x` is seen: one beyond the maximum stands at the right edge, one before
    /// the minimum at the left one. Ends that are equal, reversed or no numbers stay.
    void Follow(double x);
};

} // namespace tracelet
