#pragma once

#include "core/boards/Board.h"
#include "core/input/SampleQueue.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tracelet {

/// What a reading thread has to read.
struct StreamPlan {
    SampleForm form = AnalogValues;
    std::size_t scanSamples = 1;    ///< channels of a scan
    std::size_t halfSamples = 1;    ///< a multiple of scanSamples
    std::uint64_t totalSamples = 0; ///< 0: until stopped

    [[nodiscard]] std::size_t SampleBytes() const { return form == RawCounts ? 2 : 4; }
};

/// Reads a started stream of a board into a queue until it is stopped, everything has come or the board
/// fails. Both of its procedures call the board, so either may never return: each needs a thread that owns
/// the reader.
///
/// When the queue is full, the next half is read aside; if there is still no room when it is complete, it is
/// dropped. When the board itself loses samples, the half under way is dropped and the next one begins with a
/// scan; of an input that ends by itself nothing is dropped, since no more would come.
class StreamReader {
public:
    /// `announce` is called on the reading thread with the number of items that were put into the queue.
    StreamReader(std::shared_ptr<AnalogBoard> board, std::shared_ptr<SampleQueue> queue, StreamPlan plan,
                 std::function<void(std::uint64_t)> announce);

    /// The reading thread.
    void Run() noexcept;
    /// Ends the stream, and with it Run. On any other thread.
    void Stop() noexcept;
    [[nodiscard]] const AnalogBoard& Board() const { return *board; }

private:
    void ReadAll();
    void ReadOn();
    void ReadAside();
    [[nodiscard]] bool MakeAside();
    [[nodiscard]] bool FillAside();
    [[nodiscard]] bool PutAside();
    [[nodiscard]] bool ReadWhole(std::span<std::byte> room);
    void Drop(std::size_t samples);
    [[nodiscard]] StreamRead Read(std::span<std::byte> room);
    void HoldBack(std::chrono::steady_clock::time_point begin);
    void Heed(StreamState state);
    void NoteLoss();
    void Fail(const char* text) noexcept;
    [[nodiscard]] bool IsComplete() const { return plan.totalSamples != 0 && read >= plan.totalSamples; }

    const std::shared_ptr<AnalogBoard> board;
    const std::shared_ptr<SampleQueue> queue;
    const StreamPlan plan;
    const std::function<void(std::uint64_t)> announce;

    std::unique_ptr<std::byte[]> aside; // a half that waits for room, made when it is first needed
    std::size_t asideBytes = 0;         // of it that have come
    std::vector<std::byte> dropped;     // where samples go that nobody gets
    std::uint64_t read = 0;             // samples since the start, lost ones not counted
    bool losing = false;                // halves are being dropped
    bool ended = false;                 // the board will deliver no more
    std::chrono::microseconds pause{0}; // that a read without samples takes at least

    std::atomic<bool> stopping = false;
};

} // namespace tracelet
