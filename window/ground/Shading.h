#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>

class QPainter;
class QWidget;

namespace tracelet {

/// `share` of `second` in `first`, 0 to 1.
[[nodiscard]] QColor Mixed(const QColor& first, const QColor& second, double share);

/// Whether the window's ground is darker than its text.
[[nodiscard]] bool IsDark(const QPalette& palette);

/// Colour of a line that stands out moderately from the window's ground.
[[nodiscard]] QColor OutlineColor(const QPalette& palette);

/// Ring of the highlight colour, two pixels wide, just inside `bounds`.
void DrawFocusRing(QPainter& painter, const QRectF& bounds, double radius, const QPalette& palette);

/// Ground and grid of the chart and of what belongs to it, whatever the palette.
inline constexpr QColor ChartGround{0x10, 0x15, 0x1A};
inline constexpr QColor ChartGrid{0x2B, 0x33, 0x3B};
inline constexpr QColor ChartText{0xC6, 0xD0, 0xD9};

} // namespace tracelet
