#include "core/files/BlockWriter.h"

#include <exception>
#include <utility>

namespace tracelet {
namespace {

constexpr std::size_t MostKept = std::size_t{16} << 20; // bytes that stay with the writer after a stall

} // namespace

BlockWriter::BlockWriter(Write writeBlock, std::size_t limitBytes)
    : write(std::move(writeBlock)), limit(limitBytes) {}

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
        if (bytes.size() > limit - given.bytes.size())
            return false;
        if (!thread.joinable())
            thread = std::thread([this] { Run(); });
        if (given.blocks.empty() || given.blocks.back().file != file)
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
    workDone.wait(lock, [this] { return IsIdle(); });
}

std::optional<BlockWriter::Failure> BlockWriter::TakeFailure() {
    const std::lock_guard lock(mutex);
    if (failures.empty())
        return std::nullopt;
    Failure first = std::move(failures.front());
    failures.erase(failures.begin());
    return first;
}

std::uint64_t BlockWriter::Written(int file) const {
    const std::lock_guard lock(mutex);
    return written.at(static_cast<std::size_t>(file));
}

void BlockWriter::Restart() {
    Flush();
    const std::lock_guard lock(mutex);
    failedFiles = 0;
    failures.clear();
    written.assign(MostFiles, 0);
}

void BlockWriter::Run() {
    std::unique_lock lock(mutex);
    for (;;) {
        workCame.wait(lock, [this] { return ending || !given.blocks.empty(); });
        if (given.blocks.empty())
            return;
        std::swap(given, taken);
        busy = true;
        lock.unlock();
        WriteBatch();
        lock.lock();
        busy = false;
        workDone.notify_all();
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
    const std::uint32_t bit = std::uint32_t{1} << file;
    if ((failedFiles & bit) != 0) // written by this thread only, but for Restart, which waits for it
        return;
    std::string reason;
    try {
        write(file, bytes);
        const std::lock_guard lock(mutex);
        written[static_cast<std::size_t>(file)] += bytes.size();
        return;
    } catch (const std::exception& error) {
        reason = error.what();
    }
    const std::lock_guard lock(mutex);
    failedFiles |= bit;
    failures.push_back({file, std::move(reason)});
}

} // namespace tracelet
