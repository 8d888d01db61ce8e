// What the text boxes accept, and when they are checked.

#include "tests/window/settings/SettingsTest.h"

#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* Scan = "please input a valid number";
constexpr const char* Count = "DataCount should be at least 4096 for FAI";
constexpr const char* CountNumber = "Please input a valid number";
constexpr const char* Rate = "Sample rate should not be less than 1";
constexpr const char* RateNumber = "Please input a valide number";
constexpr const char* Interval = "please input a number between 1 and 65535";

struct Row {
    int page;
    const char* box;
    const char* typed;
    const char* message; ///< nullptr: accepted
    const char* putBack;
};

const Row Rows[] = {
    {0, "txtAIScanStart_0", "3", nullptr, "3"},
    {0, "txtAIScanStart_0", "-7", nullptr, "-7"},
    {0, "txtAIScanStart_0", "x", Scan, "0"},
    {0, "txtAIScanStart_0", "", Scan, "0"},
    {0, "txtAIScanStart_0", "9999999999", Scan, "0"},
    {1, "txtAIScanStart_1", "1,000", nullptr, "1,000"},
    {1, "txtAIScanStart_1", "1 0", Scan, "0"},
    {0, "txtAIScanNumber_0", "16", nullptr, "16"},
    {0, "txtAIScanNumber_0", "sixteen", Scan, "1"},
    {1, "txtAIScanNumber_1", "0", nullptr, "0"},
    {1, "txtAIScanNumber_1", "", Scan, "1"},
    {0, "txtCount", "4096", nullptr, "4096"},
    {0, "txtCount", "20,000", nullptr, "20,000"},
    {0, "txtCount", "4095.5", nullptr, "4095.5"},
    {0, "txtCount", "4095", Count, "4096"},
    {0, "txtCount", "-1", Count, "4096"},
    {0, "txtCount", "many", CountNumber, "4096"},
    {0, "txtCount", "2147483648", CountNumber, "4096"},
    {0, "txtCount", "", CountNumber, "4096"},
    {0, "txtSampleRate", "1", nullptr, "1"},
    {0, "txtSampleRate", "1e300", nullptr, "1e300"},
    {0, "txtSampleRate", "0.99", Rate, "1"},
    {0, "txtSampleRate", "0", Rate, "1"},
    {0, "txtSampleRate", "fast", RateNumber, "1"},
    {0, "txtSampleRate", "1e400", RateNumber, "1"},
    {0, "txtTriggerVoltage", "-2.5", nullptr, "-2.5"},
    {0, "txtTriggerVoltage", "1e10", nullptr, "1e10"},
    {0, "txtTriggerVoltage", "2,5x", "Invalid trigger voltage", "1"},
    {0, "txtTriggerDelayTime", "12.25", nullptr, "12.25"},
    {0, "txtTriggerDelayTime", "3000000000", nullptr, "3000000000"},
    {0, "txtTriggerDelayTime", "", "Invalid delay time", "0"},
    {0, "txtTriggerAfterTimeinAboveMode", "1e3", nullptr, "1e3"},
    {0, "txtTriggerAfterTimeinAboveMode", "-1e99", nullptr, "-1e99"},
    {0, "txtTriggerAfterTimeinAboveMode", "?", "Invalid after time for about mode", "0"},
    {1, "txtAITimeInterval", "1", nullptr, "1"},
    {1, "txtAITimeInterval", "65535", nullptr, "65535"},
    {1, "txtAITimeInterval", "0", Interval, "65535"},
    {1, "txtAITimeInterval", "65536", Interval, "65535"},
    {1, "txtAITimeInterval", "-5", Interval, "65535"},
    {1, "txtAITimeInterval", "soon", Interval, "65535"},
    {1, "txtAITimeInterval", "", Interval, "65535"},
};

class Validation : public SettingsTest {};

