#pragma once

#include "tests/support/MainWindowTest.h"
#include "window/files/Dialog.h"
#include "window/ground/NoticeLine.h"

#include <QDir>
#include <QLineEdit>

namespace tracelet {

/// Analog recordings of the main window, and where they are saved.
class RecordedTest : public MainWindowTest {
protected:
    void Record(int scans) {
        if (!window->bAIEnabled)
            TurnOnAI();
        if (!window->CkAISave2Disk->isChecked())
            Click(window->CkAISave2Disk);
        StartPolling();
        Tick(scans);
        Click(window->BtnStart);
    }

    /// Presses something that asks for a folder, types the name and presses a button of the dialog.
    static void NameFolder(QAbstractButton* opener, const QString& name, const char* button = "OKButton") {
        OnModalDialog<Dialog>([&](Dialog& dialog) {
            dialog.findChild<QLineEdit*>(QStringLiteral("txtFolderName"))->setText(name);
            Click(dialog.findChild<QPushButton*>(QString::fromLatin1(button)));
        });
        Click(opener);
    }

    /// Names of what a saved folder holds, of the target's own for "".
    [[nodiscard]] QStringList Saved(const QString& name = {}) const {
        return QDir(target.filePath(name)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] std::string Notice() const { return window->LabelNotice->text().toStdString(); }

    QTemporaryDir target;
};

} // namespace tracelet
