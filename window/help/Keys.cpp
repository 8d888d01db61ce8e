#include "window/help/HelpPage.h"
#include "window/main/frmMain.h"

#include <QPushButton>
#include <QShortcut>

namespace tracelet {

// A key does what its button does, so nothing while that is disabled or a dialog is open.
void frmMain::ConnectKeys() {
    const std::pair<QKeySequence, QPushButton*> keys[] = {{Qt::Key_F5, BtnStart},
                                                          {Qt::CTRL | Qt::Key_S, BtnSaveAs},
                                                          {Qt::CTRL | Qt::Key_O, BtnHistory},
                                                          {Qt::CTRL | Qt::Key_Q, BtnExit}};
    for (const auto& [key, button] : keys) {
        auto* shortcut = new QShortcut(key, this, button, &QPushButton::click);
        shortcut->setAutoRepeat(false);
    }
    new QShortcut(Qt::Key_F1, this, this, [this] { ShowHelp(*this); });
}

} // namespace tracelet
