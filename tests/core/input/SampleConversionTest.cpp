#include "core/input/SampleConversion.h"

#include "core/base/RunTimeError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace tracelet {
namespace {

using testing::ElementsAre;

constexpr std::int16_t Lowest = std::numeric_limits<std::int16_t>::min();
const auto OutOfRange = testing::ThrowsMessage<RunTimeError>("Subscript out of range");

AnalogBoardInfo Named(const char* name) {
    AnalogBoardInfo board;
    board.name = name;
    return board;
}

TEST(ConvertRawData, NegativeCountsAreOffByOne) {
    const std::vector<std::int16_t> counts = {0, 1, 32767, -1, Lowest, -32767};
    std::vector<std::int32_t> out;
    for (const char* name : {"PCI-9 plain", "6601HG", "6605", "602", ""}) {
        ConvertRawData(counts, out, 6, Named(name));
        EXPECT_THAT(out, ElementsAre(0, 1, 32767, 65536, 32769, 32770)) << name;
    }
}

TEST(ConvertRawData, TwelveBitDeviceKeepsTheLowBits) {
    const std::vector<std::int16_t> counts = {0x1FFF, -1, 0x0FFF, 0x1000, Lowest};
    std::vector<std::int32_t> out;
    ConvertRawData(counts, out, 5, Named("x6602y"));
    EXPECT_THAT(out, ElementsAre(4095, 4095, 4095, 0, 0));
}

TEST(ConvertRawData, ABoardOfNoFamilyKeepsItsBits) {
    AnalogBoardInfo board = Named("dt-6602");
    board.noFamily = true;
    std::vector<std::int32_t> out;
    ConvertRawData(std::vector<std::int16_t>{0x1FFF, -1}, out, 2, board);
    EXPECT_THAT(out, ElementsAre(0x1FFF, 65536));
}

TEST(ConvertRawData, ConvertsOnlyAsManyAsTold) {
    const std::vector<std::int16_t> counts = {1, 2, 3};
    std::vector<std::int32_t> out(7, -1);
    ConvertRawData(counts, out, 2, {});
    EXPECT_THAT(out, ElementsAre(1, 2));
    EXPECT_THAT([&] { ConvertRawData(counts, out, 4, {}); }, OutOfRange);
    EXPECT_THAT([&] { ConvertRawData(counts, out, -1, {}); }, OutOfRange);
}

TEST(ConvertAnalogData, KeepsTheFloats) {
    const std::vector<float> values = {1.5F, -2.0F, 3.0F};
    const auto converted = ConvertAnalogData(values, 2);
    EXPECT_THAT(std::vector<float>(converted.begin(), converted.end()), ElementsAre(1.5F, -2.0F));
    EXPECT_THAT([&] { (void)ConvertAnalogData(values, 4); }, OutOfRange);
}

} // namespace
} // namespace tracelet
