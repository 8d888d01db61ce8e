// What the monkey does with the dialogs it meets.

#include "tests/monkey/Diary.h"
#include "tests/monkey/Hands.h"
#include "tests/monkey/Monkey.h"

#include "window/settings/frmSetting.h"

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr int Patience = 40;  // deeds after which a dialog is to be left
constexpr int Refusals = 400; // and after which it is stuck
const char* const DeedsProperty = "deedsOfTheMonkey";

QString FolderName(Random& random) {
    return QString::fromUtf8(random.Pick({"one", "two", "two", "three", "a/b", "..", "x/../y", "", " ",
                                          "über", "name with blanks", ".hidden", "a\\b", "C:\\x"}));
}

} // namespace

// The next look is asked for before anything is done: what is done may open a dialog and wait for it.
void Monkey::WatchDialogs() {
    QTimer::singleShot(1, this, [this] {
        WatchDialogs();
        Beat();
        if (QWidget* popup = QApplication::activePopupWidget())
            return ActOnPopup(*popup);
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog != nullptr && dialog->isVisible())
            ActOnDialog(*dialog);
    });
}

void Monkey::ActOnPopup(QWidget& popup) {
    Note(u"in popup %1"_s.arg(NameOf(popup)));
    if (random.Percent(40)) {
        popup.close();
        return;
    }
    QWidget* target = popup.focusWidget() != nullptr ? popup.focusWidget() : &popup;
    QTest::keyClick(target, random.Pick({Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Escape}));
}

void Monkey::ActOnDialog(QDialog& dialog) {
    const int deeds = dialog.property(DeedsProperty).toInt() + 1;
    dialog.setProperty(DeedsProperty, deeds);
    if (deeds > Refusals)
        Fail(u"%1 will not close"_s.arg(NameOf(dialog)));
    if (auto* box = qobject_cast<QMessageBox*>(&dialog))
        return Answer(*box);
    if (auto* files = qobject_cast<QFileDialog*>(&dialog))
        return ChooseFile(*files);
    if (auto* colors = qobject_cast<QColorDialog*>(&dialog))
        colors->setCurrentColor(QColor::fromRgb(random.Below(0x1000000) | 0xFF000000U));
    const QString name = dialog.objectName();
    if (name == u"Dialog"_s || name == u"ConvertFileDialog"_s)
        return NameFolder(dialog);
    if (deeds > Patience || random.Percent(8) || name == u"CommonDialog1"_s)
        return Leave(dialog);
    auto* settings = qobject_cast<frmSetting*>(&dialog);
    if (settings != nullptr && random.Percent(15))
        return ChooseSettings(*settings);
    if (random.Percent(8))
        return PressSomeKey(random, dialog);
    PokeSomething(random, dialog);
}

void Monkey::Answer(QMessageBox& box) {
    const QString told = u"\"%1\", title \"%2\""_s.arg(box.text(), box.windowTitle());
    Note(u"message box "_s + told);
    ++messages[told.toStdString()];
    if (box.standardButtons() != QMessageBox::Ok)
        Fail(u"a message box has more than an OK button: "_s + told);
    if (box.text().isEmpty() || box.windowTitle().isEmpty())
        Fail(u"a message box says nothing: "_s + told);
    switch (random.Below(3)) {
    case 0:
        return QTest::keyClick(&box, Qt::Key_Escape);
    case 1:
        return QTest::keyClick(box.button(QMessageBox::Ok), Qt::Key_Return);
    default:
        return QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    }
}

void Monkey::ChooseFile(QFileDialog& dialog) {
    const QStringList recordings = Recordings();
    QDialog& base = dialog;
    if (recordings.isEmpty() || random.Percent(15))
        return base.reject();
    const QString path = random.Percent(5) ? root.filePath(u"not there.tlp"_s) : random.Pick(recordings);
    Note(u"choose "_s + path);
    dialog.selectFile(path);
    base.accept();
    if (dialog.isVisible())
        base.reject();
}

// The lists are left alone: they lead out of the folder that is swept up afterwards.
void Monkey::NameFolder(QDialog& dialog) {
    if (random.Percent(20))
        return Leave(dialog);
    for (auto* box : dialog.findChildren<QCheckBox*>())
        if (box->isEnabled() && random.Percent(20))
            box->click();
    const QString name = FolderName(random);
    Note(u"name the folder \"%1\""_s.arg(name));
    dialog.findChild<QLineEdit*>(u"txtFolderName"_s)->setText(name);
    QTest::mouseClick(dialog.findChild<QPushButton*>(u"OKButton"_s), Qt::LeftButton);
}

// Settings that lead somewhere; poking alone seldom finds any.
void Monkey::ChooseSettings(frmSetting& dialog) {
    const int page = random.Below(2);
    Note(u"choose settings on page %1"_s.arg(page));
    const auto index = static_cast<std::size_t>(page);
    dialog.SSTab1->setCurrentIndex(page);
    dialog.txtAIScanStart[index]->setText(QString::number(random.Below(3)));
    dialog.txtAIScanNumber[index]->setText(QString::number(random.Below(6)));
    if (page == 0) {
        dialog.txtCount->setText(QString::number(random.Pick({0, 16, 1000, 4096, 50000})));
        dialog.txtSampleRate->setText(QString::number(random.Pick({1, 1000, 25000, 1000000})));
        if (random.Percent(50))
            dialog.chkCylic->click();
        return QTest::mouseClick(dialog.cmdFAIOK, Qt::LeftButton);
    }
    dialog.ComboDIPort->setCurrentIndex(random.Below(dialog.ComboDIPort->count()));
    for (QCheckBox* line : dialog.CheckDIChannel)
        if (line->isEnabled() && random.Percent(30))
            line->click();
    dialog.txtAITimeInterval->setText(QString::number(random.Pick({1, 2, 10, 50, 100})));
    QTest::mouseClick(dialog.cmdDIOK, Qt::LeftButton);
}

void Monkey::Leave(QDialog& dialog) {
    Note(u"leave %1"_s.arg(NameOf(dialog)));
    for (const char* name : {"BtnApply", "OKButton", "cmdFAIOK", "cmdDIOK"}) {
        auto* button = dialog.findChild<QPushButton*>(QString::fromLatin1(name));
        if (button != nullptr && button->isVisible() && button->isEnabled() && random.Percent(50))
            return QTest::mouseClick(button, Qt::LeftButton);
    }
    if (random.Percent(50))
        QTest::keyClick(&dialog, Qt::Key_Escape);
    else
        dialog.close();
}

} // namespace tracelet
