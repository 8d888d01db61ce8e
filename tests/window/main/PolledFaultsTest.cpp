// What a polled session tells when it cannot read: scans that are refused, boards that fail for a while, open
// thermocouples.

#include "tests/window/main/SoftwarePollingTest.h"

#include "tests/support/GatedBoards.h"
#include "window/ground/NoticeLine.h"
#include "window/ground/StatusLine.h"

#include <bit>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using Box = MessageBoxes::Box;

class PolledFaultsTest : public SoftwarePollingTest {
protected:
    void OpenPlain(std::int32_t channels) {
        AnalogBoardInfo info = AnalogBoardInUse().Info();
        info.channelCount = channels;
        Open(OneAnalogBoard(info));
    }
    void FailReads(const char* text) {
        Faults faults;
        faults.readError = text;
        AnalogBoardInUse().SetFaults(faults);
    }
    [[nodiscard]] std::string Notice() const { return window->LabelNotice->text().toStdString(); }
    [[nodiscard]] std::string Status() const {
        window->ShowStatus();
        return window->LabelStatus->text().toStdString();
    }
    [[nodiscard]] static std::string Told(const QCheckBox* saveBox) {
        EXPECT_EQ(saveBox->toolTip().isEmpty(), saveBox->styleSheet().isEmpty());
        return saveBox->toolTip().toStdString();
    }
};

TEST_F(PolledFaultsTest, ScanThatBeginsTooLateIsRefusedAtStart) {
    OpenPlain(4);
    window->ZelAI1->SetScanChannelCount(4);
    window->ZelAI1->SetScanStartChannel(3);
    TurnOnAI();
    Record();
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(),
                ElementsAre(Box{"A scan of 4 channels from channel 3 goes beyond the device's last channel",
                                "BtnStart"}));
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
    window->ZelAI1->SetScanStartChannel(0);
    StartPolling();
    Tick(1);
    Click(window->BtnStart);
    EXPECT_THAT(RecordedScans(), SizeIs(4));
}

TEST_F(PolledFaultsTest, ScanThatAPairMadeTooLongIsRefusedAtStart) {
    OpenPlain(4);
    window->ZelAI1->SetScanChannelCount(4);
    window->ZelAI1->SetChannel(0);
    window->ZelAI1->SetSignalConnection(Differential);
    TurnOnAI();
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(),
                ElementsAre(Box{"A scan of 4 channels from channel 0 goes beyond the device's last channel",
                                "BtnStart"}));
    EXPECT_EQ(window->ZelAI1->ErrorText(),
              u"A scan of 4 channels from channel 0 goes beyond the device's last channel"_s);
    EXPECT_FALSE(window->isSystemRunning);
}

TEST_F(PolledFaultsTest, BoardThatIsNotReadRefusesNoScan) {
    PickBoard(u"3605");
    const std::int32_t channels = window->ZelAI1->MaxChannelCount();
    window->ZelAI1->SetScanChannelCount(channels);
    window->ZelAI1->SetScanStartChannel(3);
    window->BuildPlots(false, true);
    TurnOnAI();
    Record();
    StartPolling();
    Tick(1);
    Click(window->BtnStart);
    EXPECT_THAT(RecordedScans(), testing::AllOf(SizeIs(channels), testing::Each(0.0F)));
    window->M1.AIChanIsThermo[3] = true; // now it is read
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(testing::Field(&Box::title, "BtnStart")));
    EXPECT_FALSE(window->isSystemRunning);
}

TEST_F(PolledFaultsTest, LostScansShowWhileTheBoardFailsAndAreCounted) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    TurnOnDI();
    Record();
    StartPolling();
    Tick(1);
    EXPECT_EQ(Notice(), "");
    Faults faults;
    faults.unplugged = true;
    AnalogBoardInUse().SetFaults(faults);
    Tick(3);
    const std::string reason = "The board does not answer; it may have been unplugged";
    EXPECT_EQ(window->LostScanCount, 3);
    EXPECT_EQ(Notice(), "Scans are being lost: " + reason);
    EXPECT_THAT(Status(), HasSubstr("Lost: 3 scans, last at 00:00:00"));
    EXPECT_EQ(Told(window->CkAISave2Disk), "Scans are being lost: " + reason);
    EXPECT_EQ(Told(window->CkDISave2Disk), "Scans are being lost: " + reason);
    EXPECT_EQ(window->ScanCount, 1);
    EXPECT_TRUE(window->isSystemRunning);

    FailReads("No answer");
    Tick(1);
    EXPECT_EQ(Notice(), "Scans are being lost: No answer");
    EXPECT_THAT(Status(), HasSubstr("Lost: 4 scans"));
    EXPECT_EQ(Told(window->CkAISave2Disk), "Scans are being lost: No answer");

    AnalogBoardInUse().SetFaults({});
    Tick(2);
    EXPECT_EQ(Told(window->CkAISave2Disk), "");
    EXPECT_EQ(Told(window->CkDISave2Disk), "");
    EXPECT_EQ(window->LostScanCount, 4);
    EXPECT_EQ(Notice(), "");
    EXPECT_THAT(Status(), HasSubstr("Lost: 4 scans"));
    Click(window->BtnStart);
    EXPECT_THAT(RecordedScans(), SizeIs(3));
    EXPECT_THAT(Bytes(window->szDIFileName), SizeIs(8 + 3));
    EXPECT_EQ(Notice(), "");
    EXPECT_THAT(Status(), HasSubstr("Lost: 4 scans"));

    StartPolling();
    EXPECT_EQ(window->LostScanCount, 0);
    EXPECT_EQ(Notice(), "");
    EXPECT_THAT(Status(), Not(HasSubstr("Lost")));
    Click(window->BtnStart);
}

