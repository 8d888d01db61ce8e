#pragma once

#include "tests/core/crash/DiskJournal.h"

#include <cstddef>
#include <random>
#include <string>

namespace tracelet {

using Dice = std::mt19937_64;

/// A state that a disk may be in after the power went when the first `issued` events of the journal had been
/// asked for. What was synced is there. Of the rest, each write may be there, be missing or be torn into
/// sectors of 512 bytes, with or without the length that it gave its file; changes of names come in their
/// order up to some point, as file systems with a log keep them, or each comes or does not.
[[nodiscard]] DiskTree AfterCut(const DiskJournal& journal, std::size_t issued, Dice& dice);

/// Makes files and folders of it in `folder`, an existing one.
void Materialize(const DiskTree& tree, const std::string& folder);

} // namespace tracelet
