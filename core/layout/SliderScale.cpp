#include "core/layout/SliderScale.h"

#include <algorithm>
#include <cmath>

namespace tracelet {

double SliderScale::Clamped(double value) const {
    return std::clamp(value, minimum, maximum);
}

double SliderScale::Fraction(double value) const {
    if (!(minimum < maximum))
        return 0.0;
    const double inside = Clamped(value);
    const double fraction = Multiplies() ? std::log(inside / minimum) / std::log(maximum / minimum)
                                         : (inside - minimum) / (maximum - minimum);
    return std::clamp(fraction, 0.0, 1.0);
}

double SliderScale::ValueAt(double fraction) const {
    if (fraction <= 0.0)
        return minimum;
    if (fraction >= 1.0)
        return maximum;
    if (Multiplies())
        return Clamped(minimum * std::pow(maximum / minimum, fraction));
    return Clamped(minimum + fraction * (maximum - minimum));
}

double SliderScale::Stepped(double value, double fraction) const {
    const double inside = Clamped(value);
    if (Multiplies())
        return Clamped(inside * std::pow(maximum / minimum, fraction));
    return Clamped(inside + fraction * (maximum - minimum));
}

} // namespace tracelet
