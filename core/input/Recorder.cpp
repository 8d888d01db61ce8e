#include "core/input/Recorder.h"

#include "core/base/Convert.h"
#include "core/base/RunTimeError.h"
#include "core/disk/StagedFile.h"
#include "core/files/FileOperations.h"
#include "core/files/Paths.h"
#include "core/recordings/LeftRecording.h"
#include "core/recordings/RecordingReader.h"
#include "core/recordings/SaveRecording.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include <fcntl.h>

namespace tracelet {
namespace {

constexpr std::chrono::milliseconds Patience{20};
constexpr std::chrono::milliseconds PatienceAtStop{100};
constexpr std::size_t MostWaiting = std::size_t{256} << 20; // bytes on their way to a disk that stalls
constexpr std::size_t MostEvents = 10000;                   // of each kind that a session's file tells
constexpr double Tolerance = 0.001;                         // seconds that a clock of milliseconds is off

} // namespace

Recorder::Recorder(std::chrono::milliseconds every)
    : keepEvery(every), sync(every / 2),
      writer([this](int file, std::span<const std::byte> bytes) { WriteBlock(file, bytes); }, MostWaiting,
             StopRecordInPlace) {}

// ---- The session so far

void Recorder::ResetCounts() {
    ScanCount = OverrunCount = LostScanCount = MissedTickCount = 0;
    SoftAIWritten = FAIWritten = DIWritten = false;
    readFault.clear();
    events = {};
}

void Recorder::CountTick(std::uint32_t elapsedMs) {
    NoteTime(elapsedMs);
    ScanCount = SumOrHighest(ScanCount, 1);
    KeepCurrent(PolledScanInterval(elapsedMs, ScanCount));
}

void Recorder::CountHalf(std::int32_t scans) {
    ScanCount = SumOrHighest(ScanCount, scans);
    KeepCurrent(session.pacedScans > 0.0 ? 1.0 / session.pacedScans : 0.0);
}

bool Recorder::LoseScan(const std::string& reason) {
    LostScanCount = SumOrHighest(LostScanCount, 1);
    NoteLoss(1, reason);
    return std::exchange(readFault, reason) != reason;
}

bool Recorder::EndReadFault() {
    return !std::exchange(readFault, {}).empty();
}

void Recorder::CountOverrun() {
    OverrunCount = SumOrHighest(OverrunCount, 1);
    NoteLoss(SampleLoss::Unknown, "The board or its queue lost samples");
}

void Recorder::CountMissedTicks(std::int64_t ticks) {
    if (ticks <= 0)
        return;
    constexpr std::int64_t Most = std::numeric_limits<std::int32_t>::max();
    MissedTickCount = SumOrHighest(MissedTickCount, static_cast<std::int32_t>(std::min(ticks, Most)));
    NoteLoss(ticks, "The machine was too busy");
}

// Losses between the same two scans for the same reason are one.
void Recorder::NoteLoss(std::int64_t scans, const std::string& reason) {
    if (!events.losses.empty()) {
        SampleLoss& newest = events.losses.back();
        if (newest.nextScan == ScanCount && newest.reason == reason) {
            if (newest.scans != SampleLoss::Unknown)
                newest.scans += scans;
            return;
        }
    }
    if (events.losses.size() < MostEvents)
        events.losses.push_back({ScanCount, scans, reason});
}

void Recorder::NoteTime(std::uint32_t elapsedMs) {
    const double time = elapsedMs / 1000.0;
    const double period = session.asked > 0.0 ? 1.0 / session.asked : 0.0;
    if (!events.times.empty()) {
        const TimeMark& mark = events.times.back();
        const double expected = mark.seconds + (ScanCount - mark.scan) * period;
        if (std::abs(time - expected) <= std::max(period / 2, Tolerance))
            return;
    }
    if (events.times.size() < MostEvents)
        events.times.push_back({ScanCount, time});
}

void Recorder::KeepCurrent(double scanInterval) {
    if (live)
        live->ScanInterval = scanInterval;
    const Clock::time_point now = Clock::now();
    if (now - keptAt < keepEvery)
        return;
    keptAt = now;
    if (std::string failure = sync.TakeFailure(); !failure.empty()) {
        diskFault = std::move(failure);
        areFaultsNews = true;
    }
    PutSession(scanInterval);
}

void Recorder::PutSession(double scanInterval) {
    sessionText = SessionText(session, events, ScanCount, scanInterval);
    if (!sessionFile.empty())
        Put(SessionFile, std::as_bytes(std::span(sessionText)));
}

// ---- Files

void Recorder::Open(const WorkFolder& folder, const std::string& stateFolder) {
    work = folder;
    hold = HoldFolder(work.sztmpPath);
    sessionFile = SessionFileOf(stateFolder, work.sztmpPath);
    unsavedFolder = UnsavedFolder(stateFolder);
    OpenQuietly(ProjectFileNum, work.szProjectFileName);
    OpenQuietly(AIFileNum, work.szAIFileName);
    OpenQuietly(DIFileNum, work.szDIFileName);
    try {
        SystemFile(work.szFAIFileName, Disposition::OpenAlways);
    } catch (const RunTimeError&) { // NOLINT(bugprone-empty-catch): a start tells
    }
}

void Recorder::OpenQuietly(int number, const std::string& path) {
    try {
        Files.Open(number, path);
    } catch (const RunTimeError&) { // NOLINT(bugprone-empty-catch): shows when something is written to it
    }
}

void Recorder::Close() {
    WaitForKeeping();
    writer.Flush();
    EndLiveRecord();
    sync.Watch({});
    Files.CloseAll();
    FAIFileHandle.Close();
    if (IsUnsaved())
        KeepUnsaved(RecordedFiles(), sessionText, unsavedFolder);
    if (!sessionFile.empty())
        DeleteFile(sessionFile);
    hold.reset();
    ResetCounts();
}

std::vector<std::string> Recorder::RecordedFiles() const {
    std::vector<std::string> files{work.szProjectFileName};
    for (const auto& [isWritten, file] :
         {std::pair(SoftAIWritten, &work.szAIFileName), std::pair(FAIWritten, &work.szFAIFileName),
          std::pair(DIWritten, &work.szDIFileName)}) {
        if (isWritten)
            files.push_back(*file);
    }
    return files;
}

// ---- The last recording

void Recorder::SetAside() {
    WaitForKeeping();
    Last kept{.files = RecordedFiles(),
              .ScanCount = ScanCount,
              .SoftAIWritten = SoftAIWritten,
              .FAIWritten = FAIWritten,
              .DIWritten = DIWritten,
              .isProjectOpen = Files.IsOpen(ProjectFileNum),
              .headerBytes = headerBytes,
              .stopRecord = stopRecord,
              .sessionText = sessionText,
              .isSaved = isSaved};
    if (tracelet::SetAside(kept.files))
        last = std::move(kept);
}

void Recorder::DropAside() {
    if (!last)
        return;
    const auto drop = [aside = *std::move(last), folder = unsavedFolder] {
        std::vector<std::string> files = aside.files;
        std::ranges::transform(files, files.begin(), AsideName);
        if (!aside.isSaved)
            KeepUnsaved(files, aside.sessionText, folder);
        tracelet::DropAside(aside.files);
    };
    last.reset();
    if (unsavedFolder.empty() || AreOnOneDisk(work.sztmpPath, SiblingPath(unsavedFolder, ".")))
        drop();
    else // a copy takes its time, and the session that began does not wait for it
        keeping = std::async(std::launch::async, drop);
}

void Recorder::WaitForKeeping() {
    if (keeping.valid())
        keeping.get();
}

bool Recorder::PutBack() {
    if (!last)
        return false;
    writer.Flush();
    EndLiveRecord();
    if (last->FAIWritten)
        FAIFileHandle.Close();
    for (const int number : {ProjectFileNum, AIFileNum, DIFileNum})
        Files.Close(number);
    tracelet::PutBack(last->files);
    OpenQuietly(AIFileNum, work.szAIFileName);
    OpenQuietly(DIFileNum, work.szDIFileName);
    if (last->isProjectOpen)
        OpenQuietly(ProjectFileNum, work.szProjectFileName);
    ScanCount = last->ScanCount;
    SoftAIWritten = last->SoftAIWritten;
    FAIWritten = last->FAIWritten;
    DIWritten = last->DIWritten;
    headerBytes = last->headerBytes;
    stopRecord = std::move(last->stopRecord);
    sessionText = std::move(last->sessionText);
    isSaved = last->isSaved;
    if (!sessionFile.empty())
        Put(SessionFile, std::as_bytes(std::span(sessionText)));
    last.reset();
    return true;
}

// ---- A recording

void Recorder::Begin(SessionFacts facts) {
    writer.Restart();
    EndLiveRecord();
    faults = {};
    areFaultsNews = hasHeader = isDiskBehind = isSaved = false;
    headerBytes = 0;
    stopRecord.clear();
    diskFault.clear();
    session = std::move(facts);
    keptAt = Clock::now();
    for (const auto& [number, path] :
         {std::pair(ProjectFileNum, &work.szProjectFileName), std::pair(AIFileNum, &work.szAIFileName),
          std::pair(DIFileNum, &work.szDIFileName)}) {
        Files.Close(number);
        try {
            Files.OpenForOutput(number, *path);
            Files.Close(number);
        } catch (const RunTimeError&) { // NOLINT(bugprone-empty-catch): shows when something is written to it
            continue;
        }
        OpenQuietly(number, *path);
    }
}

bool Recorder::RecreateFastFile() {
    FAIFileHandle.Close();
    DeleteFile(work.szFAIFileName);
    try {
        FAIFileHandle = SystemFile(work.szFAIFileName, Disposition::OpenAlways);
        return true;
    } catch (const RunTimeError&) {
        return false;
    }
}

void Recorder::PutHeader(const ProjectInfo& info) {
    const std::vector<std::byte> header = ProjectHeader(info);
    isRecorded = {info.bHisAI, info.bHisDI};
    headerBytes = header.size();
    hasHeader = true;
    Put(ProjectFileNum, header);
    Settle();
    PutSession(0.0);
    WatchFiles();
}

void Recorder::WatchFiles() {
    std::vector<int> descriptors{FAIFileHandle.Handle()};
    for (const int number : {AIFileNum, DIFileNum})
        descriptors.push_back(Files.File(number).Handle());
    std::optional<UniqueFd> parent;
    try {
        live = std::make_shared<LiveRecord>(Files.File(ProjectFileNum).Handle(),
                                            static_cast<std::int64_t>(headerBytes),
                                            LiveRecord::HeaderBytes{0, 0, DigitalHeaderSize}, StopRecord);
        if (hold) { // the names of the files and of their folder
            parent.emplace(openat(hold->Get(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            descriptors.insert(descriptors.end(), {hold->Get(), parent->Get()});
        }
    } catch (const RunTimeError&) { // no project to keep a record in, or a parent that may not be read
        if (!live)
            return;
    }
    sync.Watch(descriptors,
               [record = live](std::span<const std::int64_t> lengths) { record->Keep(lengths); });
}

void Recorder::EndLiveRecord() {
    if (live)
        live->End();
    live.reset();
}

void Recorder::PutPortHeader(std::int32_t portStart, std::int32_t portCount) {
    std::vector<std::byte> header;
    AppendLittleEndian(header, portStart);
    AppendLittleEndian(header, portCount);
    Put(DIFileNum, header);
    Settle();
}

void Recorder::PutScan(std::span<const float> values) {
    Put(AIFileNum, std::as_bytes(values), 1);
}

void Recorder::PutPorts(std::span<const std::uint8_t> states) {
    Put(DIFileNum, std::as_bytes(states), 1);
}

void Recorder::PutHalf(std::span<const float> values, std::int32_t scans) {
    Put(FastFile, std::as_bytes(values), scans);
}

void Recorder::PutHalf(std::span<const std::int32_t> rawCodes, std::int32_t scans) {
    Put(FastFile, std::as_bytes(rawCodes), scans);
}

// `scans` are those that are lost where there is no room left to wait in.
void Recorder::Put(int file, std::span<const std::byte> bytes, std::int32_t scans) {
    const bool isDescribed = scans == 0 || hasHeader;
    if (scans > 0)
        NoteScanBytes(static_cast<std::size_t>(file), bytes.size() / static_cast<std::size_t>(scans));
    if (isDescribed && writer.Put(file, bytes))
        return;
    LostScanCount = SumOrHighest(LostScanCount, scans);
    areFaultsNews = areFaultsNews || scans > 0;
    if (scans > 0)
        NoteLoss(scans, isDescribed ? "The disk did not keep up" : "The project could not be written");
}

void Recorder::NoteScanBytes(std::size_t file, std::size_t bytes) {
    scanBytes[file] = bytes;
    if (live)
        live->ScanBytes[file] = static_cast<std::int64_t>(bytes);
}

void Recorder::WriteBlock(int file, std::span<const std::byte> bytes) {
    switch (file) {
    case FastFile:
        FAIFileHandle.Append(bytes);
        return;
    case StopRecordInPlace:
        Files.PutBytesAt(ProjectFileNum, static_cast<std::int64_t>(headerBytes), bytes);
        return;
    case SessionFile: {
        StagedFile staged(sessionFile);
        staged.Write(bytes);
        staged.Place();
        return;
    }
    default:
        Files.PutBytes(file, bytes);
    }
}

bool Recorder::Settle() {
    isDiskBehind = !writer.WaitFor(isDiskBehind ? std::chrono::milliseconds(0) : Patience);
    TakeNews();
    return std::exchange(areFaultsNews, false);
}

void Recorder::TakeNews() {
    while (const auto news = writer.TakeNews())
        SetFault(news->file, news->reason);
    SoftAIWritten = SoftAIWritten || writer.Written(AIFileNum) > 0;
    FAIWritten = FAIWritten || writer.Written(FastFile) > 0;
    DIWritten = DIWritten || writer.Written(DIFileNum) > DigitalHeaderSize;
}

void Recorder::SetFault(int file, const std::string& reason) {
    if (file == StopRecordInPlace || file == SessionFile) // these come again
        return;
    if (file == ProjectFileNum)
        hasHeader = reason.empty();
    for (const Input input : {Analog, Digital}) {
        const bool isOfInput = file == ProjectFileNum || (file == DIFileNum) == (input == Digital);
        if (!isOfInput || !isRecorded[input])
            continue;
        faults[input] = reason;
        areFaultsNews = true;
    }
}

void Recorder::CloseFastFile() {
    Flush();
    FAIFileHandle.Close();
}

void Recorder::Flush() {
    writer.Flush();
    TakeNews();
}

void Recorder::Complete(double scanInterval) {
    Flush();
    for (const int file : {AIFileNum, DIFileNum, FastFile}) {
        const auto lost = static_cast<std::int32_t>(
            writer.GivenUp(file) / std::max<std::size_t>(1, scanBytes[static_cast<std::size_t>(file)]));
        LostScanCount = SumOrHighest(LostScanCount, lost);
        if (lost > 0)
            NoteLoss(lost, "The disk did not take them");
    }
    sync.Bring(PatienceAtStop); // what the record counts
    EndLiveRecord();
    stopRecord = StopRecord(ScanCount, scanInterval);
    if (hasHeader) // a saved copy gets it, whether or not the disk takes it here
        Put(StopRecordInPlace, stopRecord);
    PutSession(scanInterval);
    Flush();
    sync.Finish();
}

std::int64_t Recorder::SampleBytes() const {
    std::int64_t bytes = 0;
    for (const std::string& file : RecordedFiles())
        bytes += file == work.szProjectFileName ? 0 : FileSize(file);
    return bytes;
}

// The header of the project in the work folder.
std::vector<std::byte> Recorder::Header() const {
    const SystemFile project(work.szProjectFileName, Disposition::OpenExisting);
    std::vector<std::byte> header(headerBytes);
    header.resize(project.ReadAt(0, header));
    return header;
}

std::string Recorder::SaveTo(const std::string& folder, const CopyProgress& progress) {
    Files.Close(ProjectFileNum);
    RecordingParts parts{.project = Header(), .session = sessionText};
    std::ranges::copy(stopRecord, std::back_inserter(parts.project));
    if (SoftAIWritten)
        parts.analog = work.szAIFileName;
    if (FAIWritten)
        parts.analog = work.szFAIFileName;
    if (DIWritten)
        parts.digital = work.szDIFileName;
    std::string reason = SaveRecording(parts, folder, progress);
    isSaved = isSaved || reason.empty();
    return reason;
}

// ---- Scan intervals

double PolledScanInterval(std::uint32_t elapsedMs, std::int32_t scanCount) {
    return scanCount == 0 ? 0.0 : static_cast<double>(elapsedMs) / scanCount / 1000.0;
}

double PacedScanInterval(double sampleRate, std::int32_t channels, std::int32_t scanCount) {
    return scanCount == 0 ? 0.0 : Quotient(1.0, sampleRate / channels);
}

} // namespace tracelet
