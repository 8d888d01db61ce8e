#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace tracelet {

/// What opening does with a file that is there, or is not.
enum class Disposition {
    OpenExisting, ///< for reading; a missing file is "File not found"; the name's case does not matter
    OpenAlways,   ///< for reading and writing; a missing file is created empty; a file that may only be read
                  ///< opens for reading
    CreateAlways, ///< for reading and writing; created, or cut to length 0
};

/// An open file of the system, closed with the object. Nothing is buffered: other readers see every byte at
/// once. Only regular files, and links to them, open; anything else is "Permission denied" and left alone.
/// Offsets are bytes from the start, 64-bit. Other programs are not kept from the file while it is open: the
/// system offers no such lock to rely on.
class SystemFile {
public:
    static constexpr int ClosedHandle = -1;

    SystemFile() = default;
    SystemFile(std::string_view path, Disposition disposition); ///< raises what the system says about `path`
    ~SystemFile() { Close(); }
    SystemFile(SystemFile&& other) noexcept
        : handle(std::exchange(other.handle, ClosedHandle)), position(std::exchange(other.position, 0)) {}
    SystemFile& operator=(SystemFile&& other) noexcept;

    [[nodiscard]] bool IsOpen() const { return handle != ClosedHandle; }
    [[nodiscard]] int Handle() const { return handle; } ///< the system's number, -1 when closed
    void Close() noexcept;
    /// Close that raises what the system says of bytes that it could not store after all.
    void CloseChecked();

    // All of these raise "Bad file name or number" when the file is closed.

    [[nodiscard]] std::int64_t Size() const;
    [[nodiscard]] std::int64_t Position() const; ///< where the next Write starts
    void Seek(std::int64_t offset); ///< negative: "Subscript out of range"; beyond the end is allowed

    /// Bytes read, fewer than asked for at the end of the file or where the system cannot read on; when that
    /// is at the first byte the error is raised.
    [[nodiscard]] std::size_t ReadAt(std::int64_t offset, std::span<std::byte> bytes) const;

    /// Writes all bytes or raises the error. After an error the file has the length that it had before, so
    /// that what was appended earlier stays whole, and the position is unmoved. A file that was deleted while
    /// open takes nothing more: "File not found".
    void Write(std::span<const std::byte> bytes);
    void WriteAt(std::int64_t offset, std::span<const std::byte> bytes);

    /// Writes behind the last byte, wherever the position is, and leaves the position behind the block.
    void Append(std::span<const std::byte> bytes);

private:
    int handle = ClosedHandle;
    std::int64_t position = 0;
};

} // namespace tracelet
