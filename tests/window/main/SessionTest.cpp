#include "tests/support/MainWindowTest.h"

#include "core/base/LittleEndian.h"
#include "window/chart/ZelGraph.h"

#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using Box = MessageBoxes::Box;

class SessionTest : public MainWindowTest {
protected:
    /// Scan count and interval at the end of the work project file.
    struct StopFields {
        std::int32_t scanCount;
        double interval;
    };
    [[nodiscard]] StopFields Stopped() const {
        const std::vector<std::uint8_t> bytes = Bytes(window->szProjectFileName);
        const auto view = std::as_bytes(std::span(bytes));
        EXPECT_GE(view.size(), 12U);
        return {ReadLittleEndian<std::int32_t>(view, view.size() - 12),
                ReadLittleEndian<double>(view, view.size() - 8)};
    }
};

TEST_F(SessionTest, AISwitchRefusesWithoutDevice) {
    Open({});
    TurnOnAI();
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No AI device is selected", "Tracelet"}));
    EXPECT_FALSE(window->ZelButton1->Value());
    EXPECT_FALSE(window->bAIEnabled);
    EXPECT_FALSE(window->CkAISave2Disk->isEnabled());
}

TEST_F(SessionTest, AISwitchRefusesWithoutChannel) {
    AnalogBoardInfo info;
    info.name = "Bare board";
    info.channelCount = 0;
    Open(OneAnalogBoard(info));
    TurnOnAI();
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No AI channel is selected", "Tracelet"}));
    EXPECT_FALSE(window->ZelButton1->Value());
}

TEST_F(SessionTest, DISwitchRefusesWithoutDeviceOrPort) {
    TurnOnDI();
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No DI Port is selected", "Tracelet"}));
    EXPECT_FALSE(window->ZelButton2->Value());
    Open({});
    TurnOnDI();
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No DI device is selected", "Tracelet"}));
    EXPECT_FALSE(window->bDIEnabled);
}

TEST_F(SessionTest, FastInputExcludesDigitalInput) {
    SelectPorts(0, {0x01});
    window->M1.SoftMode = false;
    TurnOnDI();
    EXPECT_TRUE(window->bDIEnabled);
    TurnOnAI();
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"FAI can't run together with DI", "Tracelet"}));
    EXPECT_FALSE(window->ZelButton1->Value());
    TurnOnDI();
    TurnOnAI();
    EXPECT_TRUE(window->bAIEnabled);
    TurnOnDI();
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"FAI can't run together with DI", "Tracelet"}));
    EXPECT_FALSE(window->ZelButton2->Value());
    EXPECT_FALSE(window->bDIEnabled);
}

TEST_F(SessionTest, RefusalDoesNotRunTheSwitchOffPath) {
    SelectPorts(0, {0x01});
    TurnOnDI();
    window->M1.SoftMode = false;
    window->CkAISave2Disk->setEnabled(true);
    window->ListView1->clear();
    TurnOnAI();
    (void)boxes.Take();
    EXPECT_TRUE(window->CkAISave2Disk->isEnabled());
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 0);
}

TEST_F(SessionTest, PolledModeTakesBothSwitches) {
    SelectPorts(0, {0x03});
    TurnOnAI();
    EXPECT_TRUE(window->CkAISave2Disk->isEnabled());
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 1);
    TurnOnDI();
    EXPECT_TRUE(window->CkDISave2Disk->isEnabled());
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 3);
    EXPECT_EQ(window->ZelButton2->Image(), u"PUSHROCKERSWITCH_ON"_s);
    TurnOnAI();
    EXPECT_FALSE(window->bAIEnabled);
    EXPECT_FALSE(window->CkAISave2Disk->isEnabled());
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 2);
    TurnOnDI();
    EXPECT_FALSE(window->bDIEnabled);
    EXPECT_FALSE(window->CkDISave2Disk->isEnabled());
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 0);
}

TEST_F(SessionTest, PolledModeTakesTheSwitchesInEitherOrder) {
    SelectPorts(0, {0x01});
    TurnOnDI();
    TurnOnAI();
    EXPECT_TRUE(window->bAIEnabled && window->bDIEnabled);
    EXPECT_TRUE(window->ZelButton1->Value() && window->ZelButton2->Value());
}

TEST_F(SessionTest, SwitchKeepsTheTickOfTheSaveBox) {
    TurnOnAI();
    Click(window->CkAISave2Disk);
    EXPECT_TRUE(window->bAISaveToDisk);
    TurnOnAI();
    EXPECT_TRUE(window->CkAISave2Disk->isChecked());
    EXPECT_TRUE(window->bAISaveToDisk);
    TurnOnAI();
    Click(window->CkAISave2Disk);
    EXPECT_FALSE(window->bAISaveToDisk);
}

