// The page "Fast AI": what its OK button writes and switches.

#include "tests/window/settings/SettingsTest.h"

#include "window/widgets/ZelLED.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::IsEmpty;

class FastPage : public SettingsTest {
protected:
    /// Presses OK of the page after `fill`; tells whether the dialog closed.
    bool AcceptFast(const std::function<void(frmSetting&)>& fill) {
        bool closed = false;
        InSettings([&](frmSetting& dialog) {
            ShowPage(dialog, 0);
            fill(dialog);
            Click(dialog.cmdFAIOK);
            closed = !dialog.isVisible();
        });
        return closed;
    }
};

TEST_F(FastPage, OKWritesThePage) {
    EXPECT_TRUE(AcceptFast([](frmSetting& dialog) {
        Type(dialog.txtAIScanStart[0], "8");
        Type(dialog.txtAIScanNumber[0], "16");
        Type(dialog.txtCount, "8,192");
        Type(dialog.txtSampleRate, "50,000");
        Choose(dialog.cmbDataReturnType, 0);
        Choose(dialog.cmbPacerSource, 1);
        Choose(dialog.cmbTriggerMode, 2);
        Choose(dialog.cmbTriggerEdge, 1);
        Choose(dialog.cmbTriggerSource, 4);
        Type(dialog.txtTriggerVoltage, "-1.5");
        Type(dialog.txtTriggerDelayTime, "20");
        Type(dialog.txtTriggerAfterTimeinAboveMode, "30.5");
        dialog.txtAIScanStart[1]->setText(u"1"_s); // the other page does not count
        dialog.txtAIScanNumber[1]->setText(u"2"_s);
    }));
    const ZelAI& ai = *window->ZelAI1;
    EXPECT_EQ(ai.ScanStartChannel(), 8);
    EXPECT_EQ(ai.ScanChannelCount(), 16);
    EXPECT_EQ(ai.DataType(), 1);
    EXPECT_EQ(ai.PacerSource(), 1);
    EXPECT_EQ(ai.SampleRate(), 50000.0);
    EXPECT_EQ(ai.TriggerMode(), 2);
    EXPECT_EQ(ai.TriggerEdge(), 1);
    EXPECT_EQ(ai.TriggerSource(), 4);
    EXPECT_EQ(ai.TriggerVoltage(), -1.5);
    EXPECT_EQ(ai.TriggerDelayTime(), 20.0);
    EXPECT_EQ(ai.TriggerAfterTime(), 30.5);
    EXPECT_EQ(window->nAISampleCnt, 8192);
    EXPECT_FALSE(window->bFAICyclic);
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 16);
    EXPECT_EQ(window->ZelGraph1->Plot(0).name, u"AI 8"_s);
}

TEST_F(FastPage, EveryListPositionIsACode) {
    for (int position = 0; position < 5; ++position) {
        SCOPED_TRACE(position);
        EXPECT_TRUE(AcceptFast([&](frmSetting& dialog) {
            const auto choose = [&](QComboBox* list) { Choose(list, std::min(position, list->count() - 1)); };
            choose(dialog.cmbDataReturnType);
            choose(dialog.cmbPacerSource);
            choose(dialog.cmbTriggerMode);
            choose(dialog.cmbTriggerEdge);
            choose(dialog.cmbTriggerSource);
        }));
        EXPECT_EQ(window->ZelAI1->DataType(), std::min(position, 1) + 1);
        EXPECT_EQ(window->ZelAI1->PacerSource(), std::min(position, 1));
        EXPECT_EQ(window->ZelAI1->TriggerMode(), std::min(position, 3));
        EXPECT_EQ(window->ZelAI1->TriggerEdge(), std::min(position, 1));
        EXPECT_EQ(window->ZelAI1->TriggerSource(), position);
    }
}

TEST_F(FastPage, OKSwitchesTheMainWindow) {
    window->ZelGraph1->SetXAxisMin(-20.0);
    window->ZelGraph1->SetXAxisMax(-10.0);
    window->ShowDIVValue(25.0);
    SelectPorts(0, {0x0F});
    TurnOnDI();
    ASSERT_TRUE(window->bDIEnabled);
    ASSERT_TRUE(window->CkDISave2Disk->isEnabled());

    EXPECT_TRUE(AcceptFast([](frmSetting&) {}));
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
    EXPECT_EQ(window->dDIVValue, 1.0);
    EXPECT_EQ(window->ZelLED1->Value(), 1.0);
    EXPECT_FALSE(window->isNumEditEventFired);
    EXPECT_TRUE(window->ZelButton1->Value());
    EXPECT_TRUE(window->bAIEnabled);
    EXPECT_TRUE(window->CkAISave2Disk->isEnabled());
    EXPECT_FALSE(window->M1.SoftMode);
    EXPECT_FALSE(window->ZelButton2->Value());
    EXPECT_FALSE(window->bDIEnabled);
    EXPECT_FALSE(window->CkDISave2Disk->isEnabled());
    // The polled block stays; the plots and their list are those of fast input.
    EXPECT_EQ(window->nDIPortCount, 1);
    EXPECT_EQ(window->nDIChanCount, 4);
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 1);
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 1);
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(FastPage, OKRunsNoSwitchHandler) {
    QSignalSpy on(window->ZelButton1, &ZelButton::ValueChanged);
    EXPECT_TRUE(AcceptFast([](frmSetting&) {}));
    EXPECT_EQ(on.count(), 0);
}

