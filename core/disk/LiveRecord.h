#pragma once

#include "core/base/UniqueFd.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

namespace tracelet {

/// The record of a session that runs: it counts the scans that are on the disk for certain, so that what
/// the power's end makes of later ones is never taken for samples. It is kept in its place in the project by
/// the thread that brings the data to the disk; the rest is anyone's.
class LiveRecord {
public:
    static constexpr std::size_t DataFiles = 3;
    using HeaderBytes = std::array<std::int64_t, DataFiles>; ///< in front of the first scan
    using Encode = std::vector<std::byte> (*)(std::int32_t scans, double interval);

    /// Keeps the record of the open project `descriptor`, `offset` bytes behind its start. Raises without a
    /// descriptor to be had.
    LiveRecord(int descriptor, std::int64_t offset, const HeaderBytes& headers, Encode encode);

    std::atomic<double> ScanInterval = 0.0;                          ///< seconds; 0 while it is not known
    std::array<std::atomic<std::int64_t>, DataFiles> ScanBytes = {}; ///< of a scan; 0 before the first

    /// The data files have these lengths on the disk. Brings the record there too, and all of the project.
    void Keep(std::span<const std::int64_t> lengths) noexcept;

    /// From now on nothing is written.
    void End() noexcept;

private:
    [[nodiscard]] std::int32_t WholeScans(std::span<const std::int64_t> lengths) const;
    [[nodiscard]] std::int32_t NextCount(std::int32_t scans) const;
    [[nodiscard]] bool WriteNext(std::int32_t scans) noexcept;

    const UniqueFd project;
    const std::int64_t offset;
    const HeaderBytes headers;
    const Encode encode;
    std::mutex mutex; // held while something is written
    bool isEnded = false;
    std::int32_t kept = -1; ///< count on the disk, -1 for none
};

} // namespace tracelet
