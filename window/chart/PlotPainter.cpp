#include "window/chart/PlotPainter.h"

#include "core/chart/EdgeSigns.h"
#include "window/chart/ChartFrame.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tracelet {

namespace {

/// Columns painted in one go: as many as keep their pixels in the processor's cache from trace to trace.
constexpr std::size_t TileColumns = 96;

/// Samples so many columns apart, times the thickness of lines, are marked.
constexpr double MarkDistance = 24;

/// Columns on either side that signs need, beside those that the line needs.
int BeyondBeside(const Stroke& stroke) {
    return std::max(0, SignReach(stroke) - stroke.Beside());
}

} // namespace

void PlotPainter::Update(const SampleStore& store, const PlotScene& scene, std::uint64_t revision,
                         std::int64_t firstColumn) {
    finder.Forget();
    const bool sameSize = image.width() == scene.width && image.height() == scene.height;
    if (!sameSize || revision != paintedRevision) {
        Restart(scene);
        first = firstColumn;
        paintedRevision = revision;
        Mark(first, first + scene.width);
    } else
        MarkMoved(firstColumn);
    MarkChanged(store, scene);
    PaintMarked(store, scene);
}

void PlotPainter::Restart(const PlotScene& scene) {
    if (image.width() != scene.width || image.height() != scene.height)
        image = QImage(scene.width, scene.height, QImage::Format_RGB32);
    pixels = {reinterpret_cast<std::uint32_t*>(image.bits()), image.bytesPerLine() / 4, image.width(),
              image.height()};
    marked.assign(static_cast<std::size_t>(scene.width), 0);
    painted.assign(scene.traces.size(), Painted());
}

int PlotPainter::SlotOf(std::int64_t column) const {
    const std::int64_t rest = column % pixels.width;
    return static_cast<int>(rest < 0 ? rest + pixels.width : rest);
}

void PlotPainter::Mark(std::int64_t from, std::int64_t to) {
    const auto width = static_cast<std::int64_t>(marked.size());
    const std::int64_t begin = std::clamp<std::int64_t>(from - first, 0, width);
    const std::int64_t end = std::clamp<std::int64_t>(to - first, begin, width);
    std::fill(marked.begin() + begin, marked.begin() + end, std::uint8_t{1});
}

void PlotPainter::MarkMoved(std::int64_t firstColumn) {
    const std::int64_t old = first;
    first = firstColumn;
    if (first > old)
        Mark(old + pixels.width, first + pixels.width);
    else
        Mark(first, old);
}

void PlotPainter::MarkTimes(const ColumnGrid& grid, int margin, double from, double to) {
    Mark(grid.ColumnOf(from) - margin, grid.ColumnOf(to) + margin + 1);
}

void PlotPainter::MarkChanged(const SampleStore& store, const PlotScene& scene) {
    for (std::size_t i = 0; i < scene.traces.size(); ++i) {
        const PlotScene::Trace& trace = scene.traces[i];
        const int plot = trace.plot;
        Painted& old = painted[i];
        Painted now{store.First(plot), store.End(plot)};
        if (now.first == old.first && now.end == old.end)
            continue;
        if (now.first < now.end) {
            now.firstX = store.X(plot, now.first);
            now.lastX = store.X(plot, now.end - 1);
            now.stretches = store.Track(plot).StretchCount();
        }
        if (old.first >= old.end || now.first >= old.end || now.stretches != old.stretches)
            Mark(first, first + pixels.width);
        else {
            // A sample on the edge of a column reaches into both neighbours, and each column further.
            const int margin = trace.stroke.Before() + BeyondBeside(trace.stroke) + 1;
            if (now.end > old.end)
                MarkTimes(scene.grid, margin, old.lastX, now.lastX);
            if (now.first > old.first)
                MarkTimes(scene.grid, margin, old.firstX, now.firstX);
        }
        old = now;
    }
}

void PlotPainter::PaintMarked(const SampleStore& store, const PlotScene& scene) {
    const std::size_t width = marked.size();
    for (std::size_t i = 0; i < width;) {
        if (marked[i] == 0) {
            ++i;
            continue;
        }
        const std::int64_t column = first + static_cast<std::int64_t>(i);
        const std::size_t most =
            std::min(static_cast<std::size_t>(pixels.width - SlotOf(column)), TileColumns);
        std::size_t end = i;
        while (end < width && end - i < most && marked[end] != 0)
            marked[end++] = 0;
        PaintColumns(store, scene, column, static_cast<int>(end - i));
        i = end;
    }
}

