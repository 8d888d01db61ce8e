#pragma once

#include "core/chart/ColumnRaster.h"

namespace tracelet {

/// Columns on either side of one whose trace decides what is drawn there.
[[nodiscard]] constexpr int SignReach(const Stroke& stroke) {
    return 4 * stroke.thickness;
}

/// Where a trace leaves the rows by more than half a row, draws small arrowheads in its colour at the upper
/// or lower edge: over the first such column and, as long as it stays away, at regular times. Columns are
/// drawn from `at` on, the first of which is time column `column`; `spans` are theirs and of SignReach more
/// on either side.
void DrawSigns(const Pixels& pixels, int at, std::int64_t column, std::span<const Extent> spans,
               const RowScale& scale, const Stroke& stroke);

} // namespace tracelet
