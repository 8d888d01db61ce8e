// Rows, ranges and wiring of the channels in the range dialog.

#include "tests/window/settings/GainRangeTest.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;

class GainRangeChannels : public GainRangeTest {};

TEST_F(GainRangeChannels, RowShowsItsChannel) {
    OpenFamily("6601HG");
    window->ZelThermo1->SetDeviceNumber(0);
    window->ZelAI1->SetChannelRange(0, 5, 3);
    window->ZelThermo1->SetChannel(2);
    window->ZelThermo1->SetSignalConnection(Differential);
    window->M1.AIChanIsThermo[2] = true;
    window->M1.AIThermoType[2] = 6;
    window->M1.AIThermoScale[2] = 3;
    window->M1.AIThermoExpChan[2] = 5;
    InRange([&](dlgGainRange& dialog) {
        EXPECT_THAT(RowTexts(dialog, 2), ElementsAre("Chan02", "Chan02", "Differential", "Thermo", "E", "5"));
        ClickRow(dialog, 2);
        EXPECT_EQ(window->ZelAI1->Channel(), 2);
        EXPECT_EQ(window->ZelThermo1->Channel(), 2);
        EXPECT_TRUE(dialog.OptThermo->isChecked());
        EXPECT_TRUE(dialog.optDifferent->isChecked()); // of the thermocouple control
        EXPECT_EQ(dialog.ComboTCType->currentText(), u"E"_s);
        EXPECT_EQ(dialog.ComboScale->currentText(), u"Kelvin"_s);
        EXPECT_EQ(dialog.ComboExpChan->currentText(), u"5"_s);
        EXPECT_TRUE(dialog.ComboTCType->isEnabled());
        EXPECT_FALSE(dialog.ComboRange->isEnabled());
        ClickRow(dialog, 3);
        EXPECT_EQ(window->ZelAI1->Channel(), 3);
        EXPECT_TRUE(dialog.OptAI->isChecked());
        EXPECT_TRUE(dialog.optSingle->isChecked());
        EXPECT_EQ(dialog.ComboRange->currentText(), u"0 ~ 5 V"_s);
        EXPECT_EQ(dialog.ComboExpChan->currentText(), u"0"_s);
        EXPECT_FALSE(dialog.ComboExpChan->isEnabled());
        EXPECT_TRUE(dialog.ComboRange->isEnabled());
        // By keyboard as well.
        QTest::keyClick(dialog.lstViewGain, Qt::Key_Up);
        EXPECT_EQ(window->ZelAI1->Channel(), 2);
        EXPECT_TRUE(dialog.OptThermo->isChecked());
    });
    // Looking at rows copies nothing to a partner.
    EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(0, 0, 1, 0, 0));
    EXPECT_THAT(Values(window->M1.AIThermoType), ElementsAre(0, 0, 6, 0, 0));
    EXPECT_THAT(Values(window->M1.AIThermoScale), ElementsAre(0, 0, 3, 0, 0));
    EXPECT_THAT(Values(window->M1.AIThermoExpChan), ElementsAre(0, 0, 5, 0, 0));
}

TEST_F(GainRangeChannels, ChosenRangeIsWrittenToTheChannel) {
    OpenFamily("Plain");
    InRange([&](dlgGainRange& dialog) {
        const char* texts[] = {"-10 ~ 10 V", "-1.25 ~ 1.25 V", "0 ~ 5 V", "4 ~ 20 mA"};
        const std::pair<double, double> limits[] = {{-10, 10}, {-1.25, 1.25}, {0, 5}, {4, 20}};
        for (const int position : {3, 2, 1, 0}) {
            ClickRow(dialog, position);
            Choose(dialog.ComboRange, position);
            EXPECT_EQ(AnalogRange(position), limits[position]);
            EXPECT_EQ(Cell(dialog, position, 4), texts[position]);
            EXPECT_EQ(window->ZelAI1->Channel(), position);
        }
        EXPECT_EQ(Cell(dialog, 3, 4), "4 ~ 20 mA");
    });
    EXPECT_EQ(AnalogRange(2), std::pair(0.0, 5.0));
}

TEST_F(GainRangeChannels, LookingAtARangeNeverWritesIt) {
    AnalogBoardInfo info = Described("6601HG", 4);
    info.ranges = {{0, -10, 10}, {1, 0, 5}, {2, 0, 5.00001}}; // the last two read alike
    Open(Boards({info}));
    window->ZelAI1->SetChannelRange(0, 5.00001, 3);
    InRange([&](dlgGainRange& dialog) {
        ClickRow(dialog, 3);
        EXPECT_EQ(dialog.ComboRange->currentIndex(), 1);
        EXPECT_EQ(AnalogRange(3), std::pair(0.0, 5.00001));
        Click(dialog.OptThermo);
        ClickRow(dialog, 0);
        ClickRow(dialog, 3);
        Click(dialog.OptAI);
        EXPECT_EQ(dialog.ComboRange->currentIndex(), 1);
        EXPECT_EQ(AnalogRange(3), std::pair(0.0, 5.00001));
    });
}

TEST_F(GainRangeChannels, ChosenByCodeIsChosenOnce) {
    OpenFamily("6601HG");
    InRange([&](dlgGainRange& dialog) {
        dialog.optDifferent->setChecked(true);
        dialog.OptThermo->setChecked(true);
        dialog.ComboTCType->setCurrentIndex(4);
        EXPECT_THAT(Values(window->M1.AIThermoType), ElementsAre(4, 4, 0, 0, 0));
        QCoreApplication::processEvents();
        // A choice of the user that follows is one of its own.
        window->M1.AIThermoType[1] = 0;
        Choose(dialog.ComboTCType, 4);
        EXPECT_THAT(Values(window->M1.AIThermoType), ElementsAre(4, 4, 0, 0, 0));
        window->M1.AIThermoType[1] = 0;
        Click(dialog.optDifferent);
        EXPECT_THAT(Values(window->M1.AIThermoType), ElementsAre(4, 4, 0, 0, 0));
    });
}

