#include "core/export/TextFile.h"

#include "core/base/RunTimeError.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace tracelet {
namespace {

// Smaller ones are slower, larger ones no faster.
constexpr std::size_t BufferBytes = std::size_t{1024} * 1024;
constexpr mode_t Everyone = 0666;
constexpr std::string_view LineBreak = "\r\n";

} // namespace

TextFile::TextFile(const std::string& nativePath)
    : file(::open(nativePath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, Everyone)),
      buffer(BufferBytes) {}

void TextFile::Close() {
    WriteOut();
    if (const int error = file.Close(); error != 0)
        throw Fault::FromErrno(error);
}

void TextFile::MakeRoom(std::size_t bytes) {
    WriteOut();
    if (bytes > buffer.size())
        buffer.resize(bytes);
}

void TextFile::WriteOut() {
    std::size_t written = 0;
    while (written < used) {
        const ssize_t count = ::write(file.Get(), buffer.data() + written, used - written);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            const int error = count < 0 ? errno : ENOSPC;
            CutAfter(written);
            used = 0;
            throw Fault::FromErrno(error);
        }
        written += static_cast<std::size_t>(count);
    }
    fileBytes += static_cast<std::int64_t>(used);
    used = 0;
}

// The last line break at or before `bytesWritten` is where the last whole line ends. The buffer begins with a
// line, so without such a break all of it goes.
void TextFile::CutAfter(std::size_t bytesWritten) const {
    const std::size_t lineEnd = std::string_view(buffer.data(), used).rfind(LineBreak, bytesWritten);
    const std::size_t kept = lineEnd == std::string_view::npos ? 0 : lineEnd;
    // A device such as a pipe cannot be cut; the failure of the write is what counts.
    [[maybe_unused]] const int result = ::ftruncate(file.Get(), fileBytes + static_cast<std::int64_t>(kept));
}

} // namespace tracelet
