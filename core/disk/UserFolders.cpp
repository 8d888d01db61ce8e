#include "core/disk/UserFolders.h"

#include "core/base/UniqueFd.h"
#include "core/files/Paths.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace tracelet {

std::string StateFolder() {
    namespace fs = std::filesystem;
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    fs::path folder;
    if (state != nullptr && fs::path(state).is_absolute())
        folder = state;
    else if (home != nullptr && fs::path(home).is_absolute())
        folder = fs::path(home) / ".local" / "state";
    else
        return {};
    folder /= "tracelet";
    std::error_code error;
    fs::create_directories(folder, error);
    return !error && access(folder.c_str(), W_OK | X_OK) == 0 ? folder.string() : std::string();
}

std::unique_ptr<UniqueFd> HoldFolder(std::string_view path) noexcept {
    try {
        auto folder =
            std::make_unique<UniqueFd>(open(NativePath(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        return flock(folder->Get(), LOCK_EX | LOCK_NB) == 0 ? std::move(folder) : nullptr;
    } catch (const std::exception&) {
        return nullptr;
    }
}

std::string BootId() {
    try {
        const UniqueFd file(open("/proc/sys/kernel/random/boot_id", O_RDONLY | O_CLOEXEC));
        std::array<char, 36> text{};
        const ssize_t count = read(file.Get(), text.data(), text.size());
        return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(0, count))};
    } catch (const std::exception&) {
        return {};
    }
}

std::int64_t FreeBytes(std::string_view folder) noexcept {
    struct statvfs disk {};
    try {
        if (statvfs(NativePath(folder).c_str(), &disk) != 0)
            return -1;
    } catch (const std::exception&) {
        return -1;
    }
    return static_cast<std::int64_t>(disk.f_bavail) * static_cast<std::int64_t>(disk.f_frsize);
}

bool AreOnOneDisk(std::string_view a, std::string_view b) noexcept {
    struct stat statusA {};
    struct stat statusB {};
    try {
        return stat(NativePath(a).c_str(), &statusA) == 0 && stat(NativePath(b).c_str(), &statusB) == 0 &&
               statusA.st_dev == statusB.st_dev;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace tracelet
