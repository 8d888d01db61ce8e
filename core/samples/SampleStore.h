#pragma once

#include "core/samples/Envelope.h"
#include "core/samples/Moments.h"
#include "core/samples/TimeTrack.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace tracelet {

/// The points of all plots of a chart: a bounded number of newest ones each. Plots whose points come at the
/// same times share those times.
///
/// Appends throw std::bad_alloc when memory, or the budget, does not suffice; nothing is appended then.
class SampleStore {
public:
    struct Point {
        double x = 0; ///< seconds
        double y = 0;
    };

    [[nodiscard]] int PlotCount() const { return static_cast<int>(plots.size()); }
    void AddPlot();
    void RemovePlots();

    [[nodiscard]] std::int64_t Count(int plot) const { return End(plot) - First(plot); }
    /// Point `position` of the held ones, 0 the oldest.
    [[nodiscard]] Point At(int plot, std::int64_t position) const;

    /// Newest points kept a plot, 0: all. Points beyond it go when the next ones come, so that what is drawn
    /// can be looked at closely.
    void SetLimit(std::int64_t points);
    /// Drops points beyond the limit at once.
    void DropSurplus();

    /// Bytes that the chart may hold; more is out of memory.
    void SetBudget(std::size_t bytes) { budget = bytes; }
    [[nodiscard]] std::size_t HeldBytes() const;

    /// Removes all points; plots stay.
    void Clear();

    /// Largest number of scans that one AppendEven takes.
    static constexpr std::int64_t TileSize = 256;

    /// Appends `count` (at most TileSize) scans of `channels` values each, channel-interleaved, to the first
    /// plots; the first stands at `start` seconds, each further one `step` (>= 0) behind.
    template <typename Value>
    void AppendEven(double start, double step, std::int64_t count, std::int64_t channels,
                    const Value* values);

    /// One value for each of the first `values.size()` plots, at time `x`.
    void AppendScan(double x, std::span<const float> values);
    void AppendPoint(int plot, double x, double y);

    // What drawing needs. Indices of samples are absolute: they count from the plot's first point ever.
    [[nodiscard]] const Envelope& Samples(int plot) const { return Of(plot).samples; }
    [[nodiscard]] std::int64_t First(int plot) const { return Of(plot).samples.First(); }
    [[nodiscard]] std::int64_t End(int plot) const { return Of(plot).samples.End(); }
    /// Sums up the moments of at most about `most` samples that MomentsIn would have to read; returns whether
    /// any are left. Throws std::bad_alloc, MomentsIn as good as before.
    bool SumUpMoments(std::int64_t most);
    /// Moments of the held samples first <= index < end, between which time does not go back.
    [[nodiscard]] Moments MomentsIn(int plot, std::int64_t first, std::int64_t end) const {
        return Of(plot).moments.Range(Of(plot).Timed(), first, end);
    }
    /// The held samples whose times lie within from <= x <= to, by index, a run a stretch of time.
    [[nodiscard]] std::vector<TimeTrack::Stretch> Between(int plot, double from, double to) const;
    [[nodiscard]] const TimeTrack& Track(int plot) const { return *Of(plot).track; }
    /// Index in the track of the sample 0 of the plot.
    [[nodiscard]] std::int64_t TrackOffset(int plot) const { return Of(plot).offset; }
    [[nodiscard]] double X(int plot, std::int64_t index) const;

private:
    struct SharedTrack : TimeTrack {
        using TimeTrack::TimeTrack;
        SharedTrack(TimeTrack track, std::uint64_t ownSerial, std::uint64_t from)
            : TimeTrack(std::move(track)), serial(ownSerial), splitFrom(from) {}
        std::uint64_t serial = 0;
        std::int64_t needed = 0;     ///< oldest time that a plot needs
        std::uint64_t splitFrom = 0; ///< serial of the track that it was copied from
    };
    struct PlotData {
        Envelope samples;
        MomentPyramid moments;
        std::int64_t offset = 0;
        std::shared_ptr<SharedTrack> track;

        [[nodiscard]] TimedSamples Timed() const { return {samples, *track, offset}; }
    };

    [[nodiscard]] const PlotData& Of(int plot) const { return plots[static_cast<std::size_t>(plot)]; }
    [[nodiscard]] std::shared_ptr<SharedTrack> NewTrack(TimeTrack track, std::uint64_t from);
    void Prepare(std::span<PlotData> touched, std::int64_t coming);
    void Place(PlotData& plot, double start, double step, std::int64_t count);
    void Split(PlotData& plot);
    void Trim(PlotData& plot, std::int64_t coming) const;
    void Finish(std::int64_t appended);
    void TrimTracks();

    std::vector<PlotData> plots;
    std::shared_ptr<SharedTrack> newest; ///< track that was appended to last
    std::int64_t limit = 0;
    std::int64_t untrimmed = 0; ///< samples appended since the tracks were trimmed
    std::uint64_t serials = 0;
    std::size_t budget = SIZE_MAX;
};

} // namespace tracelet
