#pragma once

#include "core/base/UniqueFd.h"
#include "core/disk/BlockWriter.h"
#include "core/disk/DiskSync.h"
#include "core/disk/LiveRecord.h"
#include "core/disk/UserFolders.h"
#include "core/files/BinaryFiles.h"
#include "core/files/FileOperations.h"
#include "core/files/SystemFile.h"
#include "core/recordings/ProjectInfo.h"
#include "core/recordings/SessionFile.h"
#include "core/recordings/WorkFolder.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <future>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tracelet {

/// What a session does to files: opens its work files, begins a recording in them, appends samples and
/// counts them, completes it, keeps the last one while a start may be refused, saves it elsewhere.
///
/// Samples go to the disk on a thread of their own, in order (BlockWriter). Settle, at the end of whatever
/// brought them, waits until they are in their files, but no longer than some 20 ms, and not again before the
/// disk has caught up: on a healthy disk all of them are there when it returns, and a disk that stalls does
/// not stall whoever measures. Complete waits for all. What cannot be written waits for the error to pass;
/// when there is no more room to wait in, blocks are lost, which counts as a loss of samples.
///
/// So that a recording survives its program and its machine, a thread brings the data to the disk, twice a
/// second, and then the stop record behind the project's header, which counts what is there (LiveRecord). The
/// session's file is kept current once a second.
///
/// Order of calls: Open; then for each session Begin, RecreateFastFile, PutHeader, ResetCounts, any number of
/// Puts, Counts and Settles, Complete. One thread makes them.
class Recorder {
public:
    enum Input { Analog, Digital };

    // Numbers of the work files.
    static constexpr int AIFileNum = 1;
    static constexpr int DIFileNum = 2;
    static constexpr int ProjectFileNum = 5;

