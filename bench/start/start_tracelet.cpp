// The program itself, telling when its window was painted.

#include "app/FontWarmUp.h"
#include "app/frmMain.h"
#include "bench/start/FirstPaint.h"

#include <optional>

int main(int argc, char** argv) {
    std::optional<tracelet::FontWarmUp> fonts(std::in_place);
    QApplication application(argc, argv);
    fonts.reset();
    QApplication::setApplicationName(QStringLiteral("Tracelet"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    tracelet::frmMain window;
    const FirstPaint observer(window, argc > 1 ? std::atof(argv[1]) : 0);
    window.show();
    return QApplication::exec();
}
