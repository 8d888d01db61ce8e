// What a user sets in the settings dialogs is what the next session does.

#include "core/drivers/simulated/SimulatedSignals.h"
#include "tests/window/settings/SettingsTest.h"

namespace tracelet {
namespace {

using testing::ElementsAre;

class SessionAfterSettings : public SettingsTest {
protected:
    /// Sets up polled input: picks a board by its row, wires some channels, chooses the scan and accepts.
    void SetPolled(int board, const std::function<void(dlgGainRange&)>& wire, const char* start,
                   const char* count) {
        InSettings([&](frmSetting& settings) {
            ShowPage(settings, 1);
            Pick(settings.cmdAISelectDevice[1], board);
            InRange(settings, wire);
            Type(settings.txtAIScanStart[1], start);
            Type(settings.txtAIScanNumber[1], count);
            Click(settings.cmdDIOK);
            EXPECT_FALSE(settings.isVisible());
        });
    }
};

TEST_F(SessionAfterSettings, ThermocouplesOfTheDifferentialFamilyAreReadAtTwiceTheirNumber) {
    constexpr int Board6605 = 5;
    SetPolled(
        Board6605,
        [](dlgGainRange& dialog) {
            ClickRow(dialog, 2);
            Click(dialog.OptThermo);
        },
        "2", "1");
    ASSERT_TRUE(window->ZelAI1->DeviceName().contains(u"6605"));
    ASSERT_TRUE(window->M1.AIChanIsThermo[2]);
    TurnOnAI();
    StartPolling();
    EXPECT_EQ(window->ZelThermo1->Channel(), 4);
    Tick(1);
    EXPECT_EQ(window->ZelThermo1->Channel(), 4);
    EXPECT_NEAR(window->ZelGraph1->PointAt(0, 0).y(), SimulatedCelsius(4, 0, 0), 0.05);
    Click(window->BtnStart);
}

// Every setting of a thermocouple is that of its physical channel, wherever the scan begins.
TEST_F(SessionAfterSettings, ThermocoupleKeepsItsSettingsBehindTheScanStart) {
    constexpr int Board6601 = 3;
    SetPolled(
        Board6601,
        [](dlgGainRange& dialog) {
            ClickRow(dialog, 5);
            Click(dialog.OptThermo);
            Choose(dialog.ComboTCType, 1);
            Choose(dialog.ComboScale, 3);
            Choose(dialog.ComboExpChan, 9);
        },
        "4", "3");
    ASSERT_TRUE(window->M1.AIChanIsThermo[5]);
    window->M1.AIThermoScale[1] = 0; // of the channel whose number is the position in the scan
    TurnOnAI();
    StartPolling();
    Tick(2);
    EXPECT_EQ(window->ZelThermo1->Channel(), 5);
    EXPECT_EQ(window->ZelThermo1->ThermoType(), 1);
    EXPECT_EQ(window->ZelThermo1->ThermoScale(), 3);
    EXPECT_EQ(window->ZelThermo1->ExpChannel(), 9);
    EXPECT_NEAR(window->ZelGraph1->PointAt(1, 1).y(), SimulatedCelsius(5, 9, 1) + 273.15, 0.05);
    Click(window->BtnStart);
}

TEST_F(SessionAfterSettings, WiringIsReadBackUpToTheSpareElement) {
    const struct {
        bool singleEnded;
        std::int32_t code;
    } cases[] = {{true, 0}, {false, 1}};
    for (const auto& c : cases) {
        AnalogBoardInfo info = Described("6605HG", 4);
        info.singleEnded = c.singleEnded;
        Open(Boards({info}));
        for (std::int64_t channel = 0; channel < 5; ++channel)
            window->M1.AIChanConnection[channel] = 7;
        window->M1.AIChanIsThermo[1] = true;
        window->ZelThermo1->SetDeviceNumber(0);
        InSettings([](frmSetting&) {});
        for (std::int64_t channel = 0; channel < 5; ++channel)
            EXPECT_EQ(window->M1.AIChanConnection[channel], c.code) << channel;
        EXPECT_EQ(window->ZelAI1->Channel(), 4);
        EXPECT_EQ(window->ZelThermo1->Channel(), 1);
    }
}

// A scan starts at a physical channel, which the pairs in front of it do not shift; a pair in it is one
// channel.
TEST_F(SessionAfterSettings, ScanAmongPairsReadsAndShowsItsOwnChannels) {
    constexpr int Board6601 = 3;
    SetPolled(
        Board6601,
        [](dlgGainRange& dialog) {
            for (const int channel : {0, 2, 6}) {
                ClickRow(dialog, channel);
                Click(dialog.optDifferent);
            }
        },
        "2", "3");
    ASSERT_EQ(window->ZelAI1->ScanStartChannel(), 2);
    std::vector<std::string> names;
    for (int plot = 0; plot < window->ZelGraph1->PlotCount(); ++plot)
        names.push_back(window->ZelGraph1->Plot(plot).name.toStdString());
    EXPECT_THAT(names, ElementsAre("AI 2", "AI 4", "AI 5"));
    TurnOnAI();
    StartPolling();
    const SimulatedAnalogBoard& board = AnalogBoardInUse();
    const std::uint64_t first = board.ScansRead();
    Tick(3);
    const ChannelSetup scanned[] = {{2, board.Info().ranges.front(), Differential},
                                    {4, board.Info().ranges.front(), SingleEnded},
                                    {5, board.Info().ranges.front(), SingleEnded}};
    for (const int plot : {0, 1, 2}) {
        EXPECT_FLOAT_EQ(static_cast<float>(window->ZelGraph1->PointAt(plot, 2).y()),
                        static_cast<float>(board.PolledValue(scanned[plot], first + 2)))
            << scanned[plot].channel;
    }
    Click(window->BtnStart);
}

} // namespace
} // namespace tracelet
