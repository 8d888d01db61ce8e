#pragma once

#include "core/base/LittleEndian.h"
#include "core/base/RunTimeError.h"
#include "core/files/ByteReader.h"
#include "core/files/SystemFile.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tracelet {

// The data files of a recording. The analog file is scan after scan of 4-byte values without a header; the
// digital file is a header and scan after scan of one byte a port.

/// First port and number of ports in each scan of a digital file.
struct DigitalHeader {
    std::int32_t nHisDIPortStart = 0;
    std::int32_t nHisDIPortCount = 0;

    bool operator==(const DigitalHeader&) const = default;
};

constexpr std::int64_t DigitalHeaderSize = 8;
constexpr std::int64_t AnalogValueSize = 4;

/// Byte offset at which scan `scan` of an analog file with `channelCount` channels starts.
[[nodiscard]] constexpr std::int64_t AnalogOffset(std::int64_t scan, std::int32_t channelCount) {
    return scan * channelCount * AnalogValueSize;
}

/// Byte offset at which scan `scan` of a digital file with `portCount` ports starts.
[[nodiscard]] constexpr std::int64_t DigitalOffset(std::int64_t scan, std::int32_t portCount) {
    return DigitalHeaderSize + scan * portCount;
}

/// Reads the header of a digital file. Raises "Unexpected end of file", and "The digital file cannot hold N
/// ports from port M" for ports that no device has.
[[nodiscard]] DigitalHeader ReadDigitalHeader(ByteReader& reader);
[[nodiscard]] DigitalHeader ReadDigitalHeader(const SystemFile& file);

/// Bytes of the file that lie behind `offset`; 0 for a closed file, one that cannot be asked, or an offset
/// outside.
[[nodiscard]] std::int64_t BytesFrom(const SystemFile& file, std::int64_t offset) noexcept;

/// What a read gave.
struct BlockRead {
    std::size_t bytes = 0;
    std::optional<RunTimeError> failure; ///< what the system could not read behind these bytes
};

/// Reads up to bytes.size() bytes at `offset`. Fewer come at the end of the file, from a closed file and in
/// front of what cannot be read: all of these are a short read, the last one with its failure.
[[nodiscard]] BlockRead ReadBlock(const SystemFile& file, std::int64_t offset, std::span<std::byte> bytes);

/// A block of values read from a data file: float or std::int32_t for analog, std::uint8_t for digital files.
/// Its memory is kept from read to read and never exceeds what the file holds, one value at least, whatever
/// is asked for.
template <FileNumber T>
class DataBlock {
public:
    /// Reads up to `valueCount` values at the byte `offset`; returns the bytes read, which may end inside a
    /// value. Less than valueCount × sizeof(T) is a short read. A negative count reads nothing; a block that
    /// memory cannot hold raises "Out of memory".
    std::int64_t Read(const SystemFile& file, std::int64_t offset, std::int64_t valueCount);

    [[nodiscard]] std::int64_t BytesRead() const { return bytesRead; }

    /// Why the last read was short, unless the file ended there.
    [[nodiscard]] const std::optional<RunTimeError>& Failure() const { return failure; }

    /// The whole values of the last read; good until the next one.
    [[nodiscard]] std::span<const T> Values() const {
        return std::span<const T>(values).first(static_cast<std::size_t>(bytesRead) / sizeof(T));
    }

private:
    std::vector<T> values;
    std::int64_t bytesRead = 0;
    std::optional<RunTimeError> failure;
};

extern template class DataBlock<float>;
extern template class DataBlock<std::int32_t>;
extern template class DataBlock<std::uint8_t>;

} // namespace tracelet
