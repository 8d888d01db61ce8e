#include "core/base/LittleEndian.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

std::vector<int> AsInts(const std::vector<std::byte>& bytes) {
    std::vector<int> ints;
    for (std::byte b : bytes)
        ints.push_back(std::to_integer<int>(b));
    return ints;
}

TEST(LittleEndian, LowestByteFirst) {
    std::vector<std::byte> bytes;
    AppendLittleEndian(bytes, std::int16_t{-1});
    AppendLittleEndian(bytes, std::int32_t{0x01020304});
    AppendLittleEndian(bytes, 1.0F);
    AppendLittleEndian(bytes, 1.0);
    EXPECT_THAT(AsInts(bytes),
                testing::ElementsAre(255, 255, 4, 3, 2, 1, 0, 0, 0x80, 0x3F, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F));
    EXPECT_EQ(ReadLittleEndian<std::int16_t>(bytes, 0), -1);
    EXPECT_EQ(ReadLittleEndian<std::int32_t>(bytes, 2), 0x01020304);
    EXPECT_EQ(ReadLittleEndian<float>(bytes, 6), 1.0F);
    EXPECT_EQ(ReadLittleEndian<double>(bytes, 10), 1.0);
}

} // namespace
} // namespace tracelet
