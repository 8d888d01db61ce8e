#pragma once

#include "core/boards/Board.h"
#include "core/drivers/comedi/ComediDevice.h"
#include "core/drivers/comedi/ComediMapping.h"

#include <string>
#include <vector>

namespace tracelet {

/// The digital inputs of a Comedi board: the lines of its input subdevices and of those that can be turned to
/// input, which opening does.
class ComediDigitalBoard final : public DigitalBoard {
public:
    /// Looks at a board; without any digital input its port count is 0.
    ComediDigitalBoard(const std::string& node, comedi_t* probed);

    [[nodiscard]] const DigitalBoardInfo& Info() const override { return info; }
    void Open() override;
    void ReadPorts(std::int32_t start, std::span<std::uint8_t> states) override;

private:
    struct Bidirectional {
        unsigned int subdevice = 0;
        unsigned int lines = 0;
    };

    DigitalBoardInfo info;
    std::vector<PortPlace> ports;
    std::vector<Bidirectional> bidirectional;
    bool isOpen = false;
    ComediDevice device;
};

} // namespace tracelet
