#pragma once

#include "core/files/FileOperations.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

class QWidget;

namespace tracelet {

/// Runs `save`, which copies `bytes` in all, on a thread of its own, so that the window lives meanwhile; it
/// takes no input. When that takes longer than `patience`, a modal bar with a Cancel button appears,
/// "SaveProgress": Cancel, like the end of the program, raises SavingCancelled in what `save` reports its
/// progress to. Returns what `save` returns and raises what it raises.
[[nodiscard]] std::string
SaveWithProgress(QWidget* owner, std::int64_t bytes,
                 const std::function<std::string(const CopyProgress&)>& save,
                 std::chrono::milliseconds patience = std::chrono::milliseconds(500));

inline constexpr const char* SavingCancelled = "Saving was cancelled";

/// What the user is told of a reason why a recording was not saved.
[[nodiscard]] QString NotSavedText(const std::string& reason);

} // namespace tracelet
