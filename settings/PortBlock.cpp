#include "settings/PortBlock.h"

#include <algorithm>

namespace tracelet {

std::uint8_t CountBit1(std::uint8_t value) {
    std::uint8_t count = 0;
    while (value != 0) {
        value = static_cast<std::uint8_t>(value & (value - 1));
        ++count;
    }
    return count;
}

PortBlockOutcome DerivePortBlock(const Table<std::uint8_t>& masks, std::int32_t portCount, PortBlock& block) {
    std::int32_t last = 0;
    try {
        block.lines = 0;
        for (std::int32_t port = 0; port <= portCount; ++port)
            block.lines += CountBit1(masks[port]);
        block.start = 0;
        while (masks[block.start] == 0 && block.start < portCount)
            ++block.start;
        // Without a selected line this runs to mask -1, which no table has: the way out of the loop.
        last = portCount - 1;
        while (masks[last] == 0)
            --last;
        block.count = std::max(last - block.start + 1, 0);
    } catch (const RunTimeError&) {
        if (last >= 0)
            return PortBlockOutcome::Failed;
        block.count = 0;
    }
    return block.count == 0 ? PortBlockOutcome::Empty : PortBlockOutcome::Found;
}

} // namespace tracelet
