#pragma once

#include "core/export/TextFile.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tracelet {

// Recordings as text for spreadsheets: a header and one line a scan or sample, fields separated by TAB, lines
// by CR LF. The time column starts at the scan interval and grows by it from line to line. Failures of the
// text file are raised as its descriptions; the lines before the failure stay whole.

/// Reads up to `bytes.size()` bytes that lie at `offset` in a data file and returns how many it got; fewer
/// than asked for mean the end of the data, or an error that counts as such.
using ReadBytes = std::function<std::size_t(std::int64_t offset, std::span<std::byte> bytes)>;

/// Is told from time to time which fraction of a file is done, 0 to 1.
using Progress = std::function<void(double fraction)>;

/// What the text of an analog recording needs to know.
struct AnalogRecording {
    std::vector<std::string> plotNames; ///< one per channel in scan order, UTF-8; at least one
    bool isAnalog = true;               ///< samples are f32 values, not i32 codes
    double scanInterval = 0.0;          ///< seconds
    std::int64_t dataBytes = 0;         ///< size of the data file; measures the progress only
};

/// What the text of a digital recording needs to know.
struct DigitalRecording {
    std::int32_t portStart = 0;
    std::int32_t portCount = 0;
    std::vector<std::int32_t> lines; ///< columns: lines of these ports, port × 8 + line
    double scanInterval = 0.0;       ///< seconds
    std::int32_t scanCount = 0;      ///< samples at most
};

/// The samples of a data file are exported block by block.
inline constexpr std::size_t AnalogBlockBytes = 400000;

/// Number of scans of a block that are exported: 0 to CLng(bytesRead / 4 / channelCount − 2) are their
/// indices. That never reaches beyond the block; where the quotient is whole, the last scan of the block is
/// left out.
[[nodiscard]] std::int32_t ScansOfBlock(std::size_t bytesRead, std::int64_t channelCount);

/// Writes all of "AI.xlt" into `file`. Blocks are read from the start of the data file on as long as each is
/// full. A block that holds no whole number of scans makes the next one begin inside a scan.
void WriteAnalogText(TextFile& file, const AnalogRecording& recording, const ReadBytes& read,
                     const Progress& progress);

/// Writes all of "DI.xlt" into `file`: `scanCount` samples, or as many as the data file holds whole.
void WriteDigitalText(TextFile& file, const DigitalRecording& recording, const ReadBytes& read,
                      const Progress& progress);

} // namespace tracelet
