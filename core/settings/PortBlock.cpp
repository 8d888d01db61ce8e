#include "core/settings/PortBlock.h"

#include <bit>

namespace tracelet {

std::uint8_t CountBit1(std::uint8_t value) {
    return static_cast<std::uint8_t>(std::popcount(value));
}

PortBlockOutcome DerivePortBlock(const Table<std::uint8_t>& masks, std::int32_t portCount, PortBlock& block) {
    try {
        block.lines = 0;
        for (std::int32_t port = 0; port <= portCount; ++port)
            block.lines += CountBit1(masks[port]);
    } catch (const RunTimeError&) {
        return PortBlockOutcome::Failed;
    }
    block.start = 0;
    while (block.start < portCount && masks[block.start] == 0)
        ++block.start;
    std::int32_t end = portCount;
    while (end > block.start && masks[end - 1] == 0)
        --end;
    block.count = end - block.start;
    return block.count == 0 ? PortBlockOutcome::Empty : PortBlockOutcome::Found;
}

} // namespace tracelet
