// What the range dialog shows when it opens, by family of the board, and the probes.

#include "tests/window/settings/GainRangeTest.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GainRangeOpening : public GainRangeTest {};

TEST_F(GainRangeOpening, Captions) {
    InRange([](dlgGainRange& dialog) {
        EXPECT_EQ(dialog.objectName(), u"dlgGainRange"_s);
        EXPECT_EQ(dialog.windowTitle(), u"Input Range"_s);
        EXPECT_TRUE(dialog.isModal());
        EXPECT_EQ(dialog.parentWidget()->objectName(), u"frmSetting"_s);
        EXPECT_EQ(dialog.OKButton->text(), u"Exit"_s);
        EXPECT_EQ(dialog.FrameThermo->title(), u"Thermo Setting"_s);
        EXPECT_EQ(dialog.FrameAIRange->title(), u"Input Range"_s);
        EXPECT_EQ(dialog.FrameSignalConnection->title(), u"SignalConnection"_s);
        EXPECT_EQ(dialog.OptAI->text(), u"AI"_s);
        EXPECT_EQ(dialog.OptThermo->text(), u"Thermo"_s);
        EXPECT_EQ(dialog.optSingle->text(), u"Single-Ended"_s);
        EXPECT_EQ(dialog.optDifferent->text(), u"Differential"_s);
        EXPECT_EQ(dialog.LabelTCType->text(), u"TC Type"_s);
        EXPECT_EQ(dialog.LabelScale->text(), u"Scale"_s);
        EXPECT_EQ(dialog.LabelExpChan->text(), u"ExpChan"_s);
        const QTreeWidgetItem* header = dialog.lstViewGain->headerItem();
        ASSERT_EQ(dialog.lstViewGain->columnCount(), 6);
        EXPECT_EQ(header->text(0), u"Channel"_s);
        EXPECT_EQ(header->text(1), u"Logical Chan"_s);
        EXPECT_EQ(header->text(5), u"ExpChan"_s);
        Click(dialog.OKButton);
        EXPECT_FALSE(dialog.isVisible());
    });
}

TEST_F(GainRangeOpening, EnterOnExitCloses) {
    InRange([](dlgGainRange& dialog) {
        dialog.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        dialog.OKButton->setFocus();
        QTest::keyClick(dialog.OKButton, Qt::Key_Return);
        EXPECT_FALSE(dialog.isVisible());
    });
}

TEST_F(GainRangeOpening, OpensFromEitherPage) {
    for (const int page : {0, 1}) {
        InSettings([&](frmSetting& settings) {
            ShowPage(settings, page);
            InRange(settings, [&](dlgGainRange&) { EXPECT_EQ(settings.RangeSourcePage, page); });
        });
    }
}

TEST_F(GainRangeOpening, Lists) {
    InRange([](dlgGainRange& dialog) {
        EXPECT_EQ(Items(dialog.ComboRange),
                  QStringList({u"-10 ~ 10 V"_s, u"-5 ~ 5 V"_s, u"-2.5 ~ 2.5 V"_s, u"-1.25 ~ 1.25 V"_s,
                               u"0 ~ 10 V"_s, u"0 ~ 20 mA"_s, u"4 ~ 20 mA"_s}));
        EXPECT_EQ(Items(dialog.ComboTCType),
                  QStringList({u"J"_s, u"K"_s, u"S"_s, u"T"_s, u"B"_s, u"R"_s, u"E"_s}));
        EXPECT_EQ(Items(dialog.ComboScale),
                  QStringList({u"Celsius"_s, u"Fahrenheit"_s, u"Rankine"_s, u"Kelvin"_s}));
        QStringList channels;
        for (int channel = 0; channel < 16; ++channel)
            channels.append(QString::number(channel));
        EXPECT_EQ(Items(dialog.ComboExpChan), channels);
        ASSERT_EQ(dialog.lstViewGain->topLevelItemCount(), 64);
        EXPECT_THAT(RowTexts(dialog, 0),
                    ElementsAre("Chan00", "Chan00", "Single-Ended", "AI", "-10 ~ 10 V", "NA"));
        EXPECT_THAT(RowTexts(dialog, 63),
                    ElementsAre("Chan63", "Chan63", "Single-Ended", "AI", "-10 ~ 10 V", "NA"));
    });
}

TEST_F(GainRangeOpening, NoRangesLeaveTheListEmpty) {
    AnalogBoardInfo info = Described("Rangeless", 2);
    info.ranges.clear();
    Open(Boards({info}));
    InRange([](dlgGainRange& dialog) {
        EXPECT_EQ(dialog.ComboRange->count(), 0);
        EXPECT_EQ(Cell(dialog, 0, 4), "0 ~ 0 V");
    });
}

