#include "tests/window/history/HistoryWindowTest.h"

#include <QTreeWidget>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Box = MessageBoxes::Box;

class OpenHistoryTest : public HistoryWindowTest {
protected:
    /// What a user sees of the mode.
    [[nodiscard]] std::vector<bool> ModeState() const {
        return {window->bHistoryMode,
                window->bHisFileExist,
                window->BtnModeSwitch->isEnabled(),
                window->FrameHis->isEnabled(),
                window->FrameSet->isEnabled(),
                window->FrameCmd->isEnabled(),
                window->BtnStart->isEnabled(),
                window->BtnSaveAs->isEnabled(),
                window->BtnHistory->isEnabled(),
                window->ZelHiResTimerCtl1->TimerExists(frmMain::PlayTimer)};
    }
};

TEST_F(OpenHistoryTest, CancellingLeavesEverythingAsItWas) {
    const auto before = ModeState();
    OnModalDialog<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    Click(window->BtnHistory);
    EXPECT_EQ(ModeState(), before);
    EXPECT_EQ(window->BtnModeSwitch->text(), u"History Mode");
    EXPECT_EQ(window->szHisProjectFileName, "");
}

TEST_F(OpenHistoryTest, TypedNameThatDoesNotExistChangesNothing) {
    const auto before = ModeState();
    OpenProject(saved / "Missing.tlp");
    EXPECT_EQ(ModeState(), before);
    EXPECT_EQ(window->szHisProjectFileName, "");
    EXPECT_THAT(saved.Names(), IsEmpty());
}

TEST_F(OpenHistoryTest, LinkThatLeadsNowhereDoesNotExist) {
    const std::string loop = saved / "Loop.tlp";
    ASSERT_EQ(symlink(loop.c_str(), loop.c_str()), 0);
    const auto before = ModeState();
    OpenProject(loop);
    EXPECT_EQ(ModeState(), before);
}

TEST_F(OpenHistoryTest, UnitsAreThoseThatARecordingTells) {
    const auto unit = [this](int axis) { return window->ZelGraph1->AxisUnit(axis).toStdString(); };
    SavedRecording recording = Polled(3);
    window->ZelGraph1->SetAxisAutoScale(TemperatureAxis, false);
    OpenSaved(recording);
    EXPECT_EQ(unit(VoltageAxis), "V");
    EXPECT_EQ(unit(TemperatureAxis), "");
    EXPECT_TRUE(window->ZelGraph1->AxisAutoScale(TemperatureAxis));
    recording.info.bHisAISoft = recording.info.bHisAIAnalog = false;
    OpenProject(Save(recording, "Counts"));
    EXPECT_EQ(unit(VoltageAxis), "counts");
    Click(window->BtnModeSwitch);
    EXPECT_EQ(unit(VoltageAxis), "V");
}

TEST_F(OpenHistoryTest, DialogOffersProjects) {
    std::string name;
    QStringList filters;
    QString suffix;
    QString typed;
    OnModalDialog<QFileDialog>([&](QFileDialog& dialog) {
        name = dialog.objectName().toStdString();
        filters = dialog.nameFilters();
        suffix = dialog.defaultSuffix();
        typed = dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->text();
        dialog.reject();
    });
    Click(window->BtnHistory);
    EXPECT_EQ(name, "CommonDialog1");
    EXPECT_EQ(filters, QStringList{u"Tracelet AI data file manager(*.tlp)"_s});
    EXPECT_EQ(suffix, u"tlp");
    EXPECT_EQ(typed, u"");
}

TEST_F(OpenHistoryTest, DialogStartsWhereTheLastRecordingWasSaved) {
    const auto startFolder = [this] {
        std::string path;
        OnModalDialog<QFileDialog>([&](QFileDialog& dialog) {
            path = dialog.directory().path().toStdString();
            dialog.reject();
        });
        Click(window->BtnHistory);
        return path;
    };
    window->szDir = "C:\\elsewhere"; // no folder of this system
    const std::string usual = startFolder();
    window->szDir = saved.Path();
    EXPECT_EQ(startFolder(), saved.Path());
    EXPECT_NE(usual, saved.Path());
    OpenSaved(Polled(1));
    window->szDir = folder.path().toStdString();
    EXPECT_NE(startFolder(), folder.path().toStdString()); // an opened one is nearer
}

