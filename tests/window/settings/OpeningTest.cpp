// What the settings dialog shows when it opens, what it enables, and the probes.

#include "tests/window/settings/SettingsTest.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::IsEmpty;

class Opening : public SettingsTest {};

using Enabled = std::map<std::string, bool>;

// The state that each named widget was given itself, whatever the frame around it.
Enabled EnabledStates(const frmSetting& dialog) {
    Enabled states;
    for (const QWidget* widget : dialog.findChildren<QWidget*>()) {
        const std::string name = widget->objectName().toStdString();
        if (!name.empty() && !name.starts_with("qt_"))
            states[name] = widget->isEnabledTo(widget->parentWidget());
    }
    return states;
}

TEST_F(Opening, ShowsTheBoardOnBothPages) {
    window->ZelAI1->SetScanStartChannel(3);
    window->ZelAI1->SetScanChannelCount(5);
    window->nTimerInterval = 250;
    InSettings([&](frmSetting& dialog) {
        EXPECT_EQ(dialog.objectName(), u"frmSetting"_s);
        EXPECT_EQ(dialog.windowTitle(), u"Tracelet device setting"_s);
        EXPECT_TRUE(dialog.isModal());
        EXPECT_EQ(dialog.parentWidget(), window.get());
        ASSERT_EQ(dialog.SSTab1->count(), 2);
        EXPECT_EQ(dialog.SSTab1->tabText(0), u"Fast AI"_s);
        EXPECT_EQ(dialog.SSTab1->tabText(1), u"SoftAI and/or DI"_s);
        for (const std::size_t page : {0u, 1u}) {
            EXPECT_EQ(dialog.LabelAIDeviceNumber[page]->text(), u"0"_s);
            EXPECT_EQ(dialog.labAIDeviceName[page]->text(), u"Merula 64"_s);
            EXPECT_EQ(dialog.labAIResolution[page]->text(), u"16"_s);
            EXPECT_EQ(dialog.txtAIScanStart[page]->text(), u"3"_s);
            EXPECT_EQ(dialog.txtAIScanNumber[page]->text(), u"5"_s);
        }
        EXPECT_EQ(dialog.txtAITimeInterval->text(), u"250"_s);
        EXPECT_EQ(dialog.LabelDIDevNum->text(), u"0"_s);
        EXPECT_EQ(dialog.LabelDIDevName->text(), u"Merula Port 4"_s);
        EXPECT_EQ(Items(dialog.ComboDIPort), QStringList({u"0"_s, u"1"_s, u"2"_s, u"3"_s}));
        EXPECT_EQ(dialog.ComboDIPort->currentIndex(), 0);
    });
}

TEST_F(Opening, BothPagesAreFull) {
    InSettings([](frmSetting& dialog) {
        for (const auto& [page, last, button] :
             {std::tuple(0, static_cast<QWidget*>(dialog.FrameFAITrigger), dialog.cmdFAIOK),
              {1, dialog.txtAITimeInterval, dialog.cmdDIOK}}) {
            dialog.SSTab1->setCurrentIndex(page);
            EXPECT_LT(button->y() - last->geometry().bottom(), button->height()) << page;
        }
    });
}

TEST_F(Opening, EnterPressesTheOKThatHasTheFocus) {
    InSettings([](frmSetting& dialog) {
        dialog.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        dialog.txtAITimeInterval->setFocus();
        QTest::keyClick(dialog.txtAITimeInterval, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible()) << "in a box it presses nothing";
        dialog.cmdDIOK->setFocus();
        QTest::keyClick(dialog.cmdDIOK, Qt::Key_Return);
        EXPECT_FALSE(dialog.isVisible());
    });
}

TEST_F(Opening, PageFollowsTheMode) {
    window->M1.SoftMode = true;
    InSettings([](frmSetting& dialog) { EXPECT_EQ(dialog.SSTab1->currentIndex(), 1); });
    window->M1.SoftMode = false;
    InSettings([](frmSetting& dialog) { EXPECT_EQ(dialog.SSTab1->currentIndex(), 0); });
}

