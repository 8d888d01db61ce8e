#pragma once

#include "core/base/UniqueFd.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tracelet {

/// A new text file that is written line by line and reaches the disk in large blocks of whole lines. A write
/// that fails cuts the file back to its last whole line and raises the error's description.
class TextFile {
public:
    /// Creates the file, or empties the one that is there; the description of the failure if it cannot.
    /// Lines not yet written out when the object goes are lost unless Close was called.
    explicit TextFile(const std::string& nativePath);

    /// Room for `bytes` bytes behind the lines so far. Valid until the next call of any member.
    [[nodiscard]] char* Line(std::size_t bytes) {
        if (used + bytes > buffer.size()) [[unlikely]]
            MakeRoom(bytes);
        return buffer.data() + used;
    }

    /// Keeps what was written to the room of the last Line up to `end`. A line carries its line break in
    /// front (CR LF), all but the first of the file.
    void EndLine(const char* end) { used = static_cast<std::size_t>(end - buffer.data()); }

    /// Writes out the rest and closes the file.
    void Close();

private:
    void MakeRoom(std::size_t bytes);
    void WriteOut();
    void CutAfter(std::size_t bytesWritten) const;

    UniqueFd file;
    std::int64_t fileBytes = 0; // whole lines that are in the file
    std::vector<char> buffer;
    std::size_t used = 0; // bytes of whole lines in the buffer
};

} // namespace tracelet
