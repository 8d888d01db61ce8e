#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace tracelet {

/// Brings files from the system's cache to the disk, again and again, on a thread of its own: nobody waits
/// for a disk that stalls. The thread holds descriptors of its own and is let go at the end, even while the
/// disk never answers.
class DiskSync {
public:
    /// Told on that thread, round after round, what length each file has on the disk; 0 for one that is left
    /// out. What it uses must live as long as the thread.
    using Brought = std::function<void(std::span<const std::int64_t> lengths)>;

    explicit DiskSync(std::chrono::milliseconds every);
    ~DiskSync();
    DiskSync(const DiskSync&) = delete;
    DiskSync& operator=(const DiskSync&) = delete;

    /// From now on brings these open files to the disk (descriptors of the system, closed ones are left out),
    /// those of the last call no more. Without a thread or descriptors to be had, nothing is brought.
    void Watch(std::span<const int> descriptors, Brought brought = {}) noexcept;
    /// Once more now; False when that takes longer than `longest`, or there is nothing to bring.
    bool Bring(std::chrono::milliseconds longest) noexcept;
    /// Once more now; then rests until the next Watch.
    void Finish() noexcept;
    /// What the system could not bring to the disk since the last call, "" for nothing.
    [[nodiscard]] std::string TakeFailure();

private:
    struct Work;
    static void Run(const std::shared_ptr<Work>& work);

    std::shared_ptr<Work> work;
};

/// Waits until a file, or a folder with its names, is on the disk; raises what the system says. A system that
/// cannot do so with a folder has done what it can.
void SyncFile(std::string_view path);
void SyncFolder(std::string_view path);

} // namespace tracelet
