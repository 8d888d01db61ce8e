#include "window/ground/NoInput.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

namespace tracelet {
namespace {

bool IsInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::Drop:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

} // namespace

NoInput::NoInput() {
    qApp->installEventFilter(this);
}

// Input comes to the system's window first, then to a widget in it.
bool NoInput::IsAllowed(const QObject* watched) const {
    const auto* widget = qobject_cast<const QWidget*>(watched);
    return allowed != nullptr &&
           (watched == allowed->windowHandle() || (widget != nullptr && widget->window() == allowed));
}

bool NoInput::eventFilter(QObject* watched, QEvent* event) {
    if (!IsInput(event->type()) || IsAllowed(watched))
        return false;
    event->ignore(); // a window asked to close stays open
    return true;
}

} // namespace tracelet
