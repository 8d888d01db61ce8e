#include "window/widgets/ZelButton.h"

#include "window/ground/Shading.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

namespace tracelet {

namespace {

constexpr QColor Lit{0x46, 0xE0, 0x7C};
constexpr double BezelWidth = 3.0;

QColor Faded(const QColor& color, bool enabled, const QPalette& palette) {
    return enabled ? color : Mixed(color, palette.color(QPalette::Window), 0.55);
}

// The half of the rocker that is pushed in lies in shadow and is shorter, the other one stands out.
double HingeOf(const QRectF& rocker, bool on) {
    return rocker.top() + rocker.height() * (on ? 0.46 : 0.54);
}

} // namespace

ZelButton::ZelButton(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::toggled, this, &ZelButton::ValueChanged);
}

QString ZelButton::Image() const {
    return Value() ? QStringLiteral("PUSHROCKERSWITCH_ON") : QStringLiteral("PUSHROCKERSWITCH_OFF");
}

QSize ZelButton::sizeHint() const {
    return {44, 64};
}

void ZelButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bezel = QRectF(rect()).adjusted(BezelWidth, BezelWidth, -BezelWidth, -BezelWidth);
    if (hasFocus())
        DrawFocusRing(painter, rect(), 7.0, palette());

    painter.setPen(Qt::NoPen);
    painter.setBrush(Faded(QColor(0x14, 0x17, 0x1B), isEnabled(), palette()));
    painter.drawRoundedRect(bezel, 5.0, 5.0);
    PaintRocker(painter, bezel.adjusted(2.0, 2.0, -2.0, -2.0));
}

void ZelButton::PaintRocker(QPainter& painter, const QRectF& rocker) const {
    const bool on = Value();
    const double hinge = HingeOf(rocker, on);
    const QRectF upper(rocker.topLeft(), QPointF(rocker.right(), hinge));
    const QRectF lower(QPointF(rocker.left(), hinge), rocker.bottomRight());
    const bool hot = isEnabled() && (isDown() || underMouse());

    const auto raised = [&](double share) {
        return Faded(Mixed(QColor(0x4A, 0x52, 0x5B), QColor(0x8A, 0x94, 0xA0), share + (hot ? 0.15 : 0.0)),
                     isEnabled(), palette());
    };
    const auto sunk = [&](double share) {
        return Faded(Mixed(QColor(0x1E, 0x23, 0x29), QColor(0x3A, 0x42, 0x4B), share + (hot ? 0.15 : 0.0)),
                     isEnabled(), palette());
    };
    QLinearGradient fall(rocker.topLeft(), rocker.bottomLeft());
    const double middle = (hinge - rocker.top()) / rocker.height();
    fall.setColorAt(0.0, on ? sunk(0.0) : raised(0.75));
    fall.setColorAt(middle - 0.001, on ? sunk(1.0) : raised(0.25));
    fall.setColorAt(middle + 0.001, on ? raised(0.25) : sunk(1.0));
    fall.setColorAt(1.0, on ? raised(0.75) : sunk(0.0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(fall);
    painter.drawRoundedRect(rocker, 3.5, 3.5);

    painter.setPen(QPen(Faded(QColor(0, 0, 0, 150), isEnabled(), palette()), 1.0));
    painter.drawLine(QPointF(rocker.left() + 1.0, hinge), QPointF(rocker.right() - 1.0, hinge));
    PaintLight(painter, upper);
    PaintCaption(painter, lower);
}

void ZelButton::PaintLight(QPainter& painter, const QRectF& upperHalf) const {
    const double width = upperHalf.width() * 0.5;
    const QRectF lens(upperHalf.center().x() - width / 2.0, upperHalf.center().y() - 3.5, width, 7.0);
    const QColor glass = Value() ? Faded(Lit, isEnabled(), palette())
                                 : Faded(QColor(0x2A, 0x3A, 0x31), isEnabled(), palette());
    if (Value() && isEnabled()) {
        QRadialGradient glow(lens.center(), upperHalf.width() * 0.55);
        glow.setColorAt(0.0, QColor(Lit.red(), Lit.green(), Lit.blue(), 130));
        glow.setColorAt(1.0, QColor(Lit.red(), Lit.green(), Lit.blue(), 0));
        painter.setPen(Qt::NoPen);
        painter.setBrush(glow);
        painter.drawRect(upperHalf);
    }
    painter.setPen(QPen(QColor(0, 0, 0, 130), 1.0));
    painter.setBrush(glass);
    painter.drawRoundedRect(lens, 3.5, 3.5);
}

void ZelButton::PaintCaption(QPainter& painter, const QRectF& lowerHalf) const {
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(Faded(QColor(0xF4, 0xF6, 0xF8), isEnabled(), palette()));
    painter.drawText(lowerHalf, Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

} // namespace tracelet
