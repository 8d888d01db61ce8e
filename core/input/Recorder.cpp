#include "core/input/Recorder.h"

#include "core/base/Convert.h"
#include "core/base/RunTimeError.h"
#include "core/files/FileOperations.h"
#include "core/files/StagedFile.h"
#include "core/recordings/RecordingReader.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace tracelet {
namespace {

constexpr std::chrono::milliseconds Patience{20};
constexpr std::size_t MostWaiting = std::size_t{256} << 20; // bytes on their way to a disk that stalls

} // namespace

Recorder::Recorder()
    : writer([this](int file, std::span<const std::byte> bytes) { WriteBlock(file, bytes); }, MostWaiting) {}

// ---- The session so far

void Recorder::ResetCounts() {
    ScanCount = OverrunCount = LostScanCount = 0;
    SoftAIWritten = FAIWritten = DIWritten = false;
    readFault.clear();
}

void Recorder::CountScans(std::int32_t scans) {
    ScanCount = SumOrHighest(ScanCount, scans);
}

bool Recorder::LoseScan(const std::string& reason) {
    LostScanCount = SumOrHighest(LostScanCount, 1);
    return std::exchange(readFault, reason) != reason;
}

bool Recorder::EndReadFault() {
    return !std::exchange(readFault, {}).empty();
}

// ---- Files

void Recorder::Open(const WorkFolder& folder) {
    work = folder;
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
    writer.Flush();
    Files.CloseAll();
    FAIFileHandle.Close();
}

// ---- The last recording

void Recorder::SetAside() {
    Last kept{.files = {work.szProjectFileName},
              .ScanCount = ScanCount,
              .SoftAIWritten = SoftAIWritten,
              .FAIWritten = FAIWritten,
              .DIWritten = DIWritten,
              .isProjectOpen = Files.IsOpen(ProjectFileNum),
              .unwrittenStopRecord = unwrittenStopRecord};
    for (const auto& [isWritten, file] :
         {std::pair(SoftAIWritten, &work.szAIFileName), std::pair(FAIWritten, &work.szFAIFileName),
          std::pair(DIWritten, &work.szDIFileName)})
        if (isWritten)
            kept.files.push_back(*file);
    if (tracelet::SetAside(kept.files))
        last = std::move(kept);
}

void Recorder::DropAside() {
    if (last)
        tracelet::DropAside(last->files);
    last.reset();
}

bool Recorder::PutBack() {
    if (!last)
        return false;
    writer.Flush();
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
    unwrittenStopRecord = std::move(last->unwrittenStopRecord);
    last.reset();
    return true;
}

// ---- A recording

void Recorder::Begin() {
    writer.Restart();
    faults = {};
    hasNewFault = false;
    unwrittenStopRecord.clear();
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
    isRecorded = {info.bHisAI, info.bHisDI};
    Put(ProjectFileNum, ProjectHeader(info));
    Settle();
}

void Recorder::PutPortHeader(std::int32_t portStart, std::int32_t portCount) {
    std::vector<std::byte> header;
    AppendLittleEndian(header, portStart);
    AppendLittleEndian(header, portCount);
    Put(DIFileNum, header);
    Settle();
}

void Recorder::PutScan(std::span<const float> values) {
    Put(AIFileNum, std::as_bytes(values));
}

void Recorder::PutPorts(std::span<const std::uint8_t> states) {
    Put(DIFileNum, std::as_bytes(states));
}

void Recorder::PutHalf(std::span<const float> values) {
    Put(FastFile, std::as_bytes(values));
}

void Recorder::PutHalf(std::span<const std::int32_t> rawCodes) {
    Put(FastFile, std::as_bytes(rawCodes));
}

void Recorder::Put(int file, std::span<const std::byte> bytes) {
    const bool isAtFault = file != ProjectFileNum && !Fault(file == DIFileNum ? Digital : Analog).empty();
    if (!isAtFault && !writer.Put(file, bytes))
        FailFile(file, "The disk does not keep up");
}

void Recorder::WriteBlock(int file, std::span<const std::byte> bytes) {
    if (file == FastFile)
        FAIFileHandle.Append(bytes);
    else
        Files.PutBytes(file, bytes);
}

bool Recorder::Settle() {
    isDiskBehind = !writer.WaitFor(isDiskBehind ? std::chrono::milliseconds(0) : Patience);
    TakeFailures();
    return std::exchange(hasNewFault, false);
}

void Recorder::TakeFailures() {
    while (const auto failure = writer.TakeFailure())
        FailFile(failure->file, failure->reason);
    SoftAIWritten = SoftAIWritten || writer.Written(AIFileNum) > 0;
    FAIWritten = FAIWritten || writer.Written(FastFile) > 0;
    DIWritten = DIWritten || writer.Written(DIFileNum) > DigitalHeaderSize;
}

void Recorder::FailFile(int file, const std::string& reason) {
    for (const Input input : {Analog, Digital}) {
        const bool holds = file == ProjectFileNum || (file == DIFileNum) == (input == Digital);
        if (!holds || !isRecorded[input] || !faults[input].empty())
            continue;
        faults[input] = reason;
        hasNewFault = true;
    }
}

void Recorder::CloseFastFile() {
    Flush();
    FAIFileHandle.Close();
}

void Recorder::Flush() {
    writer.Flush();
    TakeFailures();
}

void Recorder::Complete(double scanInterval) {
    Flush();
    const std::vector<std::byte> record = StopRecord(ScanCount, scanInterval);
    try {
        Files.PutBytes(ProjectFileNum, record);
    } catch (const RunTimeError&) {
        unwrittenStopRecord = record;
    }
}

std::string Recorder::SaveTo(const std::string& folder) {
    StagedFile project(folder + "\\Project.tlp");
    StagedFile analog(folder + "\\AI.tld");
    StagedFile digital(folder + "\\DI.tld");
    CreateFolder(folder); // it may be there already
    Files.Close(ProjectFileNum);
    std::vector<std::byte> tail = unwrittenStopRecord;
    std::ranges::copy(SavedPaths(folder + "\\AI.tld", folder + "\\DI.tld"), std::back_inserter(tail));
    project.CopyFrom(work.szProjectFileName, tail);
    try {
        if (SoftAIWritten)
            analog.CopyFrom(work.szAIFileName);
        if (FAIWritten)
            analog.CopyFrom(work.szFAIFileName);
        if (DIWritten)
            digital.CopyFrom(work.szDIFileName);
        analog.Place();
        digital.Place();
    } catch (const RunTimeError& error) {
        return error.what();
    }
    project.Place();
    return {};
}

// ---- Scan intervals

double PolledScanInterval(std::uint32_t elapsedMs, std::int32_t scanCount) {
    return scanCount == 0 ? 0.0 : static_cast<double>(elapsedMs) / scanCount / 1000.0;
}

double PacedScanInterval(double sampleRate, std::int32_t channels, std::int32_t scanCount) {
    return scanCount == 0 ? 0.0 : Quotient(1.0, sampleRate / channels);
}

} // namespace tracelet
