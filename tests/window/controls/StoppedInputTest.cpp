#include "tests/window/controls/BufferedInputTest.h"

#include <QCoreApplication>
#include <QTimer>

// What a stop hands over of hardware-paced input.

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

class StoppedInputTest : public BufferedInputTest {
protected:
    // Feeds samples and waits for the reading thread, not running the event loop.
    void FeedToAFrozenWindow(std::uint64_t samples) {
        fake->Feed(samples);
        WaitUntilRead(samples);
        EXPECT_THAT(heard, IsEmpty());
    }
};

TEST_F(StoppedInputTest, AllThatWaitsIsHandedOverBeforeAStopReturns) {
    control->StartBufferedAI(8, true);
    FeedToAFrozenWindow(102);
    EXPECT_TRUE(Stop());
    ASSERT_EQ(heard.size(), 26U);
    for (std::size_t half = 0; half < 25; ++half)
        EXPECT_EQ(heard[half], half % 2 == 0 ? First(4 * half, 4) : Second(4 * half, 4));
    EXPECT_EQ(heard.back(), Second(100, 2));
    ExpectSilence();
    EXPECT_FALSE(fake->IsStreaming());
    EXPECT_TRUE(Stop());
    EXPECT_EQ(heard.size(), 26U);
    heard.clear();
    control->StartBufferedAI(8, true);
    fake->Feed(4);
    WaitFor(1);
    EXPECT_THAT(heard, ElementsAre(First(0, 4)));
}

TEST_F(StoppedInputTest, OnlyWholeScansOfTheLastHalfAreHandedOver) {
    control->SetScanChannelCount(3);
    struct Case {
        std::uint64_t fed;
        std::vector<Notification> heard;
    };
    for (const Case& c : {Case{2, {}}, Case{3, {First(0, 3)}}, Case{5, {First(0, 3)}}, Case{6, {First(0, 6)}},
                          Case{8, {First(0, 6)}}, Case{11, {First(0, 6), Second(6, 3)}}}) {
        heard.clear();
        control->StartBufferedAI(12, true); // halves of 6
        FeedToAFrozenWindow(c.fed);
        EXPECT_TRUE(Stop());
        EXPECT_EQ(heard, c.heard) << c.fed;
    }
}

TEST_F(StoppedInputTest, RawCountsOfTheLastHalfAreHandedOverToo) {
    control->SetDataType(RawCounts);
    control->SetScanChannelCount(2);
    control->StartBufferedAI(16, true);
    FeedToAFrozenWindow(13);
    Stop();
    EXPECT_THAT(heard, ElementsAre(First(0, 8), Second(8, 4)));
}

TEST_F(StoppedInputTest, AOneShotBufferThatIsStoppedEarlyKeepsItsScans) {
    control->StartBufferedAI(8, false);
    FeedToAFrozenWindow(6);
    EXPECT_TRUE(Stop());
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 2)));
    ExpectSilence();
    heard.clear();
    control->StartBufferedAI(8, false);
    FeedToAFrozenWindow(8); // all of it
    EXPECT_TRUE(Stop());
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4)));
}

TEST_F(StoppedInputTest, LossesAreToldInTheirPlace) {
    StartSmallQueue();
    FeedToAFrozenWindow(102); // six halves wait, those up to 100 are dropped, the rest stands aside
    Stop();
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4), First(8, 4), Second(12, 4), First(16, 4),
                                   Second(20, 4), Overrun, First(100, 2)));
}

TEST_F(StoppedInputTest, WhatCameOfTheHalfBehindAFullQueueIsNotLost) {
    StartSmallQueue();
    FeedToAFrozenWindow(26);
    Stop();
    ASSERT_EQ(heard.size(), 7U);
    EXPECT_EQ(heard.back(), First(24, 2));
}

TEST_F(StoppedInputTest, AHalfAsideGoesOnWhenThereIsRoomAgain) {
    StartSmallQueue();
    FeedToAFrozenWindow(26);
    WaitFor(6);
    WaitForReads(2); // the second begins with room in the queue
    fake->Feed(7);
    WaitFor(8);
    EXPECT_EQ(heard[6], First(24, 4));
    EXPECT_EQ(heard[7], Second(28, 4));
    Stop();
    EXPECT_EQ(heard.back(), First(32, 1));
}

