#include "window/ground/NoticeLine.h"

#include "window/ground/Named.h"
#include "window/ground/Shading.h"

#include <QDesktopServices>
#include <QPainter>
#include <QToolButton>
#include <QUrl>

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
      BtnNoticeLater(Link("BtnNoticeLater", u"Later"_s, u"Ask again at the next start"_s, this)),
      BtnNoticeFolder(Link("BtnNoticeFolder", {}, u"Open the folder"_s, this)) {
    setTextFormat(Qt::PlainText);
    connect(BtnNoticeFolder, &QToolButton::clicked, this, &NoticeLine::OpenFolder);
}

QSize NoticeLine::sizeHint() const {
    const int width = text().isEmpty() ? 0 : fontMetrics().horizontalAdvance(text()) + 1;
    return {width + WidthOfLinks(), fontMetrics().height()};
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

void NoticeLine::ShowFolder(const QString& text, const QString& path) {
    Tell(text, false, path);
}

void NoticeLine::Tell(const QString& text, bool isAWarning, const QString& path) {
    notice = text;
    folder = path;
    isWarning = isAWarning;
    Refresh();
}

void NoticeLine::OpenFolder() {
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        Show(u"This desktop cannot open "_s + folder);
}

void NoticeLine::Offer(const QString& text) {
    offer = text;
    Refresh();
}

void NoticeLine::Refresh() {
    setText(IsOffering() ? offer : notice);
    const QString whole = folder.isEmpty() ? text() : text() + u' ' + folder;
    setToolTip(whole.isEmpty() ? QString()
                               : u"<p>%1</p>"_s.arg(whole.toHtmlEscaped())); // wraps, unlike plain text
    BtnNoticeFolder->setText(folder);
    for (QToolButton* link : {BtnNoticeSave, BtnNoticeDiscard, BtnNoticeLater})
        link->setVisible(IsOffering());
    BtnNoticeFolder->setVisible(!folder.isEmpty());
    int left = TextWidth();
    for (QToolButton* link : Links()) {
        const QSize size = link->sizeHint().boundedTo({std::max(width() - left - Gap, 0), height()});
        link->setGeometry(left + Gap, (height() - size.height()) / 2, size.width(), size.height());
        left = link->geometry().right();
    }
    updateGeometry();
    update();
}

std::vector<QToolButton*> NoticeLine::Links() const {
    if (IsOffering())
        return {BtnNoticeSave, BtnNoticeDiscard, BtnNoticeLater};
    if (!folder.isEmpty())
        return {BtnNoticeFolder};
    return {};
}

int NoticeLine::WidthOfLinks() const {
    int links = 0;
    for (const QToolButton* link : Links())
        links += Gap + link->sizeHint().width();
    return links;
}

// What the links leave of the line.
int NoticeLine::TextWidth() const {
    return std::clamp(fontMetrics().horizontalAdvance(text()) + 1, 0, std::max(width() - WidthOfLinks(), 0));
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
