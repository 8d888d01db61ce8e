#include "core/input/StreamReader.h"

#include "core/base/RunTimeError.h"
#include "core/base/ThreadPriority.h"
#include "core/input/DriverCall.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <thread>
#include <utility>

namespace tracelet {
namespace {

constexpr std::chrono::microseconds ShortestPause{50};
constexpr std::chrono::microseconds LongestPause{4000};
constexpr std::size_t MostDroppedAtOnce = std::size_t{1} << 18; // bytes

StreamBuffer AsBuffer(SampleForm form, std::span<std::byte> room) {
    if (form == RawCounts)
        return std::span(reinterpret_cast<std::int16_t*>(room.data()), room.size() / sizeof(std::int16_t));
    return std::span(reinterpret_cast<float*>(room.data()), room.size() / sizeof(float));
}

} // namespace

StreamReader::StreamReader(std::shared_ptr<AnalogBoard> readBoard, std::shared_ptr<SampleQueue> filledQueue,
                           StreamPlan streamPlan, std::function<void(std::uint64_t)> announceItems)
    : board(std::move(readBoard)), queue(std::move(filledQueue)), plan(streamPlan),
      announce(std::move(announceItems)) {}

void StreamReader::Stop() noexcept {
    stopping = true;
    try {
        CallDriver([this] { board->StopStream(); });
    } catch (const std::exception&) {
        // The reading thread sees that it shall stop when its present read returns.
    }
}

// Nobody waits for a simulated board's samples, so that one must not hold up the others.
void StreamReader::Run() noexcept {
    if (!board->Info().simulated)
        RaiseThreadPriority();
    try {
        ReadAll();
    } catch (const std::bad_alloc&) {
        Fail("Out of memory");
    } catch (const std::exception& error) {
        Fail(error.what());
    }
    if (asideBytes != 0)
        queue->PutRest(std::move(aside), asideBytes);
}

void StreamReader::ReadAll() {
    while (!stopping && !ended && !IsComplete())
        ReadOn();
    if (!stopping && !IsComplete())
        throw RunTimeError("The board ended the input by itself");
}

void StreamReader::ReadOn() {
    if (asideBytes != 0) {
        ReadAside();
        return;
    }
    const std::size_t begun = read % plan.scanSamples;
    if (begun != 0 && queue->Partial() == 0) {
        Drop(plan.scanSamples - begun);
        return;
    }
    std::span<std::byte> room = queue->Room();
    if (room.empty()) {
        if (plan.totalSamples != 0)
            throw Fault::OutOfMemory();
        ReadAside();
        return;
    }
    losing = false;
    if (plan.totalSamples != 0)
        room =
            room.first(std::min<std::uint64_t>(room.size(), (plan.totalSamples - read) * plan.SampleBytes()));
    const StreamRead got = Read(room);
    if (const std::uint64_t halves = queue->Commit(got.count * plan.SampleBytes()); halves != 0)
        announce(halves);
    Heed(got.state);
}

void StreamReader::ReadAside() {
    if (!MakeAside())
        Drop(plan.halfSamples);
    else if (!FillAside() || PutAside())
        return;
    if (!std::exchange(losing, true))
        NoteLoss();
}

// False when there is no memory for it.
bool StreamReader::MakeAside() {
    if (aside)
        return true;
    try {
        aside = std::make_unique_for_overwrite<std::byte[]>(plan.halfSamples * plan.SampleBytes());
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

// Reads on; true once the half aside is complete.
bool StreamReader::FillAside() {
    const std::size_t bytes = plan.halfSamples * plan.SampleBytes();
    const StreamRead got = Read(std::span(aside.get(), bytes).subspan(asideBytes));
    asideBytes += got.count * plan.SampleBytes();
    if (got.state == StreamState::Overrun)
        asideBytes = 0;
    Heed(got.state);
    return asideBytes == bytes;
}

// Moves the half from aside into the queue, or drops it: false.
bool StreamReader::PutAside() {
    const std::size_t bytes = std::exchange(asideBytes, 0);
    const std::span<std::byte> room = queue->Room();
    if (room.empty())
        return false;
    std::memcpy(room.data(), aside.get(), bytes);
    losing = false;
    announce(queue->Commit(bytes));
    return true;
}

// Fills `room`; false when the input ends or the board loses samples before.
bool StreamReader::ReadWhole(std::span<std::byte> room) {
    while (!room.empty() && !stopping && !ended) {
        const StreamRead got = Read(room);
        room = room.subspan(got.count * plan.SampleBytes());
        Heed(got.state);
        if (got.state == StreamState::Overrun)
            return false;
    }
    return room.empty();
}

// Reads so many samples past the queue, fewer when the input ends or the board loses some.
void StreamReader::Drop(std::size_t samples) {
    const std::size_t sampleBytes = plan.SampleBytes();
    dropped.resize(std::min(plan.halfSamples * sampleBytes, MostDroppedAtOnce));
    while (samples > 0) {
        const std::size_t atOnce = std::min(samples, dropped.size() / sampleBytes);
        if (!ReadWhole(std::span(dropped).first(atOnce * sampleBytes)))
            return;
        samples -= atOnce;
    }
}

StreamRead StreamReader::Read(std::span<std::byte> room) {
    const auto begin = std::chrono::steady_clock::now();
    const StreamRead got = CallDriver([&] { return board->ReadStream(AsBuffer(plan.form, room)); });
    if (got.count > room.size() / plan.SampleBytes())
        throw RunTimeError("The board's driver delivered more samples than it was asked for");
    read += got.count;
    if (got.count == 0)
        HoldBack(begin);
    else
        pause = {};
    return got;
}

// A driver whose reads come back at once, whether there are samples or not, would take a whole core; so these
// reads grow longer while none come. One that waits for samples itself notices nothing of it.
void StreamReader::HoldBack(std::chrono::steady_clock::time_point begin) {
    std::this_thread::sleep_until(begin + pause);
    pause = std::clamp(2 * pause, ShortestPause, LongestPause);
}

void StreamReader::Heed(StreamState state) {
    ended = state == StreamState::Ended;
    if (state == StreamState::Overrun && !losing)
        NoteLoss();
}

void StreamReader::NoteLoss() {
    queue->PutLoss();
    announce(1);
}

void StreamReader::Fail(const char* text) noexcept {
    if (stopping)
        return; // the board just was not there any more to be stopped
    try {
        queue->PutFailure(text);
        announce(1);
    } catch (const std::exception&) {
        // Not even room for the text: the input just ends.
    }
}

} // namespace tracelet
