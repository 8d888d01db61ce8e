#pragma once

#include "core/chart/ColumnRaster.h"

namespace tracelet {

/// Columns on either side of one whose trace decides what is drawn there.
[[nodiscard]] constexpr int SignReach(const Stroke& stroke) {
    return 4 * stroke.thickness - 1;
}

/// Draws a small arrowhead, in the trace's colour, at the upper or lower edge of each column in which the
/// trace leaves the rows there by more than half a row. Columns are drawn from `at` on; `spans` are theirs
/// and of SignReach more on either side.
void DrawSigns(const Pixels& pixels, int at, std::span<const Extent> spans, const RowScale& scale,
               const Stroke& stroke);

} // namespace tracelet
