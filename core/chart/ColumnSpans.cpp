#include "core/chart/ColumnSpans.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tracelet {

namespace {

constexpr float None = std::numeric_limits<float>::quiet_NaN();
constexpr std::int64_t Crowd = 3;    ///< samples that crowd a column
constexpr std::size_t LookAhead = 6; ///< columns between fetching samples and using them

void AddSamples(const Envelope& samples, std::int64_t first, std::int64_t end, Extent& extent) {
    constexpr std::int64_t few = 4;
    if (end - first > few)
        extent.Add(samples.Range(first, end));
    else
        for (std::int64_t i = first; i < end; ++i)
            extent.Add(samples[i]);
}

} // namespace

std::int64_t ColumnGrid::ColumnOf(double x) const {
    const double position = std::floor((x - origin) / width);
    constexpr auto most = static_cast<double>(Limit);
    if (std::isnan(position))
        return 0;
    return static_cast<std::int64_t>(std::clamp(position, -most, most));
}

Extent ExtentBetween(const SampleStore& store, int plot, double from, double to) {
    Extent extent;
    for (const TimeTrack::Stretch& run : store.Between(plot, from, to))
        extent.Add(store.Samples(plot).FiniteRange(run.first, run.end));
    return extent;
}

void ColumnSpans::Find(const SampleStore& store, int plot, const ColumnGrid& newGrid, std::int64_t newColumn,
                       Joint joint, std::span<Extent> spans) {
    std::ranges::fill(spans, Extent{});
    lone.clear();
    const std::int64_t first = store.First(plot);
    const std::int64_t end = store.End(plot);
    if (first >= end || spans.empty())
        return;
    const std::int64_t offset = store.TrackOffset(plot);
    Locate(store.Track(plot), first + offset, end + offset, newGrid, newColumn, spans.size());
    const Crossing* next = crossings.data();
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        if (joint == Joint::Line)
            JoinLine(store.Samples(plot), offset, next, spans);
        else
            JoinStep(store.Samples(plot), offset, next, spans);
        next += columnCount + 1;
    }
}

void ColumnSpans::Locate(const TimeTrack& times, std::int64_t first, std::int64_t end,
                         const ColumnGrid& newGrid, std::int64_t newColumn, std::size_t count) {
    const bool known = track == &times && trackFirst == first && trackEnd == end && grid == newGrid &&
                       column == newColumn && columnCount == count;
    if (known)
        return;
    track = &times;
    trackFirst = first;
    trackEnd = end;
    grid = newGrid;
    column = newColumn;
    columnCount = count;
    times.Stretches(first, end, all);
    stretches.clear();
    crossings.clear();
    crowded.assign(count, 0);
    apartDistance = 0;
    const auto edges = static_cast<std::int64_t>(count) + 1;
    const double left = grid.Edge(column);
    const double right = grid.Edge(column + edges - 1);
    for (const TimeTrack::Stretch& stretch : all) {
        if (times.X(stretch.first) > right || times.X(stretch.end - 1) < left)
            continue;
        stretches.push_back(stretch);
        std::int64_t hint = stretch.first;
        for (std::int64_t i = 0; i < edges; ++i) {
            crossings.push_back(CrossingAt(stretch, hint, grid.Edge(column + i)));
            hint = crossings.back().behind;
        }
        const Crossing* at = &crossings[crossings.size() - static_cast<std::size_t>(edges)];
        for (std::size_t i = 0; i < count; ++i)
            crowded[i] |= at[i + 1].behind - at[i].behind >= Crowd ? 1 : 0;
    }
}

std::span<const ColumnSpans::Apart> ColumnSpans::Separate(double distance) {
    if (track == nullptr || distance == apartDistance)
        return apart;
    apartDistance = distance;
    apart.clear();
    const Crossing* next = crossings.data();
    for (const TimeTrack::Stretch& stretch : stretches) {
        FindApart(stretch, next);
        next += columnCount + 1;
    }
    return apart;
}

