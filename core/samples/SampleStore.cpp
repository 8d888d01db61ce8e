#include "core/samples/SampleStore.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

namespace tracelet {

namespace {

constexpr std::int64_t TrackSlack = 1024; ///< shared times are dropped this many at a time
constexpr double Single = -1;             ///< step of a sample that stands alone

float ToFloat(float value) {
    return value;
}
float ToFloat(std::int32_t value) {
    return static_cast<float>(value);
}
float ToFloat(double value) {
    constexpr double most = std::numeric_limits<float>::max();
    if (value > most)
        return std::numeric_limits<float>::infinity();
    if (value < -most)
        return -std::numeric_limits<float>::infinity();
    return static_cast<float>(value);
}

constexpr std::int64_t LaneCount = 4; ///< channels that are taken apart in one go
using Lanes [[gnu::vector_size(LaneCount * sizeof(float))]] = float;
using Columns = std::array<std::array<float, SampleStore::TileSize>, LaneCount>;

// Lanes of two vectors by turns: of their first halves, of their last halves.
Lanes FirstHalves(Lanes a, Lanes b) {
    return __builtin_shufflevector(a, b, 0, 4, 1, 5);
}
Lanes LastHalves(Lanes a, Lanes b) {
    return __builtin_shufflevector(a, b, 2, 6, 3, 7);
}

/// Four scans of four channels become four samples of each channel.
void Transpose(Lanes (&rows)[LaneCount]) {
    const Lanes a = FirstHalves(rows[0], rows[2]);
    const Lanes b = FirstHalves(rows[1], rows[3]);
    const Lanes c = LastHalves(rows[0], rows[2]);
    const Lanes d = LastHalves(rows[1], rows[3]);
    rows[0] = FirstHalves(a, b);
    rows[1] = LastHalves(a, b);
    rows[2] = FirstHalves(c, d);
    rows[3] = LastHalves(c, d);
}

/// Takes the first four of `channels` channels apart.
template <typename Value>
void TakeApart(const Value* values, std::int64_t channels, std::int64_t count, Columns& columns) {
    std::int64_t scan = 0;
    if constexpr (std::is_same_v<Value, float>)
        for (; scan + LaneCount <= count; scan += LaneCount, values += LaneCount * channels) {
            Lanes rows[LaneCount];
            for (std::int64_t i = 0; i < LaneCount; ++i)
                std::memcpy(&rows[i], values + i * channels, sizeof(Lanes));
            Transpose(rows);
            for (std::size_t i = 0; i < columns.size(); ++i)
                std::memcpy(&columns[i][static_cast<std::size_t>(scan)], &rows[i], sizeof(Lanes));
        }
    for (; scan < count; ++scan, values += channels)
        for (std::size_t i = 0; i < columns.size(); ++i)
            columns[i][static_cast<std::size_t>(scan)] = ToFloat(values[i]);
}

/// Appends every `stride`th of the values.
template <typename Value>
void AppendColumn(Envelope& samples, const Value* values, std::int64_t stride, std::int64_t count) {
    while (count > 0) {
        std::int64_t room = 0;
        float* cells = samples.Room(count, room);
        for (std::int64_t i = 0; i < room; ++i, values += stride)
            cells[i] = ToFloat(*values);
        samples.Appended(room);
        count -= room;
    }
}

} // namespace

void SampleStore::AddPlot() {
    plots.emplace_back();
}

void SampleStore::RemovePlots() {
    plots.clear();
    newest.reset();
}

void SampleStore::Clear() {
    for (PlotData& plot : plots)
        plot = PlotData();
    newest.reset();
}

double SampleStore::X(int plot, std::int64_t index) const {
    const PlotData& data = Of(plot);
    return data.track->X(index + data.offset);
}

SampleStore::Point SampleStore::At(int plot, std::int64_t position) const {
    const std::int64_t index = First(plot) + position;
    return {X(plot, index), static_cast<double>(Of(plot).samples[index])};
}

void SampleStore::SetLimit(std::int64_t points) {
    limit = std::max<std::int64_t>(points, 0);
}

void SampleStore::DropSurplus() {
    for (PlotData& plot : plots)
        Trim(plot, 0);
    TrimTracks();
}

bool SampleStore::SumUpMoments(std::int64_t most) {
    std::int64_t left = most >> MomentPyramid::BucketBits;
    for (PlotData& plot : plots)
        if (plot.track && left > 0)
            left -= plot.moments.SumUp(plot.Timed(), left);
    return left <= 0;
}

std::vector<TimeTrack::Stretch> SampleStore::Between(int plot, double from, double to) const {
    std::vector<TimeTrack::Stretch> found;
    if (Count(plot) == 0)
        return found;
    const auto& [samples, track, offset] = Of(plot).Timed();
    const double beyond = std::nextafter(to, std::numeric_limits<double>::infinity());
    track.Stretches(samples.First() + offset, samples.End() + offset, found);
    for (TimeTrack::Stretch& stretch : found) {
        const std::int64_t first = track.LowerBound(stretch, from);
        stretch = {first - offset, track.LowerBoundFrom(first, stretch, beyond) - offset};
    }
    std::erase_if(found, [](const TimeTrack::Stretch& run) { return run.first >= run.end; });
    return found;
}

std::size_t SampleStore::HeldBytes() const {
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < plots.size(); ++i) {
        bytes += plots[i].samples.HeldBytes() + plots[i].moments.HeldBytes();
        const bool counted = i > 0 && plots[i].track == plots[i - 1].track;
        if (plots[i].track && !counted)
            bytes += plots[i].track->HeldBytes();
    }
    return bytes;
}

