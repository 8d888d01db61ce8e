#pragma once

class QColor;
class QPainter;
class QRectF;

namespace tracelet {

/// Signs of buttons that run something.
enum class Glyph { Play, Pause, Stop, Accelerate };

/// Fills the sign into the middle of `bounds`, as high as they are.
void DrawGlyph(QPainter& painter, Glyph glyph, const QRectF& bounds, const QColor& color);

} // namespace tracelet
