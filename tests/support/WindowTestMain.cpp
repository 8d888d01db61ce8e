// Runs window tests: one QApplication for all of them; an unexpected warning of the toolkit fails the test
// that caused it.

#include "window/aids/Style.h"

#include <QApplication>
#include <QLocale>
#include <gtest/gtest.h>

namespace {

void FailOnWarning(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    // The offscreen platform says this of itself; it tells nothing about the window.
    if (text.contains(u"This plugin does not support") || text.contains(u"propagateSizeHints"))
        return;
    ADD_FAILURE() << "toolkit warning: " << text.toStdString();
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    tracelet::InstallStyle();
    qInstallMessageHandler(FailOnWarning);
    const int result = RUN_ALL_TESTS();
    qInstallMessageHandler(nullptr);
    return result;
}
