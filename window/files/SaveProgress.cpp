#include "window/files/SaveProgress.h"

#include "core/base/RunTimeError.h"
#include "window/ground/NoInput.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QProgressBar>
#include <QProgressDialog>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tracelet {
namespace {

constexpr auto NotWorthAnEventLoop = 50ms;
constexpr auto UpdateInterval = 40ms;
constexpr int Steps = 1000;

/// What the window's thread and the saving one share.
struct Saving {
    std::atomic<std::int64_t> copied = 0; // bytes
    std::atomic<bool> isCancelled = false;
};

std::unique_ptr<QProgressDialog> MakeBar(QWidget* owner, Saving& saving) {
    auto dialog = std::make_unique<QProgressDialog>(u"Saving the recording"_s, u"Cancel"_s, 0, 0, owner);
    dialog->setObjectName(u"SaveProgress"_s);
    dialog->setWindowTitle(u"Save As"_s);
    dialog->setWindowModality(Qt::ApplicationModal);
    auto* bar = new QProgressBar(dialog.get());
    bar->setObjectName(u"ProgressBar"_s);
    bar->setAccessibleName(u"Progress of the saving"_s);
    dialog->setBar(bar);
    bar->setRange(0, Steps);
    QObject::connect(dialog.get(), &QProgressDialog::canceled, [&saving] { saving.isCancelled = true; });
    dialog->show();
    return dialog;
}

void Await(const std::future<std::string>& result, Saving& saving, QWidget* owner, std::int64_t bytes,
           std::chrono::milliseconds patience) {
    const auto isDone = [&result] { return result.wait_for(0ms) == std::future_status::ready; };
    NoInput noInput;
    std::unique_ptr<QProgressDialog> dialog;
    QElapsedTimer elapsed;
    elapsed.start();
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (isDone()) {
            loop.quit();
            return;
        }
        if (!dialog && elapsed.hasExpired(patience.count())) {
            dialog = MakeBar(owner, saving);
            noInput.Except(dialog.get());
        }
        // By the bar itself: the dialog would run the event loop once more.
        if (dialog)
            dialog->findChild<QProgressBar*>()->setValue(
                static_cast<int>(saving.copied * Steps / std::max<std::int64_t>(bytes, 1)));
    });
    poll.start(UpdateInterval);
    loop.exec();
    if (!isDone()) // the program ends
        saving.isCancelled = true;
}

} // namespace

std::string SaveWithProgress(QWidget* owner, std::int64_t bytes,
                             const std::function<std::string(const CopyProgress&)>& save,
                             std::chrono::milliseconds patience) {
    Saving saving;
    // Where there is no thread to be had, this one saves.
    std::future<std::string> result = std::async([&] {
        return save([&](std::int64_t count) {
            saving.copied += count;
            if (saving.isCancelled)
                throw RunTimeError(SavingCancelled);
        });
    });
    if (result.wait_for(NotWorthAnEventLoop) == std::future_status::timeout)
        Await(result, saving, owner, bytes, patience);
    return result.get();
}

QString NotSavedText(const std::string& reason) {
    const QString text = QString::fromStdString(reason);
    return reason == SavingCancelled ? text : u"The recording was not saved: %1"_s.arg(text);
}

} // namespace tracelet
