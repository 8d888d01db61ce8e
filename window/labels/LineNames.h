#pragma once

#include "core/chart/ColumnRaster.h"

#include <QColor>
#include <QString>

#include <vector>

class QFontMetrics;

namespace tracelet {

/// Name of a digital line.
struct LineName {
    QString text;
    double level = 0; ///< where the line is low; it is high 1 above
    QRgb color = 0xffffffff;
};

/// Text beside the rows of the line, or the lines, that it names. Lengths are pixels.
struct NameLabel {
    QString text;
    QRgb color = 0;
    double row = 0; ///< of its middle, from the upper edge of the plot area; may lie outside
    int column = 0; ///< left edge of its column within the block
    int width = 0;  ///< of the column
};

/// Labels in columns side by side.
struct NameBlock {
    std::vector<NameLabel> labels;
    int width = 0;
};

/// Names every line at the middle between its levels. Where whole names one above the other would touch, what
/// neighbouring names have in common ("DI 0:") stands once beside the group, and what tells them apart is
/// staggered into as many columns as it takes. `lineHeight` rows keep labels apart. Names that would make the
/// block wider than `mostWidth` are shortened; none is left out. Only lines that lie closer than any display
/// shows apart get labels over each other.
[[nodiscard]] NameBlock ArrangeNames(std::vector<LineName> names, const RowScale& scale,
                                     const QFontMetrics& metrics, int lineHeight, int mostWidth);

/// The colour, brightened as far as text on the chart's ground needs it.
[[nodiscard]] QRgb ReadableOnChart(QRgb color);

} // namespace tracelet
