#include "window/chart/ChartFrame.h"

#include "core/base/Convert.h"
#include "core/chart/ColumnRaster.h"

#include <QFontMetrics>
#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tracelet {

namespace {

constexpr int Padding = 6;
constexpr int Gap = 5; ///< between labels and the plot area
constexpr int TickLength = 3;
constexpr int RowsPerTick = 48;
constexpr int ColumnsPerTick = 80;
constexpr int TimeLabelGap = 20;
constexpr int NameOverlap = 2;    ///< rows that names above each other may share: few letters reach there
constexpr int MostNamedShare = 3; ///< names take at most one part in so many of the width
constexpr int StripStep = 8;      ///< widths are multiples of it, so that they seldom change
constexpr int FewestPixels = 24;
constexpr qsizetype MostTexts = 512;

constexpr std::size_t LongestLabel = 9; ///< characters, beside the plot area
constexpr double Divisions = 10;

QString ToText(std::int64_t number, const AxisStrip& strip) {
    return QString::fromStdString(TickText(number, strip.step, strip.form));
}

} // namespace

bool KeepsVectors(const QPainter& painter) {
    return painter.paintEngine()->type() != QPaintEngine::Raster;
}

void ChartFrame::SetLook(const QFont& newFont, double newScale) {
    if (newScale == scale && newFont == baseFont)
        return;
    scale = newScale;
    font = baseFont = newFont;
    const int logical = std::max(9, QFontInfo(newFont).pixelSize() - 1);
    font.setPixelSize(CLng(logical * scale));
    lineHeight = QFontMetrics(font).height();
    labels.clear();
    texts.clear();
}

int ChartFrame::Px(int logical) const {
    return CLng(logical * scale);
}

int ChartFrame::WidestLabel(const AxisStrip& strip) const {
    const QFontMetrics metrics(font);
    int widest = strip.block.width;
    if (!strip.named)
        for (std::int64_t tick = strip.ticks.first; tick <= strip.ticks.last; ++tick)
            widest = std::max(widest, metrics.horizontalAdvance(ToText(tick, strip)));
    return std::max(widest, metrics.horizontalAdvance(QStringLiteral("-10.5")));
}

void ChartFrame::Arrange(QSize size) {
    const bool titles = size.height() >= Px(160);
    const int above = Px(Padding) + (titles ? lineHeight + Px(2) : lineHeight / 2);
    int below = Px(Padding);
    if (timeShown)
        below += lineHeight + Px(Gap);
    if (titles) // of the time axis, or only the button beside it
        below += lineHeight;
    plot = QRect(0, above, size.width(), size.height() - above - below);
    for (AxisStrip& strip : strips) {
        ArrangeTicks(strip);
        strip.block =
            ArrangeNames(strip.names, RowScale(strip.span.low, strip.span.high, plot.height()),
                         QFontMetrics(font), lineHeight - Px(NameOverlap), size.width() / MostNamedShare);
    }
    ArrangeStrips(size);
    ArrangeTimeTicks();
}

/// Two ticks at least: one says nothing of the scale.
void ChartFrame::ArrangeTicks(AxisStrip& strip) const {
    constexpr double surely = 5; // a step of at most half the span
    double count = std::max(2.0, std::floor(plot.height() / (RowsPerTick * scale)));
    do {
        strip.step = StepFor(strip.span.Length(), count);
        strip.ticks = TicksWithin(strip.span.low, strip.span.high, strip.step);
    } while (strip.ticks.first >= strip.ticks.last && ++count <= surely);
    strip.form = FormFor(strip.ticks, strip.step, LongestLabel);
}

void ChartFrame::ArrangeStrips(QSize size) {
    int left = Px(Padding);
    int right = size.width() - Px(2 * Padding);
    for (std::size_t i = 0; i < strips.size(); ++i) {
        AxisStrip& strip = strips[i];
        const int step = Px(StripStep);
        strip.left = i == 0; // its title goes on above the plot area
        const int widest = std::max(WidestLabel(strip), strip.left ? 0 : TitleWidth(strip));
        const int width = (widest + Px(Gap + TickLength) + step - 1) / step * step;
        if (strip.left) {
            strip.area = QRect(left, plot.top(), width, plot.height());
            left += width;
        } else {
            right -= width;
            strip.area = QRect(right, plot.top(), width, plot.height());
        }
    }
    // Strips at the right stand in their order from the plot area outwards.
    int next = right;
    for (AxisStrip& strip : strips) {
        if (strip.left)
            continue;
        strip.area.moveLeft(next);
        next += strip.area.width();
    }
    plot.setLeft(left);
    plot.setRight(right - 1);
    if (plot.width() < FewestPixels || plot.height() < FewestPixels)
        plot = QRect();
}

