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

Recording OpenRecording(const std::string& project, Disposition analog) {
    Recording recording{.info = ReadProjectFile(project)};
    const ProjectInfo& info = recording.info;
    if (info.bHisAI)
        recording.analogFault = FaultOf([&] {
            recording.analogFile =
                SystemFile(DataFile(info.AIDataPath, project, recording.foundBeside), analog);
        });
    if (info.bHisDI)
        recording.digitalFault = FaultOf(
            [&] { OpenDigitalFile(recording, DataFile(info.DIDataPath, project, recording.foundBeside)); });
    return recording;
}

} // namespace tracelet
