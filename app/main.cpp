#include "app/FontWarmUp.h"
#include "app/frmMain.h"

#include <QApplication>

#include <optional>

int main(int argc, char** argv) {
    std::optional<tracelet::FontWarmUp> fonts(std::in_place);
    QApplication application(argc, argv);
    fonts.reset();
    QApplication::setApplicationName(QStringLiteral("Tracelet"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    tracelet::frmMain window;
    window.show();
    return QApplication::exec();
}
