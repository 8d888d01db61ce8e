#include "core/boards/ConverterCounts.h"

#include <gtest/gtest.h>

#include <vector>

namespace tracelet {
namespace {

constexpr InputRange Bipolar{0, -10.0, 10.0};
constexpr InputRange Current{1, 4.0, 20.0};

TEST(ConverterCounts, CodesRunFromTheLowerLimitUp) {
    struct Row {
        double value;
        InputRange range;
        std::int32_t resolution;
        std::int32_t code;
    };
    const std::vector<Row> rows{
        {-10.0, Bipolar, 12, 0},     {0.0, Bipolar, 12, 2048},   {10.0, Bipolar, 12, 4095},
        {9.9951, Bipolar, 12, 4095}, {-11.0, Bipolar, 12, 0},    {1e300, Bipolar, 12, 4095},
        {-10.0, Bipolar, 16, 0},     {0.0, Bipolar, 16, 32768},  {10.0, Bipolar, 16, 65535},
        {4.0, Current, 16, 0},       {12.0, Current, 16, 32768}, {20.0, Current, 16, 65535},
        {3.9, Current, 16, 0},
    };
    for (const Row& row : rows)
        EXPECT_EQ(CodeOf(row.value, row.range, row.resolution), row.code) << row.value;
}

TEST(ConverterCounts, HalvesGoToTheEvenCode) {
    const InputRange range{0, 0.0, 4096.0}; // a volt a code of 12 bits
    EXPECT_EQ(CodeOf(100.5, range, 12), 100);
    EXPECT_EQ(CodeOf(101.5, range, 12), 102);
}

TEST(ConverterCounts, ValuesUndoCodes) {
    for (const std::int32_t resolution : {12, 14, 16}) {
        for (const InputRange& range : {Bipolar, Current, InputRange{2, -0.005, 0.005}}) {
            for (std::int32_t code = 0; code <= HighestCode(resolution); ++code) {
                const double value = ValueOf(code, range, resolution);
                ASSERT_EQ(CodeOf(value, range, resolution), code);
                ASSERT_LT(value, range.second);
            }
            EXPECT_EQ(ValueOf(0, range, resolution), range.first);
        }
    }
}

TEST(ConverterCounts, SixteenBitsAreSigned) {
    EXPECT_EQ(CountOf(0, 16), -32768);
    EXPECT_EQ(CountOf(32767, 16), -1);
    EXPECT_EQ(CountOf(32768, 16), 0);
    EXPECT_EQ(CountOf(65535, 16), 32767);
    for (std::int32_t code = 0; code <= 65535; ++code)
        ASSERT_EQ(CodeOfCount(CountOf(code, 16), 16), code);
}

TEST(ConverterCounts, FewerBitsAreOffsetBinaryInTheLowBits) {
    EXPECT_EQ(CountOf(0, 12), 0);
    EXPECT_EQ(CountOf(4095, 12), 4095);
    EXPECT_EQ(CodeOfCount(4095, 12), 4095);
    EXPECT_EQ(CodeOfCount(0x1FFF, 12), 4095);
    EXPECT_EQ(CodeOfCount(-1, 12), 4095);
    EXPECT_EQ(CodeOfCount(-4096, 12), 0);
}

} // namespace
} // namespace tracelet
