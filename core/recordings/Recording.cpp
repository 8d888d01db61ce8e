#include "core/recordings/Recording.h"

#include "core/files/Paths.h"
#include "core/plots/PlotTables.h"

#include <utility>

namespace tracelet {
namespace {

// Where a data file lies; where it is in neither place, the path of the project.
std::string DataFile(const std::string& path, const std::string& project,
                     std::vector<std::string>& foundBeside) {
    if (const auto there = ExistingFile(path))
        return *there;
    const std::string name = FileNameFromPath(path);
    const auto beside = ExistingFile(SiblingPath(project, name));
    if (!beside)
        return path;
    foundBeside.push_back(name);
    return *beside;
}

void OpenDigitalFile(Recording& recording, const std::string& path) {
    SystemFile file(path, Disposition::OpenExisting);
    const DigitalHeader header = ReadDigitalHeader(file);
    recording.lines = SelectedLines(Table<std::uint8_t>(recording.info.HisDIPortMask), header.nHisDIPortStart,
                                    header.nHisDIPortCount);
    recording.digitalHeader = header;
    recording.digitalFile = std::move(file);
}

template <typename Open>
std::optional<RunTimeError> FaultOf(Open open) {
    try {
        open();
        return {};
    } catch (const RunTimeError& fault) {
        return fault;
    }
}

} // namespace

void Recording::CloseFiles() noexcept {
    analogFile.Close();
    digitalFile.Close();
}

std::string RecordingName(const std::string& project) {
    const std::string file = FileNameFromPath(project);
    const std::string folder = FileNameFromPath(project.substr(0, project.size() - file.size() - 1));
    return file == "Project.tlp" && !folder.empty() ? folder : file;
}

Recording OpenRecording(const std::string& project, Disposition analog) {
    Recording recording{.project = project, .info = ReadProjectFile(project)};
    const ProjectInfo& info = recording.info;
    if (info.bHisAI)
        recording.analogFault = FaultOf([&] {
            recording.analogFile =
                SystemFile(DataFile(info.AIDataPath, project, recording.foundBeside), analog);
        });
    if (info.bHisDI)
        recording.digitalFault = FaultOf(
            [&] { OpenDigitalFile(recording, DataFile(info.DIDataPath, project, recording.foundBeside)); });
    if (const auto session = ExistingFile(SiblingPath(project, "Session.json")))
        recording.session = ReadSessionSummary(SessionTextOf(*session));
    return recording;
}

} // namespace tracelet
