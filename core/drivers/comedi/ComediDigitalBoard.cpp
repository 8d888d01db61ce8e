#include "core/drivers/comedi/ComediDigitalBoard.h"

#include "core/base/RunTimeError.h"
#include "core/boards/DigitalPorts.h"

#include <algorithm>
#include <optional>

namespace tracelet {

ComediDigitalBoard::ComediDigitalBoard(const std::string& node, comedi_t* probed)
    : device(node, comedi_get_driver_name(probed), comedi_get_board_name(probed)) {
    info.name = comedi_get_board_name(probed);
    info.driver = comedi_get_driver_name(probed);
    info.mayBlock = true;
    const auto subdevices = static_cast<unsigned int>(std::max(comedi_get_n_subdevices(probed), 0));
    for (unsigned int subdevice = 0; subdevice < subdevices; ++subdevice) {
        const int type = comedi_get_subdevice_type(probed, subdevice);
        if (type != COMEDI_SUBD_DI && type != COMEDI_SUBD_DIO)
            continue;
        const auto lines = static_cast<unsigned int>(std::max(comedi_get_n_channels(probed, subdevice), 0));
        std::ranges::copy(PortsOf(subdevice, lines), std::back_inserter(ports));
        if (type == COMEDI_SUBD_DIO)
            bidirectional.push_back({subdevice, lines});
    }
    info.portCount = static_cast<std::int32_t>(ports.size());
}

void ComediDigitalBoard::Open() {
    if (isOpen)
        return;
    for (const auto& [subdevice, lines] : bidirectional) {
        for (unsigned int line = 0; line < lines; ++line) {
            if (comedi_dio_config(device.Get(), subdevice, line, COMEDI_INPUT) < 0)
                device.Fail();
        }
    }
    (void)device.Get();
    isOpen = true;
}

void ComediDigitalBoard::ReadPorts(std::int32_t start, std::span<std::uint8_t> states) {
    if (!isOpen)
        throw RunTimeError("The board is not open");
    RequirePorts(info, start, states.size());
    // One reading gives 32 lines of a subdevice: all four ports at the same time.
    std::optional<PortPlace> block;
    unsigned int bits = 0;
    for (std::size_t i = 0; i < states.size(); ++i) {
        const PortPlace& port = ports[static_cast<std::size_t>(start) + i];
        const PortPlace wanted{port.subdevice, port.firstLine / 32 * 32, 32};
        if (block != wanted) {
            bits = 0;
            if (comedi_dio_bitfield2(device.Get(), wanted.subdevice, 0, &bits, wanted.firstLine) < 0)
                device.Fail();
            block = wanted;
        }
        states[i] = PortState(port, bits);
    }
}

} // namespace tracelet
