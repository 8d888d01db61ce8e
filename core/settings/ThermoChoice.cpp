#include "core/settings/ThermoChoice.h"

#include "core/boards/BoardFamily.h"
#include "core/boards/ChannelNumbers.h"

namespace tracelet {

void ChooseType(const ThermoTables& tables, std::int32_t channel, std::uint8_t type,
                std::int32_t connection) {
    tables.type[channel] = type;
    if (connection == Differential)
        tables.type[PartnerOf(channel)] = type;
}

void ChooseScale(const ThermoTables& tables, std::int32_t channelCount, std::uint8_t scale) {
    for (std::int32_t channel = 0; channel < channelCount; ++channel)
        tables.scale[channel] = scale;
}

void ShareWithPartner(const ThermoTables& tables, std::int32_t channel) {
    const std::int32_t partner = PartnerOf(channel);
    tables.isThermo[partner] = tables.isThermo[channel];
    tables.type[partner] = tables.type[channel];
    tables.expChan[partner] = tables.expChan[channel];
}

void ChooseKind(const ThermoTables& tables, const AnalogBoardInfo& board, std::int32_t channel, bool thermo,
                std::int32_t pairChannel, std::int32_t pairConnection) {
    if (tables.isThermo[channel] == thermo)
        return;
    tables.isThermo[channel] = thermo;
    if (pairConnection == Differential && !IsUnpairedFamily(board))
        tables.isThermo[PartnerOf(pairChannel)] = thermo;
}

} // namespace tracelet
