// The page "SoftAI and/or DI": ports and lines, the choice of the digital board, what its OK button writes.

#include "tests/window/settings/SettingsTest.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SoftPage : public SettingsTest {
protected:
    bool AcceptSoft(const std::function<void(frmSetting&)>& fill) {
        bool closed = false;
        InSettings([&](frmSetting& dialog) {
            ShowPage(dialog, 1);
            fill(dialog);
            Click(dialog.cmdDIOK);
            closed = !dialog.isVisible();
        });
        return closed;
    }

    std::vector<int> Masks() const {
        std::vector<int> masks;
        for (std::int64_t port = 0; port < window->M1.DIPortMask.Count(); ++port)
            masks.push_back(window->M1.DIPortMask[port]);
        return masks;
    }

    static int Checked(const frmSetting& dialog) {
        int mask = 0;
        for (std::size_t line = 0; line < 8; ++line)
            mask |= dialog.CheckDIChannel[line]->isChecked() ? 1 << line : 0;
        return mask;
    }

    void SetMasks(std::initializer_list<std::uint8_t> masks) {
        std::int64_t port = 0;
        for (const std::uint8_t mask : masks)
            window->M1.DIPortMask[port++] = mask;
    }
};

TEST_F(SoftPage, ShowsTheLinesOfThePort) {
    SetMasks({0x81, 0x00, 0xFF, 0x2A});
    InSettings([&](frmSetting& dialog) {
        EXPECT_EQ(Checked(dialog), 0x81);
        Choose(dialog.ComboDIPort, 1);
        EXPECT_EQ(Checked(dialog), 0x00);
        Choose(dialog.ComboDIPort, 2);
        EXPECT_EQ(Checked(dialog), 0xFF);
        Choose(dialog.ComboDIPort, 3);
        EXPECT_EQ(Checked(dialog), 0x2A);
        Choose(dialog.ComboDIPort, 0);
        EXPECT_EQ(Checked(dialog), 0x81);
    });
    EXPECT_THAT(Masks(), ElementsAre(0x81, 0x00, 0xFF, 0x2A, 0));
}

TEST_F(SoftPage, LineBoxesChangeTheMaskAtOnce) {
    InSettings([&](frmSetting& dialog) {
        Choose(dialog.ComboDIPort, 2);
        int mask = 0;
        for (std::size_t line = 0; line < 8; ++line) {
            Click(dialog.CheckDIChannel[line]);
            mask |= 1 << line;
            EXPECT_THAT(Masks(), ElementsAre(0, 0, mask, 0, 0));
        }
        Click(dialog.CheckDIChannel[3]);
        EXPECT_THAT(Masks(), ElementsAre(0, 0, 0xF7, 0, 0));
        Choose(dialog.ComboDIPort, 0);
        Click(dialog.CheckDIChannel[7]);
        EXPECT_THAT(Masks(), ElementsAre(0x80, 0, 0xF7, 0, 0));
    });
    // There is no cancel.
    EXPECT_THAT(Masks(), ElementsAre(0x80, 0, 0xF7, 0, 0));
    EXPECT_EQ(window->nDIPortCount, 0);
}

