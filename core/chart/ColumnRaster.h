#pragma once

#include "core/samples/Envelope.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace tracelet {

/// 32-bit pixels 0xffRRGGBB of an image, row by row.
struct Pixels {
    std::uint32_t* bits = nullptr;
    std::ptrdiff_t stride = 0; ///< pixels from one row to the next
    int width = 0;
    int height = 0;
};

/// Rows of values: `high` at the middle of row 0, `low` at the middle of the last one.
struct RowScale {
    RowScale(double low, double high, int rows);
    /// Distance from the upper edge of row 0; kept near the image.
    [[nodiscard]] double RowOf(double value) const {
        const double row = (top - value) * perUnit + 0.5;
        return std::min(rowCount + Margin, std::max(-Margin, row));
    }

    static constexpr double Margin = 64; ///< rows beyond the image that are told apart
    double top = 0;
    double perUnit = 1;
    double rowCount = 1;
};

/// How a trace is drawn.
struct Stroke {
    std::uint32_t color = 0xffffffff; ///< 0xffRRGGBB
    int thickness = 1;                ///< pixels, at most 4
    bool soft = true;                 ///< neighbours of the outermost pixels are tinted
    /// Dash pattern by pixel, repeated; empty: solid. Flat parts of a trace follow it along the columns.
    /// Steep parts follow it along the rows, with their ends always drawn; where samples crowd, along the
    /// columns, and what the pattern leaves out is dimmed instead. A column that goes well beyond those
    /// beside it is drawn in full, so that no spike gets lost.
    std::vector<std::uint8_t> pattern;

    /// Columns on either side of one that decide how it is drawn: no fewer than a sample and the lines to it
    /// cover where samples are a column apart.
    [[nodiscard]] int Beside() const { return thickness + 2; }
    /// Columns that are needed ahead of those drawn: a line is as thick along the columns as along the rows.
    [[nodiscard]] int Before() const { return Beside() + thickness - 1; }
};

/// How thick lines are on a chart of this size, all in device pixels: a logical pixel, `scale` of them, and
/// more where that would be a hair on so large a chart.
[[nodiscard]] int LineThickness(double scale, int width, int height);

/// Dash pattern of a line style (0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot; others solid), `scale`
/// pixels a unit.
[[nodiscard]] std::vector<std::uint8_t> DashPattern(std::int32_t lineStyle, int scale);

/// Draws one trace into the pixel columns from `at` on, the first of which is time column `column`. `spans`
/// are of the columns drawn and of stroke.Beside() more on either side; `crowded` tells of each column drawn
/// whether more samples fall into it than a single line shows.
void DrawSpans(const Pixels& pixels, int at, std::int64_t column, std::span<const Extent> spans,
               std::span<const std::uint8_t> crowded, const RowScale& scale, const Stroke& stroke);

/// Draws the mark of a single sample, a square about its pixel; `from` and `to` bound the columns drawn.
void DrawMark(const Pixels& pixels, int x, int from, int to, float value, const RowScale& scale,
              const Stroke& stroke);

} // namespace tracelet
