#include "core/boards/ChannelSettings.h"

#include "core/boards/BoardFamily.h"

namespace tracelet {

ChannelSettings::ChannelSettings(const AnalogBoardInfo& board, std::int32_t channelCount)
    : singleEnded(board.singleEnded), differential(board.differential),
      connections(std::int64_t{channelCount} + 1), ranges(std::int64_t{channelCount} + 1) {
    pairs = !IsUnpairedFamily(board);
    const std::int32_t wiring = singleEnded ? SingleEnded : Differential;
    for (std::int32_t channel = 0; channel <= channelCount; ++channel)
        connections[channel] = wiring;
    if (board.ranges.empty())
        return;
    for (std::int32_t channel = 0; channel <= channelCount; ++channel)
        ranges[channel] = board.ranges.front();
}

void ChannelSettings::Connect(std::int32_t channel, std::int32_t code) {
    const std::int64_t channelCount = connections.Count() - 1;
    const bool wirable = code == SingleEnded ? singleEnded : code == Differential && differential;
    if (!wirable || channel >= channelCount)
        return;
    if (!pairs) {
        connections[channel] = code;
        return;
    }
    const std::int32_t even = channel - channel % 2;
    if (even + 1 < channelCount) {
        connections[even] = code;
        connections[even + 1] = code;
    }
}

ChannelSetup ChannelSettings::SetupOf(std::int32_t channel) const {
    return {channel, ranges[channel], connections[channel]};
}

} // namespace tracelet
