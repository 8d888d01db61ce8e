#include "devices/display/ColumnRaster.h"

#include <algorithm>
#include <cmath>

namespace tracelet {

namespace {

std::uint32_t Mixed(std::uint32_t under, std::uint32_t over, unsigned share) {
    // share of `over` in 256ths; red and blue in one go, then green
    const std::uint32_t redBlue =
        ((under & 0xff00ffU) * (256 - share) + (over & 0xff00ffU) * share) >> 8 & 0xff00ffU;
    const std::uint32_t green = ((under & 0xff00U) * (256 - share) + (over & 0xff00U) * share) >> 8 & 0xff00U;
    return 0xff000000U | redBlue | green;
}

/// Rows that a span covers, before clipping, and how much of the rows beside it, in 256ths.
struct RowSpan {
    int top = 0;
    int bottom = 0;
    int softTop = 0;
    int softBottom = 0;
};

/// Whole 256ths of a row; RowOf keeps the sum above 0, where cutting off the fraction is rounding down.
int FixedRow(double row) {
    constexpr int lift = 256;
    return static_cast<int>((row + lift) * 256) - lift * 256;
}

RowSpan RowsOf(const Extent& extent, const RowScale& scale, int thickness) {
    const double shift = (thickness - 1) * 0.5;
    const int upper = FixedRow(scale.RowOf(static_cast<double>(extent.high)) - shift);
    const int lower = FixedRow(scale.RowOf(static_cast<double>(extent.low)) - shift);
    return {upper >> 8, (lower >> 8) + thickness - 1, 128 - (upper & 255), (lower & 255) - 128};
}

constexpr int dimShare = 90; ///< 256ths of the colour that parts left out of a crowded trace keep

class SpanPainter {
public:
    SpanPainter(const Pixels& image, const Stroke& line) : pixels(image), stroke(line) {}

    void Solid(int x, const RowSpan& rows) const {
        const int top = std::max(rows.top, 0);
        const int bottom = std::min(rows.bottom, pixels.height - 1);
        std::uint32_t* cell = At(x, top);
        for (int row = top; row <= bottom; ++row, cell += pixels.stride)
            *cell = stroke.color;
        if (!stroke.soft)
            return;
        Tint(x, rows.top - 1, rows.softTop);
        Tint(x, rows.bottom + 1, rows.softBottom);
    }

    void Steep(int x, const RowSpan& rows, bool upperPeak, bool lowerPeak) const {
        const int top = std::max(rows.top, 0);
        const int bottom = std::min(rows.bottom, pixels.height - 1);
        const int upperEnd = upperPeak ? rows.top + stroke.thickness : rows.top;
        const int lowerEnd = lowerPeak ? rows.bottom - stroke.thickness : rows.bottom;
        const auto period = static_cast<int>(stroke.pattern.size());
        for (int row = top; row <= bottom; ++row) {
            const bool peak = row < upperEnd || row > lowerEnd;
            if (peak || stroke.pattern[static_cast<std::size_t>(row % period)] != 0)
                *At(x, row) = stroke.color;
        }
    }

    void Dimmed(int x, const RowSpan& rows) const {
        const int bottom = std::min(rows.bottom, pixels.height - 1);
        for (int row = std::max(rows.top, 0); row <= bottom; ++row)
            Tint(x, row, dimShare);
    }

private:
    [[nodiscard]] std::uint32_t* At(int x, int row) const { return pixels.bits + row * pixels.stride + x; }

    void Tint(int x, int row, int share) const {
        if (row < 0 || row >= pixels.height)
            return;
        // Half of all shares are 0: a branch on them would be guessed wrong as often.
        std::uint32_t* cell = At(x, row);
        *cell = Mixed(*cell, stroke.color, static_cast<unsigned>(std::max(share, 0)));
    }

    const Pixels& pixels;
    const Stroke& stroke;
};

std::size_t Phase(std::int64_t column, std::size_t period) {
    const auto length = static_cast<std::int64_t>(period);
    const std::int64_t rest = column % length;
    return static_cast<std::size_t>(rest < 0 ? rest + length : rest);
}

/// Draws what of a dashed trace falls into the column of spans[1], between its neighbours.
void DrawDashed(const SpanPainter& painter, int x, std::size_t phase, const Extent* spans,
                const RowSpan& rows, bool crowded, const Stroke& stroke) {
    const Extent& before = spans[0];
    const Extent& here = spans[1];
    const Extent& behind = spans[2];
    const bool steep = rows.bottom - rows.top >= 2 * stroke.thickness;
    if (steep && !crowded) {
        const bool upper = here.high >= before.high && here.high >= behind.high;
        const bool lower = here.low <= before.low && here.low <= behind.low;
        painter.Steep(x, rows, upper, lower);
    } else if (stroke.pattern[phase] != 0)
        painter.Solid(x, rows);
    else if (steep)
        painter.Dimmed(x, rows);
}

} // namespace

RowScale::RowScale(double low, double high, int rows)
    : top(high), perUnit((rows - 1) / (high - low)), rowCount(rows) {}

std::vector<std::uint8_t> DashPattern(std::int32_t lineStyle, int scale) {
    static const std::vector<std::vector<int>> lengths = {
        {}, {9, 5}, {2, 4}, {9, 4, 2, 4}, {9, 4, 2, 4, 2, 4}}; // drawn, left out, drawn, ...
    if (lineStyle < 1 || lineStyle > 4)
        return {};
    std::vector<std::uint8_t> pattern;
    std::uint8_t drawn = 1;
    for (const int length : lengths[static_cast<std::size_t>(lineStyle)]) {
        pattern.insert(pattern.end(), static_cast<std::size_t>(length * scale), drawn);
        drawn ^= 1;
    }
    return pattern;
}

void DrawSpans(const Pixels& pixels, int at, std::int64_t column, std::span<const Extent> spans,
               std::span<const std::uint8_t> crowded, const RowScale& scale, const Stroke& stroke) {
    const SpanPainter painter(pixels, stroke);
    const std::size_t count = spans.size() - 2;
    for (std::size_t i = 0; i < count; ++i) {
        const int x = at + static_cast<int>(i);
        const RowSpan rows = RowsOf(spans[i + 1], scale, stroke.thickness);
        if (rows.bottom < 0 || rows.top >= pixels.height) // of an empty span too
            continue;
        if (stroke.pattern.empty()) {
            painter.Solid(x, rows);
            continue;
        }
        const std::size_t phase = Phase(column + static_cast<std::int64_t>(i), stroke.pattern.size());
        DrawDashed(painter, x, phase, &spans[i], rows, crowded[i] != 0, stroke);
    }
}

void DrawMark(const Pixels& pixels, int x, int from, int to, float value, const RowScale& scale,
              const Stroke& stroke) {
    const RowSpan rows = RowsOf({value, value}, scale, stroke.thickness);
    const int left = std::max(x - stroke.thickness, from);
    const int right = std::min(x + 2 * stroke.thickness - 1, to - 1);
    const int top = std::max(rows.top - stroke.thickness, 0);
    const int bottom = std::min(rows.bottom + stroke.thickness, pixels.height - 1);
    for (int row = top; row <= bottom; ++row)
        for (int cell = left; cell <= right; ++cell)
            pixels.bits[row * pixels.stride + cell] = stroke.color;
}

} // namespace tracelet
