#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

#include <vector>

class QPainter;

namespace tracelet {

class ZelGraph;

/// A chart as it is seen, with what a reader needs who has nothing but the picture: a line of text above and
/// the names of the plots below, in their colours. Where a picture is made of shapes and text, so are axes
/// and names; traces are an image of 300 dots an inch, as drawing millions of samples as shapes serves
/// nobody.
class ChartPicture {
public:
    ChartPicture(ZelGraph& graph, const QString& caption);

    [[nodiscard]] QSize Size() const { return size; } ///< pixels of the screen, 96 an inch
    /// Paints it with so many dots a pixel.
    void Paint(QPainter& painter, double scale) const;

    [[nodiscard]] QImage Image() const; ///< in the screen's own pixels
    /// What a file of it holds, by the name's ending; empty for one that is none of ".png", ".svg", ".pdf".
    [[nodiscard]] QByteArray FileBytes(const QString& name) const;

private:
    struct Entry {
        QString name;
        QRgb color = 0;
        QPoint at; ///< pixels, of its left upper corner
    };
    void ArrangeNames();
    void PaintNames(QPainter& painter, double scale) const;
    [[nodiscard]] QByteArray Png() const;
    [[nodiscard]] QByteArray Svg() const;
    [[nodiscard]] QByteArray Pdf() const;

    ZelGraph& graph;
    QString caption;
    int lineHeight = 0;
    QSize size;
    std::vector<Entry> entries;
};

} // namespace tracelet
