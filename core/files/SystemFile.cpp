#include "core/files/SystemFile.h"

#include "core/base/RunTimeError.h"
#include "core/files/Paths.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static_assert(sizeof(off_t) == 8, "files beyond 2 GiB need 64-bit offsets");

namespace tracelet {
namespace {

// O_NONBLOCK: opening a pipe that nobody writes to must not wait.
constexpr int CommonFlags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
constexpr mode_t NewFileMode = 0666;

int OpenOnce(const std::string& path, int flags) {
    int handle = -1;
    do {
        handle = open(path.c_str(), flags | CommonFlags, NewFileMode);
    } while (handle < 0 && errno == EINTR);
    return handle;
}

bool MayOnlyBeRead(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == ETXTBSY;
}

// Opening a device can do harm by itself.
void RequireFileOrNothing(const std::string& native) {
    struct stat status {};
    if (stat(native.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        throw Fault::PermissionDenied();
}

int OpenHandle(std::string_view path, Disposition disposition) {
    const bool existing = disposition == Disposition::OpenExisting;
    const std::string native = existing ? ExistingFile(path).value_or(NativePath(path)) : NativePath(path);
    RequireFileOrNothing(native);
    if (existing)
        return OpenOnce(native, O_RDONLY);
    const int handle = OpenOnce(native, O_RDWR | O_CREAT);
    if (handle < 0 && disposition == Disposition::OpenAlways && MayOnlyBeRead(errno)) {
        const int refusal = errno;
        const int readOnly = OpenOnce(native, O_RDONLY);
        if (readOnly < 0)
            errno = refusal;
        return readOnly;
    }
    return handle;
}

// A file that may be created is only missing because its folder is.
RunTimeError OpenFault(int error, Disposition disposition) {
    if (error == ENOENT && disposition != Disposition::OpenExisting)
        return Fault::PathNotFound();
    return Fault::FromErrno(error);
}

void RequireOpen(int handle) {
    if (handle == SystemFile::ClosedHandle)
        throw Fault::BadFileNumber();
}

struct stat StatusOf(int handle) {
    RequireOpen(handle);
    struct stat status {};
    if (fstat(handle, &status) != 0)
        throw Fault::FromErrno(errno);
    return status;
}

void RequireRegular(int handle) {
    if (!S_ISREG(StatusOf(handle).st_mode))
        throw Fault::PermissionDenied();
}

// 0 or the value of errno that stopped the writing.
int WriteAll(int handle, std::int64_t offset, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = pwrite(handle, bytes.data(), bytes.size(), offset);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return written < 0 ? errno : ENOSPC;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
        offset += written;
    }
    return 0;
}

void CutTo(int handle, std::int64_t size) {
    while (ftruncate(handle, size) != 0 && errno == EINTR) {
    }
}

// Writes into a file that had this status; what cannot be written whole leaves it as it was.
void WriteTo(int handle, const struct stat& before, std::int64_t offset, std::span<const std::byte> bytes) {
    if (before.st_nlink == 0) // nobody would ever find what is written
        throw Fault::FileNotFound();
    const int error = WriteAll(handle, offset, bytes);
    if (error == 0)
        return;
    if (error == EBADF) // open for reading only
        throw Fault::PermissionDenied();
    CutTo(handle, before.st_size);
    throw Fault::FromErrno(error);
}

} // namespace

SystemFile::SystemFile(std::string_view path, Disposition disposition)
    : handle(OpenHandle(path, disposition)) {
    if (handle < 0)
        throw OpenFault(errno, disposition);
    try {
        RequireRegular(handle);
    } catch (...) {
        Close();
        throw;
    }
    if (disposition == Disposition::CreateAlways)
        CutTo(handle, 0);
}

SystemFile& SystemFile::operator=(SystemFile&& other) noexcept {
    if (this != &other) {
        Close();
        handle = std::exchange(other.handle, ClosedHandle);
        position = std::exchange(other.position, 0);
    }
    return *this;
}

void SystemFile::Close() noexcept {
    if (handle != ClosedHandle)
        close(std::exchange(handle, ClosedHandle));
    position = 0;
}

void SystemFile::CloseChecked() {
    RequireOpen(handle);
    position = 0;
    if (close(std::exchange(handle, ClosedHandle)) != 0 && errno != EINTR)
        throw Fault::FromErrno(errno);
}

std::int64_t SystemFile::Size() const {
    return StatusOf(handle).st_size;
}

std::int64_t SystemFile::Position() const {
    RequireOpen(handle);
    return position;
}

void SystemFile::Seek(std::int64_t offset) {
    RequireOpen(handle);
    if (offset < 0)
        throw Fault::SubscriptOutOfRange();
    position = offset;
}

std::size_t SystemFile::ReadAt(std::int64_t offset, std::span<std::byte> bytes) const {
    RequireOpen(handle);
    std::size_t got = 0;
    while (got < bytes.size()) {
        const auto from = offset + static_cast<std::int64_t>(got);
        const ssize_t read = pread(handle, bytes.data() + got, bytes.size() - got, from);
        if (read < 0 && errno == EINTR)
            continue;
        if (read < 0 && got == 0)
            throw Fault::FromErrno(errno);
        if (read <= 0)
            break;
        got += static_cast<std::size_t>(read);
    }
    return got;
}

void SystemFile::Write(std::span<const std::byte> bytes) {
    WriteAt(position, bytes);
    position += static_cast<std::int64_t>(bytes.size());
}

void SystemFile::WriteAt(std::int64_t offset, std::span<const std::byte> bytes) {
    WriteTo(handle, StatusOf(handle), offset, bytes);
}

void SystemFile::Append(std::span<const std::byte> bytes) {
    const struct stat before = StatusOf(handle);
    WriteTo(handle, before, before.st_size, bytes);
    position = before.st_size + static_cast<std::int64_t>(bytes.size());
}

} // namespace tracelet
