#include "core/samples/Moments.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tracelet {

namespace {

constexpr std::int64_t BucketSize = std::int64_t{1} << MomentPyramid::BucketBits;
constexpr std::int64_t Fan = std::int64_t{1} << MomentPyramid::FanBits;

// Four lanes, four times: additions wait for each other in each of them.
constexpr std::size_t LaneCount = 4;
constexpr std::size_t Stride = 4 * LaneCount;
using Singles [[gnu::vector_size(LaneCount * sizeof(float))]] = float;
using Doubles [[gnu::vector_size(LaneCount * sizeof(double))]] = double;
using Counts [[gnu::vector_size(LaneCount * sizeof(std::int32_t))]] = std::int32_t;

[[gnu::always_inline]] inline void Load(const float* values, Singles& lanes) {
    std::memcpy(&lanes, values, sizeof lanes);
}

/// Of all lanes, halves first.
[[gnu::always_inline]] inline double Total(const Doubles (&lanes)[4]) {
    const Doubles four = (lanes[0] + lanes[1]) + (lanes[2] + lanes[3]);
    return (four[0] + four[2]) + (four[1] + four[3]);
}

enum class Term { Value, SquaredDifference };

/// Sum of a bucket's values, or of their squared differences from `mean`.
template <Term term>
[[gnu::always_inline]] inline double SumUp(const float* values, double mean = 0) {
    Doubles lanes[4] = {};
    Singles next;
    for (const float* end = values + BucketSize; values < end; values += Stride)
        for (std::size_t i = 0; i < 4; ++i) {
            Load(values + i * LaneCount, next);
            const Doubles value = __builtin_convertvector(next, Doubles);
            if constexpr (term == Term::Value)
                lanes[i] += value;
            else
                lanes[i] += (value - mean) * (value - mean);
        }
    return Total(lanes);
}

/// Sum and deviations of a bucket's values, and the rises within it; a sum that is no finite number tells
/// that a value was none.
[[gnu::always_inline]] inline void AddBucket(const float* values, Moments& moments) {
    moments.sum = SumUp<Term::Value>(values);
    if (!std::isfinite(moments.sum))
        return;
    moments.deviations = SumUp<Term::SquaredDifference>(values, moments.sum / BucketSize);
    moments.count = BucketSize;
    Counts rises = {};
    Singles here;
    Singles behind;
    std::int64_t i = 0;
    for (; i + 1 + static_cast<std::int64_t>(LaneCount) <= BucketSize; i += LaneCount) {
        Load(values + i, here);
        Load(values + i + 1, behind);
        rises -= behind > here; // what is true is -1
    }
    moments.rises = rises[0] + rises[1] + rises[2] + rises[3];
    for (; i + 1 < BucketSize; ++i)
        moments.rises += values[i + 1] > values[i] ? 1 : 0;
}

#ifdef __x86_64__
const bool HasWideVectors = __builtin_cpu_supports("avx2") != 0;
[[gnu::target("avx2")]] void AddBucketByWideVectors(const float* values, Moments& moments) {
    AddBucket(values, moments);
}
#endif

void AddBucketByNarrowVectors(const float* values, Moments& moments) {
    AddBucket(values, moments);
}

/// Sum, deviations and rises of any values, in two passes.
void AddValues(std::span<const float> values, Moments& moments) {
    float before = values.front();
    for (const float value : values) {
        if (std::isfinite(value)) {
            moments.sum += static_cast<double>(value);
            ++moments.count;
        }
        moments.rises += value > before ? 1 : 0;
        before = value;
    }
    if (moments.count == 0)
        return;
    const double mean = moments.Mean();
    for (const float value : values) {
        const double off = std::isfinite(value) ? static_cast<double>(value) - mean : 0;
        moments.deviations += off * off;
    }
}

/// The moments of values that stand one behind the other, their times apart.
Moments Untimed(std::span<const float> values) {
    Moments moments;
    if (values.size() == BucketSize) {
#ifdef __x86_64__
        if (HasWideVectors)
            AddBucketByWideVectors(values.data(), moments);
        else
#endif
            AddBucketByNarrowVectors(values.data(), moments);
        if (moments.count == BucketSize)
            return moments;
        moments = Moments();
    }
    AddValues(values, moments);
    return moments;
}

double Finite(float value) {
    return std::isfinite(value) ? static_cast<double>(value) : 0;
}

/// Area of the held samples from <= index <= last, of which the last one adds nothing. `sum` is that of the
/// others.
double AreaOf(const TimedSamples& of, std::int64_t from, std::int64_t last, double sum) {
    if (from == last)
        return 0;
    double time = of.track.X(from + of.offset);
    if (of.track.IsEven(from + of.offset, last + of.offset))
        return sum / static_cast<double>(last - from) * (of.track.X(last + of.offset) - time);
    double area = 0;
    for (std::int64_t i = from; i < last; ++i) {
        const double next = of.track.X(i + 1 + of.offset);
        area += Finite(of.samples[i]) * (next - time);
        time = next;
    }
    return area;
}

} // namespace

