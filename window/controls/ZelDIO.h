#pragma once

#include "core/boards/BoardList.h"
#include "window/controls/BoardSelection.h"

#include <QObject>
#include <QString>

#include <vector>

namespace tracelet {

/// Digital input control.
class ZelDIO : public QObject {
    Q_OBJECT
    Q_PROPERTY(int DeviceNumber READ DeviceNumber WRITE SetDeviceNumber)
    Q_PROPERTY(QString DeviceName READ DeviceName)
    Q_PROPERTY(int MaxPortCount READ MaxPortCount)

public:
    explicit ZelDIO(QObject* parent = nullptr);
    ~ZelDIO() override;

    void SetBoards(const BoardList& boards);
    /// The boards so far in their places, and those that were found since; the selection stays.
    void AddBoards(const BoardList& boards);

    [[nodiscard]] std::int32_t DeviceNumber() const;
    void SetDeviceNumber(std::int32_t number);
    [[nodiscard]] QString DeviceName() const;
    void SelectDevice(QWidget* owner); ///< shows the board picker; Cancel keeps the selection
    [[nodiscard]] std::int32_t MaxPortCount() const;

    /// Reads `count` ports from `start` on into `states` (resized to `count`), bit n = line n. False when
    /// the board fails or has no such ports; ErrorText then says why and `states` is empty.
    [[nodiscard]] bool ReadPorts(std::int32_t start, std::int32_t count, std::vector<std::uint8_t>& states);
    [[nodiscard]] const std::shared_ptr<DigitalBoard>& Board() const { return selection.Board(); }
    [[nodiscard]] QString ErrorText() const; ///< why the last reading failed, "" when it did not

signals:
    /// Before the board picker is shown: the moment to look for boards.
    void Picking();

private:
    BoardSelection<DigitalBoard> selection;
    QString errorText;
};

} // namespace tracelet
