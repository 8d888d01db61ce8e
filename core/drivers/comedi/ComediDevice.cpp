#include "core/drivers/comedi/ComediDevice.h"

#include "core/drivers/comedi/ComediMapping.h"

#include <cerrno>
#include <utility>

namespace tracelet {
namespace {

RunTimeError ComediError(int errorNumber) {
    return RunTimeError(BoardErrorText(errorNumber, comedi_strerror(errorNumber)));
}

} // namespace

RunTimeError LastComediError() {
    return ComediError(comedi_errno());
}

ComediDevice::ComediDevice(std::string deviceNode, std::string driverName, std::string boardName)
    : node(std::move(deviceNode)), driver(std::move(driverName)), board(std::move(boardName)) {}

comedi_t* ComediDevice::Get() {
    if (handle)
        return handle.get();
    ComediHandle opened(comedi_open(node.c_str()));
    if (!opened)
        throw LastComediError();
    if (comedi_get_driver_name(opened.get()) != driver || comedi_get_board_name(opened.get()) != board)
        throw ComediError(ENODEV);
    handle = std::move(opened);
    return handle.get();
}

void ComediDevice::Fail() {
    Fail(comedi_errno());
}

void ComediDevice::Fail(int errorNumber) {
    if (errorNumber == ENODEV || errorNumber == ENXIO)
        handle.reset();
    throw ComediError(errorNumber);
}

} // namespace tracelet
