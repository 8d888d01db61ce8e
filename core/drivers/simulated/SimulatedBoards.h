#pragma once

#include "core/boards/BoardList.h"

namespace tracelet {

/// New simulated boards, one of each of the catalogue. The plain ones stand first.
[[nodiscard]] BoardList SimulatedBoards();

} // namespace tracelet
