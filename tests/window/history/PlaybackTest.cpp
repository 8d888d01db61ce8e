#include "tests/window/history/PlaybackWindowTest.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class PlaybackTest : public PlaybackWindowTest {};

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

TEST_F(PlaybackTest, HoldIsOffAtEveryStart) {
    OpenSaved(Polled(10));
    Click(window->ZelGraph1->BtnHold);
    ASSERT_TRUE(window->ZelGraph1->BtnHold->isChecked());
    Click(window->ChkPlay);
    EXPECT_FALSE(window->ZelGraph1->BtnHold->isChecked());
    PlayTicks(3);
    Click(window->ZelGraph1->BtnHold);
    Click(window->ChkPlay); // a pause is no end
    Click(window->ChkPlay);
    EXPECT_TRUE(window->ZelGraph1->BtnHold->isChecked());
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

TEST_F(PlaybackTest, WhatCannotBeReadEndsItAndIsTold) {
    const std::string told = std::string("Playback ended: ") + UnreadableText;
    SavedRecording recording = Polled(4);
    AddDigital(recording, 4);
    const std::string project = Save(recording);
    for (const bool analog : {true, false}) {
        OpenProject(project);
        EXPECT_EQ(Notice(), "") << "a new recording, a new line";
        Click(window->ChkPlay);
        PlayTicks(2);
        EXPECT_TRUE(window->isHisPlaying);
        EXPECT_EQ(Notice(), "");
        MakeUnreadable(analog ? window->HisAIFileHandle : window->recording.digitalFile);
        PlayTicks(1);
        ExpectStopped();
        EXPECT_EQ(Notice(), told);
        EXPECT_EQ(ValuesOf(0).size(), analog ? 2U : 3U);
    }
    Click(window->ChkPlay);
    EXPECT_EQ(Notice(), "");
    PlayTicks(1);
    EXPECT_EQ(Notice(), told);
    Click(window->BtnModeSwitch);
    EXPECT_EQ(Notice(), "");
}

TEST_F(PlaybackTest, TheEndOfTheDataIsNoError) {
    SavedRecording recording = Polled(2);
    recording.analog.pop_back();
    OpenSaved(recording);
    Click(window->ChkPlay);
    PlayTicks(2);
    ExpectStopped();
    EXPECT_EQ(Notice(), "");
}

TEST_F(PlaybackTest, TimesBeyondAllNumbersEndIt) {
    OpenSaved(Polled(10, 1e308));
    Click(window->ChkPlay);
    PlayTicks(2);
    EXPECT_TRUE(window->isHisPlaying);
    PlayTicks(1);
    ExpectStopped();
    EXPECT_EQ(Notice(), "Playback ended: Overflow");
    EXPECT_THAT(ValuesOf(0), ElementsAre(0, 10));
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
    window->ZelHiResTimerCtl1_OnTimer(u"historytimer"_s);
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

// Every tick should play ten million scans; the file holds enough for days of that.
TEST_F(PlaybackTest, TicksOfAnAbsurdRateAreBounded) {
    SavedRecording recording = Polled(0, 1e-8);
    AddDigital(recording, 0);
    recording.info.ScanCount = 2'000'000'000;
    const std::string project = Save(recording);
    for (const char* name : {"Saved/AI.tld", "Saved/DI.tld"})
        std::filesystem::resize_file(saved / name, std::uintmax_t{1} << 40);
    OpenProject(project);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 2'000'000'000);
    EXPECT_EQ(window->dHisPlaySpeed, 10'000'000);
    window->ZelHiResTimerCtl1->SetTimerInterval(frmMain::PlayTimer, 3600000);
    Click(window->ChkPlay);
    PlayTicks(1);
    constexpr std::int64_t Scans = MostValuesATick / (2 + 2 + 3 * 8); // channels, ports, lines
    EXPECT_TRUE(window->isHisPlaying);
    EXPECT_EQ(window->HisScanIndex, Scans);
    EXPECT_EQ(window->ZelSliderR->Value(), static_cast<double>(Scans) / 2e9 * 100.0);
    for (int plot = 0; plot < 5; ++plot)
        EXPECT_EQ(window->ZelGraph1->PointCount(plot), Scans) << plot;
    PlayTicks(1);
    EXPECT_EQ(window->ZelGraph1->PointAt(0, Scans).x(),
              static_cast<double>(Scans) * 1e-8); // none is left out
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
