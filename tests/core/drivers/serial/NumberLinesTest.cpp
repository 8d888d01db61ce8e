#include "core/drivers/serial/NumberLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double Absent = -999.0; // in the place of NaN, which equals nothing

/// The values of a scan without the absent ones at its end.
std::vector<double> ValuesOf(const std::optional<NumberLines::Scan>& scan) {
    std::vector<double> values = scan.value_or(NumberLines::Scan());
    for (double& value : values)
        if (std::isnan(value))
            value = Absent;
    while (!values.empty() && values.back() == Absent)
        values.pop_back();
    return values;
}

/// What a line gives that comes as the first, or as the third where names have to become known.
std::vector<double> Read(std::string_view line, int times = 1) {
    NumberLines lines(true);
    for (int i = 0; i < times; ++i) {
        lines.Put(line);
        lines.Put("\n");
    }
    return ValuesOf(lines.Take());
}

// ---- Forms of lines

TEST(NumberLines, ReadsValuesWhateverStandsBetweenThem) {
    EXPECT_THAT(Read("21.5"), ElementsAre(21.5));
    EXPECT_THAT(Read("21.5 40"), ElementsAre(21.5, 40));
    EXPECT_THAT(Read("  21.5   40  "), ElementsAre(21.5, 40));
    EXPECT_THAT(Read("21.5,40"), ElementsAre(21.5, 40));
    EXPECT_THAT(Read("21.5 ; 40"), ElementsAre(21.5, 40));
    EXPECT_THAT(Read("21.5\t40"), ElementsAre(21.5, 40));
    EXPECT_THAT(Read("-1,+2,.5,6.,1e3,-1.5E-3"), ElementsAre(-1, 2, 0.5, 6, 1000, -0.0015));
    EXPECT_THAT(Read("21.5\r"), ElementsAre(21.5));
}

TEST(NumberLines, WhatIsAbsentHasNoValue) {
    EXPECT_THAT(Read("1,,3"), ElementsAre(1, Absent, 3));
    EXPECT_THAT(Read(",2"), ElementsAre(Absent, 2));
    EXPECT_THAT(Read("1,nan,3"), ElementsAre(1, Absent, 3));
    EXPECT_THAT(Read("1 inf 3"), ElementsAre(1, Absent, 3));
}

TEST(NumberLines, ReadsNamesBeforeValues) {
    EXPECT_THAT(Read("temp=21.5", 3), ElementsAre(21.5));
    EXPECT_THAT(Read("temp: 21.5, hum: 40", 3), ElementsAre(21.5, 40));
    EXPECT_THAT(Read("temp = 21.5 hum = 40", 3), ElementsAre(21.5, 40));
    EXPECT_THAT(Read("T1 21.5 T2 40", 3), ElementsAre(21.5, 40));
    EXPECT_THAT(Read("accel/x=-1\taccel/y=2", 3), ElementsAre(-1, 2));
}

TEST(NumberLines, ANamedValueBelongsToTheChannelOfItsName) {
    NumberLines lines(true);
    for (int i = 0; i < 3; ++i)
        lines.Put("temp=1 hum=2\n");
    lines.Put("hum=3\n");
    EXPECT_THAT(ValuesOf(lines.Take()), ElementsAre(Absent, 3));
    lines.Put("hum=5 temp=4\n");
    EXPECT_THAT(ValuesOf(lines.Take()), ElementsAre(4, 5));
}

TEST(NumberLines, LinesOfDifferentNamesMayTakeTurns) {
    NumberLines lines(true);
    for (int i = 0; i < 3; ++i)
        lines.Put("temp=1\nhum=2\n");
    EXPECT_THAT(ValuesOf(lines.Take()), ElementsAre(Absent, 2));
    lines.Put("temp=7\n");
    EXPECT_THAT(ValuesOf(lines.Take()), ElementsAre(7));
}

TEST(NumberLines, GarbageIsSkippedAndCounted) {
    for (const char* line :
         {"hello", "21.5C", "1 2 x", "1;2 3", "=5", "a=", "a b", "1.2.3", "--1", "+-1", "0x10", "12abc",
          "1, 2 3", "\x80\xff", "temp=21.5hum=40", "1|2", "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17"}) {
        NumberLines lines(true);
        lines.Put(std::string(line) + "\n");
        EXPECT_FALSE(lines.Take()) << line;
        EXPECT_EQ(lines.Skipped(), 1) << line;
    }
    NumberLines lines(true);
    lines.Put("\n\r\n  \n");
    EXPECT_EQ(lines.Good(), 0);
}

