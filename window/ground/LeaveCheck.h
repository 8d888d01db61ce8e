#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace tracelet {

/// Runs a check when the keyboard focus leaves a text box for another widget of its dialog, by key, mouse or
/// mnemonic; not when the window loses the focus, a menu or list pops up, or a message box takes it. After a
/// refusal the click (wheel step, mnemonic) that moved the focus does nothing more.
class LeaveCheck : public QObject {
public:
    /// Owned by `box`. `check` shows its message itself and tells whether it accepted.
    LeaveCheck(QWidget* box, std::function<bool()> check);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool AcceptsLeaving(Qt::FocusReason reason);
    [[nodiscard]] bool IsNeighbour(QObject* watched) const;
    [[nodiscard]] bool MnemonicIsRefused(QObject* watched);

    QWidget* box;
    std::function<bool()> check;
    bool isRefused = false;      ///< outcome of the last leaving
    bool dropsNextClick = false; ///< it was a click, which is still on its way
};

} // namespace tracelet
