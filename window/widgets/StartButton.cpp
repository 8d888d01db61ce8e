#include "window/widgets/StartButton.h"

#include "core/base/Convert.h"
#include "window/ground/Shading.h"
#include "window/widgets/Glyphs.h"

#include <QLinearGradient>
#include <QPainter>

#include <cmath>

namespace tracelet {

namespace {

constexpr QColor StartFace{0x2A, 0x94, 0x55};
constexpr QColor StopFace{0xD0, 0x36, 0x36};
constexpr double GapShare = 0.8; // between sign and caption, of the sign's size

} // namespace

StartButton::StartButton(const QString& caption, QWidget* parent) : QPushButton(caption, parent) {
    QFont large = font();
    large.setBold(true);
    large.setPointSizeF(large.pointSizeF() * 1.35);
    setFont(large);
}

QSize StartButton::sizeHint() const {
    const int sign = CLng(std::ceil(SignSize() * (1.0 + GapShare)));
    return QPushButton::sizeHint() + QSize(sign, 0);
}

double StartButton::SignSize() const {
    return QFontMetricsF(font()).capHeight() * 1.15;
}

QColor StartButton::FaceColor() const {
    if (!isEnabled())
        return Mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.12);
    const QColor face = Starts() ? StartFace : StopFace;
    if (isDown())
        return face.darker(120);
    return underMouse() ? face.lighter(110) : face;
}

void StartButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintFace(painter, FaceColor());
    PaintCaption(painter,
                 isEnabled() ? QColor(Qt::white) : palette().color(QPalette::Disabled, QPalette::ButtonText));
}

void StartButton::PaintFace(QPainter& painter, const QColor& face) const {
    const QRectF bounds = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QLinearGradient fall(bounds.topLeft(), bounds.bottomLeft());
    fall.setColorAt(0.0, face.lighter(108));
    fall.setColorAt(1.0, face.darker(106));
    painter.setPen(QPen(face.darker(140), 1.0));
    painter.setBrush(fall);
    painter.drawRoundedRect(bounds, 4.0, 4.0);
    if (!hasFocus())
        return;
    // White stands out on both colours, the highlight colour does not.
    painter.setPen(QPen(Qt::white, 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(bounds.adjusted(3.0, 3.0, -3.0, -3.0), 2.5, 2.5);
}

void StartButton::PaintCaption(QPainter& painter, const QColor& ink) const {
    const QFontMetricsF metrics(font());
    const double sign = SignSize();
    const double gap = sign * GapShare;
    const double captionWidth = metrics.horizontalAdvance(text());
    const double left = (width() - sign - gap - captionWidth) / 2.0;
    const double middle = height() / 2.0;
    DrawGlyph(painter, Starts() ? Glyph::Play : Glyph::Stop, {left, middle - sign / 2.0, sign, sign}, ink);
    painter.setPen(ink);
    painter.drawText(QRectF(left + sign + gap, 0.0, captionWidth + 1.0, height()),
                     Qt::AlignVCenter | Qt::TextHideMnemonic, text());
}

} // namespace tracelet
