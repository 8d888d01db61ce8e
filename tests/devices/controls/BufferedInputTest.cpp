#include "devices/controls/ZelAI.h"
#include "devices/drivers/simulated/SimulatedAnalogBoard.h"
#include "devices/drivers/simulated/SimulatedBoards.h"
#include "tests/devices/controls/FakeBoard.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <thread>

namespace tracelet {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ThrowsMessage;

enum class Note : std::uint8_t { First, Second, Overrun, Failed };

struct Notification {
    Note note;
    std::vector<double> samples;
    bool operator==(const Notification&) const = default;
};

void PrintTo(const Notification& notification, std::ostream* out) {
    *out << "FSOX"[static_cast<int>(notification.note)] << testing::PrintToString(notification.samples);
}

// Samples `first` … `first` + `count` - 1 of the fake board.
std::vector<double> Samples(std::uint64_t first, std::size_t count) {
    std::vector<double> samples(count);
    std::iota(samples.begin(), samples.end(), static_cast<double>(first));
    return samples;
}

Notification First(std::uint64_t first, std::size_t count) {
    return {Note::First, Samples(first, count)};
}
Notification Second(std::uint64_t first, std::size_t count) {
    return {Note::Second, Samples(first, count)};
}
const Notification Overrun{Note::Overrun, {}};
const Notification Failed{Note::Failed, {}};

class BufferedInputTest : public testing::Test {
protected:
    BufferedInputTest() {
        boards.analog.push_back(EntryOf(fake));
        boards.analog.push_back(EntryOf(std::make_shared<FakeBoard>()));
        control->SetBoards(boards);
        control->SetDeviceNumber(0);
        Listen();
    }

    void Listen() {
        ZelAI* ai = control.get();
        QObject::connect(
            ai, &ZelAI::OnFirstBufferChange, ai,
            [this](auto raw, auto analog, std::int32_t count) { Half(Note::First, raw, analog, count); });
        QObject::connect(
            ai, &ZelAI::OnSecondBufferChange, ai,
            [this](auto raw, auto analog, std::int32_t count) { Half(Note::Second, raw, analog, count); });
        QObject::connect(ai, &ZelAI::OnOverrunNotice, ai, [this] { Heed({Note::Overrun, {}}); });
        QObject::connect(ai, &ZelAI::OnInputFailed, ai, [this] { Heed({Note::Failed, {}}); });
    }

    void Half(Note note, std::span<const std::int16_t> raw, std::span<const float> analog,
              std::int32_t count) {
        const bool isRaw = control->DataType() == RawCounts;
        EXPECT_EQ(raw.size(), isRaw ? static_cast<std::size_t>(count) : 0);
        EXPECT_EQ(analog.size(), isRaw ? 0 : static_cast<std::size_t>(count));
        Notification notification{note, {raw.begin(), raw.end()}};
        notification.samples.insert(notification.samples.end(), analog.begin(), analog.end());
        Heed(std::move(notification));
    }

    void Heed(Notification notification) {
        EXPECT_FALSE(inside) << "a notification inside another";
        inside = true;
        heard.push_back(std::move(notification));
        if (onNotification)
            onNotification();
        inside = false;
    }

    void WaitFor(std::size_t count) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return heard.size() >= count; }, 20000)) << heard.size() << " came";
    }

    // Waits without running the event loop, as a blocked window does.
    void WaitUntilRead(std::uint64_t samples) {
        for (int i = 0; i < 20000 && fake->SamplesRead() < samples; ++i)
            std::this_thread::sleep_for(1ms);
        ASSERT_EQ(fake->SamplesRead(), samples);
        std::this_thread::sleep_for(10ms); // for the reading thread to queue what it read
    }

    void ExpectSilence() {
        const std::size_t before = heard.size();
        QTest::qWait(30);
        EXPECT_EQ(heard.size(), before);
    }

    // Halves of four samples, one channel, of which six can wait.
    void StartSmallQueue() {
        control->SetQueueLimit(64);
        control->StartBufferedAI(8, true);
    }

    std::shared_ptr<FakeBoard> fake = std::make_shared<FakeBoard>();
    BoardList boards;
    std::vector<Notification> heard;
    std::function<void()> onNotification;
    bool inside = false;
    std::unique_ptr<ZelAI> control = std::make_unique<ZelAI>();
};

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