/// Gives each tick of `step` a label; the columns that one takes with the room around it. Digits are counted
/// for the next power of ten, so that the step holds while the axis scrolls.
double ChartFrame::LabelTimesEvery(TickStep step) {
    const double largest = std::max(std::abs(time.span.low), std::abs(time.span.high));
    timeLimit = std::pow(10.0, std::ceil(std::log10(std::max(largest, step.At(1)))));
    const TickRange widest = TicksWithin(timeLimit, timeLimit + time.span.Length(), step);
    time.step = step;
    time.form = FormFor(widest, step);
    int width = 0;
    for (std::int64_t tick = widest.first; tick <= widest.last; ++tick)
        width = std::max(width, QFontMetrics(font).horizontalAdvance(ToText(tick, time)));
    return width + TimeLabelGap * scale;
}

void ChartFrame::ArrangeTimeTicks() {
    const double span = time.span.Length();
    const double columnsPerSecond = plot.width() / span;
    if (std::abs(span - Divisions * division) <= 1e-6 * span) {
        timeGrid = StepOf(division);
        for (const std::int64_t every : {1, 2, 5, 10})
            if (const TickStep step = Multiple(timeGrid, every);
                LabelTimesEvery(step) <= step.At(1) * columnsPerSecond)
                break;
    } else {
        // Longer labels need wider steps, which may need shorter labels: two rounds settle it.
        double spacing = ColumnsPerTick * scale;
        for (int round = 0; round < 2; ++round) {
            timeGrid = StepFor(span, std::max(1.0, std::floor(plot.width() / spacing)));
            spacing = std::max(spacing, LabelTimesEvery(timeGrid));
        }
    }
    MoveTime(time.span);
}

bool ChartFrame::TimeFits(AxisSpan span) const {
    return span.low >= -timeLimit && span.high <= timeLimit;
}

void ChartFrame::MoveTime(AxisSpan span) {
    time.span = span;
    time.ticks = TicksWithin(span.low, span.high, time.step);
}

std::vector<int> ChartFrame::GridRows() const {
    std::vector<int> rows;
    if (strips.empty() || strips.front().named || plot.isEmpty())
        return rows;
    const AxisStrip& strip = strips.front();
    const RowScale scaleOf(strip.span.low, strip.span.high, plot.height());
    for (std::int64_t tick = strip.ticks.first; tick <= strip.ticks.last; ++tick)
        rows.push_back(std::clamp(Int(scaleOf.RowOf(strip.step.At(tick))), 0, plot.height() - 1));
    return rows;
}

