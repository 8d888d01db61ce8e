#include "tour/Pictures.h"

#include "core/base/RunTimeError.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace tracelet {

Pictures::Pictures(const QString& path) : folder(QDir(path).absolutePath()) {
    if (!folder.mkpath(u"."_s))
        throw RunTimeError("The folder for the pictures cannot be made: " + path.toStdString());
}

void Pictures::Take(QWidget& widget, const QString& name) {
    QPixmap picture = widget.grab();
    if (QWidget* popup = QApplication::activePopupWidget(); popup != nullptr && popup != &widget) {
        QPainter painter(&picture);
        painter.drawPixmap(popup->mapToGlobal(QPoint()) - widget.mapToGlobal(QPoint()), popup->grab());
    }
    const QString file = u"%1-%2.png"_s.arg(++count, 2, 10, QLatin1Char('0')).arg(name);
    if (!picture.save(folder.filePath(file)))
        throw RunTimeError("The picture cannot be written: " + file.toStdString());
    std::printf("%s\n", qPrintable(file));
}

} // namespace tracelet
