#include "core/recordings/RecordingReader.h"

#include "core/base/NumberText.h"
#include "core/recordings/ProjectInfo.h"

#include <algorithm>
#include <exception>
#include <string>
#include <utility>

namespace tracelet {
namespace {

bool PortsArePossible(std::int64_t start, std::int64_t count) {
    return start >= 0 && count >= 1 && start + count <= ProjectInfo::MostChannels;
}

} // namespace

DigitalHeader ReadDigitalHeader(ByteReader& reader) {
    const auto start = reader.Get<std::int32_t>();
    const auto count = reader.Get<std::int32_t>();
    if (!PortsArePossible(start, count))
        throw RunTimeError("The digital file cannot hold " + NumberText(count) + " ports from port " +
                           NumberText(start));
    return {.nHisDIPortStart = start, .nHisDIPortCount = count};
}

DigitalHeader ReadDigitalHeader(const SystemFile& file) {
    ByteReader reader(file);
    return ReadDigitalHeader(reader);
}

std::int64_t BytesFrom(const SystemFile& file, std::int64_t offset) noexcept {
    try {
        return offset < 0 ? 0 : std::max<std::int64_t>(0, file.Size() - offset);
    } catch (const std::exception&) {
        return 0;
    }
}

// A file gives what lies in front of an error; the error comes when it is asked for more.
BlockRead ReadBlock(const SystemFile& file, std::int64_t offset, std::span<std::byte> bytes) {
    BlockRead read;
    if (offset < 0 || !file.IsOpen())
        return read;
    try {
        while (read.bytes < bytes.size()) {
            const auto from = offset + static_cast<std::int64_t>(read.bytes);
            const std::size_t got = file.ReadAt(from, bytes.subspan(read.bytes));
            if (got == 0)
                break;
            read.bytes += got;
        }
    } catch (const RunTimeError& error) {
        read.failure = error;
    }
    return read;
}

template <FileNumber T>
std::int64_t DataBlock<T>::Read(const SystemFile& file, std::int64_t offset, std::int64_t valueCount) {
    constexpr std::int64_t Size = sizeof(T);
    bytesRead = 0;
    // One at least: a file that does not even tell its size then tells why.
    const std::int64_t available = std::max<std::int64_t>(1, (BytesFrom(file, offset) + Size - 1) / Size);
    const auto count = static_cast<std::size_t>(std::clamp<std::int64_t>(valueCount, 0, available));
    try {
        if (values.size() < count)
            values.resize(count);
    } catch (const std::exception&) {
        throw Fault::OutOfMemory();
    }
    const auto wanted = std::span(values).first(count);
    BlockRead read = ReadBlock(file, offset, std::as_writable_bytes(wanted));
    bytesRead = static_cast<std::int64_t>(read.bytes);
    failure = std::move(read.failure);
    return bytesRead;
}

template class DataBlock<float>;
template class DataBlock<std::int32_t>;
template class DataBlock<std::uint8_t>;

} // namespace tracelet
