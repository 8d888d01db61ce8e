#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tracelet {

/// The deep queue between the thread that reads a board and the user-interface thread: halves of the buffer
/// in order, and between them the notes that samples were lost or that the board failed.
///
/// Memory is taken as halves wait and used again, in pieces of about 1 MiB or one half, whichever is more.
/// One thread writes (Room to PutRest), one takes.
class SampleQueue {
public:
    enum class Kind { None, Half, Loss, Failure };

    struct Item {
        Kind kind = Kind::None;
        std::span<const std::byte> half; ///< Half: its samples, valid until the next Take
        std::string text;                ///< Failure: what went wrong
    };

    /// A queue in which halves of `halfBytes` wait, at least `limitBytes` of them before it is full. `lean`
    /// gives every half its own memory. Takes the memory of the first half; raises "Out of memory".
    SampleQueue(std::size_t halfBytes, std::size_t limitBytes, bool lean);

    /// Where samples go next: room for the rest of the half under way at least. Empty when the queue is full
    /// or memory has run out, which can only be when no half is under way.
    [[nodiscard]] std::span<std::byte> Room();
    /// `bytes` of the room were filled; gives the number of halves that this completed.
    std::uint64_t Commit(std::size_t bytes);
    /// Bytes of the half under way.
    [[nodiscard]] std::size_t Partial() const { return partial; }
    /// Notes a loss behind the halves so far. The half under way is dropped, unless the queue is lean: then
    /// it goes on, and the note stands before it.
    void PutLoss();
    /// Notes that nothing more will come; taken after everything else.
    void PutFailure(std::string text);
    /// Hands in what came of a half for which there was no room. Nothing may be put behind it.
    void PutRest(std::unique_ptr<std::byte[]> samples, std::size_t bytes);

    [[nodiscard]] Item Take();
    /// What came of the half that is not full, once everything else was taken. Valid as long as the queue.
    [[nodiscard]] std::span<const std::byte> Rest();

private:
    struct Slab {
        std::unique_ptr<std::byte[]> memory;
        std::size_t full = 0;  // halves written
        std::size_t taken = 0; // halves handed over
        bool closed = false;   // gets no more halves
    };
    struct Entry { // a slab of halves, or so many losses
        std::unique_ptr<Slab> slab;
        std::uint64_t losses = 0;
    };

    [[nodiscard]] std::unique_ptr<Slab> FreeSlab();
    [[nodiscard]] bool HasOpenSlab() const;
    void ReleaseTakenSlabs();

    const std::size_t halfBytes;
    const bool lean;
    const std::size_t slabHalves;
    const std::size_t mostSlabs;

    std::mutex mutex;
    std::deque<Entry> entries;
    std::vector<std::unique_ptr<Slab>> freeSlabs;
    std::size_t slabCount = 0;
    std::optional<std::string> failure;
    std::unique_ptr<std::byte[]> rest; // beside the slabs
    std::size_t restBytes = 0;
    std::size_t partial = 0; // only the writing thread changes it
};

} // namespace tracelet
