#pragma once

#include "core/samples/ChunkRing.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

namespace tracelet {

/// Lowest and highest value of some samples; `low` > `high`: there is none. Samples that are no numbers are
/// passed over.
struct Extent {
    float low = std::numeric_limits<float>::infinity();
    float high = -std::numeric_limits<float>::infinity();

    [[nodiscard]] bool Empty() const { return !(low <= high); }
    void Add(float value) {
        low = value < low ? value : low;
        high = value > high ? value : high;
    }
    void Add(const Extent& other) {
        low = other.low < low ? other.low : low;
        high = other.high > high ? other.high : high;
    }
    [[nodiscard]] bool Finite() const { return std::isfinite(low) && std::isfinite(high); }
    [[nodiscard]] bool Holds(const Extent& other) const { return other.low >= low && other.high <= high; }
    bool operator==(const Extent&) const = default;
};

/// Extent of values that stand one behind the other.
[[nodiscard]] Extent ExtentOf(std::span<const float> values);
/// The same on machines without wide vectors.
[[nodiscard]] Extent ExtentByNarrowVectors(std::span<const float> values);

/// Samples of one plot with a pyramid of extents over them: buckets of 64 samples, then of 16 buckets each,
/// closed when full and found by the absolute index of their samples. Appending costs O(1) a sample, the
/// extent of any range O(log). Holds 4.2 bytes a sample.
class Envelope {
    using Samples = ChunkRing<float, 12>;
    using Level = ChunkRing<Extent, 6>;

public:
    static constexpr int BucketBits = 6;
    static constexpr int FanBits = 4;
    static constexpr int LevelCount = 8; ///< the last level's buckets hold 2^34 samples

    [[nodiscard]] std::int64_t First() const { return samples.First(); }
    [[nodiscard]] std::int64_t End() const { return samples.End(); }
    [[nodiscard]] float operator[](std::int64_t index) const { return samples[index]; }
    /// The samples from `index` up to a multiple of 4096 stand one behind the other.
    [[nodiscard]] const float* From(std::int64_t index) const { return samples.From(index); }

    /// Makes sure that `count` further samples fit without allocating; throws std::bad_alloc, the samples
    /// held unchanged.
    void Reserve(std::int64_t count) {
        const std::int64_t end = samples.End();
        const bool fits = end % Samples::ChunkSize != 0 && end >> BucketBits == (end + count) >> BucketBits;
        if (!fits)
            ReserveAll(count);
    }
    /// Whether Reserve would allocate for the samples themselves.
    [[nodiscard]] bool Grows(std::int64_t count) const { return samples.Grows(count); }
    /// Where the next samples go, `room` of them (at most `wanted`): Reserve, fill, then tell Appended.
    [[nodiscard]] float* Room(std::int64_t wanted, std::int64_t& room) {
        return samples.Extend(wanted, room);
    }
    void Appended(std::int64_t count);
    void Append(float value);

    void DropBefore(std::int64_t index);

    /// Extent of the held samples first <= index < end.
    [[nodiscard]] Extent Range(std::int64_t first, std::int64_t end) const {
        const std::int64_t count = end - first;
        const bool plain = count > 0 && count <= PlainCount && first >= First() && end <= End() &&
                           count <= Samples::Run(first);
        return plain ? ExtentOf({samples.From(first), static_cast<std::size_t>(count)})
                     : LongRange(first, end);
    }
    /// The same of the finite ones only; slower where many are infinite.
    [[nodiscard]] Extent FiniteRange(std::int64_t first, std::int64_t end) const;
    static constexpr std::int64_t PlainCount = 192; ///< ranges as short as this are read sample by sample
    /// Fetches what Range(first, end) reads into the processor's cache ahead of its use.
    [[gnu::always_inline]] void Prefetch(std::int64_t first, std::int64_t end) const {
        if (first < First() || end >= End())
            return;
        if (end - first <= PlainCount) {
            PrefetchSamples(first, end);
            return;
        }
        constexpr std::int64_t BucketMask = (std::int64_t{1} << BucketBits) - 1;
        PrefetchSamples(end & ~BucketMask, (end | BucketMask) + 1);
        if (end >> BucketBits < levels[0].End())
            __builtin_prefetch(levels[0].From(end >> BucketBits));
    }

    [[nodiscard]] std::size_t HeldBytes() const;

private:
    [[gnu::always_inline]] void PrefetchSamples(std::int64_t first, std::int64_t end) const {
        constexpr std::int64_t line = 16; // samples
        const float* next = samples.From(first);
        for (std::int64_t i = first; i < end; i += line, next += line)
            __builtin_prefetch(next);
    }
    /// Whether the samples around `index` are known to lie within `extent`, without reading them.
    [[nodiscard]] bool Within(std::int64_t index, const Extent& extent) const {
        const std::int64_t bucket = index >> BucketBits;
        return bucket < levels[0].End() && extent.Holds(levels[0][bucket]);
    }
    [[nodiscard]] Extent LongRange(std::int64_t first, std::int64_t end) const;
    void ReserveAll(std::int64_t count);
    void CloseBuckets();
    void JoinBuckets(std::size_t level, std::int64_t first, std::int64_t end, Extent& extent) const;
    void JoinLevel(std::size_t level, std::int64_t first, std::int64_t end, Extent& extent) const;
    void JoinSamples(std::int64_t first, std::int64_t end, Extent& extent) const;

    Samples samples;
    std::array<Level, LevelCount> levels;
};

} // namespace tracelet
