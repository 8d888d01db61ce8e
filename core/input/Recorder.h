#pragma once

#include "core/files/BinaryFiles.h"
#include "core/files/BlockWriter.h"
#include "core/files/SystemFile.h"
#include "core/recordings/ProjectInfo.h"
#include "core/recordings/WorkFolder.h"

#include <array>
#include <cstddef>
#include <cstdint>
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
/// not stall whoever measures. Complete waits for all. After a write that failed an input records nothing
/// more until the next Begin.
///
/// Order of calls: Open; then for each session Begin, RecreateFastFile, PutHeader, ResetCounts, any number of
/// Puts and Settles, Complete. One thread makes them.
class Recorder {
public:
    enum Input { Analog, Digital };

    // Numbers of the work files.
    static constexpr int AIFileNum = 1;
    static constexpr int DIFileNum = 2;
    static constexpr int ProjectFileNum = 5;

    Recorder();
    ~Recorder() { Close(); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    // ── The session so far ───────────────────────────────────────────────────────────────────────────
    std::int32_t ScanCount = 0;    ///< scans taken; stays at the highest number there is
    std::int32_t OverrunCount = 0; ///< losses that the board or the full queue caused
    /// Polled scans that could not be read. Ticks that were dropped do not count.
    std::int32_t LostScanCount = 0;
    bool SoftAIWritten = false; ///< polled analog data are in their file
    bool FAIWritten = false;    ///< fast analog data are in their file
    bool DIWritten = false;     ///< digital data are in their file

    /// Nothing was taken, lost or written yet.
    void ResetCounts();
    void CountScans(std::int32_t scans);
    /// Counts a scan that could not be read for this reason. True when the reason is not that of the last.
    bool LoseScan(const std::string& reason);
    /// A scan was read. True when the one before was lost.
    bool EndReadFault();
    /// Why the last scan was lost, "" when it was read.
    [[nodiscard]] const std::string& ReadFault() const { return readFault; }

    // ── Files ────────────────────────────────────────────────────────────────────────────────────────
    WorkFolder work;
    BinaryFiles Files;        ///< the work files under their numbers; the other numbers are free
    SystemFile FAIFileHandle; ///< work file of fast input, open from a start on

    /// Opens the project, analog and digital file of `folder` and makes the fast one. Failures are quiet: a
    /// file that stays closed shows when something is written to it.
    void Open(const WorkFolder& folder);
    /// Waits for what is being written and closes every file.
    void Close();

    // ── The last recording ───────────────────────────────────────────────────────────────────────────
    /// Keeps the recording that the work files hold while a new one is begun; where they cannot be set aside,
    /// it is not kept. One of the next two follows.
    void SetAside();
    void DropAside();
    /// Puts it back as it was, counts and flags too; False when none was kept.
    bool PutBack();

    // ── A recording ──────────────────────────────────────────────────────────────────────────────────
    /// Empties the project, analog and digital file, and forgets faults.
    void Begin();
    /// Makes the fast file anew; False when it cannot be made.
    [[nodiscard]] bool RecreateFastFile();
    /// Writes the project's header. Where that fails, the inputs that it names are at fault.
    void PutHeader(const ProjectInfo& info);
    /// Writes the header of the digital file.
    void PutPortHeader(std::int32_t portStart, std::int32_t portCount);

    void PutScan(std::span<const float> values);          ///< a polled scan
    void PutPorts(std::span<const std::uint8_t> states);  ///< a polled scan of ports
    void PutHalf(std::span<const float> values);          ///< fast input, analog values
    void PutHalf(std::span<const std::int32_t> rawCodes); ///< fast input, raw codes
    /// Waits a while for what was put; True when an input came to be at fault since the last call.
    bool Settle();
    /// Waits for what was put and closes the fast file.
    void CloseFastFile();
    /// Why an input records nothing more, "" while it does.
    [[nodiscard]] const std::string& Fault(Input input) const { return faults[input]; }

    /// Waits for all that was put, then writes ScanCount and the interval (seconds) behind the header.
    void Complete(double scanInterval);

    [[nodiscard]] bool IsWritten() const { return SoftAIWritten || FAIWritten || DIWritten; }

    /// Copies the recording into `folder` (composed text), which is made where it is not there. All or
    /// nothing: an earlier recording there stays until each file of this one is there. Raises when the
    /// project cannot be copied; gives the reason when its data cannot, "" when all went.
    [[nodiscard]] std::string SaveTo(const std::string& folder);

private:
    /// The last recording, set aside in the work folder.
    struct Last {
        std::vector<std::string> files;
        std::int32_t ScanCount = 0;
        bool SoftAIWritten = false;
        bool FAIWritten = false;
        bool DIWritten = false;
        bool isProjectOpen = false; // under its number; saving closes it
        std::vector<std::byte> unwrittenStopRecord;
    };

    static constexpr int FastFile = 0; // beside the numbers of the others

    void Flush();
    void WriteBlock(int file, std::span<const std::byte> bytes);
    void Put(int file, std::span<const std::byte> bytes);
    void TakeFailures();
    void FailFile(int file, const std::string& reason);
    void OpenQuietly(int number, const std::string& path);

    std::string readFault;
    std::array<std::string, 2> faults; // by input
    bool hasNewFault = false;
    std::array<bool, 2> isRecorded{};           // by input
    bool isDiskBehind = false;                  // Settle gave up waiting for it
    std::vector<std::byte> unwrittenStopRecord; // what a full disk did not take; a saved copy gets it
    std::optional<Last> last;
    BlockWriter writer; // last: its thread uses the files
};

/// Seconds between two scans of a polled session: the average; 0 for none.
[[nodiscard]] double PolledScanInterval(std::uint32_t elapsedMs, std::int32_t scanCount);
/// Seconds between two scans of `channels` at `sampleRate` conversions a second; 0 for no scan.
[[nodiscard]] double PacedScanInterval(double sampleRate, std::int32_t channels, std::int32_t scanCount);

} // namespace tracelet
