#include "tests/window/controls/BufferedInputTest.h"

#include <QCoreApplication>
#include <QTimer>

namespace tracelet {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ThrowsMessage;

TEST_F(BufferedInputTest, HalvesComeInTurnAndWithoutAGap) {
    control->StartBufferedAI(8, true);
    fake->Feed(3);
    ExpectSilence();
    fake->Feed(6);
    WaitFor(2);
    fake->Feed(11);
    WaitFor(5);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4), First(8, 4), Second(12, 4), First(16, 4)));
    ExpectSilence();
}

TEST_F(BufferedInputTest, NothingComesFromInsideTheStart) {
    fake->Feed(100);
    control->StartBufferedAI(8, true);
    WaitUntilRead(100);
    EXPECT_TRUE(heard.empty());
    WaitFor(25);
}

TEST_F(BufferedInputTest, RawCountsComeAsTheyAre) {
    control->SetDataType(1);
    control->StartBufferedAI(8, true);
    fake->Feed(8);
    WaitFor(2);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4)));
}

TEST_F(BufferedInputTest, ChangingTheDataTypeMeanwhileDoesNotMatter) {
    control->StartBufferedAI(8, true);
    bool analogCame = false;
    QObject::connect(
        control.get(), &ZelAI::OnFirstBufferChange, control.get(),
        [&](auto raw, auto analog, std::int32_t) { analogCame = raw.empty() && analog.size() == 4; });
    fake->Feed(3);
    onNotification = [&] { control->SetDataType(2); };
    control->SetDataType(2);
    fake->Feed(1);
    WaitFor(1);
    EXPECT_TRUE(analogCame);
}

TEST_F(BufferedInputTest, AHalfHoldsWholeScans) {
    struct Case {
        std::int32_t count, channels;
        std::size_t half;
    };
    for (const Case& c : {Case{8, 1, 4}, Case{9, 1, 4}, Case{1, 1, 1}, Case{2, 1, 1}, Case{3, 1, 1},
                          Case{4096, 3, 2046}, Case{4097, 7, 2044}, Case{20, 8, 8}, Case{1, 8, 8},
                          Case{33, 8, 16}, Case{15, 5, 5}, Case{4096, 8, 2048}}) {
        heard.clear();
        control->SetScanChannelCount(c.channels);
        control->StartBufferedAI(c.count, true);
        fake->Feed(3 * c.half);
        WaitFor(3);
        EXPECT_THAT(heard, ElementsAre(First(0, c.half), Second(c.half, c.half), First(2 * c.half, c.half)))
            << c.count << " " << c.channels;
        control->StopBufferedAI(0);
    }
}

TEST_F(BufferedInputTest, AOneShotBufferIsTwoHalves) {
    control->SetScanChannelCount(3);
    control->StartBufferedAI(100, false);
    EXPECT_EQ(fake->started.totalSamples, 96U);
    fake->Feed(1000);
    WaitFor(2);
    EXPECT_THAT(heard, ElementsAre(First(0, 48), Second(48, 48)));
    ExpectSilence();
    EXPECT_FALSE(fake->IsStreaming());
    heard.clear();
    control->StartBufferedAI(6, false); // without a stop in between
    fake->Feed(6);
    WaitFor(2);
    EXPECT_THAT(heard, ElementsAre(First(0, 3), Second(3, 3)));
    control->StopBufferedAI(0);
}

TEST_F(BufferedInputTest, TheSecondHalfOfAOneShotBufferMayStop) {
    onNotification = [this] {
        if (heard.back().note == Note::Second)
            control->StopBufferedAI(0);
    };
    control->StartBufferedAI(8, false);
    fake->Feed(8);
    WaitFor(2);
    ExpectSilence();
    EXPECT_EQ(heard.size(), 2U);
}

TEST_F(BufferedInputTest, StopsAtAnyMomentAreSafe) {
    control->SetQueueLimit(4096);
    for (int i = 0; i < 150; ++i) {
        fake->Feed(FakeBoard::Unlimited);
        control->StartBufferedAI(16, true);
        if (i % 3 == 0)
            std::this_thread::sleep_for(std::chrono::microseconds(17 * i));
        else
            QTest::qWait(i % 3 - 1);
        control->StopBufferedAI(0);
        heard.clear();
        QCoreApplication::processEvents();
        ASSERT_TRUE(heard.empty()) << i;
    }
}

TEST_F(BufferedInputTest, AMessageBoxInsideANotificationHoldsTheOthersBack) {
    onNotification = [this] {
        if (heard.size() > 2)
            return;
        fake->Feed(8);
        const std::size_t before = heard.size();
        QTest::qWait(30); // the event loop of the box
        EXPECT_EQ(heard.size(), before);
    };
    control->StartBufferedAI(8, true);
    fake->Feed(8);
    WaitFor(6);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4), First(8, 4), Second(12, 4), First(16, 4),
                                   Second(20, 4)));
}

TEST_F(BufferedInputTest, OtherEventsGetTheirTurnBetweenHalves) {
    int turns = 0;
    onNotification = [&] {
        QTimer::singleShot(0, control.get(), [&] { ++turns; });
        std::this_thread::sleep_for(10ms); // as much as drawing takes
    };
    fake->Feed(80);
    control->StartBufferedAI(8, true);
    WaitUntilRead(80);
    WaitFor(20);
    EXPECT_GE(turns, 18);
}

