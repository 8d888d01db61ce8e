// Keys, the help page, tips and hints of the main window, and projects dropped on it.

#include "tests/window/history/HistoryWindowTest.h"

#include "window/files/Dialog.h"

#include <QDragEnterEvent>
#include <QHelpEvent>
#include <QMimeData>
#include <QTabWidget>
#include <QTextBrowser>
#include <QToolTip>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Box = MessageBoxes::Box;

class HelpTest : public HistoryWindowTest {
protected:
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        window->activateWindow(); // a box or dialog may have been the active one
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window.get(), key, modifiers);
    }

    void Record() {
        TurnOnAI();
        Click(window->CkAISave2Disk);
        StartPolling();
        Tick(2);
    }

    [[nodiscard]] QDialog* HelpPage() const { return window->findChild<QDialog*>(u"HelpPage"_s); }

    /// What is told when the pointer rests on a control.
    [[nodiscard]] static std::string TipOf(QWidget* control) {
        QToolTip::showText({}, u"none"_s);
        const QPoint corner(2, 2);
        QHelpEvent rest(QEvent::ToolTip, corner, control->mapToGlobal(corner));
        QCoreApplication::sendEvent(control, &rest);
        return QToolTip::text().toStdString();
    }

    /// Drags files over the chart and drops them there; False when they are refused.
    bool DropFiles(const std::vector<std::string>& files, std::function<void()> meanwhile = {}) {
        QList<QUrl> urls;
        for (const std::string& file : files)
            urls.append(QUrl::fromLocalFile(QString::fromStdString(file)));
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window->ZelGraph1, &enter);
        if (!enter.isAccepted())
            return false;
        if (meanwhile)
            meanwhile();
        QDropEvent drop({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window.get(), &drop);
        QCoreApplication::processEvents();
        return true;
    }
};

TEST_F(HelpTest, F5StartsAndStops) {
    Press(Qt::Key_F5);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No Operation is enabled", "Tracelet"}))
        << "as the button says";
    TurnOnAI();
    Press(Qt::Key_F5);
    EXPECT_TRUE(window->isSystemRunning);
    Press(Qt::Key_F5);
    EXPECT_FALSE(window->isSystemRunning);
}

