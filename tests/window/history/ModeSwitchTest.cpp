#include "tests/window/history/HistoryWindowTest.h"

#include "window/graph/frmGraphSet.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ModeSwitchTest : public HistoryWindowTest {
protected:
    [[nodiscard]] std::vector<QWidget*> HistoryControls() const {
        return {window->FrameHis, window->Label15,       window->Label16,      window->Label14,
                window->ChkPlay,  window->BtnAccelerate, window->BtnStop,      window->Label1,
                window->Label2,   window->Label6,        window->BtnHisConvert};
    }
};

TEST_F(ModeSwitchTest, IsOffUntilARecordingWasOpened) {
    EXPECT_FALSE(window->BtnModeSwitch->isEnabled());
    EXPECT_EQ(window->BtnModeSwitch->text(), u"History Mode");
    Click(window->BtnModeSwitch);
    EXPECT_FALSE(window->bHistoryMode);
}

TEST_F(ModeSwitchTest, HistoryControlsAreSwitchedTogetherButNotTheSliders) {
    window->EnableHisControls(true);
    for (const QWidget* control : HistoryControls())
        EXPECT_TRUE(control->isEnabled()) << control->objectName().toStdString();
    window->ZelSliderR->SetEnabled(false);
    window->EnableHisControls(false);
    for (const QWidget* control : HistoryControls())
        EXPECT_TRUE(control->testAttribute(Qt::WA_ForceDisabled)) << control->objectName().toStdString();
    EXPECT_TRUE(window->ZelSliderV->Enabled());
    window->EnableHisControls(true);
    EXPECT_FALSE(window->ZelSliderR->Enabled());
}

TEST_F(ModeSwitchTest, BackToAcquisition) {
    SavedRecording recording = Polled(4);
    AddDigital(recording, 4);
    OpenSaved(recording);
    window->ZelSliderR->MoveByUser(50.0);
    Click(window->BtnModeSwitch);
    EXPECT_FALSE(window->bHistoryMode);
    for (const QWidget* control : HistoryControls())
        EXPECT_TRUE(control->testAttribute(Qt::WA_ForceDisabled)) << control->objectName().toStdString();
    EXPECT_TRUE(window->FrameSet->isEnabled());
    EXPECT_TRUE(window->BtnStart->isEnabled());
    EXPECT_TRUE(window->FrameCmd->isEnabled());
    EXPECT_EQ(window->BtnModeSwitch->text(), u"History Mode");
    EXPECT_FALSE(window->BtnModeSwitch->isEnabled());
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
    EXPECT_FALSE(window->HisAIFileHandle.IsOpen());
    EXPECT_FALSE(window->recording.digitalFile.IsOpen());
    EXPECT_FALSE(TimerRuns());
    ASSERT_EQ(window->ZelGraph1->PlotCount(), 1); // the live plots again
    EXPECT_EQ(window->ZelGraph1->Plot(0).name, u"AI 0");
    EXPECT_EQ(window->ZelSliderR->Value(), 50.0);
}

TEST_F(ModeSwitchTest, SaveAsComesBackWithWhatWasRecorded) {
    for (bool* written : {&window->SoftAIWritten, &window->FAIWritten, &window->DIWritten}) {
        OpenSaved(Polled(4));
        EXPECT_FALSE(window->BtnSaveAs->isEnabled());
        *written = true;
        Click(window->BtnModeSwitch);
        EXPECT_TRUE(window->BtnSaveAs->isEnabled());
        *written = false;
    }
}

TEST_F(ModeSwitchTest, AndForthShowsTheSameRecordingAtTheSamePlace) {
    OpenSaved(Polled(4));
    window->ZelSliderR->MoveByUser(50.0);
    Click(window->BtnModeSwitch);
    window->BtnModeSwitch_Click();
    EXPECT_TRUE(window->bHistoryMode);
    EXPECT_FALSE(window->BtnStart->isEnabled());
    for (const QWidget* control : HistoryControls())
        EXPECT_TRUE(control->isEnabled()) << control->objectName().toStdString();
    EXPECT_EQ(window->BtnModeSwitch->text(), u"Acquisition");
    EXPECT_FALSE(window->FrameCmd->isEnabled());
    ASSERT_EQ(window->ZelGraph1->PlotCount(), 2);
    EXPECT_EQ(window->ZelGraph1->Plot(0).name, u"Left");
    EXPECT_EQ(window->ZelSliderR->Value(), 50.0);
    EXPECT_EQ(window->HisScanIndex, 2);

    EXPECT_FALSE(window->HisAIFileHandle.IsOpen()); // not opened again
    Click(window->ChkPlay);
    PlayTicks(1);
    EXPECT_FALSE(window->isHisPlaying);
    EXPECT_THAT(PointsOf(0), IsEmpty());
}

