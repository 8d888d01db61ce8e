#pragma once

#include "devices/controls/SampleQueue.h"
#include "devices/drivers/Board.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <thread>
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

/// Reads a started stream of a board into a queue, on a thread of its own, until it is stopped, everything
/// has come or the board fails.
///
/// When the queue is full, the next half is read aside; if there is still no room when it is complete, it is
/// dropped. When the board itself loses samples, the half under way is dropped and the next one begins with a
/// scan; of an input that ends by itself nothing is dropped, since no more would come.
class StreamReader {
public:
    /// `announce` is called on the reading thread with the number of items that were put into the queue.
    StreamReader(std::shared_ptr<AnalogBoard> board, std::shared_ptr<SampleQueue> queue, StreamPlan plan,
                 std::function<void(std::uint64_t)> announce);
    /// Ends the stream and waits for the thread.
    ~StreamReader();

    StreamReader(const StreamReader&) = delete;
    StreamReader& operator=(const StreamReader&) = delete;

private:
    void Run() noexcept;
    void ReadAll();
    void ReadOn();
    void ReadAside();
    [[nodiscard]] bool MakeAside();
    [[nodiscard]] bool ReadWhole(std::span<std::byte> room);
    void Drop(std::size_t samples);
    [[nodiscard]] StreamRead Read(std::span<std::byte> room);
    void Heed(StreamState state);
    void NoteLoss();
    void Fail(const char* text) noexcept;
    [[nodiscard]] bool IsComplete() const { return plan.totalSamples != 0 && read >= plan.totalSamples; }

    const std::shared_ptr<AnalogBoard> board;
    const std::shared_ptr<SampleQueue> queue;
    const StreamPlan plan;
    const std::function<void(std::uint64_t)> announce;

    std::unique_ptr<std::byte[]> aside; // a half that waits for room, made when it is first needed
    std::vector<std::byte> dropped;     // where samples go that nobody gets
    std::uint64_t read = 0;             // samples since the start, lost ones not counted
    bool losing = false;                // halves are being dropped
    bool ended = false;                 // the board will deliver no more

    std::atomic<bool> stopping = false;
    std::thread thread; // last: uses everything above
};

} // namespace tracelet
