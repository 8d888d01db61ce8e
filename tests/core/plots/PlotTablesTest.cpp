#include "core/plots/PlotTables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Tables {
    Table<std::int32_t> styles;
    Table<std::uint32_t> colors;
    Table<std::string> names;
    AttributeTables All() { return {styles, colors, names}; }
};

TEST(DefaultColors, AreTheSixteenInOrder) {
    EXPECT_THAT(DefaultColors(), ElementsAre(0x0000FF, 0xFFC0FF, 0xFF8080, 0xFF00FF, 0xC0C0FF, 0x00FFFF,
                                             0x0080FF, 0xFFFFFF, 0x80000016, 0x000080, 0xC0FFC0, 0x00FF00,
                                             0x008000, 0xFFFF00, 0x008080, 0xFF0000));
}

TEST(FillAnalogDefaults, OneEntryAChannelAndASpare) {
    Tables tables;
    FillAnalogDefaults(tables.All(), 64, DefaultColors());
    ASSERT_EQ(tables.names.Count(), 65);
    ASSERT_EQ(tables.colors.Count(), 65);
    ASSERT_EQ(tables.styles.Count(), 65);
    const struct {
        std::int32_t channel;
        std::int32_t style;
        std::uint32_t color;
        const char* name;
    } cases[] = {{0, 0, 0x0000FF, "AI 0"},   {8, 0, 0x80000016, "AI 8"},
                 {15, 0, 0xFF0000, "AI 15"}, {16, 1, 0x0000FF, "AI 16"},
                 {31, 1, 0xFF0000, "AI 31"}, {32, 2, 0x0000FF, "AI 32"},
                 {63, 3, 0xFF0000, "AI 63"}, {64, 0, 0, ""}};
    for (const auto& c : cases) {
        EXPECT_EQ(tables.styles[c.channel], c.style) << c.channel;
        EXPECT_EQ(tables.colors[c.channel], c.color) << c.channel;
        EXPECT_EQ(tables.names[c.channel], c.name) << c.channel;
    }
}

TEST(FillAnalogDefaults, StyleGoesBeyondTheGlyphsFromChannel80) {
    Tables tables;
    FillAnalogDefaults(tables.All(), 81, DefaultColors());
    EXPECT_EQ(tables.styles[79], 4);
    EXPECT_EQ(tables.styles[80], 5);
}

TEST(FillDigitalDefaults, EightLinesAPortAndASpare) {
    Tables tables;
    FillDigitalDefaults(tables.All(), 3);
    ASSERT_EQ(tables.names.Count(), 25);
    for (std::int32_t index = 0; index < 24; ++index) {
        EXPECT_EQ(tables.styles[index], 0);
        EXPECT_EQ(tables.colors[index], index / 8 == 1 ? 0x00FFFFU : 0xFFFFFFU) << index;
    }
    EXPECT_EQ(tables.names[0], "DI 0:0");
    EXPECT_EQ(tables.names[7], "DI 0:7");
    EXPECT_EQ(tables.names[8], "DI 1:0");
    EXPECT_EQ(tables.names[21], "DI 2:5");
    EXPECT_EQ(tables.names[24], "");
    EXPECT_EQ(tables.colors[24], 0U);
}

TEST(SelectedLines, AscendByPortAndLineWithinTheBlock) {
    Table<std::uint8_t> masks(5);
    masks[0] = 0x05;
    masks[1] = 0x80;
    masks[3] = 0xFF;
    EXPECT_THAT(SelectedLines(masks, 0, 2), ElementsAre(0, 2, 15));
    EXPECT_THAT(SelectedLines(masks, 2, 1), IsEmpty());
    EXPECT_THAT(SelectedLines(masks, 3, 1), ElementsAre(24, 25, 26, 27, 28, 29, 30, 31));
    EXPECT_THAT(SelectedLines(masks, 0, 0), IsEmpty());
}

TEST(SelectedLines, IgnoresPortsThatThereAreNoMasksFor) {
    Table<std::uint8_t> masks(2);
    masks[1] = 1;
    EXPECT_THAT(SelectedLines(masks, 1, 12), ElementsAre(8));
    EXPECT_THAT(SelectedLines(masks, -3, 3), IsEmpty());
    EXPECT_THAT(SelectedLines(masks, 2147483647, 3), IsEmpty());
}

TEST(LineStyleGlyph, FiveCodesHaveOne) {
    EXPECT_EQ(LineStyleGlyph(0), "-------");
    EXPECT_EQ(LineStyleGlyph(1), "- - - -");
    EXPECT_EQ(LineStyleGlyph(2), ". . . .");
    EXPECT_EQ(LineStyleGlyph(3), "- . - .");
    EXPECT_EQ(LineStyleGlyph(4), "- . . -");
    EXPECT_EQ(LineStyleGlyph(5), "");
    EXPECT_EQ(LineStyleGlyph(-1), "");
}

TEST(LineLevel, TakesTheLinesBitFromItsPort) {
    const std::vector<std::uint8_t> states = {0x81, 0x7F}; // ports 2 and 3
    EXPECT_EQ(LineLevel(16, states, 2), 31.0);
    EXPECT_EQ(LineLevel(17, states, 2), 31.5);
    EXPECT_EQ(LineLevel(23, states, 2), 41.5);
    EXPECT_EQ(LineLevel(24, states, 2), 46.0);
    EXPECT_EQ(LineLevel(31, states, 2), 55.5);
    for (const std::int32_t outside : {0, 15, 32, 2147483647})
        EXPECT_THROW((void)LineLevel(outside, states, 2), RunTimeError) << outside;
}

TEST(LowLevel, IsThatOfTheLineWhileItsBitIsClear) {
    EXPECT_EQ(LowLevel(0), 0.0);
    EXPECT_EQ(LowLevel(7), 10.5);
    EXPECT_EQ(LowLevel(8), 15.0);
    EXPECT_EQ(LowLevel(95), 175.5);
}

TEST(DigitalLevel, LinesAndPortsAreSetApart) {
    EXPECT_EQ(DigitalLevel(0, 0, false), 0.0);
    EXPECT_EQ(DigitalLevel(0, 0, true), 1.0);
    EXPECT_EQ(DigitalLevel(0, 7, false), 10.5);
    EXPECT_EQ(DigitalLevel(0, 7, true), 11.5);
    EXPECT_EQ(DigitalLevel(1, 0, false), 15.0);
    EXPECT_EQ(DigitalLevel(1, 0, true), 16.0);
    EXPECT_EQ(DigitalLevel(11, 7, true), 176.5);
}

TEST(DigitalAxisRange, CoversThePorts) {
    EXPECT_EQ(DigitalAxisRange(0, 1).minimum, -1.0);
    EXPECT_EQ(DigitalAxisRange(0, 1).maximum, 29.0);
    EXPECT_EQ(DigitalAxisRange(2, 3).minimum, 29.0);
    EXPECT_EQ(DigitalAxisRange(2, 3).maximum, 119.0);
}

} // namespace
} // namespace tracelet