TEST_F(ModeSwitchTest, ChartOfARecordingHasALimitOfItsOwn) {
    constexpr std::int64_t GiB = std::int64_t{1} << 30;
    const std::int64_t live = window->ZelGraph1->MemoryBudget();
    OpenSaved(Polled(4));
    EXPECT_LT(window->ZelGraph1->MemoryBudget(), GiB);
    Click(window->BtnModeSwitch);
    EXPECT_EQ(window->ZelGraph1->MemoryBudget(), live);
}

TEST_F(ModeSwitchTest, HistoryButtonComesBackInWhole) {
    const std::string project = Save(Polled(4));
    OpenProject(project);
    Click(window->BtnModeSwitch);
    OpenProject(project);
    EXPECT_TRUE(window->bHistoryMode);
    EXPECT_TRUE(window->BtnModeSwitch->isEnabled());
    Click(window->ChkPlay);
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(std::pair(0.0, 0.0)));
}

TEST_F(ModeSwitchTest, IsOnInAPauseAndStopsTheTimer) {
    OpenSaved(Polled(4));
    Click(window->ChkPlay);
    EXPECT_FALSE(window->BtnModeSwitch->isEnabled());
    Click(window->BtnModeSwitch);
    EXPECT_TRUE(window->bHistoryMode);
    Click(window->ChkPlay);
    Click(window->BtnModeSwitch);
    EXPECT_FALSE(window->bHistoryMode);
    EXPECT_FALSE(TimerRuns());
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_TRUE(window->FrameCmd->isEnabled()); // playing had switched it off
}

TEST_F(ModeSwitchTest, LeftInAPauseNothingPlaysAndThePlaceIsKept) {
    const std::string project = Save(Polled(4));
    OpenProject(project);
    Click(window->ChkPlay);
    PlayTicks(2);
    Click(window->ChkPlay);
    Click(window->BtnModeSwitch);
    EXPECT_FALSE(window->isHisPlaying);
    EXPECT_TRUE(window->isHisPlayPaused);
    std::string range;
    bool minimumIsOn = false;
    OnModalDialog<frmGraphSet>([&](frmGraphSet& dialog) {
        const auto* minimum = dialog.findChild<QLineEdit*>(u"txtXMin"_s);
        range = minimum->text().toStdString();
        minimumIsOn = minimum->isEnabled();
        dialog.reject();
    });
    Click(window->BtnGraphSet);
    EXPECT_NE(range, ""); // as while nothing runs
    EXPECT_TRUE(minimumIsOn);

    window->BtnModeSwitch_Click();
    EXPECT_EQ(window->ZelSliderR->Value(), 50.0);
    Click(window->ChkPlay);
    EXPECT_EQ(window->HisScanIndex, 2);
    Click(window->ChkPlay);
    window->BtnModeSwitch_Click();
    OpenProject(project); // what is opened starts fresh
    EXPECT_FALSE(window->isHisPlayPaused);
    Click(window->ChkPlay);
    PlayTicks(1);
    EXPECT_THAT(PointsOf(0), ElementsAre(std::pair(0.0, 0.0)));
}

TEST_F(ModeSwitchTest, ClosesTheFileOfARecordingWithoutAnalogData) {
    OpenSaved(Digital(4));
    EXPECT_TRUE(window->recording.digitalFile.IsOpen());
    Click(window->BtnModeSwitch);
    EXPECT_FALSE(window->recording.digitalFile.IsOpen());
}

TEST_F(ModeSwitchTest, WithoutARecordingOnlyTheModeChanges) {
    window->BtnModeSwitch_Click();
    EXPECT_TRUE(window->bHistoryMode);
    EXPECT_TRUE(window->BtnStart->isEnabled());
    EXPECT_FALSE(window->FrameHis->isEnabled());
    EXPECT_EQ(window->BtnModeSwitch->text(), u"History Mode");
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 0);
}

TEST_F(ModeSwitchTest, LiveSessionRunsAfterHistory) {
    OpenSaved(Polled(4));
    Click(window->ChkPlay);
    PlayTicks(2);
    Click(window->BtnStop);
    Click(window->BtnModeSwitch);
    TurnOnAI();
    Click(window->BtnStart);
    EXPECT_TRUE(window->isSystemRunning);
    EXPECT_FALSE(window->BtnHistory->isEnabled());
    Tick(2);
    EXPECT_EQ(PointsOf(0).size(), 2U);
    EXPECT_NEAR(PointsOf(0)[0].first, 0.1, 1e-6);
    Click(window->BtnStart);
    EXPECT_TRUE(window->BtnHistory->isEnabled());
}

} // namespace
} // namespace tracelet