TEST_F(SessionTest, StartNeedsASwitch) {
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No Operation is enabled", "Tracelet"}));
    EXPECT_EQ(window->BtnStart->text(), u"Start"_s);
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_TRUE(window->BtnSet->isEnabled());
}

TEST_F(SessionTest, FailureOfAnInputThatHasEndedStartsNothing) {
    TurnOnAI();
    emit window->ZelAI1->OnInputFailed();
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_EQ(window->BtnStart->text(), u"Start"_s);
    EXPECT_THAT(boxes.Take(), testing::IsEmpty());
}

TEST_F(SessionTest, RunningSessionLocksTheSetUp) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    StartPolling();
    EXPECT_EQ(window->BtnStart->text(), u"Stop"_s);
    const std::vector<QWidget*> locked = {window->FrameSet,      window->BtnSet,     window->CkAISave2Disk,
                                          window->CkDISave2Disk, window->FrameCmd,   window->ZelButton1,
                                          window->ZelButton2,    window->BtnHistory, window->BtnSaveAs};
    for (const QWidget* widget : locked)
        EXPECT_FALSE(widget->isEnabled()) << widget->objectName().toStdString();
    EXPECT_TRUE(window->BtnStart->isEnabled());
    Click(window->BtnStart);
    EXPECT_EQ(window->BtnStart->text(), u"Start"_s);
    EXPECT_TRUE(window->FrameSet->isEnabled());
    EXPECT_TRUE(window->BtnSet->isEnabled());
    EXPECT_TRUE(window->FrameCmd->isEnabled());
    EXPECT_TRUE(window->ZelButton1->isEnabled());
    EXPECT_TRUE(window->ZelButton2->isEnabled());
    EXPECT_TRUE(window->BtnHistory->isEnabled());
    EXPECT_TRUE(window->CkAISave2Disk->isEnabled());
    EXPECT_FALSE(window->CkDISave2Disk->isEnabled());
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
}

TEST_F(SessionTest, CountersStayAtTheHighestNumber) {
    TurnOnAI();
    StartPolling();
    window->TickCount = window->ScanCount = 2147483646;
    Tick(3, 1);
    EXPECT_EQ(window->TickCount, 2147483647);
    EXPECT_EQ(window->ScanCount, 2147483647);
    Click(window->BtnStart);
    EXPECT_EQ(Stopped().scanCount, 2147483647);
}

TEST_F(SessionTest, OneScanHasTheWholeTimeAsItsInterval) {
    TurnOnAI();
    StartPolling();
    Tick(1, 70);
    Click(window->BtnStart);
    EXPECT_EQ(Stopped().scanCount, 1);
    EXPECT_DOUBLE_EQ(Stopped().interval, 0.07);
}

TEST_F(SessionTest, EverySessionHasItsOwnTime) {
    TurnOnAI();
    StartPolling();
    Tick(2);
    Click(window->BtnStart);
    now += 100000;
    StartPolling();
    Tick(2, 50);
    Click(window->BtnStart);
    EXPECT_DOUBLE_EQ(Stopped().interval, 0.05);
    EXPECT_FLOAT_EQ(static_cast<float>(window->ZelGraph1->PointAt(0, 0).x()), 0.05F);
}

TEST_F(SessionTest, DigitalDataAloneEnableSaveAs) {
    SelectPorts(0, {0x01});
    TurnOnDI();
    Click(window->CkDISave2Disk);
    StartPolling();
    Tick(1);
    EXPECT_EQ(window->ScanCount, 1);
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
    Click(window->BtnStart);
    EXPECT_TRUE(window->BtnSaveAs->isEnabled());
    StartPolling();
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
    Click(window->BtnStart);
}

TEST_F(SessionTest, LabelsBesideTheSwitchesAreLocked) {
    const QLabel* const labels[] = {window->LabelAI, window->LabelAIOn, window->LabelDI, window->LabelDIOn};
    window->FrameCmd->setEnabled(true);
    for (const bool enable : {false, true}) {
        window->EnableSetCmdControls(enable);
        window->FrameCmd->setEnabled(true); // what the frame alone would disable
        for (const QLabel* label : labels)
            EXPECT_EQ(label->isEnabled(), enable) << label->objectName().toStdString();
    }
}

