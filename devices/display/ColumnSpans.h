#pragma once

#include "devices/display/SampleStore.h"

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
    /// Column that holds `x`, kept within limit either side of 0.
    [[nodiscard]] std::int64_t ColumnOf(double x) const;
    static constexpr std::int64_t limit = std::int64_t{1} << 52;

    bool operator==(const ColumnGrid&) const = default;
};

enum class Joint { Line, Step };

/// Extent of the held samples of `plot` whose times lie within from <= x <= to.
[[nodiscard]] Extent ExtentBetween(const SampleStore& store, int plot, double from, double to);

/// Finds what the trace of a plot covers in each pixel column: the extent of its samples there and of the
/// trace at both edges of the column. A line joins neighbouring samples; a step keeps each sample's value
/// until the next one. Samples that are no numbers, and times that go back, interrupt the trace.
class ColumnSpans {
public:
    /// Fills `spans` for the columns from `column` on. Plots that share their times share most of the work
    /// when they are asked for one after the other.
    void Find(const SampleStore& store, int plot, const ColumnGrid& grid, std::int64_t column, Joint joint,
              std::span<Extent> spans);
    /// Tells that samples came or went since the last Find.
    void Forget() { track = nullptr; }

private:
    void Locate(const TimeTrack& times, std::int64_t first, std::int64_t end, const ColumnGrid& newGrid,
                std::int64_t newColumn, std::size_t count);
    void JoinLine(const Envelope& samples, std::int64_t offset, const TimeTrack::Stretch& stretch,
                  const std::int64_t* bounds, std::span<Extent> spans) const;
    void JoinStep(const Envelope& samples, std::int64_t offset, const TimeTrack::Stretch& stretch,
                  const std::int64_t* bounds, std::span<Extent> spans) const;

    // What the bounds were found for.
    const TimeTrack* track = nullptr;
    std::int64_t trackFirst = 0;
    std::int64_t trackEnd = 0;
    ColumnGrid grid;
    std::int64_t column = 0;
    std::size_t columnCount = 0;

    std::vector<TimeTrack::Stretch> all;       ///< of the samples asked for
    std::vector<TimeTrack::Stretch> stretches; ///< those that reach into the columns
    std::vector<std::int64_t> bounds; ///< a stretch after the other: first sample behind each column edge
};

} // namespace tracelet
