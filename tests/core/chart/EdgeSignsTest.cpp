#include "core/chart/EdgeSigns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tracelet {
namespace {

constexpr std::uint32_t Ink = 0xffffffff;

/// Signs of these columns, from time column `column` on, on rows of -10 to 10, '#' for ink; `spans` are of
/// SignReach more on either side.
std::vector<std::string> Signs(const std::vector<Extent>& spans, int height, int thickness = 1,
                               std::int64_t column = 100) {
    const Stroke stroke{Ink, thickness, false, {}};
    const int width = static_cast<int>(spans.size()) - 2 * SignReach(stroke);
    std::vector<std::uint32_t> cells(static_cast<std::size_t>(width * height));
    DrawSigns({cells.data(), width, width, height}, 0, column, spans, RowScale(-10, 10, height), stroke);
    std::vector<std::string> rows;
    for (int row = 0; row < height; ++row) {
        rows.emplace_back();
        for (int x = 0; x < width; ++x)
            rows.back() += cells[static_cast<std::size_t>(row * width + x)] == Ink ? '#' : '.';
    }
    return rows;
}

/// Columns at 0 but for those from `from` on.
std::vector<Extent> Level(std::size_t count, std::size_t from, const std::vector<Extent>& others) {
    std::vector<Extent> spans(count, {0, 0});
    std::copy(others.begin(), others.end(), spans.begin() + static_cast<std::ptrdiff_t>(from));
    return spans;
}

using Rows = std::vector<std::string>;

TEST(EdgeSigns, TraceThatLeavesGetsAnArrowheadAtTheEdge) {
    EXPECT_EQ(Signs(Level(17, 8, {{0, 15}}), 8), (Rows{"....#....", "...###...", "..#####..", ".#######.",
                                                       ".........", ".........", ".........", "........."}));
    EXPECT_EQ(Signs(Level(17, 7, {{-20, 0}, {-20, -20}, {-20, 0}}), 8),
              (Rows{".........", ".........", ".........", ".........", "#######..", ".#####...", "..###....",
                    "...#....."}))
        << "one for all of it";
}

TEST(EdgeSigns, TraceThatStaysAwayIsToldAgainAtRegularTimes) {
    const std::string tips = Signs(Level(68, 14, std::vector<Extent>(40, {15, 15})), 8)[0];
    EXPECT_EQ(tips, "..........#.#...............#...............#...............");
    EXPECT_EQ(Signs(std::vector<Extent>(68, {15, 15}), 8, 1, -100)[0],
              "....#...............#...............#...............#.......");
}

TEST(EdgeSigns, TraceWithinHalfARowLeavesNothing) {
    const double half = 0.5 * 20 / 7; // of a row of eight
    const auto within = static_cast<float>(10 + 0.99 * half);
    const auto beyond = static_cast<float>(10 + 1.01 * half);
    const Rows none(8, std::string(9, '.'));
    EXPECT_EQ(Signs(Level(17, 8, {{-within, within}}), 8), none);
    EXPECT_NE(Signs(Level(17, 8, {{0, beyond}}), 8), none);
    EXPECT_NE(Signs(Level(17, 8, {{-beyond, 0}}), 8), none);
    EXPECT_EQ(Signs(std::vector<Extent>(17), 8), none) << "columns without a trace";
}

TEST(EdgeSigns, ColumnsBesideThoseDrawnCount) {
    EXPECT_EQ(Signs(Level(12, 2, {{0, 20}}), 4), (Rows{"....", "....", "#...", "##.."}));
    EXPECT_EQ(Signs(Level(12, 10, {{0, 20}}), 4), (Rows{"....", "....", "....", "...#"}));
    EXPECT_EQ(Signs(Level(12, 0, {{0, 20}, {0, 20}}), 4), Rows(4, "....")) << "the first is too far away";
}

TEST(EdgeSigns, GrowWithTheLineAndEndWithTheImage) {
    const Rows rows = Signs(Level(31, 15, {{0, 15}}), 12, 2);
    EXPECT_EQ(rows[0], ".......#.......");
    EXPECT_EQ(rows[7], "###############");
    EXPECT_EQ(rows[8], "...............");
    EXPECT_EQ(Signs(Level(17, 8, {{-30, 30}}), 2), (Rows{"...###...", "...###..."}));
}

} // namespace
} // namespace tracelet
