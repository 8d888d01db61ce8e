#include "tests/window/main/SoftwarePollingTest.h"

#include "window/widgets/ZelLED.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Box = MessageBoxes::Box;

TEST_F(SoftwarePollingTest, StartSetsTheTimeAxis) {
    TurnOnAI();
    window->ZelGraph1->SetXAxisMin(-20);
    window->ZelGraph1->SetXAxisMax(30);
    window->ShowDIVValue(5.0);
    StartPolling();
    EXPECT_EQ(window->dDIVValue, 1.0);
    EXPECT_EQ(window->ZelLED1->Value(), 1.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 101);
    EXPECT_EQ(window->ZelHiResTimerCtl1->TimerInterval(frmMain::PollTimer), 100);
    Click(window->BtnStart);
}

TEST_F(SoftwarePollingTest, TimerIsAddedOnceAndReused) {
    TurnOnAI();
    EXPECT_FALSE(window->ZelHiResTimerCtl1->TimerExists(frmMain::PollTimer));
    StartPolling();
    Click(window->BtnStart);
    EXPECT_TRUE(window->ZelHiResTimerCtl1->TimerExists(frmMain::PollTimer));
    EXPECT_FALSE(window->ZelHiResTimerCtl1->TimerEnabled(frmMain::PollTimer));
    window->nTimerInterval = 250;
    Click(window->BtnStart);
    EXPECT_TRUE(window->ZelHiResTimerCtl1->TimerEnabled(frmMain::PollTimer));
    EXPECT_EQ(window->ZelHiResTimerCtl1->TimerInterval(frmMain::PollTimer), 250);
    Click(window->BtnStart);
}

TEST_F(SoftwarePollingTest, DigitalAxisCoversThePolledPorts) {
    SelectPorts(1, {0x01, 0x00, 0x80});
    TurnOnDI();
    window->ZelGraph1->SetAxisVisible(DigitalAxis, false);
    StartPolling();
    EXPECT_TRUE(window->ZelGraph1->AxisVisible(DigitalAxis));
    EXPECT_EQ(window->ZelGraph1->AxisMin(DigitalAxis), 14.0);
    EXPECT_EQ(window->ZelGraph1->AxisMax(DigitalAxis), 104.0);
    Click(window->BtnStart);
}

TEST_F(SoftwarePollingTest, EveryTickDrawsAndRecordsOneScan) {
    window->ZelAI1->SetScanChannelCount(3);
    window->BuildPlots(false, true);
    TurnOnAI();
    Record();
    StartPolling();
    const std::uint64_t first = AnalogBoardInUse().ScansRead();
    Tick(4, 50);
    Click(window->BtnStart);
    EXPECT_EQ(window->TickCount, 4);
    EXPECT_EQ(window->ScanCount, 4);
    const std::vector<float> recorded = RecordedScans();
    ASSERT_THAT(recorded, SizeIs(12));
    for (std::uint64_t scan = 0; scan < 4; ++scan) {
        for (std::int32_t channel = 0; channel < 3; ++channel) {
            const float expected = Expected(channel, first + scan);
            EXPECT_EQ(recorded[scan * 3 + static_cast<std::size_t>(channel)], expected);
            const QPointF point = window->ZelGraph1->PointAt(channel, static_cast<std::int64_t>(scan));
            EXPECT_EQ(static_cast<float>(point.y()), expected);
            EXPECT_EQ(point.x(), static_cast<float>(0.05 * static_cast<double>(scan + 1)));
        }
    }
}

TEST_F(SoftwarePollingTest, NothingIsWrittenWithoutTheSaveBox) {
    TurnOnAI();
    StartPolling();
    Tick(3);
    EXPECT_FALSE(window->SoftAIWritten);
    EXPECT_THAT(Bytes(window->szAIFileName), IsEmpty());
    Click(window->BtnStart);
}

TEST_F(SoftwarePollingTest, DigitalFileHoldsHeaderAndPortBytes) {
    SelectPorts(1, {0x01, 0x00});
    TurnOnDI();
    Record();
    StartPolling();
    const std::uint64_t first = DigitalBoardInUse().Readings();
    EXPECT_THAT(Bytes(window->szDIFileName), ElementsAre(1, 0, 0, 0, 2, 0, 0, 0));
    Tick(2);
    Click(window->BtnStart);
    EXPECT_TRUE(window->DIWritten);
    EXPECT_THAT(Bytes(window->szDIFileName),
                ElementsAre(1, 0, 0, 0, 2, 0, 0, 0, SimulatedPort(1, first), SimulatedPort(2, first),
                            SimulatedPort(1, first + 1), SimulatedPort(2, first + 1)));
}

