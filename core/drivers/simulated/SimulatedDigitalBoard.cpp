#include "core/drivers/simulated/SimulatedDigitalBoard.h"

#include "core/base/RunTimeError.h"
#include "core/boards/DigitalPorts.h"

#include <thread>
#include <utility>

namespace tracelet {

SimulatedDigitalBoard::SimulatedDigitalBoard(DigitalBoardInfo described, SignalClock followed)
    : info(std::move(described)), clock(std::move(followed)) {}

void SimulatedDigitalBoard::Open() {
    CheckPlugged(faults.Get());
    isOpen = true;
}

void SimulatedDigitalBoard::ReadPorts(std::int32_t start, std::span<std::uint8_t> states) {
    const Faults now = faults.Get();
    CheckReading(now);
    if (!isOpen)
        throw RunTimeError("The board is not open");
    RequirePorts(info, start, states.size());
    std::this_thread::sleep_for(now.slow);
    const SignalPlace ordinal = PolledOrdinal(clock, readings);
    std::int32_t port = start;
    for (std::uint8_t& state : states)
        state = SimulatedPort(port++, ordinal);
    ++readings;
}

} // namespace tracelet