TEST_F(Opening, Captions) {
    InSettings([](frmSetting& dialog) {
        const std::pair<const char*, const char*> captions[] = {
            {"cmdAISelectDevice_0", "Select Device"},
            {"cmdAISelectDevice_1", "Select Device"},
            {"cmdRange_0", "Set &Range"},
            {"cmdRange_1", "Set &Range"},
            {"chkCylic", "Cyclic"},
            {"cmdFAIOK", "&OK"},
            {"DISelectDevice", "Select Device"},
            {"cmdDIOK", "OK"},
        };
        for (const auto& [name, caption] : captions) {
            const auto* button = dialog.findChild<QAbstractButton*>(QString::fromLatin1(name));
            ASSERT_NE(button, nullptr) << name;
            EXPECT_EQ(button->text().toStdString(), caption) << name;
        }
        const std::pair<const char*, const char*> frames[] = {
            {"FrameAIDevice_0", "Select Device"},  {"FrameAIDevice_1", "AI Select Device"},
            {"SoftSetting_0", "Channel Setting"},  {"SoftSetting_1", "AI Channel Setting"},
            {"NonSoftSetting", "FAI Setting"},     {"FrameFAITrigger", "Trigger Setting"},
            {"FrameDIDevice", "DI Select Device"}, {"FrameDIScan", "DI Port Setting"},
        };
        for (const auto& [name, caption] : frames) {
            const auto* frame = dialog.findChild<QGroupBox*>(QString::fromLatin1(name));
            ASSERT_NE(frame, nullptr) << name;
            EXPECT_EQ(frame->title().toStdString(), caption) << name;
        }
        // Caption of the label beside each field.
        const std::pair<const char*, const char*> fields[] = {
            {"LabelAIDeviceNumber_0", "Device Number"},
            {"labAIDeviceName_1", "Device Name"},
            {"labAIResolution_0", "Resolution"},
            {"txtAIScanStart_0", "ChanStart"},
            {"txtAIScanNumber_1", "ChanCount"},
            {"cmdRange_0", "DataValueRange"},
            {"txtCount", "Data Count"},
            {"txtSampleRate", "Sample Rate"},
            {"cmbDataReturnType", "Data Type"},
            {"cmbPacerSource", "Pacer Source"},
            {"cmbTriggerMode", "Trigger Mode"},
            {"cmbTriggerEdge", "Trigger Edge"},
            {"cmbTriggerSource", "Trigger Source"},
            {"txtTriggerVoltage", "Trig Voltage"},
            {"txtTriggerDelayTime", "AfterTime"},
            {"txtTriggerAfterTimeinAboveMode", "BeforeTime"},
            {"txtAITimeInterval", "Interval"},
            {"LabelDIDevNum", "Device Number"},
            {"LabelDIDevName", "Device Name"},
            {"ComboDIPort", "Port"},
        };
        const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
        for (const auto& [name, caption] : fields) {
            const auto* field = dialog.findChild<QWidget*>(QString::fromLatin1(name));
            ASSERT_NE(field, nullptr) << name;
            const auto label = std::ranges::find_if(labels, [&](QLabel* l) { return l->buddy() == field; });
            ASSERT_NE(label, labels.end()) << name;
            EXPECT_EQ((*label)->text().toStdString(), caption) << name;
        }
        EXPECT_EQ(dialog.LabelHz->text(), u"Hz"_s);
        EXPECT_EQ(dialog.LabelVolt->text(), u"v"_s);
        EXPECT_EQ(dialog.LabelAfterTimeUnit->text(), u"ms"_s);
        EXPECT_EQ(dialog.LabelBeforeTimeUnit->text(), u"ms"_s);
        for (int line = 0; line < 8; ++line)
            EXPECT_EQ(dialog.LabelDIChannel[static_cast<std::size_t>(line)]->text(), QString::number(line));
    });
}