TEST_F(BufferedInputTest, StoppingInsideANotificationKeepsItsSamplesAndEndsAll) {
    std::vector<float> kept;
    QObject::connect(control.get(), &ZelAI::OnFirstBufferChange, control.get(),
                     [&](auto, std::span<const float> analog, std::int32_t) {
                         control->StopBufferedAI(0);
                         kept.assign(analog.begin(), analog.end());
                     });
    fake->Feed(100);
    control->StartBufferedAI(8, true);
    WaitUntilRead(100);
    WaitFor(1);
    ExpectSilence();
    EXPECT_EQ(heard.size(), 1U);
    EXPECT_THAT(kept, ElementsAre(0, 1, 2, 3));
    EXPECT_FALSE(fake->IsStreaming());
}

TEST_F(BufferedInputTest, NothingComesAfterAStop) {
    fake->Feed(100);
    control->StartBufferedAI(8, true);
    WaitUntilRead(100); // so that halves and their events wait
    control->StopBufferedAI(0);
    ExpectSilence();
    EXPECT_TRUE(heard.empty());
    control->StopBufferedAI(0);
    control->StartBufferedAI(8, true);
    fake->Feed(4);
    WaitFor(1);
    EXPECT_THAT(heard, ElementsAre(First(0, 4)));
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
        control->StopBufferedAI(0);
        control->StartBufferedAI(4, true);
        fake->Feed(4);
        QTest::qWait(30);
        EXPECT_EQ(heard.size(), 1U);
    };
    fake->Feed(100);
    control->StartBufferedAI(8, true);
    WaitFor(3);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), First(0, 2), Second(2, 2)));
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

