#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string_view>

namespace tracelet {

// Calls to the file system that report by their result alone; only CopyWholeFile, RenameFile and
// ExchangeFolders throw. Paths are texts as files/Paths.h describes; text of another system makes each of
// them fail.

/// Called between pieces of a copy with the bytes that the last one brought. What it raises ends the copy.
using CopyProgress = std::function<void(std::int64_t bytes)>;

/// Copies the bytes of the regular file `from`, or only the first `most`, to `to`, which is created or
/// overwritten; where the file system can, both then share them. A copy
/// that fails on the way removes the incomplete `to`. Raises what made it fail; "Permission denied" for a
/// file and itself.
void CopyWholeFile(std::string_view from, std::string_view to,
                   std::int64_t most = std::numeric_limits<std::int64_t>::max(),
                   const CopyProgress& progress = {});

/// Gives the file `from` the name `to` within one file system, in place of a file that has it; raises what
/// made it fail, and everything is then as it was.
void RenameFile(std::string_view from, std::string_view to);

/// Each of two folders of one file system takes the other's name, at once; False where the system has no such
/// call. Raises what made it fail.
[[nodiscard]] bool ExchangeFolders(std::string_view a, std::string_view b);

/// Bytes of a file; 0 when that cannot be told.
[[nodiscard]] std::int64_t FileSize(std::string_view path) noexcept;

/// Makes one folder; False also when something of that name exists already.
bool CreateFolder(std::string_view path) noexcept;

/// Removes a file, never a folder.
bool DeleteFile(std::string_view path) noexcept;

/// Removes an empty folder.
bool RemoveFolder(std::string_view path) noexcept;

} // namespace tracelet
