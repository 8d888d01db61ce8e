#include "core/drivers/comedi/ComediMapping.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <limits>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t Longest = std::numeric_limits<std::uint32_t>::max();

TEST(ComediMappingTest, ResolutionFollowsFromTheHighestCode) {
    EXPECT_EQ(BitsOf(1), 1);
    EXPECT_EQ(BitsOf(255), 8);
    EXPECT_EQ(BitsOf(4095), 12);
    EXPECT_EQ(BitsOf(65535), 16);
    EXPECT_EQ(BitsOf(16777215), 24);
    EXPECT_EQ(BitsOf(Longest), 32);
}

TEST(ComediMappingTest, CountsOfSixteenBitsAreSigned) {
    EXPECT_EQ(CountOfWideCode(0, 16), -32768);
    EXPECT_EQ(CountOfWideCode(32767, 16), -1);
    EXPECT_EQ(CountOfWideCode(32768, 16), 0);
    EXPECT_EQ(CountOfWideCode(65535, 16), 32767);
}

TEST(ComediMappingTest, CountsOfFewerBitsAreTheCodes) {
    EXPECT_EQ(CountOfWideCode(0, 12), 0);
    EXPECT_EQ(CountOfWideCode(2048, 12), 2048);
    EXPECT_EQ(CountOfWideCode(4095, 12), 4095);
}

TEST(ComediMappingTest, CountsOfMoreBitsAreTheUpperSixteen) {
    EXPECT_EQ(CountOfWideCode(0, 24), -32768);
    EXPECT_EQ(CountOfWideCode(8388608, 24), 0);
    EXPECT_EQ(CountOfWideCode(8388607, 24), -1);
    EXPECT_EQ(CountOfWideCode(16777215, 24), 32767);
    EXPECT_EQ(CountOfWideCode(Longest, 32), 32767);
}

TEST(ComediMappingTest, RangesKeepTheirLimitsAndTheirUnit) {
    using enum RangeUnit;
    EXPECT_EQ(InputRangeOf(3, -10.0, 10.0, Volts), (InputRange{3, -10.0, 10.0, Volts}));
    EXPECT_EQ(InputRangeOf(0, 0.0, 0.05, Volts), (InputRange{0, 0.0, 0.05, Volts}));
    EXPECT_EQ(InputRangeOf(5, 0.0, 20.0, Volts), (InputRange{5, 0.0, 20.0, Volts}));
    EXPECT_EQ(InputRangeOf(1, 0.0, 20.0, Milliamperes), (InputRange{1, 0.0, 20.0, Milliamperes}));
    EXPECT_EQ(InputRangeOf(2, 0.0, 32.0, Milliamperes), (InputRange{2, 0.0, 32.0, Milliamperes}));
}

TEST(ComediMappingTest, RangesWithoutAUnitOrASpanAreLeftOut) {
    EXPECT_FALSE(InputRangeOf(0, 0.0, 1.0, RangeUnit::Unstated));
    EXPECT_FALSE(InputRangeOf(0, 5.0, 5.0, RangeUnit::Volts));
    EXPECT_FALSE(InputRangeOf(0, std::nan(""), 5.0, RangeUnit::Volts));
}

TEST(ComediMappingTest, PeriodsAreRoundedAndClamped) {
    EXPECT_EQ(PeriodOf(1000.0, 1), 1000000U);
    EXPECT_EQ(PeriodOf(1000.0, 4), 4000000U);
    EXPECT_EQ(PeriodOf(3.0, 1), 333333333U);
    EXPECT_EQ(PeriodOf(1e9, 1), 1U);
    EXPECT_EQ(PeriodOf(4e8, 1), 2U);       // 2.5 to the even neighbour
    EXPECT_EQ(PeriodOf(1e9 / 3.5, 1), 4U); // 3.5
    EXPECT_EQ(PeriodOf(1e300, 8), 0U);
    EXPECT_EQ(PeriodOf(0.25, 1), 4000000000U);
    EXPECT_EQ(PeriodOf(0.1, 1), Longest);
    EXPECT_EQ(PeriodOf(1e-300, 16), Longest);
}

TEST(ComediMappingTest, PeriodsAndRatesUndoEachOther) {
    for (const std::uint32_t period : {1U, 7U, 999U, 1000U, 123456U, 333333333U, 2147483648U, Longest}) {
        for (const std::int32_t conversions : {1, 2, 3, 16, 64})
            EXPECT_EQ(PeriodOf(RateOf(period, conversions), conversions), period) << conversions;
    }
    EXPECT_EQ(RateOf(1000, 4), 4e6);
}

TEST(ComediMappingTest, PortsTakeEightLinesAndWhatIsLeft) {
    EXPECT_THAT(PortsOf(0, 0), IsEmpty());
    EXPECT_THAT(PortsOf(1, 5), ElementsAre(PortPlace{1, 0, 5}));
    EXPECT_THAT(PortsOf(2, 8), ElementsAre(PortPlace{2, 0, 8}));
    EXPECT_THAT(PortsOf(3, 24), ElementsAre(PortPlace{3, 0, 8}, PortPlace{3, 8, 8}, PortPlace{3, 16, 8}));
    EXPECT_THAT(PortsOf(4, 33).back(), (PortPlace{4, 32, 1}));
}

TEST(ComediMappingTest, PortStatesAreTheirBits) {
    const std::uint32_t bits = 0x12A5C37E;
    EXPECT_EQ(PortState({0, 0, 8}, bits), 0x7E);
    EXPECT_EQ(PortState({0, 8, 8}, bits), 0xC3);
    EXPECT_EQ(PortState({0, 16, 8}, bits), 0xA5);
    EXPECT_EQ(PortState({0, 24, 8}, bits), 0x12);
    EXPECT_EQ(PortState({0, 32, 8}, bits), 0x7E); // bits then begin with line 32
    EXPECT_EQ(PortState({0, 0, 5}, bits), 0x1E);
    EXPECT_EQ(PortState({0, 40, 1}, bits), 0x01);
}

TEST(ComediMappingTest, OnlyNodesOfBoardsCount) {
    EXPECT_EQ(NodeNumber("comedi0"), 0);
    EXPECT_EQ(NodeNumber("comedi15"), 15);
    for (const char* name : {"comedi", "comedi0_subd1", "comedi-1", "comedi+1", "comedix", "Comedi0", "null",
                             "comedi99999999999", ""})
        EXPECT_FALSE(NodeNumber(name)) << name;
}

TEST(ComediMappingTest, ErrorsAreToldInWords) {
    const struct {
        int error;
        const char* text;
    } cases[] = {{EACCES, "Permission denied: join the group iocard"},
                 {EPERM, "Permission denied: join the group iocard"},
                 {EBUSY, "The board is in use by another program"},
                 {ENODEV, "The board is not there any more"},
                 {EINVAL, "The board refuses these settings"},
                 {ENOMEM, "Out of memory"},
                 {ETIMEDOUT, "The board did not answer in time"},
                 {EIO, "otherwise"}};
    for (const auto& c : cases)
        EXPECT_EQ(BoardErrorText(c.error, "otherwise"), c.text);
}

} // namespace
} // namespace tracelet
