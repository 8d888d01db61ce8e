#pragma once

#include "core/boards/Board.h"
#include "core/boards/ChannelNumbers.h"
#include "core/boards/Thermocouple.h"
#include "core/settings/M1.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tracelet {

/// A position of a polled scan that is read as a thermocouple.
struct PolledThermocouple {
    std::int32_t position = 0;  ///< in the scan
    ChannelSetup channel;       ///< thermocouple input of the board
    std::int32_t expansion = 0; ///< expansion-board channel, 0 to 15
    ThermocoupleType type = ThermocoupleType::J;
    TemperatureScale scale = TemperatureScale::Celsius;
};

/// What each tick of a polled session reads, worked out once at its start.
struct PollPlan {
    std::int32_t channelCount = 0;      ///< of a scan; 0 when analog input is off
    bool readsScan = false;             ///< else the values are 0 but for the thermocouples
    std::vector<ChannelSetup> channels; ///< by scan position; filled where `readsScan`
    std::vector<PolledThermocouple> thermocouples;

    std::int32_t portStart = 0;
    std::int32_t portCount = 0;      ///< 0 when digital input is off
    std::vector<std::int32_t> lines; ///< shown lines in plot order, port × 8 + line
};

/// A scan as the analog control has it.
struct PolledScan {
    ChannelNumbers numbers;
    std::int32_t start = 0; ///< physical channel
    std::int32_t count = 0;
    bool doublesThermocouples = false; ///< thermocouple inputs bear twice their channel's number
};

/// Fills the analog part of a plan, all but range and wiring: those of `channels` and of the thermocouples
/// are the controls' to tell. A board of the "05" family is read for its thermocouples only. Raises
/// "Subscript out of range" for a scanned channel that the tables lack.
void PlanAnalog(PollPlan& plan, const M1& tables, const PolledScan& scan);

/// Fills the digital part of a plan. Ports beyond the mask table show no line.
void PlanDigital(PollPlan& plan, const Table<std::uint8_t>& portMask, std::int32_t portStart,
                 std::int32_t portCount);

/// The boards that a plan is read from; null where the control has none. `analog` is there when the plan has
/// `channels`.
struct PollBoards {
    std::shared_ptr<AnalogBoard> analog;
    std::shared_ptr<AnalogBoard> thermocouple;
    std::shared_ptr<DigitalBoard> digital;
};

/// True when a read of what the plan needs may block.
[[nodiscard]] bool MayBlock(const PollPlan& plan, const PollBoards& boards);

/// What one tick has read. Faults are "" where the reading worked.
struct PolledTick {
    std::vector<double> values;       ///< by scan position; NaN where a couple is open or out of its range
    std::vector<std::uint8_t> states; ///< by port, bit n = line n
    std::string analogFault;
    std::string digitalFault;
};

// Reading allocates only in the first tick. Nothing is raised: what a board raises becomes the fault's text.

void ReadAnalog(const PollPlan& plan, const PollBoards& boards, PolledTick& tick);
void ReadDigital(const PollPlan& plan, const PollBoards& boards, PolledTick& tick);
/// What the plan names, analog input first; after a fault there nothing more is read.
void ReadTick(const PollPlan& plan, const PollBoards& boards, PolledTick& tick);

} // namespace tracelet
