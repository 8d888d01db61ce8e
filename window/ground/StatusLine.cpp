#include "window/ground/StatusLine.h"

#include "window/ground/Shading.h"

#include <QPainter>
#include <QStringList>

#include <limits>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr int Gap = 18; // pixels between two facts

// Red of a warning and of the mark of recording.
QColor Red(const QPalette& palette) {
    return IsDark(palette) ? QColor(0xFF8A80) : QColor(0xC62828);
}

} // namespace

StatusLine::StatusLine(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

void StatusLine::Show(const SessionStatus& status) {
    std::vector<StatusField> news = StatusFields(status);
    if (news == fields)
        return;
    fields = std::move(news);
    QStringList texts;
    for (const StatusField& field : fields)
        texts.append(QString::fromStdString(field.text));
    setText(texts.join(u" \u00b7 "_s));
    setToolTip(texts.join(u'\n'));
    updateGeometry();
    update();
}

// Digits take the same room each, so that what stands behind a number does not move with it.
int StatusLine::WidthOf(const std::string& text) const {
    QString steady = QString::fromStdString(text);
    for (QChar& character : steady) {
        if (character.isDigit())
            character = u'0';
    }
    return fontMetrics().horizontalAdvance(steady);
}

std::vector<StatusField> StatusLine::Fitting(int room) const {
    std::vector<StatusField> fitting = fields;
    Shorten(fitting, room, Gap, [this](const std::string& text) { return WidthOf(text); });
    return fitting;
}

int StatusLine::WidthIn(int room) const {
    int right = 0;
    for (const StatusField& field : Fitting(room))
        right += WidthOf(field.text) + Gap;
    return right;
}

QSize StatusLine::sizeHint() const {
    return {WidthIn(std::numeric_limits<int>::max()), fontMetrics().height()};
}

QSize StatusLine::minimumSizeHint() const {
    return {WidthIn(0), fontMetrics().height()};
}

void StatusLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    int left = 0;
    const auto draw = [&](const QString& text, const QColor& color) {
        painter.setPen(color);
        painter.drawText(QRect(left, 0, width() - left, height()), Qt::AlignLeft | Qt::AlignVCenter, text);
    };
    for (const StatusField& field : Fitting(width())) {
        const QString shown =
            fontMetrics().elidedText(QString::fromStdString(field.text), Qt::ElideRight, width() - left);
        const bool isWarning = field.tone == StatusField::Tone::Warning;
        draw(shown, isWarning ? Red(palette()) : palette().color(foregroundRole()));
        if (field.tone == StatusField::Tone::Recording)
            draw(shown.first(1), Red(palette())); // its mark
        left += WidthOf(field.text) + Gap;
    }
}

} // namespace tracelet