TEST_F(OpenHistoryTest, NameWithoutExtensionGetsTheDefaultOne) {
    const std::string path = Save(Polled(3));
    OpenProject(path.substr(0, path.size() - 4));
    EXPECT_TRUE(window->bHistoryMode);
    EXPECT_EQ(window->szHisProjectFileName, path);
}

TEST_F(OpenHistoryTest, NameIsFoundWhateverItsCase) {
    Save(Polled(3));
    OpenProject(saved / "Saved/pROJECT.TLP");
    EXPECT_TRUE(window->bHistoryMode);
    EXPECT_EQ(window->HisScanCount, 3);
}

TEST_F(OpenHistoryTest, EntersHistoryMode) {
    window->BtnSaveAs->setEnabled(true);
    OpenSaved(Polled(3));
    EXPECT_TRUE(window->bHistoryMode);
    EXPECT_TRUE(window->bHisFileExist);
    EXPECT_TRUE(window->BtnModeSwitch->isEnabled());
    EXPECT_EQ(window->BtnModeSwitch->text(), u"Acquisition");
    for (const QWidget* control : std::initializer_list<const QWidget*>{
             window->FrameHis, window->Label15, window->Label16, window->Label14, window->ChkPlay,
             window->BtnAccelerate, window->BtnStop, window->Label1, window->Label2, window->Label6,
             window->BtnHisConvert, window->FrameCmd, window->BtnHistory})
        EXPECT_TRUE(control->isEnabled()) << control->objectName().toStdString();
    for (const QWidget* control :
         std::initializer_list<const QWidget*>{window->FrameSet, window->BtnStart, window->BtnSaveAs})
        EXPECT_FALSE(control->isEnabled()) << control->objectName().toStdString();
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_FALSE(window->isHisPlaying);
}

TEST_F(OpenHistoryTest, ReadsTheProject) {
    SavedRecording recording = Polled(3, 0.25);
    AddDigital(recording, 3);
    OpenSaved(recording);
    EXPECT_TRUE(window->bHisAI);
    EXPECT_TRUE(window->bHisDI);
    EXPECT_TRUE(window->bHisAISoft);
    EXPECT_TRUE(window->bHisAIAnalog);
    EXPECT_EQ(window->nHisAIChanCount, 2);
    EXPECT_EQ(window->nHisAIMaxChanNum(), 4);
    EXPECT_EQ(window->nHisDIChanCount, 3);
    EXPECT_EQ(window->nHisDIMaxPortCount(), 3);
    EXPECT_EQ(window->HisScanCount, 3);
    EXPECT_EQ(window->ScanInterval, 0.25);
    EXPECT_EQ(window->AIDataPath, saved / "Saved\\AI.tld");
    EXPECT_EQ(window->DIDataPath, saved / "Saved\\DI.tld");
    EXPECT_EQ(window->nHisDIPortStart, 1);
    EXPECT_EQ(window->nHisDIPortCount, 2);
    EXPECT_EQ(window->ScanCount, 0); // the live counter is another one

    const M1& tables = window->M1;
    EXPECT_EQ(tables.HisAIPlotName.Count(), 2);
    EXPECT_EQ(tables.HisAIPlotName[1], "µ");
    EXPECT_EQ(tables.HisAIPlotColor[1], 0x80000016U);
    EXPECT_EQ(tables.HisAIPlotLineStyle[1], 3);
    EXPECT_EQ(tables.HisAIChanIsThermo.Count(), 4);
    EXPECT_EQ(tables.HisAIChanIsThermo[1], 255);
    EXPECT_EQ(tables.HisAIRangeLimits.Count(), 8);
    EXPECT_EQ(tables.HisDIPlotName[2], "DI 2:4");
    EXPECT_EQ(tables.HisDIPlotLineStyle[2], 2);
    EXPECT_EQ(tables.HisDIPortMask.Count(), 3);
    EXPECT_EQ(tables.HisDIPortMask[1], 0x81);
}

TEST_F(OpenHistoryTest, NamesOfLinesStandAtTheirLevels) {
    OpenSaved(Digital(3));
    std::vector<double> levels;
    for (int plot = 0; plot < window->ZelGraph1->PlotCount(); ++plot)
        levels.push_back(window->ZelGraph1->Plot(plot).level);
    EXPECT_EQ(levels, (std::vector<double>{15.0, 25.5, 36.0}));
}

