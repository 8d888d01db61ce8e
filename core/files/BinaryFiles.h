#pragma once

#include "core/base/LittleEndian.h"
#include "core/files/SystemFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tracelet {

/// Files opened by number, 1 to 5. Each has a position, in bytes from the start, which opening sets to 0 and
/// which puts move on. Nothing is buffered. A number outside 1 to 5, or a closed one where an open file is
/// needed, raises "Bad file name or number".
class BinaryFiles {
public:
    static constexpr int LowestNumber = 1;
    static constexpr int HighestNumber = 5;

    // Opening a number that is open raises "File already open". See Disposition for what each does.

    void Open(int number, std::string_view path);           ///< reading and writing, created when missing
    void OpenForOutput(int number, std::string_view path);  ///< the same, cut to length 0
    void OpenForReading(int number, std::string_view path); ///< a missing file is "File not found"
    void Close(int number);                                 ///< nothing happens when it is closed
    void CloseAll();
    [[nodiscard]] bool IsOpen(int number) const;

    /// The open file, for reads at offsets of their own; the position is not used by those.
    [[nodiscard]] const SystemFile& File(int number) const;

    [[nodiscard]] std::int64_t Length(int number) const;
    void Seek(int number, std::int64_t offset); ///< negative: "Subscript out of range"

    /// Writes all bytes or none: a write that fails raises the error, and the file ends where it ended
    /// before.
    void PutBytes(int number, std::span<const std::byte> bytes);
    /// The same at `offset`; the position stays.
    void PutBytesAt(int number, std::int64_t offset, std::span<const std::byte> bytes);
    template <FileNumber T>
    void Put(int number, T value) {
        PutBytes(number, std::as_bytes(std::span(&value, 1)));
    }

private:
    [[nodiscard]] SystemFile& At(int number);
    [[nodiscard]] const SystemFile& At(int number) const;
    void OpenAs(int number, std::string_view path, Disposition disposition);

    std::array<SystemFile, HighestNumber> files;
};

} // namespace tracelet
