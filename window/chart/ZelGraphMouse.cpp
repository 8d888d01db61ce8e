#include "window/chart/ZelGraph.h"

#include "window/chart/ZelGraphState.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

namespace tracelet {

namespace {

constexpr double ThinnestBand = 4; ///< logical pixels

int ButtonCode(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::RightButton:
        return 2;
    case Qt::MiddleButton:
        return 4;
    default:
        return 0;
    }
}

int ShiftCode(Qt::KeyboardModifiers keys) {
    return (keys.testFlag(Qt::ShiftModifier) ? 1 : 0) | (keys.testFlag(Qt::ControlModifier) ? 2 : 0) |
           (keys.testFlag(Qt::AltModifier) ? 4 : 0);
}

} // namespace

std::int32_t ZelGraph::MouseMode() const {
    return state->mouseMode;
}

void ZelGraph::SetMouseMode(std::int32_t code) {
    if (code != MouseNone && (code < MouseXPan || code > MouseXYZoom))
        return;
    state->mouseMode = code;
    state->gesture = State::Gesture::None;
    UpdateCursor();
    update();
}

void ZelGraph::UpdateCursor() {
    switch (state->mouseMode) {
    case MouseXPan:
        setCursor(Qt::SizeHorCursor);
        break;
    case MouseYPan:
        setCursor(Qt::SizeVerCursor);
        break;
    case MouseXYPan:
        setCursor(state->gesture == State::Gesture::Pan ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
        break;
    case MouseXZoom:
    case MouseYZoom:
    case MouseXYZoom:
        setCursor(Qt::CrossCursor);
        break;
    default:
        unsetCursor();
    }
}

bool ZelGraph::State::Along(Qt::Orientation orientation) const {
    switch (mouseMode) {
    case MouseXYPan:
    case MouseXYZoom:
        return true;
    case MouseXPan:
    case MouseXZoom:
        return orientation == Qt::Horizontal;
    case MouseYPan:
    case MouseYZoom:
        return orientation == Qt::Vertical;
    default:
        return false;
    }
}

QPointF ZelGraph::State::Held(QPointF position) const {
    const double right = plotRect.left() + plotRect.width();
    const double bottom = plotRect.top() + plotRect.height();
    return {std::clamp<double>(position.x(), plotRect.left(), right),
            std::clamp<double>(position.y(), plotRect.top(), bottom)};
}

QRectF ZelGraph::State::Band() const {
    QRectF band = QRectF(Held(pressed), Held(pointer)).normalized();
    if (!Along(Qt::Horizontal)) {
        band.setLeft(plotRect.left());
        band.setWidth(plotRect.width());
    }
    if (!Along(Qt::Vertical)) {
        band.setTop(plotRect.top());
        band.setHeight(plotRect.height());
    }
    return band;
}

void ZelGraph::State::ApplyZoom() {
    const QRectF band = Band();
    const bool thinX = Along(Qt::Horizontal) && band.width() < ThinnestBand;
    const bool thinY = Along(Qt::Vertical) && band.height() < ThinnestBand;
    if (thinX || thinY || plotRect.isEmpty())
        return;
    if (Along(Qt::Horizontal))
        ShownTime().TakePart((band.left() - plotRect.left()) / plotRect.width(),
                             (band.right() - plotRect.left()) / plotRect.width());
    if (!Along(Qt::Vertical))
        return;
    const double bottom = plotRect.top() + plotRect.height();
    for (const int axis : ShownValueAxes())
        axes[static_cast<std::size_t>(axis)].ends.TakePart((bottom - band.bottom()) / plotRect.height(),
                                                           (bottom - band.top()) / plotRect.height());
}

void ZelGraph::State::ApplyPan(QPointF by) {
    if (plotRect.isEmpty())
        return;
    if (Along(Qt::Horizontal) && by.x() != 0)
        ShownTime().Pan(-by.x() / plotRect.width());
    if (Along(Qt::Vertical) && by.y() != 0)
        PanValues(by.y() / plotRect.height());
}

void ZelGraph::mousePressEvent(QMouseEvent* event) {
    State& s = *state;
    s.Prepare(*this);
    s.gesture = State::Gesture::None; // a second button ends what the first began
    s.panned = false;
    if (event->button() == Qt::LeftButton && s.mouseMode != MouseNone && !s.plotRect.isEmpty()) {
        s.gesture = s.Zooms() ? State::Gesture::Zoom : State::Gesture::Pan;
        s.pressed = s.pointer = event->position();
        UpdateCursor();
    }
    if (const int button = ButtonCode(event->button()); button != 0)
        emit MouseDown(button, ShiftCode(event->modifiers()), event->position().x(), event->position().y());
}

void ZelGraph::mouseMoveEvent(QMouseEvent* event) {
    State& s = *state;
    if (s.gesture == State::Gesture::None)
        return;
    const QPointF by = event->position() - s.pointer;
    s.pointer = event->position();
    if (s.gesture == State::Gesture::Zoom) {
        update();
        return;
    }
    if (s.panned)
        s.ApplyPan(by);
    else
        s.panned = s.Change(ViewHistory::Step::Lone, [&] { s.ApplyPan(by); });
    LookChanged();
}

void ZelGraph::mouseReleaseEvent(QMouseEvent* event) {
    State& s = *state;
    if (event->button() == Qt::LeftButton && s.gesture != State::Gesture::None) {
        mouseMoveEvent(event);
        if (s.gesture == State::Gesture::Zoom)
            s.Change(ViewHistory::Step::Lone, [&] { s.ApplyZoom(); });
        s.gesture = State::Gesture::None;
        UpdateCursor();
        LookChanged();
    }
    if (const int button = ButtonCode(event->button()); button != 0)
        emit MouseUp(button, ShiftCode(event->modifiers()), event->position().x(), event->position().y());
}

void ZelGraph::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape || state->gesture == State::Gesture::None) {
        if (!MoveView(*event))
            QWidget::keyPressEvent(event);
        return;
    }
    state->gesture = State::Gesture::None;
    UpdateCursor();
    update();
}

} // namespace tracelet