TEST_F(OpenHistoryTest, ShowsThePlotsOfTheRecording) {
    SavedRecording recording = Polled(3);
    AddDigital(recording, 3);
    OpenSaved(recording);
    const ZelGraph& graph = *window->ZelGraph1;
    ASSERT_EQ(graph.PlotCount(), 5);
    EXPECT_EQ(graph.Plot(0).name, u"Left");
    EXPECT_EQ(graph.Plot(0).color, 0x00FF8000U);
    EXPECT_EQ(graph.Plot(0).axis, VoltageAxis);
    EXPECT_EQ(graph.Plot(1).axis, TemperatureAxis); // by its position in the recording
    EXPECT_EQ(graph.Plot(4).name, u"DI 2:4");
    EXPECT_EQ(graph.Plot(4).axis, DigitalAxis);
    for (int plot = 0; plot < 5; ++plot)
        EXPECT_TRUE(graph.PlotVisible(plot)) << plot;
    ASSERT_EQ(window->ListView1->topLevelItemCount(), 5);
    EXPECT_EQ(window->ListView1->topLevelItem(1)->text(1), u"- . - .");
    EXPECT_EQ(graph.AxisMin(DigitalAxis), 14.0);
    EXPECT_EQ(graph.AxisMax(DigitalAxis), 74.0);
    EXPECT_FALSE(graph.AxisAutoScale(DigitalAxis));
}

TEST_F(OpenHistoryTest, PlotsThatFastInputHidAreShown) {
    window->ZelGraph1->SetPlotVisible(0, false);
    OpenSaved(Polled(3));
    EXPECT_TRUE(window->ZelGraph1->PlotVisible(0));
}

TEST_F(OpenHistoryTest, SetsGraphTimerSlidersAndDisplay) {
    window->ZelGraph1->SetXAxisMin(100.0);
    window->ZelGraph1->SetXAxisMax(130.0);
    window->ZelSliderR->SetValue(40.0);
    window->ShowDIVValue(5.0);
    OpenSaved(Polled(3, 0.004));
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 5000);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 0);
    EXPECT_EQ(window->dDIVValue, 1.0);
    EXPECT_EQ(window->ZelLED1->Text(), u"1.000000");
    EXPECT_TRUE(window->ZelLED1->Enabled());
    EXPECT_FALSE(window->isNumEditEventFired);
    ASSERT_TRUE(window->ZelHiResTimerCtl1->TimerExists(frmMain::PlayTimer));
    EXPECT_FALSE(TimerRuns());
    EXPECT_EQ(window->ZelHiResTimerCtl1->TimerInterval(frmMain::PlayTimer), 100);
    EXPECT_EQ(window->ZelSliderR->Value(), 0.0);
    EXPECT_EQ(window->ZelSliderV->Value(), 250.0);
    EXPECT_EQ(window->dHisPlaySpeed, 25);
    EXPECT_GE(window->ZelSliderV->Maximum(), 2500.0);
    EXPECT_EQ(window->HisScanIndex, 0);
}

TEST_F(OpenHistoryTest, SpeedAppliesEvenWhenTheSliderStandsThere) {
    OpenSaved(Polled(3, 0.5));
    EXPECT_EQ(window->ZelHiResTimerCtl1->TimerInterval(frmMain::PlayTimer), 500);
    window->dHisPlaySpeed = 7;
    OpenSaved(Polled(3, 0.5));
    EXPECT_EQ(window->dHisPlaySpeed, 1);
    EXPECT_EQ(window->ZelHiResTimerCtl1->TimerInterval(frmMain::PlayTimer), 500);
}

TEST_F(OpenHistoryTest, TimerIsFoundByItsName) {
    OpenSaved(Polled(3));
    EXPECT_TRUE(window->ZelHiResTimerCtl1->TimerExists(u"HistoryTimer"_s));
}

TEST_F(OpenHistoryTest, TimerThatCodeStartedIsStopped) {
    const std::string project = Save(Polled(3));
    OpenProject(project);
    window->ZelHiResTimerCtl1->SetTimerEnabled(frmMain::PlayTimer, true);
    OpenProject(project);
    EXPECT_FALSE(TimerRuns());
}

