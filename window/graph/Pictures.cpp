#include "core/recordings/SessionFile.h"
#include "window/chart/ZelGraph.h"
#include "window/graph/ChartPicture.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QSaveFile>
#include <QScopeGuard>
#include <QShortcut>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr int PrintedDots = 300; ///< an inch; traces are at most four of them thick

/// "2026-11-21T14:03:05+01:00" as people read it.
QString ClockText(const std::string& iso) {
    return QString::fromStdString(iso).replace(u'T', u' ').left(19);
}

/// Holds the view for a while, so that a picture shows what was seen when it was asked for.
auto HeldView(QPushButton* hold) {
    const bool was = hold->isChecked();
    hold->setChecked(true);
    return qScopeGuard([hold, was] { hold->setChecked(was); });
}

} // namespace

void frmMain::ConnectPictures() {
    const auto onKeys = [this](const QKeySequence& keys, QWidget* owner, void (frmMain::*action)()) {
        auto* shortcut = new QShortcut(keys, owner);
        shortcut->setContext(owner == this ? Qt::WindowShortcut : Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this,
                [this, action] { QuietHandler([&] { (this->*action)(); }); });
    };
    onKeys(QKeySequence::Copy, ZelGraph1, &frmMain::CopyPicture);
    onKeys(Qt::CTRL | Qt::SHIFT | Qt::Key_S, this, &frmMain::SavePicture);
    onKeys(QKeySequence::Print, this, &frmMain::PrintPicture);
}

/// Board and time of what the chart shows.
QString frmMain::PictureCaption() const {
    QStringList parts;
    if (bHistoryMode) {
        const std::string& started = recording.session.started;
        parts = {QString::fromStdString(RecordingName(recording.project)),
                 QString::fromStdString(BoardsText(recording.session.boards)),
                 ClockText(started.empty() ? ModificationTime(recording.project) : started)};
    } else {
        const SessionFacts& session = recorder.Session();
        parts = {QString::fromStdString(BoardsText({session.analogBoard, session.digitalBoard})),
                 ClockText(session.started)};
    }
    parts.removeAll(QString());
    return parts.join(u" · "_s);
}

void frmMain::CopyPicture() {
    QApplication::clipboard()->setImage(ChartPicture(*ZelGraph1, PictureCaption()).Image());
    LabelNotice->Show(u"The chart was copied as a picture"_s);
}

void frmMain::SavePicture() {
    const auto held = HeldView(ZelGraph1->BtnHold);
    QFileDialog dialog(this, u"Save Picture"_s);
    dialog.setObjectName(u"PictureDialog"_s);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({u"Pixels (*.png)"_s, u"Drawing (*.svg)"_s, u"Document (*.pdf)"_s});
    dialog.setDefaultSuffix(u"png"_s);
    connect(&dialog, &QFileDialog::filterSelected, &dialog,
            [&](const QString& filter) { dialog.setDefaultSuffix(filter.chopped(1).right(3)); });
    if (dialog.exec() == QDialog::Accepted)
        WritePicture(dialog.selectedFiles().value(0));
}

void frmMain::WritePicture(const QString& path) {
    const QByteArray bytes = ChartPicture(*ZelGraph1, PictureCaption()).FileBytes(path);
    if (bytes.isEmpty()) {
        LabelNotice->Warn(u"No picture was saved: its name must end in .png, .svg or .pdf"_s);
        return;
    }
    QSaveFile file(path); // whole or not at all
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        LabelNotice->Show(u"The picture was saved as %1"_s.arg(path));
    else
        LabelNotice->Warn(u"The picture could not be saved as %1: %2"_s.arg(path, file.errorString()));
}

void frmMain::PrintPicture() {
    const auto held = HeldView(ZelGraph1->BtnHold);
    QPrinter printer(QPrinter::HighResolution);
    printer.setResolution(PrintedDots);
    printer.setPageOrientation(QPageLayout::Landscape);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const ChartPicture picture(*ZelGraph1, PictureCaption());
    const QSizeF page = printer.pageRect(QPrinter::DevicePixel).size();
    QPainter painter;
    if (!painter.begin(&printer)) {
        LabelNotice->Warn(u"The chart could not be printed"_s);
        return;
    }
    picture.Paint(painter,
                  std::min(page.width() / picture.Size().width(), page.height() / picture.Size().height()));
}

} // namespace tracelet
