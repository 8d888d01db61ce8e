#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace tracelet {

/// Values addressed by an absolute index that only grows: new ones join at the end, old ones leave at the
/// front. Memory is held in chunks of 2^chunkBits values and follows what is held; a chunk that leaves at the
/// front serves again at the end, so a ring that keeps its length allocates nothing.
template <typename T, int chunkBits>
class ChunkRing {
public:
    static constexpr std::int64_t ChunkSize = std::int64_t{1} << chunkBits;

    [[nodiscard]] std::int64_t First() const { return first; }
    [[nodiscard]] std::int64_t End() const { return end; }
    [[nodiscard]] std::int64_t Count() const { return end - first; }

    [[nodiscard]] const T& operator[](std::int64_t index) const {
        return chunks[Slot(index)][index & (ChunkSize - 1)];
    }

    /// The values from `index` up to the end of its chunk stand one behind the other.
    [[nodiscard]] const T* From(std::int64_t index) const {
        return chunks[Slot(index)].get() + (index & (ChunkSize - 1));
    }
    /// Number of values from `index` on that From reaches, never beyond the end of the chunk.
    [[nodiscard]] static std::int64_t Run(std::int64_t index) {
        return ChunkSize - (index & (ChunkSize - 1));
    }

    /// Makes sure that `count` further values fit without allocating; throws std::bad_alloc, the values held
    /// unchanged.
    void Reserve(std::int64_t count) {
        const std::int64_t firstChunk = first >> chunkBits;
        const std::int64_t lastChunk = (end + count - 1) >> chunkBits;
        if (static_cast<std::size_t>(lastChunk - firstChunk + 1) > chunks.size())
            GrowTable(firstChunk, lastChunk);
        for (std::int64_t chunk = end >> chunkBits; chunk <= lastChunk; ++chunk)
            Provide(chunks[static_cast<std::size_t>(chunk) & (chunks.size() - 1)]);
    }
    /// Whether Reserve would allocate.
    [[nodiscard]] bool Grows(std::int64_t count) const {
        const std::int64_t lastChunk = (end + count - 1) >> chunkBits;
        if (static_cast<std::size_t>(lastChunk - (first >> chunkBits) + 1) > chunks.size())
            return true;
        return !chunks[static_cast<std::size_t>(lastChunk) & (chunks.size() - 1)] && !spare;
    }

    /// Where the next values go, `room` of them (at most `wanted`) one behind the other; Reserve them first
    /// and tell Extended then.
    [[nodiscard]] T* Extend(std::int64_t wanted, std::int64_t& room) {
        room = wanted < Run(end) ? wanted : Run(end);
        return chunks[Slot(end)].get() + (end & (ChunkSize - 1));
    }
    void Extended(std::int64_t count) { end += count; }

    void Push(const T& value) {
        Reserve(1);
        chunks[Slot(end)][end & (ChunkSize - 1)] = value;
        ++end;
    }

    /// Drops all values before `index`.
    void DropBefore(std::int64_t index) {
        index = index < end ? index : end;
        if (index <= first)
            return;
        const std::int64_t keep = index >> chunkBits;
        for (std::int64_t chunk = first >> chunkBits; chunk < keep; ++chunk)
            Release(chunks[static_cast<std::size_t>(chunk) & (chunks.size() - 1)]);
        first = index;
    }

    [[nodiscard]] std::size_t HeldBytes() const {
        return chunkCount * static_cast<std::size_t>(ChunkSize) * sizeof(T) + chunks.size() * sizeof(Pointer);
    }

private:
    using Pointer = std::unique_ptr<T[]>;

    [[nodiscard]] std::size_t Slot(std::int64_t index) const {
        return static_cast<std::size_t>(index >> chunkBits) & (chunks.size() - 1);
    }

    void Provide(Pointer& chunk) {
        if (chunk)
            return;
        if (spare) {
            chunk = std::move(spare);
            return;
        }
        chunk = Pointer(new T[ChunkSize]);
        ++chunkCount;
    }

    void Release(Pointer& chunk) {
        if (!chunk)
            return;
        if (!spare) {
            spare = std::move(chunk);
            return;
        }
        chunk.reset();
        --chunkCount;
    }

    void GrowTable(std::int64_t firstChunk, std::int64_t lastChunk) {
        std::size_t size = chunks.empty() ? 1 : chunks.size();
        while (size < static_cast<std::size_t>(lastChunk - firstChunk + 1))
            size *= 2;
        std::vector<Pointer> larger(size);
        for (std::size_t i = 0; i < chunks.size(); ++i) {
            const std::int64_t chunk = firstChunk + static_cast<std::int64_t>(i);
            larger[static_cast<std::size_t>(chunk) & (size - 1)] =
                std::move(chunks[static_cast<std::size_t>(chunk) & (chunks.size() - 1)]);
        }
        chunks = std::move(larger);
    }

    std::vector<Pointer> chunks; ///< a ring itself; its size is a power of two
    Pointer spare;
    std::size_t chunkCount = 0;
    std::int64_t first = 0;
    std::int64_t end = 0;
};

} // namespace tracelet
