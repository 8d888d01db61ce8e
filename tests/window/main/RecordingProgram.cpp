// The program, recording from its start on. It prints "recording" when the first samples are in their file
// and waits for a signal then; with the argument "box" it shows a message box, with "desktop" it does what
// the end of a desktop's session does.

#include "window/ground/MsgBox.h"
#include "window/main/Run.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelButton.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QTimer>

#include <cstddef>
#include <cstdio>
#include <string_view>

namespace {

// No application can be given a session manager of its own; the receiver does not look at it.
void EndDesktopSession() {
    alignas(void*) static std::byte manager[64];
    emit qGuiApp->commitDataRequest(reinterpret_cast<QSessionManager&>(manager));
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view mode = argc > 1 ? argv[1] : "";
    return tracelet::Run(argc, argv, [&](tracelet::frmMain& window) {
        window.ZelButton1->click();
        window.CkAISave2Disk->click();
        window.nTimerInterval = 5;
        window.BtnStart->click();
        auto* watch = new QTimer(&window);
        QObject::connect(watch, &QTimer::timeout, watch, [&window, watch, mode] {
            if (window.ScanCount < 20)
                return;
            watch->stop();
            std::puts("recording");
            std::fflush(stdout);
            if (mode == "desktop")
                EndDesktopSession();
            else if (mode == "box")
                tracelet::MsgBox(&window, QStringLiteral("Is in the way"));
        });
        watch->start(5);
    });
}
