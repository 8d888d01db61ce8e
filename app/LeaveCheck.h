#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace tracelet {

/// Runs a check when the keyboard focus leaves a text box for another widget of its dialog, by key, mouse or
/// mnemonic; not when the window loses the focus, a menu or list pops up, or a message box takes it. After a
/// refusal the click that moved the focus does nothing more.
class LeaveCheck : public QObject {
public:
    /// Owned by `box`. `check` shows its message itself and tells whether it accepted.
    LeaveCheck(QWidget* box, std::function<bool()> check);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* box;
    std::function<bool()> check;
    bool isRunning = false;
};

} // namespace tracelet
