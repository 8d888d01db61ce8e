#include "tests/window/history/PlaybackWindowTest.h"

#include "core/playback/PlaybackRate.h"

#include <cmath>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class PlaybackControlsTest : public PlaybackWindowTest {};

TEST_F(PlaybackControlsTest, PauseKeepsThePlace) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    PlayTicks(3);
    Click(window->ChkPlay);
    EXPECT_EQ(Caption(), "4");
    EXPECT_FALSE(TimerRuns());
    EXPECT_TRUE(window->isHisPlayPaused);
    EXPECT_TRUE(window->isHisPlaying);
    EXPECT_TRUE(window->BtnModeSwitch->isEnabled());
    EXPECT_FALSE(window->FrameCmd->isEnabled());
    EXPECT_FALSE(window->BtnHisConvert->isEnabled());
    EXPECT_DOUBLE_EQ(window->ZelSliderR->Value(), 30.0);

    Click(window->ChkPlay);
    EXPECT_EQ(Caption(), ";");
    EXPECT_TRUE(TimerRuns());
    EXPECT_TRUE(window->isHisPlayPaused); // only a stop ends it
    EXPECT_FALSE(window->BtnModeSwitch->isEnabled());
    PlayTicks(2);
    EXPECT_THAT(ValuesOf(0), ElementsAre(0, 10, 20, 30, 40));
    EXPECT_EQ(PointsOf(0).back().first, 4 * Slow);
}

TEST_F(PlaybackControlsTest, StopThenPlayStartsAtTheBeginning) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    PlayTicks(3);
    Click(window->BtnStop);
    ExpectStopped();
    EXPECT_EQ(window->HisScanIndex, 3); // a stop does not rewind
    EXPECT_EQ(ValuesOf(0).size(), 3U);
    Click(window->ChkPlay);
    EXPECT_EQ(window->ZelSliderR->Value(), 0.0);
    EXPECT_THAT(ValuesOf(0), IsEmpty());
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(Pair(0.0, 0.0)));
}

TEST_F(PlaybackControlsTest, StopInAPauseForgetsThePlace) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    PlayTicks(3);
    Click(window->ChkPlay);
    Click(window->BtnStop);
    ExpectStopped();
    Click(window->ChkPlay);
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(Pair(0.0, 0.0)));
}

TEST_F(PlaybackControlsTest, FreshPlaySeeksEvenWhenTheSliderStandsAtZero) {
    OpenSaved(Polled(10));
    window->ZelSliderR->MoveByUser(50.0);
    Click(window->BtnStop);
    window->ZelSliderR->SetEnabled(false);
    window->ZelSliderR->SetValue(0.0);
    window->ZelSliderR->SetEnabled(true);
    EXPECT_EQ(window->HisScanIndex, 5);
    Click(window->ChkPlay);
    EXPECT_EQ(window->HisScanIndex, 0);
}

TEST_F(PlaybackControlsTest, FreshPlayStartsTheAxisAtZeroWithItsSpan) {
    OpenSaved(Polled(10));
    window->ZelGraph1->SetXAxisMin(500.0);
    window->ZelGraph1->SetXAxisMax(525.0);
    Click(window->ChkPlay);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 25.0);
    PlayTicks(3);
    Click(window->ChkPlay);
    const double scrolled = window->ZelGraph1->XAxisMin();
    EXPECT_GT(scrolled, 0.0);
    Click(window->ChkPlay); // continues: the axis stays
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), scrolled);
}

TEST_F(PlaybackControlsTest, SeekClearsAndContinuesAtItsTime) {
    SavedRecording recording = Polled(8);
    AddDigital(recording, 8);
    OpenSaved(recording);
    Click(window->ChkPlay);
    PlayTicks(2);
    window->ZelSliderR->MoveByUser(75.0);
    EXPECT_EQ(window->HisScanIndex, 6);
    for (int plot = 0; plot < 5; ++plot)
        EXPECT_THAT(PointsOf(plot), IsEmpty()) << plot;
    EXPECT_EQ(window->ZelGraph1->NextX(), 6 * Slow);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 6 * Slow);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 6 * Slow + 10);
    EXPECT_TRUE(window->isHisPlaying);
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(Pair(6 * Slow, 60.0)));
    EXPECT_THAT(PointsOf(2), ElementsAre(Pair(6 * Slow, 15.0)));
    EXPECT_DOUBLE_EQ(window->ZelSliderR->Value(), 87.5);
    window->ZelSliderR->MoveByUser(0.0); // back
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(Pair(0.0, 0.0)));
}

