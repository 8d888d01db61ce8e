#include "settings/RangeText.h"

#include "base/NumberText.h"

namespace tracelet {

std::string RangeText(double first, double second) {
    constexpr double CurrentLimit = 20.0; // only current ranges end there
    return OptionalDecimalsText(first) + " ~ " + OptionalDecimalsText(second) +
           (second == CurrentLimit ? " mA" : " V");
}

} // namespace tracelet
