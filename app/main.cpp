#include "app/frmMain.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tracelet"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    tracelet::frmMain window;
    window.show();
    return QApplication::exec();
}
