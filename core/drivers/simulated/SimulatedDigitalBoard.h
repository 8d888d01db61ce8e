#pragma once

#include "core/boards/Board.h"
#include "core/drivers/simulated/Faults.h"
#include "core/drivers/simulated/SimulatedSignals.h"

#include <cstdint>

namespace tracelet {

/// A digital board without hardware. Port p of a reading is SimulatedPort(p, ordinal), the ordinal being that
/// of the clock or, without one, the number of readings before it since the board was made. Readings that
/// fail are not counted.
class SimulatedDigitalBoard final : public DigitalBoard {
public:
    explicit SimulatedDigitalBoard(DigitalBoardInfo described, SignalClock followed = {});

    [[nodiscard]] const DigitalBoardInfo& Info() const override { return info; }
    void Open() override;
    void ReadPorts(std::int32_t start, std::span<std::uint8_t> states) override;

    // For tests.

    /// Readings that were taken, so the ordinal of the next one.
    [[nodiscard]] std::uint64_t Readings() const { return readings; }
    void SetFaults(const Faults& value) { faults.Set(value); }

private:
    const DigitalBoardInfo info;
    const SignalClock clock;
    bool isOpen = false;
    std::uint64_t readings = 0;
    FaultSwitch faults;
};

} // namespace tracelet
