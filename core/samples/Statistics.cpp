#include "core/samples/Statistics.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tracelet {

namespace {

using Run = TimeTrack::Stretch;

constexpr double Endless = std::numeric_limits<double>::infinity();

/// Runs of samples between which time does not go back, by index.
std::vector<Run> AllRuns(const SampleStore& store, int plot) {
    return store.Between(plot, -Endless, Endless);
}

/// First sample of the run that is not before `x`, or its end.
std::int64_t NotBefore(const SampleStore& store, int plot, const Run& run, double x) {
    const std::int64_t offset = store.TrackOffset(plot);
    return store.Track(plot).LowerBound({run.first + offset, run.end + offset}, x) - offset;
}

/// First sample of the run, from <= index, that is the `number`th rise from there on.
std::int64_t RiseAt(const SampleStore& store, int plot, const Run& run, std::int64_t number) {
    std::int64_t low = run.first;
    std::int64_t high = run.end - 1; // holds that many
    while (low < high) {
        const std::int64_t middle = low + (high - low) / 2;
        if (store.MomentsIn(plot, run.first, middle + 1).rises >= number)
            high = middle;
        else
            low = middle + 1;
    }
    return high;
}

} // namespace

std::optional<SampleStore::Point> NearestSample(const SampleStore& store, int plot, double x) {
    std::optional<std::int64_t> nearest;
    double distance = Endless;
    for (const Run& run : AllRuns(store, plot)) {
        const std::int64_t last = run.end - 1;
        const std::int64_t second = std::min(run.first + 1, last);
        const std::int64_t lastButOne = std::max(last - 1, run.first);
        const double first = store.X(plot, run.first);
        const double end = store.X(plot, last);
        if (x < first - (store.X(plot, second) - first) || x > end + (end - store.X(plot, lastButOne)))
            continue;
        const std::int64_t behind = std::min(NotBefore(store, plot, run, x), last);
        for (const std::int64_t index : {std::max(behind - 1, run.first), behind})
            if (const double off = std::abs(store.X(plot, index) - x); off <= distance) {
                distance = off;
                nearest = index;
            }
    }
    if (!nearest)
        return std::nullopt;
    return store.At(plot, *nearest - store.First(plot));
}

NeighbourTimes TimesAround(const SampleStore& store, int plot, double x) {
    NeighbourTimes times;
    for (const Run& run : AllRuns(store, plot)) {
        const std::int64_t here = NotBefore(store, plot, run, x);
        const std::int64_t behind = NotBefore(store, plot, run, std::nextafter(x, Endless));
        if (here > run.first)
            times.before = std::max(times.before, store.X(plot, here - 1));
        if (behind < run.end)
            times.behind = std::min(times.behind, store.X(plot, behind));
    }
    return times;
}

SpanStatistics StatisticsBetween(const SampleStore& store, int plot, double from, double to) {
    Moments moments;
    Extent extent;
    for (const Run& run : store.Between(plot, from, to)) {
        moments.Add(store.MomentsIn(plot, run.first, run.end));
        extent.Add(store.Samples(plot).FiniteRange(run.first, run.end));
    }
    if (moments.count == 0)
        return {};
    const double mean = moments.Mean();
    const double variance = moments.Variance();
    return {moments.count, static_cast<double>(extent.low),   static_cast<double>(extent.high),
            mean,          std::sqrt(mean * mean + variance), std::sqrt(variance)};
}

LineStatistics LineStatisticsBetween(const SampleStore& store, int plot, double from, double to, double low) {
    LineStatistics line;
    double seconds = 0;
    double area = 0;
    double periods = 0;
    double periodSeconds = 0;
    for (const Run& run : store.Between(plot, from, to)) {
        const Moments moments = store.MomentsIn(plot, run.first, run.end);
        const float first = store.Samples(plot)[run.first];
        const float last = store.Samples(plot)[run.end - 1];
        line.count += moments.count;
        // A line falls between any two rises.
        line.edges += 2 * moments.rises + (first > last ? 1 : 0) - (last > first ? 1 : 0);
        area += moments.area;
        seconds += store.X(plot, run.end - 1) - store.X(plot, run.first);
        if (moments.rises < 2)
            continue;
        periods += static_cast<double>(moments.rises - 1);
        periodSeconds += store.X(plot, RiseAt(store, plot, run, moments.rises)) -
                         store.X(plot, RiseAt(store, plot, run, 1));
    }
    if (seconds > 0)
        line.highShare = std::clamp(area / seconds - low, 0.0, 1.0);
    if (periodSeconds > 0)
        line.frequency = periods / periodSeconds;
    return line;
}

} // namespace tracelet