TEST_F(SoftwarePollingTest, ALateTickDoesNotBendTheSignal) {
    Open(SimulatedBoards([this] { return now / 1000.0; }));
    TurnOnAI();
    StartPolling();
    const std::uint32_t start = now;
    for (const std::uint32_t wait : {100U, 100U, 370U, 100U})
        Tick(1, wait);
    Click(window->BtnStart);
    const ChannelSetup channel{0, AnalogBoardInUse().Info().ranges.front(), SingleEnded};
    ASSERT_EQ(window->ZelGraph1->PointCount(0), 4);
    for (const std::int64_t scan : {0, 1, 2, 3}) {
        const QPointF point = window->ZelGraph1->PointAt(0, scan);
        const double taken = start / 1000.0 + point.x();
        EXPECT_NEAR(point.y(), AnalogBoardInUse().PolledValue(channel, taken / PolledStep), 1e-3) << scan;
    }
}

TEST_F(SoftwarePollingTest, DigitalHeaderIsWrittenWithoutTheSaveBox) {
    SelectPorts(1, {0x01, 0x00});
    TurnOnDI();
    StartPolling();
    Tick(2);
    Click(window->BtnStart);
    EXPECT_FALSE(window->DIWritten);
    EXPECT_THAT(Bytes(window->szDIFileName), ElementsAre(1, 0, 0, 0, 2, 0, 0, 0));
}

TEST_F(SoftwarePollingTest, SelectedLinesDrawAtTheirLevels) {
    SelectPorts(0, {0x81, 0x00, 0x04});
    TurnOnDI();
    StartPolling();
    const std::uint64_t first = DigitalBoardInUse().Readings();
    ASSERT_EQ(window->ZelGraph1->PlotCount(), 4);
    Tick(1, 300);
    Click(window->BtnStart);
    const auto high = [&](std::int32_t port, int line) {
        return (SimulatedPort(port, first) >> line & 1) != 0;
    };
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 0);
    EXPECT_EQ(window->ZelGraph1->PointAt(1, 0), QPointF(0.3, high(0, 0) ? 1 : 0));
    EXPECT_EQ(window->ZelGraph1->PointAt(2, 0), QPointF(0.3, high(0, 7) ? 11.5 : 10.5));
    EXPECT_EQ(window->ZelGraph1->PointAt(3, 0), QPointF(0.3, high(2, 2) ? 34 : 33));
}

TEST_F(SoftwarePollingTest, FailedDigitalReadStopsTheSession) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    TurnOnDI();
    Record();
    StartPolling();
    Tick(2);
    Faults faults;
    faults.readError = "The port does not answer";
    DigitalBoardInUse().SetFaults(faults);
    Tick(1);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"The port does not answer", "SoftPoolTimerProc"}));
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_EQ(window->BtnStart->text(), u"Start"_s);
    const std::vector<std::uint8_t> project = Bytes(window->szProjectFileName);
    EXPECT_EQ(ReadLittleEndian<std::int32_t>(std::as_bytes(std::span(project)), project.size() - 12), 2);
    EXPECT_EQ(window->ScanCount, 3);
    EXPECT_THAT(RecordedScans(), SizeIs(3));
    EXPECT_THAT(Bytes(window->szDIFileName), SizeIs(8 + 2));
    EXPECT_TRUE(window->BtnSaveAs->isEnabled());
}

TEST_F(SoftwarePollingTest, FailedAnalogReadEndsItsTickQuietly) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    TurnOnDI();
    Record();
    StartPolling();
    Tick(1);
    Faults faults;
    faults.readError = "No answer";
    AnalogBoardInUse().SetFaults(faults);
    const std::uint64_t readings = DigitalBoardInUse().Readings();
    Tick(2);
    EXPECT_EQ(DigitalBoardInUse().Readings(), readings);
    EXPECT_EQ(window->ScanCount, 1);
    EXPECT_EQ(window->TickCount, 3);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 1);
    AnalogBoardInUse().SetFaults({});
    Tick(1);
    EXPECT_EQ(window->ScanCount, 2);
    EXPECT_THAT(RecordedScans(), SizeIs(2));
    Click(window->BtnStart);
}

