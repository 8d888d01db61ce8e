#include "core/disk/DiskRoom.h"

#include "core/base/NumberText.h"

namespace tracelet {

std::string DiskRoomWarning(std::int64_t freeBytes, double bytesPerSecond) {
    constexpr double Plenty = 600.0;
    constexpr double Minutes = 120.0; // told in minutes from here on
    constexpr double Few = 20.0;
    if (freeBytes < 0 || static_cast<double>(freeBytes) >= Plenty * bytesPerSecond)
        return {};
    // Rounded down, and in steps that do not change every second.
    const double seconds = static_cast<double>(freeBytes) / bytesPerSecond;
    if (seconds < Few)
        return "Disk full in a few seconds";
    const auto left = static_cast<std::int32_t>(seconds);
    return "Disk full in about " +
           (seconds < Minutes ? NumberText(left - left % 10) + " s" : NumberText(left / 60) + " min");
}

} // namespace tracelet
