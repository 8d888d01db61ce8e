#include "core/chart/ColumnRaster.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace tracelet {
namespace {

constexpr std::uint32_t Ground = 0xff000000;
constexpr std::uint32_t Ink = 0xffffffff;

class Canvas {
public:
    Canvas(int width, int height)
        : cells(static_cast<std::size_t>(width * height), Ground), pixels{cells.data(), width, width,
                                                                          height} {}

    /// '#' for the colour, '+' for a tint of it, '.' for the ground, row by row.
    [[nodiscard]] std::vector<std::string> Rows() const {
        std::vector<std::string> rows;
        for (int y = 0; y < pixels.height; ++y) {
            std::string row;
            for (int x = 0; x < pixels.width; ++x) {
                const std::uint32_t cell = cells[static_cast<std::size_t>(y * pixels.width + x)];
                row += cell == Ink ? '#' : cell == Ground ? '.' : '+';
            }
            rows.push_back(row);
        }
        return rows;
    }

    std::vector<std::uint32_t> cells;
    Pixels pixels;
};

Stroke HardStroke(int thickness = 1, std::int32_t lineStyle = 0) {
    return {Ink, thickness, false, DashPattern(lineStyle, thickness)};
}

/// The spans with empty columns on either side.
std::vector<Extent> Framed(const std::vector<Extent>& spans, const Stroke& stroke) {
    std::vector<Extent> framed(static_cast<std::size_t>(stroke.Beside()));
    framed.insert(framed.end(), spans.begin(), spans.end());
    framed.resize(framed.size() + static_cast<std::size_t>(stroke.Beside()));
    return framed;
}

std::vector<std::string> Drawn(const std::vector<Extent>& spans, int height, double low, double high,
                               const Stroke& stroke, std::vector<std::uint8_t> crowded = {}) {
    Canvas canvas(static_cast<int>(spans.size()), height);
    crowded.resize(spans.size());
    DrawSpans(canvas.pixels, 0, 0, Framed(spans, stroke), crowded, RowScale(low, high, height), stroke);
    return canvas.Rows();
}

TEST(ColumnRaster, EndsOfTheScaleAreTheFirstAndTheLastRow) {
    EXPECT_EQ(Drawn({{0, 0}, {4, 4}, {2, 2}, {1, 3}, {0, 4}}, 5, 0, 4, HardStroke()),
              (std::vector<std::string>{".#..#", "...##", "..###", "...##", "#...#"}));
}

TEST(ColumnRaster, EmptySpansAndSpansBeyondTheScaleDrawNothing) {
    EXPECT_EQ(Drawn({{}, {5, 9}, {-9, -1}, {1e30F, 3e38F}}, 3, 0, 2, HardStroke()),
              (std::vector<std::string>{"....", "....", "...."}));
}

TEST(ColumnRaster, SpansAreCutAtTheScale) {
    const float inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(Drawn({{-9, 1}, {1, 9}, {-inf, inf}, {1, inf}}, 3, 0, 2, HardStroke()),
              (std::vector<std::string>{".###", "####", "#.#."}));
}

TEST(ColumnRaster, ThickLinesCoverTheirThickness) {
    EXPECT_EQ(Drawn({{2, 2}}, 5, 0, 4, HardStroke(2)), (std::vector<std::string>{".", ".", "#", "#", "."}));
    EXPECT_EQ(Drawn({{2, 2}}, 5, 0, 4, HardStroke(3)), (std::vector<std::string>{".", "#", "#", "#", "."}));
}

TEST(ColumnRaster, SoftLinesTintTheNearerNeighbour) {
    Stroke stroke = HardStroke();
    stroke.soft = true;
    EXPECT_EQ(Drawn({{2, 2}, {2.3F, 2.3F}, {1.7F, 1.7F}}, 5, 0, 4, stroke),
              (std::vector<std::string>{"...", ".+.", "###", "..+", "..."}));
}

TEST(ColumnRaster, LineStylesDifferOnFlatSteepAndCrowdedTraces) {
    const std::vector<Extent> flat(60, Extent{20, 20});
    const std::vector<Extent> steep(1, Extent{0, 59});
    const std::vector<Extent> band(60, Extent{10, 50});
    std::vector<std::vector<std::vector<std::string>>> pictures;
    for (std::int32_t style = 0; style < 5; ++style) {
        const Stroke stroke = HardStroke(1, style);
        pictures.push_back({Drawn(flat, 60, 0, 59, stroke), Drawn(steep, 60, 0, 59, stroke),
                            Drawn(band, 60, 0, 59, stroke, std::vector<std::uint8_t>(60, 1))});
    }
    for (std::size_t a = 0; a < 5; ++a)
        for (std::size_t b = 0; b < a; ++b)
            for (std::size_t kind = 0; kind < 3; ++kind)
                EXPECT_NE(pictures[a][kind], pictures[b][kind]) << a << " " << b << " " << kind;
    EXPECT_EQ(DashPattern(5, 1), DashPattern(0, 1));
    EXPECT_EQ(DashPattern(-1, 1), DashPattern(0, 1));
}

TEST(ColumnRaster, PeaksKeepTheirHeightInEveryLineStyleAndPhase) {
    for (std::int32_t style = 0; style < 5; ++style)
        for (const auto crowded : {std::uint8_t{0}, std::uint8_t{1}})
            for (int column = 0; column < 40; ++column) {
                Canvas canvas(1, 20);
                const std::vector<Extent> spans = {{2, 17}};
                const std::vector<std::uint8_t> flags = {crowded};
                const Stroke stroke = HardStroke(1, style);
                DrawSpans(canvas.pixels, 0, column, Framed(spans, stroke), flags, RowScale(0, 19, 20),
                          stroke);
                const auto rows = canvas.Rows();
                EXPECT_NE(rows[2], ".") << style << " " << column;
                EXPECT_NE(rows[17], ".") << style << " " << column;
                EXPECT_EQ(rows[1], ".");
                EXPECT_EQ(rows[18], ".");
            }
}

TEST(ColumnRaster, SpikesAreDrawnInFullInEveryLineStyleAndPhase) {
    const std::vector<Extent> shapes[] = {{{5, 17}},                     // of one column
                                          {{0, 5}},                      // downwards
                                          {{5, 17}, {5, 17}},            // on the edge between two
                                          {{5, 17}, {5, 9}},             // with a shoulder
                                          {{5, 17}, {17, 17}, {5, 17}}}; // a short pulse
    for (const std::vector<Extent>& shape : shapes)
        for (const int thickness : {1, 2})
            for (int phase = 0; phase < 60; ++phase) {
                std::vector<Extent> spans(20, Extent{5, 5});
                std::ranges::copy(shape, spans.begin() + 10);
                const auto drawn = [&](std::int32_t style, std::uint8_t crowded) {
                    const Stroke stroke = HardStroke(thickness, style);
                    Canvas canvas(20, 20);
                    DrawSpans(canvas.pixels, 0, phase, Framed(spans, stroke),
                              std::vector<std::uint8_t>(20, crowded), RowScale(0, 19, 20), stroke);
                    std::vector<std::string> rows = canvas.Rows();
                    for (std::string& row : rows)
                        row = row.substr(10, shape.size());
                    return rows;
                };
                for (std::int32_t style = 1; style < 5; ++style)
                    for (const auto crowded : {std::uint8_t{0}, std::uint8_t{1}})
                        ASSERT_EQ(drawn(style, crowded), drawn(0, crowded)) << style << " " << phase;
            }
}

TEST(ColumnRaster, EdgesRampsAndUnevenBandsStayDashed) {
    std::vector<Extent> edge(40, Extent{5, 5});
    edge[20] = {5, 15};
    std::fill(edge.begin() + 21, edge.end(), Extent{15, 15});
    std::vector<Extent> ramp;
    std::vector<Extent> band;
    for (int i = 0; i < 40; ++i) {
        ramp.push_back({static_cast<float>(i), static_cast<float>(i + 4)});
        band.push_back({static_cast<float>(10 - i % 3), static_cast<float>(30 + i % 2)});
    }
    for (const std::vector<Extent>& spans : {edge, ramp, band})
        for (std::int32_t style = 1; style < 5; ++style) {
            const Stroke stroke = HardStroke(1, style);
            Canvas canvas(40, 50);
            DrawSpans(canvas.pixels, 0, 0, Framed(spans, stroke), std::vector<std::uint8_t>(40, 1),
                      RowScale(0, 49, 50), stroke);
            for (std::size_t column = 3; column < 37; ++column) {
                int full = 0;
                for (const std::string& row : canvas.Rows())
                    full += row[column] == '#' ? 1 : 0;
                EXPECT_EQ(full > 0, stroke.pattern[column % stroke.pattern.size()] != 0) << column;
            }
        }
}

TEST(ColumnRaster, SteepLinesThatGoOnAreNotClosedAtEveryColumn) {
    std::vector<Extent> rising;
    for (int i = 0; i < 30; ++i)
        rising.push_back({static_cast<float>(4 * i), static_cast<float>(4 * i + 4)});
    const auto rows = Drawn(rising, 121, 0, 120, HardStroke(1, 2));
    int drawn = 0;
    for (const std::string& row : rows)
        drawn += row.find('#') != std::string::npos ? 1 : 0;
    EXPECT_NEAR(drawn, 121 / 3, 4) << "a third of a dotted line is ink";
    EXPECT_EQ(rows[0].back(), '#') << "its peak is drawn";
    EXPECT_EQ(rows[120].front(), '#');
}

TEST(ColumnRaster, DashesFollowTheColumnNotThePicture) {
    const std::vector<Extent> spans(50, Extent{1, 1});
    const std::vector<std::uint8_t> crowded(50);
    const Stroke stroke = HardStroke(1, 3);
    Canvas whole(50, 3);
    DrawSpans(whole.pixels, 0, -7, Framed(spans, stroke), crowded, RowScale(0, 2, 3), stroke);
    Canvas parts(50, 3);
    for (int i = 0; i < 50; ++i)
        DrawSpans(parts.pixels, i, i - 7, std::span(spans).first(7), crowded, RowScale(0, 2, 3), stroke);
    EXPECT_EQ(whole.Rows(), parts.Rows());
}

TEST(ColumnRaster, MarksAreSquaresAboutTheirPixelCutAtTheColumns) {
    Canvas canvas(7, 5);
    const RowScale scale(0, 4, 5);
    DrawMark(canvas.pixels, 0, 0, 7, 2, scale, HardStroke());
    DrawMark(canvas.pixels, 4, 0, 4, 4, scale, HardStroke());
    DrawMark(canvas.pixels, 9, 0, 7, 2, scale, HardStroke());
    DrawMark(canvas.pixels, -3, 0, 7, 2, scale, HardStroke());
    DrawMark(canvas.pixels, 5, 0, 7, 99, scale, HardStroke());
    EXPECT_EQ(canvas.Rows(),
              (std::vector<std::string>{"...#...", "##.#...", "##.....", "##.....", "......."}));
}

TEST(ColumnRaster, ColumnsDrawnTogetherEqualThoseDrawnOneByOne) {
    std::mt19937 random(1);
    for (const int height : {1, 3, 20, 300})
        for (const int thickness : {1, 2, 4}) {
            std::vector<Extent> spans;
            for (int i = 0; i < 203; ++i) {
                const auto at = static_cast<float>(std::uniform_int_distribution(-400, 1400)(random)) * 0.01F;
                const bool tall = random() % 16 == 0;
                const auto length = static_cast<float>(random() % (tall ? 2000 : 60)) * 0.01F;
                spans.push_back(i % 29 == 5 ? Extent{} : Extent{at, at + length});
            }
            spans[50] = {-std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity()};
            const RowScale scale(0, 10, height);
            const Stroke stroke = {0xff40a0ff, thickness, true, {}};
            const std::vector<std::uint8_t> crowded(spans.size());
            Canvas together(static_cast<int>(spans.size()), height);
            Canvas single(static_cast<int>(spans.size()), height);
            DrawSpans(together.pixels, 0, 0, Framed(spans, stroke), crowded, scale, stroke);
            for (std::size_t i = 0; i < spans.size(); ++i)
                DrawSpans(single.pixels, static_cast<int>(i), 0, Framed({spans[i]}, stroke), crowded, scale,
                          stroke);
            EXPECT_EQ(together.cells, single.cells) << height << " rows, " << thickness;
        }
}

TEST(ColumnRaster, LinesFollowTheScaleAndLargeCharts) {
    const struct {
        double scale;
        int width, height, thickness;
    } rows[] = {{1, 800, 400, 1},   {1, 3199, 1600, 1},  {1, 3200, 1599, 1},   {1, 3640, 1900, 2},
                {2, 3640, 1900, 2}, {1.5, 1000, 600, 2}, {1.25, 1000, 600, 1}, {3, 1000, 600, 3},
                {0.5, 100, 100, 1}, {1, 7480, 4000, 4},  {6, 9000, 5000, 4}};
    for (const auto& row : rows)
        EXPECT_EQ(LineThickness(row.scale, row.width, row.height), row.thickness)
            << row.scale << ' ' << row.width << " x " << row.height;
}

} // namespace
} // namespace tracelet
