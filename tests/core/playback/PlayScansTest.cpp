#include "core/playback/PlayScans.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unreadable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <numeric>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlayScansTest : public testing::Test {
protected:
    /// Fills the file with the numbers 0, 1, 2 … and cuts `missingBytes` off its end.
    template <typename T>
    void Fill(std::size_t count, std::size_t missingBytes = 0) {
        std::vector<T> values(count);
        std::iota(values.begin(), values.end(), T{0});
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(values.data()),
                   static_cast<std::streamsize>(count * sizeof(T) - missingBytes));
        file = SystemFile(path, Disposition::OpenExisting);
    }

    template <typename T>
    bool Play(std::int64_t offset, std::int64_t valuesPerScan, std::int64_t scans) {
        played.clear();
        scansPlayed = 0;
        DataBlock<T> block;
        return PlayScans(block, file, offset, valuesPerScan, scans,
                         [this, valuesPerScan](std::span<const T> values, std::int32_t count) {
                             EXPECT_EQ(static_cast<std::int64_t>(values.size()), count * valuesPerScan);
                             EXPECT_GT(count, 0);
                             played.insert(played.end(), values.begin(), values.end());
                             scansPlayed += count;
                             ++blocks;
                             if (breaksAfterABlock)
                                 MakeUnreadable(file);
                         });
    }

    TemporaryFolder folder;
    std::string path = folder / "AI.tld";
    SystemFile file;
    std::vector<double> played;
    std::int64_t scansPlayed = 0;
    int blocks = 0;
    bool breaksAfterABlock = false;
};

TEST_F(PlayScansTest, WholeScansAreNoEnd) {
    Fill<float>(12);
    EXPECT_FALSE(Play<float>(0, 3, 2));
    EXPECT_THAT(played, ElementsAre(0, 1, 2, 3, 4, 5));
    EXPECT_FALSE(Play<float>(24, 3, 2)); // up to the last byte
    EXPECT_THAT(played, ElementsAre(6, 7, 8, 9, 10, 11));
}

TEST_F(PlayScansTest, ShortReadIsTheEndAfterItsWholeScans) {
    Fill<std::int32_t>(12);
    EXPECT_TRUE(Play<std::int32_t>(24, 3, 3));
    EXPECT_THAT(played, ElementsAre(6, 7, 8, 9, 10, 11));
    EXPECT_TRUE(Play<std::int32_t>(48, 3, 1));
    EXPECT_THAT(played, IsEmpty());
    EXPECT_TRUE(Play<std::int32_t>(std::int64_t{1} << 40, 3, 1));
    EXPECT_THAT(played, IsEmpty());
}

TEST_F(PlayScansTest, ScanThatTheFileHoldsInPartIsNotPlayed) {
    for (std::size_t missing = 1; missing < 12; ++missing) { // inside values and between them
        Fill<float>(6, missing);
        EXPECT_TRUE(Play<float>(0, 3, 2)) << missing;
        EXPECT_THAT(played, ElementsAre(0, 1, 2)) << missing;
    }
    Fill<std::uint8_t>(5);
    EXPECT_TRUE(Play<std::uint8_t>(0, 2, 3));
    EXPECT_THAT(played, ElementsAre(0, 1, 2, 3));
}

TEST_F(PlayScansTest, NothingToReadIsTheEnd) {
    Fill<float>(12);
    EXPECT_TRUE(Play<float>(0, 0, 5)); // scans without values
    EXPECT_TRUE(Play<float>(0, -1, 5));
    file.Close();
    EXPECT_TRUE(Play<float>(0, 3, 1));
    EXPECT_THAT(played, IsEmpty());
}

TEST_F(PlayScansTest, WhatCannotBeReadIsRaisedAfterTheScansInFrontOfIt) {
    Fill<std::uint8_t>(static_cast<std::size_t>(2 * ValuesARead));
    breaksAfterABlock = true;
    EXPECT_EQ(FaultOf([&] { (void)Play<std::uint8_t>(0, 1, 2 * ValuesARead); }), UnreadableText);
    EXPECT_EQ(scansPlayed, ValuesARead);
    EXPECT_EQ(FaultOf([&] { (void)Play<std::uint8_t>(0, 1, 1); }), UnreadableText);
    EXPECT_THAT(played, IsEmpty());
}

TEST_F(PlayScansTest, LongTicksAreReadInBlocksOfWholeScans) {
    const std::int64_t channels = 3; // ValuesARead is no multiple of it
    const std::int64_t scans = 2 * (ValuesARead / channels) + 5;
    Fill<std::int32_t>(static_cast<std::size_t>(scans * channels));
    EXPECT_FALSE(Play<std::int32_t>(0, channels, scans));
    EXPECT_EQ(blocks, 3);
    EXPECT_EQ(scansPlayed, scans);
    for (std::size_t i = 0; i < played.size(); i += 1009)
        ASSERT_EQ(played[i], static_cast<double>(i));
    EXPECT_TRUE(Play<std::int32_t>(0, channels, std::int64_t{1} << 31));
    EXPECT_EQ(scansPlayed, scans);
}

TEST_F(PlayScansTest, ScanLongerThanABlockIsReadWhole) {
    Fill<std::uint8_t>(static_cast<std::size_t>(2 * ValuesARead + 2));
    EXPECT_FALSE(Play<std::uint8_t>(0, ValuesARead + 1, 2));
    EXPECT_EQ(scansPlayed, 2);
}

} // namespace
} // namespace tracelet