void ColumnSpans::FindApart(const TimeTrack::Stretch& stretch, const Crossing* crossing) {
    const auto count = static_cast<std::int64_t>(columnCount);
    for (std::int64_t i = 0; i < count; ++i) {
        const std::int64_t index = crossing[i].behind;
        const bool alone = crossing[i + 1].behind - index == 1;
        if (alone && StandsApart(stretch, index))
            apart.push_back({index, i});
    }
}

bool ColumnSpans::StandsApart(const TimeTrack::Stretch& stretch, std::int64_t index) const {
    const double least = apartDistance * grid.width;
    const double x = track->X(index);
    if (index > stretch.first && x - track->X(index - 1) < least)
        return false;
    return index + 1 >= stretch.end || track->X(index + 1) - x >= least;
}

ColumnSpans::Crossing ColumnSpans::CrossingAt(const TimeTrack::Stretch& stretch, std::int64_t hint,
                                              double edge) const {
    Crossing crossing;
    crossing.behind = track->LowerBoundFrom(hint, stretch, edge);
    if (crossing.behind > stretch.first && crossing.behind < stretch.end) {
        const double before = track->X(crossing.behind - 1);
        crossing.share = (edge - before) / (track->X(crossing.behind) - before);
    }
    return crossing;
}

void ColumnSpans::JoinLine(const Envelope& samples, std::int64_t offset, const Crossing* crossing,
                           std::span<Extent> spans) {
    // Where the trace crosses an edge between columns it belongs to both.
    const auto valueAt = [&](const Crossing& edge) {
        if (!edge.Inside())
            return None;
        const auto before = static_cast<double>(samples[edge.behind - 1 - offset]);
        const auto behind = static_cast<double>(samples[edge.behind - offset]);
        const auto value = static_cast<float>(before + (behind - before) * edge.share);
        return std::isfinite(value) ? value : None;
    };
    const std::size_t count = spans.size();
    const auto prefetch = [&](std::size_t at) {
        samples.Prefetch(crossing[at].behind - offset, crossing[at + 1].behind - offset);
    };
    for (std::size_t i = 0; i < std::min(LookAhead, count); ++i)
        prefetch(i);
    float edge = valueAt(crossing[0]);
    for (std::size_t i = 0; i < count; ++i) {
        if (i + LookAhead < count)
            prefetch(i + LookAhead);
        Extent& span = spans[i];
        span.Add(edge);
        const bool entered = !std::isnan(edge);
        edge = valueAt(crossing[i + 1]);
        span.Add(edge);
        AddSamples(samples, crossing[i].behind - offset, crossing[i + 1].behind - offset, span);
        if (!span.Finite())
            AddUpright(samples, offset, &crossing[i], span);
        if (!entered && std::isnan(edge) && span.low == span.high)
            lone.push_back({static_cast<std::int64_t>(i), span.low});
    }
}

/// Adds what infinite samples of a column, which lies between two crossings, are joined to beside it.
void ColumnSpans::AddUpright(const Envelope& samples, std::int64_t offset, const Crossing* crossing,
                             Extent& span) {
    const std::int64_t first = crossing[0].behind - offset;
    const std::int64_t end = crossing[1].behind - offset;
    if (first == end)
        return;
    if (crossing[0].Inside() && std::isinf(samples[first]))
        span.Add(samples[first - 1]);
    if (crossing[1].Inside() && std::isinf(samples[end - 1]))
        span.Add(samples[end]);
}

void ColumnSpans::JoinStep(const Envelope& samples, std::int64_t offset, const Crossing* crossing,
                           std::span<Extent> spans) {
    for (std::size_t i = 0; i < spans.size(); ++i) {
        if (crossing[i].Inside())
            spans[i].Add(samples[crossing[i].behind - 1 - offset]);
        AddSamples(samples, crossing[i].behind - offset, crossing[i + 1].behind - offset, spans[i]);
    }
}

} // namespace tracelet
