#include "devices/display/ColumnSpans.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tracelet {

namespace {

double Finite(float value) {
    constexpr float most = std::numeric_limits<float>::max();
    return static_cast<double>(std::isnan(value) ? value : std::clamp(value, -most, most));
}

/// The straight line between two neighbouring samples.
class Segment {
public:
    Segment(double startX, double startY, double endX, double endY)
        : x(startX), y(startY), lastX(endX), lastY(endY), slope((endY - startY) / (endX - startX)) {}

    [[nodiscard]] float At(double time) const {
        const double value = time >= lastX ? lastY : y + (time - x) * slope;
        return static_cast<float>(lastY >= y ? std::clamp(value, y, lastY) : std::clamp(value, lastY, y));
    }
    [[nodiscard]] bool Broken() const { return !std::isfinite(slope); }

private:
    double x;
    double y;
    double lastX;
    double lastY;
    double slope;
};

} // namespace

std::int64_t ColumnGrid::ColumnOf(double x) const {
    const double position = std::floor((x - origin) / width);
    constexpr auto most = static_cast<double>(limit);
    if (std::isnan(position))
        return 0;
    return static_cast<std::int64_t>(std::clamp(position, -most, most));
}

Extent ExtentBetween(const SampleStore& store, int plot, double from, double to) {
    Extent extent;
    if (store.Count(plot) == 0)
        return extent;
    const TimeTrack& track = store.Track(plot);
    const std::int64_t offset = store.TrackOffset(plot);
    const double beyond = std::nextafter(to, std::numeric_limits<double>::infinity());
    std::vector<TimeTrack::Stretch> stretches;
    track.Stretches(store.First(plot) + offset, store.End(plot) + offset, stretches);
    for (const TimeTrack::Stretch& stretch : stretches) {
        const std::int64_t first = track.LowerBound(stretch, from);
        const std::int64_t end = track.LowerBoundFrom(first, stretch, beyond);
        extent.Add(store.Samples(plot).Range(first - offset, end - offset));
    }
    return extent;
}

void ColumnSpans::Find(const SampleStore& store, int plot, const ColumnGrid& newGrid, std::int64_t newColumn,
                       Joint joint, std::span<Extent> spans) {
    std::ranges::fill(spans, Extent{});
    const std::int64_t first = store.First(plot);
    const std::int64_t end = store.End(plot);
    if (first >= end || spans.empty())
        return;
    const std::int64_t offset = store.TrackOffset(plot);
    Locate(store.Track(plot), first + offset, end + offset, newGrid, newColumn, spans.size());
    const std::int64_t* next = bounds.data();
    for (const TimeTrack::Stretch& stretch : stretches) {
        if (joint == Joint::Line)
            JoinLine(store.Samples(plot), offset, stretch, next, spans);
        else
            JoinStep(store.Samples(plot), offset, stretch, next, spans);
        next += spans.size() + 1;
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
    bounds.clear();
    const double left = grid.Edge(column);
    const double right = grid.Edge(column + static_cast<std::int64_t>(count));
    for (const TimeTrack::Stretch& stretch : all) {
        if (times.X(stretch.first) > right || times.X(stretch.end - 1) < left)
            continue;
        stretches.push_back(stretch);
        std::int64_t bound = stretch.first;
        for (std::size_t i = 0; i <= count; ++i) {
            bound = times.LowerBoundFrom(bound, stretch, grid.Edge(column + static_cast<std::int64_t>(i)));
            bounds.push_back(bound);
        }
    }
}

void ColumnSpans::JoinLine(const Envelope& samples, std::int64_t offset, const TimeTrack::Stretch& stretch,
                           const std::int64_t* bound, std::span<Extent> spans) const {
    Segment segment(0, 0, 1, 0);
    std::int64_t segmentEnd = -1;
    for (std::size_t i = 0; i <= spans.size(); ++i) {
        const std::int64_t here = bound[i];
        if (i < spans.size() && bound[i + 1] > here)
            spans[i].Add(samples.Range(here - offset, bound[i + 1] - offset));
        if (here <= stretch.first || here >= stretch.end)
            continue;
        if (here != segmentEnd) {
            segmentEnd = here;
            segment = Segment(track->X(here - 1), Finite(samples[here - 1 - offset]), track->X(here),
                              Finite(samples[here - offset]));
        }
        if (segment.Broken())
            continue;
        const float value = segment.At(grid.Edge(column + static_cast<std::int64_t>(i)));
        if (i > 0)
            spans[i - 1].Add(value);
        if (i < spans.size())
            spans[i].Add(value);
    }
}

void ColumnSpans::JoinStep(const Envelope& samples, std::int64_t offset, const TimeTrack::Stretch& stretch,
                           const std::int64_t* bound, std::span<Extent> spans) const {
    for (std::size_t i = 0; i < spans.size(); ++i) {
        const std::int64_t here = bound[i];
        if (bound[i + 1] > here)
            spans[i].Add(samples.Range(here - offset, bound[i + 1] - offset));
        if (here > stretch.first && here < stretch.end)
            spans[i].Add(samples[here - 1 - offset]);
    }
}

} // namespace tracelet
