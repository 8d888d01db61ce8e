#include "window/ground/Shading.h"

#include <QPainter>

namespace tracelet {

QColor Mixed(const QColor& first, const QColor& second, double share) {
    const auto part = [share](float from, float to) {
        return from + static_cast<float>(share) * (to - from);
    };
    return QColor::fromRgbF(part(first.redF(), second.redF()), part(first.greenF(), second.greenF()),
                            part(first.blueF(), second.blueF()), part(first.alphaF(), second.alphaF()));
}

bool IsDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QColor OutlineColor(const QPalette& palette) {
    return Mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.38);
}

void DrawFocusRing(QPainter& painter, const QRectF& bounds, double radius, const QPalette& palette) {
    painter.setPen(QPen(palette.color(QPalette::Highlight), 2.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(bounds.adjusted(1.0, 1.0, -1.0, -1.0), radius, radius);
}

} // namespace tracelet
