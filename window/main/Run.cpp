#include "window/main/Run.h"

#include "window/main/FontWarmUp.h"
#include "window/main/frmMain.h"

#include <QApplication>

#include <optional>

namespace tracelet {

int Run(int argc, char** argv, const std::function<void(frmMain&)>& beforeShow) {
    std::optional<FontWarmUp> fonts(std::in_place);
    QApplication application(argc, argv);
    fonts.reset();
    QApplication::setApplicationName(QStringLiteral("Tracelet"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    frmMain window;
    beforeShow(window);
    window.show();
    return QApplication::exec();
}

} // namespace tracelet
