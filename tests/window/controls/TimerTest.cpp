#include "core/base/RunTimeError.h"
#include "window/controls/ZelHiResTimerCtl.h"

#include <QEventLoop>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace tracelet {
namespace {

using namespace std::chrono_literals;
using testing::ThrowsMessage;
using Clock = std::chrono::steady_clock;

const QString Poll = QStringLiteral("SoftPoolTimer");
const QString History = QStringLiteral("HistoryTimer");

class TimerTest : public testing::Test {
protected:
    TimerTest() {
        QObject::connect(control.get(), &ZelHiResTimerCtl::OnTimer, control.get(),
                         [this](const QString& name) {
                             ticks.push_back(name);
                             if (onTick)
                                 onTick(name);
                         });
    }

    // Runs the event loop until so many ticks have come, or until a loaded machine has had ages.
    void WaitForTicks(std::size_t count) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return ticks.size() >= count; }, 20000));
    }

    static void Block(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

    std::unique_ptr<ZelHiResTimerCtl> control = std::make_unique<ZelHiResTimerCtl>();
    std::vector<QString> ticks;
    std::function<void(const QString&)> onTick;
};

TEST_F(TimerTest, KnowsOnlyTheTimersThatWereAdded) {
    EXPECT_FALSE(control->TimerExists(Poll));
    control->AddTimer(Poll, 100, false);
    EXPECT_TRUE(control->TimerExists(Poll));
    EXPECT_FALSE(control->TimerExists(History));
    EXPECT_EQ(control->TimerInterval(Poll), 100);
    EXPECT_FALSE(control->TimerEnabled(Poll));
    control->AddTimer(History, 7, true);
    EXPECT_TRUE(control->TimerEnabled(History));
    EXPECT_EQ(control->TimerInterval(History), 7);
}

TEST_F(TimerTest, RefusesUnknownNamesAndIntervalsBelowOneMillisecond) {
    control->AddTimer(Poll, 100, false);
    const auto unknown = ThrowsMessage<RunTimeError>("There is no timer \"HistoryTimer\"");
    EXPECT_THAT([&] { (void)control->TimerInterval(History); }, unknown);
    EXPECT_THAT([&] { control->SetTimerInterval(History, 5); }, unknown);
    EXPECT_THAT([&] { (void)control->TimerEnabled(History); }, unknown);
    EXPECT_THAT([&] { control->SetTimerEnabled(History, true); }, unknown);
    EXPECT_THAT([&] { control->AddTimer(Poll, 5, true); },
                ThrowsMessage<RunTimeError>("There is a timer \"SoftPoolTimer\" already"));
    const auto tooShort = ThrowsMessage<RunTimeError>("A timer interval must be at least 1 ms");
    for (std::int32_t interval : {0, -1, -2147483647}) {
        EXPECT_THAT([&] { control->AddTimer(History, interval, true); }, tooShort);
        EXPECT_THAT([&] { control->SetTimerInterval(Poll, interval); }, tooShort);
    }
    EXPECT_FALSE(control->TimerExists(History));
    EXPECT_EQ(control->TimerInterval(Poll), 100);
}

TEST_F(TimerTest, TicksBearTheNameAndComeFromTheEventLoop) {
    control->AddTimer(Poll, 1, true);
    Block(20ms);
    EXPECT_TRUE(ticks.empty());
    WaitForTicks(3);
    for (const QString& name : ticks)
        EXPECT_EQ(name, Poll);
}

TEST_F(TimerTest, ADisabledTimerIsSilent) {
    control->AddTimer(Poll, 1, false);
    QTest::qWait(20);
    EXPECT_TRUE(ticks.empty());
    control->SetTimerEnabled(Poll, true);
    WaitForTicks(2);
}

TEST_F(TimerTest, DisablingIsImmediateEvenWhenATickIsDue) {
    control->AddTimer(Poll, 1, true);
    WaitForTicks(1);
    Block(10ms);
    control->SetTimerEnabled(Poll, false);
    const std::size_t before = ticks.size();
    QTest::qWait(20);
    EXPECT_EQ(ticks.size(), before);
    EXPECT_FALSE(control->TimerEnabled(Poll));
}

TEST_F(TimerTest, EnablingAgainForgetsWhatWasDueBefore) {
    control->AddTimer(Poll, 1, true);
    WaitForTicks(1);
    Block(10ms);
    control->SetTimerEnabled(Poll, false);
    control->SetTimerInterval(Poll, 1'000'000);
    control->SetTimerEnabled(Poll, true);
    const std::size_t before = ticks.size();
    QTest::qWait(20);
    EXPECT_EQ(ticks.size(), before);
}

TEST_F(TimerTest, CountsTicksThatFellDueUnseen) {
    control->AddTimer(Poll, 10, true);
    WaitForTicks(1);
    (void)control->TakeMissedTicks(Poll);
    Block(105ms);
    const std::size_t before = ticks.size();
    WaitForTicks(before + 1);
    EXPECT_GE(control->TakeMissedTicks(Poll), 9);
    control->SetTimerEnabled(Poll, false);
    EXPECT_EQ(control->TakeMissedTicks(Poll), 0) << "they are told once";
    EXPECT_THAT([&] { (void)control->TakeMissedTicks(History); },
                ThrowsMessage<RunTimeError>("There is no timer \"HistoryTimer\""));
}

TEST_F(TimerTest, CountsTicksThatFellDueDuringAHandler) {
    onTick = [](const QString&) { Block(25ms); };
    control->AddTimer(Poll, 10, true);
    WaitForTicks(2);
    EXPECT_GE(control->TakeMissedTicks(Poll), 2); // of the first handler
}

