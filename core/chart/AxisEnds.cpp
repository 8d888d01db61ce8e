#include "core/chart/AxisEnds.h"

#include "core/chart/AxisTicks.h"

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

void AxisEnds::TakePart(double from, double to) {
    const AxisSpan drawn = DrawnSpan(minimum, maximum);
    const AxisSpan part{drawn.low + from * drawn.Length(), drawn.low + to * drawn.Length()};
    if (!(part.low < part.high) || !(DrawnSpan(part.low, part.high) == part))
        return;
    SetBoth(part.low, part.high);
    automatic = false;
}

void AxisEnds::Pan(double fraction) {
    const AxisSpan drawn = DrawnSpan(minimum, maximum);
    if (AxisSpan{minimum, maximum} == drawn)
        MoveTo(minimum + fraction * drawn.Length());
    else
        SetBoth(drawn.low + fraction * drawn.Length(), drawn.high + fraction * drawn.Length());
    automatic = false;
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