TEST_F(OpenHistoryTest, PeriodIsTheUsualOneWhileTheSpeedSliderIsOff) {
    const std::string project = Save(Polled(3, 0.5));
    OpenProject(project);
    window->ZelSliderV->SetEnabled(false);
    OpenProject(project);
    EXPECT_EQ(window->ZelHiResTimerCtl1->TimerInterval(frmMain::PlayTimer), 100);
}

TEST_F(OpenHistoryTest, GraphStartsAtZeroEvenWhenThePositionStandsThere) {
    window->ZelGraph1->SetNextX(50.0);
    OpenSaved(Polled(3));
    EXPECT_EQ(window->ZelGraph1->NextX(), 0.0);
}

TEST_F(OpenHistoryTest, PlotsAreBuiltBeforeTheDataFilesAndTheAxisAfterThem) {
    SavedRecording recording = Polled(3);
    AddDigital(recording, 3);
    const std::string project = Save(recording);
    std::filesystem::remove(saved / "Saved/DI.tld");
    window->dDIVValue = 5.0;
    int plots = 0;
    double division = 0.0;
    boxes.WhenNextOpens([&] {
        plots = window->ZelGraph1->PlotCount();
        division = window->dDIVValue;
    });
    OpenProject(project);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"File not found", "ReadHisAIFile"}));
    EXPECT_EQ(plots, 5);
    EXPECT_EQ(division, 5.0);
    EXPECT_EQ(window->dDIVValue, 1.0);
}

TEST_F(OpenHistoryTest, FolderOfThatNameIsEnteredNotOpened) {
    std::filesystem::create_directory(saved / "Folder.tlp");
    OnModalDialog<QFileDialog>([&](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)
            ->setText(QString::fromStdString(saved / "Folder.tlp"));
        Click(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open));
        EXPECT_TRUE(dialog.isVisible());
        dialog.reject();
    });
    Click(window->BtnHistory);
    EXPECT_FALSE(window->bHistoryMode);
}

TEST_F(OpenHistoryTest, SecondRecordingReplacesTheFirst) {
    SavedRecording both = Polled(4);
    AddDigital(both, 4);
    OpenProject(Save(both, "First"));
    window->ZelSliderR->MoveByUser(50.0);
    EXPECT_EQ(window->HisScanIndex, 2);
    OpenProject(Save(Digital(6), "Second"));
    EXPECT_FALSE(window->bHisAI);
    EXPECT_EQ(window->nHisAIChanCount, 0);
    EXPECT_EQ(window->HisScanCount, 6);
    EXPECT_EQ(window->HisScanIndex, 0);
    EXPECT_FALSE(window->HisAIFileHandle.IsOpen());
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 3);
    OpenProject(Save(Polled(2), "Third"));
    EXPECT_FALSE(window->recording.digitalFile.IsOpen());
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 2);
}

TEST_F(OpenHistoryTest, SecondRecordingStopsThePlaybackFirst) {
    const std::string project = Save(Polled(4));
    OpenProject(project);
    Click(window->ChkPlay);
    PlayTicks(1);
    OpenProject(project);
    EXPECT_FALSE(window->isHisPlaying);
    EXPECT_FALSE(window->isHisPlayPaused);
    EXPECT_FALSE(TimerRuns());
    EXPECT_FALSE(window->ChkPlay->isChecked());
    EXPECT_EQ(Caption(), "4");
    EXPECT_EQ(window->ZelSliderR->Value(), 0.0);
    EXPECT_TRUE(window->BtnModeSwitch->isEnabled());
    EXPECT_TRUE(window->FrameCmd->isEnabled());
    EXPECT_TRUE(window->BtnHisConvert->isEnabled());
    EXPECT_THAT(PointsOf(0), IsEmpty());
}

TEST_F(OpenHistoryTest, SecondRecordingOpenedInAPauseStartsFresh) {
    const std::string project = Save(Polled(4));
    OpenProject(project);
    Click(window->ChkPlay);
    PlayTicks(2);
    Click(window->ChkPlay);
    OpenProject(project);
    EXPECT_FALSE(window->isHisPlayPaused);
    Click(window->ChkPlay);
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(std::pair(0.0, 0.0)));
}

