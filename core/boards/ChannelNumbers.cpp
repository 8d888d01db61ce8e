#include "core/boards/ChannelNumbers.h"

#include "core/base/Convert.h"
#include "core/boards/BoardFamily.h"

namespace tracelet {

std::int32_t PartnerOf(std::int32_t channel) {
    return channel % 2 == 0 ? channel + 1 : channel - 1;
}

std::int32_t ChannelNumbers::PhysToLogical(std::int32_t channel) const {
    if (IsUnpairedFamily(board))
        return Mod(channel, board.channelCount);
    std::int32_t count = -1;
    for (std::int32_t i = 0; i <= channel; ++i) {
        if (connections[i] != 1 || i % 2 == 0)
            ++count;
    }
    return Mod(count, LogicalCount());
}

std::int32_t ChannelNumbers::LogicalToPhys(std::int32_t& channel) const {
    if (IsUnpairedFamily(board))
        return Mod(channel, board.channelCount);
    std::int32_t count = -1;
    std::int32_t physical = 0;
    while (count < channel) {
        if (physical % 2 == 1 && connections[physical] == 1)
            ++channel;
        ++count;
        physical = Mod(physical + 1, board.channelCount);
    }
    return Mod(count, board.channelCount);
}

std::int32_t ChannelNumbers::LogicalCount() const {
    if (IsUnpairedFamily(board))
        return board.channelCount;
    double total = 0.0;
    for (std::int32_t i = 0; i < board.channelCount; ++i)
        total += connections[i] == 1 ? 0.5 : 1.0;
    return CLng(total);
}

std::int32_t ChannelNumbers::ScannedChannel(std::int32_t scanStart, std::int32_t position) const {
    std::int32_t logical = PhysToLogical(scanStart) + position;
    return LogicalToPhys(logical);
}

} // namespace tracelet