ChartFrame::Written ChartFrame::Rendered(const QString& text, QRgb color) const {
    const QFontMetrics metrics(font);
    QImage image(std::max(1, metrics.horizontalAdvance(text) + 2), lineHeight,
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(QColor(color));
    painter.drawText(1, metrics.ascent(), text);
    return {image, text, color};
}

void ChartFrame::Put(QPainter& painter, int x, int y, const Written& written) const {
    if (!KeepsVectors(painter)) {
        painter.drawImage(x, y, written.image);
        return;
    }
    painter.setFont(font);
    painter.setPen(QColor(written.color));
    painter.drawText(x + 1, y + QFontMetrics(font).ascent(), written.text);
}

const ChartFrame::Written& ChartFrame::Label(std::int64_t number, const AxisStrip& strip) {
    const LabelKey key{number, strip.step, strip.form};
    const auto found = labels.constFind(key);
    if (found != labels.constEnd())
        return *found;
    if (labels.size() >= MostTexts)
        labels.clear();
    return *labels.insert(key, Rendered(ToText(number, strip), ChartColor::Label));
}

const ChartFrame::Written& ChartFrame::Text(const QString& text, QRgb color) {
    const QString key = text + QChar(color & 0xffff) + QChar(color >> 16 & 0xff);
    const auto found = texts.constFind(key);
    if (found != texts.constEnd())
        return *found;
    if (texts.size() >= MostTexts)
        texts.clear();
    return *texts.insert(key, Rendered(text, color));
}

void ChartFrame::Draw(QPainter& painter, QSize size, const ColumnGrid& grid, std::int64_t firstColumn) {
    DrawGround(painter, size);
    if (plot.isEmpty())
        return;
    for (const AxisStrip& strip : strips) {
        if (strip.named)
            DrawNames(painter, strip);
        else
            DrawStrip(painter, strip);
    }
    DrawTitles(painter);
    if (timeShown)
        DrawTime(painter, size, grid, firstColumn);
}

void ChartFrame::DrawGround(QPainter& painter, QSize size) const {
    const QColor ground(ChartColor::Ground);
    if (plot.isEmpty()) {
        painter.fillRect(QRect(QPoint(), size), ground);
        return;
    }
    const int right = plot.right() + 1;
    const int bottom = plot.bottom() + 1;
    painter.fillRect(0, 0, size.width(), plot.top(), ground);
    painter.fillRect(0, bottom, size.width(), size.height() - bottom, ground);
    painter.fillRect(0, plot.top(), plot.left(), plot.height(), ground);
    painter.fillRect(right, plot.top(), size.width() - right, plot.height(), ground);
    const int line = std::max(1, Px(1));
    const QColor border(ChartColor::Border);
    painter.fillRect(plot.left() - line, plot.top() - line, plot.width() + 2 * line, line, border);
    painter.fillRect(plot.left() - line, bottom, plot.width() + 2 * line, line, border);
    painter.fillRect(plot.left() - line, plot.top(), line, plot.height(), border);
    painter.fillRect(right, plot.top(), line, plot.height(), border);
}

void ChartFrame::DrawStrip(QPainter& painter, const AxisStrip& strip) {
    const RowScale scaleOf(strip.span.low, strip.span.high, plot.height());
    const int line = std::max(1, Px(1));
    if (!strip.left)
        painter.fillRect(strip.area.left(), plot.top() - line, line, plot.height() + 2 * line,
                         QColor(ChartColor::Border));
    for (std::int64_t tick = strip.ticks.first; tick <= strip.ticks.last; ++tick) {
        const int row = plot.top() + Int(scaleOf.RowOf(strip.step.At(tick)));
        const Written& label = Label(tick, strip);
        const int y = row - label.height() / 2;
        if (strip.left) {
            Put(painter, strip.area.right() + 1 - Px(Gap + TickLength) - label.width() + 1, y, label);
            painter.fillRect(plot.left() - Px(TickLength) - line, row, Px(TickLength), line,
                             QColor(ChartColor::Border));
        } else {
            Put(painter, strip.area.left() + Px(Gap + TickLength), y, label);
            painter.fillRect(strip.area.left() + line, row, Px(TickLength), line, QColor(ChartColor::Border));
        }
    }
}

void ChartFrame::DrawNames(QPainter& painter, const AxisStrip& strip) {
    const double half = RowScale(strip.span.low, strip.span.high, plot.height()).perUnit / 2;
    const int left =
        strip.left ? strip.area.right() - Px(Gap) - strip.block.width : strip.area.left() + Px(Gap);
    for (const NameLabel& name : strip.block.labels) {
        if (name.row + half < 0 || name.row - half > plot.height())
            continue;
        const Written& label = Text(name.text, name.color);
        const int row = Int(std::clamp<double>(name.row, 0, plot.height()));
        const int indent = strip.left ? name.width - label.width() : 0;
        Put(painter, left + name.column + indent, plot.top() + row - lineHeight / 2, label);
    }
}

bool ChartFrame::HasTitles() const {
    return plot.top() >= lineHeight + Px(Padding);
}

int ChartFrame::TitleWidth(const AxisStrip& strip) {
    return HasTitles() && !strip.title.isEmpty() ? Text(strip.title, ChartColor::Title).width() : 0;
}

void ChartFrame::DrawTitles(QPainter& painter) {
    if (!HasTitles())
        return;
    for (const AxisStrip& strip : strips) {
        if (strip.title.isEmpty())
            continue;
        const Written& title = Text(strip.title, ChartColor::Title);
        const int x = strip.left ? Px(Padding) : strip.area.left() + Px(Gap + TickLength);
        Put(painter, x, Px(Padding) / 2, title);
    }
}

void ChartFrame::DrawTime(QPainter& painter, QSize size, const ColumnGrid& grid, std::int64_t firstColumn) {
    const int top = plot.bottom() + 1;
    const int line = std::max(1, Px(1));
    int free = -size.width(); // behind the label before
    for (std::int64_t tick = time.ticks.first; tick <= time.ticks.last; ++tick) {
        const std::int64_t column = grid.ColumnOf(time.step.At(tick) + grid.width * 1e-6) - firstColumn;
        const auto offset = static_cast<int>(std::clamp<std::int64_t>(column, 0, plot.width()));
        const int x = plot.left() + offset;
        const Written& label = Label(tick, time);
        const int labelX = std::min(x - label.width() / 2, size.width() - label.width());
        painter.fillRect(x, top + line, line, Px(TickLength), QColor(ChartColor::Border));
        if (labelX < free)
            continue;
        Put(painter, labelX, top + Px(Gap), label);
        free = labelX + label.width() + Px(TimeLabelGap) / 2;
    }
    const int titleTop = top + Px(Gap) + lineHeight;
    if (time.title.isEmpty() || titleTop + lineHeight > size.height())
        return;
    const Written& title = Text(time.title, ChartColor::Title);
    Put(painter, plot.center().x() - title.width() / 2, titleTop, title);
}

} // namespace tracelet
