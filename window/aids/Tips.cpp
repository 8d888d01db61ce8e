#include "window/aids/Tips.h"

#include <QHelpEvent>
#include <QToolTip>
#include <QWidget>

namespace tracelet {

Tips::Tips(QWidget* shownWindow) : QObject(shownWindow), window(shownWindow) {
    window->installEventFilter(this);
}

void Tips::Add(QWidget* control, const QString& what, const Reason& why) {
    control->setAccessibleDescription(what);
    tips.insert(control, {what, why});
}

void Tips::Add(QWidget* control, const QString& what, const QString& why) {
    Add(control, what, [why] { return why; });
}

QString Tips::Of(const QWidget* control) const {
    for (; control != nullptr && control != window; control = control->parentWidget()) {
        const auto tip = tips.find(control);
        if (tip == tips.end())
            continue;
        const QString why = !control->isEnabled() && tip->why ? tip->why() : QString();
        return why.isEmpty() ? tip->what : why;
    }
    return {};
}

// Comes here from the control that the pointer rests on, unless that has a tooltip of its own.
bool Tips::eventFilter(QObject* watched, QEvent* event) {
    if (watched != window || event->type() != QEvent::ToolTip)
        return false;
    const auto* help = static_cast<QHelpEvent*>(event);
    QWidget* control = window->childAt(help->pos());
    const QString tip = Of(control);
    if (tip.isEmpty())
        return false;
    QToolTip::showText(help->globalPos(), tip, control); // until the pointer leaves it
    return true;
}

} // namespace tracelet
