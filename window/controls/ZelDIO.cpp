#include "window/controls/ZelDIO.h"

#include "core/base/RunTimeError.h"
#include "core/input/DriverCall.h"
#include "window/controls/DevicePicker.h"

#include <memory>

namespace tracelet {

ZelDIO::ZelDIO(QObject* parent) : QObject(parent) {}
ZelDIO::~ZelDIO() = default;

void ZelDIO::SetBoards(const BoardList& boards) {
    selection.SetBoards(boards.digital);
    errorText.clear();
}

void ZelDIO::AddBoards(const BoardList& boards) {
    selection.AddBoards(boards.digital);
}

std::int32_t ZelDIO::DeviceNumber() const {
    return selection.Number();
}

void ZelDIO::SetDeviceNumber(std::int32_t number) {
    const std::shared_ptr<DigitalBoard> board = selection.Find(number);
    if (board && number == selection.Number())
        return;
    if (board)
        CallDriver([&] { board->Open(); });
    selection.Select(number);
    errorText.clear();
}

QString ZelDIO::DeviceName() const {
    return QString::fromStdString(selection.Info().name);
}

void ZelDIO::SelectDevice(QWidget* owner) {
    emit Picking();
    if (const auto picked = PickBoard(selection.Entries(), selection.Number(), owner))
        SetDeviceNumber(*picked);
}

std::int32_t ZelDIO::MaxPortCount() const {
    return selection.Info().portCount;
}

bool ZelDIO::ReadPorts(std::int32_t start, std::int32_t count, std::vector<std::uint8_t>& states) {
    states.clear();
    errorText.clear();
    try {
        if (!selection)
            throw RunTimeError("No digital device is selected");
        if (start < 0 || count < 0 || start > MaxPortCount() || count > MaxPortCount() - start)
            throw RunTimeError("The device has no such digital ports");
        states.resize(static_cast<std::size_t>(count));
        if (count > 0)
            CallDriver([&] { selection->ReadPorts(start, states); });
        return true;
    } catch (const std::exception& error) {
        errorText = QString::fromStdString(error.what());
        states.clear();
        return false;
    }
}

QString ZelDIO::ErrorText() const {
    return errorText;
}

} // namespace tracelet
