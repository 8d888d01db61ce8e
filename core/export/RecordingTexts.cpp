#include "core/export/RecordingTexts.h"

#include "core/files/FileOperations.h"
#include "core/files/Paths.h"

#include <optional>
#include <utility>

namespace tracelet {
namespace {

// What the system cannot read ends the data; `failure` then keeps the reason.
ReadBytes From(const SystemFile& file, std::optional<RunTimeError>& failure) {
    return [&](std::int64_t offset, std::span<std::byte> bytes) {
        BlockRead read = ReadBlock(file, offset, bytes);
        failure = std::move(read.failure);
        return read.bytes;
    };
}

// Has `write` write one text. One whose data could not all be read does not stay; `unwritten` then tells.
template <typename Write>
void WriteText(const std::string& folder, const std::string& name, const SystemFile& data,
               std::vector<std::string>& unwritten, Write write) {
    const std::string path = folder + "\\" + name;
    std::optional<RunTimeError> failure;
    TextFile file(NativePath(path));
    write(file, From(data, failure));
    file.Close();
    if (!failure)
        return;
    DeleteFile(path);
    unwritten.push_back(name + " was not written: " + failure->what());
}

// The progress of one text as that of both: from `start` on, `share` of the whole.
Progress PartOf(const Progress& whole, double start, double share) {
    return [&whole, start, share](double fraction) { whole(start + fraction * share); };
}

} // namespace

std::vector<std::string> WriteRecordingTexts(const Recording& recording,
                                             const std::vector<std::string>& plotNames,
                                             const std::string& folder, WantedTexts wanted,
                                             const Progress& progress) {
    const ProjectInfo& info = recording.info;
    const std::int64_t analogBytes = wanted.analog ? BytesFrom(recording.analogFile, 0) : 0;
    const std::int64_t digitalBytes = wanted.digital ? BytesFrom(recording.digitalFile, 0) : 0;
    const double analogShare =
        static_cast<double>(analogBytes) / static_cast<double>(analogBytes + digitalBytes + 1);
    const AnalogRecording analog{plotNames, info.bHisAIAnalog, info.ScanInterval, analogBytes};
    const DigitalRecording digital{recording.digitalHeader.nHisDIPortStart,
                                   recording.digitalHeader.nHisDIPortCount, recording.lines,
                                   info.ScanInterval, info.ScanCount};
    std::vector<std::string> unwritten;
    if (wanted.analog)
        WriteText(folder, "AI.xlt", recording.analogFile, unwritten,
                  [&](TextFile& file, const ReadBytes& read) {
                      WriteAnalogText(file, analog, read, PartOf(progress, 0, analogShare));
                  });
    if (wanted.digital)
        WriteText(folder, "DI.xlt", recording.digitalFile, unwritten,
                  [&](TextFile& file, const ReadBytes& read) {
                      WriteDigitalText(file, digital, read, PartOf(progress, analogShare, 1 - analogShare));
                  });
    return unwritten;
}

} // namespace tracelet
