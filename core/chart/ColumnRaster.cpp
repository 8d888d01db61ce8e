#include "core/chart/ColumnRaster.h"

#include "core/base/Convert.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace tracelet {

namespace {

/// The four bytes of a pixel with room for a product each.
[[gnu::always_inline]] inline std::uint64_t Spread(std::uint32_t pixel) {
    return (pixel & 0x00ff00ffU) | std::uint64_t{pixel & 0xff00ff00U} << 24;
}

/// `share` of `over` in 256ths, the rest of `under`.
[[gnu::always_inline]] inline std::uint32_t Mixed(std::uint32_t under, std::uint64_t over, unsigned share) {
    const std::uint64_t mixed = (Spread(under) * (256 - share) + over * share) >> 8 & 0x00ff00ff00ff00ffU;
    return static_cast<std::uint32_t>(mixed | mixed >> 24);
}

/// Neighbouring columns that are drawn in one go, as many as fit into the vector registers of every machine.
constexpr std::size_t LaneCount = 4;
using Ints [[gnu::vector_size(LaneCount * sizeof(int))]] = int;

/// Rows that a span covers, before clipping, and how much of the rows beside it, in 256ths.
struct RowSpan {
    int top = 0;
    int bottom = 0;
    int softTop = 0;
    int softBottom = 0;
};

/// Whole 256ths of a row; RowOf keeps the sum above 0, where cutting off the fraction is rounding down.
[[gnu::always_inline]] inline int FixedRow(double row) {
    constexpr int Lift = 256;
    return static_cast<int>((row + Lift) * 256) - Lift * 256;
}

[[gnu::always_inline]] inline RowSpan RowsOf(const Extent& extent, const RowScale& scale, int thickness) {
    const double shift = (thickness - 1) * 0.5;
    const int upper = FixedRow(scale.RowOf(static_cast<double>(extent.high)) - shift);
    const int lower = FixedRow(scale.RowOf(static_cast<double>(extent.low)) - shift);
    return {upper >> 8, (lower >> 8) + thickness - 1, 128 - (upper & 255), (lower & 255) - 128};
}

/// The same, but spans of which no row is visible cover and tint nothing.
[[gnu::always_inline]] inline RowSpan VisibleRowsOf(const Extent& extent, const RowScale& scale,
                                                    int thickness, int height) {
    const RowSpan rows = RowsOf(extent, scale, thickness);
    const bool visible = rows.bottom >= 0 && rows.top < height;
    return {visible ? rows.top : height + 1, visible ? rows.bottom : -2, rows.softTop, rows.softBottom};
}

constexpr int DimShare = 90; ///< 256ths of the colour that parts left out of a crowded trace keep

class SpanPainter {
public:
    SpanPainter(const Pixels& image, const Stroke& line)
        : pixels(image), stroke(line), spreadColor(Spread(line.color)) {}

    void Solid(int x, const RowSpan& rows) const {
        Fill(x, rows);
        if (stroke.soft)
            Soften(x, rows);
    }

    /// Solid for neighbouring columns.
    void Solid(int x, std::span<const RowSpan> rows) const {
        std::size_t i = 0;
        for (; i + LaneCount <= rows.size(); i += LaneCount)
            FillGroup(x + static_cast<int>(i), rows.subspan(i).first<LaneCount>());
        for (; i < rows.size(); ++i)
            Fill(x + static_cast<int>(i), rows[i]);
        for (i = 0; stroke.soft && i < rows.size(); ++i)
            Soften(x + static_cast<int>(i), rows[i]);
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
            Tint(x, row, DimShare);
    }

private:
    void Fill(int x, const RowSpan& rows) const {
        const int top = std::max(rows.top, 0);
        const int bottom = std::min(rows.bottom, pixels.height - 1);
        std::uint32_t* cell = At(x, top);
        for (int row = top; row <= bottom; ++row, cell += pixels.stride)
            *cell = stroke.color;
    }

    static constexpr int Step = 4; ///< rows that are filled without a look whether they are the last

