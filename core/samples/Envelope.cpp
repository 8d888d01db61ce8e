#include "core/samples/Envelope.h"

#include <algorithm>
#include <cstring>

namespace tracelet {

namespace {

constexpr std::int64_t BucketSize = std::int64_t{1} << Envelope::BucketBits;
constexpr std::int64_t Fan = std::int64_t{1} << Envelope::FanBits;

// Four lanes fill the vector registers that every machine has, twice as many those of newer ones.
constexpr std::size_t LaneCount = 4;
constexpr std::size_t Stride = 2 * LaneCount; ///< values taken at a time
using Lanes [[gnu::vector_size(LaneCount * sizeof(float))]] = float;

Lanes Load(const float* values) {
    Lanes lanes;
    std::memcpy(&lanes, values, sizeof lanes);
    return lanes;
}

// What is no number compares false and leaves the bound as it is.
Lanes Lower(Lanes value, Lanes bound) {
    return value < bound ? value : bound;
}
Lanes Higher(Lanes value, Lanes bound) {
    return value > bound ? value : bound;
}

// Halves against each other, then neighbours. What is no number never became a bound.
Lanes SwapHalves(Lanes lanes) {
    return __builtin_shufflevector(lanes, lanes, 2, 3, 0, 1);
}
Lanes SwapNeighbours(Lanes lanes) {
    return __builtin_shufflevector(lanes, lanes, 1, 0, 3, 2);
}
float Lowest(Lanes bounds) {
    bounds = Lower(SwapHalves(bounds), bounds);
    return Lower(SwapNeighbours(bounds), bounds)[0];
}
float Highest(Lanes bounds) {
    bounds = Higher(SwapHalves(bounds), bounds);
    return Higher(SwapNeighbours(bounds), bounds)[0];
}

#ifdef __x86_64__

const bool HasWideVectors = __builtin_cpu_supports("avx2") != 0;

/// Of at least `stride` values.
[[gnu::target("avx2")]] Extent ExtentByWideVectors(std::span<const float> values) {
    const Extent extent;
    using Wide [[gnu::vector_size(Stride * sizeof(float))]] = float;
    Wide low = Wide{} + extent.low;
    Wide high = Wide{} + extent.high;
    Wide value;
    const float* last = values.data() + values.size() - Stride;
    for (const float* next = values.data(); next < last; next += Stride) {
        std::memcpy(&value, next, sizeof value);
        low = value < low ? value : low;
        high = value > high ? value : high;
    }
    std::memcpy(&value, last, sizeof value); // may take some values twice, which changes nothing
    low = value < low ? value : low;
    high = value > high ? value : high;
    Lanes lows[2];
    Lanes highs[2];
    std::memcpy(lows, &low, sizeof low);
    std::memcpy(highs, &high, sizeof high);
    return {Lowest(Lower(lows[1], lows[0])), Highest(Higher(highs[1], highs[0]))};
}

#endif

} // namespace

Extent ExtentByNarrowVectors(std::span<const float> values) {
    Extent extent;
    if (values.size() < Stride) {
        for (const float value : values)
            extent.Add(value);
        return extent;
    }
    Lanes low[2] = {Lanes{} + extent.low, Lanes{} + extent.low};
    Lanes high[2] = {Lanes{} + extent.high, Lanes{} + extent.high};
    const auto add = [&](const float* next) {
        const Lanes one = Load(next);
        const Lanes two = Load(next + LaneCount);
        low[0] = Lower(one, low[0]);
        high[0] = Higher(one, high[0]);
        low[1] = Lower(two, low[1]);
        high[1] = Higher(two, high[1]);
    };
    const float* last = values.data() + values.size() - Stride;
    for (const float* next = values.data(); next < last; next += Stride)
        add(next);
    add(last); // may take some values twice, which changes nothing
    return {Lowest(Lower(low[1], low[0])), Highest(Higher(high[1], high[0]))};
}

// Half of a full redraw goes by here, and wide vectors take a third off it.
Extent ExtentOf(std::span<const float> values) {
#ifdef __x86_64__
    if (HasWideVectors && values.size() >= Stride)
        return ExtentByWideVectors(values);
#endif
    return ExtentByNarrowVectors(values);
}

void Envelope::ReserveAll(std::int64_t count) {
    samples.Reserve(count);
    for (Level& level : levels) {
        count = (count >> FanBits) + 1;
        level.Reserve(count);
    }
}

void Envelope::Append(float value) {
    Reserve(1);
    std::int64_t room = 0;
    *Room(1, room) = value;
    Appended(1);
}

void Envelope::Appended(std::int64_t count) {
    samples.Extended(count);
    CloseBuckets();
}

void Envelope::CloseBuckets() {
    // Buckets that close are computed from chunk memory, which still holds samples that were dropped since.
    Level& ground = levels[0];
    while (ground.End() < (samples.End() >> BucketBits)) {
        const auto* values = samples.From(ground.End() << BucketBits);
        ground.Push(ExtentOf({values, static_cast<std::size_t>(BucketSize)}));
    }
    for (std::size_t level = 1; level < LevelCount; ++level) {
        const Level& below = levels[level - 1];
        Level& here = levels[level];
        while (here.End() < (below.End() >> FanBits)) {
            Extent extent;
            const std::int64_t first = here.End() << FanBits;
            for (std::int64_t i = std::max(first, below.First()); i < first + Fan; ++i)
                extent.Add(below[i]);
            here.Push(extent);
        }
    }
}

void Envelope::DropBefore(std::int64_t index) {
    samples.DropBefore(index);
    int bits = BucketBits;
    for (Level& level : levels) {
        level.DropBefore(index >> bits);
        bits += FanBits;
    }
}

Extent Envelope::LongRange(std::int64_t first, std::int64_t end) const {
    Extent extent;
    first = std::max(first, First());
    end = std::min(end, End());
    if (first >= end)
        return extent;
    const std::int64_t firstBucket = (first + BucketSize - 1) >> BucketBits;
    const std::int64_t endBucket = end >> BucketBits;
    if (end - first <= PlainCount || firstBucket >= endBucket) {
        JoinSamples(first, end, extent);
        return extent;
    }
    // Whole buckets first: where they already hold what the cut ones could add, those samples are not read.
    JoinBuckets(0, firstBucket, endBucket, extent);
    if (!Within(first, extent))
        JoinSamples(first, firstBucket << BucketBits, extent);
    if (!Within(end, extent))
        JoinSamples(endBucket << BucketBits, end, extent);
    return extent;
}

Extent Envelope::FiniteRange(std::int64_t first, std::int64_t end) const {
    first = std::max(first, First());
    end = std::min(end, End());
    const Extent all = Range(first, end);
    if (all.Finite())
        return all;
    Extent extent;
    if (all.Empty() || all.low == all.high)
        return extent;
    if (end - first > BucketSize) {
        const std::int64_t middle = first + (end - first) / 2;
        extent = FiniteRange(first, middle);
        extent.Add(FiniteRange(middle, end));
    } else
        for (std::int64_t i = first; i < end; ++i)
            if (std::isfinite(samples[i]))
                extent.Add(samples[i]);
    return extent;
}

void Envelope::JoinBuckets(std::size_t level, std::int64_t first, std::int64_t end, Extent& extent) const {
    const std::int64_t firstAbove = (first + Fan - 1) >> FanBits;
    const std::int64_t endAbove = end >> FanBits;
    if (level + 1 == LevelCount || firstAbove >= endAbove) {
        JoinLevel(level, first, end, extent);
        return;
    }
    const Level& above = levels[level + 1];
    JoinBuckets(level + 1, firstAbove, endAbove, extent);
    if (!extent.Holds(above[first >> FanBits]))
        JoinLevel(level, first, firstAbove << FanBits, extent);
    if (endAbove == above.End() || !extent.Holds(above[endAbove]))
        JoinLevel(level, endAbove << FanBits, end, extent);
}

void Envelope::JoinLevel(std::size_t level, std::int64_t first, std::int64_t end, Extent& extent) const {
    while (first < end) {
        const Extent* bucket = levels[level].From(first);
        const std::int64_t count = std::min(end - first, Level::Run(first));
        for (std::int64_t i = 0; i < count; ++i)
            extent.Add(bucket[i]);
        first += count;
    }
}

void Envelope::JoinSamples(std::int64_t first, std::int64_t end, Extent& extent) const {
    while (first < end) {
        const std::int64_t count = std::min(end - first, Samples::Run(first));
        extent.Add(ExtentOf({samples.From(first), static_cast<std::size_t>(count)}));
        first += count;
    }
}

std::size_t Envelope::HeldBytes() const {
    std::size_t bytes = samples.HeldBytes();
    for (const Level& level : levels)
        bytes += level.HeldBytes();
    return bytes;
}

} // namespace tracelet
