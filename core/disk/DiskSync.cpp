#include "core/disk/DiskSync.h"

#include "core/base/RunTimeError.h"
#include "core/base/UniqueFd.h"
#include "core/files/Paths.h"

#include <cerrno>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tracelet {

namespace {

/// Files to bring, and who is told.
struct Watched {
    std::deque<std::optional<UniqueFd>> files;
    DiskSync::Brought brought;
};

std::shared_ptr<const Watched> Copies(std::span<const int> descriptors, DiskSync::Brought brought) {
    auto watched = std::make_shared<Watched>();
    for (const int descriptor : descriptors) {
        const int copy = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
        watched->files.emplace_back();
        if (copy >= 0)
            watched->files.back().emplace(copy);
    }
    watched->brought = std::move(brought);
    return watched;
}

// 0 or the value of errno that stopped one of them.
int Sync(const Watched& watched) {
    std::vector<std::int64_t> lengths;
    for (const auto& file : watched.files) {
        struct stat status {};
        lengths.push_back(file && fstat(file->Get(), &status) == 0 ? status.st_size : 0);
    }
    int error = 0;
    for (const auto& file : watched.files) {
        if (file && fdatasync(file->Get()) != 0)
            error = errno;
    }
    if (error == 0 && watched.brought)
        watched.brought(lengths);
    return error;
}

void SyncPath(std::string_view path, int flags) {
    const UniqueFd file(open(NativePath(path).c_str(), flags | O_RDONLY | O_CLOEXEC));
    if (fsync(file.Get()) != 0 && errno != EINVAL)
        throw Fault::FromErrno(errno);
}

} // namespace

struct DiskSync::Work {
    const std::chrono::milliseconds every;

    std::mutex mutex{}; // of all below
    std::condition_variable changed{};
    std::shared_ptr<const Watched> files{};
    std::string failure{};
    std::uint64_t begun = 0; // rounds
    std::uint64_t ended = 0;
    bool isHurried = false;
    bool isFinishing = false;
    bool isLetGo = false;
    bool hasThread = false;
};

DiskSync::DiskSync(std::chrono::milliseconds every) : work(new Work{.every = every}) {}

DiskSync::~DiskSync() {
    const std::lock_guard lock(work->mutex);
    work->isLetGo = true;
    work->changed.notify_all();
}

void DiskSync::Watch(std::span<const int> descriptors, Brought brought) noexcept {
    try {
        std::shared_ptr<const Watched> files;
        if (!descriptors.empty())
            files = Copies(descriptors, std::move(brought));
        const std::lock_guard lock(work->mutex);
        if (!work->hasThread)
            std::thread([present = work] { Run(present); }).detach();
        work->hasThread = true;
        work->files = std::move(files);
        work->failure.clear();
        work->isFinishing = false;
        work->changed.notify_all();
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): as documented
    }
}

bool DiskSync::Bring(std::chrono::milliseconds longest) noexcept {
    std::unique_lock lock(work->mutex);
    if (!work->files)
        return false;
    const std::uint64_t wanted = work->begun + 1;
    work->isHurried = true;
    work->changed.notify_all();
    return work->changed.wait_for(lock, longest, [&] { return work->ended >= wanted; });
}

void DiskSync::Finish() noexcept {
    const std::lock_guard lock(work->mutex);
    work->isFinishing = true;
    work->changed.notify_all();
}

std::string DiskSync::TakeFailure() {
    const std::lock_guard lock(work->mutex);
    return std::exchange(work->failure, {});
}

void DiskSync::Run(const std::shared_ptr<Work>& work) {
    std::unique_lock lock(work->mutex);
    for (;;) {
        work->changed.wait(lock, [&] { return work->isLetGo || work->files; });
        work->changed.wait_for(lock, work->every,
                               [&] { return work->isLetGo || work->isHurried || work->isFinishing; });
        if (work->isLetGo)
            return;
        if (!work->files) // watched no more
            continue;
        const std::shared_ptr<const Watched> files =
            work->isFinishing ? std::exchange(work->files, {}) : work->files;
        work->isHurried = work->isFinishing = false;
        const std::uint64_t round = ++work->begun;
        lock.unlock();
        const int error = Sync(*files);
        lock.lock();
        work->ended = round;
        work->changed.notify_all();
        if (error != 0)
            work->failure = Fault::FromErrno(error).what();
    }
}

void SyncFile(std::string_view path) {
    SyncPath(path, 0);
}

void SyncFolder(std::string_view path) {
    SyncPath(path, O_DIRECTORY);
}

} // namespace tracelet
