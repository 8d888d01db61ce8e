#include "core/settings/PortBlock.h"

#include <bitset>
#include <gtest/gtest.h>

namespace tracelet {

void PrintTo(const PortBlock& block, std::ostream* out) {
    *out << "{start " << block.start << ", count " << block.count << ", lines " << block.lines << "}";
}

namespace {

Table<std::uint8_t> Masks(const std::vector<std::uint8_t>& ports, bool spare = true) {
    Table<std::uint8_t> masks(static_cast<std::int64_t>(ports.size()) + (spare ? 1 : 0));
    for (std::size_t i = 0; i < ports.size(); ++i)
        masks[static_cast<std::int64_t>(i)] = ports[i];
    return masks;
}

TEST(CountBit1, CountsEveryValue) {
    for (unsigned value = 0; value <= 255; ++value)
        EXPECT_EQ(CountBit1(static_cast<std::uint8_t>(value)), std::bitset<8>(value).count()) << value;
}

TEST(DerivePortBlock, RunsFromFirstToLastSelectedPort) {
    const struct {
        std::vector<std::uint8_t> masks;
        PortBlock block;
        PortBlockOutcome outcome;
    } cases[] = {
        {{0x00, 0x81, 0x00, 0x01}, {1, 3, 3}, PortBlockOutcome::Found},
        {{0xFF, 0, 0, 0}, {0, 1, 8}, PortBlockOutcome::Found},
        {{0, 0, 0, 0x80}, {3, 1, 1}, PortBlockOutcome::Found},
        {{0x01, 0, 0, 0x01}, {0, 4, 2}, PortBlockOutcome::Found},
        {{0xFF, 0xFF, 0xFF, 0xFF}, {0, 4, 32}, PortBlockOutcome::Found},
        {{0x10}, {0, 1, 1}, PortBlockOutcome::Found},
        {{0, 0, 0, 0}, {4, 0, 0}, PortBlockOutcome::Empty},
        {{0}, {1, 0, 0}, PortBlockOutcome::Empty},
        {{0, 0x10, 0, 0}, {1, 1, 1}, PortBlockOutcome::Found},
        {{}, {0, 0, 0}, PortBlockOutcome::Empty},
    };
    for (const auto& c : cases) {
        PortBlock block{77, 78, 79};
        const auto ports = static_cast<std::int32_t>(c.masks.size());
        EXPECT_EQ(DerivePortBlock(Masks(c.masks), ports, block), c.outcome);
        EXPECT_EQ(block, c.block);
    }
}

TEST(DerivePortBlock, MasksShorterThanThePortsFail) {
    PortBlock block{77, 78, 79};
    EXPECT_EQ(DerivePortBlock(Masks({0, 0x03}, false), 4, block), PortBlockOutcome::Failed);
    EXPECT_EQ(block.start, 77);
    EXPECT_EQ(block.count, 78);
    // Without the spare element the lines cannot be counted to the end either.
    EXPECT_EQ(DerivePortBlock(Masks({0x01}, false), 1, block), PortBlockOutcome::Failed);
}

} // namespace
} // namespace tracelet
