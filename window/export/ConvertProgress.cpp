#include "window/export/ConvertProgress.h"

#include "core/base/Convert.h"

#include <QCoreApplication>
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr qint64 UpdateInterval = 40; // milliseconds
constexpr int Steps = 1000;
constexpr int BarWidth = 320;

} // namespace

ConvertProgress::ConvertProgress(QWidget* window, std::chrono::milliseconds delay)
    : owner(window), patience(delay) {
    sinceStart.start();
}

ConvertProgress::~ConvertProgress() {
    if (dialog == nullptr)
        return;
    QCoreApplication::processEvents(); // input that came in since the last update does nothing either
    dialog->hide();
}

void ConvertProgress::Show(double fraction) {
    if (dialog == nullptr) {
        if (sinceStart.elapsed() <= patience.count())
            return;
        Build();
    } else if (sinceUpdate.elapsed() < UpdateInterval) {
        return;
    }
    bar->setValue(CLng(fraction * Steps));
    QCoreApplication::processEvents();
    sinceUpdate.start();
}

void ConvertProgress::Build() {
    dialog = std::make_unique<QDialog>(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    dialog->setObjectName(u"ConvertProgress"_s);
    dialog->setWindowTitle(u"Convert"_s);
    dialog->setWindowModality(Qt::ApplicationModal);
    bar = new QProgressBar(dialog.get());
    bar->setObjectName(u"ProgressBar"_s);
    bar->setAccessibleName(u"Progress of the conversion"_s);
    bar->setRange(0, Steps);
    bar->setMinimumWidth(BarWidth);
    auto* layout = new QVBoxLayout(dialog.get());
    layout->addWidget(new QLabel(u"Writing the text files"_s, dialog.get()));
    layout->addWidget(bar);
    dialog->show();
}

} // namespace tracelet
