#pragma once

#include "core/files/ByteReader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tracelet {

/// How one plot looks: a colour 0x00BBGGRR (top bit set: a system colour), a line style 0 to 4 and a name,
/// UTF-8.
struct PlotRecord {
    std::int32_t PlotColor = 0;
    std::int32_t PlotLineStyle = 0;
    std::string PlotName{};

    bool operator==(const PlotRecord&) const = default;
};

/// What a project file tells about a recording. docs/file-formats.md has the bytes.
struct ProjectInfo {
    /// Largest count of a device's channels or ports that a project may name; they are numbered with 16 bits.
    static constexpr std::int32_t MostChannels = 65536;

    /// Largest count of analog, or of digital plots, and of bytes in the names of either: more than any
    /// device needs, and what a window still shows at once.
    static constexpr std::int32_t MostPlots = 1024;
    static constexpr std::size_t MostNameBytes = std::size_t{128} * 1024;

    bool bHisAI = false;       ///< analog data were recorded
    bool bHisDI = false;       ///< digital data were recorded
    bool bHisAISoft = false;   ///< polled by the program's timer, not paced by the device
    bool bHisAIAnalog = false; ///< analog samples are floats; otherwise raw 32-bit codes
    std::int32_t nHisAIChanCount = 0;
    std::int32_t nHisDIChanCount = 0;

    // Each is empty without its flag.
    std::vector<PlotRecord> aiPlots{};             ///< nHisAIChanCount of them
    std::vector<std::uint8_t> HisAIChanIsThermo{}; ///< one a device channel, not 0 for a thermocouple
    std::vector<PlotRecord> diPlots{};             ///< nHisDIChanCount of them
    std::vector<std::uint8_t> HisDIPortMask{};     ///< one a device port, bit n for line n

    std::int32_t ScanCount = 0;
    double ScanInterval = 0.0; ///< seconds
    std::string AIDataPath{};  ///< composed text, as files/Paths.h describes
    std::string DIDataPath{};

    [[nodiscard]] std::int32_t nHisAIMaxChanNum() const {
        return static_cast<std::int32_t>(HisAIChanIsThermo.size());
    }
    [[nodiscard]] std::int32_t nHisDIMaxPortCount() const {
        return static_cast<std::int32_t>(HisDIPortMask.size());
    }

    bool operator==(const ProjectInfo&) const = default;
};

/// The bytes that a start of recording writes: everything up to the masks of the digital lines. Both counts
/// are written whatever the flags; the sections of an input only with its flag. A flag whose plots are not
/// exactly as many as its count raises "Subscript out of range". Names end at a 0 in them.
[[nodiscard]] std::vector<std::byte> ProjectHeader(const ProjectInfo& info);

/// The bytes that a stop appends to them.
[[nodiscard]] std::vector<std::byte> StopRecord(std::int32_t ScanCount, double ScanInterval);

/// The bytes that saving appends to the saved copy: the first path with a 0 behind it, the second without.
[[nodiscard]] std::vector<std::byte> SavedPaths(std::string_view AIDataPath, std::string_view DIDataPath);

/// Reads what a start of recording wrote, from the reader's position; the rest is not read. Raises as
/// ReadProject does for that part.
[[nodiscard]] ProjectInfo ReadProjectHeader(ByteReader& reader);

/// Reads a project from the reader's position. A count is taken as 0 while its flag is false. Raises:
/// "Subscript out of range" for a count below 1 while its flag is true; "The project file cannot hold N ..."
/// for a count above its limit, or that what is left of the file has no room for; "Names too long in file"
/// above MostNameBytes; "Unexpected end of file" when it ends before the paths; "The project file has a scan
/// count of N" below 0, and the same for an interval below 0 or not finite. Paths that are missing are empty.
[[nodiscard]] ProjectInfo ReadProject(ByteReader& reader);

/// ReadProject of the file at `path`; raises also what opening it for reading does. What cannot be read and
/// does not even begin with four Booleans is "The file is not a Tracelet project".
[[nodiscard]] ProjectInfo ReadProjectFile(std::string_view path);

} // namespace tracelet
