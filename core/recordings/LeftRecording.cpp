#include "core/recordings/LeftRecording.h"

#include "core/base/NumberText.h"
#include "core/base/RunTimeError.h"
#include "core/disk/DiskSync.h"
#include "core/disk/StagedFile.h"
#include "core/disk/UserFolders.h"
#include "core/files/Paths.h"
#include "core/recordings/RecordingReader.h"
#include "core/recordings/SessionFile.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace tracelet {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::string_view AsideEnding = ".last";
constexpr std::array Months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr auto LongestKept = 24h * 7;
constexpr auto YoungestSwept = 10s; // a program makes its folder first and holds it then

std::chrono::system_clock::duration AgeOf(const std::string& folder) {
    struct stat status {};
    if (stat(NativePath(folder).c_str(), &status) != 0)
        return {};
    return std::chrono::system_clock::now() - std::chrono::system_clock::from_time_t(status.st_mtime);
}

// Scans of the analog data, and of the digital ones, that are whole.
std::int64_t AnalogScans(LeftRecording& left) {
    if (!left.info.bHisAI)
        return 0;
    left.parts.analog = left.info.bHisAISoft ? left.folder.szAIFileName : left.folder.szFAIFileName;
    return FileSize(left.parts.analog) / AnalogOffset(1, left.info.nHisAIChanCount);
}

std::int64_t DigitalScans(LeftRecording& left, std::int32_t& ports) {
    if (!left.info.bHisDI || FileSize(left.folder.szDIFileName) <= DigitalHeaderSize)
        return 0;
    left.parts.digital = left.folder.szDIFileName;
    ports = ReadDigitalHeader(SystemFile(left.parts.digital, Disposition::OpenExisting)).nHisDIPortCount;
    return (FileSize(left.parts.digital) - DigitalHeaderSize) / ports;
}

// Cuts the recording to the scans that every input with data has, at most `most`.
void CountScans(LeftRecording& left, std::int64_t most) {
    std::int32_t ports = 1;
    const std::int64_t analog = AnalogScans(left);
    const std::int64_t digital = DigitalScans(left, ports);
    const std::int64_t whole = analog == 0 ? digital : digital == 0 ? analog : std::min(analog, digital);
    const std::int64_t scans = std::clamp<std::int64_t>(most, 0, whole);
    left.info.ScanCount =
        static_cast<std::int32_t>(std::min<std::int64_t>(scans, std::numeric_limits<std::int32_t>::max()));
    if (analog == 0)
        left.parts.analog.clear();
    else
        left.parts.analogBytes = AnalogOffset(scans, left.info.nHisAIChanCount);
    if (digital == 0)
        left.parts.digital.clear();
    else
        left.parts.digitalBytes = DigitalOffset(scans, ports);
    left.bytes = (analog == 0 ? 0 : left.parts.analogBytes) + (digital == 0 ? 0 : left.parts.digitalBytes);
}

// The project's header, and its stop record where there is one. Raises for what is no project.
void ReadHeader(LeftRecording& left) {
    const SystemFile file(left.folder.szProjectFileName, Disposition::OpenExisting);
    ByteReader reader(file);
    left.info = ReadProjectHeader(reader);
    left.parts.project.resize(static_cast<std::size_t>(file.Size() - reader.Remaining()));
    (void)file.ReadAt(0, left.parts.project);
    if (reader.Remaining() >= static_cast<std::int64_t>(StopRecord(0, 0.0).size())) {
        left.info.ScanCount = reader.Get<std::int32_t>();
        left.info.ScanInterval = reader.Get<double>();
    }
}

