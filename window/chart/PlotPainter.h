#pragma once

#include "core/chart/AxisTicks.h"
#include "core/chart/ColumnRaster.h"
#include "core/chart/ColumnSpans.h"

#include <QImage>

#include <cstdint>
#include <vector>

class QPainter;

namespace tracelet {

/// What the plot area shows, samples and position apart. Lengths are device pixels.
struct PlotScene {
    struct Trace {
        int plot = 0;
        Joint joint = Joint::Line;
        AxisSpan range;
        Stroke stroke;
    };

    int width = 0;
    int height = 0;
    ColumnGrid grid;
    TickStep timeStep;         ///< of the vertical grid lines
    std::vector<int> gridRows; ///< of the horizontal ones
    std::vector<Trace> traces; ///< visible plots, the topmost last
    std::uint32_t ground = 0;
    std::uint32_t gridColor = 0;
};

/// Keeps the picture of the plot area as a ring of pixel columns, each of which stands for a fixed stretch of
/// time: scrolling only moves where the ring is cut, and only columns whose samples changed are painted.
class PlotPainter {
public:
    /// Paints what changed. A `revision` other than the last one repaints everything.
    void Update(const SampleStore& store, const PlotScene& scene, std::uint64_t revision,
                std::int64_t firstColumn);
    /// Copies the picture to (x, y).
    void Draw(QPainter& painter, int x, int y) const;

private:
    /// Samples of a trace as they were when it was painted last.
    struct Painted {
        std::int64_t first = 0;
        std::int64_t end = 0;
        double firstX = 0;
        double lastX = 0;
        std::int64_t stretches = 0;
    };

    void Restart(const PlotScene& scene);
    void MarkMoved(std::int64_t firstColumn);
    void MarkChanged(const SampleStore& store, const PlotScene& scene);
    void MarkTimes(const ColumnGrid& grid, int margin, double from, double to);
    void Mark(std::int64_t from, std::int64_t to);
    void PaintMarked(const SampleStore& store, const PlotScene& scene);
    void PaintColumns(const SampleStore& store, const PlotScene& scene, std::int64_t column, int count);
    void PaintTrace(const SampleStore& store, const PlotScene& scene, const PlotScene::Trace& trace,
                    std::int64_t column, int at, int count);
    void DrawMarks(const SampleStore& store, const PlotScene::Trace& trace, int foundAt, int at, int count);
    void PaintGround(const PlotScene& scene, std::int64_t column, int at, int count);
    [[nodiscard]] int SlotOf(std::int64_t column) const;

    QImage image;
    Pixels pixels;
    std::uint64_t paintedRevision = 0;
    std::int64_t first = 0; ///< leftmost column of the picture
    std::vector<Painted> painted;
    std::vector<std::uint8_t> marked; ///< by column from `first` on: to be painted
    std::vector<Extent> spans;
    ColumnSpans finder;
};

} // namespace tracelet