TEST_F(PolledFaultsTest, FaultThatEndsASessionLeavesNoRedInTheNext) {
    TurnOnAI();
    Record();
    StartPolling();
    FailReads("No answer");
    Tick(1);
    Click(window->BtnStart);
    EXPECT_NE(Told(window->CkAISave2Disk), "");
    StartPolling();
    EXPECT_EQ(Told(window->CkAISave2Disk), "");
    Tick(1); // the same reason again
    EXPECT_EQ(Told(window->CkAISave2Disk), "Scans are being lost: No answer");
    Click(window->BtnStart);
}

TEST_F(PolledFaultsTest, SaveBoxesOfWhatIsNotSavedStayAsTheyAre) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    Click(window->CkDISave2Disk); // its switch is off
    StartPolling();
    FailReads("No answer");
    Tick(2);
    EXPECT_EQ(Notice(), "Scans are being lost: No answer");
    EXPECT_EQ(Told(window->CkAISave2Disk), "");
    EXPECT_EQ(Told(window->CkDISave2Disk), "");
    Click(window->BtnStart);
}

TEST_F(PolledFaultsTest, BrokenRecordingStaysRedWhenReadsWorkAgain) {
    TurnOnAI();
    Record();
    StartPolling();
    window->Files.Close(frmMain::AIFileNum);
    Tick(1);
    const std::string broken = Told(window->CkAISave2Disk);
    EXPECT_THAT(broken, testing::StartsWith("Recording stopped: "));
    FailReads("No answer");
    Tick(1);
    EXPECT_EQ(Told(window->CkAISave2Disk), broken);
    EXPECT_EQ(Notice(), "Scans are being lost: No answer");
    AnalogBoardInUse().SetFaults({});
    Tick(1);
    EXPECT_EQ(Told(window->CkAISave2Disk), broken);
    Click(window->BtnStart);
}

TEST_F(PolledFaultsTest, OpenThermocoupleIsAGapInItsOwnChannel) {
    const auto board = std::make_shared<GatedAnalogBoard>(false);
    BoardList list;
    list.analog.push_back({board->info.name, "Test", "", false, board});
    Open(list);
    window->ZelThermo1->SetDeviceNumber(0);
    window->ZelAI1->SetScanChannelCount(3);
    window->M1.AIChanIsThermo[1] = true;
    window->BuildPlots(false, true);
    TurnOnAI();
    Record();
    StartPolling();
    board->couple = {1e6, 25.0}; // an open couple drives the input to its end
    Tick(1);
    board->couple = {0.0, 25.0};
    Tick(1);
    Click(window->BtnStart);
    EXPECT_EQ(window->ScanCount, 2);
    EXPECT_EQ(window->LostScanCount, 0);
    EXPECT_EQ(Notice(), "");
    const std::vector<float> recorded = RecordedScans();
    ASSERT_THAT(recorded, SizeIs(6));
    EXPECT_EQ(recorded[0], 0.5F);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(recorded[1]), 0x7FC00000U); // a quiet NaN
    EXPECT_EQ(recorded[2], 2.5F);
    EXPECT_NEAR(recorded[4], 25.0F, 1e-4);
    EXPECT_TRUE(std::isnan(window->ZelGraph1->PointAt(1, 0).y()));
    EXPECT_NEAR(window->ZelGraph1->PointAt(1, 1).y(), 25.0, 1e-4);
    EXPECT_EQ(window->ZelGraph1->PointAt(2, 0).y(), 2.5);
}

TEST_F(PolledFaultsTest, ThermocouplesWithoutTheirControlAreTold) {
    window->M1.AIChanIsThermo[0] = true;
    window->BuildPlots(false, true);
    TurnOnAI();
    StartPolling();
    Tick(2);
    EXPECT_EQ(Notice(), "Scans are being lost: No thermocouple device is selected");
    Click(window->BtnStart);
}

TEST_F(PolledFaultsTest, StepsOfATickCanBeTakenOneByOne) {
    SelectPorts(0, {0x01});
    window->BuildPlots(false, true);
    window->SoftAIScan(); // no session
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 1);
    window->SoftDIScan();
    EXPECT_EQ(window->ZelGraph1->PointCount(1), 1);
    FailReads("No answer");
    EXPECT_THROW(window->SoftAIScan(), RunTimeError);
    EXPECT_EQ(window->ScanCount, 0);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 1);
    EXPECT_THAT(Bytes(window->szAIFileName), IsEmpty());
}

} // namespace
} // namespace tracelet
