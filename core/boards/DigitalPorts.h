#pragma once

#include "core/boards/Board.h"

#include <cstddef>
#include <cstdint>

namespace tracelet {

/// For a driver's ReadPorts: raises unless the board has the ports `start` … `start` + `count` - 1.
void RequirePorts(const DigitalBoardInfo& board, std::int32_t start, std::size_t count);

} // namespace tracelet