TEST_F(Opening, FramesAndPagesHoldTheirWidgets) {
    const std::pair<const char*, std::vector<const char*>> holders[] = {
        {"FrameAIDevice_0",
         {"cmdAISelectDevice_0", "LabelAIDeviceNumber_0", "labAIDeviceName_0", "labAIResolution_0"}},
        {"FrameAIDevice_1",
         {"cmdAISelectDevice_1", "LabelAIDeviceNumber_1", "labAIDeviceName_1", "labAIResolution_1"}},
        {"SoftSetting_0", {"txtAIScanStart_0", "txtAIScanNumber_0", "cmdRange_0"}},
        {"SoftSetting_1", {"txtAIScanStart_1", "txtAIScanNumber_1", "cmdRange_1"}},
        {"NonSoftSetting", {"txtCount", "txtSampleRate", "cmbDataReturnType", "chkCylic", "cmbPacerSource"}},
        {"FrameFAITrigger",
         {"cmbTriggerMode", "cmbTriggerEdge", "cmbTriggerSource", "txtTriggerVoltage", "txtTriggerDelayTime",
          "txtTriggerAfterTimeinAboveMode"}},
        {"FrameDIDevice", {"DISelectDevice", "LabelDIDevNum", "LabelDIDevName"}},
        {"FrameDIScan", {"ComboDIPort", "CheckDIChannel_0", "CheckDIChannel_7", "LabelDIChannel_0"}},
    };
    InSettings([&](frmSetting& dialog) {
        for (const auto& [holder, held] : holders) {
            const auto* frame = dialog.findChild<QGroupBox*>(QString::fromLatin1(holder));
            ASSERT_NE(frame, nullptr) << holder;
            for (const char* name : held)
                EXPECT_NE(frame->findChild<QWidget*>(QString::fromLatin1(name)), nullptr) << name;
        }
        const std::vector<const char*> pages[] = {
            {"FrameAIDevice_0", "SoftSetting_0", "NonSoftSetting", "FrameFAITrigger", "cmdFAIOK"},
            {"FrameAIDevice_1", "SoftSetting_1", "FrameDIDevice", "FrameDIScan", "txtAITimeInterval",
             "cmdDIOK"}};
        for (const int page : {0, 1}) {
            for (const char* name : pages[page])
                EXPECT_NE(dialog.SSTab1->widget(page)->findChild<QWidget*>(QString::fromLatin1(name)),
                          nullptr)
                    << name;
        }
    });
}

TEST_F(Opening, ShowsFastSettings) {
    window->nAISampleCnt = 1234567;
    window->bFAICyclic = false;
    window->ZelAI1->SetSampleRate(2500.5);
    window->ZelAI1->SetDataType(1);
    InSettings([&](frmSetting& dialog) {
        EXPECT_EQ(dialog.txtCount->text(), u"1,234,567"_s);
        EXPECT_EQ(dialog.txtSampleRate->text(), u"2500.5"_s);
        EXPECT_EQ(Items(dialog.cmbDataReturnType), QStringList({u"Digital "_s, u"Analog "_s}));
        EXPECT_EQ(dialog.cmbDataReturnType->currentIndex(), 0);
        EXPECT_FALSE(dialog.chkCylic->isChecked());
        EXPECT_TRUE(dialog.txtCount->isEnabled());
    });
    window->ZelAI1->SetDataType(2);
    window->bFAICyclic = true;
    InSettings([&](frmSetting& dialog) {
        EXPECT_EQ(dialog.cmbDataReturnType->currentIndex(), 1);
        EXPECT_TRUE(dialog.chkCylic->isChecked());
        EXPECT_FALSE(dialog.txtCount->isEnabled());
    });
}