    /// Keeps the session's file current so often, and brings the others to the disk twice as often.
    explicit Recorder(std::chrono::milliseconds every = std::chrono::seconds(1));
    ~Recorder() { Close(); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    // ── The session so far ───────────────────────────────────────────────────────────────────────────
    std::int32_t ScanCount = 0;       ///< scans taken; stays at the highest number there is
    std::int32_t OverrunCount = 0;    ///< losses that the board or the full queue caused
    std::int32_t LostScanCount = 0;   ///< scans that could not be read, or not be written
    std::int32_t MissedTickCount = 0; ///< ticks that a busy machine skipped
    bool SoftAIWritten = false;       ///< polled analog data are in their file
    bool FAIWritten = false;          ///< fast analog data are in their file
    bool DIWritten = false;           ///< digital data are in their file

    /// Nothing was taken, lost or written yet.
    void ResetCounts();
    /// Counts a polled scan, taken so long after the start.
    void CountTick(std::uint32_t elapsedMs);
    /// Counts paced scans.
    void CountHalf(std::int32_t scans);
    /// Counts a scan that could not be read for this reason. True when the reason is not that of the last.
    bool LoseScan(const std::string& reason);
    /// The board lost samples, or the queue behind it.
    void CountOverrun();
    /// The machine was too busy for this many ticks of a polled session.
    void CountMissedTicks(std::int64_t ticks);
    [[nodiscard]] const SessionFacts& Session() const { return session; } ///< since Begin
    [[nodiscard]] const SessionEvents& Events() const { return events; }  ///< since ResetCounts
    /// A scan was read. True when the one before was lost.
    bool EndReadFault();
    /// Why the last scan was lost, "" when it was read.
    [[nodiscard]] const std::string& ReadFault() const { return readFault; }

    // ── Files ────────────────────────────────────────────────────────────────────────────────────────
    WorkFolder work;
    BinaryFiles Files;        ///< the work files under their numbers; the other numbers are free
    SystemFile FAIFileHandle; ///< work file of fast input, open from a start on

    /// Opens the project, analog and digital file of `folder` and makes the fast one. Failures are quiet: a
    /// file that stays closed shows when something is written to it. The folder is held for this process. In
    /// `stateFolder` (native path, "" for none) the session's file lies, and the last unsaved recording.
    void Open(const WorkFolder& folder, const std::string& stateFolder = {});
    /// Waits for what is being written, closes every file and deletes the session's. A recording that was not
    /// saved moves to the state folder.
    void Close();

    // ── The last recording ───────────────────────────────────────────────────────────────────────────
    /// Keeps the recording that the work files hold while a new one is begun; where they cannot be set aside,
    /// it is not kept. One of the next two follows.
    void SetAside();
    /// The new one stands: one that was not saved moves to the state folder, another one goes.
    void DropAside();
    /// Whether the next DropAside keeps it in the state folder.
    [[nodiscard]] bool IsAsideUnsaved() const { return last && !last->isSaved; }
    /// Puts it back as it was, counts and flags too; False when none was kept.
    bool PutBack();

    // ── A recording ──────────────────────────────────────────────────────────────────────────────────
    /// Empties the project, analog and digital file, and forgets faults. The session's file tells these
    /// facts.
    void Begin(SessionFacts facts);
    /// Makes the fast file anew; False when it cannot be made.
    [[nodiscard]] bool RecreateFastFile();
    /// Writes the project's header. Where that fails, the inputs that it names record nothing.
    void PutHeader(const ProjectInfo& info);
    /// Writes the header of the digital file.
    void PutPortHeader(std::int32_t portStart, std::int32_t portCount);

    void PutScan(std::span<const float> values);         ///< a polled scan
    void PutPorts(std::span<const std::uint8_t> states); ///< a polled scan of ports
    // Halves of fast input, analog values or raw codes:
    void PutHalf(std::span<const float> values, std::int32_t scans);
    void PutHalf(std::span<const std::int32_t> rawCodes, std::int32_t scans);
    /// Waits a while for what was put; True when there is news of faults or of lost blocks since the last
    /// call.
    bool Settle();
    /// Whether the disk was still writing when the last Settle returned.
    [[nodiscard]] bool IsBehind() const { return isDiskBehind; }
    /// Waits for what was put and closes the fast file.
    void CloseFastFile();
    /// Why what an input gave is not in its file, "" where it is.
    [[nodiscard]] const std::string& Fault(Input input) const { return faults[input]; }
    /// Why the system could not bring to the disk what was written since Begin, "" where it could.
    [[nodiscard]] const std::string& DiskFault() const { return diskFault; }

    /// Waits for all that was put, then writes ScanCount and the interval (seconds) behind the header.
    void Complete(double scanInterval);

    /// Bytes of the recording's samples that are in their files.
    [[nodiscard]] std::int64_t SampleBytes() const;
    [[nodiscard]] bool IsWritten() const { return SoftAIWritten || FAIWritten || DIWritten; }
    /// Whether what was recorded was neither saved nor is being recorded still.
    [[nodiscard]] bool IsUnsaved() const { return IsWritten() && !stopRecord.empty() && !isSaved; }

    /// SaveRecording of what was recorded.
    [[nodiscard]] std::string SaveTo(const std::string& folder, const CopyProgress& progress = {});

private:
    /// The last recording, set aside in the work folder.
    struct Last {
        std::vector<std::string> files;
        std::int32_t ScanCount = 0;
        bool SoftAIWritten = false;
        bool FAIWritten = false;
        bool DIWritten = false;
        bool isProjectOpen = false; // under its number; saving closes it
        std::size_t headerBytes = 0;
        std::vector<std::byte> stopRecord;
        std::string sessionText;
        bool isSaved = false;
    };

    // Beside the numbers of the others; what comes last is written over what is there.
    static constexpr int FastFile = 0;
    static constexpr int StopRecordInPlace = 6;
    static constexpr int SessionFile = 7;

    using Clock = std::chrono::steady_clock;

    void WriteBlock(int file, std::span<const std::byte> bytes);
    void Put(int file, std::span<const std::byte> bytes, std::int32_t scans = 0);
    void Flush();
    void TakeNews();
    void NoteScanBytes(std::size_t file, std::size_t bytes);
    void SetFault(int file, const std::string& reason);
    void NoteLoss(std::int64_t scans, const std::string& reason);
    void NoteTime(std::uint32_t elapsedMs);
    void KeepCurrent(double scanInterval);
    void PutSession(double scanInterval);
    void WatchFiles();
    void WaitForKeeping();
    void EndLiveRecord();
    void OpenQuietly(int number, const std::string& path);
    [[nodiscard]] std::vector<std::byte> Header() const;
    [[nodiscard]] std::vector<std::string> RecordedFiles() const;

    const std::chrono::milliseconds keepEvery;
    Clock::time_point keptAt;
    std::string readFault;
    std::array<std::string, 2> faults; // by input
    std::string diskFault;
    bool areFaultsNews = false;
    std::array<bool, 2> isRecorded{}; // by input
    std::array<std::size_t, BlockWriter::MostFiles> scanBytes{};
    std::size_t headerBytes = 0;       // of the project, in front of the stop record
    bool hasHeader = false;            // else nothing would describe what is recorded
    bool isDiskBehind = false;         // Settle gave up waiting for it
    std::vector<std::byte> stopRecord; // of the end, also where the disk did not take it
    bool isSaved = false;
    std::unique_ptr<UniqueFd> hold; // of the work folder
    std::string unsavedFolder;      // "" for none
    std::string sessionFile;        // "" for none
    SessionFacts session;
    SessionEvents events;
    std::string sessionText; // as it was put last
    std::optional<Last> last;
    std::future<void> keeping;        // of the last unsaved recording, onto another disk
    std::shared_ptr<LiveRecord> live; ///< while a session runs
    DiskSync sync;
    BlockWriter writer; // last: its thread uses the files
};

/// Seconds between two scans of a polled session: the average; 0 for none.
[[nodiscard]] double PolledScanInterval(std::uint32_t elapsedMs, std::int32_t scanCount);
/// Seconds between two scans of `channels` at `sampleRate` conversions a second; 0 for no scan.
[[nodiscard]] double PacedScanInterval(double sampleRate, std::int32_t channels, std::int32_t scanCount);

} // namespace tracelet
