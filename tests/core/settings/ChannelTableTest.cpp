#include "core/settings/ChannelTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::ElementsAre;

Table<std::string> TypeNames() {
    Table<std::string> names(8);
    std::int64_t at = 0;
    for (const char* name : {"J", "K", "S", "T", "B", "R", "E"})
        names[at++] = name;
    return names;
}

AnalogBoardInfo Named(const char* name) {
    AnalogBoardInfo board;
    board.name = name;
    return board;
}

std::vector<ChannelFacts> Wired(std::initializer_list<std::int32_t> connections) {
    std::vector<ChannelFacts> channels;
    for (std::int32_t connection : connections)
        channels.push_back({connection, false, 0, 0, {0, -10, 10}});
    return channels;
}

std::vector<std::string> Logical(const char* device, std::initializer_list<std::int32_t> connections) {
    std::vector<std::string> names;
    for (const ChannelRow& row : ChannelRows(Named(device), Wired(connections), TypeNames()))
        names.push_back(row[LogicalName]);
    return names;
}

TEST(ChannelRows, ShowAnAnalogChannel) {
    const std::vector<ChannelFacts> channels = {{0, false, 3, 7, {0, 4, 20}}};
    EXPECT_THAT(ChannelRows(Named("Merula 64"), channels, TypeNames()),
                ElementsAre(ElementsAre("Chan00", "Chan00", "Single-Ended", "AI", "4 ~ 20 mA", "NA")));
}

TEST(ChannelRows, ShowAThermocoupleChannel) {
    const std::vector<ChannelFacts> channels = {{0, true, 6, 15, {0, 0, 10}}, {1, true, 0, 0, {0, 0, 10}}};
    EXPECT_THAT(ChannelRows(Named("6605HG"), channels, TypeNames()),
                ElementsAre(ElementsAre("Chan00", "Chan00", "Single-Ended", "Thermo", "E", "15"),
                            ElementsAre("Chan01", "Chan01", "Differential", "Thermo", "J", "0")));
}

TEST(ChannelRows, HaveTwoDigitsAtLeast) {
    const std::vector<ChannelFacts> channels(101);
    const std::vector<ChannelRow> rows = ChannelRows(Named("Merula"), channels, TypeNames());
    ASSERT_EQ(rows.size(), 101u);
    EXPECT_EQ(rows[9][ChannelName], "Chan09");
    EXPECT_EQ(rows[10][ChannelName], "Chan10");
    EXPECT_EQ(rows[100][ChannelName], "Chan100");
    EXPECT_EQ(rows[100][LogicalName], "Chan100");
}

TEST(ChannelRows, PairsBearOneLogicalName) {
    EXPECT_THAT(Logical("Merula", {0, 0, 0, 0}), ElementsAre("Chan00", "Chan01", "Chan02", "Chan03"));
    EXPECT_THAT(Logical("Merula", {1, 1, 0, 0}), ElementsAre("Chan00", "Chan00", "Chan01", "Chan02"));
    EXPECT_THAT(Logical("Merula", {0, 0, 1, 1, 1, 1}),
                ElementsAre("Chan00", "Chan01", "Chan02", "Chan02", "Chan03", "Chan03"));
    // Any code but 0 is differential.
    EXPECT_THAT(Logical("Merula", {2, -1, 0}), ElementsAre("Chan00", "Chan00", "Chan01"));
    // A lone odd differential channel adds nothing.
    EXPECT_THAT(Logical("Merula", {0, 1, 0}), ElementsAre("Chan00", "Chan00", "Chan01"));
}

TEST(ChannelRows, UnpairedBoardsCountEveryChannel) {
    EXPECT_THAT(Logical("6605", {1, 1, 1, 0}), ElementsAre("Chan00", "Chan01", "Chan02", "Chan03"));
    EXPECT_THAT(Logical("Alcedo 3605", {1, 1}), ElementsAre("Chan00", "Chan01"));
    EXPECT_THAT(Logical("6601", {1, 1}), ElementsAre("Chan00", "Chan00"));
}

TEST(ChannelRows, TypeSevenIsEmptyAndMoreFails) {
    const std::vector<ChannelFacts> seven = {{0, true, 7, 0, {}}};
    EXPECT_EQ(ChannelRows(Named("6601HG"), seven, TypeNames())[0][RangeOrType], "");
    const std::vector<ChannelFacts> eight = {{0, true, 8, 0, {}}};
    try {
        (void)ChannelRows(Named("6601HG"), eight, TypeNames());
        FAIL() << "type 8 was shown";
    } catch (const RunTimeError& error) {
        EXPECT_STREQ(error.what(), "Subscript out of range");
    }
    // The type of an analog channel is not looked at.
    const std::vector<ChannelFacts> analog = {{0, false, 255, 0, {0, 0, 5}}};
    EXPECT_EQ(ChannelRows(Named("6601HG"), analog, TypeNames())[0][RangeOrType], "0 ~ 5 V");
}

TEST(ChannelRows, NoChannelsNoRows) {
    EXPECT_TRUE(ChannelRows(Named("No Device"), {}, TypeNames()).empty());
}

} // namespace
} // namespace tracelet