TEST_F(Opening, NumbersDoNotFollowTheLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    window->nAISampleCnt = 1234567;
    window->nTimerInterval = 20000;
    window->ZelAI1->SetSampleRate(2500.5);
    InSettings([&](frmSetting& dialog) {
        EXPECT_EQ(dialog.txtCount->text(), u"1,234,567"_s);
        EXPECT_EQ(dialog.txtSampleRate->text(), u"2500.5"_s);
        EXPECT_EQ(dialog.txtAITimeInterval->text(), u"20000"_s);
        ShowPage(dialog, 0);
        Type(dialog.txtSampleRate, "1,250.5");
        Click(dialog.cmdFAIOK);
        EXPECT_FALSE(dialog.isVisible());
    });
    QLocale::setDefault(before);
    EXPECT_EQ(window->ZelAI1->SampleRate(), 1250.5);
}

TEST_F(Opening, CyclicBoxOnlyEverEnablesTheCount) {
    window->bFAICyclic = true;
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        Click(dialog.chkCylic);
        EXPECT_FALSE(dialog.chkCylic->isChecked());
        EXPECT_TRUE(dialog.txtCount->isEnabled());
        Click(dialog.chkCylic);
        EXPECT_TRUE(dialog.chkCylic->isChecked());
        EXPECT_TRUE(dialog.txtCount->isEnabled());
    });
    EXPECT_TRUE(window->bFAICyclic);
}

TEST_F(Opening, PacerProbe) {
    for (const std::int32_t before : {0, 1, 2}) {
        SCOPED_TRACE(before);
        window->ZelAI1->SetPacerSource(before);
        InSettings([&](frmSetting& dialog) {
            EXPECT_TRUE(dialog.cmbPacerSource->isEnabled());
            EXPECT_TRUE(dialog.LabelPacerSource->isEnabled());
            EXPECT_EQ(Items(dialog.cmbPacerSource), QStringList({u"Internal"_s, u"External clock 0"_s}));
            EXPECT_EQ(dialog.cmbPacerSource->currentIndex(), before == 0 ? 0 : 1);
            EXPECT_EQ(window->ZelAI1->PacerSource(), before == 0 ? 0 : 1);
        });
        EXPECT_EQ(window->ZelAI1->PacerSource(), before == 0 ? 0 : 1);
    }
}

TEST_F(Opening, TriggerProbe) {
    const struct {
        std::int32_t mode, edge, source;
    } cases[] = {{0, 0, 0}, {1, 1, 4}, {2, 0, 3}, {3, 1, 2}, {3, 0, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.mode);
        window->ZelAI1->SetTriggerMode(c.mode);
        window->ZelAI1->SetTriggerEdge(c.edge);
        window->ZelAI1->SetTriggerSource(c.source);
        window->ZelAI1->SetTriggerDelayTime(12.5);
        window->ZelAI1->SetTriggerAfterTime(1e-5);
        window->ZelAI1->SetTriggerVoltage(-0.25);
        InSettings([&](frmSetting& dialog) {
            EXPECT_TRUE(dialog.FrameFAITrigger->isEnabled());
            EXPECT_EQ(Items(dialog.cmbTriggerMode),
                      QStringList({u"None"_s, u"Post"_s, u"Delay"_s, u"About"_s}));
            EXPECT_EQ(Items(dialog.cmbTriggerEdge), QStringList({u"Rising edge"_s, u"Falling edge"_s}));
            EXPECT_EQ(Items(dialog.cmbTriggerSource),
                      QStringList({u"Digital"_s, u"AI or AI0"_s, u"AI1"_s, u"AI2"_s, u"AI3"_s}));
            EXPECT_EQ(dialog.cmbTriggerMode->currentIndex(), c.mode);
            EXPECT_EQ(dialog.cmbTriggerEdge->currentIndex(), c.edge);
            EXPECT_EQ(dialog.cmbTriggerSource->currentIndex(), c.source);
            EXPECT_EQ(dialog.txtTriggerDelayTime->text(), u"12.5"_s);
            EXPECT_EQ(dialog.txtTriggerAfterTimeinAboveMode->text(), u"1e-05"_s);
            EXPECT_EQ(dialog.txtTriggerVoltage->text(), u"-0.25"_s);
        });
        EXPECT_EQ(window->ZelAI1->TriggerMode(), c.mode);
    }
}