TEST_F(PlaybackControlsTest, SeekInAPauseIsWherePlayContinues) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    PlayTicks(2);
    Click(window->ChkPlay);
    window->ZelSliderR->MoveByUser(50.0);
    EXPECT_FALSE(TimerRuns());
    Click(window->ChkPlay);
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(Pair(5 * Slow, 50.0)));
}

TEST_F(PlaybackControlsTest, SeekWhileStoppedDoesNotMoveTheStart) {
    OpenSaved(Polled(10));
    window->ZelSliderR->MoveByUser(50.0);
    EXPECT_EQ(window->HisScanIndex, 5);
    Click(window->ChkPlay);
    EXPECT_EQ(window->ZelSliderR->Value(), 0.0);
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(Pair(0.0, 0.0)));
}

TEST_F(PlaybackControlsTest, SeekToTheEndEndsAtTheNextTick) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    window->ZelSliderR->MoveByUser(100.0);
    PlayTicks(1);
    ExpectStopped();
    EXPECT_THAT(PointsOf(0), IsEmpty());
}

TEST_F(PlaybackControlsTest, SeekBeyondTheFileIsAShortRead) {
    SavedRecording recording = Polled(4);
    AddDigital(recording, 4);
    recording.info.ScanCount = 2147483647;
    OpenSaved(recording);
    Click(window->ChkPlay);
    window->ZelSliderR->MoveByUser(100.0);
    EXPECT_EQ(window->HisScanIndex, 2147483647);
    PlayTicks(1);
    ExpectStopped();
}

TEST_F(PlaybackControlsTest, SliderIsDraggedWithTheMouse) {
    OpenSaved(Polled(1000));
    const QPoint middle = window->ZelSliderR->rect().center();
    QTest::mouseClick(window->ZelSliderR, Qt::LeftButton, {}, middle);
    EXPECT_NEAR(window->ZelSliderR->Value(), 50.0, 10.0);
    EXPECT_NEAR(static_cast<double>(window->HisScanIndex), 10 * window->ZelSliderR->Value(), 0.5);
    const QRect speed = window->ZelSliderV->rect();
    QTest::mouseClick(window->ZelSliderV, Qt::LeftButton, {}, {speed.width() / 5, speed.height() / 5});
    EXPECT_GT(std::abs(std::log10(window->ZelSliderV->Value() * Slow)), 0.5);
    EXPECT_EQ(window->ZelHiResTimerCtl1->TimerInterval(frmMain::PlayTimer),
              TickInterval(window->ZelSliderV->Value()));
}

TEST_F(PlaybackControlsTest, SlidersMoveByTheirPropertyAndByKeys) {
    OpenSaved(Polled(10));
    EXPECT_TRUE(window->ZelSliderR->setProperty("Value", 45.0)); // 4.5 scans, half to even
    EXPECT_EQ(window->HisScanIndex, 4);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 4 * Slow);
    EXPECT_TRUE(window->ZelSliderR->setProperty("Value", 250.0));
    EXPECT_EQ(window->ZelSliderR->property("Value").toDouble(), 100.0);
    EXPECT_EQ(window->HisScanIndex, 10);
    QTest::keyClick(window->ZelSliderR, Qt::Key_Home);
    EXPECT_EQ(window->HisScanIndex, 0);
    QTest::keyClick(window->ZelSliderR, Qt::Key_PageUp);
    EXPECT_EQ(window->HisScanIndex, 1);
    EXPECT_TRUE(window->ZelSliderV->setProperty("Value", 35.0));
    EXPECT_EQ(window->dHisPlaySpeed, 4);
    EXPECT_EQ(window->ZelHiResTimerCtl1->TimerInterval(frmMain::PlayTimer), 100);
}

TEST_F(PlaybackControlsTest, SlidersThatAreOffAreNotActedOn) {
    OpenSaved(Polled(10));
    window->ZelSliderR->SetEnabled(false);
    window->ZelSliderR->SetValue(50.0);
    EXPECT_EQ(window->HisScanIndex, 0);
    window->ZelSliderV->SetEnabled(false);
    window->ZelSliderV->SetValue(1000.0);
    EXPECT_EQ(window->dHisPlaySpeed, 1);
    Click(window->BtnAccelerate);
    EXPECT_EQ(window->ZelSliderV->Value(), 2000.0);
    EXPECT_EQ(window->dHisPlaySpeed, 1);
}

