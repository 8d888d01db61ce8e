// Thermocouples in the range dialog: kind, type, scale, expansion channel, and what a pair shares.

#include "tests/window/settings/GainRangeTest.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;

class GainRangeThermo : public GainRangeTest {};

TEST_F(GainRangeThermo, ThermocoupleAndBackOnASingleChannel) {
    OpenFamily("6601HG");
    window->ZelAI1->SetChannelRange(0, 5, 1);
    InRange([&](dlgGainRange& dialog) {
        ClickRow(dialog, 1);
        Click(dialog.OptThermo);
        EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(0, 1, 0, 0, 0));
        EXPECT_TRUE(dialog.ComboTCType->isEnabled());
        EXPECT_TRUE(dialog.ComboScale->isEnabled());
        EXPECT_TRUE(dialog.ComboExpChan->isEnabled());
        EXPECT_FALSE(dialog.FrameAIRange->isEnabled());
        EXPECT_FALSE(dialog.ComboRange->isEnabled());
        EXPECT_THAT(RowTexts(dialog, 1), ElementsAre("Chan01", "Chan01", "Single-Ended", "Thermo", "J", "0"));
        Choose(dialog.ComboExpChan, 15);
        EXPECT_EQ(Cell(dialog, 1, 5), "15");
        Click(dialog.OptAI);
        EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(0, 0, 0, 0, 0));
        EXPECT_FALSE(dialog.ComboTCType->isEnabled());
        EXPECT_TRUE(dialog.FrameAIRange->isEnabled());
        EXPECT_TRUE(dialog.ComboRange->isEnabled());
        EXPECT_EQ(dialog.ComboRange->currentText(), u"0 ~ 5 V"_s);
        EXPECT_THAT(RowTexts(dialog, 1),
                    ElementsAre("Chan01", "Chan01", "Single-Ended", "AI", "0 ~ 5 V", "NA"));
    });
    EXPECT_EQ(window->M1.AIThermoExpChan[1], 15);
}

TEST_F(GainRangeThermo, EveryCodeOfTheThermocoupleLists) {
    OpenFamily("6601HG");
    InRange([&](dlgGainRange& dialog) {
        ClickRow(dialog, 2);
        Click(dialog.OptThermo);
        const char* types[] = {"J", "K", "S", "T", "B", "R", "E"};
        for (int code = 6; code >= 0; --code) {
            Choose(dialog.ComboTCType, code);
            EXPECT_THAT(Values(window->M1.AIThermoType), ElementsAre(0, 0, code, 0, 0));
            EXPECT_EQ(Cell(dialog, 2, 4), types[code]);
        }
        for (int code = 3; code >= 0; --code) {
            Choose(dialog.ComboScale, code);
            EXPECT_THAT(Values(window->M1.AIThermoScale), ElementsAre(code, code, code, code, 0));
        }
        for (int code = 15; code >= 0; --code) {
            Choose(dialog.ComboExpChan, code);
            EXPECT_THAT(Values(window->M1.AIThermoExpChan), ElementsAre(0, 0, code, 0, 0));
            EXPECT_EQ(Cell(dialog, 2, 5), std::to_string(code));
        }
    });
}

TEST_F(GainRangeThermo, ChoosingTheSelectedTypeAgainCopiesIt) {
    OpenFamily("6601HG");
    InRange([&](dlgGainRange& dialog) {
        Click(dialog.optDifferent);
        Click(dialog.OptThermo);
        Choose(dialog.ComboTCType, 4);
        window->M1.AIThermoType[1] = 0;
        Choose(dialog.ComboTCType, 4);
        EXPECT_THAT(Values(window->M1.AIThermoType), ElementsAre(4, 4, 0, 0, 0));
    });
}

TEST_F(GainRangeThermo, PairsShareTypeAndKind) {
    for (const int row : {0, 1}) {
        SCOPED_TRACE(row);
        OpenFamily("6601HG");
        InRange([&](dlgGainRange& dialog) {
            ClickRow(dialog, 2);
            ClickRow(dialog, row);
            Click(dialog.optDifferent);
            Click(dialog.OptThermo);
            EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(1, 1, 0, 0, 0));
            Choose(dialog.ComboTCType, 5);
            EXPECT_THAT(Values(window->M1.AIThermoType), ElementsAre(5, 5, 0, 0, 0));
            Choose(dialog.ComboExpChan, 3);
            EXPECT_EQ(window->M1.AIThermoExpChan[row], 3);
            EXPECT_EQ(window->M1.AIThermoExpChan[1 - row], 0);
            EXPECT_EQ(Cell(dialog, 0, 3), "Thermo");
            EXPECT_EQ(Cell(dialog, 1, 3), "Thermo");
            Click(dialog.OptAI);
            EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(0, 0, 0, 0, 0));
        });
    }
}

TEST_F(GainRangeThermo, AnalogAsksTheThermocoupleControlAboutThePair) {
    OpenFamily("6601HG");
    window->ZelThermo1->SetDeviceNumber(0);
    window->M1.AIChanIsThermo[0] = window->M1.AIChanIsThermo[1] = true;
    window->M1.AIChanIsThermo[2] = window->M1.AIChanIsThermo[3] = true;
    window->ZelThermo1->SetChannel(2);
    window->ZelThermo1->SetSignalConnection(Differential);
    InRange([&](dlgGainRange& dialog) {
        // Differential on the analog control alone does not count …
        window->ZelAI1->SetChannel(0);
        window->ZelAI1->SetSignalConnection(Differential);
        Click(dialog.OptAI);
        EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(0, 1, 1, 1, 0));
        // … and the pair is that of the channel selected on the thermocouple control.
        ClickRow(dialog, 1);
        window->ZelThermo1->SetChannel(2);
        Click(dialog.OptAI);
        EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(0, 0, 1, 0, 0));
    });
}

