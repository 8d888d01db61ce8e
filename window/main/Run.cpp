#include "window/main/Run.h"

#include "core/base/UniqueFd.h"
#include "window/main/FontWarmUp.h"
#include "window/main/frmMain.h"

#include <QApplication>
#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
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

} // namespace

int Run(int argc, char** argv, const std::function<void(frmMain&)>& beforeShow) {
    std::optional<FontWarmUp> fonts(std::in_place);
    QApplication application(argc, argv);
    fonts.reset();
    QApplication::setApplicationName(QStringLiteral("Tracelet"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    const EndSignals endSignals; // before there is anything that they could leave behind
    QObject::connect(&application, &QGuiApplication::commitDataRequest, [] { QCoreApplication::exit(0); });
    frmMain window;
    beforeShow(window);
    window.show();
    return QApplication::exec();
}

} // namespace tracelet
