#pragma once

#include "core/base/LittleEndian.h"
#include "core/files/SystemFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tracelet {

/// Reads fields one after the other from a file or from bytes in memory. What reads beyond the end raises
/// "Unexpected end of file", except Readsz. The file, or the bytes, must outlive the reader.
class ByteReader {
public:
    /// Longest text that Readsz takes, bytes; names and paths are far shorter.
    static constexpr std::size_t LongestText = std::size_t{1024} * 1024;

    explicit ByteReader(std::span<const std::byte> bytes);
    explicit ByteReader(const SystemFile& file);

    [[nodiscard]] std::int64_t Remaining() const { return end - offset; } ///< bytes up to the end, 0 or more

    template <FileNumber T>
    [[nodiscard]] T Get() {
        std::array<std::byte, sizeof(T)> bytes;
        GetBytes(bytes);
        return ReadLittleEndian<T>(bytes, 0);
    }
    void GetBytes(std::span<std::byte> bytes);

    /// The bytes up to the next 0, which is taken too, or up to the end. More than LongestText: "Text too
    /// long in file".
    [[nodiscard]] std::string Readsz();

private:
    using Fetch = std::function<std::size_t(std::int64_t offset, std::span<std::byte> bytes)>;

    [[nodiscard]] std::span<const std::byte> Buffered();

    Fetch fetch;
    std::int64_t offset = 0; // of the next byte
    std::int64_t end;
    std::vector<std::byte> buffer;
    std::int64_t bufferOffset = 0;
};

} // namespace tracelet