TEST_F(FastPage, CyclicBufferHoldsHalfASecond) {
    const struct {
        const char* rate;
        std::int32_t count;
    } cases[] = {{"1000", 4096}, {"8192", 4096}, {"8194", 4097}, {"100000", 50000}, {"1e6", 500000}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.rate);
        EXPECT_TRUE(AcceptFast([&](frmSetting& dialog) {
            if (!dialog.chkCylic->isChecked())
                Click(dialog.chkCylic);
            Type(dialog.txtSampleRate, c.rate);
        }));
        EXPECT_TRUE(window->bFAICyclic);
        EXPECT_EQ(window->nAISampleCnt, c.count);
    }
    EXPECT_TRUE(AcceptFast([&](frmSetting& dialog) {
        Click(dialog.chkCylic);
        Type(dialog.txtCount, "4097");
    }));
    EXPECT_FALSE(window->bFAICyclic);
    EXPECT_EQ(window->nAISampleCnt, 4097);
}

TEST_F(FastPage, ShowsTheRateThatTheBoardAccepted) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        Type(dialog.txtSampleRate, "1e300");
        EXPECT_TRUE(dialog.SetFAIProperties());
        EXPECT_EQ(dialog.txtSampleRate->text(), u"1000000"_s);
    });
    EXPECT_EQ(window->ZelAI1->SampleRate(), 1e6);
}

TEST_F(FastPage, RefusedPropertyKeepsTheDialogAndWhatWasWritten) {
    EXPECT_FALSE(AcceptFast([](frmSetting& dialog) {
        Type(dialog.txtAIScanStart[0], "4");
        Type(dialog.txtAIScanNumber[0], "64");
        Type(dialog.txtCount, "9999");
    }));
    const std::vector<Box> shown = boxes.Take();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_NE(shown[0].text, "");
    EXPECT_EQ(shown[0].title, "cmdFAIOK");
    EXPECT_EQ(window->ZelAI1->ScanStartChannel(), 4);
    EXPECT_EQ(window->ZelAI1->ScanChannelCount(), 1);
    EXPECT_EQ(window->nAISampleCnt, 4096);
    EXPECT_TRUE(window->M1.SoftMode);
    EXPECT_FALSE(window->bAIEnabled);
    EXPECT_FALSE(window->ZelButton1->Value());
}

TEST_F(FastPage, RefusedRateComesAfterTheCount) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        dialog.txtCount->setText(u"5000"_s);
        dialog.chkCylic->setChecked(true);
        dialog.txtSampleRate->setText(u"0"_s); // never left, so never checked
        dialog.txtTriggerVoltage->setText(u"9"_s);
        dialog.cmdFAIOK->click();
        EXPECT_TRUE(dialog.isVisible());
    });
    EXPECT_EQ(boxes.Take().size(), 1u);
    EXPECT_EQ(window->nAISampleCnt, 5000);
    EXPECT_TRUE(window->bFAICyclic);
    EXPECT_EQ(window->ZelAI1->TriggerVoltage(), 0.0);
    EXPECT_TRUE(window->M1.SoftMode);
}

TEST_F(FastPage, RejectedScans) {
    for (const auto& [start, count] :
         {std::pair{"0", "0"}, {"-1", "1"}, {"64", "1"}, {"0", "65"}, {"60", "5"}}) {
        SCOPED_TRACE(testing::Message() << start << ", " << count);
        EXPECT_FALSE(AcceptFast([&, start = start, count = count](frmSetting& dialog) {
            Type(dialog.txtAIScanStart[0], start);
            Type(dialog.txtAIScanNumber[0], count);
        }));
        EXPECT_EQ(boxes.Take().size(), 1u);
        window->ZelAI1->SetScanStartChannel(0);
    }
}

TEST_F(FastPage, LargestCountIsTaken) {
    EXPECT_TRUE(AcceptFast([](frmSetting& dialog) { Type(dialog.txtCount, "2,147,483,647"); }));
    EXPECT_EQ(window->nAISampleCnt, 2147483647);
}

TEST_F(FastPage, BoardWithoutPacerAndTriggerAcceptsOK) {
    AnalogBoardInfo bare = Described("Bare");
    bare.externalPacer = bare.hardwareTrigger = false;
    Open(Boards({bare}));
    EXPECT_TRUE(AcceptFast([](frmSetting& dialog) {
        EXPECT_EQ(dialog.cmbPacerSource->currentIndex(), -1);
        dialog.txtTriggerVoltage->setText(u"not read"_s);
    }));
    EXPECT_EQ(window->ZelAI1->PacerSource(), 0);
    EXPECT_FALSE(window->M1.SoftMode);
}

TEST_F(FastPage, WithoutADeviceOKStillSwitchesToFastMode) {
    Open({});
    EXPECT_TRUE(AcceptFast([](frmSetting& dialog) { EXPECT_FALSE(dialog.txtCount->isEnabled()); }));
    EXPECT_FALSE(window->M1.SoftMode);
    EXPECT_TRUE(window->bAIEnabled);
    EXPECT_TRUE(window->ZelButton1->Value());
    EXPECT_EQ(window->nAISampleCnt, 4096);
}

} // namespace
} // namespace tracelet
