// The range dialog: rows, ranges, wiring and thermocouples of the channels, by family of the board.

#include "tests/settings/SettingsTest.h"

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GainRange : public SettingsTest {
protected:
    static std::string Cell(const dlgGainRange& dialog, int row, int column) {
        return dialog.lstViewGain->topLevelItem(row)->text(column).toStdString();
    }

    static std::vector<std::string> RowTexts(const dlgGainRange& dialog, int row) {
        std::vector<std::string> texts;
        for (int column = 0; column < dialog.lstViewGain->columnCount(); ++column)
            texts.push_back(Cell(dialog, row, column));
        return texts;
    }

    static void ClickRow(const dlgGainRange& dialog, int row) {
        QTreeWidget* table = dialog.lstViewGain;
        QTreeWidgetItem* item = table->topLevelItem(row);
        table->scrollToItem(item);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualItemRect(item).center());
        EXPECT_EQ(table->currentItem(), item);
    }

    template <typename T>
    std::vector<int> Values(const Table<T>& table) const {
        std::vector<int> values;
        for (std::int64_t i = 0; i < table.Count(); ++i)
            values.push_back(table[i]);
        return values;
    }

    std::int32_t AnalogConnection(std::int32_t channel) const {
        window->ZelAI1->SetChannel(channel);
        return window->ZelAI1->SignalConnection();
    }
    std::int32_t ThermoConnection(std::int32_t channel) const {
        window->ZelThermo1->SetChannel(channel);
        return window->ZelThermo1->SignalConnection();
    }

    std::pair<double, double> AnalogRange(std::int32_t channel) const {
        std::int32_t code = 0;
        std::pair<double, double> range;
        window->ZelAI1->GetChannelRange(code, range.first, range.second, channel);
        return range;
    }

    /// A window on one board with thermocouples and four channels.
    void OpenFamily(const char* name) { Open(Boards({Described(name, 4)})); }
};

TEST_F(GainRange, Captions) {
    InRange([](dlgGainRange& dialog) {
        EXPECT_EQ(dialog.objectName(), u"dlgGainRange"_qs);
        EXPECT_EQ(dialog.windowTitle(), u"Input Range"_qs);
        EXPECT_TRUE(dialog.isModal());
        EXPECT_EQ(dialog.parentWidget()->objectName(), u"frmSetting"_qs);
        EXPECT_EQ(dialog.OKButton->text(), u"Exit"_qs);
        EXPECT_EQ(dialog.FrameThermo->title(), u"Thermo Setting"_qs);
        EXPECT_EQ(dialog.FrameAIRange->title(), u"Input Range"_qs);
        EXPECT_EQ(dialog.FrameSignalConnection->title(), u"SignalConnection"_qs);
        EXPECT_EQ(dialog.OptAI->text(), u"AI"_qs);
        EXPECT_EQ(dialog.OptThermo->text(), u"Thermo"_qs);
        EXPECT_EQ(dialog.optSingle->text(), u"Single-Ended"_qs);
        EXPECT_EQ(dialog.optDifferent->text(), u"Differential"_qs);
        EXPECT_EQ(dialog.LabelTCType->text(), u"TC Type"_qs);
        EXPECT_EQ(dialog.LabelScale->text(), u"Scale"_qs);
        EXPECT_EQ(dialog.LabelExpChan->text(), u"ExpChan"_qs);
        const QTreeWidgetItem* header = dialog.lstViewGain->headerItem();
        ASSERT_EQ(dialog.lstViewGain->columnCount(), 6);
        EXPECT_EQ(header->text(0), u"Channel"_qs);
        EXPECT_EQ(header->text(1), u"Logical Chan"_qs);
        EXPECT_EQ(header->text(5), u"ExpChan"_qs);
        Click(dialog.OKButton);
        EXPECT_FALSE(dialog.isVisible());
    });
}

TEST_F(GainRange, OpensFromEitherPage) {
    for (const int page : {0, 1}) {
        InSettings([&](frmSetting& settings) {
            ShowPage(settings, page);
            InRange(settings, [&](dlgGainRange&) { EXPECT_EQ(settings.RangeSourcePage, page); });
        });
    }
}

