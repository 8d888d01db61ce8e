#include "core/files/ByteReader.h"

#include "core/base/RunTimeError.h"

#include <algorithm>

namespace tracelet {
namespace {

constexpr std::int64_t BufferSize = std::int64_t{64} * 1024;

} // namespace

ByteReader::ByteReader(std::span<const std::byte> bytes)
    : fetch([bytes](std::int64_t from, std::span<std::byte> out) {
          const auto part = bytes.subspan(static_cast<std::size_t>(from), out.size());
          std::copy(part.begin(), part.end(), out.begin());
          return part.size();
      }),
      end(static_cast<std::int64_t>(bytes.size())) {}

ByteReader::ByteReader(const SystemFile& file)
    : fetch([&file](std::int64_t from, std::span<std::byte> out) { return file.ReadAt(from, out); }),
      end(file.Size()) {}

// The bytes from `offset` on that are at hand, at least one; none at the end.
std::span<const std::byte> ByteReader::Buffered() {
    const auto bufferEnd = bufferOffset + static_cast<std::int64_t>(buffer.size());
    if (offset < bufferOffset || offset >= bufferEnd) {
        buffer.resize(static_cast<std::size_t>(std::min(BufferSize, Remaining())));
        buffer.resize(fetch(offset, buffer));
        bufferOffset = offset;
    }
    return std::span<const std::byte>(buffer).subspan(static_cast<std::size_t>(offset - bufferOffset));
}

void ByteReader::GetBytes(std::span<std::byte> bytes) {
    while (!bytes.empty()) {
        const auto ready = Buffered();
        if (ready.empty())
            throw Fault::UnexpectedEndOfFile();
        const std::size_t count = std::min(ready.size(), bytes.size());
        std::copy_n(ready.begin(), count, bytes.begin());
        bytes = bytes.subspan(count);
        offset += static_cast<std::int64_t>(count);
    }
}

std::string ByteReader::Readsz() {
    std::string text;
    for (auto ready = Buffered(); !ready.empty(); ready = Buffered()) {
        const auto zero = std::find(ready.begin(), ready.end(), std::byte{0});
        const auto length = static_cast<std::size_t>(zero - ready.begin());
        if (text.size() + length > LongestText)
            throw RunTimeError("Text too long in file");
        text.append(reinterpret_cast<const char*>(ready.data()), length);
        offset += static_cast<std::int64_t>(length);
        if (zero != ready.end()) {
            ++offset;
            break;
        }
    }
    text.shrink_to_fit();
    return text;
}

} // namespace tracelet