// What these files of a work folder hold, with the text of the session's file. Raises where nobody can tell.
LeftRecording Read(const WorkFolder& files, const std::string& sessionFile) {
    LeftRecording left;
    left.folder = files;
    left.sessionFile = sessionFile;
    left.parts.session = SessionTextOf(left.sessionFile);
    const SessionSummary summary = ReadSessionSummary(left.parts.session);
    if (summary.started.empty()) // torn
        left.parts.session.clear();
    ReadHeader(left);
    // After the system went down, what nobody counted may never have reached the disk.
    const bool isOfThisBoot = !summary.boot.empty() && summary.boot == BootId();
    CountScans(left, isOfThisBoot ? std::numeric_limits<std::int64_t>::max() : left.info.ScanCount);
    left.started =
        summary.started.empty() ? ModificationTime(left.folder.szProjectFileName) : summary.started;
    if (left.info.ScanInterval == 0.0 && summary.scansPerSecond > 0.0)
        left.info.ScanInterval = 1.0 / summary.scansPerSecond;
    std::ranges::copy(StopRecord(left.info.ScanCount, left.info.ScanInterval),
                      std::back_inserter(left.parts.project));
    return left;
}

// The files of a work folder under the names that they have while a start sets them aside: those set aside
// where there are both, or else the others.
WorkFolder FilesThere(const WorkFolder& folder, bool asideFirst) {
    WorkFolder files = folder;
    for (std::string* file :
         {&files.szProjectFileName, &files.szAIFileName, &files.szDIFileName, &files.szFAIFileName}) {
        const std::string aside = AsideName(*file);
        if (FileExists(aside) && (asideFirst || !FileExists(*file)))
            *file = aside;
    }
    return files;
}

// What a work folder holds; where that is nothing, the last recording, which a start has set aside. Raises
// where nobody can tell.
LeftRecording Look(const std::string& path, const std::string& stateFolder) {
    const WorkFolder folder = WorkFolderAt(path);
    std::string sessionFile = path + "\\Session.json";
    if (!FileExists(sessionFile))
        sessionFile = SessionFileOf(stateFolder, path);
    LeftRecording left;
    for (const bool asideFirst : {false, true}) {
        if (!asideFirst && !FileExists(folder.szProjectFileName))
            continue;
        try {
            left = Read(FilesThere(folder, asideFirst), asideFirst ? std::string() : sessionFile);
        } catch (const RunTimeError&) { // the new one has no header yet
            if (asideFirst || !FileExists(AsideName(folder.szProjectFileName)))
                throw;
        }
        if (left.info.ScanCount > 0)
            break;
    }
    left.folder = folder;
    left.sessionFile = sessionFile;
    return left;
}

bool HoldsSamples(const WorkFolder& folder) {
    return FileSize(folder.szAIFileName) > 0 || FileSize(folder.szFAIFileName) > 0 ||
           FileSize(folder.szDIFileName) > DigitalHeaderSize;
}

void LookInto(const std::string& path, const std::string& stateFolder, bool isTooOld,
              std::vector<LeftRecording>& found) {
    std::unique_ptr<UniqueFd> hold = HoldFolder(path);
    if (!hold)
        return;
    LeftRecording left;
    try {
        left = Look(path, stateFolder);
    } catch (const RunTimeError&) {
        left.folder = WorkFolderAt(path);
        left.sessionFile = SessionFileOf(stateFolder, path);
        if (HoldsSamples(left.folder) && !isTooOld)
            return;
    }
    if (left.info.ScanCount > 0 && !isTooOld) {
        left.hold = std::move(hold);
        found.push_back(std::move(left));
    } else if (isTooOld || AgeOf(path) > YoungestSwept) {
        Discard(left);
    }
}

// Gives the folder the file too.
void BringFile(const std::string& from, const std::string& folder) {
    std::string name = FileNameFromPath(from);
    if (name.ends_with(AsideEnding))
        name.resize(name.size() - AsideEnding.size());
    const std::string to = folder + "\\" + name;
    std::error_code error;
    fs::create_hard_link(NativePath(from), NativePath(to), error);
    if (!error)
        return;
    if (FileSize(from) > FreeBytes(SiblingPath(to, ".")) / 4)
        throw Fault::DiskFull(); // or nearly, for a copy onto another disk
    CopyWholeFile(from, to);
    SyncFile(to);
}

void DiscardUnsaved(const std::string& folder) {
    LeftRecording left;
    left.folder = WorkFolderAt(folder);
    left.sessionFile = folder + "\\Session.json";
    Discard(left);
}

} // namespace