    void FillGroup(int x, std::span<const RowSpan, LaneCount> rows) const {
        int first = pixels.height;
        int last = -1;
        int covered = 0; // rows less one of each
        for (const RowSpan& one : rows) {
            first = std::min(first, one.top);
            last = std::max(last, one.bottom);
            covered += one.bottom - one.top;
        }
        first = std::max(first, 0);
        last = std::min(last, pixels.height - 1);
        // Rows are filled in one go, unless the columns have few in common.
        constexpr int Bonus = 24;
        const int tall = (last - first + Step) / Step * Step;
        if (last - first > covered + Bonus || tall > pixels.height) {
            for (std::size_t i = 0; i < LaneCount; ++i)
                Fill(x + static_cast<int>(i), rows[i]);
            return;
        }
        // A few rows more change nothing, and counts that seldom differ are guessed right more often.
        FillRows(x, std::min(first, pixels.height - tall), tall, rows);
    }

    /// Fills `count` rows of neighbouring columns between the top and bottom of each.
    void FillRows(int x, int first, int count, std::span<const RowSpan, LaneCount> rows) const {
        const Ints color = Ints{} + static_cast<int>(stroke.color);
        const Ints above = Ints{rows[0].top, rows[1].top, rows[2].top, rows[3].top} - 1;
        const Ints below = Ints{rows[0].bottom, rows[1].bottom, rows[2].bottom, rows[3].bottom} + 1;
        const std::ptrdiff_t stride = pixels.stride;
        std::uint32_t* cells = At(x, first);
        Ints row = Ints{} + first;
        for (int i = 0; i < count; i += Step)
            for (int next = 0; next < Step; ++next, cells += stride, row += 1) {
                Ints cell;
                std::memcpy(&cell, cells, sizeof cell);
                cell ^= (cell ^ color) & (row > above) & (row < below);
                std::memcpy(cells, &cell, sizeof cell);
            }
    }

    void Soften(int x, const RowSpan& rows) const {
        Tint(x, rows.top - 1, rows.softTop);
        Tint(x, rows.bottom + 1, rows.softBottom);
    }

    [[nodiscard]] std::uint32_t* At(int x, int row) const { return pixels.bits + row * pixels.stride + x; }

    void Tint(int x, int row, int share) const {
        if (row < 0 || row >= pixels.height)
            return;
        // Half of all shares are 0: a branch on them would be guessed wrong as often.
        std::uint32_t* cell = At(x, row);
        *cell = Mixed(*cell, spreadColor, static_cast<unsigned>(std::max(share, 0)));
    }

