#include "tests/window/main/SoftwarePollingTest.h"

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using Box = MessageBoxes::Box;

class PolledThermocouplesTest : public SoftwarePollingTest {
protected:
    void PickThermoBoard(QStringView namePart) {
        PickBoard(namePart);
        window->ZelThermo1->SetDeviceNumber(window->ZelAI1->DeviceNumber());
    }
};

TEST_F(PolledThermocouplesTest, ThermocoupleChannelsReadTemperatures) {
    PickThermoBoard(u"6601HG");
    window->ZelAI1->SetScanChannelCount(2);
    window->M1.AIChanIsThermo[1] = true;
    window->M1.AIThermoType[1] = 1;
    window->M1.AIThermoScale[1] = 3;
    window->M1.AIThermoExpChan[1] = 4;
    window->BuildPlots(false, true);
    EXPECT_EQ(window->ZelGraph1->Plot(0).axis, VoltageAxis);
    EXPECT_EQ(window->ZelGraph1->Plot(1).axis, TemperatureAxis);
    TurnOnAI();
    StartPolling();
    EXPECT_EQ(window->ZelThermo1->Channel(), 1);
    Tick(2);
    Click(window->BtnStart);
    EXPECT_EQ(window->ZelThermo1->ThermoType(), 1);
    EXPECT_EQ(window->ZelThermo1->ExpChannel(), 4);
    for (std::uint64_t scan = 0; scan < 2; ++scan) {
        EXPECT_NEAR(window->ZelGraph1->PointAt(1, static_cast<std::int64_t>(scan)).y(),
                    SimulatedCelsius(1, 4, scan) + 273.15, 0.05);
    }
}

TEST_F(PolledThermocouplesTest, DoubledChannelOnTheDifferentialFamily) {
    PickThermoBoard(u"6605HG");
    window->ZelAI1->SetScanStartChannel(2);
    window->M1.AIChanIsThermo[2] = true;
    window->BuildPlots(false, true);
    ASSERT_EQ(window->ZelAI1->SignalConnection(), Differential);
    TurnOnAI();
    StartPolling();
    EXPECT_EQ(window->ZelThermo1->Channel(), 4);
    Tick(1);
    EXPECT_EQ(window->ZelThermo1->Channel(), 4);
    EXPECT_NEAR(window->ZelGraph1->PointAt(0, 0).y(), SimulatedCelsius(4, 0, 0), 0.05);
    Click(window->BtnStart);
}

TEST_F(PolledThermocouplesTest, SingleEndedChannelsOfTheDifferentialFamilyAreNotDoubled) {
    PickBoard(u"6605HG");
    AnalogBoardInfo info = AnalogBoardInUse().Info();
    info.singleEnded = true;
    Open(OneAnalogBoard(info));
    PickThermoBoard(u"6605HG");
    window->ZelAI1->SetScanStartChannel(2);
    window->M1.AIChanIsThermo[2] = true;
    window->BuildPlots(false, true);
    ASSERT_EQ(window->ZelAI1->SignalConnection(), SingleEnded);
    TurnOnAI();
    StartPolling();
    EXPECT_EQ(window->ZelThermo1->Channel(), 0);
    Tick(1);
    EXPECT_EQ(window->ZelThermo1->Channel(), 2);
    Click(window->BtnStart);
}

TEST_F(PolledThermocouplesTest, UnpairedFamilyWithAThermocoupleReadsAllChannels) {
    PickThermoBoard(u"3605");
    window->ZelAI1->SetScanStartChannel(4);
    window->ZelAI1->SetScanChannelCount(2);
    window->M1.AIChanIsThermo[5] = true;
    window->BuildPlots(false, true);
    TurnOnAI();
    Record();
    StartPolling();
    EXPECT_EQ(window->ZelThermo1->Channel(), 0) << "no input limits for this family";
    const std::uint64_t first = AnalogBoardInUse().ScansRead();
    Tick(3); // the signal begins at 0
    Click(window->BtnStart);
    EXPECT_EQ(window->ZelThermo1->Channel(), 5);
    ASSERT_THAT(RecordedScans(), SizeIs(6));
    ASSERT_NE(Expected(4, first + 2), 0.0F);
    EXPECT_EQ(RecordedScans()[4], Expected(4, first + 2));
    EXPECT_NEAR(RecordedScans()[5], SimulatedCelsius(5, 0, 2), 0.05);
}

TEST_F(PolledThermocouplesTest, LimitsAreSetFromTheLastChannelToTheFirst) {
    PickThermoBoard(u"6601HG");
    window->ZelAI1->SetScanChannelCount(4);
    window->M1.AIChanIsThermo[1] = window->M1.AIChanIsThermo[3] = true;
    window->BuildPlots(false, true);
    TurnOnAI();
    StartPolling();
    EXPECT_EQ(window->ZelThermo1->Channel(), 1);
    Click(window->BtnStart);
}

TEST_F(PolledThermocouplesTest, ThermocouplesNeedARangeOfFiveMillivolts) {
    PickBoard(u"6601HG");
    AnalogBoardInfo info = AnalogBoardInUse().Info();
    const struct {
        double limit; // volts, either side of 0
        bool suffices;
    } cases[] = {{0.0049, false}, {0.005, true}};
    for (const auto& c : cases) {
        info.ranges = {{.code = 0, .first = -c.limit, .second = c.limit}};
        Open(OneAnalogBoard(info));
        PickThermoBoard(u"6601HG");
        window->M1.AIChanIsThermo[0] = true;
        window->BuildPlots(false, true);
        TurnOnAI();
        Click(window->BtnStart);
        EXPECT_EQ(window->isSystemRunning, c.suffices);
        if (c.suffices)
            Click(window->BtnStart);
        else
            EXPECT_THAT(boxes.Take(),
                        ElementsAre(Box{"The device has no input range from -0.005 to 0.005 V", "BtnStart"}));
    }
}

} // namespace
} // namespace tracelet
