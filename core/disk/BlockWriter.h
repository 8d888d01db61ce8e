#pragma once

#include <array>
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
/// thread with the number of a file, below MostFiles, and with blocks of it that came one after the other
/// joined to one. Where it raises, the blocks of that file wait and are tried again a few times a second, so
/// that an error that passes costs nothing; other files go on meanwhile.
///
/// A file may be one whose blocks replace each other: they are not joined, and only the newest waits.
class BlockWriter {
public:
    static constexpr int MostFiles = 8;

    using Write = std::function<void(int file, std::span<const std::byte> bytes)>;

    /// Blocks of a file began to wait, or, without a reason, go on.
    struct News {
        int file = 0;
        std::string reason; ///< description for the user
    };

    /// At most `limitBytes` wait. The thread starts with the first block. Blocks of a file from
    /// `firstReplacing` on replace each other.
    BlockWriter(Write write, std::size_t limitBytes, int firstReplacing = MostFiles);
    /// Writes what waits, as far as that works at once, and ends the thread.
    ~BlockWriter();
    BlockWriter(const BlockWriter&) = delete;
    BlockWriter& operator=(const BlockWriter&) = delete;

    /// Takes a copy of the block; False when there is no room for it, or no memory or thread.
    [[nodiscard]] bool Put(int file, std::span<const std::byte> bytes) noexcept;

    /// True when everything that was given is written, or waits for an error to pass; False when that takes
    /// the disk longer than `longest`. Time that the writer's thread spends waiting for a processor is not
    /// the disk's.
    [[nodiscard]] bool WaitFor(std::chrono::milliseconds longest);
    /// Waits until everything is written. What waits for an error to pass is tried once more; what does not
    /// go then is given up.
    void Flush();

    /// The next news that was not asked for yet.
    [[nodiscard]] std::optional<News> TakeNews();
    /// Bytes of a file that were written, and that were given up, since the last Restart.
    [[nodiscard]] std::uint64_t Written(int file) const;
    [[nodiscard]] std::uint64_t GivenUp(int file) const;
    /// Flushes, and forgets what was written and what there is to tell.
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
    using Counts = std::array<std::uint64_t, MostFiles>;

    void Run();
    void WriteBatch();
    void WriteBlock(int file, std::span<const std::byte> bytes);
    void TryHeld();
    [[nodiscard]] bool TryToWrite(int file, std::span<const std::byte> bytes);
    void Forget(std::vector<std::byte>& waiting);
    void GiveUpHeld();
    [[nodiscard]] bool HoldsAny() const;
    [[nodiscard]] bool IsIdle() const { return given.blocks.empty() && !busy && !flushing; }

    const Write write;
    const std::size_t limit;
    const int firstReplacing;

    mutable std::mutex mutex; // guards what follows
    std::condition_variable workCame;
    std::condition_variable workDone;
    Batch given;
    std::size_t heldBytes = 0;
    bool busy = false;
    bool flushing = false;
    bool ending = false;
    std::vector<News> news;
    Counts written{};
    Counts givenUp{};

    // Writer's thread only:
    Batch taken;
    std::array<std::vector<std::byte>, MostFiles> held; // blocks that wait for an error to pass
    std::thread thread;
};

} // namespace tracelet