TEST_F(GainRangeOpening, OneChannelBoard) {
    Open(Boards({Described("Single", 1)}));
    InRange([](dlgGainRange& dialog) { EXPECT_EQ(dialog.lstViewGain->topLevelItemCount(), 1); });
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(GainRangeOpening, OpensOnChannelZero) {
    window->ZelAI1->SetChannelRange(4, 20, 0);
    window->ZelAI1->SetChannel(7);
    InRange([&](dlgGainRange& dialog) {
        EXPECT_EQ(window->ZelAI1->Channel(), 0);
        EXPECT_EQ(dialog.lstViewGain->currentItem(), dialog.lstViewGain->topLevelItem(0));
        EXPECT_TRUE(dialog.OptAI->isChecked());
        EXPECT_FALSE(dialog.OptThermo->isChecked());
        EXPECT_TRUE(dialog.optSingle->isChecked());
        EXPECT_EQ(dialog.ComboRange->currentText(), u"4 ~ 20 mA"_s);
        EXPECT_TRUE(dialog.ComboRange->isEnabled());
        EXPECT_FALSE(dialog.ComboTCType->isEnabled());
    });
}

TEST_F(GainRangeOpening, OpensOnAThermocouple) {
    OpenFamily("6601HG");
    window->M1.AIChanIsThermo[0] = true;
    window->M1.AIThermoType[0] = 3;
    window->M1.AIThermoScale[0] = 2;
    window->M1.AIThermoExpChan[0] = 14;
    InRange([&](dlgGainRange& dialog) {
        EXPECT_TRUE(dialog.OptThermo->isChecked());
        EXPECT_TRUE(dialog.FrameThermo->isEnabled());
        EXPECT_TRUE(dialog.ComboTCType->isEnabled());
        EXPECT_TRUE(dialog.ComboScale->isEnabled());
        EXPECT_TRUE(dialog.ComboExpChan->isEnabled());
        EXPECT_EQ(dialog.ComboTCType->currentText(), u"T"_s);
        EXPECT_EQ(dialog.ComboScale->currentText(), u"Rankine"_s);
        EXPECT_EQ(dialog.ComboExpChan->currentText(), u"14"_s);
        EXPECT_FALSE(dialog.ComboRange->isEnabled());
        EXPECT_EQ(dialog.ComboRange->currentText(), QString()) << "a thermocouple has no range";
        EXPECT_THAT(RowTexts(dialog, 0),
                    ElementsAre("Chan00", "Chan00", "Single-Ended", "Thermo", "T", "14"));
    });
}

TEST_F(GainRangeOpening, EveryTypeShowsAndTooHighOnesFail) {
    OpenFamily("6601HG");
    window->M1.AIChanIsThermo[1] = true;
    const char* names[] = {"J", "K", "S", "T", "B", "R", "E", ""};
    for (std::uint8_t code = 0; code < 8; ++code) {
        window->M1.AIThermoType[1] = code;
        InRange([&](dlgGainRange& dialog) { EXPECT_EQ(Cell(dialog, 1, 4), names[code]); });
    }
    window->M1.AIThermoType[1] = 8;
    InSettings([&](frmSetting& settings) {
        Click(settings.cmdRange[1]);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Subscript out of range", "cmdRange"}));
        EXPECT_EQ(settings.findChild<dlgGainRange*>(), nullptr);
    });
}

TEST_F(GainRangeOpening, ThermocoupleSupportFollowsTheFamily) {
    const struct {
        const char* name;
        bool boardHasThermocouples;
        bool offered;
    } cases[] = {{"6601HG", true, true},   {"6605HG", true, true}, {"3605", true, true},
                 {"6601HG", false, false}, {"6601", true, false},  {"6605", true, false},
                 {"05", true, false},      {"Plain", true, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.name << ' ' << c.boardHasThermocouples);
        AnalogBoardInfo info = Described(c.name, 4);
        info.thermocouples = c.boardHasThermocouples;
        Open(Boards({info, Described("Other 6601HG", 4)}));
        window->ZelThermo1->SetDeviceNumber(1);
        InRange([&](dlgGainRange& dialog) {
            EXPECT_EQ(dialog.FrameAIorThermo->isEnabled(), c.offered);
            EXPECT_EQ(dialog.OptThermo->isEnabled(), c.offered);
            EXPECT_EQ(dialog.OptAI->isEnabled(), c.offered);
        });
        EXPECT_EQ(window->ZelThermo1->DeviceNumber(), c.offered ? 0 : 1);
    }
}

TEST_F(GainRangeOpening, BoardOfNoFamilyOffersWhatItCanDo) {
    for (const bool readsThermocouples : {false, true}) {
        AnalogBoardInfo info = Described("pci-6052e", 4);
        info.noFamily = true;
        info.thermocouples = readsThermocouples;
        info.ranges = {{0, -10, 10, RangeUnit::Volts},
                       {1, 0, 20, RangeUnit::Volts},
                       {2, 4, 20, RangeUnit::Milliamperes}};
        Open(Boards({info}));
        InRange([&](dlgGainRange& dialog) {
            EXPECT_EQ(dialog.OptThermo->isEnabled(), readsThermocouples);
            EXPECT_TRUE(dialog.optDifferent->isEnabled());
            EXPECT_EQ(Items(dialog.ComboRange),
                      (QStringList{u"-10 ~ 10 V"_s, u"0 ~ 20 V"_s, u"4 ~ 20 mA"_s}));
            Choose(dialog.ComboRange, 1);
            EXPECT_EQ(Cell(dialog, 0, 4), "0 ~ 20 V");
            EXPECT_EQ(dialog.ComboRange->currentIndex(), 1);
            Click(dialog.optDifferent);
            EXPECT_EQ(Cell(dialog, 1, 1), "Chan00");
            ClickRow(dialog, 0);
            EXPECT_EQ(dialog.ComboRange->currentText(), u"0 ~ 20 V"_s);
        });
    }
}

TEST_F(GainRangeOpening, ThermocoupleControlOnASmallerBoardIsNoTrouble) {
    Open(Boards({Described("Plain", 64), Described("6601HG", 4)}));
    window->ZelThermo1->SetDeviceNumber(1);
    window->ZelAI1->SetChannel(64);
    InRange([&](dlgGainRange& dialog) {
        ClickRow(dialog, 63);
        EXPECT_EQ(window->ZelAI1->Channel(), 63);
    });
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(GainRangeOpening, ConnectionProbe) {
    const struct {
        const char* name;
        bool singleEnded;
        bool differential;
        bool offered;
    } cases[] = {{"Plain", true, true, true},   {"6601", true, true, true},    {"6605", true, true, false},
                 {"Plain", true, false, false}, {"Plain", false, true, false}, {"X05", true, true, false},
                 {"6605", false, true, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.name << ' ' << c.singleEnded << c.differential);
        AnalogBoardInfo info = Described(c.name, 4);
        info.singleEnded = c.singleEnded;
        info.differential = c.differential;
        Open(Boards({info}));
        window->ZelAI1->SetChannelRange(0, 5, 0);
        window->ZelAI1->SetChannelRange(4, 20, 1);
        const std::int32_t before = AnalogConnection(0);
        InRange([&](dlgGainRange& dialog) {
            EXPECT_EQ(dialog.FrameSignalConnection->isEnabled(), c.offered);
            EXPECT_EQ(dialog.optSingle->isEnabled(), c.offered);
            EXPECT_EQ(dialog.optDifferent->isEnabled(), c.offered);
            EXPECT_EQ(dialog.optDifferent->isChecked(), !c.singleEnded);
        });
        EXPECT_EQ(AnalogConnection(0), before);
        EXPECT_EQ(AnalogConnection(1), before);
        EXPECT_EQ(AnalogRange(0), std::pair(0.0, 5.0));
        EXPECT_EQ(AnalogRange(1), std::pair(4.0, 20.0));
    }
}

TEST_F(GainRangeOpening, ConnectionProbeRestoresADifferentialPair) {
    OpenFamily("6601HG");
    window->ZelAI1->SetChannel(0);
    window->ZelAI1->SetSignalConnection(Differential);
    InRange([&](dlgGainRange& dialog) {
        EXPECT_TRUE(dialog.optDifferent->isChecked());
        EXPECT_TRUE(dialog.FrameSignalConnection->isEnabled());
        EXPECT_THAT(RowTexts(dialog, 1),
                    ElementsAre("Chan01", "Chan00", "Differential", "AI", "-10 ~ 10 V", "NA"));
        EXPECT_EQ(Cell(dialog, 2, 1), "Chan01");
    });
    EXPECT_EQ(AnalogConnection(0), 1);
    EXPECT_EQ(AnalogConnection(1), 1);
    EXPECT_EQ(AnalogConnection(2), 0);
}

TEST_F(GainRangeOpening, EnablingTables) {
    OpenFamily("6601HG");
    InRange([](dlgGainRange& dialog) {
        using Widgets = std::vector<QWidget*>;
        const Widgets thermo = {dialog.FrameScale,   dialog.LabelTCType, dialog.LabelScale,
                                dialog.ComboTCType,  dialog.ComboScale,  dialog.FrameThermo,
                                dialog.LabelExpChan, dialog.ComboExpChan};
        const Widgets connection = {dialog.FrameSignalConnection, dialog.optSingle, dialog.optDifferent};
        const Widgets kind = {dialog.OptAI, dialog.OptThermo, dialog.FrameAIorThermo};
        const auto expectAll = [](const Widgets& widgets, bool on) {
            for (const QWidget* widget : widgets)
                EXPECT_EQ(widget->isEnabledTo(widget->parentWidget()), on)
                    << widget->objectName().toStdString();
        };
        dialog.EnableThermoSetting(true);
        expectAll(thermo, true);
        expectAll(kind, true);
        dialog.EnableThermoSetting(false);
        expectAll(thermo, false);
        expectAll(kind, true); // the choice itself stays
        expectAll({dialog.ComboRange}, true);
        dialog.EnableSignalConnectionFrame(false);
        expectAll(connection, false);
        dialog.EnableSignalConnectionFrame(true);
        expectAll(connection, true);
        dialog.EnableAIThermoFrame(false);
        expectAll(kind, false);
        dialog.EnableAIThermoFrame(true);
        expectAll(kind, true);
    });
}

} // namespace
} // namespace tracelet