TEST_F(SoftPage, OKDerivesThePolledBlock) {
    const struct {
        std::array<std::uint8_t, 4> masks;
        std::int32_t start, count, lines;
    } cases[] = {
        {{0x00, 0x81, 0x00, 0x01}, 1, 3, 3}, {{0xFF, 0x00, 0x00, 0x00}, 0, 1, 8},
        {{0x00, 0x00, 0x00, 0x40}, 3, 1, 1}, {{0x01, 0x00, 0x00, 0x80}, 0, 4, 2},
        {{0x00, 0x00, 0x00, 0x00}, 4, 0, 0},
    };
    for (const auto& c : cases) {
        for (std::size_t port = 0; port < c.masks.size(); ++port)
            window->M1.DIPortMask[static_cast<std::int64_t>(port)] = c.masks[port];
        EXPECT_TRUE(AcceptSoft([](frmSetting&) {}));
        EXPECT_EQ(window->nDIPortStart, c.start);
        EXPECT_EQ(window->nDIPortCount, c.count);
        EXPECT_EQ(window->nDIChanCount, c.lines);
        EXPECT_TRUE(window->M1.DIValid);
        EXPECT_EQ(window->ZelGraph1->PlotCount(), 1 + c.lines);
    }
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(SoftPage, OKWritesTheSettings) {
    window->M1.SoftMode = false;
    EXPECT_TRUE(AcceptSoft([](frmSetting& dialog) {
        Type(dialog.txtAIScanStart[1], "4");
        Type(dialog.txtAIScanNumber[1], "8");
        Type(dialog.txtAITimeInterval, "1,500");
        dialog.txtAIScanStart[0]->setText(u"1"_s); // the other page does not count
        dialog.txtSampleRate->setText(u"abc"_s);
    }));
    EXPECT_TRUE(window->M1.SoftMode);
    EXPECT_TRUE(window->M1.SoftAIValid);
    EXPECT_EQ(window->ZelAI1->ScanStartChannel(), 4);
    EXPECT_EQ(window->ZelAI1->ScanChannelCount(), 8);
    EXPECT_EQ(window->ZelAI1->SampleRate(), 1000.0);
    EXPECT_EQ(window->nTimerInterval, 1500);
    EXPECT_FALSE(window->bAIEnabled);
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 8);
    EXPECT_EQ(window->ZelGraph1->Plot(7).name, u"AI 11"_s);
}

TEST_F(SoftPage, SelectedLinesKeepTheDigitalSwitchOn) {
    SelectPorts(0, {0x01});
    TurnOnDI();
    ASSERT_TRUE(window->bDIEnabled);
    EXPECT_TRUE(AcceptSoft([](frmSetting& dialog) { Click(dialog.CheckDIChannel[1]); }));
    EXPECT_TRUE(window->bDIEnabled);
    EXPECT_TRUE(window->ZelButton2->Value());
    EXPECT_TRUE(window->CkDISave2Disk->isEnabled());
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 2);
}

TEST_F(SoftPage, NoSelectedLineTurnsTheDigitalSwitchOff) {
    SelectPorts(0, {0x01});
    TurnOnDI();
    ASSERT_TRUE(window->bDIEnabled);
    QSignalSpy off(window->ZelButton2, &ZelButton::ValueChanged);
    EXPECT_TRUE(AcceptSoft([](frmSetting& dialog) { Click(dialog.CheckDIChannel[0]); }));
    EXPECT_EQ(window->nDIPortStart, 4);
    EXPECT_EQ(window->nDIPortCount, 0);
    EXPECT_EQ(window->nDIChanCount, 0);
    EXPECT_FALSE(window->bDIEnabled);
    EXPECT_FALSE(window->ZelButton2->Value());
    EXPECT_FALSE(window->CkDISave2Disk->isEnabled());
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 0);
    EXPECT_EQ(off.count(), 0);
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(SoftPage, RefusedScanKeepsTheDialog) {
    window->M1.SoftMode = false;
    SetMasks({0x01});
    EXPECT_FALSE(AcceptSoft([](frmSetting& dialog) {
        Type(dialog.txtAIScanNumber[1], "65");
        Type(dialog.txtAITimeInterval, "7");
    }));
    const std::vector<Box> shown = boxes.Take();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_NE(shown[0].text, "");
    EXPECT_EQ(shown[0].title, "cmdDIOK");
    EXPECT_TRUE(window->M1.SoftMode); // written before the failure
    EXPECT_EQ(window->nDIPortCount, 1);
    EXPECT_EQ(window->nTimerInterval, 100);
}

