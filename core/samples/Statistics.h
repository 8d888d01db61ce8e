#pragma once

#include "core/samples/SampleStore.h"

#include <cstdint>
#include <limits>
#include <optional>

namespace tracelet {

/// The held sample of `plot` nearest to the time `x`, the newest of those equally near. None where no sample
/// is held, or where `x` lies farther outside them than the first two or the last two lie apart.
[[nodiscard]] std::optional<SampleStore::Point> NearestSample(const SampleStore& store, int plot, double x);

/// Times of the held samples of `plot` next to `x` seconds: the latest before it and the earliest behind it,
/// infinite where there is none.
struct NeighbourTimes {
    double before = -std::numeric_limits<double>::infinity();
    double behind = std::numeric_limits<double>::infinity();
};
[[nodiscard]] NeighbourTimes TimesAround(const SampleStore& store, int plot, double x);

/// What the samples of a span of time amount to. All but `count` are not a number where there are none.
struct SpanStatistics {
    static constexpr double None = std::numeric_limits<double>::quiet_NaN();

    std::int64_t count = 0; ///< samples that are finite numbers; the others are passed over
    double minimum = None;
    double maximum = None;
    double mean = None;
    double rootMeanSquare = None;
    double deviation = None; ///< the standard deviation of these very samples: divided by `count`
};
/// Of the held samples within from <= x <= to seconds; O(log) of their number.
[[nodiscard]] SpanStatistics StatisticsBetween(const SampleStore& store, int plot, double from, double to);

/// What a digital line did in a span of time.
struct LineStatistics {
    std::int64_t count = 0;                  ///< samples
    std::int64_t edges = 0;                  ///< changes from one sample to the next
    double frequency = SpanStatistics::None; ///< Hz, from the first rise to the last; two at least
    double highShare = SpanStatistics::None; ///< 0 to 1, of the time from the first sample to the last
};
/// The same of a line whose samples are `low` or 1 above it.
[[nodiscard]] LineStatistics LineStatisticsBetween(const SampleStore& store, int plot, double from, double to,
                                                   double low);

} // namespace tracelet
