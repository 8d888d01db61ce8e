#include "window/aids/EnterPresses.h"

#include <QKeyEvent>
#include <QPushButton>

namespace tracelet {
namespace {

class EnterKey : public QObject {
public:
    explicit EnterKey(QPushButton* pressed) : QObject(pressed), button(pressed) {
        button->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::KeyPress)
            return false;
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter)
            return false;
        button->click();
        return true;
    }

private:
    QPushButton* button;
};

} // namespace

void EnterPresses(QPushButton* button) {
    button->setAutoDefault(false);
    new EnterKey(button);
}

} // namespace tracelet
