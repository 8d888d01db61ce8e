#include "window/controls/DevicePicker.h"

#include "window/aids/EnterPresses.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace tracelet {
namespace {

constexpr int NameColumn = 1;

QString Name(const std::string& name, bool simulated) {
    const QString text = QString::fromStdString(name);
    return simulated ? text + QStringLiteral(" (simulated)") : text;
}

template <typename BoardType, typename Columns>
std::vector<DevicePicker::Row> Rows(const std::vector<BoardEntry<BoardType>>& boards,
                                    const Columns& columns) {
    std::vector<DevicePicker::Row> rows;
    for (const auto& entry : boards) {
        DevicePicker::Row row;
        row.texts << QString::fromStdString(entry.driver) << Name(entry.name, entry.simulated);
        if (entry.board)
            row.texts << columns(entry.board->Info());
        else
            row.reason =
                entry.reason.empty() ? QObject::tr("cannot be used") : QString::fromStdString(entry.reason);
        rows.push_back(row);
    }
    return rows;
}

std::optional<std::int32_t> Pick(DevicePicker& picker) {
    if (picker.exec() != QDialog::Accepted || picker.Selected() < 0)
        return std::nullopt;
    return picker.Selected();
}

} // namespace

DevicePicker::DevicePicker(const QStringList& columns, const std::vector<Row>& rows, std::int32_t selected,
                           QWidget* owner)
    : QDialog(owner) {
    setObjectName(QStringLiteral("DevicePicker"));
    setWindowTitle(tr("Select Device"));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    BuildList(columns, rows);
    auto* caption = new QLabel(tr("&Boards"));
    caption->setBuddy(lstBoards);
    layout->addWidget(caption);
    layout->addWidget(lstBoards);
    BuildButtons();
    if (selected >= 0 && selected < lstBoards->topLevelItemCount())
        lstBoards->setCurrentItem(lstBoards->topLevelItem(selected));
    OKButton->setEnabled(Selected() >= 0);
    FitToList();
    lstBoards->setFocus();
}

void DevicePicker::BuildList(const QStringList& columns, const std::vector<Row>& rows) {
    lstBoards = new QTreeWidget;
    lstBoards->setObjectName(QStringLiteral("lstBoards"));
    lstBoards->setAccessibleName(tr("Boards"));
    lstBoards->setToolTip(tr("Boards of this machine; a double click chooses one"));
    lstBoards->setHeaderLabels(columns);
    lstBoards->setRootIsDecorated(false);
    lstBoards->setUniformRowHeights(true);
    lstBoards->setAllColumnsShowFocus(true);
    lstBoards->header()->setSectionsMovable(false);
    lstBoards->header()->setStretchLastSection(false);
    lstBoards->header()->setMinimumSectionSize(fontMetrics().averageCharWidth() * 14);
    lstBoards->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    lstBoards->header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    for (int column = NameColumn + 1; column < lstBoards->columnCount(); ++column)
        lstBoards->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    for (const Row& row : rows)
        AddRow(row);
    connect(lstBoards, &QTreeWidget::itemSelectionChanged, this,
            [this] { OKButton->setEnabled(Selected() >= 0); });
    connect(lstBoards, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        if (!item->isDisabled())
            accept();
    });
}

void DevicePicker::AddRow(const Row& row) {
    auto* item = new QTreeWidgetItem(lstBoards, row.texts);
    for (int column = NameColumn + 1; column < lstBoards->columnCount(); ++column)
        item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    if (!row.reason.isEmpty()) {
        item->setText(NameColumn, item->text(NameColumn) + QStringLiteral(": ") + row.reason);
        item->setToolTip(NameColumn, row.reason);
        item->setDisabled(true);
    }
    const QFontMetrics metrics = fontMetrics();
    item->setSizeHint(NameColumn,
                      {metrics.horizontalAdvance(item->text(NameColumn)) + 12, metrics.height() + 8});
}

void DevicePicker::BuildButtons() {
    auto* buttons = new QDialogButtonBox;
    OKButton = buttons->addButton(tr("&OK"), QDialogButtonBox::AcceptRole);
    OKButton->setObjectName(QStringLiteral("OKButton"));
    OKButton->setDefault(true);
    OKButton->setToolTip(tr("Use the board"));
    BtnCancel = buttons->addButton(tr("&Cancel"), QDialogButtonBox::RejectRole);
    BtnCancel->setObjectName(QStringLiteral("BtnCancel"));
    BtnCancel->setToolTip(tr("Keep the board in use"));
    EnterPresses(BtnCancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout()->addWidget(buttons);
}

// Wide enough for every text, high enough for about ten boards.
void DevicePicker::FitToList() {
    constexpr int NameMargin = 32;
    constexpr int MostRows = 12;
    const QAbstractItemView& list = *lstBoards;
    int width = NameMargin;
    for (int column = 0; column < lstBoards->columnCount(); ++column)
        width += std::max({list.sizeHintForColumn(column), lstBoards->header()->sectionSizeHint(column),
                           lstBoards->header()->minimumSectionSize()});
    const int rows = std::clamp(lstBoards->topLevelItemCount(), 4, MostRows);
    const int rowHeight = std::max(list.sizeHintForRow(0), fontMetrics().height());
    const int height = lstBoards->header()->sizeHint().height() + (rows + 1) * rowHeight;
    lstBoards->setMinimumSize(std::clamp(width, 420, 800), height);
}

std::int32_t DevicePicker::Selected() const {
    const QList<QTreeWidgetItem*> items = lstBoards->selectedItems();
    if (items.isEmpty() || items.front()->isDisabled())
        return -1;
    return lstBoards->indexOfTopLevelItem(items.front());
}

std::optional<std::int32_t> PickBoard(const std::vector<BoardEntry<AnalogBoard>>& boards,
                                      std::int32_t selected, QWidget* owner) {
    const auto columns = [](const AnalogBoardInfo& info) {
        return QStringList{QString::number(info.channelCount), QObject::tr("%1 bits").arg(info.resolution)};
    };
    DevicePicker picker(
        {QObject::tr("Driver"), QObject::tr("Name"), QObject::tr("Channels"), QObject::tr("Resolution")},
        Rows(boards, columns), selected, owner);
    return Pick(picker);
}

std::optional<std::int32_t> PickBoard(const std::vector<BoardEntry<DigitalBoard>>& boards,
                                      std::int32_t selected, QWidget* owner) {
    const auto columns = [](const DigitalBoardInfo& info) {
        return QStringList{QString::number(info.portCount)};
    };
    DevicePicker picker({QObject::tr("Driver"), QObject::tr("Name"), QObject::tr("Ports")},
                        Rows(boards, columns), selected, owner);
    return Pick(picker);
}

} // namespace tracelet