std::string SessionFileOf(const std::string& stateFolder, const std::string& workFolder) {
    struct stat status {};
    if (stateFolder.empty() || stat(NativePath(workFolder).c_str(), &status) != 0)
        return {};
    return stateFolder + "\\Session-" + std::to_string(status.st_dev) + "-" + std::to_string(status.st_ino) +
           ".json";
}

std::string UnsavedFolder(const std::string& stateFolder) {
    return stateFolder.empty() ? std::string() : stateFolder + "\\unsaved";
}

std::vector<LeftRecording> FindLeftRecordings(std::span<const std::string> parents,
                                              const std::string& stateFolder) {
    std::vector<LeftRecording> found;
    std::error_code error;
    for (const std::string& parent : parents) {
        for (const fs::directory_entry& entry : fs::directory_iterator(parent, error)) {
            if (IsWorkFolderName(entry.path().filename().string()) && !entry.is_symlink(error))
                LookInto(entry.path().string(), stateFolder, false, found);
        }
    }
    const std::string unsaved = UnsavedFolder(stateFolder);
    if (!unsaved.empty())
        LookInto(unsaved, stateFolder, AgeOf(unsaved) > LongestKept, found);
    std::ranges::sort(found, std::greater(), &LeftRecording::started);
    return found;
}

bool GiveUpUnsaved(const std::string& unsavedFolder) noexcept {
    const std::unique_ptr<UniqueFd> hold = HoldFolder(unsavedFolder);
    if (hold)
        DiscardUnsaved(unsavedFolder);
    return hold != nullptr;
}

std::string Describe(const LeftRecording& left) {
    std::string text = "Unsaved recording";
    int year = 0, day = 0, hour = 0, minute = 0;
    std::size_t month = 0;
    if (std::sscanf(left.started.c_str(), "%4d-%2zu-%2dT%2d:%2d", &year, &month, &day, &hour, &minute) == 5 &&
        month >= 1 && month <= Months.size())
        text += " of " + NumberText(day) + ' ' + Months[month - 1] + ' ' + NumberText(year) + ' ' +
                TwoDigitText(hour) + ':' + TwoDigitText(minute);
    const std::int32_t signals = (left.parts.analog.empty() ? 0 : left.info.nHisAIChanCount) +
                                 (left.parts.digital.empty() ? 0 : left.info.nHisDIChanCount);
    return text + " (" + TimeSpanText(left.info.ScanCount * left.info.ScanInterval) + ", " +
           NumberText(signals) + (signals == 1 ? " signal, " : " signals, ") + SizeText(left.bytes) + ')';
}

void Discard(const LeftRecording& left) noexcept {
    if (!left.sessionFile.empty())
        DeleteFile(left.sessionFile);
    RemoveWorkFolder(left.folder);
}

bool KeepUnsaved(std::span<const std::string> files, const std::string& sessionText,
                 const std::string& unsavedFolder) noexcept {
    if (unsavedFolder.empty())
        return false;
    try {
        const std::unique_ptr<UniqueFd> hold = HoldFolder(unsavedFolder);
        if (!hold && !CreateFolder(unsavedFolder)) // a neighbour offers what it holds
            return false;
        DiscardUnsaved(unsavedFolder);
        CreateFolder(unsavedFolder);
        for (const std::string& file : files.subspan(1))
            BringFile(file, unsavedFolder);
        StagedFile session(unsavedFolder + "\\Session.json");
        session.Write(std::as_bytes(std::span(sessionText)));
        session.Place();
        // The project comes when all that it describes is there, and goes before.
        SyncFolder(unsavedFolder);
        BringFile(files.front(), unsavedFolder);
        SyncFolder(unsavedFolder);
        SyncFolder(unsavedFolder + "\\..");
        DeleteFile(files.front());
        SyncFolder(SiblingPath(files.front(), "."));
        std::ranges::for_each(files.subspan(1), DeleteFile);
        return true;
    } catch (const std::exception&) {
        DiscardUnsaved(unsavedFolder);
        return false;
    }
}

} // namespace tracelet
