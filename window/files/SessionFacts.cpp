#include "core/recordings/SessionFile.h"

#include "core/base/RunTimeError.h"
#include "core/boards/BoardFamily.h"
#include "core/settings/M1.h"
#include "window/main/frmMain.h"

namespace tracelet {

SessionFacts frmMain::FactsOfSession(const ProjectInfo& info) const {
    SessionFacts facts;
    facts.started = WallClock();
    facts.timeZone = TimeZoneName();
    facts.isPolled = M1.SoftMode;
    facts.asked = ScansAskedASecond();
    if (!M1.SoftMode)
        facts.pacedScans = facts.asked;
    if (bAIEnabled) {
        facts.analogBoard = {ZelAI1->BoardInfo().name, ZelAI1->BoardInfo().simulated};
        for (std::int32_t position = 0; position < ZelAI1->ScanChannelCount(); ++position)
            facts.channels.push_back(FactsOfChannel(position, info));
    }
    if (bDIEnabled && M1.SoftMode && ZelDIO1->Board()) {
        facts.digitalBoard = {ZelDIO1->Board()->Info().name, ZelDIO1->Board()->Info().simulated};
        for (const std::int32_t line : SelectedLines(M1.DIPortMask, nDIPortStart, nDIPortCount))
            facts.lines.push_back({line / 8, line % 8, M1.DIPlotName[line]});
    }
    return facts;
}

SessionFacts::Channel frmMain::FactsOfChannel(std::int32_t position, const ProjectInfo& info) const {
    const std::int32_t channel = ScannedChannel(position);
    const InputRange range = ZelAI1->RangeOf(channel);
    SessionFacts::Channel facts{.number = channel,
                                .name = {},
                                .unit = tracelet::UnitOf(range),
                                .low = range.first,
                                .high = range.second,
                                .rangeUnit = tracelet::UnitOf(range),
                                .wiring = M1.AIChanConnection[channel] == Differential ? "differential"
                                                                                       : "single-ended",
                                .thermocouple = {}};
    if (static_cast<std::size_t>(position) < info.aiPlots.size())
        facts.name = info.aiPlots[static_cast<std::size_t>(position)].PlotName;
    if (M1.SoftMode && M1.AIChanIsThermo[channel]) {
        facts.unit = M1.ThermoScaleNames[M1.AIThermoScale[channel]];
        facts.thermocouple = M1.ThermoTypeNames[M1.AIThermoType[channel]];
    } else if (!M1.SoftMode && ZelAI1->DataType() == RawCounts) {
        facts.unit.clear();
    }
    return facts;
}

} // namespace tracelet