TEST_F(HelpTest, KeysDoWhatTheirButtonsDo) {
    Record();
    Press(Qt::Key_F5);
    int dialogs = 0;
    OnModalDialog<Dialog>([&](Dialog& dialog) { ++dialogs, dialog.reject(); });
    Press(Qt::Key_S, Qt::ControlModifier);
    OnModalDialog<QFileDialog>([&](QFileDialog& dialog) { ++dialogs, dialog.reject(); });
    Press(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(dialogs, 2);
    Press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(HelpTest, KeysDoNothingWhereTheirButtonsAreDisabled) {
    Press(Qt::Key_S, Qt::ControlModifier); // nothing is recorded
    Record();
    Press(Qt::Key_S, Qt::ControlModifier);
    Press(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(window->isSystemRunning);
    Press(Qt::Key_F5);
    OpenSaved(Polled(2));
    Press(Qt::Key_F5);
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_THAT(boxes.Take(), IsEmpty());
}

TEST_F(HelpTest, KeysDoNothingWhileADialogIsOpen) {
    Record();
    Press(Qt::Key_F5);
    OnModalDialog<Dialog>([&](Dialog& dialog) {
        dialog.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        for (const Qt::Key key : {Qt::Key_F5, Qt::Key_F1})
            QTest::keyClick(&dialog, key);
        for (const Qt::Key key : {Qt::Key_S, Qt::Key_O, Qt::Key_Q})
            QTest::keyClick(&dialog, key, Qt::ControlModifier);
        EXPECT_EQ(QApplication::activeModalWidget(), &dialog);
        dialog.reject();
    });
    Click(window->BtnSaveAs);
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(HelpPage(), nullptr);
}

TEST_F(HelpTest, F1ShowsOnePageBesideTheWindow) {
    Press(Qt::Key_F1);
    QDialog* page = HelpPage();
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->isVisible());
    EXPECT_FALSE(page->isModal());
    const QString text = page->findChild<QTextBrowser*>()->toPlainText();
    for (const char* told : {"F5", "Ctrl+S", "Ctrl+O", "Ctrl+Q", "F1", "Ctrl+Z", "Ctrl+C", "Ctrl+Shift+S",
                             "Ctrl+P", "Space", "Home", "Delete", "Fast AI", "Session.json", "deleted"})
        EXPECT_TRUE(text.contains(QLatin1String(told))) << told;
    TurnOnAI();
    EXPECT_TRUE(window->bAIEnabled) << "the window goes on meanwhile";
    Press(Qt::Key_F1);
    EXPECT_EQ(window->findChildren<QDialog*>(u"HelpPage"_s).size(), 1);
    QTest::keyClick(page, Qt::Key_Escape);
    EXPECT_FALSE(page->isVisible());
}

TEST_F(HelpTest, EveryControlTellsWhatItDoes) {
    for (QWidget* control : window->findChildren<QWidget*>()) {
        if (control->focusPolicy() == Qt::NoFocus || !control->isVisible() || control == window->ZelGraph1)
            continue;
        EXPECT_NE(TipOf(control), "none") << control->objectName().toStdString();
    }
    EXPECT_EQ(TipOf(window->BtnStart), "Start a session, or stop the one that runs (F5)");
}

TEST_F(HelpTest, EveryControlOfADialogTellsWhatItDoes) {
    Record();
    Click(window->BtnStart);
    const std::string project = Save(Polled(2));
    int dialogs = 0;
    const auto look = [&dialogs](QDialog& dialog) {
        ++dialogs;
        for (QWidget* control : dialog.findChildren<QWidget*>()) {
            const bool isPart = control->objectName().isEmpty() || control->objectName().startsWith(u"qt_");
            const bool isText = qobject_cast<QLabel*>(control) != nullptr;
            if (control->focusPolicy() == Qt::NoFocus || isPart || isText || !control->isVisible())
                continue;
            EXPECT_NE(TipOf(control), "none")
                << dialog.objectName().toStdString() << " " << control->objectName().toStdString();
        }
    };
    const auto lookBehind = [&](QAbstractButton* button) {
        OnModalDialog<QDialog>([&](QDialog& dialog) {
            look(dialog);
            dialog.reject();
        });
        Click(button);
    };
    OnModalDialog<QDialog>([&](QDialog& settings) {
        for (const int page : {0, 1}) {
            settings.findChild<QTabWidget*>()->setCurrentIndex(page);
            look(settings);
        }
        for (const char* further : {"cmdRange_1", "cmdAISelectDevice_1"})
            lookBehind(settings.findChild<QPushButton*>(QLatin1String(further)));
        settings.reject();
    });
    Click(window->BtnSet);
    lookBehind(window->BtnGraphSet);
    lookBehind(window->BtnSaveAs);
    OpenProject(project);
    lookBehind(window->BtnHisConvert);
    EXPECT_EQ(dialogs, 7);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Create Directory Fail", "Tracelet"}));
}

TEST_F(HelpTest, DisabledControlsOfTheSettingsTellWhatTheBoardLacks) {
    window->ZelAI1->SetDeviceNumber(2); // no external pacer, no trigger, no thermocouples
    const auto tips = [](QDialog& dialog, std::initializer_list<const char*> names, const char* expected) {
        for (const char* name : names)
            EXPECT_EQ(TipOf(dialog.findChild<QWidget*>(QLatin1String(name))), expected) << name;
    };
    OnModalDialog<QDialog>([&](QDialog& settings) {
        settings.findChild<QTabWidget*>()->setCurrentIndex(0);
        tips(settings, {"cmbPacerSource"}, "The board has no external pacer");
        tips(settings, {"cmbTriggerMode", "txtTriggerVoltage"}, "The board has no hardware trigger");
        OnModalDialog<QDialog>([&](QDialog& ranges) {
            tips(ranges, {"OptAI", "OptThermo"}, "The board reads no thermocouples");
            tips(ranges, {"ComboTCType"}, "Choose Thermo for this channel first");
            tips(ranges, {"optDifferent"}, "The board's inputs can be wired in one way only");
            ranges.reject();
        });
        Click(settings.findChild<QPushButton*>(u"cmdRange_0"_s));
        settings.reject();
    });
    window->SizeThermoTables();
    Click(window->BtnSet);
    Open(BoardList{});
    OnModalDialog<QDialog>([&](QDialog& settings) {
        tips(settings, {"txtAIScanStart_1", "cmdRange_1", "ComboDIPort"}, "Select a device first");
        settings.findChild<QTabWidget*>()->setCurrentIndex(0);
        tips(settings, {"txtSampleRate", "cmbPacerSource", "cmbTriggerMode"}, "Select a device first");
        settings.reject();
    });
    Click(window->BtnSet);
}

TEST_F(HelpTest, DisabledControlsTellWhatTheyWaitFor) {
    EXPECT_EQ(TipOf(window->CkAISave2Disk), "Turn on AI first");
    EXPECT_EQ(TipOf(window->CkDISave2Disk), "Turn on DI first");
    EXPECT_EQ(TipOf(window->BtnSaveAs), "There is nothing to save: tick a Save2Disk box, then press Start");
    for (QWidget* control :
         std::initializer_list<QWidget*>{window->BtnModeSwitch, window->ChkPlay, window->BtnAccelerate,
                                         window->BtnStop, window->ZelSliderR, window->BtnHisConvert})
        EXPECT_EQ(TipOf(control), "Open a recording first: History...");

    Record();
    for (QWidget* control :
         std::initializer_list<QWidget*>{window->BtnSet, window->CkAISave2Disk, window->CkDISave2Disk,
                                         window->ZelButton1, window->ZelButton2, window->BtnHistory,
                                         window->BtnSaveAs, window->BtnModeSwitch, window->BtnHisConvert})
        EXPECT_EQ(TipOf(control), "Stop the session first") << control->objectName().toStdString();
    Click(window->BtnStart);
    EXPECT_EQ(TipOf(window->CkAISave2Disk), "Record analog input while a session runs");
    EXPECT_EQ(TipOf(window->BtnSaveAs), "Save what was recorded in a folder (Ctrl+S)");

    OpenSaved(Polled(3));
    for (QWidget* control : std::initializer_list<QWidget*>{window->BtnSet, window->BtnStart,
                                                            window->BtnSaveAs, window->CkDISave2Disk})
        EXPECT_EQ(TipOf(control), "A recording is open: press Acquisition first");
    Click(window->ChkPlay);
    for (QWidget* control : std::initializer_list<QWidget*>{window->BtnModeSwitch, window->ZelButton1,
                                                            window->BtnHisConvert, window->BtnStart})
        EXPECT_EQ(TipOf(control), "Stop the playback first") << control->objectName().toStdString();
    Click(window->ChkPlay);
    EXPECT_EQ(TipOf(window->BtnHisConvert), "Stop the playback first");
    Click(window->BtnModeSwitch); // left in the pause
    EXPECT_EQ(TipOf(window->CkDISave2Disk), "Turn on DI first");
}

TEST_F(HelpTest, AFaultOnASaveBoxGoesBeforeItsTip) {
    TurnOnAI();
    window->CkAISave2Disk->setToolTip(u"Recording stopped: Disk full"_s);
    EXPECT_EQ(TipOf(window->CkAISave2Disk), "Recording stopped: Disk full");
}

TEST_F(HelpTest, TheEmptyChartTellsTheNextStep) {
    const auto hint = [this] { return window->ZelGraph1->Hint().toStdString(); };
    EXPECT_EQ(hint(), "Turn on AI, then press Start");
    SelectPorts(0, {0x01});
    EXPECT_EQ(hint(), "Turn on AI or DI, then press Start");
    window->ZelAI1->SetDeviceNumber(-1);
    window->BuildPlots(false, true);
    EXPECT_EQ(hint(), "Turn on DI, then press Start");
    window->ZelAI1->SetDeviceNumber(0);
    TurnOnAI();
    EXPECT_EQ(hint(), "Press Start\nTo record, tick AI Save2Disk first");
    Click(window->CkAISave2Disk);
    EXPECT_EQ(hint(), "Press Start to record");
    StartPolling();
    EXPECT_EQ(hint(), "Waiting for the first sample");
    Click(window->BtnStart);
    EXPECT_EQ(hint(), "Press Start to record");
    OpenSaved(Polled(3));
    EXPECT_EQ(hint(), "Press play to see the recording");
    Click(window->ChkPlay);
    EXPECT_EQ(hint(), "");
    Click(window->BtnStop);
    EXPECT_EQ(hint(), "Press play to see the recording");
}

TEST_F(HelpTest, WithoutABoardTheChartAsksForOne) {
    Open(BoardList{});
    EXPECT_EQ(window->ZelGraph1->Hint(), u"Choose a board first: Setting... in the frame Device"_s);
}

TEST_F(HelpTest, ADroppedProjectOpensAsByHistory) {
    const std::string project = Save(Polled(3));
    EXPECT_TRUE(DropFiles({project}));
    EXPECT_TRUE(window->bHistoryMode);
    EXPECT_EQ(window->HisScanCount, 3);
    EXPECT_EQ(window->szHisProjectFileName, project);
    EXPECT_TRUE(DropFiles({saved.Write("Broken.tlp", "nonsense")}));
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"The file is not a Tracelet project", "BtnHistory"}));
    EXPECT_TRUE(DropFiles({saved / "gone.tlp"}));
    EXPECT_EQ(window->szHisProjectFileName, saved / "Broken.tlp") << "what is gone changes nothing";
}

TEST_F(HelpTest, OtherThingsAreRefusedWhileTheyAreDragged) {
    const std::string project = Save(Polled(3));
    EXPECT_FALSE(DropFiles({}));
    EXPECT_FALSE(DropFiles({saved / "Saved/AI.tld"}));
    EXPECT_FALSE(DropFiles({project, project}));
    Record();
    EXPECT_FALSE(DropFiles({project})) << "History is disabled";
    Click(window->BtnStart);
    EXPECT_TRUE(DropFiles({project}, [this] { Click(window->BtnStart); }));
    EXPECT_FALSE(window->bHistoryMode) << "History was disabled meanwhile";
}

} // namespace
} // namespace tracelet
