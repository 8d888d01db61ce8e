#include "core/chart/EdgeSigns.h"

#include <algorithm>
#include <cstdlib>

namespace tracelet {

namespace {

/// Rows are counted from an edge.
class EdgePainter {
public:
    EdgePainter(const Pixels& image, const Stroke& line, bool fromBelow)
        : bits(image.bits + (fromBelow ? (image.height - 1) * image.stride : 0)),
          stride(fromBelow ? -image.stride : image.stride), height(image.height), stroke(line) {}

    /// An arrowhead whose tip is span `tip`, as far as it lies in the `count` columns drawn.
    void Arrowhead(int at, int count, int tip) const {
        const int reach = SignReach(stroke);
        for (int column = std::max(0, tip - 2 * reach); column <= std::min(tip, count - 1); ++column)
            for (int row = std::abs(column + reach - tip); row <= std::min(reach, height - 1); ++row)
                bits[row * stride + at + column] = stroke.color;
    }

private:
    std::uint32_t* bits;
    std::ptrdiff_t stride;
    int height;
    const Stroke& stroke;
};

} // namespace

void DrawSigns(const Pixels& pixels, int at, std::span<const Extent> spans, const RowScale& scale,
               const Stroke& stroke) {
    const int count = static_cast<int>(spans.size()) - 2 * SignReach(stroke);
    const double top = scale.top + 0.5 / scale.perUnit;
    const double bottom = top - scale.rowCount / scale.perUnit;
    const EdgePainter above(pixels, stroke, false);
    const EdgePainter below(pixels, stroke, true);
    for (int i = 0; i < static_cast<int>(spans.size()); ++i) {
        const Extent& span = spans[static_cast<std::size_t>(i)];
        if (static_cast<double>(span.high) > top)
            above.Arrowhead(at, count, i);
        if (static_cast<double>(span.low) < bottom)
            below.Arrowhead(at, count, i);
    }
}

} // namespace tracelet
