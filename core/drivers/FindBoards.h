#pragma once

#include "core/boards/BoardList.h"

namespace tracelet {

/// The boards of this machine: those of every driver that was built in, then the simulated ones. Every call
/// makes boards of its own.
[[nodiscard]] BoardList FindBoards();

} // namespace tracelet
