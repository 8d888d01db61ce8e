#pragma once

#include "core/boards/BoardList.h"

namespace tracelet {

/// The boards of this machine: those of every driver that was built in, then the simulated ones. Every call
/// makes boards of its own.
[[nodiscard]] BoardList FindBoards();

/// Appends what was plugged in since; what is in the list stays in its place.
void FindMoreBoards(BoardList& boards);

} // namespace tracelet