template <typename Value>
void SampleStore::AppendEven(double start, double step, std::int64_t count, std::int64_t channels,
                             const Value* values) {
    const auto touched = std::span(plots).first(
        static_cast<std::size_t>(std::min(channels, static_cast<std::int64_t>(plots.size()))));
    Prepare(touched, count);
    for (PlotData& plot : touched)
        Place(plot, start, step, count);
    std::size_t next = 0;
    Columns columns; // left as it is: filled before use
    for (; next + columns.size() <= touched.size(); next += columns.size(), values += columns.size()) {
        TakeApart(values, channels, count, columns);
        for (std::size_t i = 0; i < columns.size(); ++i)
            AppendColumn(touched[next + i].samples, columns[i].data(), 1, count);
    }
    for (; next < touched.size(); ++next)
        AppendColumn(touched[next].samples, values++, channels, count);
    for (PlotData& plot : touched)
        Trim(plot, 0);
    Finish(count);
}

template void SampleStore::AppendEven(double, double, std::int64_t, std::int64_t, const float*);
template void SampleStore::AppendEven(double, double, std::int64_t, std::int64_t, const std::int32_t*);
template void SampleStore::AppendEven(double, double, std::int64_t, std::int64_t, const double*);

void SampleStore::AppendScan(double x, std::span<const float> values) {
    const auto touched = std::span(plots).first(std::min(values.size(), plots.size()));
    Prepare(touched, 1);
    for (PlotData& plot : touched)
        Place(plot, x, Single, 1);
    const float* value = values.data();
    for (PlotData& plot : touched)
        plot.samples.Append(*value++);
    Finish(1);
}

void SampleStore::AppendPoint(int plot, double x, double y) {
    PlotData& data = plots[static_cast<std::size_t>(plot)];
    Prepare({&data, 1}, 1);
    Place(data, x, Single, 1);
    data.samples.Append(ToFloat(y));
    Finish(1);
}

void SampleStore::Prepare(std::span<PlotData> touched, std::int64_t coming) {
    bool grows = false;
    for (PlotData& plot : touched) {
        Trim(plot, coming);
        grows = grows || plot.samples.Grows(coming);
    }
    if (grows && HeldBytes() > budget) // it asks every plot: once for all of them
        throw std::bad_alloc();
    for (PlotData& plot : touched)
        plot.samples.Reserve(coming);
}

void SampleStore::Trim(PlotData& plot, std::int64_t coming) const {
    if (limit > 0)
        plot.samples.DropBefore(plot.samples.End() + coming - limit);
}

std::shared_ptr<SampleStore::SharedTrack> SampleStore::NewTrack(TimeTrack track, std::uint64_t from) {
    return std::make_shared<SharedTrack>(std::move(track), ++serials, from);
}

/// Sees to it that the plot's track holds the times of its next `count` samples.
void SampleStore::Place(PlotData& plot, double start, double step, std::int64_t count) {
    const std::int64_t end = plot.samples.End();
    const bool empty = plot.samples.First() == end;
    if (empty && newest && newest != plot.track &&
        newest->Matches(newest->End() - count, start, step, count)) {
        plot.track = newest;
        plot.offset = newest->End() - count - end;
        return;
    }
    if (!plot.track)
        plot.track = NewTrack(TimeTrack(end + plot.offset), 0);
    if (end + plot.offset != plot.track->End()) {
        if (plot.track->Matches(end + plot.offset, start, step, count))
            return;
        const bool othersWentOn = newest && newest->splitFrom == plot.track->serial &&
                                  newest->First() <= plot.samples.First() + plot.offset &&
                                  newest->Matches(end + plot.offset, start, step, count);
        if (othersWentOn) {
            plot.track = newest;
            return;
        }
        Split(plot);
    }
    plot.track->Reserve(step < 0 ? count : 0);
    if (step < 0)
        plot.track->AppendOne(start);
    else
        plot.track->AppendEven(start, step, count);
    newest = plot.track;
}

void SampleStore::Split(PlotData& plot) {
    const std::int64_t from = plot.samples.First() + plot.offset;
    const std::int64_t to = plot.samples.End() + plot.offset;
    plot.track = NewTrack(plot.track->Part(from, to), plot.track->serial);
}

void SampleStore::Finish(std::int64_t appended) {
    untrimmed += appended;
    if (untrimmed >= TrackSlack)
        TrimTracks();
}

void SampleStore::TrimTracks() {
    untrimmed = 0;
    for (PlotData& plot : plots) {
        if (!plot.track)
            continue;
        // A plot that gets no more points must not make the others keep all their times.
        if (limit > 0 && plot.track->End() - plot.samples.End() - plot.offset > limit + TrackSlack)
            Split(plot);
        plot.track->needed = plot.track->End();
    }
    for (const PlotData& plot : plots)
        if (plot.track)
            plot.track->needed = std::min(plot.track->needed, plot.samples.First() + plot.offset);
    for (const PlotData& plot : plots)
        if (plot.track)
            plot.track->DropBefore(plot.track->needed);
}

} // namespace tracelet
