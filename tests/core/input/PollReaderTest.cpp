#include "core/input/PollReader.h"

#include "tests/support/GatedBoards.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>

namespace tracelet {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class PollReaderTest : public testing::Test {
protected:
    PollReaderTest() {
        PollPlan plan;
        plan.channelCount = 1;
        plan.readsScan = true;
        plan.channels = {{3, {}, 0}};
        reader = std::make_unique<PollReader>(plan, boards, [this] { ++announced; });
    }
    ~PollReaderTest() override {
        board->gate.Open();
        reader.reset();
        EXPECT_TRUE(Comes([&] { return board.use_count() == 2; })) << "the thread has let everything go";
    }

    template <typename Condition>
    [[nodiscard]] static bool Comes(Condition condition) {
        for (int i = 0; i < 10000 && !condition(); ++i)
            std::this_thread::sleep_for(1ms);
        return condition();
    }

    const std::shared_ptr<GatedAnalogBoard> board = std::make_shared<GatedAnalogBoard>();
    const PollBoards boards{board, nullptr, nullptr};
    std::atomic<int> announced = 0;
    std::unique_ptr<PollReader> reader;
};

TEST_F(PollReaderTest, ReadsOnAThreadOfItsOwn) {
    for (int tick = 0; tick < 3; ++tick) {
        EXPECT_TRUE(reader->IsIdle());
        reader->Begin();
        ASSERT_TRUE(reader->Wait(10s));
        EXPECT_FALSE(reader->IsIdle());
        EXPECT_TRUE(reader->HasRead());
        EXPECT_THAT(reader->Tick().values, ElementsAre(3.5));
        reader->End();
        EXPECT_FALSE(reader->HasRead());
    }
    EXPECT_NE(board->gate.Reader(), std::this_thread::get_id());
    EXPECT_EQ(announced, 0);
}

TEST_F(PollReaderTest, AnnouncesWhatNobodyWaitedFor) {
    board->gate.Close();
    reader->Begin();
    EXPECT_FALSE(reader->Wait(1ms));
    EXPECT_FALSE(reader->IsIdle() || reader->HasRead());
    EXPECT_EQ(announced, 0);
    board->gate.Open();
    ASSERT_TRUE(Comes([&] { return announced == 1; }));
    EXPECT_TRUE(reader->HasRead());
    EXPECT_THAT(reader->Tick().values, ElementsAre(3.5));
    reader->End();
    reader->Begin();
    EXPECT_TRUE(reader->Wait(10s));
    EXPECT_EQ(announced, 1);
}

TEST_F(PollReaderTest, LetsAReadThatNeverReturnsGo) {
    board->gate.Close();
    reader->Begin();
    EXPECT_FALSE(reader->Wait(1ms));
    ASSERT_TRUE(Comes([&] { return board->gate.Reads() == 1; }));
    reader->LetGo();
    EXPECT_TRUE(reader->IsReading(boards));
    EXPECT_TRUE(reader->IsReading({nullptr, board, nullptr}));
    EXPECT_FALSE(reader->IsReading({std::make_shared<GatedAnalogBoard>(), nullptr, nullptr}));
    EXPECT_FALSE(reader->IsReading({}));
    board->gate.Open();
    EXPECT_TRUE(Comes([&] { return !reader->IsReading(boards); }));
    EXPECT_EQ(announced, 0);
}

TEST_F(PollReaderTest, WhatWasReadBeforeItWasLetGoIsForgotten) {
    board->gate.Close();
    reader->Begin();
    EXPECT_FALSE(reader->Wait(1ms));
    board->gate.Open();
    ASSERT_TRUE(Comes([&] { return announced == 1; }));
    reader->LetGo();
    EXPECT_FALSE(reader->HasRead());
}

TEST_F(PollReaderTest, ReadThatWasNotBegunYetIsNotUnderWay) {
    reader->Begin();
    reader->LetGo();
    EXPECT_TRUE(Comes([&] { return !reader->IsReading(boards); }));
}

} // namespace
} // namespace tracelet
