#include "core/recordings/WorkFolder.h"

#include "core/disk/DiskSync.h"
#include "core/files/FileOperations.h"
#include "core/files/Paths.h"

#include <exception>

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

} // namespace

WorkFolder WorkFolderAt(const std::string& path) {
    return {.sztmpPath = path,
            .szProjectFileName = path + "\\Project.tld",
            .szAIFileName = path + "\\AI.tld",
            .szDIFileName = path + "\\DI.tld",
            .szFAIFileName = path + "\\FAI.tld"};
}

bool IsWorkFolderName(std::string_view name) {
    return name.size() == 10 && name.starts_with(Prefix) && name.ends_with(".tmp") &&
           name.find_first_not_of("0123456789abcdefABCDEF", 2) == 6;
}

WorkFolder MakeWorkFolder(const std::string& programFolder, const std::string& stateFolder) {
    for (const std::string& parent : {programFolder, stateFolder, GetTempDir()}) {
        const std::string path = parent.empty() ? std::string() : MakeUniqueFolder(parent);
        if (!path.empty())
            return WorkFolderAt(path);
    }
    return WorkFolderAt(GetTempDir() + "tl0000.tmp\\none");
}

void RemoveWorkFolder(const WorkFolder& folder) noexcept {
    for (const std::string& file :
         {folder.szProjectFileName, folder.szFAIFileName, folder.szAIFileName, folder.szDIFileName}) {
        DeleteFile(file);
        DropAside({&file, 1});
    }
    RemoveFolder(folder.sztmpPath);
}

std::string AsideName(const std::string& file) {
    return file + ".last";
}

bool SetAside(std::span<const std::string> files) noexcept {
    std::size_t done = 0;
    try {
        for (; done < files.size(); ++done)
            RenameFile(files[done], AsideName(files[done]));
        if (!files.empty()) // before others take the names
            SyncFolder(SiblingPath(files.front(), "."));
        return true;
    } catch (const std::exception&) {
        PutBack(files.first(done));
        return false;
    }
}

void PutBack(std::span<const std::string> files) noexcept {
    for (std::size_t left = files.size(); left > 0; --left) {
        const std::string& file = files[left - 1];
        try {
            RenameFile(AsideName(file), file);
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the others may go all the same
        }
    }
}

void DropAside(std::span<const std::string> files) noexcept {
    for (const std::string& file : files)
        DeleteFile(AsideName(file));
}

} // namespace tracelet