TEST_F(BufferedInputTest, AFullQueueDropsWholeHalvesAndGoesOn) {
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

TEST_F(BufferedInputTest, EveryLossIsToldOnce) {
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

TEST_F(BufferedInputTest, HalvesAfterALossBeginWithAScan) {
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

TEST_F(BufferedInputTest, ALossOfTheBoardIsToldAndTheNextHalfIsWhole) {
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

TEST_F(BufferedInputTest, ALossInsideAOneShotBufferLeavesItTwoHalves) {
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

TEST_F(BufferedInputTest, AFailureComesBehindAllHalves) {
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

TEST_F(BufferedInputTest, AFailureMayBeAnsweredByAStop) {
    onNotification = [this] { control->StopBufferedAI(0); };
    fake->FailNext("gone");
    control->StartBufferedAI(8, true);
    WaitFor(1);
    EXPECT_THAT(heard, ElementsAre(Failed));
    ExpectSilence();
}

TEST_F(BufferedInputTest, ABoardThatStopsByItselfHasFailed) {
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

// ---- Simulated boards

class SimulatedInputTest : public BufferedInputTest {
protected:
    SimulatedInputTest() {
        control->SetBoards(list);
        control->SetDeviceNumber(0);
    }

    // Sample of a stream over `channels` channels from 0 on.
    double Expected(std::uint64_t sample, std::int32_t channels) {
        ChannelSetup channel{static_cast<std::int32_t>(sample % static_cast<std::uint64_t>(channels)),
                             board->Info().ranges.front(), SingleEnded};
        const Signal signal =
            StreamSignal(board->Number(), channel.channel, control->SampleRate() / channels);
        const std::uint64_t scan = sample / static_cast<std::uint64_t>(channels);
        return control->DataType() == RawCounts ? SampledCount(board->ConverterOf(), channel, signal, scan)
                                                : SampledValue(board->ConverterOf(), channel, signal, scan);
    }

    void ExpectSamples(std::int32_t channels) {
        std::uint64_t next = 0;
        for (const Notification& notification : heard) {
            for (double sample : notification.samples)
                ASSERT_EQ(sample, static_cast<float>(Expected(next++, channels))) << next;
        }
    }

    BoardList list = SimulatedBoards();
    std::shared_ptr<SimulatedAnalogBoard> board =
        std::static_pointer_cast<SimulatedAnalogBoard>(list.analog.front().board);
};

TEST_F(SimulatedInputTest, StreamsAreTheBoardsSignals) {
    for (std::int32_t form : {1, 2}) {
        for (std::int32_t channels : {1, 3, 16, 64}) {
            heard.clear();
            control->SetDataType(form);
            control->SetScanChannelCount(channels);
            control->SetSampleRate(1e6);
            control->StartBufferedAI(4096, true);
            WaitFor(5);
            control->StopBufferedAI(0);
            ExpectSamples(channels);
        }
    }
}

TEST_F(SimulatedInputTest, AOneShotBufferEnds) {
    control->SetSampleRate(1e6);
    control->SetScanChannelCount(7);
    control->StartBufferedAI(20000, false);
    WaitFor(2);
    ExpectSilence();
    EXPECT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard.front().samples.size(), 9996U);
    ExpectSamples(7);
}

TEST_F(SimulatedInputTest, AnUnpluggedBoardEndsTheInput) {
    control->SetSampleRate(1e6);
    control->StartBufferedAI(4096, true);
    WaitFor(2);
    Faults faults;
    faults.unplugged = true;
    board->SetFaults(faults);
    ASSERT_TRUE(QTest::qWaitFor([&] { return heard.back().note == Note::Failed; }, 20000));
    EXPECT_EQ(control->ErrorText(), QStringLiteral("The board does not answer; it may have been unplugged"));
    ExpectSilence();
    EXPECT_THAT(heard, testing::Contains(Failed).Times(1));
    heard.pop_back();
    ExpectSamples(1);
    EXPECT_THROW(control->StartBufferedAI(4096, true), RunTimeError);
    EXPECT_EQ(control->ErrorText(), QStringLiteral("The board does not answer; it may have been unplugged"));
}

TEST_F(SimulatedInputTest, AReadErrorEndsTheInput) {
    Faults faults;
    faults.readError = "Parity error";
    board->SetFaults(faults);
    control->StartBufferedAI(4096, false);
    WaitFor(1);
    EXPECT_THAT(heard, ElementsAre(Failed));
    EXPECT_EQ(control->ErrorText(), QStringLiteral("Parity error"));
}

TEST_F(SimulatedInputTest, LostScansAreToldOnceAndTheInputGoesOn) {
    control->SetSampleRate(1e6);
    control->SetScanChannelCount(5);
    control->StartBufferedAI(4096, true);
    WaitFor(2);
    Faults faults;
    faults.lostScans = 777;
    board->SetFaults(faults);
    ASSERT_TRUE(QTest::qWaitFor([&] { return testing::Value(heard, testing::Contains(Overrun)); }, 20000));
    WaitFor(heard.size() + 3);
    control->StopBufferedAI(0);
    EXPECT_THAT(heard, testing::Contains(Overrun).Times(1));
    for (const Notification& notification : heard)
        EXPECT_EQ(notification.samples.size(), notification == Overrun ? 0U : 2045U);
}

TEST_F(SimulatedInputTest, AStopDoesNotWaitForASlowBoard) {
    Faults faults;
    faults.slow = 60s;
    board->SetFaults(faults);
    control->StartBufferedAI(4096, true);
    QTest::qWait(20);
    control->StopBufferedAI(0); // a minute would be noticed
    EXPECT_TRUE(heard.empty());
}

TEST_F(SimulatedInputTest, TheTopRateOverAllChannelsIsClampedAndRuns) {
    control->SetScanChannelCount(64);
    control->SetSampleRate(1e300);
    EXPECT_EQ(control->SampleRate(), 1e6);
    control->StartBufferedAI(500000, true);
    WaitFor(1);
    EXPECT_EQ(heard.front().samples.size(), 249984U);
}

} // namespace
} // namespace tracelet