void PlotPainter::PaintColumns(const SampleStore& store, const PlotScene& scene, std::int64_t column,
                               int count) {
    const int at = SlotOf(column);
    PaintGround(scene, column, at, count);
    for (const PlotScene::Trace& trace : scene.traces)
        PaintTrace(store, scene, trace, column, at, count);
}

void PlotPainter::PaintTrace(const SampleStore& store, const PlotScene& scene, const PlotScene::Trace& trace,
                             std::int64_t column, int at, int count) {
    const auto thickness = static_cast<std::size_t>(trace.stroke.thickness);
    const int beyond = BeyondBeside(trace.stroke);
    const int before = trace.stroke.Before() + beyond;
    const int found = before + count + trace.stroke.Beside() + beyond;
    spans.resize(static_cast<std::size_t>(found));
    finder.Find(store, trace.plot, scene.grid, column - before, trace.joint, spans);
    if (store.Count(trace.plot) == 0)
        return;
    // A line is as thick along the columns as along the rows.
    for (std::size_t i = 0; thickness > 1 && i + thickness <= spans.size(); ++i)
        for (std::size_t next = 1; next < thickness; ++next)
            spans[i].Add(spans[i + next]);
    const auto around = std::span(spans).first(spans.size() - (thickness - 1));
    const auto shown = [&](int beside) { // the columns drawn and so many on either side
        const auto left = static_cast<std::size_t>(trace.stroke.Beside() + beyond - beside);
        return around.subspan(left, around.size() - 2 * left);
    };
    const RowScale scale(trace.range.low, trace.range.high, scene.height);
    DrawSpans(pixels, at, column, shown(trace.stroke.Beside()),
              finder.Crowded().subspan(static_cast<std::size_t>(before)), scale, trace.stroke);
    if (trace.joint != Joint::Line)
        return;
    DrawMarks(store, trace, at - before, at, count);
    // Traces that stay away together take turns.
    const std::int64_t turn = std::int64_t{5} * trace.plot * trace.stroke.thickness;
    DrawSigns(pixels, at, column + turn, shown(SignReach(trace.stroke)), scale, trace.stroke);
}

void PlotPainter::DrawMarks(const SampleStore& store, const PlotScene::Trace& trace, int foundAt, int at,
                            int count) {
    const RowScale scale(trace.range.low, trace.range.high, pixels.height);
    const auto draw = [&](std::int64_t column, float value) {
        DrawMark(pixels, foundAt + static_cast<int>(column), at, at + count, value, scale, trace.stroke);
    };
    for (const ColumnSpans::Apart& apart : finder.Separate(MarkDistance * trace.stroke.thickness)) {
        const float value = store.Samples(trace.plot)[apart.index - store.TrackOffset(trace.plot)];
        if (!std::isnan(value))
            draw(apart.column, value);
    }
    for (const ColumnSpans::Lone& lone : finder.LoneColumns())
        draw(lone.column, lone.value);
}

void PlotPainter::PaintGround(const PlotScene& scene, std::int64_t column, int at, int count) {
    for (int row = 0; row < pixels.height; ++row)
        std::fill_n(pixels.bits + row * pixels.stride + at, count, scene.ground);
    for (const int row : scene.gridRows)
        std::fill_n(pixels.bits + row * pixels.stride + at, count, scene.gridColor);
    const TickRange ticks =
        TicksWithin(scene.grid.Edge(column), scene.grid.Edge(column + count), scene.timeStep);
    for (std::int64_t tick = ticks.first; tick <= ticks.last; ++tick) {
        const std::int64_t offset =
            scene.grid.ColumnOf(scene.timeStep.At(tick) + scene.grid.width * 1e-6) - column;
        if (offset < 0 || offset >= count)
            continue;
        std::uint32_t* cell = pixels.bits + at + offset;
        for (int row = 0; row < pixels.height; ++row, cell += pixels.stride)
            *cell = scene.gridColor;
    }
}

void PlotPainter::Draw(QPainter& painter, int x, int y) const {
    const int cut = SlotOf(first);
    if (cut > 0 && KeepsVectors(painter)) { // where two images side by side would show a seam
        QImage whole(image.size(), image.format());
        QPainter pixelPainter(&whole);
        Draw(pixelPainter, 0, 0);
        pixelPainter.end();
        painter.drawImage(x, y, whole);
        return;
    }
    painter.drawImage(x, y, image, cut, 0, pixels.width - cut, pixels.height);
    if (cut > 0)
        painter.drawImage(x + pixels.width - cut, y, image, 0, 0, cut, pixels.height);
}

} // namespace tracelet
