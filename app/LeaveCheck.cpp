#include "app/LeaveCheck.h"

#include <QApplication>
#include <QFocusEvent>
#include <QWidget>

#include <utility>

namespace tracelet {
namespace {

// Eats the mouse press that is on its way to the widget which took the focus, and its release.
class ClickEater : public QObject {
public:
    ClickEater() : QObject(qApp) { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool press = event->type() == QEvent::MouseButtonPress;
        if (!watched->isWidgetType() || (!press && event->type() != QEvent::MouseButtonRelease))
            return false;
        if (!press || pressEaten) {
            qApp->removeEventFilter(this);
            deleteLater();
            return !press;
        }
        pressEaten = true;
        return true;
    }

private:
    bool pressEaten = false;
};

bool LeavesWithinDialog(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason;
}

} // namespace

LeaveCheck::LeaveCheck(QWidget* watchedBox, std::function<bool()> checkToRun)
    : QObject(watchedBox), box(watchedBox), check(std::move(checkToRun)) {
    box->installEventFilter(this);
}

bool LeaveCheck::eventFilter(QObject* watched, QEvent* event) {
    if (watched != box || event->type() != QEvent::FocusOut || isRunning)
        return false;
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (!LeavesWithinDialog(reason))
        return false;
    isRunning = true;
    const bool accepted = check();
    isRunning = false;
    if (!accepted && reason == Qt::MouseFocusReason)
        new ClickEater;
    return false;
}

} // namespace tracelet
