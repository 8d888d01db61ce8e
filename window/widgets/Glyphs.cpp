#include "window/widgets/Glyphs.h"

#include <QColor>
#include <QPainter>
#include <QPolygonF>
#include <QRectF>

namespace tracelet {

namespace {

QPolygonF Triangle(const QRectF& bounds) {
    return QPolygonF({bounds.topLeft(), {bounds.right(), bounds.center().y()}, bounds.bottomLeft()});
}

QRectF Centered(QPointF middle, double width, double height) {
    return {middle.x() - width / 2.0, middle.y() - height / 2.0, width, height};
}

} // namespace

void DrawGlyph(QPainter& painter, Glyph glyph, const QRectF& bounds, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, bounds.height() * 0.08, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(color);
    const QPointF middle = bounds.center();
    const double size = bounds.height();
    switch (glyph) {
    case Glyph::Play:
        // A triangle's weight lies left of the middle of its bounds.
        painter.drawPolygon(Triangle(Centered(middle + QPointF(size * 0.06, 0.0), size * 0.84, size)));
        break;
    case Glyph::Pause:
        painter.drawRect(Centered(middle - QPointF(size * 0.27, 0.0), size * 0.26, size));
        painter.drawRect(Centered(middle + QPointF(size * 0.27, 0.0), size * 0.26, size));
        break;
    case Glyph::Stop:
        painter.drawRect(Centered(middle, size * 0.88, size * 0.88));
        break;
    case Glyph::Accelerate:
        painter.drawPolygon(Triangle(Centered(middle - QPointF(size * 0.32, 0.0), size * 0.66, size * 0.92)));
        painter.drawPolygon(Triangle(Centered(middle + QPointF(size * 0.42, 0.0), size * 0.66, size * 0.92)));
        break;
    }
    painter.restore();
}

} // namespace tracelet
