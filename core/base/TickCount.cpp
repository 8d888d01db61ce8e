#include "core/base/TickCount.h"

#include <chrono>

namespace tracelet {

std::uint32_t GetTickCount() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

} // namespace tracelet
