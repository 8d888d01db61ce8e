#include "window/main/Run.h"

#include "core/base/UniqueFd.h"
#include "window/aids/Style.h"
#include "window/main/FontWarmUp.h"
#include "window/main/frmMain.h"

#include <QApplication>
#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <optional>

#include <sys/eventfd.h>
#include <unistd.h>

namespace tracelet {
namespace {

std::atomic<int> wakeUp = UniqueFd::None; // what a signal writes to, on whatever thread it comes

void WakeUp(int) {
    const int before = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wakeUp, &one, sizeof one);
    errno = before;
}

/// Ends the event loops on signals that ask for it, those of dialogs and of a stop too, now and from then on,
/// as nobody reads the event; the window then goes as when it is closed. Signals that the program was told to
/// ignore (nohup) stay ignored.
class EndSignals {
public:
    EndSignals()
        : event(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)), notifier(event.Get(), QSocketNotifier::Read) {
        QObject::connect(&notifier, &QSocketNotifier::activated, [] { QCoreApplication::exit(0); });
        wakeUp = event.Get();
        for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
            struct sigaction action {};
            sigaction(signal, nullptr, &action);
            if (action.sa_handler == SIG_IGN)
                continue;
            action.sa_handler = WakeUp;
            action.sa_flags = SA_RESTART;
            sigaction(signal, &action, nullptr);
        }
    }
    ~EndSignals() { wakeUp = UniqueFd::None; }
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    UniqueFd event;
    QSocketNotifier notifier;
};

/// While the application is made: where no display can be opened, the program ends with one line instead of
/// the toolkit's abort. What the toolkit says meanwhile is told afterwards.
class DisplayWatch {
public:
    DisplayWatch() : previous(qInstallMessageHandler(Hold)) {}
    ~DisplayWatch() {
        qInstallMessageHandler(previous);
        for (const QByteArray& line : held)
            std::fprintf(stderr, "%s\n", line.constData());
        held.clear();
    }
    DisplayWatch(const DisplayWatch&) = delete;
    DisplayWatch& operator=(const DisplayWatch&) = delete;

private:
    static void Hold(QtMsgType type, const QMessageLogContext& context, const QString& text) {
        if (type == QtFatalMsg) {
            std::fputs("tracelet: there is no display to open a window on\n", stderr);
            std::_Exit(1);
        }
        held.append(qFormatLogMessage(type, context, text).toLocal8Bit());
    }

    static inline QByteArrayList held;
    QtMessageHandler previous;
};

} // namespace

int Run(int argc, char** argv, const std::function<void(frmMain&)>& beforeShow) {
    std::optional<FontWarmUp> fonts(std::in_place);
    std::optional<DisplayWatch> watch(std::in_place);
    QApplication application(argc, argv);
    watch.reset();
    fonts.reset();
    QApplication::setApplicationName(QStringLiteral("Tracelet"));
    InstallStyle();
    const EndSignals endSignals; // before there is anything that they could leave behind
    QObject::connect(&application, &QGuiApplication::commitDataRequest, [] { QCoreApplication::exit(0); });
    frmMain window;
    window.FitToScreen();
    beforeShow(window);
    window.show();
    return QApplication::exec();
}

} // namespace tracelet
