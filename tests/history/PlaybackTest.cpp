#include "tests/history/HistoryWindowTest.h"

#include "history/PlaybackRate.h"

#include <cmath>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class PlaybackTest : public HistoryWindowTest {
protected:
    void ExpectStopped() {
        EXPECT_FALSE(TimerRuns());
        EXPECT_FALSE(window->ChkPlay->isChecked());
        EXPECT_EQ(Caption(), "4");
        EXPECT_FALSE(window->isHisPlaying);
        EXPECT_FALSE(window->isHisPlayPaused);
        EXPECT_EQ(window->ZelSliderR->Value(), 0.1);
        EXPECT_TRUE(window->ZelSliderR->Enabled());
        EXPECT_TRUE(window->BtnModeSwitch->isEnabled());
        EXPECT_TRUE(window->BtnHisConvert->isEnabled());
        EXPECT_TRUE(window->FrameCmd->isEnabled());
    }

    [[nodiscard]] std::vector<double> ValuesOf(int plot) const {
        std::vector<double> values;
        for (const auto& [x, y] : PointsOf(plot))
            values.push_back(y);
        return values;
    }
};

TEST_F(PlaybackTest, PlayStartsTheTimer) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    EXPECT_EQ(Caption(), ";");
    EXPECT_TRUE(TimerRuns());
    EXPECT_TRUE(window->isHisPlaying);
    EXPECT_FALSE(window->isHisPlayPaused);
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_FALSE(window->BtnModeSwitch->isEnabled());
    EXPECT_FALSE(window->FrameCmd->isEnabled());
    EXPECT_FALSE(window->BtnHisConvert->isEnabled());
    EXPECT_TRUE(window->BtnStop->isEnabled());
    EXPECT_TRUE(window->BtnAccelerate->isEnabled());
    EXPECT_TRUE(window->BtnHistory->isEnabled());
    EXPECT_EQ(window->ZelSliderR->Value(), 0.0);
}

TEST_F(PlaybackTest, BoxSetByCodePlaysAndPauses) {
    OpenSaved(Polled(10));
    window->ChkPlay->setChecked(true);
    EXPECT_EQ(Caption(), ";");
    EXPECT_TRUE(TimerRuns());
    EXPECT_TRUE(window->isHisPlaying);
    PlayTicks(2);
    window->ChkPlay->setChecked(false);
    EXPECT_EQ(Caption(), "4");
    EXPECT_FALSE(TimerRuns());
    EXPECT_TRUE(window->isHisPlayPaused);
    Click(window->BtnStop);
    ExpectStopped();
}

TEST_F(PlaybackTest, TimerPlaysByItself) {
    OpenSaved(Polled(5, 0.005)); // 20 scans a tick
    Click(window->ChkPlay);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isHisPlaying; }, 30000));
    EXPECT_EQ(ValuesOf(0).size(), 5U);
    ExpectStopped();
}

TEST_F(PlaybackTest, TenScansAtOneATickTakeElevenTicks) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    for (int tick = 1; tick <= 10; ++tick) {
        PlayTicks(1);
        EXPECT_TRUE(window->isHisPlaying) << tick;
        EXPECT_DOUBLE_EQ(window->ZelSliderR->Value(), 10.0 * tick);
        EXPECT_EQ(window->HisScanIndex, tick);
        EXPECT_TRUE(window->ZelSliderR->Enabled());
    }
    Points left;
    Points right;
    for (int scan = 0; scan < 10; ++scan) {
        left.emplace_back(Slow * scan, 10.0 * scan);
        right.emplace_back(Slow * scan, 10.0 * scan + 1);
    }
    EXPECT_EQ(PointsOf(0), left);
    EXPECT_EQ(PointsOf(1), right);
    PlayTicks(1);
    ExpectStopped();
    EXPECT_EQ(PointsOf(0), left); // what was drawn stays
}

TEST_F(PlaybackTest, LastTickPlaysWhatIsLeft) {
    OpenSaved(Polled(7));
    PlayByTheTick(3);
    Click(window->ChkPlay);
    PlayTicks(2);
    EXPECT_TRUE(window->isHisPlaying);
    EXPECT_NEAR(window->ZelSliderR->Value(), 600.0 / 7, 1e-9);
    PlayTicks(1);
    EXPECT_THAT(ValuesOf(0), ElementsAre(0, 10, 20, 30, 40, 50, 60));
    ExpectStopped();
}

