#pragma once

#include <string>

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

/// Makes a folder of its own for each caller: "tl", four hexadecimal digits and ".tmp", in `programFolder`
/// or, where that cannot be written, in the system's temporary folder. No error is raised: when neither can
/// be written, the result names a folder that does not exist. The four files are not created.
[[nodiscard]] WorkFolder MakeWorkFolder(const std::string& programFolder);

/// Deletes the four files, then the folder; a folder that holds anything else stays. Failures are ignored.
void RemoveWorkFolder(const WorkFolder& folder) noexcept;

} // namespace tracelet
