#include "core/drivers/simulated/Faults.h"

#include "core/base/RunTimeError.h"

namespace tracelet {

void CheckPlugged(const Faults& faults) {
    if (faults.unplugged)
        throw RunTimeError("The board does not answer; it may have been unplugged");
}

void CheckReading(const Faults& faults) {
    CheckPlugged(faults);
    CheckRefusal(faults.readError);
}

void CheckRefusal(const std::string& text) {
    if (!text.empty())
        throw RunTimeError(text);
}

} // namespace tracelet
