// The choice of the analog board, and what the main window does when the settings close.

#include "tests/window/settings/SettingsTest.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;

class AnalogBoardChoice : public SettingsTest {};

void Disturb(frmMain& window) {
    M1& shared = window.M1;
    shared.AIChanIsThermo[0] = true;
    shared.AIThermoExpChan[0] = 9;
    shared.AIThermoScale[0] = 2;
    shared.AIThermoType[0] = 5;
    shared.AIPlotColor[1] = 0x123456;
    shared.AIPlotLineStyle[1] = 3;
    shared.AIPlotName[1] = "mine";
    shared.AIChanConnection[1] = 1;
    window.nAISampleCnt = 77777;
    window.bFAICyclic = false;
}

void ExpectFresh(const frmMain& window, std::int64_t channels) {
    const M1& shared = window.M1;
    for (const std::int64_t count :
         {shared.AIChanIsThermo.Count(), shared.AIThermoExpChan.Count(), shared.AIThermoScale.Count(),
          shared.AIThermoType.Count(), shared.AIPlotColor.Count(), shared.AIPlotLineStyle.Count(),
          shared.AIPlotName.Count(), shared.AIChanConnection.Count()})
        EXPECT_EQ(count, channels + 1);
    EXPECT_FALSE(shared.AIChanIsThermo[0]);
    EXPECT_EQ(shared.AIThermoExpChan[0], 0);
    EXPECT_EQ(shared.AIThermoScale[0], 0);
    EXPECT_EQ(shared.AIThermoType[0], 0);
    for (std::int64_t channel = 0; channel < channels; ++channel) {
        EXPECT_EQ(shared.AIPlotColor[channel], shared.AIColorTable[static_cast<std::size_t>(channel % 16)]);
        EXPECT_EQ(shared.AIPlotLineStyle[channel], channel / 16);
        EXPECT_EQ(shared.AIPlotName[channel], "AI " + std::to_string(channel));
    }
    EXPECT_EQ(shared.AIPlotName[channels], "");
    EXPECT_EQ(shared.AIPlotColor[channels], 0u);
    EXPECT_EQ(window.nAISampleCnt, 4096);
    EXPECT_TRUE(window.bFAICyclic);
}

TEST_F(AnalogBoardChoice, PickingABoardShowsItOnBothPages) {
    for (const int page : {0, 1}) {
        SCOPED_TRACE(page);
        Open(SimulatedBoards());
        Disturb(*window);
        InSettings([&](frmSetting& dialog) {
            ShowPage(dialog, page);
            Pick(dialog.cmdAISelectDevice[static_cast<std::size_t>(page)], 2);
            EXPECT_EQ(window->ZelAI1->DeviceName(), u"Merula 8"_s);
            for (const std::size_t shown : {0u, 1u}) {
                EXPECT_EQ(dialog.LabelAIDeviceNumber[shown]->text(), u"2"_s);
                EXPECT_EQ(dialog.labAIDeviceName[shown]->text(), u"Merula 8"_s);
                EXPECT_EQ(dialog.labAIResolution[shown]->text(), u"12"_s);
            }
            ExpectFresh(*window, 8);
            EXPECT_EQ(dialog.txtCount->text(), u"4,096"_s);
            EXPECT_TRUE(dialog.chkCylic->isChecked());
            EXPECT_FALSE(dialog.txtCount->isEnabled());
            EXPECT_FALSE(dialog.cmbPacerSource->isEnabled());
            EXPECT_EQ(dialog.cmbPacerSource->count(), 0);
            EXPECT_FALSE(dialog.FrameFAITrigger->isEnabled());
            // And back to one with pacer and trigger.
            Pick(dialog.cmdAISelectDevice[static_cast<std::size_t>(page)], 0);
            EXPECT_TRUE(dialog.cmbPacerSource->isEnabled());
            EXPECT_EQ(dialog.cmbPacerSource->count(), 2);
            EXPECT_TRUE(dialog.FrameFAITrigger->isEnabled());
            EXPECT_EQ(dialog.cmbTriggerSource->count(), 5);
            EXPECT_EQ(dialog.cmbDataReturnType->count(), 2);
        });
        ExpectFresh(*window, 64);
    }
}

TEST_F(AnalogBoardChoice, CancellingThePickerStillResetsTheTables) {
    Disturb(*window);
    window->ZelAI1->SetScanChannelCount(4);
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        const QString count = dialog.txtCount->text();
        dialog.txtAIScanStart[0]->setText(u"12"_s);
        Pick(dialog.cmdAISelectDevice[0], -1);
        ExpectFresh(*window, 64);
        // The dialog is not shown anew.
        EXPECT_EQ(dialog.txtAIScanStart[0]->text(), u"12"_s);
        EXPECT_EQ(dialog.txtCount->text(), count);
        EXPECT_FALSE(dialog.chkCylic->isChecked());
    });
    EXPECT_EQ(window->ZelAI1->DeviceNumber(), 0);
    EXPECT_EQ(window->ZelAI1->ScanChannelCount(), 4);
}

TEST_F(AnalogBoardChoice, PickingTheSameBoardDoesNotRefresh) {
    Disturb(*window);
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 1);
        dialog.txtAIScanStart[1]->setText(u"12"_s);
        Pick(dialog.cmdAISelectDevice[1], 0);
        EXPECT_EQ(dialog.txtAIScanStart[1]->text(), u"12"_s);
        ExpectFresh(*window, 64);
    });
}

