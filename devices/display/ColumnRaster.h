#pragma once

#include "devices/display/Envelope.h"

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
    [[nodiscard]] double RowOf(double value) const;

    double top = 0;
    double perUnit = 1;
    double rowCount = 1;
};

/// How a trace is drawn.
struct Stroke {
    std::uint32_t color = 0xffffffff; ///< 0xffRRGGBB
    int thickness = 1;                ///< pixels
    bool soft = true;                 ///< neighbours of the outermost pixels are tinted
    /// Dash pattern by pixel, repeated; empty: solid. Flat parts of a trace follow it along the columns,
    /// steep ones along the rows, with their ends always drawn.
    std::vector<std::uint8_t> pattern;
};

/// Dash pattern of a line style (0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot; others solid), `scale`
/// pixels a unit.
[[nodiscard]] std::vector<std::uint8_t> DashPattern(std::int32_t lineStyle, int scale);

/// Draws one trace: span i of the columns from `column` on into the pixel column `at` + i.
void DrawSpans(const Pixels& pixels, int at, std::int64_t column, std::span<const Extent> spans,
               const RowScale& scale, const Stroke& stroke);

} // namespace tracelet
