#include "window/ground/NoticeLine.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace tracelet {

NoticeLine::NoticeLine(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

QSize NoticeLine::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

void NoticeLine::Show(const QString& text) {
    setText(text);
    setToolTip(text.isEmpty() ? QString()
                              : u"<p>%1</p>"_s.arg(text.toHtmlEscaped())); // wraps, unlike plain text
}

void NoticeLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

} // namespace tracelet
