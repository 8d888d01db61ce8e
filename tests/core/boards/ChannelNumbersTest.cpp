#include "core/boards/ChannelNumbers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::ThrowsMessage;

AnalogBoardInfo Board(const char* name, std::int32_t channelCount) {
    AnalogBoardInfo board;
    board.name = name;
    board.channelCount = channelCount;
    return board;
}

class ChannelNumbersTest : public testing::Test {
protected:
    Table<std::int32_t> connections{17};
    const AnalogBoardInfo plain = Board("PCI-9 plain", 16);
    ChannelNumbers numbers{plain, connections};
};

TEST_F(ChannelNumbersTest, SingleEndedChannelsKeepTheirNumbers) {
    EXPECT_EQ(numbers.LogicalCount(), 16);
    for (std::int32_t channel = 0; channel < 16; ++channel) {
        std::int32_t argument = channel;
        EXPECT_EQ(numbers.PhysToLogical(channel), channel);
        EXPECT_EQ(numbers.LogicalToPhys(argument), channel);
        EXPECT_EQ(argument, channel);
    }
}

TEST_F(ChannelNumbersTest, DifferentialPairIsOneChannel) {
    connections[0] = connections[1] = 1;
    EXPECT_EQ(numbers.LogicalCount(), 15);
    EXPECT_EQ(numbers.PhysToLogical(0), 0);
    EXPECT_EQ(numbers.PhysToLogical(1), 0);
    EXPECT_EQ(numbers.PhysToLogical(2), 1);
    std::int32_t argument = 1;
    EXPECT_EQ(numbers.LogicalToPhys(argument), 2);
    EXPECT_EQ(argument, 2);
}

TEST_F(ChannelNumbersTest, OnlyCodeOneIsDifferential) {
    connections[0] = connections[1] = 2;
    EXPECT_EQ(numbers.LogicalCount(), 16);
    EXPECT_EQ(numbers.PhysToLogical(1), 1);
}

TEST_F(ChannelNumbersTest, HalfAPairRoundsToEven) {
    connections[3] = 1;
    EXPECT_EQ(numbers.LogicalCount(), 16); // 15.5
    connections[5] = connections[7] = 1;
    EXPECT_EQ(numbers.LogicalCount(), 14); // 14.5
}

TEST_F(ChannelNumbersTest, NumbersWrapAround) {
    EXPECT_EQ(numbers.PhysToLogical(16), 0);
    std::int32_t argument = 17;
    EXPECT_EQ(numbers.LogicalToPhys(argument), 1);
}

TEST_F(ChannelNumbersTest, RemaindersFollowTheSign) {
    for (const char* name : {"plain", "05"}) {
        const AnalogBoardInfo board = Board(name, 16);
        const ChannelNumbers signs{board, connections};
        EXPECT_EQ(signs.PhysToLogical(-1), -1) << name;
        std::int32_t argument = -1;
        EXPECT_EQ(signs.LogicalToPhys(argument), -1) << name;
        EXPECT_EQ(argument, -1) << name;
    }
    // All before channel 0 is the same place to the walk, but not to a plain remainder.
    EXPECT_EQ((ChannelNumbers{Board("05", 16), connections}.PhysToLogical(-18)), -2);
    EXPECT_EQ(numbers.PhysToLogical(-18), -1);
}

TEST_F(ChannelNumbersTest, TheWalkPassesAPairAgainBehindTheLastChannel) {
    connections[0] = connections[1] = 1;
    std::int32_t argument = 15; // one beyond the last logical channel
    EXPECT_EQ(numbers.LogicalToPhys(argument), 0);
    EXPECT_EQ(argument, 16);
    argument = 16;
    EXPECT_EQ(numbers.LogicalToPhys(argument), 2);
    EXPECT_EQ(argument, 18);
}

TEST_F(ChannelNumbersTest, AllDifferentialScanWalksEvenChannels) {
    for (std::int32_t i = 0; i < 16; ++i)
        connections[i] = 1;
    EXPECT_EQ(numbers.LogicalCount(), 8);
    for (std::int32_t position = 0; position < 8; ++position)
        EXPECT_EQ(numbers.ScannedChannel(0, position), 2 * position);
    EXPECT_EQ(numbers.ScannedChannel(4, 1), 6);
    EXPECT_EQ(numbers.ScannedChannel(5, 0), 4);
}

TEST_F(ChannelNumbersTest, FamilyWithoutPairsIgnoresTheWiring) {
    connections[0] = connections[1] = 1;
    for (const char* name : {"PCI-6605HG", "3605", "x05"}) {
        const AnalogBoardInfo board = Board(name, 16);
        const ChannelNumbers unpaired{board, connections};
        EXPECT_EQ(unpaired.LogicalCount(), 16) << name;
        EXPECT_EQ(unpaired.PhysToLogical(17), 1) << name;
        std::int32_t argument = 18;
        EXPECT_EQ(unpaired.LogicalToPhys(argument), 2) << name;
        EXPECT_EQ(argument, 18) << name;
    }
}

TEST_F(ChannelNumbersTest, ABoardOfNoFamilyPairsWhateverItsName) {
    connections[0] = connections[1] = 1;
    AnalogBoardInfo board = Board("pci-6052e", 16);
    board.noFamily = true;
    const ChannelNumbers pairs{board, connections};
    EXPECT_EQ(pairs.LogicalCount(), 15);
    EXPECT_EQ(pairs.PhysToLogical(2), 1);
    std::int32_t argument = 1;
    EXPECT_EQ(pairs.LogicalToPhys(argument), 2);
}

TEST_F(ChannelNumbersTest, FaultsAreRaised) {
    EXPECT_THAT([&] { (void)numbers.PhysToLogical(17); },
                ThrowsMessage<RunTimeError>("Subscript out of range"));
    connections[0] = 1;
    const AnalogBoardInfo single = Board("plain", 1);
    const ChannelNumbers halfAPair{single, connections}; // 0.5 logical channels round to 0
    EXPECT_THAT([&] { (void)halfAPair.PhysToLogical(0); }, ThrowsMessage<RunTimeError>("Division by zero"));
    connections[0] = 0;
    const AnalogBoardInfo empty05 = Board("05", 0);
    const ChannelNumbers none{empty05, connections};
    EXPECT_THAT([&] { (void)none.PhysToLogical(0); }, ThrowsMessage<RunTimeError>("Division by zero"));
    Table<std::int32_t> empty;
    const ChannelNumbers unsized{plain, empty};
    std::int32_t argument = 1;
    EXPECT_THAT([&] { (void)unsized.LogicalToPhys(argument); },
                ThrowsMessage<RunTimeError>("Subscript out of range"));
}

TEST(PartnerOf, IsTheOtherOfThePair) {
    const std::int32_t cases[][2] = {{0, 1}, {1, 0}, {2, 3}, {3, 2}, {14, 15}, {15, 14}, {63, 62}};
    for (const auto& [channel, partner] : cases)
        EXPECT_EQ(PartnerOf(channel), partner) << channel;
}

} // namespace
} // namespace tracelet