TEST_F(SoftPage, FastOKLeavesTheBlockAsItWas) {
    SetMasks({0x01, 0x03});
    EXPECT_TRUE(AcceptSoft([](frmSetting&) {}));
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 1);
        Choose(dialog.ComboDIPort, 3);
        Click(dialog.CheckDIChannel[0]);
        ShowPage(dialog, 0);
        Click(dialog.cmdFAIOK);
    });
    EXPECT_EQ(window->nDIPortCount, 2);
    EXPECT_EQ(window->nDIChanCount, 3);
    EXPECT_THAT(Masks(), ElementsAre(1, 3, 0, 1, 0));
}

TEST_F(SoftPage, WithoutDevicesOKStillAccepts) {
    Open({});
    window->M1.DIValid = window->M1.SoftAIValid = true;
    window->M1.SoftMode = false;
    window->nDIPortCount = 3;
    EXPECT_TRUE(AcceptSoft([](frmSetting& dialog) {
        Type(dialog.txtAITimeInterval, "20");
        dialog.txtAIScanStart[1]->setText(u"not read"_s);
    }));
    EXPECT_TRUE(window->M1.SoftMode);
    EXPECT_FALSE(window->M1.DIValid);
    EXPECT_FALSE(window->M1.SoftAIValid);
    EXPECT_EQ(window->nDIPortCount, 3);
    EXPECT_EQ(window->nTimerInterval, 20);
}

// ── The digital board ────────────────────────────────────────────────────────────────────────────────

TEST_F(SoftPage, PickingAnotherBoardClearsMasksAndPlots) {
    SetMasks({0x01, 0x03});
    window->M1.DIPlotColor[0] = 0x123456;
    window->M1.DIPlotName[0] = "mine";
    window->M1.DIPlotLineStyle[0] = 2;
    InSettings([&](frmSetting& dialog) {
        Pick(dialog.DISelectDevice, 2);
        EXPECT_EQ(dialog.LabelDIDevNum->text(), u"2"_s);
        EXPECT_EQ(dialog.LabelDIDevName->text(), u"Merula Port 12"_s);
        EXPECT_EQ(dialog.ComboDIPort->count(), 12);
        EXPECT_EQ(dialog.ComboDIPort->itemText(11), u"11"_s);
        EXPECT_EQ(dialog.ComboDIPort->currentIndex(), 0);
        EXPECT_EQ(Checked(dialog), 0);
    });
    EXPECT_EQ(window->nDIMaxPortCount, 12);
    EXPECT_EQ(Masks(), std::vector<int>(13, 0));
    const M1& shared = window->M1;
    ASSERT_EQ(shared.DIPlotName.Count(), 97);
    ASSERT_EQ(shared.DIPlotColor.Count(), 97);
    ASSERT_EQ(shared.DIPlotLineStyle.Count(), 97);
    EXPECT_EQ(shared.DIPlotName[0], "DI 0:0");
    EXPECT_EQ(shared.DIPlotName[2 * 8 + 5], "DI 2:5");
    EXPECT_EQ(shared.DIPlotColor[0], 0xFFFFFFu);
    EXPECT_EQ(shared.DIPlotColor[8], 0x00FFFFu);
    EXPECT_EQ(shared.DIPlotLineStyle[0], 0);
    EXPECT_EQ(shared.DIPlotName[96], "");
}

TEST_F(SoftPage, PickingATwinOfTheBoardShowsIt) {
    Open(Boards({}, {{"Twin", 2}, {"Twin", 3}}));
    SetMasks({0x01, 0x03});
    InSettings([&](frmSetting& dialog) {
        Pick(dialog.DISelectDevice, 1);
        EXPECT_EQ(dialog.LabelDIDevNum->text(), u"1"_s);
        EXPECT_EQ(Items(dialog.ComboDIPort), (QStringList{u"0"_s, u"1"_s, u"2"_s}));
        EXPECT_EQ(Checked(dialog), 0);
    });
    EXPECT_EQ(window->nDIMaxPortCount, 3);
    EXPECT_THAT(Masks(), ElementsAre(0, 0, 0, 0));
}

