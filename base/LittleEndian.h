#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

namespace tracelet {

/// A number that files hold as its little-endian bytes.
template <typename T>
concept FileNumber = std::integral<T> || std::floating_point<T>;

/// The bytes of a number, reversed on a machine that is not little-endian.
template <FileNumber T>
[[nodiscard]] T FromOrToLittleEndian(T value) {
    if constexpr (std::endian::native == std::endian::little || sizeof(T) == 1) {
        return value;
    } else {
        unsigned char bytes[sizeof(T)];
        std::memcpy(bytes, &value, sizeof(T));
        for (std::size_t i = 0; i < sizeof(T) / 2; ++i)
            std::swap(bytes[i], bytes[sizeof(T) - 1 - i]);
        std::memcpy(&value, bytes, sizeof(T));
        return value;
    }
}

/// Appends the little-endian bytes of `value`.
template <FileNumber T>
void AppendLittleEndian(std::vector<std::byte>& bytes, T value) {
    value = FromOrToLittleEndian(value);
    const std::size_t end = bytes.size();
    bytes.resize(end + sizeof(T));
    std::memcpy(bytes.data() + end, &value, sizeof(T));
}

/// Reads the number at `offset` bytes; the caller has checked that the bytes are there.
template <FileNumber T>
[[nodiscard]] T ReadLittleEndian(std::span<const std::byte> bytes, std::size_t offset) {
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof(T));
    return FromOrToLittleEndian(value);
}

} // namespace tracelet
