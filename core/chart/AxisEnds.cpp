#include "core/chart/AxisEnds.h"

#include <cmath>

namespace tracelet {

void AxisEnds::SetMinimum(double value) {
    SetBoth(value, maximum);
}
void AxisEnds::SetMaximum(double value) {
    SetBoth(minimum, value);
}

void AxisEnds::SetBoth(double low, double high) {
    minimum = low;
    maximum = high;
    span = high - low;
}

void AxisEnds::MoveTo(double newMinimum) {
    minimum = newMinimum;
    maximum = newMinimum + span;
}

void AxisEnds::Follow(double x) {
    if (!(span > 0) || !std::isfinite(span) || !std::isfinite(x))
        return;
    if (x > maximum) {
        maximum = x;
        minimum = x - span;
    } else if (x < minimum)
        MoveTo(x);
}

} // namespace tracelet
