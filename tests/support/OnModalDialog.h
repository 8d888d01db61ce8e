#pragma once

#include <QApplication>
#include <QTimer>

#include <functional>

namespace tracelet {

/// Once a modal dialog of type Dialog is open, runs `action` on it; call before the dialog is shown. The
/// action must close the dialog.
template <typename Dialog>
void OnModalDialog(std::function<void(Dialog&)> action) {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, action] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        action(*dialog);
    });
    timer->start(1);
}

} // namespace tracelet