TEST_F(StoppedInputTest, ALossInsideTheHalfAsideDropsIt) {
    control->SetScanChannelCount(2);
    StartSmallQueue();
    fake->Feed(27);
    fake->LoseScans(10);
    WaitUntilRead(27);
    fake->Feed(4); // the first ends the scan that was under way
    WaitUntilRead(31);
    Stop();
    ASSERT_EQ(heard.size(), 8U);
    EXPECT_EQ(heard[6], Overrun);
    EXPECT_EQ(heard[7], First(48, 2));
}

TEST_F(StoppedInputTest, AStopInsideANotificationHandsTheRestOverInOrder) {
    std::vector<float> kept;
    QObject::connect(control.get(), &ZelAI::OnFirstBufferChange, control.get(),
                     [&](auto, std::span<const float> analog, std::int32_t) {
                         Stop();
                         kept.insert(kept.end(), analog.begin(), analog.end());
                     });
    fake->Feed(14);
    control->StartBufferedAI(8, true);
    WaitUntilRead(14);
    WaitFor(1);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4), First(8, 4), Second(12, 2)));
    EXPECT_THAT(kept, ElementsAre(8, 9, 10, 11, 0, 1, 2, 3)) << "samples stand while their notification runs";
    ExpectSilence();
    EXPECT_FALSE(fake->IsStreaming());
}

TEST_F(StoppedInputTest, AStopInsideAMessageBoxOfANotificationDoesTheSame) {
    onNotification = [this] {
        if (heard.size() > 1)
            return;
        QTimer::singleShot(0, control.get(), [this] { Stop(); });
        QTest::qWait(30); // the event loop of the box
        EXPECT_EQ(heard.size(), 3U);
    };
    fake->Feed(10);
    control->StartBufferedAI(8, true);
    WaitUntilRead(10);
    WaitFor(1);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4), First(8, 2)));
    ExpectSilence();
}

TEST_F(StoppedInputTest, AFailureThatNobodyWasToldOfIsToldByTheStop) {
    fake->Feed(6);
    fake->FailNext("The board was unplugged");
    control->StartBufferedAI(8, true);
    WaitUntilRead(6);
    EXPECT_FALSE(Stop());
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 2)));
    EXPECT_EQ(control->ErrorText(), QStringLiteral("The board was unplugged"));
    ExpectSilence();
    control->StartBufferedAI(8, true);
    EXPECT_TRUE(Stop());
}

TEST_F(StoppedInputTest, WhatCameBeforeAFailureIsHandedOverByTheStopThatAnswersIt) {
    onNotification = [this] {
        if (heard.back() == Failed) {
            EXPECT_TRUE(Stop());
        }
    };
    fake->Feed(6);
    fake->FailNext("The board was unplugged");
    control->StartBufferedAI(8, true);
    WaitFor(3);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Failed, Second(4, 2)));
    EXPECT_EQ(control->ErrorText(), QStringLiteral("The board was unplugged"));
}

TEST_F(StoppedInputTest, SelectingAnotherBoardOrGoingHandsOverNothing) {
    control->StartBufferedAI(8, true);
    FeedToAFrozenWindow(10);
    control->SetDeviceNumber(1);
    EXPECT_THAT(heard, IsEmpty());
    control->SetDeviceNumber(0);
    control->StartBufferedAI(8, true);
    FeedToAFrozenWindow(10);
    control.reset();
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_FALSE(fake->IsStreaming());
}

TEST_F(StoppedInputTest, ANotificationOfAStopMayDeselectTheBoard) {
    onNotification = [this] {
        if (heard.size() == 2)
            control->SetDeviceNumber(-1);
    };
    control->StartBufferedAI(8, true);
    FeedToAFrozenWindow(18);
    Stop();
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4)));
    ExpectSilence();
}

TEST_F(StoppedInputTest, ANotificationOfAStopMayDeleteTheControl) {
    ZelAI* ai = control.get();
    QObject::disconnect(ai, nullptr, nullptr, nullptr);
    int halves = 0;
    QObject::connect(ai, &ZelAI::OnFirstBufferChange, qApp, [&] {
        ++halves;
        control.reset();
    });
    control->StartBufferedAI(8, true);
    FeedToAFrozenWindow(18);
    ai->StopBufferedAI(0);
    EXPECT_EQ(halves, 1);
    EXPECT_FALSE(fake->IsStreaming());
}

TEST_F(StoppedInputTest, NothingStartsWhileAStopHandsOver) {
    onNotification = [this] {
        EXPECT_THAT([&] { control->StartBufferedAI(8, true); },
                    ThrowsMessage<RunTimeError>("The analog input is running already"));
    };
    control->StartBufferedAI(8, true);
    FeedToAFrozenWindow(6);
    Stop();
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 2)));
}

} // namespace
} // namespace tracelet
