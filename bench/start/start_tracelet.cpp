// The program itself, telling when its window was painted.

#include "app/frmMain.h"
#include "bench/start/FirstPaint.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tracelet"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    tracelet::frmMain window;
    const FirstPaint observer(window, argc > 1 ? std::atof(argv[1]) : 0);
    window.show();
    return QApplication::exec();
}
