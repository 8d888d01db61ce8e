#include "core/disk/LiveRecord.h"

#include <algorithm>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tracelet {
namespace {

constexpr std::int64_t Sector = 512; // what a disk writes wholly or not at all

std::int64_t LengthOf(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 ? status.st_size : 0;
}

} // namespace

LiveRecord::LiveRecord(int descriptor, std::int64_t offsetInProject, const HeaderBytes& headerBytes,
                       Encode encodeRecord)
    : project(fcntl(descriptor, F_DUPFD_CLOEXEC, 0)), offset(offsetInProject), headers(headerBytes),
      encode(encodeRecord) {}

void LiveRecord::Keep(std::span<const std::int64_t> lengths) noexcept {
    const std::int32_t scans = WholeScans(lengths);
    bool isMore = true;
    while (isMore) {
        isMore = WriteNext(scans);
        isMore = fdatasync(project.Get()) == 0 && isMore;
    }
}

void LiveRecord::End() noexcept {
    const std::lock_guard lock(mutex);
    isEnded = true;
}

// Those that every input has. An input that has nothing while another has many is one that its file failed.
std::int32_t LiveRecord::WholeScans(std::span<const std::int64_t> lengths) const {
    std::int64_t least = std::numeric_limits<std::int32_t>::max();
    std::int64_t most = 0;
    bool lacksAny = false;
    for (std::size_t file = 0; file < DataFiles; ++file) {
        if (ScanBytes[file] == 0)
            continue;
        const std::int64_t scans = std::max<std::int64_t>(0, lengths[file] - headers[file]) / ScanBytes[file];
        most = std::max(most, scans);
        if (scans > 0)
            least = std::min(least, scans);
        else
            lacksAny = true;
    }
    return most == 0 || (lacksAny && most == 1) ? 0 : static_cast<std::int32_t>(least);
}

// The power's end may leave one of two sectors written and not the other one. So the first record counts
// nothing, and a count that lies over two changes in one of them at a time, downwards first, by less than
// what the first one holds.
std::int32_t LiveRecord::NextCount(std::int32_t scans) const {
    if (kept < 0)
        return 0;
    const std::int64_t lowBytes = Sector - offset % Sector;
    if (lowBytes >= static_cast<std::int64_t>(sizeof scans))
        return scans;
    const std::int32_t low = (1 << (8 * lowBytes)) - 1;
    if (((kept ^ scans) & ~low) == 0)
        return scans;
    return (kept & low) != 0 ? kept & ~low : scans & ~low;
}

// True when that was not yet the last step towards a record of so many scans.
bool LiveRecord::WriteNext(std::int32_t scans) noexcept {
    const std::lock_guard lock(mutex);
    if (isEnded || ScanInterval <= 0.0 || LengthOf(project.Get()) < offset)
        return false;
    const std::int32_t count = NextCount(scans);
    const auto record = encode(count, ScanInterval);
    if (pwrite(project.Get(), record.data(), record.size(), offset) != static_cast<ssize_t>(record.size()))
        return false;
    kept = count;
    return kept != scans;
}

} // namespace tracelet
