#include "window/widgets/ZelSlider.h"

#include "core/base/RunTimeError.h"
#include "window/ground/Shading.h"
#include "window/widgets/Accessibility.h"

#include <QKeyEvent>
#include <QLineF>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace tracelet {

namespace {

constexpr double ThumbRadius = 8.0;
constexpr double GrooveWidth = 4.0;
constexpr double KeyStep = 0.01;
constexpr double PageStep = 0.1;
constexpr double WheelNotch = 120.0;

} // namespace

ZelSlider::ZelSlider(Qt::Orientation direction, QWidget* parent) : QWidget(parent), orientation(direction) {
    InstallDisplayAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(IsVertical() ? QSizePolicy::Fixed : QSizePolicy::Expanding,
                  IsVertical() ? QSizePolicy::Expanding : QSizePolicy::Fixed);
}

void ZelSlider::SetValue(double newValue) {
    if (!std::isnan(newValue))
        Store(clampsProgram ? scale.Clamped(newValue) : newValue);
}

void ZelSlider::Store(double newValue) {
    if (newValue == value)
        return;
    value = newValue;
    update();
    TellAccessibleValue(*this);
    emit Changed(value);
}

void ZelSlider::SetRange(double lowest, double highest) {
    if (!std::isfinite(lowest) || !std::isfinite(highest) || lowest > highest)
        throw Fault::Overflow();
    scale.minimum = lowest;
    scale.maximum = highest;
    update();
}

void ZelSlider::SetLogarithmic(bool on) {
    scale.logarithmic = on;
    update();
}

void ZelSlider::SetEnabled(bool on) {
    enabledFlag = on;
    update();
}

void ZelSlider::MoveByUser(double newValue) {
    if (MovableByUser() && !std::isnan(newValue))
        Store(scale.Clamped(newValue));
}

QSize ZelSlider::sizeHint() const {
    return IsVertical() ? QSize(24, 120) : QSize(120, 24);
}

QSize ZelSlider::minimumSizeHint() const {
    return IsVertical() ? QSize(20, 48) : QSize(48, 20);
}

QLineF ZelSlider::Groove() const {
    const QRectF area = QRectF(rect());
    const double end = ThumbRadius + 2.0;
    if (IsVertical())
        return {area.center().x(), area.bottom() - end, area.center().x(), area.top() + end};
    return {area.left() + end, area.center().y(), area.right() - end, area.center().y()};
}

double ZelSlider::FractionAt(QPointF position) const {
    const QLineF groove = Groove();
    const double length = groove.length();
    if (length <= 0.0)
        return 0.0;
    const double along = IsVertical() ? groove.y1() - position.y() : position.x() - groove.x1();
    return along / length;
}

void ZelSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool live = MovableByUser();
    const QColor window = palette().color(QPalette::Window);
    const QColor ink = palette().color(QPalette::WindowText);
    const QColor filled = live ? palette().color(QPalette::Highlight) : Mixed(window, ink, 0.35);
    const QLineF groove = Groove();
    const QPointF thumb = groove.pointAt(scale.Fraction(value));

    painter.setPen(
        QPen(Mixed(window, ink, IsDark(palette()) ? 0.28 : 0.22), GrooveWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(groove);
    painter.setPen(QPen(filled, GrooveWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(groove.p1(), thumb);

    if (hasFocus()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Mixed(window, filled, 0.45));
        painter.drawEllipse(thumb, ThumbRadius + 2.0, ThumbRadius + 2.0);
    }
    const QColor face = live ? palette().color(QPalette::Button).lighter(IsDark(palette()) ? 190 : 108)
                             : Mixed(window, ink, 0.12);
    painter.setPen(
        QPen(live && (hasFocus() || underMouse() || dragging) ? filled : OutlineColor(palette()), 1.5));
    painter.setBrush(dragging ? Mixed(face, filled, 0.25) : face);
    painter.drawEllipse(thumb, ThumbRadius - 1.0, ThumbRadius - 1.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(live ? filled : OutlineColor(palette()));
    painter.drawEllipse(thumb, 2.5, 2.5);
}

void ZelSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !MovableByUser())
        return;
    dragging = true;
    const double fraction = FractionAt(event->position());
    const QPointF thumb = Groove().pointAt(scale.Fraction(value));
    const bool onThumb = QLineF(thumb, event->position()).length() <= ThumbRadius + 1.0;
    grabOffset = onThumb ? scale.Fraction(value) - fraction : 0.0;
    if (!onThumb)
        MoveByUser(scale.ValueAt(fraction));
    update();
}

void ZelSlider::mouseMoveEvent(QMouseEvent* event) {
    if (dragging)
        MoveByUser(scale.ValueAt(FractionAt(event->position()) + grabOffset));
}

void ZelSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    dragging = false;
    update();
}

void ZelSlider::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        return MoveByUser(scale.Stepped(value, -KeyStep));
    case Qt::Key_Right:
    case Qt::Key_Up:
        return MoveByUser(scale.Stepped(value, KeyStep));
    case Qt::Key_PageDown:
        return MoveByUser(scale.Stepped(value, -PageStep));
    case Qt::Key_PageUp:
        return MoveByUser(scale.Stepped(value, PageStep));
    case Qt::Key_Home:
        return MoveByUser(scale.minimum);
    case Qt::Key_End:
        return MoveByUser(scale.maximum);
    default:
        QWidget::keyPressEvent(event);
    }
}

void ZelSlider::wheelEvent(QWheelEvent* event) {
    const int turn = event->angleDelta().y();
    if (turn != 0)
        MoveByUser(scale.Stepped(value, KeyStep * turn / WheelNotch));
    event->accept();
}

} // namespace tracelet
