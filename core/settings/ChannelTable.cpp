#include "core/settings/ChannelTable.h"

#include "core/base/NumberText.h"
#include "core/boards/BoardFamily.h"
#include "core/settings/RangeText.h"

namespace tracelet {
namespace {

std::string NumberedName(std::int32_t number) {
    return "Chan" + TwoDigitText(number);
}

} // namespace

std::vector<ChannelRow> ChannelRows(const AnalogBoardInfo& board, std::span<const ChannelFacts> channels,
                                    const Table<std::string>& typeNames) {
    const bool unpaired = IsUnpairedFamily(board);
    std::vector<ChannelRow> rows;
    std::int32_t channel = 0;
    std::int32_t logical = -1;
    for (const ChannelFacts& facts : channels) {
        const bool single = facts.connection == 0;
        if (single || unpaired || channel % 2 == 0)
            ++logical;
        rows.push_back({NumberedName(channel), NumberedName(logical),
                        single ? "Single-Ended" : "Differential", facts.isThermo ? "Thermo" : "AI",
                        facts.isThermo ? typeNames[facts.thermoType] : RangeText(facts.range),
                        facts.isThermo ? NumberText(std::int32_t{facts.expChan}) : "NA"});
        ++channel;
    }
    return rows;
}

} // namespace tracelet
