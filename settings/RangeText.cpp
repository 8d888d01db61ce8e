#include "settings/RangeText.h"

#include "base/NumberText.h"
#include "devices/drivers/BoardFamily.h"

namespace tracelet {

std::string RangeText(const InputRange& range) {
    return OptionalDecimalsText(range.first) + " ~ " + OptionalDecimalsText(range.second) +
           (IsMilliamperes(range) ? " mA" : " V");
}

} // namespace tracelet