TEST_F(SoftPage, SameBoardAndCancelChangeNothing) {
    for (const int row : {0, -1}) {
        SCOPED_TRACE(row);
        SetMasks({0x01, 0x03});
        window->M1.DIPlotName[0] = "mine";
        InSettings([&](frmSetting& dialog) {
            Choose(dialog.ComboDIPort, 1);
            Pick(dialog.DISelectDevice, row);
            EXPECT_EQ(dialog.ComboDIPort->currentIndex(), 1);
        });
        EXPECT_THAT(Masks(), ElementsAre(1, 3, 0, 0, 0));
        EXPECT_EQ(window->M1.DIPlotName[0], "mine");
    }
}

TEST_F(SoftPage, OnePortBoard) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 1);
        QSignalSpy handled(dialog.ComboDIPort, &QComboBox::currentIndexChanged);
        Pick(dialog.DISelectDevice, 1);
        EXPECT_EQ(handled.count(), 0); // filling the list is no choice
        EXPECT_EQ(dialog.LabelDIDevName->text(), u"Merula Port 1"_s);
        EXPECT_TRUE(dialog.FrameDIScan->isEnabled());
        EXPECT_TRUE(dialog.ComboDIPort->isEnabled());
        EXPECT_TRUE(dialog.CheckDIChannel[0]->isEnabled());
        EXPECT_EQ(Items(dialog.ComboDIPort), QStringList{u"0"_s});
        EXPECT_EQ(window->nDIMaxPortCount, 1);
        EXPECT_THAT(Masks(), ElementsAre(0, 0));
        Click(dialog.CheckDIChannel[6]);
        EXPECT_THAT(Masks(), ElementsAre(0x40, 0));
        Click(dialog.cmdDIOK);
    });
    EXPECT_EQ(window->nDIPortStart, 0);
    EXPECT_EQ(window->nDIPortCount, 1);
    EXPECT_EQ(window->nDIChanCount, 1);
    EXPECT_EQ(window->ZelGraph1->Plot(1).name, u"DI 0:6"_s);
}

TEST_F(SoftPage, BoardWithoutPorts) {
    Open(Boards({}, {{"Four", 4}, {"None", 0}}));
    SetMasks({0x01});
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 1);
        Pick(dialog.DISelectDevice, 1);
        EXPECT_EQ(dialog.LabelDIDevName->text(), u"None"_s);
        EXPECT_FALSE(dialog.FrameDIScan->isEnabled());
        EXPECT_FALSE(dialog.CheckDIChannel[0]->isEnabled());
        EXPECT_EQ(dialog.ComboDIPort->count(), 0);
        EXPECT_TRUE(dialog.txtAITimeInterval->isEnabled());
        EXPECT_EQ(window->nDIMaxPortCount, 4);
        EXPECT_EQ(window->M1.DIPlotName.Count(), 1);
        Click(dialog.cmdDIOK);
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_TRUE(window->M1.DIValid);
    InSettings([&](frmSetting& dialog) {
        EXPECT_FALSE(dialog.FrameDIScan->isEnabled());
        Pick(dialog.DISelectDevice, 0);
        EXPECT_TRUE(dialog.FrameDIScan->isEnabled());
        EXPECT_TRUE(dialog.ComboDIPort->isEnabled());
        EXPECT_TRUE(dialog.CheckDIChannel[7]->isEnabled());
        EXPECT_EQ(dialog.ComboDIPort->count(), 4);
    });
    EXPECT_THAT(Masks(), ElementsAre(0, 0, 0, 0, 0));
}

TEST_F(SoftPage, FailureOfTheBoardIsShown) {
    dynamic_cast<SimulatedDigitalBoard&>(*boards.digital.at(1).board).SetFaults({.unplugged = true});
    InSettings([&](frmSetting& dialog) {
        Pick(dialog.DISelectDevice, 1);
        const std::vector<Box> shown = boxes.Take();
        ASSERT_EQ(shown.size(), 1u);
        EXPECT_NE(shown[0].text, "");
        EXPECT_EQ(shown[0].title, "DISelectDevice");
        EXPECT_TRUE(dialog.isVisible());
    });
}

} // namespace
} // namespace tracelet