TEST_F(PlaybackControlsTest, FrameThatIsOffDoesNotStopTheProgramsOwnMoves) {
    OpenSaved(Polled(10));
    window->FrameHis->setEnabled(false);
    EXPECT_TRUE(window->ZelSliderV->Enabled());
    window->ZelSliderV->SetValue(500.0);
    EXPECT_EQ(window->dHisPlaySpeed, 50);
}

TEST_F(PlaybackControlsTest, SpeedSetsScansAndPeriodOfATick) {
    OpenSaved(Polled(10));
    struct Case {
        double speed;
        std::int32_t scans;
        std::int32_t milliseconds;
    };
    for (const Case& c : {Case{15, 2, 100}, Case{25, 2, 100}, Case{35, 4, 100}, Case{10, 1, 100},
                          Case{4, 1, 250}, Case{3, 1, 333}, Case{0.5, 1, 2000}, Case{1e6, 100000, 100}}) {
        window->ZelSliderV->SetValue(c.speed);
        EXPECT_EQ(window->dHisPlaySpeed, c.scans) << c.speed;
        EXPECT_EQ(window->ZelHiResTimerCtl1->TimerInterval(frmMain::PlayTimer), c.milliseconds) << c.speed;
    }
    for (double speed : {0.0, -1.0, -1e300, 1e300}) { // not playable, or beyond 32 bits
        window->ZelSliderV->SetValue(speed);
        EXPECT_EQ(window->ZelSliderV->Value(), speed); // the program's writes are kept as they are
        EXPECT_EQ(window->dHisPlaySpeed, 100000) << speed;
        EXPECT_EQ(window->ZelHiResTimerCtl1->TimerInterval(frmMain::PlayTimer), 100) << speed;
    }
}

TEST_F(PlaybackControlsTest, AccelerateDoublesTheSpeed) {
    OpenSaved(Polled(10, 0.1));
    for (const double speed : {20.0, 40.0, 80.0, 160.0}) {
        Click(window->BtnAccelerate);
        EXPECT_DOUBLE_EQ(window->ZelSliderV->Value(), speed);
        EXPECT_EQ(window->dHisPlaySpeed, static_cast<std::int32_t>(speed / 10));
    }
    for (int i = 0; i < 1100; ++i)
        window->BtnAccelerate_Click(); // until nothing is left to double
    EXPECT_GE(window->dHisPlaySpeed, 1 << 30);
    Click(window->ChkPlay);
    PlayTicks(1); // far more scans than there are
    EXPECT_EQ(ValuesOf(0).size(), 10U);
    ExpectStopped();
}

TEST_F(PlaybackControlsTest, UserReachesTenTimesTheRecordingsOwnRate) {
    for (const double interval : {1e-6, 0.004, 0.1, 3.0}) {
        OpenSaved(Polled(2, interval));
        EXPECT_EQ(window->ZelSliderV->Value(), 1 / interval);
        window->ZelSliderV->MoveByUser(10 / interval);
        EXPECT_EQ(window->ZelSliderV->Value(), 10 / interval);
    }
}

TEST_F(PlaybackControlsTest, SpeedChangesWhilePlaying) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    PlayTicks(1);
    PlayByTheTick(4);
    PlayTicks(1);
    EXPECT_TRUE(TimerRuns());
    EXPECT_THAT(ValuesOf(0), ElementsAre(0, 10, 20, 30, 40));
    EXPECT_DOUBLE_EQ(window->ZelSliderR->Value(), 50.0);
}

TEST_F(PlaybackControlsTest, DraggingTheSpeedKeepsTheTicksComing) {
    OpenSaved(Polled(1000, 0.05));
    Click(window->ChkPlay);
    for (int move = 0; move < 500 && window->HisScanIndex == 0; ++move) {
        window->ZelSliderV->MoveByUser(20.0 + move % 10); // all of them ticks of 100 ms
        QTest::qWait(10);
    }
    EXPECT_GT(window->HisScanIndex, 0);
}

} // namespace
} // namespace tracelet
