#include "core/chart/EdgeSigns.h"

#include <algorithm>
#include <cstdlib>

namespace tracelet {

namespace {

/// Columns from one arrowhead to the next, times the thickness of lines.
constexpr std::int64_t Period = 16;

/// An arrowhead at an edge, its tip in column `tip` of the `count` ones drawn from `at` on, or beside them.
void DrawArrowhead(const Pixels& pixels, int at, int count, int tip, bool fromBelow, const Stroke& stroke) {
    const int reach = SignReach(stroke) - 1;
    for (int column = std::max(0, tip - reach); column <= std::min(tip + reach, count - 1); ++column)
        for (int row = std::abs(column - tip); row <= std::min(reach, pixels.height - 1); ++row)
            pixels.bits[(fromBelow ? pixels.height - 1 - row : row) * pixels.stride + at + column] =
                stroke.color;
}

} // namespace

void DrawSigns(const Pixels& pixels, int at, std::int64_t column, std::span<const Extent> spans,
               const RowScale& scale, const Stroke& stroke) {
    const int beside = SignReach(stroke);
    const int count = static_cast<int>(spans.size()) - 2 * beside;
    const double top = scale.top + 0.5 / scale.perUnit;
    const double bottom = top - scale.rowCount / scale.perUnit;
    bool wasAbove = false;
    bool wasBelow = false;
    for (int tip = -beside; tip < count + beside; ++tip) {
        const Extent& span = spans[static_cast<std::size_t>(tip) + static_cast<std::size_t>(beside)];
        const bool isAbove = static_cast<double>(span.high) > top;
        const bool isBelow = static_cast<double>(span.low) < bottom;
        const auto isDue = [&] { return (column + tip) % (Period * stroke.thickness) == 0; };
        if (isAbove && (!wasAbove || isDue()))
            DrawArrowhead(pixels, at, count, tip, false, stroke);
        if (isBelow && (!wasBelow || isDue()))
            DrawArrowhead(pixels, at, count, tip, true, stroke);
        wasAbove = isAbove;
        wasBelow = isBelow;
    }
}

} // namespace tracelet
