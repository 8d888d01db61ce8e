#pragma once

#include "core/samples/SampleStore.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tracelet {

/// Pixel columns over the time axis: column k spans origin + k * width to origin + (k + 1) * width seconds.
struct ColumnGrid {
    double origin = 0;
    double width = 1; ///< seconds, above 0

    [[nodiscard]] double Edge(std::int64_t column) const {
        return origin + static_cast<double>(column) * width;
    }
    /// Column that holds `x`, kept within Limit either side of 0.
    [[nodiscard]] std::int64_t ColumnOf(double x) const;
    static constexpr std::int64_t Limit = std::int64_t{1} << 52;

    bool operator==(const ColumnGrid&) const = default;
};

enum class Joint { Line, Step };

/// Extent of the finite held samples of `plot` whose times lie within from <= x <= to.
[[nodiscard]] Extent ExtentBetween(const SampleStore& store, int plot, double from, double to);

/// Finds what the trace of a plot covers in each pixel column: the extent of its samples there and of the
/// trace at both edges of the column. A line joins neighbouring samples; a step keeps each sample's value
/// until the next one. Samples that are no numbers, and times that go back, interrupt the trace; a line to or
/// from an infinite sample stands upright at the time of that sample.
class ColumnSpans {
public:
    /// Fills `spans` for the columns from `column` on. Plots that share their times share most of the work
    /// when they are asked for one after the other.
    void Find(const SampleStore& store, int plot, const ColumnGrid& grid, std::int64_t column, Joint joint,
              std::span<Extent> spans);
    /// By column of the last Find: whether more samples fall into it than a single line shows.
    [[nodiscard]] std::span<const std::uint8_t> Crowded() const { return crowded; }

    /// A sample that stands apart from its neighbours.
    struct Apart {
        std::int64_t index = 0;  ///< of the track
        std::int64_t column = 0; ///< counted from the first one of the last Find
    };
    /// Samples of the last Find's plot, in its columns, that are at least `distance` columns away from both
    /// neighbours.
    [[nodiscard]] std::span<const Apart> Separate(double distance);

    /// A column in which a line keeps one value and comes from and goes to no other column.
    struct Lone {
        std::int64_t column = 0; ///< counted from the first one of the last Find
        float value = 0;
    };
    [[nodiscard]] std::span<const Lone> LoneColumns() const { return lone; }

    /// Tells that samples came or went since the last Find.
    void Forget() { track = nullptr; }

private:
    /// Where a stretch crosses the edge of a column.
    struct Crossing {
        std::int64_t behind = 0; ///< first sample not before the edge
        double share = -1;       ///< of the way from the sample before it; below 0: there is none on one side

        [[nodiscard]] bool Inside() const { return share >= 0; }
    };
    void FindApart(const TimeTrack::Stretch& stretch, const Crossing* crossings);
    [[nodiscard]] bool StandsApart(const TimeTrack::Stretch& stretch, std::int64_t index) const;
    void Locate(const TimeTrack& times, std::int64_t first, std::int64_t end, const ColumnGrid& newGrid,
                std::int64_t newColumn, std::size_t count);
    [[nodiscard]] Crossing CrossingAt(const TimeTrack::Stretch& stretch, std::int64_t hint,
                                      double edge) const;
    void JoinLine(const Envelope& samples, std::int64_t offset, const Crossing* crossings,
                  std::span<Extent> spans);
    static void AddUpright(const Envelope& samples, std::int64_t offset, const Crossing* crossings,
                           Extent& span);
    static void JoinStep(const Envelope& samples, std::int64_t offset, const Crossing* crossings,
                         std::span<Extent> spans);

    // What the crossings were found for.
    const TimeTrack* track = nullptr;
    std::int64_t trackFirst = 0;
    std::int64_t trackEnd = 0;
    ColumnGrid grid;
    std::int64_t column = 0;
    std::size_t columnCount = 0;

    std::vector<TimeTrack::Stretch> all;       ///< of the samples asked for
    std::vector<TimeTrack::Stretch> stretches; ///< those that reach into the columns
    std::vector<std::uint8_t> crowded;
    std::vector<Lone> lone;
    std::vector<Apart> apart;
    double apartDistance = 0;        ///< that `apart` was found for; 0: not yet
    std::vector<Crossing> crossings; ///< at each edge, a stretch after the other
};

} // namespace tracelet
