#include "core/settings/RangeText.h"

#include "core/base/NumberText.h"
#include "core/boards/BoardFamily.h"

namespace tracelet {

std::string RangeText(const InputRange& range) {
    return OptionalDecimalsText(range.first) + " ~ " + OptionalDecimalsText(range.second) +
           (*UnitOf(range) != '\0' ? std::string(" ") + UnitOf(range) : std::string());
}

} // namespace tracelet
