#include "core/boards/BoardFamily.h"

#include <gtest/gtest.h>

namespace tracelet {
namespace {

AnalogBoardInfo Named(const char* name) {
    AnalogBoardInfo board;
    board.name = name;
    return board;
}

TEST(BoardFamily, IsReadFromPartsOfTheName) {
    const struct {
        const char* name;
        bool unpaired = false;
        bool thermocouples = false;
        bool choiceAfterPairing = false;
        bool doublesChannels = false;
        bool twelveBits = false;
    } cases[] = {
        {""},
        {"No Device"},
        {"Merula 64"},
        {"05", true},
        {"Board 0 5"},
        {"X050", true},
        {"6601", false, false, true},
        {"6601HG", false, true, true},
        {"6601hg", false, false, true},
        {"Alcedo 6601HG rev 2", false, true, true},
        {"6602", false, false, false, false, true},
        {"x6602y", false, false, false, false, true},
        {"6605", true, false, false, true},
        {"6605HG", true, true, false, true},
        {"6605hg", true, false, false, true},
        {"3605", true, true},
        {"36050", true, true},
        {"3601"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        for (const bool readsThermocouples : {false, true}) { // of families the name decides
            AnalogBoardInfo board = Named(c.name);
            board.thermocouples = readsThermocouples;
            EXPECT_EQ(IsUnpairedFamily(board), c.unpaired);
            EXPECT_EQ(OffersThermocouples(board), c.thermocouples);
            EXPECT_EQ(ShowsChoiceAfterPairing(board), c.choiceAfterPairing);
            EXPECT_EQ(DoublesThermoChannels(board), c.doublesChannels);
            EXPECT_EQ(CountsHaveTwelveBits(board), c.twelveBits);
        }
    }
}

TEST(BoardFamily, IsNotReadFromTheNameOfABoardOfNone) {
    for (const char* name : {"pci-6052e", "05", "6601HG", "6602", "6605HG", "3605"}) {
        SCOPED_TRACE(name);
        AnalogBoardInfo board = Named(name);
        board.noFamily = true;
        EXPECT_FALSE(IsUnpairedFamily(board));
        EXPECT_FALSE(ShowsChoiceAfterPairing(board));
        EXPECT_FALSE(DoublesThermoChannels(board));
        EXPECT_FALSE(CountsHaveTwelveBits(board));
        EXPECT_FALSE(OffersThermocouples(board));
        board.thermocouples = true;
        EXPECT_TRUE(OffersThermocouples(board));
    }
}

TEST(BoardFamily, ARangeThatDoesNotSayIsInMilliamperesUpToTwenty) {
    const struct {
        InputRange range;
        bool milliamperes;
    } cases[] = {
        {{0, 0, 20}, true},
        {{0, -20, 20}, true},
        {{0, 0, 20.00001}, false},
        {{0, 20, 10}, false},
        {{0, 0, 20, RangeUnit::Volts}, false},
        {{0, 0, 20, RangeUnit::Milliamperes}, true},
        {{0, 0, 32, RangeUnit::Milliamperes}, true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(IsMilliamperes(c.range), c.milliamperes) << c.range.second;
}

} // namespace
} // namespace tracelet
