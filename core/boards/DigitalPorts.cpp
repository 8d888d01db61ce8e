#include "core/boards/DigitalPorts.h"

#include "core/base/NumberText.h"
#include "core/base/RunTimeError.h"

namespace tracelet {

void RequirePorts(const DigitalBoardInfo& board, std::int32_t start, std::size_t count) {
    const auto end = start + static_cast<std::int64_t>(count);
    if (start < 0 || end > board.portCount)
        throw RunTimeError("The board has no digital port " +
                           NumberText(start < 0 ? start : static_cast<std::int32_t>(end - 1)));
}

} // namespace tracelet