TEST_F(OpenHistoryTest, CancellingWhilePlayingPlaysOn) {
    OpenSaved(Polled(4));
    Click(window->ChkPlay);
    PlayTicks(1);
    OnModalDialog<QFileDialog>([this](QFileDialog& dialog) {
        PlayTicks(1); // under the dialog too
        dialog.reject();
    });
    Click(window->BtnHistory);
    EXPECT_TRUE(window->isHisPlaying);
    EXPECT_TRUE(TimerRuns());
    EXPECT_EQ(PointsOf(0).size(), 2U);
    OpenProject(saved / "Missing.tlp");
    EXPECT_TRUE(window->isHisPlaying);
}

class MovedRecordingTest : public HistoryWindowTest {
protected:
    /// Saves a recording of both signals and moves its folder to "Moved"; the path of the project.
    std::string SaveAndMove() {
        SavedRecording recording = Polled(3);
        AddDigital(recording, 3);
        Save(recording);
        std::filesystem::rename(saved / "Saved", saved / "Moved");
        return saved / "Moved/Project.tlp";
    }

    void ExpectPlays() {
        Click(window->ChkPlay);
        PlayTicks(3);
        EXPECT_EQ(PointsOf(0).size(), 3U);
        EXPECT_EQ(PointsOf(4).size(), 3U);
    }
};

TEST_F(MovedRecordingTest, DataAreFoundBesideTheProject) {
    OpenProject(SaveAndMove());
    EXPECT_EQ(Notice(), "AI.tld and DI.tld were found beside the project");
    EXPECT_EQ(window->AIDataPath, saved / "Saved\\AI.tld"); // as the project tells
    EXPECT_EQ(window->DIDataPath, saved / "Saved\\DI.tld");
    EXPECT_FALSE(std::filesystem::exists(saved / "Saved"));
    ExpectPlays();
}

TEST_F(MovedRecordingTest, DataAreFoundThoughTheOldFolderStands) {
    const std::string project = SaveAndMove();
    std::filesystem::create_directory(saved / "Saved");
    OpenProject(project);
    EXPECT_EQ(Notice(), "AI.tld and DI.tld were found beside the project");
    EXPECT_TRUE(std::filesystem::is_empty(saved / "Saved")); // nothing was created there
    ExpectPlays();
}

TEST_F(MovedRecordingTest, WhatTheStoredPathLeadsToComesFirst) {
    const std::string project = SaveAndMove();
    std::filesystem::create_directory(saved / "Saved");
    std::filesystem::copy_file(saved / "Moved/AI.tld", saved / "Saved/AI.tld");
    saved.Write("Moved/AI.tld", "");
    OpenProject(project);
    EXPECT_EQ(Notice(), "DI.tld was found beside the project");
    ExpectPlays();
    OpenSaved(Polled(3));
    EXPECT_EQ(Notice(), "");
}

TEST_F(MovedRecordingTest, PathsOfAnotherSystemLeadBesideTheProject) {
    SavedRecording recording = Polled(3);
    AddDigital(recording, 3);
    Save(recording);
    recording.info.AIDataPath = "C:\\Data\\Run 1\\AI.tld";
    recording.info.DIDataPath = "\\\\server\\share/di.TLD";
    OpenProject(saved.Write("Saved/Project.tlp", ProjectBytes(recording.info)));
    EXPECT_EQ(Notice(), "AI.tld and di.TLD were found beside the project");
    ExpectPlays();
}

TEST_F(MovedRecordingTest, ADeviceBesideTheProjectIsNoFile) {
    const std::string project = SaveAndMove();
    std::filesystem::remove(saved / "Moved/AI.tld");
    ASSERT_EQ(mkfifo((saved / "Moved/AI.tld").c_str(), 0600), 0);
    OpenProject(project);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"CreateFile Fails ", "ReadHisAIFile"}));
    EXPECT_EQ(Notice(), "DI.tld was found beside the project");
}

TEST_F(OpenHistoryTest, BlanksAndForeignLettersInNames) {
    const std::string project = Save(Polled(2), "Messung Übung 試料");
    OpenProject(project);
    Click(window->ChkPlay);
    PlayTicks(1);
    EXPECT_EQ(PointsOf(0).size(), 1U);
}

} // namespace
} // namespace tracelet
