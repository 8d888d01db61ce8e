#pragma once

#include "core/boards/BoardList.h"

#include <string>

namespace tracelet {

/// Appends the boards behind the device nodes of a folder, in the order of their numbers. A node that cannot
/// be opened becomes an entry with its reason in both lists; one without a board behind it none.
void FindComediBoards(BoardList& boards, const std::string& folder = "/dev");

} // namespace tracelet
