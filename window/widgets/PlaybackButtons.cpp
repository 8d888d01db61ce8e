#include "window/widgets/PlaybackButtons.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace tracelet {

namespace {

constexpr QSize ButtonSize{40, 34};
constexpr double GlyphHeight = 13.0;

void PaintButton(QAbstractButton& button, Glyph glyph) {
    QStyleOptionButton option;
    option.initFrom(&button);
    option.state |= button.isDown() || button.isChecked() ? QStyle::State_Sunken : QStyle::State_Raised;
    QPainter painter(&button);
    button.style()->drawControl(QStyle::CE_PushButton, &option, &painter, &button);
    const QRectF bounds(button.rect());
    const QRectF sign(bounds.left(), bounds.center().y() - GlyphHeight / 2.0, bounds.width(), GlyphHeight);
    DrawGlyph(painter, glyph, sign, button.palette().color(QPalette::ButtonText));
}

} // namespace

PlayButton::PlayButton(QWidget* parent) : QCheckBox(parent) {
    setAttribute(Qt::WA_Hover);
}

QSize PlayButton::sizeHint() const {
    return ButtonSize;
}

bool PlayButton::hitButton(const QPoint& position) const {
    return rect().contains(position);
}

void PlayButton::paintEvent(QPaintEvent*) {
    PaintButton(*this, text() == u";" ? Glyph::Pause : Glyph::Play);
}

GlyphButton::GlyphButton(Glyph sign, QWidget* parent) : QPushButton(parent), glyph(sign) {}

QSize GlyphButton::sizeHint() const {
    return ButtonSize;
}

void GlyphButton::paintEvent(QPaintEvent*) {
    PaintButton(*this, glyph);
}

} // namespace tracelet
