#include "core/base/Convert.h"
#include "core/layout/WindowLayout.h"
#include "window/ground/Handler.h"
#include "window/main/frmMain.h"

#include <QEvent>
#include <QScreen>
#include <QStyle>

#include <utility>

namespace tracelet {
namespace {

// A desktop that tiles its windows, or whose screen is smaller than the minimum, gives back the size it
// wants again and again; asking for ever would keep both busy.
constexpr int SnapsBeforeGivingIn = 8;
constexpr qint64 QuarrelMs = 500; // between two snaps of one quarrel

OuterSize Twips(QSize pixels) {
    return {static_cast<float>(pixels.height()) * TwipsPerPixel,
            static_cast<float>(pixels.width()) * TwipsPerPixel};
}

QSize SmallestOuter() {
    const auto pixels = [](float twips) { return CLng(static_cast<double>(twips / TwipsPerPixel)); };
    return {pixels(MinimumWidth), pixels(MinimumHeight)};
}

} // namespace

void frmMain::Form_Resize() {
    const QSize outer = frameGeometry().size();
    switch (StepFor(Twips(outer), isMinimized())) {
    case ResizeStep::LeaveAlone:
        return;
    case ResizeStep::Snap:
        return SnapToMinimum();
    case ResizeStep::LayOut:
        return LayOut(outer);
    }
}

void frmMain::FitToScreen() {
    const int border = style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const QSize frame(2 * border, border + style()->pixelMetric(QStyle::PM_TitleBarHeight));
    resize(size().boundedTo(screen()->availableSize() - frame));
}

void frmMain::SnapToMinimum() {
    const QSize frame = frameGeometry().size() - size();
    const bool again = size() == snappedFrom && sinceSnap.elapsed() < QuarrelMs;
    snapsInARow = again ? snapsInARow + 1 : 1;
    snappedFrom = size();
    sinceSnap.start();
    if (snapsInARow > SnapsBeforeGivingIn)
        LayOut(SmallestOuter());
    else
        resize(SmallestOuter() - frame);
}

void frmMain::LayOut(QSize outer) {
    laidOutFor = frameGeometry().size();
    Place(Twips(outer));
}

void frmMain::resizeEvent(QResizeEvent*) {
    Form_Resize();
}

// The frame is known only after the window was shown, and no resize tells of it. What was left behind is
// looked for once the window stands there.
bool frmMain::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (isVisible() && frameGeometry().size() != laidOutFor)
        Form_Resize();
    if (event->type() == QEvent::Paint && !std::exchange(isPainted, true))
        QTimer::singleShot(0, this, [this] { QuietHandler([this] { FindUnsaved(); }); });
    return handled;
}

} // namespace tracelet