TEST_F(PlaybackTest, DataThatOutlastTheScanCountArePlayedToTheirEnd) {
    SavedRecording recording = Polled(6);
    recording.info.ScanCount = 3;
    OpenSaved(recording);
    Click(window->ChkPlay);
    PlayTicks(6);
    EXPECT_TRUE(window->isHisPlaying);
    EXPECT_EQ(window->ZelSliderR->Value(), 100.0);
    EXPECT_EQ(ValuesOf(0).size(), 6U);
    PlayTicks(1);
    ExpectStopped();
}

TEST_F(PlaybackTest, RecordingOfNoScansPlaysWhatItsFileHolds) {
    SavedRecording recording = Polled(2);
    recording.info.ScanCount = 0;
    OpenSaved(recording);
    Click(window->ChkPlay);
    PlayTicks(2);
    EXPECT_TRUE(window->ZelSliderR->Enabled());
    EXPECT_EQ(ValuesOf(0).size(), 2U);
    PlayTicks(1);
    ExpectStopped();
}

TEST_F(PlaybackTest, EndInsideASample) {
    for (std::size_t missing = 1; missing < 8; ++missing) {
        SavedRecording recording = Polled(3);
        recording.analog.resize(recording.analog.size() - missing);
        OpenSaved(recording);
        Click(window->ChkPlay);
        PlayTicks(2);
        EXPECT_TRUE(window->isHisPlaying) << missing;
        PlayTicks(1);
        EXPECT_FALSE(window->isHisPlaying) << missing;
        EXPECT_THAT(ValuesOf(0), ElementsAre(0, 10)) << missing;
        EXPECT_THAT(ValuesOf(1), ElementsAre(1, 11)) << missing;
    }
}

TEST_F(PlaybackTest, FastRecordingOfValues) {
    SavedRecording recording = Polled(3);
    recording.info.bHisAISoft = false;
    OpenSaved(recording);
    Click(window->ChkPlay);
    PlayTicks(3);
    EXPECT_THAT(ValuesOf(1), ElementsAre(1, 11, 21));
    PlayTicks(1);
    ExpectStopped();
}

TEST_F(PlaybackTest, FastRecordingOfCodes) {
    SavedRecording recording = Polled(3);
    recording.info.bHisAISoft = false;
    recording.info.bHisAIAnalog = false;
    recording.analog = BytesOf(std::vector<std::int32_t>{4095, 0, -1, 65536, 32769, 7});
    OpenSaved(recording);
    PlayByTheTick(2);
    Click(window->ChkPlay);
    PlayTicks(2);
    EXPECT_THAT(ValuesOf(0), ElementsAre(4095, -1, 32769));
    EXPECT_THAT(ValuesOf(1), ElementsAre(0, 65536, 7));
    ExpectStopped();
}

TEST_F(PlaybackTest, PolledRecordingIsAlwaysOfValues) {
    SavedRecording recording = Polled(2);
    recording.info.bHisAIAnalog = false;
    OpenSaved(recording);
    Click(window->ChkPlay);
    PlayTicks(2);
    EXPECT_THAT(ValuesOf(1), ElementsAre(1, 11));
}

TEST_F(PlaybackTest, FastRecordingHasNoDigitalData) {
    SavedRecording recording = Polled(2);
    AddDigital(recording, 2);
    recording.info.bHisAISoft = false;
    OpenSaved(recording);
    Click(window->ChkPlay);
    PlayTicks(2);
    EXPECT_EQ(ValuesOf(0).size(), 2U);
    EXPECT_THAT(ValuesOf(2), IsEmpty());
}

TEST_F(PlaybackTest, DigitalLinesAreStepsOnTheirLevels) {
    OpenSaved(Digital(130));
    PlayByTheTick(129);
    Click(window->ChkPlay);
    PlayTicks(1);
    for (int plot = 0; plot < 3; ++plot)
        ASSERT_EQ(PointsOf(plot).size(), 129U);
    for (const int scan : {0, 1, 16, 127, 128}) {
        const auto at = static_cast<std::size_t>(scan);
        EXPECT_THAT(PointsOf(0)[at], Pair(Slow * scan, 15.0 + (scan & 1)));
        EXPECT_THAT(PointsOf(1)[at], Pair(Slow * scan, 25.5 + (scan >> 7)));
        EXPECT_THAT(PointsOf(2)[at], Pair(Slow * scan, 36.0 + (~scan >> 4 & 1)));
    }
    EXPECT_TRUE(window->isHisPlaying);
    PlayTicks(1); // one scan is left
    EXPECT_EQ(PointsOf(0).size(), 130U);
    ExpectStopped();
}