    const Pixels pixels; ///< a copy, which the compiler knows that drawing does not change
    const Stroke& stroke;
    std::uint64_t spreadColor;
};

std::size_t Phase(std::int64_t column, std::size_t period) {
    const auto length = static_cast<std::int64_t>(period);
    const std::int64_t rest = column % length;
    return static_cast<std::size_t>(rest < 0 ? rest + length : rest);
}

/// A column and those beside it.
struct Surroundings {
    std::span<const Extent> before;
    std::span<const Extent> behind;
    bool crowded = false;
};

/// Whether a column covers `rows` well beyond what the trace covers on both sides of it. Of the columns of a
/// side, which may share its spike, the one that reaches least far counts.
bool IsExcursion(const RowSpan& rows, const Surroundings& around, const RowScale& scale, int thickness) {
    constexpr int far = 1 << 20;
    int upper = far; // where the trace comes from and goes to
    int lower = -far;
    int top = far; // of all columns on both sides
    int bottom = -far;
    for (const auto& side : {around.before, around.behind}) {
        int least = -far;
        int most = far;
        for (const Extent& extent : side) {
            if (extent.Empty())
                continue;
            const RowSpan beside = RowsOf(extent, scale, thickness);
            least = std::max(least, beside.top);
            most = std::min(most, beside.bottom);
            top = std::min(top, beside.top);
            bottom = std::max(bottom, beside.bottom);
        }
        if (least > -far) {
            upper = std::min(upper, least);
            lower = std::max(lower, most);
        } else if (!around.crowded)
            return false; // a line that ends here
    }
    const int beyond = std::max(upper - rows.top, rows.bottom - lower);
    return beyond >= std::max(2 * thickness, (bottom - top) / 4);
}

/// Draws what of a dashed trace falls into the column in the middle of `spans`.
void DrawDashed(const SpanPainter& painter, int x, bool drawn, std::span<const Extent> spans,
                const RowSpan& rows, bool crowded, const RowScale& scale, const Stroke& stroke) {
    const auto beside = static_cast<std::size_t>(stroke.Beside());
    const Surroundings around = {spans.first(beside), spans.last(beside), crowded};
    const bool steep = rows.bottom - rows.top >= 2 * stroke.thickness;
    const bool alongRows = steep && !crowded;
    if ((drawn && !alongRows) || IsExcursion(rows, around, scale, stroke.thickness))
        painter.Solid(x, rows);
    else if (alongRows) {
        const Extent& before = around.before.back();
        const Extent& here = spans[beside];
        const Extent& behind = around.behind.front();
        painter.Steep(x, rows, here.high >= before.high && here.high >= behind.high,
                      here.low <= before.low && here.low <= behind.low);
    } else if (steep)
        painter.Dimmed(x, rows);
}

void DrawSolid(const SpanPainter& painter, int at, int height, std::span<const Extent> spans, RowScale scale,
               int thickness) {
    std::array<RowSpan, 96> rows;
    for (std::size_t done = 0; done < spans.size(); done += rows.size()) {
        const std::size_t count = std::min(spans.size() - done, rows.size());
        for (std::size_t i = 0; i < count; ++i)
            rows[i] = VisibleRowsOf(spans[done + i], scale, thickness, height);
        painter.Solid(at + static_cast<int>(done), std::span(rows).first(count));
    }
}

} // namespace

RowScale::RowScale(double low, double high, int rows)
    : top(high), perUnit((rows - 1) / (high - low)), rowCount(rows) {}

int LineThickness(double scale, int width, int height) {
    constexpr int columns = 1600; // that one pixel goes well with
    constexpr int rows = 800;
    return std::clamp(std::max(CLng(scale), std::min(width / columns, height / rows)), 1, 4);
}

std::vector<std::uint8_t> DashPattern(std::int32_t lineStyle, int scale) {
    static const std::vector<std::vector<int>> lengths = {
        {}, {9, 5}, {2, 4}, {9, 4, 2, 4}, {9, 4, 2, 4, 2, 4}}; // drawn, left out, drawn, ...
    if (lineStyle < 1 || lineStyle > 4)
        return {};
    std::vector<std::uint8_t> pattern;
    std::uint8_t drawn = 1;
    for (const int length : lengths[static_cast<std::size_t>(lineStyle)]) {
        pattern.insert(pattern.end(), static_cast<std::size_t>(length) * static_cast<std::size_t>(scale),
                       drawn);
        drawn ^= 1;
    }
    return pattern;
}

void DrawSpans(const Pixels& pixels, int at, std::int64_t column, std::span<const Extent> spans,
               std::span<const std::uint8_t> crowded, const RowScale& scale, const Stroke& stroke) {
    const SpanPainter painter(pixels, stroke);
    const auto beside = static_cast<std::size_t>(stroke.Beside());
    const std::size_t count = spans.size() - 2 * beside;
    if (stroke.pattern.empty()) {
        DrawSolid(painter, at, pixels.height, spans.subspan(beside, count), scale, stroke.thickness);
        return;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const RowSpan rows = VisibleRowsOf(spans[i + beside], scale, stroke.thickness, pixels.height);
        const std::size_t phase = Phase(column + static_cast<std::int64_t>(i), stroke.pattern.size());
        DrawDashed(painter, at + static_cast<int>(i), stroke.pattern[phase] != 0,
                   spans.subspan(i, 2 * beside + 1), rows, crowded[i] != 0, scale, stroke);
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
