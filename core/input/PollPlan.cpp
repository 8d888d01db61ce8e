#include "core/input/PollPlan.h"

#include "core/base/RunTimeError.h"
#include "core/boards/BoardFamily.h"
#include "core/input/DriverCall.h"
#include "core/plots/PlotTables.h"

#include <algorithm>
#include <exception>

namespace tracelet {
namespace {

template <typename Read>
void NoteFault(std::string& fault, Read read) {
    fault.clear();
    try {
        CallDriver(read);
    } catch (const std::exception& error) {
        fault = *error.what() != '\0' ? error.what() : WithoutReason;
    }
}

} // namespace

void PlanAnalog(PollPlan& plan, const M1& tables, const PolledScan& scan) {
    plan.channelCount = scan.count;
    plan.channels.clear();
    plan.thermocouples.clear();
    for (std::int32_t position = 0; position < scan.count; ++position) {
        const std::int32_t physical = scan.numbers.ScannedChannel(scan.start, position);
        if (!tables.AIChanIsThermo[physical])
            continue;
        PolledThermocouple couple;
        couple.position = position;
        couple.channel.channel = scan.doublesThermocouples ? 2 * physical : physical;
        couple.expansion = tables.AIThermoExpChan[physical];
        couple.type = static_cast<ThermocoupleType>(tables.AIThermoType[physical]);
        couple.scale = static_cast<TemperatureScale>(tables.AIThermoScale[physical]);
        plan.thermocouples.push_back(couple);
    }
    plan.readsScan = !IsUnpairedFamily(scan.numbers.board) || !plan.thermocouples.empty();
}

void PlanDigital(PollPlan& plan, const Table<std::uint8_t>& portMask, std::int32_t portStart,
                 std::int32_t portCount) {
    plan.portStart = portStart;
    plan.portCount = std::max(portCount, 0);
    plan.lines = SelectedLines(portMask, portStart, portCount);
}

bool MayBlock(const PollPlan& plan, const PollBoards& boards) {
    return (plan.readsScan && boards.analog && boards.analog->Info().mayBlock) ||
           (!plan.thermocouples.empty() && boards.thermocouple && boards.thermocouple->Info().mayBlock) ||
           (plan.portCount > 0 && boards.digital && boards.digital->Info().mayBlock);
}

void ReadAnalog(const PollPlan& plan, const PollBoards& boards, PolledTick& tick) {
    NoteFault(tick.analogFault, [&] {
        tick.values.assign(static_cast<std::size_t>(plan.channelCount), 0.0);
        if (plan.readsScan && !plan.channels.empty())
            boards.analog->ReadScan(plan.channels, tick.values);
        if (!plan.thermocouples.empty() && !boards.thermocouple)
            throw RunTimeError("No thermocouple device is selected");
        for (const PolledThermocouple& couple : plan.thermocouples) {
            const ThermocoupleReading reading =
                boards.thermocouple->ReadThermocouple(couple.channel, couple.expansion, couple.type);
            tick.values.at(static_cast<std::size_t>(couple.position)) =
                InScale(ThermocoupleCelsiusOrNaN(couple.type, reading), couple.scale);
        }
    });
}

void ReadDigital(const PollPlan& plan, const PollBoards& boards, PolledTick& tick) {
    NoteFault(tick.digitalFault, [&] {
        if (!boards.digital)
            throw RunTimeError("No digital device is selected");
        tick.states.resize(static_cast<std::size_t>(plan.portCount));
        boards.digital->ReadPorts(plan.portStart, tick.states);
    });
}

void ReadTick(const PollPlan& plan, const PollBoards& boards, PolledTick& tick) {
    if (plan.channelCount > 0)
        ReadAnalog(plan, boards, tick);
    if (plan.portCount > 0 && (plan.channelCount == 0 || tick.analogFault.empty()))
        ReadDigital(plan, boards, tick);
}

} // namespace tracelet
