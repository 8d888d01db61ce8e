#pragma once

#include "core/samples/Envelope.h"
#include "core/samples/TimeTrack.h"

#include <array>
#include <cstdint>
#include <span>

namespace tracelet {

/// Sums over samples that stand one behind the other. Samples that are no finite numbers are passed over.
///
/// Samples are singles and sums doubles, so that a sum of 2^27 samples that lie within some powers of two of
/// each other loses nothing. Squares are summed as differences from the mean of at most 256 samples, in 16
/// lanes, and parts are put together pairwise: what is lost grows with the logarithm of the number of samples
/// and does not depend on how far from 0 they lie.
struct Moments {
    double sum = 0;
    double deviations = 0; ///< squared differences from the mean
    double area = 0;       ///< value times the seconds until the next sample, of all but the last
    std::int64_t count = 0;
    std::int64_t rises = 0; ///< samples above the one in front of them

    /// Joins the sums of samples behind these.
    void Add(const Moments& behind);

    // Not a number where there are no samples.
    [[nodiscard]] double Mean() const { return sum / static_cast<double>(count); }
    [[nodiscard]] double Variance() const { return deviations / static_cast<double>(count); }
};

/// Samples of one plot and the times that belong to them.
struct TimedSamples {
    const Envelope& samples;
    const TimeTrack& track;
    std::int64_t offset = 0; ///< index in the track of sample 0
};

/// Moments of the samples first <= index < end, which are held. What a sample has to do with the one in front
/// of it (area, rises) counts for the first one too, where that one is held and `joins` is told.
[[nodiscard]] Moments MomentsOf(const TimedSamples& of, std::int64_t first, std::int64_t end, bool joins);

/// Moments over a plot's samples: of buckets of 256 samples, then of 16 buckets each, found by the absolute
/// index of their samples. They are summed up when it suits, not when samples come; those that are not yet
/// are read one by one. Holds 0.17 bytes a sample.
class MomentPyramid {
public:
    static constexpr int BucketBits = 8;
    static constexpr int FanBits = 4;
    static constexpr int LevelCount = 4; ///< the last level's buckets hold 2^20 samples

    /// Sums up at most `most` buckets that are full, and forgets those of dropped samples; returns how many
    /// it was. Throws std::bad_alloc; what is summed up by then stays.
    std::int64_t SumUp(const TimedSamples& of, std::int64_t most);

    /// Moments of the held samples first <= index < end, in O(log) of their number where they are summed up.
    /// Time does not go back between them.
    [[nodiscard]] Moments Range(const TimedSamples& of, std::int64_t first, std::int64_t end) const;

    [[nodiscard]] std::size_t HeldBytes() const;

private:
    using Level = ChunkRing<Moments, 4>;

    void SumUpLevels();
    void DropBefore(std::int64_t index);
    void Join(std::size_t level, std::int64_t first, std::int64_t end, Moments& moments) const;

    std::array<Level, LevelCount> levels;
};

} // namespace tracelet
