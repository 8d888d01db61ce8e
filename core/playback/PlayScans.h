#pragma once

#include "core/recordings/Recording.h"

#include <algorithm>
#include <utility>

namespace tracelet {

/// Values that PlayScans reads at a time; a scan that is longer is read whole.
constexpr std::int64_t ValuesARead = std::int64_t{1} << 20;

/// Hands `scans` scans of `valuesPerScan` values each, from the byte `offset` of a data file on, to
/// `append(values, scanCount)`, in blocks of bounded size. A short read is the end of the data: the whole
/// scans of it are handed over, a scan that the file holds in part is not, and the result is True. A scan
/// without values is the end too. What the system cannot read is raised, after the scans in front of it.
template <FileNumber T, typename Append>
[[nodiscard]] bool PlayScans(DataBlock<T>& block, const SystemFile& file, std::int64_t offset,
                             std::int64_t valuesPerScan, std::int64_t scans, Append&& append) {
    if (valuesPerScan < 1)
        return true;
    const std::int64_t scansARead = std::max<std::int64_t>(1, ValuesARead / valuesPerScan);
    while (scans > 0) {
        const std::int64_t wanted = std::min(scans, scansARead);
        const std::int64_t bytesRead = block.Read(file, offset, wanted * valuesPerScan);
        const std::int64_t whole = bytesRead / (valuesPerScan * std::int64_t{sizeof(T)});
        if (whole > 0)
            append(block.Values().first(static_cast<std::size_t>(whole * valuesPerScan)),
                   static_cast<std::int32_t>(whole));
        if (block.Failure())
            throw RunTimeError(*block.Failure());
        if (whole < wanted)
            return true;
        offset += bytesRead;
        scans -= wanted;
    }
    return false;
}

/// PlayScans from scan `scan` of the recording's analog file on; T is the type of its values.
template <FileNumber T, typename Append>
[[nodiscard]] bool PlayAnalogScans(const Recording& recording, DataBlock<T>& block, std::int64_t scan,
                                   std::int64_t scans, Append&& append) {
    const std::int32_t channels = recording.info.nHisAIChanCount;
    return PlayScans(block, recording.analogFile, AnalogOffset(scan, channels), channels, scans,
                     std::forward<Append>(append));
}

/// PlayScans from scan `scan` of the recording's digital file on.
template <typename Append>
[[nodiscard]] bool PlayDigitalScans(const Recording& recording, DataBlock<std::uint8_t>& block,
                                    std::int64_t scan, std::int64_t scans, Append&& append) {
    const std::int32_t ports = recording.digitalHeader.nHisDIPortCount;
    return PlayScans(block, recording.digitalFile, DigitalOffset(scan, ports), ports, scans,
                     std::forward<Append>(append));
}

/// Whether a tick plays the digital file: fast recordings have none that belongs to their scans, and one that
/// did not open counts as absent.
[[nodiscard]] inline bool PlaysDigital(const Recording& recording) {
    return recording.info.bHisAISoft && recording.digitalHeader.nHisDIPortCount > 0;
}

/// What a point of a digital line costs to play, in values.
constexpr std::int64_t ValuesADigitalPoint = 8;

/// What a scan costs to play, in values, as AffordableScans takes it.
[[nodiscard]] inline std::int64_t ValuesAScan(const Recording& recording) {
    return recording.info.nHisAIChanCount + recording.digitalHeader.nHisDIPortCount +
           static_cast<std::int64_t>(recording.lines.size()) * ValuesADigitalPoint;
}

} // namespace tracelet