TEST_F(Opening, BoardWithoutPacerAndTrigger) {
    AnalogBoardInfo bare = Described("Bare");
    bare.externalPacer = bare.hardwareTrigger = false;
    Open(Boards({bare}));
    InSettings([&](frmSetting& dialog) {
        EXPECT_FALSE(dialog.cmbPacerSource->isEnabled());
        EXPECT_FALSE(dialog.LabelPacerSource->isEnabled());
        EXPECT_EQ(dialog.cmbPacerSource->count(), 0);
        EXPECT_EQ(dialog.cmbPacerSource->currentIndex(), -1);
        EXPECT_FALSE(dialog.FrameFAITrigger->isEnabled());
        EXPECT_TRUE(dialog.txtSampleRate->isEnabled());
        EXPECT_TRUE(dialog.chkCylic->isEnabled());
    });
}

TEST_F(Opening, WithoutDevices) {
    Open({});
    InSettings([&](frmSetting& dialog) {
        for (const std::size_t page : {0u, 1u}) {
            EXPECT_EQ(dialog.LabelAIDeviceNumber[page]->text(), u"-1"_s);
            EXPECT_EQ(dialog.labAIDeviceName[page]->text(), u"No Device"_s);
            EXPECT_FALSE(dialog.SoftSetting[page]->isEnabled());
            EXPECT_FALSE(dialog.cmdRange[page]->isEnabled());
            EXPECT_TRUE(dialog.cmdAISelectDevice[page]->isEnabled());
            EXPECT_EQ(dialog.txtAIScanStart[page]->text(), u"0"_s);
            EXPECT_EQ(dialog.txtAIScanNumber[page]->text(), u"1"_s);
        }
        EXPECT_FALSE(dialog.NonSoftSetting->isEnabled());
        EXPECT_FALSE(dialog.FrameFAITrigger->isEnabled());
        EXPECT_EQ(dialog.txtCount->text(), u"20,000"_s);
        EXPECT_EQ(dialog.txtSampleRate->text(), u"1,000"_s);
        EXPECT_EQ(dialog.LabelDIDevNum->text(), u"-1"_s);
        EXPECT_EQ(dialog.LabelDIDevName->text(), u"No Device"_s);
        EXPECT_FALSE(dialog.FrameDIScan->isEnabled());
        EXPECT_EQ(dialog.ComboDIPort->count(), 0);
        EXPECT_TRUE(dialog.DISelectDevice->isEnabled());
        EXPECT_TRUE(dialog.txtAITimeInterval->isEnabled());
        EXPECT_TRUE(dialog.cmdFAIOK->isEnabled());
        EXPECT_TRUE(dialog.cmdDIOK->isEnabled());
    });
}

