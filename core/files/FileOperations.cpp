#include "core/files/FileOperations.h"

#include "core/base/RunTimeError.h"
#include "core/files/Paths.h"
#include "core/files/SystemFile.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <memory>
#include <span>
#include <sys/stat.h>
#include <unistd.h>

namespace tracelet {
namespace {

constexpr std::size_t CopyBlock = std::size_t{1024} * 1024;

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

// Moves as much as the system copies by itself; the rest, often all or nothing, is left to CopyBlocks.
void CopyInSystem(const SystemFile& source, const SystemFile& target, std::int64_t& offset) {
    off_t from = 0;
    off_t to = 0;
    const std::int64_t size = source.Size();
    while (from < size && copy_file_range(source.Handle(), &from, target.Handle(), &to,
                                          static_cast<std::size_t>(size - from), 0) > 0) {
    }
    offset = from;
}

void CopyBlocks(const SystemFile& source, SystemFile& target, std::int64_t offset) {
    const auto block = std::make_unique<std::byte[]>(CopyBlock);
    for (;;) {
        const std::size_t count = source.ReadAt(offset, std::span(block.get(), CopyBlock));
        if (count == 0)
            return;
        target.WriteAt(offset, std::span(block.get(), count));
        offset += static_cast<std::int64_t>(count);
    }
}

void CopyContent(const SystemFile& source, SystemFile& target) {
    std::int64_t offset = 0;
    CopyInSystem(source, target, offset);
    CopyBlocks(source, target, offset);
}

} // namespace

void CopyWholeFile(std::string_view from, std::string_view to) {
    const SystemFile source(from, Disposition::OpenExisting);
    const std::string target = NativePath(to);
    if (SameFile(source, target))
        throw Fault::PermissionDenied();
    SystemFile copy(to, Disposition::CreateAlways);
    try {
        CopyContent(source, copy);
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
