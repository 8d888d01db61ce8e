#include "tests/window/controls/BufferedInputTest.h"

namespace tracelet {
namespace {

using testing::ElementsAre;

class InputLossTest : public BufferedInputTest {};

TEST_F(InputLossTest, AFullQueueDropsWholeHalvesAndGoesOn) {
    StartSmallQueue();
    fake->Feed(100);
    WaitUntilRead(100);
    WaitFor(7);
    fake->Feed(8);
    WaitFor(9);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4), First(8, 4), Second(12, 4), First(16, 4),
                                   Second(20, 4), Overrun, First(100, 4), Second(104, 4)));
    EXPECT_EQ(control->ErrorText(), QString());
}

TEST_F(InputLossTest, EveryLossIsToldOnce) {
    StartSmallQueue();
    for (std::uint64_t round = 0; round < 3; ++round) {
        fake->Feed(1000);
        WaitUntilRead(1000 * (round + 1));
        WaitFor(7);
        ExpectSilence();
        EXPECT_THAT(heard, testing::Contains(Overrun).Times(1)) << round;
        EXPECT_EQ(heard.back(), Overrun);
        EXPECT_EQ(heard.front().samples, Samples(1000 * round, 4));
        heard.clear();
    }
}

TEST_F(InputLossTest, HalvesAfterALossBeginWithAScan) {
    control->SetScanChannelCount(3);
    control->SetQueueLimit(100);
    control->StartBufferedAI(13, true); // halves of 6
    for (std::uint64_t fed : {601, 1202, 1800})
        ASSERT_NO_FATAL_FAILURE(
            (fake->Feed(fed - fake->SamplesRead()), WaitUntilRead(fed), QTest::qWait(20)));
    for (const Notification& notification : heard) {
        if (notification == Overrun)
            continue;
        ASSERT_EQ(notification.samples.size(), 6U);
        EXPECT_EQ(std::fmod(notification.samples.front(), 6), 0.0);
        EXPECT_EQ(notification.samples, Samples(static_cast<std::uint64_t>(notification.samples.front()), 6));
    }
    EXPECT_GE(heard.size(), 9U);
}

TEST_F(InputLossTest, ALossOfTheBoardIsToldAndTheNextHalfIsWhole) {
    control->SetScanChannelCount(3);
    control->StartBufferedAI(12, true); // halves of 6
    fake->Feed(8);
    WaitFor(1);
    fake->LoseScans(10);
    WaitFor(2);
    fake->Feed(13); // the first ends the scan that was under way
    WaitFor(4);
    EXPECT_THAT(heard, ElementsAre(First(0, 6), Overrun, Second(39, 6), First(45, 6)));
    EXPECT_EQ(control->ErrorText(), QString());
}

TEST_F(InputLossTest, ALossInsideAOneShotBufferLeavesItTwoHalves) {
    control->StartBufferedAI(8, false);
    fake->Feed(6);
    WaitFor(1);
    fake->LoseScans(10);
    WaitFor(2);
    fake->Feed(2);
    WaitFor(3);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Overrun, Notification{Note::Second, {4, 5, 16, 17}}));
    ExpectSilence();
}

TEST_F(InputLossTest, AFailureComesBehindAllHalves) {
    fake->Feed(22);
    fake->FailNext("The board was unplugged");
    control->StartBufferedAI(8, true);
    WaitUntilRead(22);
    EXPECT_EQ(control->ErrorText(), QString()) << "not before the halves were handed over";
    WaitFor(6);
    EXPECT_THAT(heard,
                ElementsAre(First(0, 4), Second(4, 4), First(8, 4), Second(12, 4), First(16, 4), Failed));
    EXPECT_EQ(control->ErrorText(), QStringLiteral("The board was unplugged"));
    EXPECT_FALSE(fake->IsStreaming());
    ExpectSilence();
    control->StopBufferedAI(0);
    EXPECT_EQ(control->ErrorText(), QStringLiteral("The board was unplugged"));
    control->StartBufferedAI(8, true);
    EXPECT_EQ(control->ErrorText(), QString());
}

TEST_F(InputLossTest, AFailureMayBeAnsweredByAStop) {
    onNotification = [this] { control->StopBufferedAI(0); };
    fake->FailNext("gone");
    control->StartBufferedAI(8, true);
    WaitFor(1);
    EXPECT_THAT(heard, ElementsAre(Failed));
    ExpectSilence();
}

TEST_F(InputLossTest, ABoardThatStopsByItselfHasFailed) {
    for (bool cyclic : {true, false}) {
        heard.clear();
        fake->Feed(5);
        fake->EndNext();
        control->StartBufferedAI(8, cyclic);
        WaitFor(2);
        EXPECT_THAT(heard, ElementsAre(First(0, 4), Failed));
        EXPECT_EQ(control->ErrorText(), QStringLiteral("The board ended the input by itself"));
        control->StopBufferedAI(0);
    }
}

} // namespace
} // namespace tracelet
