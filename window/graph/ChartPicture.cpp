#include "window/graph/ChartPicture.h"

#include "core/base/Convert.h"
#include "window/chart/ChartFrame.h"
#include "window/chart/ZelGraph.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr int ScreenDots = 96; ///< an inch
constexpr int FineDots = 300;
constexpr double FineScale = static_cast<double>(FineDots) / ScreenDots;

// Pixels.
constexpr int Margin = 8;
constexpr int StrokeWidth = 18;
constexpr int StrokeHeight = 2;
constexpr int Gap = 6;         ///< behind a stroke
constexpr int EntryGap = 16;   ///< behind a name
constexpr int LineSpacing = 4; ///< between lines of text

} // namespace

ChartPicture::ChartPicture(ZelGraph& shown, const QString& text)
    : graph(shown), caption(text), lineHeight(shown.fontMetrics().height() + LineSpacing) {
    ArrangeNames();
}

void ChartPicture::ArrangeNames() {
    QPoint at(Margin, lineHeight + Margin + graph.height());
    for (int i = 0; i < graph.PlotCount(); ++i) {
        if (!graph.PlotVisible(i))
            continue;
        const PlotAttributes& plot = graph.Plot(i);
        const int width = StrokeWidth + Gap + graph.fontMetrics().horizontalAdvance(plot.name);
        if (at.x() > Margin && at.x() + width > graph.width() - Margin)
            at = {Margin, at.y() + lineHeight};
        entries.push_back({plot.name, ReadableOnChart(ResolvedColor(plot.color).rgb()), at});
        at.rx() += width + EntryGap;
    }
    size = {graph.width(), at.y() + (entries.empty() ? 0 : lineHeight) + Margin / 2};
}

void ChartPicture::Paint(QPainter& painter, double scale) const {
    painter.fillRect(QRectF(QPointF(), QSizeF(size) * scale), QColor(ChartColor::Ground));
    QFont font = graph.font();
    font.setPixelSize(CLng(QFontInfo(font).pixelSize() * scale));
    painter.setFont(font);
    painter.setPen(QColor(ChartColor::Label));
    const QRectF line(Margin * scale, Margin * scale / 2, (size.width() - 2 * Margin) * scale,
                      lineHeight * scale);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, caption);
    PaintNames(painter, scale);
    painter.translate(0, CLng((lineHeight + Margin / 2.0) * scale));
    graph.DrawPicture(painter, scale);
}

void ChartPicture::PaintNames(QPainter& painter, double scale) const {
    for (const Entry& entry : entries) {
        const QRectF stroke(entry.at.x(), entry.at.y() + (lineHeight - StrokeHeight) / 2.0, StrokeWidth,
                            StrokeHeight);
        painter.fillRect(QRectF(stroke.topLeft() * scale, stroke.size() * scale), QColor(entry.color));
        painter.setPen(QColor(entry.color));
        const QRectF name((entry.at.x() + StrokeWidth + Gap) * scale, entry.at.y() * scale,
                          size.width() * scale, lineHeight * scale);
        painter.drawText(name, Qt::AlignLeft | Qt::AlignVCenter, entry.name);
    }
}

QImage ChartPicture::Image() const {
    const double scale = graph.devicePixelRatioF();
    QImage image((QSizeF(size) * scale).toSize(), QImage::Format_RGB32);
    image.fill(QColor(ChartColor::Ground));
    QPainter painter(&image);
    Paint(painter, scale);
    return image;
}

QByteArray ChartPicture::FileBytes(const QString& name) const {
    const QString ending = QFileInfo(name).suffix().toLower();
    if (ending == u"png")
        return Png();
    if (ending == u"svg")
        return Svg();
    return ending == u"pdf" ? Pdf() : QByteArray();
}

QByteArray ChartPicture::Png() const {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    Image().save(&buffer, "PNG");
    return bytes;
}

QByteArray ChartPicture::Svg() const {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setTitle(caption);
    generator.setResolution(ScreenDots);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(), size));
    QPainter painter(&generator);
    painter.setRenderHint(QPainter::SmoothPixmapTransform); // of who shows it
    painter.scale(1 / FineScale, 1 / FineScale);
    Paint(painter, FineScale);
    painter.end();
    return bytes;
}

QByteArray ChartPicture::Pdf() const {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(FineDots);
    writer.setTitle(caption);
    writer.setPageSize(QPageSize(QSizeF(size) / ScreenDots, QPageSize::Inch, {}, QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    Paint(painter, FineScale);
    painter.end();
    return bytes;
}

} // namespace tracelet
