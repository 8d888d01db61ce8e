#include "window/ground/MsgBox.h"

#include <QApplication>
#include <QGridLayout>
#include <QMessageBox>
#include <QStyle>

namespace tracelet {

void MsgBox(QWidget* owner, const QString& text, const QString& title) {
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::Ok, owner);
    box.setTextFormat(Qt::PlainText);
    // The title bar holds its icon and buttons beside a title that is often bold.
    QFont bold = QApplication::font();
    bold.setBold(true);
    const int width =
        QFontMetrics(bold).horizontalAdvance(title) + 5 * box.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
    box.exec();
}

} // namespace tracelet
