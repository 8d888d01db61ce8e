#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tracelet {

/// The folder in which a running program records, and its four files. The files' paths are composed texts:
/// folder, "\" and the name.
struct WorkFolder {
    std::string sztmpPath;
    std::string szProjectFileName; ///< "\Project.tld"
    std::string szAIFileName;      ///< "\AI.tld", polled analog samples
    std::string szDIFileName;      ///< "\DI.tld", digital samples
    std::string szFAIFileName;     ///< "\FAI.tld", fast analog samples
};

/// The work folder at `path`, whether it is there or not.
[[nodiscard]] WorkFolder WorkFolderAt(const std::string& path);

/// Makes a folder of its own for each caller: "tl", four hexadecimal digits and ".tmp", in `programFolder`
/// or, where that cannot be written, in `stateFolder` ("" for none) or the system's temporary folder. No
/// error is raised: when neither can be written, the result names a folder that does not exist. The four
/// files are not created.
[[nodiscard]] WorkFolder MakeWorkFolder(const std::string& programFolder,
                                        const std::string& stateFolder = {});

/// Whether a folder of this name, without its path, may be one that MakeWorkFolder made.
[[nodiscard]] bool IsWorkFolderName(std::string_view name);

/// Deletes the four files, set aside or not, then the folder; a folder that holds anything else stays.
/// Failures are ignored.
void RemoveWorkFolder(const WorkFolder& folder) noexcept;

// Files of the work folder that make room for new ones without being lost yet.

/// The name that a file has while it is set aside.
[[nodiscard]] std::string AsideName(const std::string& file);

/// Gives the files other names in their folder: all of them or, when one cannot be renamed, none (False).
[[nodiscard]] bool SetAside(std::span<const std::string> files) noexcept;

/// Gives files that were set aside their names back, over what bears them now. Failures are ignored.
void PutBack(std::span<const std::string> files) noexcept;

/// Deletes files that were set aside. Failures are ignored.
void DropAside(std::span<const std::string> files) noexcept;

} // namespace tracelet
