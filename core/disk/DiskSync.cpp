#include "core/disk/DiskSync.h"

#include "core/base/RunTimeError.h"
#include "core/base/UniqueFd.h"
#include "core/files/Paths.h"

#include <cerrno>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace tracelet {

namespace {

using Descriptors = std::deque<UniqueFd>;

std::shared_ptr<const Descriptors> Copies(std::span<const int> descriptors) {
    auto copies = std::make_shared<Descriptors>();
    for (const int descriptor : descriptors) {
        const int copy = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
        if (copy >= 0)
            copies->emplace_back(copy);
    }
    return copies;
}

// 0 or the value of errno that stopped one of them.
int Sync(const Descriptors& files) {
    int error = 0;
    for (const UniqueFd& file : files) {
        if (fdatasync(file.Get()) != 0)
            error = errno;
    }
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
    std::shared_ptr<const Descriptors> files{};
    std::string failure{};
    bool isFinishing = false;
    bool isLetGo = false;
    bool hasThread = false;
};

DiskSync::DiskSync(std::chrono::milliseconds every) : work(new Work{.every = every}) {}

DiskSync::~DiskSync() {
    const std::lock_guard lock(work->mutex);
    work->isLetGo = true;
    work->changed.notify_one();
}

void DiskSync::Watch(std::span<const int> descriptors) noexcept {
    try {
        std::shared_ptr<const Descriptors> files = Copies(descriptors);
        const std::lock_guard lock(work->mutex);
        if (!work->hasThread)
            std::thread([present = work] { Run(present); }).detach();
        work->hasThread = true;
        work->files = std::move(files);
        work->failure.clear();
        work->isFinishing = false;
        work->changed.notify_one();
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): as documented
    }
}

void DiskSync::Finish() noexcept {
    const std::lock_guard lock(work->mutex);
    work->isFinishing = true;
    work->changed.notify_one();
}

std::string DiskSync::TakeFailure() {
    const std::lock_guard lock(work->mutex);
    return std::exchange(work->failure, {});
}

void DiskSync::Run(const std::shared_ptr<Work>& work) {
    std::unique_lock lock(work->mutex);
    for (;;) {
        work->changed.wait(lock, [&] { return work->isLetGo || work->files; });
        work->changed.wait_for(lock, work->every, [&] { return work->isLetGo || work->isFinishing; });
        if (work->isLetGo)
            return;
        const std::shared_ptr<const Descriptors> files =
            work->isFinishing ? std::exchange(work->files, {}) : work->files;
        work->isFinishing = false;
        lock.unlock();
        const int error = Sync(*files);
        lock.lock();
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
