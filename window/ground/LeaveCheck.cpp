#include "window/ground/LeaveCheck.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFocusEvent>

#include <utility>

namespace tracelet {

LeaveCheck::LeaveCheck(QWidget* watchedBox, std::function<bool()> checkToRun)
    : QObject(watchedBox), box(watchedBox), check(std::move(checkToRun)) {
    qApp->installEventFilter(this);
}

bool LeaveCheck::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::FocusOut:
        if (watched == box) {
            const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
            isRefused = !AcceptsLeaving(reason);
            dropsNextClick = isRefused && reason == Qt::MouseFocusReason;
        }
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::Wheel: // the focus has moved before a widget sees these
        return dropsNextClick && IsNeighbour(watched) && std::exchange(dropsNextClick, false);
    case QEvent::Shortcut:
        return MnemonicIsRefused(watched);
    default:
        return false;
    }
}

bool LeaveCheck::AcceptsLeaving(Qt::FocusReason reason) {
    if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
        reason == Qt::MenuBarFocusReason || !box->window()->isVisible())
        return true;
    return check();
}

bool LeaveCheck::IsNeighbour(QObject* watched) const {
    const auto* widget = qobject_cast<QWidget*>(watched);
    return widget != nullptr && widget->window() == box->window();
}

// A button's mnemonic presses it without moving the focus there, so it is moved first.
bool LeaveCheck::MnemonicIsRefused(QObject* watched) {
    auto* button = qobject_cast<QAbstractButton*>(watched);
    if (button == nullptr || !box->hasFocus() || !button->isEnabled() || !IsNeighbour(button))
        return false;
    button->setFocus(Qt::ShortcutFocusReason);
    return isRefused;
}

} // namespace tracelet
