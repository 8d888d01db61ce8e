#pragma once

#include <string_view>

namespace tracelet {

// Calls to the file system that report by their result alone; only CopyWholeFile and RenameFile throw. Paths
// are texts as files/Paths.h describes; text of another system makes each of them fail.

/// Copies the bytes of the regular file `from` to `to`, which is created or overwritten. A copy that fails on
/// the way removes the incomplete `to`. Raises what made it fail; "Permission denied" for a file and itself.
void CopyWholeFile(std::string_view from, std::string_view to);

/// Gives the file `from` the name `to` within one file system, in place of a file that has it; raises what
/// made it fail, and everything is then as it was.
void RenameFile(std::string_view from, std::string_view to);

/// Makes one folder; False also when something of that name exists already.
bool CreateFolder(std::string_view path) noexcept;

/// Removes a file, never a folder.
bool DeleteFile(std::string_view path) noexcept;

/// Removes an empty folder.
bool RemoveFolder(std::string_view path) noexcept;

} // namespace tracelet
