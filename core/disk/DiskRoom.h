#pragma once

#include <cstdint>
#include <string>

namespace tracelet {

/// What a user is warned of while `bytesPerSecond` are written to a disk that has `freeBytes` left, below 0
/// for unknown: "Disk full in about 7 min". "" while there is room for ten minutes.
[[nodiscard]] std::string DiskRoomWarning(std::int64_t freeBytes, double bytesPerSecond);

} // namespace tracelet
