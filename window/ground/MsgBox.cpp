#include "window/ground/MsgBox.h"

#include <QMessageBox>

namespace tracelet {

void MsgBox(QWidget* owner, const QString& text, const QString& title) {
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::Ok, owner);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

} // namespace tracelet
