#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tracelet {

// Paths are UTF-8 text. Text that the program composes joins folder and name with "\", whatever the system,
// and keeps it in members and in project files. These functions are the one place that turns such text into a
// path of the system; every file function of this folder takes the text and comes through here. What the
// system itself tells (GetTempDir, GetTempFile) is a native path.

/// The path of this system that `text` names: every "\" becomes the native separator. Text of another system
/// (a drive letter as in "C:\x", or a server as in "\\server\share") names nothing here, neither does a text
/// with a 0 character: "Path not found".
[[nodiscard]] std::string NativePath(std::string_view text);

/// The part behind the last separator ("\" or "/"); empty when `path` is empty or ends in a separator.
[[nodiscard]] std::string FileNameFromPath(std::string_view path);

/// The path of `name` in the folder that `path` lies in.
[[nodiscard]] std::string SiblingPath(std::string_view path, std::string_view name);

/// Whether a regular, non-hidden file of this name lies in its folder; the name is compared without case. A
/// link to a regular file counts. Empty text, folders, devices and text of another system do not exist. Never
/// throws for what the file system answers.
[[nodiscard]] bool FileExists(std::string_view path);

/// The native path of the file that FileExists finds, with the name's case as it is on disk.
[[nodiscard]] std::optional<std::string> ExistingFile(std::string_view path);

/// The system's temporary folder, a native path that ends with a separator.
[[nodiscard]] std::string GetTempDir();

/// A new name in `folder`: `prefix`, four hexadecimal digits and ".tmp". The file is created empty, so no
/// other caller gets the same name; with `keep` False it is deleted again before the call returns. The result
/// is a native path, or empty when nothing could be created.
[[nodiscard]] std::string GetTempFile(bool keep, std::string_view prefix = "tmp",
                                      std::string_view folder = GetTempDir());

} // namespace tracelet
