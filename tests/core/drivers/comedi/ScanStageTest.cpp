#include "core/drivers/comedi/ScanStage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <numeric>

namespace tracelet {
namespace {

using testing::ElementsAre;

template <typename Code>
void Put(ScanStage& stage, const std::vector<Code>& codes, std::size_t lessBytes = 0) {
    const std::size_t bytes = codes.size() * sizeof(Code) - lessBytes;
    const std::span<std::byte> room = stage.Room();
    ASSERT_GE(room.size(), bytes);
    std::memcpy(room.data(), codes.data(), bytes);
    stage.Commit(bytes);
}

std::vector<std::uint32_t> TakeAll(ScanStage& stage) {
    std::vector<std::uint32_t> codes;
    while (stage.Ready() > 0)
        codes.push_back(stage.Take());
    return codes;
}

TEST(ScanStageTest, HandsOverWholeScansOnly) {
    ScanStage stage(3, 2);
    Put<std::uint16_t>(stage, {1, 2, 3, 4});
    EXPECT_EQ(stage.Ready(), 3U);
    EXPECT_THAT(TakeAll(stage), ElementsAre(1, 2, 3));
    Put<std::uint16_t>(stage, {5});
    EXPECT_EQ(stage.Ready(), 0U);
    Put<std::uint16_t>(stage, {65535, 7});
    EXPECT_THAT(TakeAll(stage), ElementsAre(4, 5, 65535));
}

TEST(ScanStageTest, AScanMayBeTakenInPieces) {
    ScanStage stage(3, 2);
    Put<std::uint16_t>(stage, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(stage.Take(), 1U);
    EXPECT_EQ(stage.Position(), 1U);
    EXPECT_EQ(stage.Ready(), 5U);
    Put<std::uint16_t>(stage, {7});
    EXPECT_EQ(stage.Ready(), 5U);
    EXPECT_THAT(TakeAll(stage), ElementsAre(2, 3, 4, 5, 6));
    EXPECT_EQ(stage.Position(), 0U);
}

TEST(ScanStageTest, ALossDropsTheScanUnderWay) {
    ScanStage stage(2, 2);
    Put<std::uint16_t>(stage, {1, 2, 3, 4, 5, 6}, 1);
    EXPECT_EQ(stage.Take(), 1U);
    stage.DropPartialScan();
    EXPECT_THAT(TakeAll(stage), ElementsAre(2, 3, 4));
    Put<std::uint16_t>(stage, {70, 80});
    EXPECT_THAT(TakeAll(stage), ElementsAre(70, 80));
}

TEST(ScanStageTest, ReadsCodesOfFourBytes) {
    ScanStage stage(1, 4);
    Put<std::uint32_t>(stage, {0, 16777215, 4294967295U, 9}, 2);
    EXPECT_THAT(TakeAll(stage), ElementsAre(0, 16777215, 4294967295U));
}

TEST(ScanStageTest, KeepsTheOrderThroughManyFillings) {
    ScanStage stage(7, 2);
    std::uint16_t next = 0;
    std::uint16_t expected = 0;
    for (int round = 0; round < 50; ++round) {
        std::vector<std::uint16_t> codes(stage.Room().size() / 2);
        ASSERT_FALSE(codes.empty());
        std::iota(codes.begin(), codes.end(), next);
        next = static_cast<std::uint16_t>(next + codes.size());
        Put(stage, codes);
        for (const std::uint32_t code : TakeAll(stage))
            ASSERT_EQ(code, expected++);
    }
}

} // namespace
} // namespace tracelet