TEST(NumberLines, SixteenChannelsAreTheMost) {
    EXPECT_EQ(Read("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16").size(), NumberLines::MostChannels);
    NumberLines lines(true);
    std::string all;
    for (int name = 0; name < 20; ++name) {
        const std::string line = "n" + std::to_string(name) + "=" + std::to_string(name) + "\n";
        all += line + line + line;
    }
    lines.Put(all);
    EXPECT_EQ(lines.Skipped(), 40) << "each name is known from its third line on";
    lines.Put("n15=3 n16=4\n");
    const auto scan = lines.Take();
    ASSERT_TRUE(scan);
    EXPECT_EQ(scan->back(), 3);
}

// ---- Portions and half lines

TEST(NumberLines, BytesComeInAnyPortions) {
    for (std::size_t portion = 1; portion < 12; ++portion) {
        NumberLines lines(true);
        const std::string text = "1,2\r\n3,4\r\n5,6\r\n7,";
        for (std::size_t at = 0; at < text.size(); at += portion)
            lines.Put(std::string_view(text).substr(at, portion));
        EXPECT_THAT(ValuesOf(lines.Take()), ElementsAre(5, 6));
        EXPECT_EQ(lines.Good(), 3);
        EXPECT_EQ(lines.Skipped(), 0);
        EXPECT_FALSE(lines.Take()) << "once";
    }
}

TEST(NumberLines, InTheMiddleOfAStreamTheFirstLineMayBeARest) {
    NumberLines lines;
    lines.Put("1.5,2\n");
    EXPECT_FALSE(lines.Take());
    EXPECT_EQ(lines.Skipped(), 1);
    lines.Put("21.5,2\n");
    EXPECT_THAT(ValuesOf(lines.Take()), ElementsAre(21.5, 2));
}

TEST(NumberLines, ALineWithoutEndTakesNoMemory) {
    NumberLines lines(true);
    lines.Put(std::string(NumberLines::LongestLine, '1') + "\n");
    EXPECT_EQ(lines.Skipped(), 1) << "no number has that many digits";
    for (int i = 0; i < 1000; ++i)
        lines.Put(std::string(NumberLines::LongestLine, ' '));
    lines.Put("5\n");
    EXPECT_EQ(lines.Skipped(), 2);
    lines.Put("6\n");
    EXPECT_THAT(ValuesOf(lines.Take()), ElementsAre(6));
}

TEST(NumberLines, ALineOfAnotherLengthLostAPartUntilEightSayOtherwise) {
    NumberLines lines(true);
    lines.Put("1,2,3\n1,2\n4,5,6\n");
    for (int i = 0; i < 7; ++i)
        lines.Put("7,8\n");
    EXPECT_THAT(ValuesOf(lines.Take()), ElementsAre(4, 5, 6));
    EXPECT_EQ(lines.Skipped(), 8);
    lines.Put("9,10\n");
    EXPECT_THAT(ValuesOf(lines.Take()), ElementsAre(9, 10));
    lines.Put("1,2,3\n");
    EXPECT_FALSE(lines.Take());
}

TEST(NumberLines, ANameOfNoiseGetsNoChannel) {
    NumberLines lines(true);
    for (int i = 0; i < 3; ++i)
        lines.Put("temp=1 hum=2\n");
    lines.Put("emp=5 hum=2\n");
    lines.Put("emp=5 hum=2\n");
    EXPECT_EQ(lines.Skipped(), 4);
    for (int i = 0; i < 1000; ++i)
        lines.Put("x" + std::to_string(i) + "=1\n");
    lines.Put("temp=3 hum=4\n");
    EXPECT_THAT(ValuesOf(lines.Take()), ElementsAre(3, 4));
}

// ---- Noise

TEST(NumberLines, NothingOfANoisyStreamIsMisread) {
    constexpr int Lines = 200000;
    std::mt19937 random(16);
    const auto chance = [&random](int of) { return std::uniform_int_distribution(0, of - 1)(random) == 0; };
    NumberLines lines(true);
    std::string stream;
    std::int64_t whole = 0;
    for (int i = 0; i < Lines; ++i) {
        // Three values that say of themselves whether they belong together.
        std::string line =
            std::to_string(i) + "," + std::to_string(i * 2) + "," + std::to_string(i * 3) + "\n";
        if (chance(20)) {
            line.erase(line.find(',') + 1); // cut
        } else if (chance(20)) {
            line.insert(line.size() / 2, 1,
                        static_cast<char>(std::uniform_int_distribution(128, 255)(random)));
        } else if (chance(50)) {
            line = "ready\n" + line;
            ++whole;
        } else {
            ++whole;
        }
        stream += line;
        if (stream.size() < 50)
            continue;
        lines.Put(stream); // a burst
        stream.clear();
        if (const auto scan = lines.Take()) {
            EXPECT_EQ((*scan)[1], 2 * (*scan)[0]);
            EXPECT_EQ((*scan)[2], 3 * (*scan)[0]);
        }
    }
    lines.Put(stream);
    EXPECT_GT(lines.Good(), whole * 9 / 10) << "of " << whole;
    EXPECT_LE(lines.Good(), whole);
}

} // namespace
} // namespace tracelet
