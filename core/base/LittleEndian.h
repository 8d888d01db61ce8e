#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace tracelet {

/// A number that files hold as its little-endian bytes.
template <typename T>
concept FileNumber = std::integral<T> || std::floating_point<T>;

static_assert(std::endian::native == std::endian::little,
              "Numbers and samples go to and from files as they lie in memory, which must be little-endian");

/// Appends the little-endian bytes of `value`.
template <FileNumber T>
void AppendLittleEndian(std::vector<std::byte>& bytes, T value) {
    const std::size_t end = bytes.size();
    bytes.resize(end + sizeof(T));
    std::memcpy(bytes.data() + end, &value, sizeof(T));
}

/// Reads the number at `offset` bytes; the caller has checked that the bytes are there.
template <FileNumber T>
[[nodiscard]] T ReadLittleEndian(std::span<const std::byte> bytes, std::size_t offset) {
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof(T));
    return value;
}

} // namespace tracelet
