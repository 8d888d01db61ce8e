// The least that a program with a Qt Widgets window does, telling when the window was painted.

#include "bench/start/FirstPaint.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QWidget window;
    const FirstPaint observer(window, argc > 1 ? std::atof(argv[1]) : 0);
    window.resize(1000, 650);
    window.show();
    return QApplication::exec();
}