TEST_F(PlaybackTest, DigitalFileThatEndsInsideASampleEndsThere) {
    SavedRecording recording = Digital(3);
    recording.digital.pop_back();
    OpenSaved(recording);
    PlayByTheTick(3);
    Click(window->ChkPlay);
    PlayTicks(1);
    EXPECT_THAT(ValuesOf(0), ElementsAre(15.0, 16.0));
    ExpectStopped();
}

TEST_F(PlaybackTest, DigitalPlotsFollowTheAnalogOnes) {
    SavedRecording recording = Polled(4);
    AddDigital(recording, 4);
    OpenSaved(recording);
    PlayByTheTick(2);
    Click(window->ChkPlay);
    PlayTicks(2);
    EXPECT_THAT(ValuesOf(1), ElementsAre(1, 11, 21, 31));
    EXPECT_THAT(PointsOf(2),
                ElementsAre(Pair(0.0, 15.0), Pair(Slow, 16.0), Pair(2 * Slow, 15.0), Pair(3 * Slow, 16.0)));
    EXPECT_THAT(PointsOf(4).back(), Pair(3 * Slow, 37.0));
}

TEST_F(PlaybackTest, ShorterFileEndsThePlayback) {
    SavedRecording recording = Polled(4);
    AddDigital(recording, 2);
    OpenSaved(recording);
    Click(window->ChkPlay);
    PlayTicks(2);
    EXPECT_TRUE(window->isHisPlaying);
    PlayTicks(1); // the third analog scan is played, there is no digital one
    EXPECT_EQ(ValuesOf(0).size(), 3U);
    EXPECT_EQ(ValuesOf(2).size(), 2U);
    ExpectStopped();
}

TEST_F(PlaybackTest, RecordingWithoutDataEndsAtOnce) {
    for (bool polled : {true, false}) {
        SavedRecording recording;
        recording.info = {.bHisAISoft = polled, .ScanCount = 5, .ScanInterval = Slow};
        OpenSaved(recording);
        Click(window->ChkPlay);
        PlayTicks(1);
        ExpectStopped();
    }
}

TEST_F(PlaybackTest, MasksPlotsAndPortsThatDisagree) {
    const auto play = [this](const SavedRecording& recording) {
        OpenSaved(recording);
        PlayByTheTick(3);
        Click(window->ChkPlay);
        PlayTicks(2);
        ExpectStopped();
    };
    SavedRecording fewerPlots = Digital(4);
    fewerPlots.info.nHisDIChanCount = 1;
    fewerPlots.info.diPlots.resize(1);
    play(fewerPlots);
    EXPECT_EQ(ValuesOf(0).size(), 4U);

    SavedRecording morePlots = Digital(4);
    morePlots.info.nHisDIChanCount = 20;
    morePlots.info.diPlots.resize(20);
    play(morePlots);
    EXPECT_EQ(ValuesOf(2).size(), 4U);
    EXPECT_THAT(ValuesOf(3), IsEmpty());

    SavedRecording portsBeyondTheMasks = Digital(4);
    portsBeyondTheMasks.info.HisDIPortMask = {0x01};
    play(portsBeyondTheMasks);
    EXPECT_THAT(ValuesOf(0), IsEmpty());

    SavedRecording portsBehindTheMasks = Digital(4);
    portsBehindTheMasks.digital.replace(0, 8, BytesOf(std::vector<std::int32_t>{60000, 2}));
    play(portsBehindTheMasks);
    EXPECT_THAT(ValuesOf(0), IsEmpty());
}

