// A program that shows a window with one line of text, telling when the window was painted.

#include "bench/start/FirstPaint.h"

#include <QLabel>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QLabel window(QStringLiteral("Start"));
    const FirstPaint observer(window, argc > 1 ? std::atof(argv[1]) : 0);
    window.resize(1000, 650);
    window.show();
    return QApplication::exec();
}