TEST_F(BufferedInputTest, ANotificationMayStartAnew) {
    onNotification = [this] {
        if (heard.size() != 1)
            return;
        Stop();
        EXPECT_EQ(heard.size(), 3U);
        control->StartBufferedAI(4, true);
        fake->Feed(4);
        QTest::qWait(30);
        EXPECT_EQ(heard.size(), 3U);
    };
    fake->Feed(10);
    control->StartBufferedAI(8, true);
    WaitUntilRead(10);
    WaitFor(5);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4), First(8, 2), First(0, 2), Second(2, 2)));
}

TEST_F(BufferedInputTest, ANotificationMayDeleteTheControl) {
    onNotification = [this] { control.release()->deleteLater(); };
    ZelAI* ai = control.get();
    QObject::disconnect(ai, nullptr, nullptr, nullptr);
    int halves = 0;
    QObject::connect(ai, &ZelAI::OnFirstBufferChange, qApp, [&] {
        ++halves;
        control.reset();
    });
    fake->Feed(100);
    control->StartBufferedAI(8, true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return halves == 1; }, 20000));
    ExpectSilence();
    EXPECT_EQ(halves, 1);
    EXPECT_FALSE(fake->IsStreaming());
}

TEST_F(BufferedInputTest, SelectingAnotherBoardStops) {
    fake->Feed(100);
    control->StartBufferedAI(8, true);
    control->SetDeviceNumber(1);
    EXPECT_FALSE(fake->IsStreaming());
    control->SetDeviceNumber(0);
    fake->Feed(100);
    control->StartBufferedAI(8, true);
    control->SetBoards(boards);
    EXPECT_FALSE(fake->IsStreaming());
    ExpectSilence();
    EXPECT_TRUE(heard.empty());
}

TEST_F(BufferedInputTest, ABlockedWindowLosesNothing) {
    // What 1 MS/s bring in 30 s. The event loop does not run while the board is read.
    constexpr std::uint64_t Total = 30'000'000;
    constexpr std::size_t HalfSize = 250'000;
    std::uint64_t next = 0;
    bool inOrder = true;
    QObject::disconnect(control.get(), nullptr, control.get(), nullptr);
    const auto check = [&](auto, std::span<const float> analog, std::int32_t) {
        for (float sample : analog)
            inOrder = sample == static_cast<float>(next++) && inOrder;
    };
    QObject::connect(control.get(), &ZelAI::OnFirstBufferChange, control.get(), check);
    QObject::connect(control.get(), &ZelAI::OnSecondBufferChange, control.get(), check);
    QObject::connect(control.get(), &ZelAI::OnOverrunNotice, control.get(), [] { FAIL(); });
    control->StartBufferedAI(2 * HalfSize, true);
    fake->Feed(Total);
    WaitUntilRead(Total);
    EXPECT_EQ(next, 0U);
    ASSERT_TRUE(QTest::qWaitFor([&] { return next >= Total; }, 60000));
    EXPECT_EQ(next, Total);
    EXPECT_TRUE(inOrder);
}

TEST_F(BufferedInputTest, AStartThatTheBoardRefusesRaises) {
    fake->refusedStart = "The trigger is taken";
    EXPECT_THAT([&] { control->StartBufferedAI(8, true); },
                ThrowsMessage<RunTimeError>("The trigger is taken"));
    EXPECT_EQ(control->ErrorText(), QStringLiteral("The trigger is taken"));
    ExpectSilence();
    fake->refusedStart.clear();
    control->StartBufferedAI(8, true);
    EXPECT_EQ(control->ErrorText(), QString());
    fake->Feed(4);
    WaitFor(1);
}

TEST_F(BufferedInputTest, OneInputAtATime) {
    control->StartBufferedAI(8, true);
    EXPECT_THAT([&] { control->StartBufferedAI(8, true); },
                ThrowsMessage<RunTimeError>("The analog input is running already"));
    fake->Feed(4);
    WaitFor(1);
}

TEST_F(BufferedInputTest, StartingWithoutABoardRaises) {
    control->SetDeviceNumber(-1);
    EXPECT_THAT([&] { control->StartBufferedAI(8, true); },
                ThrowsMessage<RunTimeError>("No analog device is selected"));
    EXPECT_EQ(control->ErrorText(), QStringLiteral("No analog device is selected"));
}

TEST_F(BufferedInputTest, CountsThatCannotBeHeldAreRefusedBeforeTheStart) {
    constexpr std::int32_t MiSamples = 1 << 20;
    struct Case {
        std::int32_t count, form;
        bool refused;
    };
    for (const Case& c :
         {Case{2147483647, 2, true}, Case{2147483647, 1, true}, Case{128 * MiSamples + 2, 2, true},
          Case{256 * MiSamples + 2, 1, true}, Case{0, 2, true}, Case{-1, 2, true},
          Case{-2147483647 - 1, 1, true}, Case{128 * MiSamples, 2, false}, Case{256 * MiSamples, 1, false}}) {
        control->SetDataType(c.form);
        for (bool cyclic : {true, false}) {
            if (c.refused) {
                EXPECT_THROW(control->StartBufferedAI(c.count, cyclic), RunTimeError) << c.count;
                EXPECT_FALSE(control->ErrorText().isEmpty());
                EXPECT_FALSE(fake->IsStreaming());
            } else {
                control->StartBufferedAI(c.count, cyclic);
                control->StopBufferedAI(0);
            }
        }
    }
    control->SetDataType(2);
    EXPECT_THAT([&] { control->StartBufferedAI(2147483647, true); },
                ThrowsMessage<RunTimeError>(
                    "A data count of 2147483647 is too large: half of it must fit into 262,144 KiB"));
    EXPECT_THAT([&] { control->StartBufferedAI(0, true); },
                ThrowsMessage<RunTimeError>("The data count must be above 0"));
}

} // namespace
} // namespace tracelet
