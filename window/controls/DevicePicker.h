#pragma once

#include "core/boards/BoardList.h"

#include <QDialog>
#include <QStringList>

#include <optional>
#include <vector>

class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace tracelet {

/// Modal list of boards to choose from.
class DevicePicker : public QDialog {
    Q_OBJECT

public:
    /// One board: a text for each column. An empty `reason` means that it can be chosen.
    struct Row {
        QStringList texts;
        QString reason;
    };

    /// `selected` is the row that is selected at first, -1 for none.
    DevicePicker(const QStringList& columns, const std::vector<Row>& rows, std::int32_t selected,
                 QWidget* owner);

    /// The selected row, -1 when there is none.
    [[nodiscard]] std::int32_t Selected() const;

private:
    void BuildList(const QStringList& columns, const std::vector<Row>& rows);
    void BuildButtons();
    void AddRow(const Row& row);
    void FitToList();

    QTreeWidget* lstBoards = nullptr;
    QPushButton* OKButton = nullptr;
    QPushButton* BtnCancel = nullptr;
};

/// Lets the user choose a board; nothing when the dialog was cancelled.
[[nodiscard]] std::optional<std::int32_t> PickBoard(const std::vector<BoardEntry<AnalogBoard>>& boards,
                                                    std::int32_t selected, QWidget* owner);
[[nodiscard]] std::optional<std::int32_t> PickBoard(const std::vector<BoardEntry<DigitalBoard>>& boards,
                                                    std::int32_t selected, QWidget* owner);

} // namespace tracelet
