#include "tests/support/MessageBoxes.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <gtest/gtest.h>

namespace tracelet {

MessageBoxes::MessageBoxes() {
    QObject::connect(&poll, &QTimer::timeout, this, [this] { Answer(); });
    poll.start(1);
}

MessageBoxes::~MessageBoxes() {
    for (const Box& box : boxes)
        ADD_FAILURE() << "unexpected message box: \"" << box.text << "\", title \"" << box.title << "\"";
}

std::vector<MessageBoxes::Box> MessageBoxes::Take() {
    return std::exchange(boxes, {});
}

void MessageBoxes::Answer() {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || !box->isVisible())
        return;
    EXPECT_EQ(box->standardButtons(), QMessageBox::Ok) << "a message box has an OK button only";
    boxes.push_back({box->text().toStdString(), box->windowTitle().toStdString()});
    if (auto action = std::exchange(beforeAnswer, nullptr))
        action();
    box->button(QMessageBox::Ok)->click();
}

void PrintTo(const MessageBoxes::Box& box, std::ostream* out) {
    *out << "{\"" << box.text << "\", \"" << box.title << "\"}";
}

} // namespace tracelet
