#pragma once

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <unistd.h>

/// Tells on standard output when the window was painted first, as the machine's monotonic time in seconds,
/// and, when the program was given a number of seconds to idle, the resident MiB after them; then ends the
/// program.
class FirstPaint : public QObject {
public:
    FirstPaint(QWidget& window, double idleSeconds) : idle(idleSeconds) { window.installEventFilter(this); }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            object->removeEventFilter(this);
            QTimer::singleShot(0, this, &FirstPaint::Painted); // once the frame is whole and on the screen
        }
        return false;
    }

private:
    void Painted() {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        std::printf("%.9f\n", static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9);
        std::fflush(stdout);
        if (idle <= 0)
            return QCoreApplication::quit();
        QTimer::singleShot(static_cast<int>(idle * 1000), this, &FirstPaint::Idled);
    }
    static void Idled() {
        long pages = 0;
        long resident = 0;
        std::ifstream("/proc/self/statm") >> pages >> resident;
        std::printf("%.3f\n", static_cast<double>(resident * sysconf(_SC_PAGESIZE)) / (1 << 20));
        std::fflush(stdout);
        QCoreApplication::quit();
    }

    double idle;
};
