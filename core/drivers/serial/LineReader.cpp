#include "core/drivers/serial/LineReader.h"

#include "core/base/RunTimeError.h"
#include "core/base/UniqueFd.h"
#include "core/drivers/serial/SourceFile.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tracelet {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto Silence = 2s;
constexpr int Intervals = 3; // between lines, that silence lasts at least
constexpr auto StopPatience = 1s;
constexpr int ReopenMs = 300;
constexpr std::int64_t LinesThatProve = 2;
constexpr std::int64_t LinesThatDisprove = 6;   // names need three to be known
constexpr std::int64_t BytesThatDisprove = 512; // without an end of line

} // namespace

struct LineReader::State {
    explicit State(LineSource given)
        : source(std::move(given)), stop(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    void Run() noexcept;
    void ReadUntilGone();
    void ReadAt(int descriptor, bool isSure);
    [[nodiscard]] bool Wait(int descriptor, int milliseconds) const;
    void Publish(NumberLines& lines);
    void Fail(const char* text);

    const LineSource source;
    const UniqueFd stop; // readable at the end
    std::atomic<std::int32_t> baud = 0;
    std::atomic<std::int64_t> skipped = 0;
    std::size_t attempt = 0;

    mutable std::mutex access; // to what follows
    std::optional<NumberLines::Scan> newest;
    Clock::time_point cameAt;
    Clock::duration apart{}; // between the last two
    std::string error = "No numbers have come yet";
};

LineReader::LineReader(LineSource source)
    : state(std::make_shared<State>(std::move(source))), thread([read = state] { read->Run(); }) {}

LineReader::~LineReader() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(state->stop.Get(), &one, sizeof one);
    (void)thread.HasReturnedBy(Clock::now() + StopPatience); // a name of the network may take longer
}

NumberLines::Scan LineReader::Newest() const {
    const std::lock_guard lock(state->access);
    if (!state->newest)
        throw RunTimeError(state->error);
    if (Clock::now() - state->cameAt > std::max<Clock::duration>(Silence, Intervals * state->apart))
        throw RunTimeError("No numbers come any more");
    return *state->newest;
}

std::int64_t LineReader::Skipped() const {
    return state->skipped;
}

std::int32_t LineReader::Baud() const {
    return state->baud;
}

// False once nobody wants the source any more; else after a while, or when there are bytes.
bool LineReader::State::Wait(int descriptor, int milliseconds) const {
    std::array<pollfd, 2> waited{{{stop.Get(), POLLIN, 0}, {descriptor, POLLIN, 0}}};
    (void)poll(waited.data(), waited.size(), milliseconds);
    return waited[0].revents == 0;
}

void LineReader::State::Run() noexcept {
    do {
        try {
            ReadUntilGone();
        } catch (const std::exception& failure) {
            Fail(failure.what());
        }
    } while (Wait(UniqueFd::None, ReopenMs));
}

void LineReader::State::Fail(const char* text) {
    const std::lock_guard lock(access);
    newest.reset();
    error = text;
}

void LineReader::State::ReadUntilGone() {
    const UniqueFd descriptor = OpenSource(source, stop.Get());
    skipped = 0;
    if (IsNetworkAddress(source.address)) {
        ReadAt(descriptor.Get(), true);
        return;
    }
    // Each round ends when a rate gave no numbers; the next one starts where it was.
    for (const auto bauds = UsualBauds(); Wait(UniqueFd::None, 0); ++attempt) {
        baud = source.baud > 0 ? source.baud : bauds[attempt % bauds.size()];
        SetBaud(descriptor.Get(), baud);
        ReadAt(descriptor.Get(), source.baud > 0);
    }
}

// Returns at the end, and when what comes at a rate that nobody is sure of is no numbers. Raises when the
// source is gone.
void LineReader::State::ReadAt(int descriptor, bool isSure) {
    NumberLines lines;
    std::array<char, 4096> buffer;
    std::int64_t bytesInVain = 0;
    std::int64_t skippedBefore = 0;
    while (Wait(descriptor, -1)) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && (errno == EAGAIN || errno == EINTR))
            continue;
        if (count <= 0)
            throw RunTimeError(IsNetworkAddress(source.address) ? "The other side has closed the connection"
                                                                : "It was unplugged");
        const std::int64_t goodBefore = lines.Good();
        lines.Put({buffer.data(), static_cast<std::size_t>(count)});
        skipped += lines.Skipped() - skippedBefore;
        skippedBefore = lines.Skipped();
        bytesInVain = lines.Good() > goodBefore ? 0 : bytesInVain + count;
        isSure = isSure || lines.Good() >= LinesThatProve;
        if (isSure)
            Publish(lines);
        else if (lines.Skipped() > LinesThatDisprove + lines.Good() || bytesInVain > BytesThatDisprove)
            return;
    }
}

void LineReader::State::Publish(NumberLines& lines) {
    std::optional<NumberLines::Scan> scan = lines.Take();
    if (!scan)
        return;
    const Clock::time_point now = Clock::now();
    const std::lock_guard lock(access);
    apart = newest ? now - cameAt : Clock::duration{};
    cameAt = now;
    newest = std::move(scan);
}

} // namespace tracelet
