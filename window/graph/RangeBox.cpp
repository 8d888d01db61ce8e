#include "window/graph/RangeBox.h"

#include "core/base/Convert.h"
#include "core/base/NumberText.h"

#include <QPainter>
#include <QStyleOptionFrame>

#include <cmath>

namespace tracelet {

void RangeBox::Show(double end, double span) {
    const double step = std::pow(10.0, std::floor(std::log10(span)) - 6);
    const double near = std::nearbyint(end / step) * step;
    exact = end;
    shown = QString::fromStdString(NumberText(end));
    rounded = std::isfinite(near) ? QString::fromStdString(NumberText(near)) : shown;
    setText(shown);
}

double RangeBox::Number() const {
    return text() == shown ? exact : TextToDouble(text().toStdString());
}

QString RangeBox::Drawn() const {
    return hasFocus() || text() != shown ? text() : rounded;
}

void RangeBox::paintEvent(QPaintEvent* event) {
    if (Drawn() == text()) {
        QLineEdit::paintEvent(event);
        return;
    }
    constexpr int Margin = 2; // as the style's own text has
    QStyleOptionFrame option;
    initStyleOption(&option);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
    const QRect room = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    style()->drawItemText(&painter, room.adjusted(Margin, 0, -Margin, 0), Qt::AlignLeft | Qt::AlignVCenter,
                          palette(), isEnabled(), rounded, QPalette::Text);
}

} // namespace tracelet