TEST_F(GainRange, Lists) {
    InRange([](dlgGainRange& dialog) {
        EXPECT_EQ(Items(dialog.ComboRange),
                  QStringList({u"-10 ~ 10 V"_qs, u"-5 ~ 5 V"_qs, u"-2.5 ~ 2.5 V"_qs, u"-1.25 ~ 1.25 V"_qs,
                               u"0 ~ 10 V"_qs, u"0 ~ 20 mA"_qs, u"4 ~ 20 mA"_qs}));
        EXPECT_EQ(Items(dialog.ComboTCType),
                  QStringList({u"J"_qs, u"K"_qs, u"S"_qs, u"T"_qs, u"B"_qs, u"R"_qs, u"E"_qs}));
        EXPECT_EQ(Items(dialog.ComboScale),
                  QStringList({u"Celsius"_qs, u"Fahrenheit"_qs, u"Rankine"_qs, u"Kelvin"_qs}));
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

TEST_F(GainRange, NoRangesLeaveTheListEmpty) {
    AnalogBoardInfo info = Described("Rangeless", 2);
    info.ranges.clear();
    Open(Boards({info}));
    InRange([](dlgGainRange& dialog) {
        EXPECT_EQ(dialog.ComboRange->count(), 0);
        EXPECT_EQ(Cell(dialog, 0, 4), "0 ~ 0 V");
    });
}

TEST_F(GainRange, OneChannelBoard) {
    Open(Boards({Described("Single", 1)}));
    InRange([](dlgGainRange& dialog) { EXPECT_EQ(dialog.lstViewGain->topLevelItemCount(), 1); });
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

// ── Opening ──────────────────────────────────────────────────────────────────────────────────────────

TEST_F(GainRange, OpensOnChannelZero) {
    window->ZelAI1->SetChannelRange(4, 20, 0);
    window->ZelAI1->SetChannel(7);
    InRange([&](dlgGainRange& dialog) {
        EXPECT_EQ(window->ZelAI1->Channel(), 0);
        EXPECT_EQ(dialog.lstViewGain->currentItem(), dialog.lstViewGain->topLevelItem(0));
        EXPECT_TRUE(dialog.OptAI->isChecked());
        EXPECT_FALSE(dialog.OptThermo->isChecked());
        EXPECT_TRUE(dialog.optSingle->isChecked());
        EXPECT_EQ(dialog.ComboRange->currentText(), u"4 ~ 20 mA"_qs);
        EXPECT_TRUE(dialog.ComboRange->isEnabled());
        EXPECT_FALSE(dialog.ComboTCType->isEnabled());
    });
}

TEST_F(GainRange, OpensOnAThermocouple) {
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
        EXPECT_EQ(dialog.ComboTCType->currentText(), u"T"_qs);
        EXPECT_EQ(dialog.ComboScale->currentText(), u"Rankine"_qs);
        EXPECT_EQ(dialog.ComboExpChan->currentText(), u"14"_qs);
        EXPECT_FALSE(dialog.ComboRange->isEnabled());
        EXPECT_THAT(RowTexts(dialog, 0),
                    ElementsAre("Chan00", "Chan00", "Single-Ended", "Thermo", "T", "14"));
    });
}

TEST_F(GainRange, EveryTypeShowsAndTooHighOnesFail) {
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

TEST_F(GainRange, ThermocoupleSupportFollowsTheFamily) {
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

TEST_F(GainRange, ThermocoupleControlOnASmallerBoardIsNoTrouble) {
    Open(Boards({Described("Plain", 64), Described("6601HG", 4)}));
    window->ZelThermo1->SetDeviceNumber(1);
    window->ZelAI1->SetChannel(64);
    InRange([&](dlgGainRange& dialog) {
        ClickRow(dialog, 63);
        EXPECT_EQ(window->ZelAI1->Channel(), 63);
    });
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(GainRange, ConnectionProbe) {
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

TEST_F(GainRange, ConnectionProbeRestoresADifferentialPair) {
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

TEST_F(GainRange, EnablingTables) {
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
                EXPECT_EQ(widget->isEnabled(), on) << widget->objectName().toStdString();
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

// ── Rows and ranges ──────────────────────────────────────────────────────────────────────────────────

TEST_F(GainRange, RowShowsItsChannel) {
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
        EXPECT_EQ(dialog.ComboTCType->currentText(), u"E"_qs);
        EXPECT_EQ(dialog.ComboScale->currentText(), u"Kelvin"_qs);
        EXPECT_EQ(dialog.ComboExpChan->currentText(), u"5"_qs);
        EXPECT_TRUE(dialog.ComboTCType->isEnabled());
        EXPECT_FALSE(dialog.ComboRange->isEnabled());
        ClickRow(dialog, 3);
        EXPECT_EQ(window->ZelAI1->Channel(), 3);
        EXPECT_TRUE(dialog.OptAI->isChecked());
        EXPECT_TRUE(dialog.optSingle->isChecked());
        EXPECT_EQ(dialog.ComboRange->currentText(), u"0 ~ 5 V"_qs);
        EXPECT_EQ(dialog.ComboExpChan->currentText(), u"0"_qs);
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

TEST_F(GainRange, ChosenRangeIsWrittenToTheChannel) {
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

TEST_F(GainRange, LookingAtARangeNeverWritesIt) {
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

TEST_F(GainRange, ChosenByCodeIsChosenOnce) {
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
    });
}

// ── Wiring ───────────────────────────────────────────────────────────────────────────────────────────

TEST_F(GainRange, DifferentialSharesWithThePartner) {
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

TEST_F(GainRange, ChoosingDifferentialAgainSharesAgain) {
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

TEST_F(GainRange, BothControlsOpenOnChannelZero) {
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

TEST_F(GainRange, WiringIsOnlyChosenWhereItIsOffered) {
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

TEST_F(GainRange, SingleEndedLeavesThePartnerItsChoices) {
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

// ── Thermocouples ────────────────────────────────────────────────────────────────────────────────────

TEST_F(GainRange, ThermocoupleAndBackOnASingleChannel) {
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
        EXPECT_EQ(dialog.ComboRange->currentText(), u"0 ~ 5 V"_qs);
        EXPECT_THAT(RowTexts(dialog, 1),
                    ElementsAre("Chan01", "Chan01", "Single-Ended", "AI", "0 ~ 5 V", "NA"));
    });
    EXPECT_EQ(window->M1.AIThermoExpChan[1], 15);
}

TEST_F(GainRange, EveryCodeOfTheThermocoupleLists) {
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

TEST_F(GainRange, ChoosingTheSelectedTypeAgainCopiesIt) {
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

TEST_F(GainRange, PairsShareTypeAndKind) {
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

TEST_F(GainRange, AnalogAsksTheThermocoupleControlAboutThePair) {
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

TEST_F(GainRange, ThermocoupleAsksTheAnalogControlAboutThePair) {
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

TEST_F(GainRange, TypeAsksTheThermocoupleControlAboutThePair) {
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

TEST_F(GainRange, UnpairedFamilyNeverChangesAPartner) {
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

TEST_F(GainRange, ChoiceIsShownAnewOnlyOnThe6601Family) {
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
TEST_F(GainRange, ChoiceIsShownAnewByTheThermocoupleBoardsFamily) {
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

TEST_F(GainRange, StaysThroughSettingsAndIsReadBack) {
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