TEST_F(TimerTest, ANewPeriodMissedNothingYet) {
    control->AddTimer(Poll, 1, true);
    WaitForTicks(1);
    Block(20ms);
    const std::size_t before = ticks.size();
    WaitForTicks(before + 1);
    control->SetTimerEnabled(Poll, false);
    control->SetTimerInterval(Poll, 1'000'000);
    control->SetTimerEnabled(Poll, true);
    EXPECT_EQ(control->TakeMissedTicks(Poll), 0);
}

TEST_F(TimerTest, AHandlerMayDisableItsTimer) {
    onTick = [this](const QString& name) {
        Block(5ms); // more fall due meanwhile
        control->SetTimerEnabled(name, false);
    };
    control->AddTimer(Poll, 1, true);
    WaitForTicks(1);
    QTest::qWait(20);
    EXPECT_EQ(ticks.size(), 1U);
}

TEST_F(TimerTest, AHandlerMayDeleteTheControl) {
    onTick = [this](const QString&) { control.reset(); };
    control->AddTimer(Poll, 1, true);
    control->AddTimer(History, 1, true);
    WaitForTicks(1);
    QTest::qWait(20);
    EXPECT_EQ(ticks.size(), 1U);
}

TEST_F(TimerTest, AHandlerMayAddTimers) {
    onTick = [this](const QString&) {
        if (!control->TimerExists(History))
            control->AddTimer(History, 1, true);
    };
    control->AddTimer(Poll, 1, true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return testing::Value(ticks, testing::Contains(History)); }, 20000));
}

TEST_F(TimerTest, ALateTickComesOnceWithoutABurst) {
    control->AddTimer(Poll, 20, true);
    WaitForTicks(1);
    Block(250ms);
    const Clock::time_point freed = Clock::now();
    const std::size_t before = ticks.size();
    WaitForTicks(before + 4);
    // The late tick at once; of the three others each at its own deadline, the first up to an interval away.
    EXPECT_GE(Clock::now() - freed, 40ms);
}

TEST_F(TimerTest, DeadlinesAreWholeIntervalsFromTheStart) {
    const Clock::time_point begin = Clock::now();
    control->AddTimer(Poll, 10, true);
    for (int i = 0; i < 15; ++i) {
        WaitForTicks(ticks.size() + 1);
        const auto at = Clock::now() - begin;
        EXPECT_GE(at, 10ms * static_cast<int>(i + 1)) << "tick " << i << " came before its deadline";
        Block(3ms);
    }
}

TEST_F(TimerTest, TicksDuringAHandlerAreDropped) {
    bool nested = false;
    bool inside = false;
    onTick = [&](const QString&) {
        nested = nested || inside;
        inside = true;
        QTest::qWait(30); // as a message box would run the event loop
        inside = false;
        if (ticks.size() == 2)
            control->SetTimerEnabled(Poll, false);
    };
    control->AddTimer(Poll, 1, true);
    WaitForTicks(2);
    QTest::qWait(20);
    EXPECT_FALSE(nested);
    EXPECT_EQ(ticks.size(), 2U);
}

TEST_F(TimerTest, TicksThatFellDueDuringAHandlerDoNotComeAfterIt) {
    control->AddTimer(Poll, 400, true);
    std::vector<Clock::duration> pauses;
    Clock::time_point ended;
    onTick = [&](const QString&) {
        if (ended != Clock::time_point{})
            pauses.push_back(Clock::now() - ended);
        Block(420ms); // into the next interval
        ended = Clock::now();
    };
    WaitForTicks(2);
    for (const Clock::duration pause : pauses)
        EXPECT_GE(pause, 20ms);
}

TEST_F(TimerTest, OtherTimersTickWhileAHandlerWaits) {
    control->AddTimer(Poll, 1, true);
    control->AddTimer(History, 1, false);
    onTick = [&](const QString& name) {
        if (name != Poll)
            return;
        control->SetTimerEnabled(Poll, false);
        control->SetTimerEnabled(History, true);
        EXPECT_TRUE(QTest::qWaitFor([&] { return ticks.size() >= 4; }, 20000));
    };
    WaitForTicks(4);
    EXPECT_THAT(ticks, testing::Contains(Poll).Times(1));
}

TEST_F(TimerTest, ChangingTheIntervalStartsTheIntervalAnew) {
    control->AddTimer(Poll, 100'000, true);
    control->SetTimerInterval(Poll, 5);
    const Clock::time_point begin = Clock::now();
    WaitForTicks(1);
    EXPECT_GE(Clock::now() - begin, 4ms);
    control->SetTimerInterval(Poll, 100'000);
    const std::size_t before = ticks.size();
    QTest::qWait(30);
    EXPECT_EQ(ticks.size(), before);
}

TEST_F(TimerTest, TheIntervalOfADisabledTimerCanBeSet) {
    control->AddTimer(Poll, 1, false);
    control->SetTimerInterval(Poll, 2);
    QTest::qWait(20);
    EXPECT_TRUE(ticks.empty());
    EXPECT_EQ(control->TimerInterval(Poll), 2);
}

TEST_F(TimerTest, EnablingAnEnabledTimerDoesNotDelayIt) {
    control->AddTimer(Poll, 100, true);
    const Clock::time_point begin = Clock::now();
    while (ticks.empty() && Clock::now() - begin < 20s) {
        control->SetTimerEnabled(Poll, true);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    EXPECT_EQ(ticks.size(), 1U);
}

TEST_F(TimerTest, TheLongestIntervalIsAccepted) {
    control->AddTimer(Poll, 2147483647, true);
    QTest::qWait(10);
    EXPECT_TRUE(ticks.empty());
    EXPECT_EQ(control->TimerInterval(Poll), 2147483647);
}

} // namespace
} // namespace tracelet
