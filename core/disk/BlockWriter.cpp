#include "core/disk/BlockWriter.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace tracelet {
namespace {

constexpr std::size_t MostKept = std::size_t{16} << 20; // bytes that stay with the writer after a stall
constexpr std::chrono::milliseconds RetryPause{250};

} // namespace

BlockWriter::BlockWriter(Write writeBlock, std::size_t limitBytes, int firstReplacingFile)
    : write(std::move(writeBlock)), limit(limitBytes), firstReplacing(firstReplacingFile) {}

BlockWriter::~BlockWriter() {
    {
        const std::lock_guard lock(mutex);
        ending = true;
    }
    workCame.notify_one();
    if (thread.joinable())
        thread.join();
}

bool BlockWriter::Put(int file, std::span<const std::byte> bytes) noexcept {
    try {
        const std::lock_guard lock(mutex);
        if (bytes.size() + given.bytes.size() + heldBytes > limit)
            return false;
        if (!thread.joinable())
            thread = std::thread([this] { Run(); });
        if (given.blocks.empty() || given.blocks.back().file != file || file >= firstReplacing)
            given.blocks.push_back({file, 0});
        given.bytes.insert(given.bytes.end(), bytes.begin(), bytes.end());
        given.blocks.back().bytes += bytes.size();
    } catch (const std::exception&) {
        return false;
    }
    workCame.notify_one();
    return true;
}

bool BlockWriter::WaitFor(std::chrono::milliseconds longest) {
    std::unique_lock lock(mutex);
    bool done = false;
    bool writing = false;
    do {
        writing = busy;
        done = workDone.wait_for(lock, longest, [this] { return IsIdle(); });
    } while (!done && !writing);
    return done;
}

void BlockWriter::Flush() {
    std::unique_lock lock(mutex);
    if (!thread.joinable())
        return;
    flushing = true;
    workCame.notify_one();
    workDone.wait(lock, [this] { return IsIdle(); });
}

std::optional<BlockWriter::News> BlockWriter::TakeNews() {
    const std::lock_guard lock(mutex);
    if (news.empty())
        return std::nullopt;
    News first = std::move(news.front());
    news.erase(news.begin());
    return first;
}

std::uint64_t BlockWriter::Written(int file) const {
    const std::lock_guard lock(mutex);
    return written.at(static_cast<std::size_t>(file));
}

std::uint64_t BlockWriter::GivenUp(int file) const {
    const std::lock_guard lock(mutex);
    return givenUp.at(static_cast<std::size_t>(file));
}

void BlockWriter::Restart() {
    Flush();
    const std::lock_guard lock(mutex);
    news.clear();
    written = givenUp = {};
}

bool BlockWriter::HoldsAny() const {
    return std::ranges::any_of(held, [](const auto& bytes) { return !bytes.empty(); });
}

void BlockWriter::Run() {
    std::unique_lock lock(mutex);
    for (;;) {
        const auto isWanted = [this] { return ending || flushing || !given.blocks.empty(); };
        if (HoldsAny())
            workCame.wait_for(lock, RetryPause, isWanted);
        else
            workCame.wait(lock, isWanted);
        const bool last = given.blocks.empty() && (ending || flushing);
        std::swap(given, taken);
        busy = true;
        lock.unlock();
        TryHeld();
        WriteBatch();
        if (last)
            GiveUpHeld();
        lock.lock();
        busy = false;
        if (last)
            flushing = false;
        workDone.notify_all();
        if (last && ending)
            return;
    }
}

void BlockWriter::WriteBatch() {
    std::span<const std::byte> rest = taken.bytes;
    for (const Block& block : taken.blocks) {
        WriteBlock(block.file, rest.first(block.bytes));
        rest = rest.subspan(block.bytes);
    }
    if (taken.bytes.capacity() > MostKept)
        taken = {};
    taken.bytes.clear();
    taken.blocks.clear();
}

void BlockWriter::WriteBlock(int file, std::span<const std::byte> bytes) {
    std::vector<std::byte>& waiting = held[static_cast<std::size_t>(file)];
    if (file >= firstReplacing)
        Forget(waiting);
    if (waiting.empty() && TryToWrite(file, bytes))
        return;
    waiting.insert(waiting.end(), bytes.begin(), bytes.end());
    const std::lock_guard lock(mutex);
    heldBytes += bytes.size();
}

void BlockWriter::TryHeld() {
    for (int file = 0; file < MostFiles; ++file) {
        std::vector<std::byte>& waiting = held[static_cast<std::size_t>(file)];
        if (waiting.empty() || !TryToWrite(file, waiting))
            continue;
        Forget(waiting);
        const std::lock_guard lock(mutex);
        news.push_back({file, {}});
    }
}

void BlockWriter::Forget(std::vector<std::byte>& waiting) {
    const std::lock_guard lock(mutex);
    heldBytes -= waiting.size();
    waiting = {};
}

bool BlockWriter::TryToWrite(int file, std::span<const std::byte> bytes) {
    const auto at = static_cast<std::size_t>(file);
    std::string reason;
    try {
        write(file, bytes);
        const std::lock_guard lock(mutex);
        written[at] += bytes.size();
        return true;
    } catch (const std::exception& error) {
        reason = error.what();
    }
    const std::lock_guard lock(mutex);
    if (held[at].empty()) // else it is told already
        news.push_back({file, std::move(reason)});
    return false;
}

void BlockWriter::GiveUpHeld() {
    const std::lock_guard lock(mutex);
    for (std::size_t file = 0; file < held.size(); ++file) {
        givenUp[file] += held[file].size();
        held[file] = {};
    }
    heldBytes = 0;
}

} // namespace tracelet