TEST_F(SoftwarePollingTest, BoardOfNoFamilyIsReadWhateverItsName) {
    AnalogBoardInfo info = boards.analog.front().board->Info();
    info.name = "pci-6052e";
    info.noFamily = true;
    Open(OneAnalogBoard(info));
    window->ZelAI1->SetScanChannelCount(2);
    TurnOnAI();
    Record();
    StartPolling();
    Tick(2);
    Click(window->BtnStart);
    EXPECT_THAT(RecordedScans(), ElementsAre(Expected(0, 0), Expected(1, 0), Expected(0, 1), Expected(1, 1)));
    EXPECT_NE(Expected(1, 0), 0.0F);
}

TEST_F(SoftwarePollingTest, UnpairedFamilyWithoutThermocouplesReadsZeros) {
    PickBoard(u"3605");
    window->ZelAI1->SetScanChannelCount(2);
    window->BuildPlots(false, true);
    TurnOnAI();
    Record();
    StartPolling();
    const std::uint64_t scans = AnalogBoardInUse().ScansRead();
    Tick(2);
    Click(window->BtnStart);
    EXPECT_EQ(AnalogBoardInUse().ScansRead(), scans);
    EXPECT_THAT(RecordedScans(), ElementsAre(0, 0, 0, 0));
}

TEST_F(SoftwarePollingTest, SmallerDigitalDeviceEndsTheSessionWithItsText) {
    SelectPorts(2, {0x01, 0x01});
    TurnOnDI();
    for (std::size_t i = 0; i < boards.digital.size(); ++i) {
        if (boards.digital[i].board->Info().portCount == 1)
            window->ZelDIO1->SetDeviceNumber(static_cast<std::int32_t>(i));
    }
    window->M1.DIPortMask.Resize(2);
    window->BuildPlots(false, true);
    StartPolling();
    Tick(1);
    EXPECT_THAT(boxes.Take(), ElementsAre(testing::Field(&Box::title, "SoftPoolTimerProc")));
    EXPECT_FALSE(window->isSystemRunning);
}

TEST_F(SoftwarePollingTest, RecordingThatCannotBeWrittenShowsOnItsSaveBox) {
    TurnOnAI();
    Record();
    StartPolling();
    Tick(1);
    window->Files.Close(frmMain::AIFileNum);
    Tick(2);
    EXPECT_TRUE(window->isSystemRunning);
    EXPECT_EQ(window->ScanCount, 3);
    EXPECT_THAT(window->CkAISave2Disk->toolTip().toStdString(), testing::StartsWith("Recording stopped: "));
    EXPECT_TRUE(window->CkDISave2Disk->toolTip().isEmpty());
    EXPECT_THAT(RecordedScans(), SizeIs(1));
    Click(window->BtnStart);
    EXPECT_FALSE(window->CkAISave2Disk->toolTip().isEmpty());
    StartPolling();
    EXPECT_TRUE(window->CkAISave2Disk->toolTip().isEmpty());
    Tick(2);
    EXPECT_THAT(RecordedScans(), SizeIs(2));
    Click(window->BtnStart);
}

TEST_F(SoftwarePollingTest, TicksAreDroppedWhileAMessageIsOpen) {
    window->nTimerInterval = 1;
    SelectPorts(0, {0x01});
    TurnOnDI();
    Faults faults;
    faults.readError = "No answer";
    DigitalBoardInUse().SetFaults(faults);
    int ticksDuringBox = -1;
    boxes.WhenNextOpens([&] {
        QTest::qWait(20);
        ticksDuringBox = window->TickCount;
    });
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return ticksDuringBox >= 0 && !window->isSystemRunning; }));
    EXPECT_EQ(ticksDuringBox, 1);
    EXPECT_THAT(boxes.Take(), SizeIs(1));
}

TEST_F(SoftwarePollingTest, OtherTimersAreIgnored) {
    TurnOnAI();
    StartPolling();
    window->ZelHiResTimerCtl1_OnTimer(u"SomeTimer"_s);
    EXPECT_EQ(window->TickCount, 0);
    Click(window->BtnStart);
}

TEST_F(SoftwarePollingTest, WorkFileDeletedUnderTheSessionDoesNoHarm) {
    TurnOnAI();
    Record();
    StartPolling();
    ASSERT_TRUE(QFile::remove(QString::fromStdString(NativePath(window->szAIFileName))));
    Tick(2);
    EXPECT_TRUE(window->isSystemRunning);
    EXPECT_FALSE(window->CkAISave2Disk->toolTip().isEmpty());
    Click(window->BtnStart);
}

} // namespace
} // namespace tracelet
