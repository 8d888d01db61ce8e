#include "core/files/FileOperations.h"

#include "core/base/RunTimeError.h"
#include "core/files/Paths.h"
#include "core/files/SystemFile.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <memory>
#include <span>
#include <sys/stat.h>
#include <unistd.h>

namespace tracelet {
namespace {

constexpr std::int64_t CopyBlock = std::int64_t{1024} * 1024;
constexpr std::int64_t SystemPiece = 64 * CopyBlock;

// What `action` answers for the native path, False when there is none.
template <typename Action>
bool OnNativePath(std::string_view path, Action action) noexcept {
    try {
        return action(NativePath(path).c_str());
    } catch (const std::exception&) {
        return false;
    }
}

bool SameFile(const SystemFile& a, const std::string& b) {
    struct stat statusA {};
    struct stat statusB {};
    return fstat(a.Handle(), &statusA) == 0 && stat(b.c_str(), &statusB) == 0 &&
           statusA.st_dev == statusB.st_dev && statusA.st_ino == statusB.st_ino;
}

void Tell(const CopyProgress& progress, std::int64_t bytes) {
    if (progress)
        progress(bytes);
}

// Moves as much as the system copies by itself, up to `end`; the rest, often all or nothing, is left to
// CopyBlocks.
void CopyInSystem(const SystemFile& source, const SystemFile& target, std::int64_t& offset, std::int64_t end,
                  const CopyProgress& progress) {
    off_t from = 0;
    off_t to = 0;
    while (from < end) {
        const auto piece = static_cast<std::size_t>(std::min(end - from, SystemPiece));
        const ssize_t count = copy_file_range(source.Handle(), &from, target.Handle(), &to, piece, 0);
        if (count <= 0)
            break;
        Tell(progress, count);
    }
    offset = from;
}

void CopyBlocks(const SystemFile& source, SystemFile& target, std::int64_t offset, std::int64_t end,
                const CopyProgress& progress) {
    const auto block = std::make_unique<std::byte[]>(CopyBlock);
    while (offset < end) {
        const auto piece = static_cast<std::size_t>(std::min<std::int64_t>(end - offset, CopyBlock));
        const std::size_t count = source.ReadAt(offset, std::span(block.get(), piece));
        if (count == 0)
            return;
        target.WriteAt(offset, std::span(block.get(), count));
        offset += static_cast<std::int64_t>(count);
        Tell(progress, static_cast<std::int64_t>(count));
    }
}

} // namespace

void CopyWholeFile(std::string_view from, std::string_view to, std::int64_t most,
                   const CopyProgress& progress) {
    const SystemFile source(from, Disposition::OpenExisting);
    const std::string target = NativePath(to);
    if (SameFile(source, target))
        throw Fault::PermissionDenied();
    SystemFile copy(to, Disposition::CreateAlways);
    try {
        std::int64_t offset = 0;
        CopyInSystem(source, copy, offset, std::min(most, source.Size()), progress);
        CopyBlocks(source, copy, offset, most, progress);
        copy.CloseChecked();
    } catch (...) {
        unlink(target.c_str());
        throw;
    }
}

void RenameFile(std::string_view from, std::string_view to) {
    if (rename(NativePath(from).c_str(), NativePath(to).c_str()) != 0)
        throw Fault::FromErrno(errno);
}

bool ExchangeFolders(std::string_view a, std::string_view b) {
    const std::string nativeA = NativePath(a);
    if (renameat2(AT_FDCWD, nativeA.c_str(), AT_FDCWD, NativePath(b).c_str(), RENAME_EXCHANGE) == 0)
        return true;
    if (errno == EINVAL || errno == ENOSYS || errno == ENOTSUP)
        return false;
    throw Fault::FromErrno(errno);
}

std::int64_t FileSize(std::string_view path) noexcept {
    struct stat status {};
    const bool isThere = OnNativePath(path, [&](const char* native) { return stat(native, &status) == 0; });
    return isThere ? status.st_size : 0;
}

bool CreateFolder(std::string_view path) noexcept {
    return OnNativePath(path, [](const char* native) { return mkdir(native, 0777) == 0; });
}

bool DeleteFile(std::string_view path) noexcept {
    return OnNativePath(path, [](const char* native) { return unlink(native) == 0; });
}

bool RemoveFolder(std::string_view path) noexcept {
    return OnNativePath(path, [](const char* native) { return rmdir(native) == 0; });
}

} // namespace tracelet
