#include "core/recordings/SaveRecording.h"

#include "core/base/RunTimeError.h"
#include "core/disk/DiskSync.h"
#include "core/disk/StagedFile.h"
#include "core/files/Paths.h"
#include "core/recordings/ProjectInfo.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>

namespace tracelet {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view ProjectName = "Project.tlp";
constexpr std::string_view AnalogName = "AI.tld";
constexpr std::string_view DigitalName = "DI.tld";
constexpr std::string_view SessionName = "Session.json";

std::string In(const std::string& folder, std::string_view name) {
    return folder + "\\" + std::string(name);
}

std::vector<std::byte> ProjectBytes(const RecordingParts& parts, const std::string& folder) {
    std::vector<std::byte> bytes = parts.project;
    std::ranges::copy(SavedPaths(In(folder, AnalogName), In(folder, DigitalName)), std::back_inserter(bytes));
    return bytes;
}

// Writes the parts into `folder`, for a project that will stand in `home`.
std::string SaveInto(const RecordingParts& parts, const std::string& folder, const std::string& home,
                     const CopyProgress& progress) {
    StagedFile project(In(folder, ProjectName));
    StagedFile analog(In(folder, AnalogName));
    StagedFile digital(In(folder, DigitalName));
    StagedFile session(In(folder, SessionName));
    project.Write(ProjectBytes(parts, home));
    try {
        if (!parts.analog.empty())
            analog.CopyFrom(parts.analog, parts.analogBytes, progress);
        if (!parts.digital.empty())
            digital.CopyFrom(parts.digital, parts.digitalBytes, progress);
        if (!parts.session.empty())
            session.Write(std::as_bytes(std::span(parts.session)));
        for (const StagedFile* file : {&project, &analog, &digital, &session})
            file->Sync();
        for (StagedFile* file : {&analog, &digital, &session})
            file->Place();
        SyncFolder(folder); // the project comes behind what it describes
    } catch (const RunTimeError& error) {
        return error.what();
    }
    project.Place();
    SyncFolder(folder);
    return {};
}

// Gives the new folder what stands in the old one, by second names of the same files. False where there is
// something that can have one name only.
bool LinkAll(const std::string& from, const std::string& to) {
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(NativePath(from), error)) {
        if (!entry.is_regular_file(error) || entry.is_symlink(error))
            return false;
        fs::create_hard_link(entry.path(), fs::path(NativePath(to)) / entry.path().filename(), error);
        if (error)
            return false;
    }
    return !error;
}

/// A folder beside another one that goes with the object.
class SiblingFolder {
public:
    explicit SiblingFolder(const std::string& folder) : path(folder + ".saving"), isMade(CreateFolder(path)) {
        std::error_code error; // who may enter the old one may enter the new one
        if (isMade)
            fs::permissions(NativePath(path), fs::status(NativePath(folder), error).permissions(), error);
    }
    ~SiblingFolder() {
        std::error_code error;
        if (isMade)
            fs::remove_all(NativePath(path), error);
    }
    SiblingFolder(const SiblingFolder&) = delete;
    SiblingFolder& operator=(const SiblingFolder&) = delete;

    [[nodiscard]] bool IsMade() const { return isMade; }
    [[nodiscard]] const std::string& Path() const { return path; }

private:
    const std::string path;
    const bool isMade;
};

/// Makes a folder, which may be there already; one that is still empty in the end goes with the object.
class FolderMade {
public:
    explicit FolderMade(const std::string& folder) : path(folder), isMade(CreateFolder(folder)) {}
    ~FolderMade() {
        if (isMade)
            RemoveFolder(path);
    }
    FolderMade(const FolderMade&) = delete;
    FolderMade& operator=(const FolderMade&) = delete;

private:
    const std::string& path;
    const bool isMade;
};

// Exchanges the recording in `folder` for this one: the reason why it could not be saved, or "". Nothing
// where folders cannot be exchanged here.
std::optional<std::string> Exchange(const RecordingParts& parts, const std::string& folder,
                                    const CopyProgress& progress) {
    const SiblingFolder sibling(folder);
    if (!sibling.IsMade() || !LinkAll(folder, sibling.Path()))
        return std::nullopt;
    std::string reason = SaveInto(parts, sibling.Path(), folder, progress);
    if (reason.empty()) {
        if (!ExchangeFolders(sibling.Path(), folder))
            return std::nullopt;
        SyncFolder(folder + "\\.."); // before what stood there goes
    }
    return reason;
}

} // namespace

std::string SaveRecording(const RecordingParts& parts, const std::string& folder,
                          const CopyProgress& progress) {
    const FolderMade made(folder);
    std::optional<std::string> reason;
    if (FileExists(In(folder, ProjectName)))
        reason = Exchange(parts, folder, progress);
    if (!reason)
        reason = SaveInto(parts, folder, folder, progress);
    if (reason->empty())
        SyncFolder(folder + "\\..");
    return *reason;
}

} // namespace tracelet