TEST_F(AnalogBoardChoice, PickingATwinOfTheBoardShowsIt) {
    for (const int page : {0, 1}) {
        AnalogBoardInfo twin = Described("Twin", 4);
        twin.resolution = 16;
        twin.externalPacer = false;
        Open(Boards({Described("Twin"), twin}));
        window->ZelAI1->SetScanChannelCount(3);
        InSettings([&](frmSetting& dialog) {
            ShowPage(dialog, page);
            Pick(dialog.cmdAISelectDevice[static_cast<std::size_t>(page)], 1);
            for (const std::size_t shown : {0u, 1u}) {
                EXPECT_EQ(dialog.LabelAIDeviceNumber[shown]->text(), u"1"_s);
                EXPECT_EQ(dialog.labAIResolution[shown]->text(), u"16"_s);
                EXPECT_EQ(dialog.txtAIScanNumber[shown]->text(), u"1"_s);
            }
            EXPECT_FALSE(dialog.cmbPacerSource->isEnabled());
        });
        ExpectFresh(*window, 4);
    }
}

TEST_F(AnalogBoardChoice, PickingFromNoDevice) {
    BoardList list = SimulatedBoards();
    Open(list);
    window->ZelAI1->SetDeviceNumber(-1);
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        EXPECT_FALSE(dialog.NonSoftSetting->isEnabled());
        Pick(dialog.cmdAISelectDevice[0], 1);
        EXPECT_EQ(dialog.labAIDeviceName[0]->text(), u"Merula Swift 16"_s);
        EXPECT_TRUE(dialog.NonSoftSetting->isEnabled());
        EXPECT_TRUE(dialog.txtSampleRate->isEnabled());
        for (const std::size_t page : {0u, 1u}) {
            EXPECT_TRUE(dialog.SoftSetting[page]->isEnabled());
            EXPECT_TRUE(dialog.txtAIScanStart[page]->isEnabled());
            EXPECT_TRUE(dialog.cmdRange[page]->isEnabled());
        }
        EXPECT_TRUE(dialog.FrameFAITrigger->isEnabled());
        EXPECT_TRUE(dialog.cmbTriggerEdge->isEnabled());
    });
}

TEST_F(AnalogBoardChoice, FailureOfTheBoardIsShown) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        dynamic_cast<SimulatedAnalogBoard&>(*boards.analog.at(1).board).SetFaults({.unplugged = true});
        Disturb(*window);
        Pick(dialog.cmdAISelectDevice[0], 1);
        const std::vector<Box> shown = boxes.Take();
        ASSERT_EQ(shown.size(), 1u);
        EXPECT_NE(shown[0].text, "");
        EXPECT_EQ(shown[0].title, "cmdAISelectDevice");
        EXPECT_TRUE(dialog.isVisible());
    });
    EXPECT_EQ(window->ZelAI1->DeviceNumber(), 0);
    EXPECT_EQ(window->nAISampleCnt, 77777); // nothing behind the failure was done
}

// ── Closing ──────────────────────────────────────────────────────────────────────────────────────────

TEST_F(AnalogBoardChoice, ClosingReadsTheWiringBack) {
    Open(Boards({Described("6601HG", 6)}));
    window->ZelThermo1->SetDeviceNumber(0);
    window->ZelAI1->SetChannel(2);
    window->ZelAI1->SetSignalConnection(Differential);
    window->ZelThermo1->SetChannel(4);
    window->ZelThermo1->SetSignalConnection(Differential);
    window->M1.AIChanIsThermo[3] = true; // single-ended on the thermocouple control
    window->M1.AIChanIsThermo[4] = true;
    InSettings([](frmSetting&) {});
    std::vector<std::int32_t> connections;
    for (std::int64_t i = 0; i < window->M1.AIChanConnection.Count(); ++i)
        connections.push_back(window->M1.AIChanConnection[i]);
    EXPECT_THAT(connections, ElementsAre(0, 0, 1, 0, 1, 0, 0));
}

TEST_F(AnalogBoardChoice, ClosingRebuildsThePlots) {
    window->M1.AIPlotName[0] = "renamed";
    ASSERT_EQ(window->ZelGraph1->Plot(0).name, u"AI 0"_s);
    InSettings([](frmSetting&) {});
    EXPECT_EQ(window->ZelGraph1->Plot(0).name, u"renamed"_s);
}

TEST_F(AnalogBoardChoice, ClosingDropsWhatWasDrawn) {
    TurnOnAI();
    StartPolling();
    Tick(3);
    Click(window->BtnStart);
    ASSERT_EQ(window->ZelGraph1->PointCount(0), 3);
    InSettings([](frmSetting&) {});
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 1);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 0);
}

TEST_F(AnalogBoardChoice, ClosingShowsTheRecordingInHistoryMode) {
    window->bHistoryMode = window->recording.info.bHisAI = true;
    window->recording.info.nHisAIChanCount = 2;
    M1& shared = window->M1;
    shared.HisAIChanIsThermo.Resize(2);
    shared.HisAIPlotName.Resize(2);
    shared.HisAIPlotColor.Resize(2);
    shared.HisAIPlotLineStyle.Resize(2);
    shared.HisAIPlotName[1] = "recorded";
    InSettings([](frmSetting&) {});
    ASSERT_EQ(window->ZelGraph1->PlotCount(), 2);
    EXPECT_EQ(window->ZelGraph1->Plot(1).name, u"recorded"_s);
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 2);
}

TEST_F(AnalogBoardChoice, ClosingWithoutADeviceKeepsTheTables) {
    Open({});
    window->M1.AIChanConnection.Resize(3);
    window->M1.AIChanConnection[1] = 7;
    InSettings([](frmSetting&) {});
    EXPECT_EQ(window->M1.AIChanConnection[1], 7);
}

} // namespace
} // namespace tracelet
