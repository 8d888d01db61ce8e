#include "window/settings/DialogParts.h"

#include "core/base/Convert.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyle>

#include <memory>
#include <utility>

namespace tracelet {

QGridLayout* FrameGrid(QWidget* frame, const QString& widestCaption) {
    constexpr int Gap = 10;
    auto* grid = new QGridLayout(frame);
    grid->setHorizontalSpacing(Gap);
    grid->setVerticalSpacing(QApplication::style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
    grid->setColumnMinimumWidth(CaptionColumn,
                                QFontMetrics(QApplication::font()).horizontalAdvance(widestCaption));
    grid->setColumnStretch(FieldColumn, 1);
    return grid;
}

QLabel* AddRow(QGridLayout* grid, const QString& labelName, const QString& caption, QWidget* field) {
    const int row = grid->rowCount();
    auto* label = Named<QLabel>(labelName, caption);
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(field);
    field->setAccessibleName(caption);
    grid->addWidget(label, row, CaptionColumn);
    grid->addWidget(field, row, FieldColumn);
    return label;
}

QLabel* AddUnit(QGridLayout* grid, const QString& labelName, const QString& unit) {
    auto* label = Named<QLabel>(labelName, unit);
    grid->addWidget(label, grid->rowCount() - 1, UnitColumn);
    return label;
}

QLabel* FactLabel(const QString& name) {
    auto* label = Named<QLabel>(name);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

QLineEdit* NumberBox(const QString& name, const QString& text) {
    auto* box = Named<QLineEdit>(name, text);
    box->setAlignment(Qt::AlignRight);
    return box;
}

std::int32_t LongIn(const QLineEdit* box) {
    return TextToLong(box->text().toStdString());
}

double DoubleIn(const QLineEdit* box) {
    return TextToDouble(box->text().toStdString());
}

void Refill(QComboBox* list, const QStringList& items) {
    const QSignalBlocker quiet(list);
    list->clear();
    list->addItems(items);
    list->setCurrentIndex(-1);
}

void Show(QComboBox* list, int position) {
    const QSignalBlocker quiet(list);
    list->setCurrentIndex(position);
}

void Show(QAbstractButton* button, bool checked) {
    const QSignalBlocker quiet(button);
    button->setChecked(checked);
}

void OnChosen(QComboBox* list, const std::function<void()>& handler) {
    const auto ran = std::make_shared<bool>(false);
    QObject::connect(list, &QComboBox::currentIndexChanged, list, [list, ran, handler] {
        *ran = true;
        // A user's choice is activated right away; one made by code is not, and must not count for the next.
        QMetaObject::invokeMethod(
            list, [ran] { *ran = false; }, Qt::QueuedConnection);
        handler();
    });
    QObject::connect(list, &QComboBox::activated, list, [ran, handler] {
        if (!std::exchange(*ran, false)) // the item that was selected already
            handler();
    });
}

void OnChosen(QAbstractButton* option, const std::function<void()>& handler) {
    const auto ran = std::make_shared<bool>(false);
    QObject::connect(option, &QAbstractButton::pressed, option, [ran] { *ran = false; });
    QObject::connect(option, &QAbstractButton::toggled, option, [ran, handler](bool on) {
        *ran = true;
        if (on)
            handler();
    });
    QObject::connect(option, &QAbstractButton::clicked, option, [ran, handler] {
        if (!std::exchange(*ran, false)) // it was selected already
            handler();
    });
}

} // namespace tracelet