void Moments::Add(const Moments& behind) {
    area += behind.area;
    rises += behind.rises;
    if (behind.count == 0)
        return;
    if (count > 0) {
        // Means far from 0 must not cost the digits in which they differ.
        const auto here = static_cast<long double>(count);
        const auto there = static_cast<long double>(behind.count);
        const auto apart = static_cast<double>(behind.sum / there - sum / here);
        deviations += apart * apart * static_cast<double>(here * there / (here + there));
    }
    deviations += behind.deviations;
    sum += behind.sum;
    count += behind.count;
}

Moments MomentsOf(const TimedSamples& of, std::int64_t first, std::int64_t end, bool joins) {
    const std::span values(of.samples.From(first), static_cast<std::size_t>(end - first));
    Moments moments = Untimed(values);
    const std::int64_t last = end - 1;
    const double sum = moments.sum - Finite(values.back());
    if (!joins || first == of.samples.First()) {
        moments.area = AreaOf(of, first, last, sum);
        return moments;
    }
    const float before = of.samples[first - 1];
    moments.rises += values.front() > before ? 1 : 0;
    moments.area = AreaOf(of, first - 1, last, sum + Finite(before));
    return moments;
}

std::int64_t MomentPyramid::SumUp(const TimedSamples& of, std::int64_t most) {
    // Of a bucket that lost samples only those above it know, and no range asks for them.
    Level& ground = levels[0];
    const std::int64_t before = ground.End();
    const std::int64_t full = std::min(of.samples.End() >> BucketBits, before + most);
    while (ground.End() < full) {
        const std::int64_t first = ground.End() << BucketBits;
        const std::int64_t held = std::max(first, of.samples.First());
        const std::int64_t end = first + BucketSize;
        ground.Push(held < end ? MomentsOf(of, held, end, true) : Moments());
        SumUpLevels();
    }
    DropBefore(of.samples.First());
    return full - before;
}

void MomentPyramid::SumUpLevels() {
    for (std::size_t i = 1; i < LevelCount; ++i) {
        const Level& below = levels[i - 1];
        Level& here = levels[i];
        while (here.End() < below.End() >> FanBits) {
            Moments moments;
            const std::int64_t first = here.End() << FanBits;
            Join(i - 1, std::max(first, below.First()), first + Fan, moments);
            here.Push(moments);
        }
    }
}

void MomentPyramid::DropBefore(std::int64_t index) {
    int bits = BucketBits;
    for (Level& level : levels) {
        level.DropBefore(index >> bits);
        bits += FanBits;
    }
}

// The bucket that `first` lies in is taken sample by sample even where it begins there: its moments know of
// the sample in front of it.
Moments MomentPyramid::Range(const TimedSamples& of, std::int64_t first, std::int64_t end) const {
    Moments moments;
    first = std::max(first, of.samples.First());
    end = std::min(end, of.samples.End());
    bool joins = false;
    while (first < end) {
        const std::int64_t bucket = first >> BucketBits;
        const std::int64_t endBucket = std::min(end >> BucketBits, levels[0].End());
        if (joins && bucket < endBucket) {
            Join(0, bucket, endBucket, moments);
            first = endBucket << BucketBits;
            continue;
        }
        const std::int64_t part = std::min(end, (bucket + 1) << BucketBits);
        moments.Add(MomentsOf(of, first, part, joins));
        first = part;
        joins = true;
    }
    return moments;
}

void MomentPyramid::Join(std::size_t level, std::int64_t first, std::int64_t end, Moments& moments) const {
    const std::int64_t firstAbove = (first + Fan - 1) >> FanBits;
    const std::int64_t endAbove = end >> FanBits;
    const Level& here = levels[level];
    if (level + 1 == LevelCount || firstAbove >= endAbove || endAbove > levels[level + 1].End()) {
        for (; first < end; ++first)
            moments.Add(here[first]);
        return;
    }
    for (; first < firstAbove << FanBits; ++first)
        moments.Add(here[first]);
    Join(level + 1, firstAbove, endAbove, moments);
    for (first = endAbove << FanBits; first < end; ++first)
        moments.Add(here[first]);
}

std::size_t MomentPyramid::HeldBytes() const {
    std::size_t bytes = 0;
    for (const Level& level : levels)
        bytes += level.HeldBytes();
    return bytes;
}

} // namespace tracelet
