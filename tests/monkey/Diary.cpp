#include "tests/monkey/Diary.h"

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <thread>

namespace tracelet {
namespace {

constexpr std::size_t Remembered = 60;

struct Diary {
    std::mutex mutex; // the watchdog reads from a thread of its own
    std::deque<QByteArray> deeds;
    int count = 0;
};

Diary& TheDiary() {
    static Diary diary;
    return diary;
}

std::int64_t Seconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

std::atomic<std::int64_t> lastBeat{0};

} // namespace

void Beat() {
    lastBeat = Seconds();
}

void Note(const QString& deed) {
    Beat();
    Diary& diary = TheDiary();
    const std::lock_guard lock(diary.mutex);
    diary.deeds.push_back(deed.toUtf8());
    ++diary.count;
    if (diary.deeds.size() > Remembered)
        diary.deeds.pop_front();
}

int DeedCount() {
    return TheDiary().count;
}

void Fail(const QString& what) {
    Diary& diary = TheDiary();
    const std::lock_guard lock(diary.mutex);
    for (const QByteArray& deed : diary.deeds)
        std::fprintf(stderr, "  %s\n", deed.constData());
    std::fprintf(stderr, "FAILED after %d deeds: %s\n", diary.count, what.toUtf8().constData());
    std::fflush(stderr);
    std::abort(); // a debugger then stands where it happened
}

void Require(bool holds, const char* claim) {
    if (!holds)
        Fail(QString::fromUtf8(claim));
}

void StartWatchdog(int seconds) {
    Beat();
    std::thread([seconds] {
        while (Seconds() - lastBeat <= seconds)
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        Fail(QStringLiteral("the window hangs"));
    }).detach();
}

} // namespace tracelet
