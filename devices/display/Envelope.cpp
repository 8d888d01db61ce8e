#include "devices/display/Envelope.h"

#include <algorithm>
#include <cstring>

namespace tracelet {

namespace {

constexpr std::int64_t bucketSize = std::int64_t{1} << Envelope::bucketBits;
constexpr std::int64_t fan = std::int64_t{1} << Envelope::fanBits;

// Independent lanes let the compiler keep them in one vector register.
constexpr std::size_t laneCount = 8;
using Lanes [[gnu::vector_size(laneCount * sizeof(float))]] = float;

Extent ExtentOfLanes(const float* values, std::size_t vectors) {
    const Extent none;
    Lanes low = Lanes{} + none.low;
    Lanes high = Lanes{} + none.high;
    for (std::size_t i = 0; i < vectors; ++i) {
        Lanes value;
        std::memcpy(&value, values + i * laneCount, sizeof value);
        low = value < low ? value : low;
        high = value > high ? value : high;
    }
    Extent extent;
    for (std::size_t lane = 0; lane < laneCount; ++lane)
        extent.Add(Extent{low[lane], high[lane]});
    return extent;
}

} // namespace

Extent ExtentOf(std::span<const float> values) {
    const std::size_t vectors = values.size() / laneCount;
    Extent extent;
    if (vectors > 0)
        extent = ExtentOfLanes(values.data(), vectors);
    for (std::size_t i = vectors * laneCount; i < values.size(); ++i)
        extent.Add(values[i]);
    return extent;
}

void Envelope::Reserve(std::int64_t count) {
    samples.Reserve(count);
    for (Level& level : levels) {
        count = (count >> fanBits) + 1;
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
    while (ground.End() < (samples.End() >> bucketBits)) {
        const auto* values = samples.From(ground.End() << bucketBits);
        ground.Push(ExtentOf({values, static_cast<std::size_t>(bucketSize)}));
    }
    for (std::size_t level = 1; level < levelCount; ++level) {
        const Level& below = levels[level - 1];
        Level& here = levels[level];
        while (here.End() < (below.End() >> fanBits)) {
            Extent extent;
            const std::int64_t first = here.End() << fanBits;
            for (std::int64_t i = std::max(first, below.First()); i < first + fan; ++i)
                extent.Add(below[i]);
            here.Push(extent);
        }
    }
}

void Envelope::DropBefore(std::int64_t index) {
    samples.DropBefore(index);
    int bits = bucketBits;
    for (Level& level : levels) {
        level.DropBefore(index >> bits);
        bits += fanBits;
    }
}

Extent Envelope::Range(std::int64_t first, std::int64_t end) const {
    Extent extent;
    first = std::max(first, First());
    end = std::min(end, End());
    const std::int64_t firstBucket = (first + bucketSize - 1) >> bucketBits;
    const std::int64_t endBucket = end >> bucketBits;
    if (firstBucket >= endBucket) {
        JoinSamples(first, end, extent);
        return extent;
    }
    JoinSamples(first, firstBucket << bucketBits, extent);
    Join(0, firstBucket, endBucket, extent);
    JoinSamples(endBucket << bucketBits, end, extent);
    return extent;
}

void Envelope::Join(std::size_t level, std::int64_t first, std::int64_t end, Extent& extent) const {
    const Level& here = levels[level];
    const std::int64_t firstAbove = (first + fan - 1) >> fanBits;
    const std::int64_t endAbove = end >> fanBits;
    if (level + 1 == levelCount || firstAbove >= endAbove) {
        for (std::int64_t i = first; i < end; ++i)
            extent.Add(here[i]);
        return;
    }
    for (std::int64_t i = first; i < firstAbove << fanBits; ++i)
        extent.Add(here[i]);
    Join(level + 1, firstAbove, endAbove, extent);
    for (std::int64_t i = endAbove << fanBits; i < end; ++i)
        extent.Add(here[i]);
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