TEST_F(Opening, EnablingTables) {
    const std::set<std::string> channels0 = {"SoftSetting_0",       "LabelAIScanStart_0", "txtAIScanStart_0",
                                             "LabelAIScanNumber_0", "txtAIScanNumber_0",  "cmdRange_0"};
    const std::set<std::string> channels1 = {"SoftSetting_1",       "LabelAIScanStart_1", "txtAIScanStart_1",
                                             "LabelAIScanNumber_1", "txtAIScanNumber_1",  "cmdRange_1"};
    const std::set<std::string> fast = {"NonSoftSetting",      "LabelCount",        "txtCount",
                                        "LabelSampleRate",     "txtSampleRate",     "LabelHz",
                                        "LabelDataReturnType", "cmbDataReturnType", "chkCylic",
                                        "LabelPacerSource",    "cmbPacerSource"};
    const std::set<std::string> trigger = {"FrameFAITrigger",     "LabelTriggerMode",
                                           "cmbTriggerMode",      "LabelAfterTime",
                                           "txtTriggerDelayTime", "LabelAfterTimeUnit",
                                           "LabelTriggerEdge",    "cmbTriggerEdge",
                                           "LabelBeforeTime",     "txtTriggerAfterTimeinAboveMode",
                                           "LabelBeforeTimeUnit", "LabelTriggerSource",
                                           "cmbTriggerSource",    "LabelTriggerVoltage",
                                           "txtTriggerVoltage",   "LabelVolt"};
    std::set<std::string> digital = {"FrameDIScan", "LabelDIPort", "ComboDIPort"};
    for (int line = 0; line < 8; ++line) {
        digital.insert("CheckDIChannel_" + std::to_string(line));
        digital.insert("LabelDIChannel_" + std::to_string(line));
    }
    InSettings([&](frmSetting& dialog) {
        const auto expectTable = [&](const std::set<std::string>& table,
                                     const std::function<void(bool)>& enable) {
            const Enabled before = EnabledStates(dialog);
            for (const std::string& name : table)
                ASSERT_TRUE(before.contains(name)) << name;
            enable(false);
            for (const auto& [name, on] : EnabledStates(dialog))
                EXPECT_EQ(on, before.at(name) && !table.contains(name)) << name;
            enable(true);
            for (const auto& [name, on] : EnabledStates(dialog))
                EXPECT_EQ(on, before.at(name) || table.contains(name)) << name;
        };
        expectTable(channels0, [&](bool on) { dialog.EnableAIChannelSetting(0, on); });
        expectTable(channels1, [&](bool on) { dialog.EnableAIChannelSetting(1, on); });
        expectTable(fast, [&](bool on) { dialog.EnableFAISetting(on); });
        expectTable(trigger, [&](bool on) { dialog.EnableFAITriggerControls(on); });
        expectTable(digital, [&](bool on) { dialog.EnableDIControls(on); });
    });
}

TEST_F(Opening, EveryFieldCanBeReachedAndHasAName) {
    InSettings([](frmSetting& dialog) {
        for (const int page : {0, 1}) {
            ShowPage(dialog, page);
            std::set<QWidget*> reached;
            QWidget* widget = dialog.SSTab1->tabBar();
            widget->setFocus();
            for (int i = 0; i < 60; ++i) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                reached.insert(QApplication::focusWidget());
            }
            for (QWidget* field : dialog.SSTab1->currentWidget()->findChildren<QWidget*>()) {
                const bool isField = qobject_cast<QLineEdit*>(field) != nullptr ||
                                     qobject_cast<QComboBox*>(field) != nullptr ||
                                     qobject_cast<QAbstractButton*>(field) != nullptr;
                if (!isField || !field->isEnabled())
                    continue;
                EXPECT_TRUE(reached.contains(field)) << field->objectName().toStdString();
                const auto* button = qobject_cast<QAbstractButton*>(field);
                EXPECT_TRUE(!field->accessibleName().isEmpty() || (button && !button->text().isEmpty()))
                    << field->objectName().toStdString();
            }
        }
    });
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(Opening, TitleBarLeavesEverythingAsItWas) {
    window->ZelAI1->SetTriggerMode(3);
    window->ZelAI1->SetPacerSource(1);
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        Type(dialog.txtCount, "9000");
        Type(dialog.txtSampleRate, "77");
        Type(dialog.txtAIScanNumber[0], "7");
        Choose(dialog.cmbTriggerMode, 1);
        Choose(dialog.cmbPacerSource, 0);
        Click(dialog.chkCylic);
        ShowPage(dialog, 1);
        Type(dialog.txtAITimeInterval, "33");
        dialog.close();
    });
    EXPECT_EQ(window->ZelAI1->TriggerMode(), 3);
    EXPECT_EQ(window->ZelAI1->PacerSource(), 1);
    EXPECT_EQ(window->ZelAI1->SampleRate(), 1000.0);
    EXPECT_EQ(window->ZelAI1->ScanChannelCount(), 1);
    EXPECT_EQ(window->nAISampleCnt, 4096);
    EXPECT_FALSE(window->bFAICyclic);
    EXPECT_EQ(window->nTimerInterval, 100);
    EXPECT_TRUE(window->M1.SoftMode);
    EXPECT_FALSE(window->bAIEnabled);
}

} // namespace
} // namespace tracelet