TEST_F(PlaybackTest, PauseKeepsThePlace) {
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

TEST_F(PlaybackTest, StopThenPlayStartsAtTheBeginning) {
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

TEST_F(PlaybackTest, StopInAPauseForgetsThePlace) {
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

TEST_F(PlaybackTest, FreshPlaySeeksEvenWhenTheSliderStandsAtZero) {
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

TEST_F(PlaybackTest, FreshPlayStartsTheAxisAtZeroWithItsSpan) {
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

TEST_F(PlaybackTest, SeekClearsAndContinuesAtItsTime) {
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

TEST_F(PlaybackTest, SeekInAPauseIsWherePlayContinues) {
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

TEST_F(PlaybackTest, SeekWhileStoppedDoesNotMoveTheStart) {
    OpenSaved(Polled(10));
    window->ZelSliderR->MoveByUser(50.0);
    EXPECT_EQ(window->HisScanIndex, 5);
    Click(window->ChkPlay);
    EXPECT_EQ(window->ZelSliderR->Value(), 0.0);
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(Pair(0.0, 0.0)));
}

TEST_F(PlaybackTest, SeekToTheEndEndsAtTheNextTick) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    window->ZelSliderR->MoveByUser(100.0);
    PlayTicks(1);
    ExpectStopped();
    EXPECT_THAT(PointsOf(0), IsEmpty());
}

TEST_F(PlaybackTest, SeekBeyondTheFileIsAShortRead) {
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

TEST_F(PlaybackTest, SliderIsDraggedWithTheMouse) {
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

TEST_F(PlaybackTest, SlidersMoveByTheirPropertyAndByKeys) {
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

TEST_F(PlaybackTest, SlidersThatAreOffAreNotActedOn) {
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

TEST_F(PlaybackTest, FrameThatIsOffDoesNotStopTheProgramsOwnMoves) {
    OpenSaved(Polled(10));
    window->FrameHis->setEnabled(false);
    EXPECT_TRUE(window->ZelSliderV->Enabled());
    window->ZelSliderV->SetValue(500.0);
    EXPECT_EQ(window->dHisPlaySpeed, 50);
}

TEST_F(PlaybackTest, SpeedSetsScansAndPeriodOfATick) {
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

TEST_F(PlaybackTest, AccelerateDoublesTheSpeed) {
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

TEST_F(PlaybackTest, UserReachesTenTimesTheRecordingsOwnRate) {
    for (const double interval : {1e-6, 0.004, 0.1, 3.0}) {
        OpenSaved(Polled(2, interval));
        EXPECT_EQ(window->ZelSliderV->Value(), 1 / interval);
        window->ZelSliderV->MoveByUser(10 / interval);
        EXPECT_EQ(window->ZelSliderV->Value(), 10 / interval);
    }
}

TEST_F(PlaybackTest, SpeedChangesWhilePlaying) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    PlayTicks(1);
    PlayByTheTick(4);
    PlayTicks(1);
    EXPECT_TRUE(TimerRuns());
    EXPECT_THAT(ValuesOf(0), ElementsAre(0, 10, 20, 30, 40));
    EXPECT_DOUBLE_EQ(window->ZelSliderR->Value(), 50.0);
}

TEST_F(PlaybackTest, DraggingTheSpeedKeepsTheTicksComing) {
    OpenSaved(Polled(1000, 0.05));
    Click(window->ChkPlay);
    for (int move = 0; move < 500 && window->HisScanIndex == 0; ++move) {
        window->ZelSliderV->MoveByUser(20.0 + move % 10); // all of them ticks of 100 ms
        QTest::qWait(10);
    }
    EXPECT_GT(window->HisScanIndex, 0);
}

TEST_F(PlaybackTest, ClearedGraphPlaysOnAtItsTime) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    PlayTicks(2);
    window->ZelGraph1->ClearData();
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(Pair(2 * Slow, 20.0)));
}

TEST_F(PlaybackTest, EveryTickIsDrawnAtTheTimeOfItsScans) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    PlayTicks(1);
    window->ZelGraph1->SetNextX(5000.0); // wherever the graph stands
    PlayTicks(1);
    EXPECT_EQ(PointsOf(0).back().first, Slow);
}

TEST_F(PlaybackTest, ClosingTheWindowStopsThePlayback) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    window->close();
    ExpectStopped();
    EXPECT_FALSE(window->HisAIFileHandle.IsOpen());
}

TEST_F(PlaybackTest, OtherTimersDoNotPlay) {
    OpenSaved(Polled(10));
    Click(window->ChkPlay);
    window->ZelHiResTimerCtl1_OnTimer(u"historytimer"_qs);
    window->ZelHiResTimerCtl1_OnTimer({});
    EXPECT_THAT(PointsOf(0), IsEmpty());
}

TEST_F(PlaybackTest, BeyondTwoGibibytes) {
    constexpr std::int64_t Scans = 700'000'000; // of two channels: 5.6 GB, all but the end a hole
    constexpr std::int64_t Marked = 630'000'000;
    SavedRecording recording = Polled(1);
    recording.info.ScanCount = static_cast<std::int32_t>(Scans);
    AddDigital(recording, 1);
    const std::string project = Save(recording);
    const auto plant = [this](const char* name, std::int64_t offset, std::int64_t size,
                              const std::string& bytes) {
        const std::string path = saved / "Saved" + "/" + name;
        std::filesystem::resize_file(path, static_cast<std::uintmax_t>(size));
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(offset).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    };
    plant("AI.tld", Marked * 8, Scans * 8, BytesOf(std::vector<float>{1.5F, -2.5F}));
    plant("DI.tld", 8 + Marked * 2, 8 + Scans * 2, "\x81\x10");
    OpenProject(project);
    Click(window->ChkPlay);
    window->ZelSliderR->MoveByUser(90.0);
    EXPECT_EQ(window->HisScanIndex, Marked);
    PlayTicks(1);
    const double time = Slow * static_cast<double>(Marked);
    EXPECT_THAT(PointsOf(0), ElementsAre(Pair(time, 1.5)));
    EXPECT_THAT(PointsOf(1), ElementsAre(Pair(time, -2.5)));
    EXPECT_THAT(PointsOf(2), ElementsAre(Pair(time, 16.0)));
    EXPECT_THAT(PointsOf(3), ElementsAre(Pair(time, 26.5)));
    EXPECT_THAT(PointsOf(4), ElementsAre(Pair(time, 37.0)));
}

TEST_F(PlaybackTest, ScrubbedAndPlayedViewsShowTheSame) {
    OpenSaved(Polled(400, 0.1));
    PlayByTheTick(1);
    window->ZelGraph1->AxisSetRange(VoltageAxis, 0.0, 4000.0);
    window->ZelGraph1->AxisSetRange(TemperatureAxis, -1000.0, 4000.0);
    Click(window->ChkPlay);
    PlayTicks(300);
    const QImage played = window->ZelGraph1->grab().toImage();
    window->ZelSliderR->MoveByUser(150 / 4.0);
    EXPECT_EQ(window->HisScanIndex, 150);
    EXPECT_NE(window->ZelGraph1->grab().toImage(), played);
    PlayTicks(150);
    EXPECT_EQ(window->ZelGraph1->grab().toImage(), played);
}

TEST_F(PlaybackTest, RecordedSessionReplaysToTheSameSamples) {
    SelectPorts(0, {0x05});
    TurnOnAI();
    TurnOnDI();
    window->CkAISave2Disk->setChecked(true);
    window->CkAISave2Disk_Click();
    window->CkDISave2Disk->setChecked(true);
    window->CkDISave2Disk_Click();
    Click(window->BtnStart);
    Tick(25, 100);
    std::vector<std::vector<double>> live;
    for (int plot = 0; plot < 3; ++plot)
        live.push_back(ValuesOf(plot));
    Click(window->BtnStart);
    ASSERT_EQ(live[0].size(), 25U);

    std::filesystem::create_directory(saved / "Kept");
    std::filesystem::copy(NativePath(window->szAIFileName), saved / "Kept/AI.tld");
    std::filesystem::copy(NativePath(window->szDIFileName), saved / "Kept/DI.tld");
    OpenProject(saved.Write("Kept/Project.tlp",
                            ContentOf(NativePath(window->szProjectFileName)) +
                                AsText(SavedPaths(saved / "Kept\\AI.tld", saved / "Kept\\DI.tld"))));
    EXPECT_EQ(window->HisScanCount, 25);
    EXPECT_DOUBLE_EQ(window->ScanInterval, 0.1);
    PlayByTheTick(10);
    Click(window->ChkPlay);
    PlayTicks(3);
    ExpectStopped();
    for (int plot = 0; plot < 3; ++plot)
        EXPECT_EQ(ValuesOf(plot), live[static_cast<std::size_t>(plot)]) << plot;
}

} // namespace
} // namespace tracelet