TEST_F(GainRangeThermo, ThermocoupleAsksTheAnalogControlAboutThePair) {
    OpenFamily("6601HG");
    window->ZelThermo1->SetDeviceNumber(0);
    window->ZelThermo1->SetChannel(0);
    window->ZelThermo1->SetSignalConnection(Differential); // on the thermocouple control alone
    window->ZelAI1->SetChannel(2);
    window->ZelAI1->SetSignalConnection(Differential); // on the analog control alone
    InRange([&](dlgGainRange& dialog) {
        Click(dialog.OptThermo);
        EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(1, 0, 0, 0, 0));
        ClickRow(dialog, 3);
        window->ZelThermo1->SetChannel(0);
        Click(dialog.OptThermo);
        EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(1, 0, 1, 1, 0));
    });
}

TEST_F(GainRangeThermo, TypeAsksTheThermocoupleControlAboutThePair) {
    OpenFamily("6601HG");
    window->ZelThermo1->SetDeviceNumber(0);
    window->M1.AIChanIsThermo[0] = window->M1.AIChanIsThermo[2] = true;
    window->ZelThermo1->SetChannel(2);
    window->ZelThermo1->SetSignalConnection(Differential);
    InRange([&](dlgGainRange& dialog) {
        window->ZelAI1->SetSignalConnection(Differential);
        Choose(dialog.ComboTCType, 3);
        EXPECT_THAT(Values(window->M1.AIThermoType), ElementsAre(3, 0, 0, 0, 0));
        ClickRow(dialog, 2);
        window->ZelThermo1->SetChannel(0); // it is asked about the channel of the row all the same
        Choose(dialog.ComboTCType, 1);
        EXPECT_THAT(Values(window->M1.AIThermoType), ElementsAre(3, 0, 1, 1, 0));
    });
}

TEST_F(GainRangeThermo, UnpairedFamilyNeverChangesAPartner) {
    for (const char* name : {"6605HG", "3605"}) {
        SCOPED_TRACE(name);
        AnalogBoardInfo info = Described(name, 4);
        info.singleEnded = false; // every channel reads differential
        Open(Boards({info}));
        InRange([&](dlgGainRange& dialog) {
            EXPECT_FALSE(dialog.optDifferent->isEnabled());
            ClickRow(dialog, 2);
            EXPECT_TRUE(dialog.optDifferent->isChecked());
            Click(dialog.OptThermo);
            EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(0, 0, 1, 0, 0));
            EXPECT_THAT(RowTexts(dialog, 3),
                        ElementsAre("Chan03", "Chan03", "Differential", "AI", "-10 ~ 10 V", "NA"));
            Click(dialog.OptAI);
            EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(0, 0, 0, 0, 0));
            // A type still goes to the partner: that rule knows no family.
            Click(dialog.OptThermo);
            Choose(dialog.ComboTCType, 2);
            EXPECT_THAT(Values(window->M1.AIThermoType), ElementsAre(0, 0, 2, 2, 0));
        });
        EXPECT_EQ(AnalogConnection(2), 1);
    }
}

TEST_F(GainRangeThermo, ChoiceIsShownAnewOnlyOnThe6601Family) {
    for (const char* name : {"6601HG", "6605HG", "Plain"}) {
        SCOPED_TRACE(name);
        OpenFamily(name);
        InRange([&](dlgGainRange& dialog) {
            // The options are made to show something else than the table.
            {
                const QSignalBlocker quiet(dialog.OptThermo);
                dialog.OptThermo->setChecked(true);
            }
            Click(dialog.optDifferent);
            EXPECT_EQ(dialog.OptAI->isChecked(), std::string_view(name) == "6601HG");
        });
    }
}

// The family that counts is that of the board which the thermocouple control stands on.
TEST_F(GainRangeThermo, ChoiceIsShownAnewByTheThermocoupleBoardsFamily) {
    const struct {
        const char* analog;
        const char* thermo;
        bool shown;
    } cases[] = {{"Plain", "6601HG", true}, {"6601", "3605", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.analog);
        Open(Boards({Described(c.analog, 4), Described(c.thermo, 4)}));
        window->ZelThermo1->SetDeviceNumber(1);
        InRange([&](dlgGainRange& dialog) {
            {
                const QSignalBlocker quiet(dialog.OptThermo);
                dialog.OptThermo->setChecked(true);
            }
            Click(dialog.optDifferent);
            EXPECT_EQ(dialog.OptAI->isChecked(), c.shown);
        });
        EXPECT_EQ(window->ZelThermo1->DeviceNumber(), 1);
    }
}

TEST_F(GainRangeThermo, StaysThroughSettingsAndIsReadBack) {
    OpenFamily("6601HG");
    InSettings([&](frmSetting& settings) {
        InRange(settings, [&](dlgGainRange& dialog) {
            ClickRow(dialog, 2);
            Click(dialog.optDifferent);
            Click(dialog.OptThermo);
            QTest::keyClick(&dialog, Qt::Key_Escape);
            EXPECT_FALSE(dialog.isVisible());
        });
    });
    EXPECT_THAT(Values(window->M1.AIChanIsThermo), ElementsAre(0, 0, 1, 1, 0));
    EXPECT_THAT(Values(window->M1.AIChanConnection), ElementsAre(0, 0, 1, 1, 0));
}

} // namespace
} // namespace tracelet
