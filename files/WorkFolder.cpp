#include "files/WorkFolder.h"

#include "files/FileOperations.h"
#include "files/Paths.h"

namespace tracelet {
namespace {

constexpr const char* Prefix = "tl";

// Between the deletion of the unique file and the making of the folder another program may take the name:
// then the next name is tried. Empty when `parent` cannot be written.
std::string MakeUniqueFolder(const std::string& parent) {
    constexpr int MostTries = 16;
    for (int tries = 0; tries < MostTries; ++tries) {
        std::string path = GetTempFile(false, Prefix, parent);
        if (path.empty())
            break;
        if (CreateFolder(path))
            return path;
    }
    return {};
}

WorkFolder Named(const std::string& path) {
    return {.sztmpPath = path,
            .szProjectFileName = path + "\\Project.tld",
            .szAIFileName = path + "\\AI.tld",
            .szDIFileName = path + "\\DI.tld",
            .szFAIFileName = path + "\\FAI.tld"};
}

} // namespace

WorkFolder MakeWorkFolder(const std::string& programFolder) {
    for (const std::string& parent : {programFolder, GetTempDir()}) {
        const std::string path = MakeUniqueFolder(parent);
        if (!path.empty())
            return Named(path);
    }
    return Named(GetTempDir() + "tl0000.tmp\\none");
}

void RemoveWorkFolder(const WorkFolder& folder) noexcept {
    DeleteFile(folder.szProjectFileName);
    DeleteFile(folder.szFAIFileName);
    DeleteFile(folder.szAIFileName);
    DeleteFile(folder.szDIFileName);
    RemoveFolder(folder.sztmpPath);
}

} // namespace tracelet