TEST_F(GainRangeChannels, DifferentialSharesWithThePartner) {
    for (const int row : {2, 3}) {
        SCOPED_TRACE(row);
        OpenFamily("6601HG");
        const int partner = row == 2 ? 3 : 2;
        window->M1.AIChanIsThermo[partner] = true;
        window->M1.AIThermoType[partner] = 6;
        window->M1.AIThermoType[row] = 4;
        window->M1.AIThermoExpChan[row] = 12;
        window->M1.AIThermoScale[row] = 1;
        InRange([&](dlgGainRange& dialog) {
            ClickRow(dialog, row);
            Click(dialog.optDifferent);
            EXPECT_TRUE(dialog.optDifferent->isChecked());
            EXPECT_TRUE(dialog.OptAI->isChecked());
            for (const int member : {2, 3})
                EXPECT_THAT(RowTexts(dialog, member), ElementsAre(member == 2 ? "Chan02" : "Chan03", "Chan02",
                                                                  "Differential", "AI", "-10 ~ 10 V", "NA"));
            EXPECT_EQ(window->ZelAI1->Channel(), row);
        });
        EXPECT_FALSE(window->M1.AIChanIsThermo[partner]);
        EXPECT_EQ(window->M1.AIThermoType[partner], 4);
        EXPECT_EQ(window->M1.AIThermoExpChan[partner], 12);
        EXPECT_EQ(window->M1.AIThermoScale[partner], 0);
        for (const int member : {2, 3}) {
            EXPECT_EQ(AnalogConnection(member), 1);
            EXPECT_EQ(ThermoConnection(member), 1);
        }
        EXPECT_EQ(AnalogConnection(1), 0);
    }
}

TEST_F(GainRangeChannels, ChoosingDifferentialAgainSharesAgain) {
    OpenFamily("6601HG");
    InRange([&](dlgGainRange& dialog) {
        ClickRow(dialog, 2);
        Click(dialog.optDifferent);
        Click(dialog.OptThermo);
        Choose(dialog.ComboExpChan, 9); // of this channel alone
        EXPECT_THAT(Values(window->M1.AIThermoExpChan), ElementsAre(0, 0, 9, 0, 0));
        Click(dialog.optDifferent);
        EXPECT_THAT(Values(window->M1.AIThermoExpChan), ElementsAre(0, 0, 9, 9, 0));
        EXPECT_EQ(Cell(dialog, 3, 5), "9");
    });
}

TEST_F(GainRangeChannels, BothControlsOpenOnChannelZero) {
    for (const std::int32_t before : {-1, 0}) {
        OpenFamily("6601HG");
        window->ZelThermo1->SetDeviceNumber(before);
        window->ZelAI1->SetChannel(3);
        InRange([&](dlgGainRange&) {
            EXPECT_EQ(window->ZelAI1->Channel(), 0);
            EXPECT_EQ(window->ZelThermo1->DeviceNumber(), 0);
            EXPECT_EQ(window->ZelThermo1->Channel(), 0);
        });
    }
}

TEST_F(GainRangeChannels, WiringIsOnlyChosenWhereItIsOffered) {
    OpenFamily("6601HG");
    InRange([&](dlgGainRange& dialog) {
        dialog.EnableSignalConnectionFrame(false);
        dialog.optDifferent->setChecked(true);
        EXPECT_EQ(AnalogConnection(0), 0);
        EXPECT_EQ(ThermoConnection(0), 0);
        dialog.EnableSignalConnectionFrame(true);
        dialog.optSingle->setChecked(true);
        dialog.optDifferent->setChecked(true);
        EXPECT_EQ(AnalogConnection(0), 1);
        dialog.EnableSignalConnectionFrame(false);
        dialog.optSingle->setChecked(true);
        EXPECT_EQ(AnalogConnection(0), 1);
        EXPECT_EQ(ThermoConnection(0), 1);
    });
    // Never on boards whose channels do not pair up.
    OpenFamily("6605HG");
    InRange([&](dlgGainRange& dialog) {
        dialog.EnableSignalConnectionFrame(true);
        Click(dialog.optDifferent);
        EXPECT_EQ(AnalogConnection(0), 0);
        EXPECT_EQ(ThermoConnection(0), 0);
    });
}

TEST_F(GainRangeChannels, SingleEndedLeavesThePartnerItsChoices) {
    OpenFamily("6601HG");
    InRange([&](dlgGainRange& dialog) {
        Click(dialog.optDifferent);
        Click(dialog.OptThermo);
        Choose(dialog.ComboTCType, 1);
        Click(dialog.optSingle);
        EXPECT_THAT(RowTexts(dialog, 0), ElementsAre("Chan00", "Chan00", "Single-Ended", "Thermo", "K", "0"));
        EXPECT_THAT(RowTexts(dialog, 1), ElementsAre("Chan01", "Chan01", "Single-Ended", "Thermo", "K", "0"));
        Choose(dialog.ComboTCType, 2);
        EXPECT_EQ(Cell(dialog, 0, 4), "S");
        EXPECT_EQ(Cell(dialog, 1, 4), "K");
    });
    for (const int channel : {0, 1}) {
        EXPECT_EQ(AnalogConnection(channel), 0);
        EXPECT_EQ(ThermoConnection(channel), 0);
    }
}

} // namespace
} // namespace tracelet