TEST_F(SessionTest, LabelsBesideTheSwitchesTellTheirState) {
    const auto told = [this] { return window->LabelAIOn->text() + u' ' + window->LabelDIOn->text(); };
    EXPECT_EQ(told(), u"Off Off");
    TurnOnAI();
    EXPECT_EQ(told(), u"On Off");
    SelectPorts(0, {1});
    TurnOnDI();
    EXPECT_EQ(told(), u"On On");
    TurnOnAI();
    EXPECT_EQ(told(), u"Off On");
    window->M1.SoftMode = false;
    TurnOnAI(); // is refused
    EXPECT_EQ(told(), u"Off On");
    EXPECT_EQ(boxes.Take().size(), 1U);
}

TEST_F(SessionTest, StopWithoutScanWritesZeros) {
    TurnOnAI();
    StartPolling();
    now += 5000;
    Click(window->BtnStart);
    EXPECT_EQ(Stopped().scanCount, 0);
    EXPECT_EQ(Stopped().interval, 0.0);
    EXPECT_FALSE(std::signbit(Stopped().interval));
}

TEST_F(SessionTest, IntervalIsTheAverageOfTheElapsedTime) {
    TurnOnAI();
    StartPolling();
    Tick(4, 110);
    now += 60; // until the moment of Stop
    Click(window->BtnStart);
    EXPECT_EQ(Stopped().scanCount, 4);
    EXPECT_DOUBLE_EQ(Stopped().interval, 500.0 / 4 / 1000);
}

TEST_F(SessionTest, ElapsedTimeSurvivesTheWrapOfTheClock) {
    now = 0xFFFFFF00U;
    TurnOnAI();
    StartPolling();
    Tick(10, 100);
    Click(window->BtnStart);
    EXPECT_DOUBLE_EQ(Stopped().interval, 0.1);
    EXPECT_DOUBLE_EQ(window->ZelGraph1->PointAt(0, 9).x(), 1.0);
}

TEST_F(SessionTest, SaveAsFollowsWhatWasWritten) {
    TurnOnAI();
    StartPolling();
    Tick(2);
    Click(window->BtnStart);
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
    Click(window->CkAISave2Disk);
    StartPolling();
    Tick(2);
    EXPECT_TRUE(window->SoftAIWritten);
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
    Click(window->BtnStart);
    EXPECT_TRUE(window->BtnSaveAs->isEnabled());
    StartPolling();
    EXPECT_FALSE(window->SoftAIWritten);
    Click(window->BtnStart);
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
}

TEST_F(SessionTest, StartClearsTheChartAndTheCounters) {
    TurnOnAI();
    StartPolling();
    Tick(5);
    Click(window->BtnStart);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 5);
    EXPECT_EQ(window->ScanCount, 5);
    StartPolling();
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 0);
    EXPECT_EQ(window->ScanCount, 0);
    EXPECT_EQ(window->TickCount, 0);
    Click(window->BtnStart);
}

TEST_F(SessionTest, PolledStartWithoutItsDeviceFails) {
    TurnOnAI();
    window->ZelAI1->SetDeviceNumber(-1);
    window->SoftAIWritten = true;
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No AI device is selected", "BtnStart"}));
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_EQ(window->BtnStart->text(), u"Start"_s);
    EXPECT_TRUE(window->FrameSet->isEnabled());
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
    EXPECT_EQ(Stopped().scanCount, 0);
    EXPECT_EQ(Stopped().interval, 0.0);
}

TEST_F(SessionTest, DigitalStartWithoutItsDeviceFails) {
    SelectPorts(0, {0x01});
    TurnOnDI();
    window->ZelDIO1->SetDeviceNumber(-1);
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No DI device is selected", "BtnStart"}));
    EXPECT_FALSE(window->isSystemRunning);
}

TEST_F(SessionTest, FailedStartShowsTheControlsText) {
    window->M1.SoftMode = false;
    TurnOnAI();
    Faults faults;
    faults.refusedStart = "The board is busy";
    AnalogBoardInUse().SetFaults(faults);
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"The board is busy", "BtnStart"}));
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_EQ(window->BtnStart->text(), u"Start"_s);
    EXPECT_TRUE(window->CkAISave2Disk->isEnabled());
    EXPECT_FALSE(window->CkDISave2Disk->isEnabled());
}

TEST_F(SessionTest, EnableSetCmdControlsNarrowsTheSaveBoxes) {
    window->EnableSetCmdControls(false);
    EXPECT_FALSE(window->LabelAI->isEnabled());
    EXPECT_FALSE(window->LabelDIOn->isEnabled());
    window->bDIEnabled = true;
    window->EnableSetCmdControls(true);
    EXPECT_FALSE(window->CkAISave2Disk->isEnabled());
    EXPECT_TRUE(window->CkDISave2Disk->isEnabled());
    EXPECT_TRUE(window->LabelAI->isEnabled());
    EXPECT_TRUE(window->LabelAIOn->isEnabled());
}

} // namespace
} // namespace tracelet
