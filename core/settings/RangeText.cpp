#include "core/settings/RangeText.h"

#include "core/base/NumberText.h"
#include "core/boards/BoardFamily.h"

namespace tracelet {

std::string RangeText(const InputRange& range) {
    return OptionalDecimalsText(range.first) + " ~ " + OptionalDecimalsText(range.second) +
           (IsMilliamperes(range) ? " mA" : " V");
}

} // namespace tracelet
