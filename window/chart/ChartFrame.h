#pragma once

#include "core/chart/AxisTicks.h"
#include "core/chart/ColumnSpans.h"
#include "window/labels/LineNames.h"

#include <QFont>
#include <QHash>
#include <QImage>
#include <QRect>
#include <QString>

#include <array>
#include <vector>

class QPainter;

namespace tracelet {

/// Colours of the chart, the same in light and dark palettes: traces carry the picture.
namespace ChartColor {
constexpr QRgb Ground = 0xff10151a;
constexpr QRgb Grid = 0xff2b333b;
constexpr QRgb Border = 0xff3d4852;
constexpr QRgb Label = 0xffaab6c1;
constexpr QRgb Title = 0xff7d8b98;
constexpr QRgb Focus = 0xff4d7ea8;
} // namespace ChartColor

/// Whether what is drawn stays what it is, such as text, rather than pixels.
[[nodiscard]] bool KeepsVectors(const QPainter& painter);

/// An axis beside the plot area.
struct AxisStrip {
    AxisSpan span;
    QString title;
    std::vector<LineName> names; ///< of digital lines, instead of numbers
    bool named = false;
    // Set by Arrange.
    TickStep step;
    TickRange ticks;
    TickForm form;
    NameBlock block;
    QRect area; ///< device pixels
    bool left = true;
};

/// Everything around the plot area: where it stands, ticks, labels and titles. Lengths are device pixels.
class ChartFrame {
public:
    /// `scale` is the number of device pixels of a logical one.
    void SetLook(const QFont& font, double scale);

    AxisStrip time; ///< the X axis; its ticks are those with labels
    bool timeShown = true;
    double division = 0;           ///< seconds; an X axis of ten of them has its grid at their multiples
    std::vector<AxisStrip> strips; ///< visible Y axes; the first stands at the left

    /// Finds the plot area and the ticks for a chart of this size.
    void Arrange(QSize size);
    [[nodiscard]] QRect PlotArea() const { return plot; }
    /// Rows of the plot area that carry a horizontal grid line.
    [[nodiscard]] std::vector<int> GridRows() const;
    /// Distance of the vertical grid lines.
    [[nodiscard]] TickStep TimeGrid() const { return timeGrid; }
    /// Whether labels of the time axis fit there as arranged.
    [[nodiscard]] bool TimeFits(AxisSpan span) const;
    /// Ticks of the time axis for where it stands now.
    void MoveTime(AxisSpan span);

    /// Draws ground, labels and titles around the plot area; `firstColumn` is its leftmost one. Text is text
    /// where `painter` keeps it as such.
    void Draw(QPainter& painter, QSize size, const ColumnGrid& grid, std::int64_t firstColumn);

private:
    struct LabelKey {
        std::int64_t number = 0;
        TickStep step;
        TickForm form;
        bool operator==(const LabelKey&) const = default;
        friend std::size_t qHash(const LabelKey& key, std::size_t seed) {
            return qHashMulti(seed, key.number, key.step.mantissa, key.step.exponent, key.form.base);
        }
    };

    struct Written { ///< once, as it is drawn again and again
        QImage image;
        QString text;
        QRgb color = 0;
        [[nodiscard]] int width() const { return image.width(); }
        [[nodiscard]] int height() const { return image.height(); }
    };

    [[nodiscard]] int Px(int logical) const;
    [[nodiscard]] int WidestLabel(const AxisStrip& strip) const;
    void ArrangeTicks(AxisStrip& strip) const;
    void ArrangeStrips(QSize size);
    void ArrangeTimeTicks();
    double LabelTimesEvery(TickStep step);
    void DrawGround(QPainter& painter, QSize size) const;
    void DrawStrip(QPainter& painter, const AxisStrip& strip);
    void DrawNames(QPainter& painter, const AxisStrip& strip);
    void DrawTitles(QPainter& painter);
    [[nodiscard]] bool HasTitles() const;
    [[nodiscard]] int TitleWidth(const AxisStrip& strip);
    void DrawTime(QPainter& painter, QSize size, const ColumnGrid& grid, std::int64_t firstColumn);
    const Written& Label(std::int64_t number, const AxisStrip& strip);
    const Written& Text(const QString& text, QRgb color);
    [[nodiscard]] Written Rendered(const QString& text, QRgb color) const;
    void Put(QPainter& painter, int x, int y, const Written& written) const;

    QFont baseFont; ///< as it was given
    QFont font;
    double scale = 0;
    int lineHeight = 12;
    QRect plot;
    TickStep timeGrid;
    double timeLimit = 0; ///< times up to it have room for their labels
    QHash<LabelKey, Written> labels;
    QHash<QString, Written> texts;
};

} // namespace tracelet
