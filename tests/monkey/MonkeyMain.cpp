// monkey STEPS SEED...: as many random steps with the main window for each seed. What breaks is told with the
// deeds that led there. The times of the machine play a part, so a seed repeats a run roughly, not exactly.
// Draws nowhere unless QT_QPA_PLATFORM names a display.

#include "tests/monkey/Checks.h"
#include "tests/monkey/Diary.h"
#include "tests/monkey/Monkey.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

using namespace tracelet;

constexpr int PatienceSeconds = 100;

void FailOnWarning(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    // The offscreen platform says this of itself; it tells nothing about the window.
    if (text.contains(u"This plugin does not support") || text.contains(u"propagateSizeHints"))
        return;
    Fail(u"toolkit warning: "_s + text);
}

void Run(std::uint32_t seed, int steps) {
    Monkey monkey(seed);
    for (int step = 0; step < steps; ++step)
        monkey.Step();
    monkey.Finish();
    std::printf("seed %u: %d steps, %d deeds so far, %ld MiB\n", seed, steps, DeedCount(), ResidentMiB());
    for (const auto& [text, count] : monkey.MessagesMet())
        std::printf("  %4d times %s\n", count, text.c_str());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: monkey STEPS SEED...\n");
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle(QStringLiteral("Fusion"));
    qInstallMessageHandler(FailOnWarning);
    StartWatchdog(PatienceSeconds);
    for (int i = 2; i < argc; ++i) {
        Note(u"seed %1"_s.arg(QString::fromLocal8Bit(argv[i])));
        Run(static_cast<std::uint32_t>(std::strtoul(argv[i], nullptr, 10)), std::atoi(argv[1]));
    }
    qInstallMessageHandler(nullptr);
    return 0;
}
