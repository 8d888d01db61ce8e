#include "window/labels/ValuePanel.h"

#include <QFontMetrics>
#include <QPainter>
#include <QToolButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tracelet {

namespace {

constexpr int Padding = 6;
constexpr int ColumnGap = 8;

} // namespace

ValuePanel::ValuePanel(const QString& name, const QString& firstColumn, const QString& column,
                       QWidget* parent)
    : QWidget(parent), firstTemplate(firstColumn), otherTemplate(column) {
    setObjectName(name);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setCursor(Qt::ArrowCursor);
    setMouseTracking(true); // the chart follows the pointer
    FollowFont();
}

QToolButton* ValuePanel::AddButton(const QString& name, const QString& text, const QString& toolTip) {
    auto* button = new QToolButton(this);
    button->setObjectName(name);
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setAutoRaise(true);
    button->setMouseTracking(true);
    buttons.push_back(button);
    PlaceButtons();
    return button;
}

int ValuePanel::LineHeight() const {
    return fontMetrics().height() + 1;
}

int ValuePanel::ButtonWidth() const {
    int width = 0;
    for (const QToolButton* button : buttons)
        width += button->width();
    return width;
}

int ValuePanel::WidthOf(int columns) const {
    int width = 2 * Padding + (columns - 1) * ColumnGap;
    for (int i = 0; i < columns; ++i)
        width += ColumnWidth(static_cast<std::size_t>(i));
    return width;
}

int ValuePanel::HeightOf(int count) const {
    return (count + 1) * LineHeight() + 2 * Padding;
}

void ValuePanel::FollowFont() {
    if (chartFont == parentWidget()->font() && firstWidth > 0)
        return;
    chartFont = parentWidget()->font();
    QFont own = chartFont;
    own.setPixelSize(std::max(9, QFontInfo(chartFont).pixelSize() - 1));
    setFont(own);
    firstWidth = fontMetrics().horizontalAdvance(firstTemplate);
    otherWidth = fontMetrics().horizontalAdvance(otherTemplate);
    widths.clear();
    WidenColumns();
    PlaceButtons();
    image = QImage();
}

int ValuePanel::ColumnWidth(std::size_t column) const {
    if (column < widths.size())
        return widths[column];
    return column == 0 ? firstWidth : otherWidth;
}

void ValuePanel::WidenColumns() {
    for (const Row& row : rows) {
        while (widths.size() < static_cast<std::size_t>(row.cells.size()))
            widths.push_back(ColumnWidth(widths.size()));
        for (std::size_t i = 1; i < static_cast<std::size_t>(row.cells.size()); ++i)
            widths[i] =
                std::max(widths[i], fontMetrics().horizontalAdvance(row.cells[static_cast<qsizetype>(i)]));
    }
}

void ValuePanel::PlaceButtons() {
    int right = width();
    std::for_each(buttons.rbegin(), buttons.rend(), [&](QToolButton* button) {
        const int size = LineHeight() + 2;
        button->resize(std::max(size, button->text().isEmpty() ? 0 : button->sizeHint().width()), size);
        right -= button->width();
        button->move(right, 1);
    });
}

void ValuePanel::Show(const QString& newHeading, std::vector<Row> newRows) {
    heading = newHeading;
    rows = std::move(newRows);
    WidenColumns();
    image = QImage();
    update();
}

void ValuePanel::SetFolded(bool value) {
    folded = value;
    image = QImage();
    update();
}

ValuePanel::Fit ValuePanel::FittingRows() const {
    const auto lines = static_cast<std::size_t>(std::max(0, (height() - 2 * Padding) / LineHeight() - 1));
    if (folded || lines == 0)
        return {};
    Fit fit{std::min(rows.size(), lines), 0};
    if (fit.rows < rows.size())
        --fit.rows; // its line says how many more
    fit.more = static_cast<int>(std::count_if(rows.begin() + static_cast<std::ptrdiff_t>(fit.rows),
                                              rows.end(), [](const Row& row) { return row.plot; }));
    return fit;
}

static QString MoreText(int more) {
    return u"\u2026 %1 more"_s.arg(more);
}

QStringList ValuePanel::Lines() const {
    if (folded)
        return {};
    QStringList lines{heading};
    const auto [count, more] = FittingRows();
    for (std::size_t i = 0; i < count; ++i)
        lines.append(rows[i].cells.join(u'\t'));
    if (more > 0)
        lines.append(MoreText(more));
    return lines;
}

void ValuePanel::RenderRow(QPainter& painter, const Row& row, int top) const {
    painter.setPen(QColor(row.color));
    int x = Padding;
    for (std::size_t i = 0; i < static_cast<std::size_t>(row.cells.size()); ++i) {
        if (x + widths[i] > width())
            return;
        const QString& cell = row.cells[static_cast<qsizetype>(i)];
        const QRect place(x, top, widths[i], LineHeight());
        if (i == 0)
            painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                             fontMetrics().elidedText(cell, Qt::ElideRight, widths[i]));
        else
            painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter, cell);
        x += widths[i] + ColumnGap;
    }
}

void ValuePanel::Render() {
    const double scale = devicePixelRatioF();
    image = QImage((QSizeF(size()) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(palette().color(QPalette::Window));
    if (folded)
        return;
    QPainter painter(&image);
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::WindowText));
    const int room = width() - Padding - ButtonWidth();
    painter.drawText(QRect(Padding, Padding, room, LineHeight()), Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(heading, Qt::ElideRight, room));
    int top = Padding + LineHeight();
    const auto [count, more] = FittingRows();
    for (std::size_t i = 0; i < count; ++i, top += LineHeight())
        RenderRow(painter, rows[i], top);
    painter.setPen(palette().color(QPalette::WindowText));
    if (more > 0)
        painter.drawText(QRect(Padding, top, width(), LineHeight()), Qt::AlignLeft | Qt::AlignVCenter,
                         MoreText(more));
}

void ValuePanel::paintEvent(QPaintEvent*) {
    if (image.isNull() || image.devicePixelRatio() != devicePixelRatioF())
        Render();
    QPainter(this).drawImage(0, 0, image);
}

void ValuePanel::resizeEvent(QResizeEvent*) {
    image = QImage();
    PlaceButtons();
}

} // namespace tracelet