TEST_F(Validation, EveryBoxByTab) {
    InSettings([&](frmSetting& dialog) {
        for (const Row& row : Rows) {
            SCOPED_TRACE(testing::Message() << row.box << " \"" << row.typed << '"');
            ShowPage(dialog, row.page);
            auto* box = dialog.findChild<QLineEdit*>(QString::fromLatin1(row.box));
            ASSERT_NE(box, nullptr);
            Type(box, row.typed);
            EXPECT_EQ(box->text(), QString::fromUtf8(row.typed)) << "any text can be typed";
            QTest::keyClick(box, Qt::Key_Tab);
            EXPECT_FALSE(box->hasFocus());
            EXPECT_EQ(box->text(), QString::fromUtf8(row.putBack));
            if (row.message == nullptr)
                EXPECT_THAT(boxes.Take(), IsEmpty());
            else
                EXPECT_THAT(boxes.Take(), ElementsAre(Box{row.message, "Tracelet"}));
        }
    });
}

TEST_F(Validation, RefusedClickDoesNothingMore) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        const bool cyclic = dialog.chkCylic->isChecked();
        Type(dialog.txtCount, "12");
        Click(dialog.chkCylic);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{Count, "Tracelet"}));
        EXPECT_EQ(dialog.chkCylic->isChecked(), cyclic);
        EXPECT_EQ(dialog.focusWidget(), dialog.chkCylic);
        // The next click counts again.
        Click(dialog.chkCylic);
        EXPECT_NE(dialog.chkCylic->isChecked(), cyclic);

        Type(dialog.txtCount, "abc");
        Click(dialog.cmdFAIOK);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{CountNumber, "Tracelet"}));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(window->M1.SoftMode);
        EXPECT_EQ(window->nAISampleCnt, 4096);
        EXPECT_EQ(dialog.txtCount->text(), u"4096"_s);
    });
}

TEST_F(Validation, RefusedWheelStepDoesNothingMore) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        QComboBox* list = dialog.cmbDataReturnType;
        ASSERT_EQ(list->currentIndex(), 1);
        const auto turnUp = [list] {
            const QPointF at = list->rect().center();
            QWheelEvent step(at, list->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                             Qt::NoScrollPhase, false);
            QSpontaneKeyEvent::setSpontaneous(&step); // as from the mouse
            qApp->notify(list, &step);
        };
        Type(dialog.txtCount, "12");
        turnUp();
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{Count, "Tracelet"}));
        EXPECT_EQ(list->currentIndex(), 1);
        turnUp();
        EXPECT_EQ(list->currentIndex(), 0);
    });
}

TEST_F(Validation, RefusalByTabLeavesTheNextClickAlone) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        const bool cyclic = dialog.chkCylic->isChecked();
        Type(dialog.txtCount, "12");
        QTest::keyClick(dialog.txtCount, Qt::Key_Tab);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{Count, "Tracelet"}));
        Activate(dialog);
        Click(dialog.chkCylic);
        EXPECT_NE(dialog.chkCylic->isChecked(), cyclic);
        // So does a mnemonic from elsewhere.
        Type(dialog.txtCount, "12");
        QTest::keyClick(dialog.txtCount, Qt::Key_Tab);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{Count, "Tracelet"}));
        Activate(dialog);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_O, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }));
    });
    EXPECT_FALSE(window->M1.SoftMode);
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(Validation, AcceptedClickGoesOn) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        Type(dialog.txtCount, "5000");
        Click(dialog.cmdFAIOK);
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_EQ(window->nAISampleCnt, 5000);
}

TEST_F(Validation, RefusedClickOnATabKeepsThePage) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 1);
        Type(dialog.txtAITimeInterval, "0");
        QTabBar* tabs = dialog.SSTab1->tabBar();
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(0).center());
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{Interval, "Tracelet"}));
        EXPECT_EQ(dialog.SSTab1->currentIndex(), 1);
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(0).center());
        EXPECT_EQ(dialog.SSTab1->currentIndex(), 0);
    });
}

TEST_F(Validation, PageChangeByKeyboardLeavesTheBox) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 1);
        Type(dialog.txtAITimeInterval, "70000");
        QTest::keyClick(dialog.txtAITimeInterval, Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{Interval, "Tracelet"}));
        EXPECT_EQ(dialog.txtAITimeInterval->text(), u"65535"_s);
    });
}

