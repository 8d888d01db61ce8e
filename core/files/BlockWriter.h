#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace tracelet {

/// Writes blocks on a thread of its own, in the order in which they were given, so that a disk that stalls
/// never stalls whoever measures. Memory is taken as blocks wait and used again: a steady stream of blocks
/// allocates nothing.
///
/// One thread gives the blocks and asks. The writing itself is the owner's: `write` is called on the writer's
/// thread with the number of a file, 0 to 31, and with blocks of it that came one after the other joined to
/// one; what it raises is kept for TakeFailure, and from then on blocks of that file are dropped until
/// Restart.
class BlockWriter {
public:
    using Write = std::function<void(int file, std::span<const std::byte> bytes)>;

    struct Failure {
        int file = 0;
        std::string reason; ///< description for the user
    };

    /// At most `limitBytes` wait. The thread starts with the first block.
    BlockWriter(Write write, std::size_t limitBytes);
    /// Writes what waits, then ends the thread.
    ~BlockWriter();
    BlockWriter(const BlockWriter&) = delete;
    BlockWriter& operator=(const BlockWriter&) = delete;

    /// Takes a copy of the block; False when there is no room for it, or no memory or thread.
    [[nodiscard]] bool Put(int file, std::span<const std::byte> bytes) noexcept;

    /// True when everything that was given is written or dropped; False when that takes the disk longer than
    /// `longest`. Time that the writer's thread spends waiting for a processor is not the disk's.
    [[nodiscard]] bool WaitFor(std::chrono::milliseconds longest);
    /// Waits until everything that was given is written or dropped.
    void Flush();

    /// The next failure that was not asked for yet.
    [[nodiscard]] std::optional<Failure> TakeFailure();
    /// Bytes of a file that were written since the last Restart.
    [[nodiscard]] std::uint64_t Written(int file) const;
    /// Flushes, and lets every file take blocks again.
    void Restart();

private:
    struct Block {
        int file = 0;
        std::size_t bytes = 0;
    };
    struct Batch { // blocks one after the other
        std::vector<std::byte> bytes;
        std::vector<Block> blocks;
    };
    static constexpr int MostFiles = 32;

    void Run();
    void WriteBatch();
    void WriteBlock(int file, std::span<const std::byte> bytes);
    [[nodiscard]] bool IsIdle() const { return given.blocks.empty() && !busy; }

    const Write write;
    const std::size_t limit;

    mutable std::mutex mutex; // guards what follows
    std::condition_variable workCame;
    std::condition_variable workDone;
    Batch given;
    bool busy = false;
    bool ending = false;
    std::uint32_t failedFiles = 0; // bit n for file n
    std::vector<Failure> failures;
    std::vector<std::uint64_t> written = std::vector<std::uint64_t>(MostFiles);

    Batch taken; // writer's thread only
    std::thread thread;
};

} // namespace tracelet
