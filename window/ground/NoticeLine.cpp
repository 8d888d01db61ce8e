#include "window/ground/NoticeLine.h"

#include "window/ground/Named.h"
#include "window/ground/Shading.h"

#include <QPainter>
#include <QToolButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr int Gap = 6; // pixels in front of a link

QToolButton* Link(const char* name, const QString& text, const QString& accessibleName, QWidget* parent) {
    auto* link = Named<QToolButton>(name, parent);
    link->setText(text);
    link->setAccessibleName(accessibleName);
    link->setToolTip(accessibleName);
    link->setAutoRaise(true);
    QFont font = link->font();
    font.setUnderline(true);
    link->setFont(font);
    link->hide();
    return link;
}

} // namespace

NoticeLine::NoticeLine(QWidget* parent)
    : QLabel(parent), BtnNoticeSave(Link("BtnNoticeSave", u"Save…"_s, u"Save the unsaved recording"_s, this)),
      BtnNoticeDiscard(Link("BtnNoticeDiscard", u"Discard"_s, u"Delete the unsaved recording"_s, this)),
      BtnNoticeLater(Link("BtnNoticeLater", u"Later"_s, u"Ask again at the next start"_s, this)) {
    setTextFormat(Qt::PlainText);
}

QSize NoticeLine::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

void NoticeLine::Show(const QString& text) {
    Tell(text, false);
}

void NoticeLine::Warn(const QString& text) {
    Tell(text, true);
}

void NoticeLine::Tell(const QString& text, bool isAWarning) {
    notice = text;
    isWarning = isAWarning;
    Refresh();
}

void NoticeLine::Offer(const QString& text) {
    offer = text;
    Refresh();
}

void NoticeLine::Refresh() {
    setText(IsOffering() ? offer : notice);
    setToolTip(text().isEmpty() ? QString()
                                : u"<p>%1</p>"_s.arg(text().toHtmlEscaped())); // wraps, unlike plain text
    int left = TextWidth();
    for (QToolButton* link : {BtnNoticeSave, BtnNoticeDiscard, BtnNoticeLater}) {
        const QSize size = link->sizeHint().boundedTo({width(), height()});
        link->setGeometry(left + Gap, (height() - size.height()) / 2, size.width(), size.height());
        left = link->geometry().right();
        link->setVisible(IsOffering());
    }
    update();
}

// What the links leave of the line.
int NoticeLine::TextWidth() const {
    int room = width();
    if (IsOffering()) {
        for (const QToolButton* link : {BtnNoticeSave, BtnNoticeDiscard, BtnNoticeLater})
            room -= Gap + link->sizeHint().width();
    }
    return std::clamp(fontMetrics().horizontalAdvance(text()) + 1, 0, std::max(room, 0));
}

void NoticeLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QColor warning(IsDark(palette()) ? 0xFF8A80 : 0xC62828);
    painter.setPen(isWarning ? warning : palette().color(foregroundRole()));
    const QRect place(0, 0, TextWidth(), height());
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
}

void NoticeLine::resizeEvent(QResizeEvent*) {
    Refresh();
}

} // namespace tracelet