TEST_F(Validation, MnemonicLeavesTheBox) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        Type(dialog.txtSampleRate, "0");
        QTest::keyClick(dialog.txtSampleRate, Qt::Key_O, Qt::AltModifier);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{Rate, "Tracelet"}));
        EXPECT_FALSE(dialog.cmdFAIOK->isDown());
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.focusWidget(), dialog.cmdFAIOK);
        Type(dialog.txtSampleRate, "500");
        QTest::keyClick(dialog.txtSampleRate, Qt::Key_O, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }));
    });
    EXPECT_EQ(window->ZelAI1->SampleRate(), 500.0);
}

TEST_F(Validation, WindowsAndPopupsDoNotCheck) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        Type(dialog.txtCount, "7");
        QFocusEvent deactivated(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
        QApplication::sendEvent(dialog.txtCount, &deactivated);
        QFocusEvent popup(QEvent::FocusOut, Qt::PopupFocusReason);
        QApplication::sendEvent(dialog.txtCount, &popup);
        QFocusEvent menu(QEvent::FocusOut, Qt::MenuBarFocusReason);
        QApplication::sendEvent(dialog.txtCount, &menu);
        EXPECT_EQ(dialog.txtCount->text(), u"7"_s);
        // Another window of the application comes up and goes.
        QWidget other(&dialog, Qt::Dialog);
        other.show();
        other.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
        EXPECT_EQ(dialog.txtCount->text(), u"7"_s);
        other.close();
    });
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(Validation, TheMessageBoxItselfDoesNotCheck) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        // The next box is wrong too: it gets the focus behind the message box, which then takes it.
        dialog.txtSampleRate->setText(u"wrong"_s);
        Type(dialog.txtCount, "wrong");
        dialog.txtSampleRate->setFocus(Qt::TabFocusReason);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{CountNumber, "Tracelet"}));
        EXPECT_EQ(dialog.txtSampleRate->text(), u"wrong"_s);
    });
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(Validation, EnterNeitherChecksNorPressesOK) {
    InSettings([&](frmSetting& dialog) {
        for (const int page : {0, 1}) {
            ShowPage(dialog, page);
            QLineEdit* box = page == 0 ? dialog.txtCount : dialog.txtAITimeInterval;
            Type(box, "0");
            QTest::keyClick(box, Qt::Key_Return);
            ASSERT_TRUE(dialog.isVisible());
            QTest::keyClick(box, Qt::Key_Enter);
            ASSERT_TRUE(dialog.isVisible());
            EXPECT_EQ(box->text(), u"0"_s);
            box->setText(u"5000"_s);
        }
    });
    EXPECT_THAT(boxes.Take(), IsEmpty());
    EXPECT_EQ(window->nTimerInterval, 100);
}

TEST_F(Validation, EscClosesWithoutCheck) {
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 0);
        Type(dialog.txtCount, "abc");
        QTest::keyClick(dialog.txtCount, Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible());
        dialog.txtCount->clearFocus(); // a window on its way out checks nothing
        QFocusEvent gone(QEvent::FocusOut, Qt::OtherFocusReason);
        QApplication::sendEvent(dialog.txtCount, &gone);
    });
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(Validation, OKReachedFromTheBoxReadsTheNumberItself) {
    const struct {
        const char* text;
        const char* description;
    } cases[] = {
        {"", "Type mismatch"}, {"many", "Type mismatch"}, {"2147483648", "Overflow"}, {"-1e10", "Overflow"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        InSettings([&](frmSetting& dialog) {
            ShowPage(dialog, 0);
            Type(dialog.txtCount, c.text);
            dialog.cmdFAIOK->click(); // no focus moves
            EXPECT_THAT(boxes.Take(), ElementsAre(Box{c.description, "cmdFAIOK"}));
            EXPECT_TRUE(dialog.isVisible());
            dialog.txtCount->setText(u"4096"_s);
            ShowPage(dialog, 1);
            Type(dialog.txtAITimeInterval, c.text);
            dialog.cmdDIOK->click();
            EXPECT_THAT(boxes.Take(), ElementsAre(Box{c.description, "cmdDIOK"}));
            EXPECT_TRUE(dialog.isVisible());
            dialog.txtAITimeInterval->setText(u"100"_s);
        });
        EXPECT_EQ(window->nTimerInterval, 100);
    }
}

} // namespace
} // namespace tracelet
