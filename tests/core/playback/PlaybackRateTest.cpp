#include "core/playback/PlaybackRate.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tracelet {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(PlaybackRate, OnlyFiniteSpeedsAboveZeroPlay) {
    for (double speed : {1e-300, 0.001, 1.0, 1e300})
        EXPECT_TRUE(IsPlaybackSpeed(speed)) << speed;
    for (double speed : {0.0, -0.0, -1.0, -1e300, Infinity, -Infinity, NotANumber})
        EXPECT_FALSE(IsPlaybackSpeed(speed)) << speed;
}

struct Rate {
    double speed;
    std::int32_t scans;
    std::int32_t milliseconds;
};

class PlaybackRates : public testing::TestWithParam<Rate> {};

TEST_P(PlaybackRates, ScansAndPeriodOfATick) {
    const Rate& rate = GetParam();
    EXPECT_EQ(ScansPerTick(rate.speed), rate.scans);
    EXPECT_EQ(TickInterval(rate.speed), rate.milliseconds);
}

INSTANTIATE_TEST_SUITE_P(UpToTen, PlaybackRates,
                         testing::Values(Rate{10, 1, 100}, Rate{8, 1, 125}, Rate{5, 1, 200}, Rate{3, 1, 333},
                                         Rate{1, 1, 1000}, Rate{0.5, 1, 2000}, Rate{0.1, 1, 10000},
                                         Rate{7, 1, 143}, Rate{9.99, 1, 100},
                                         Rate{1000.0 / 102.5, 1, 102}, // half to the even neighbour
                                         Rate{1000.0 / 101.5, 1, 102}, // the same, upwards
                                         Rate{1000.0 / 2147483647.0, 1, 2147483647}));

INSTANTIATE_TEST_SUITE_P(AboveTen, PlaybackRates,
                         testing::Values(Rate{std::nextafter(10.0, 11.0), 1, 100}, Rate{10.2, 1, 100},
                                         Rate{14.9, 1, 100}, Rate{15, 2, 100}, Rate{24.9, 2, 100},
                                         Rate{25, 2, 100}, Rate{25.1, 3, 100}, Rate{35, 4, 100},
                                         Rate{100, 10, 100}, Rate{1000000, 100000, 100},
                                         Rate{21474836470.0, 2147483647, 100}));

TEST(PlaybackRate, SpeedsBeyond32BitsOverflow) {
    EXPECT_EQ(FaultOf([] { (void)ScansPerTick(21474836475.0); }), "Overflow");
    EXPECT_EQ(FaultOf([] { (void)ScansPerTick(1e300); }), "Overflow");
    EXPECT_EQ(FaultOf([] { (void)TickInterval(4e-7); }), "Overflow");
    EXPECT_EQ(FaultOf([] { (void)TickInterval(1e-308); }), "Overflow");
    EXPECT_EQ(FaultOf([] { (void)TickInterval(0.0); }), "Division by zero");
    EXPECT_EQ(ScansPerTick(1e-308), 1);
    EXPECT_EQ(TickInterval(1e300), 100);
}

TEST(PlaybackRate, TicksPlayWhatAWindowCanTake) {
    constexpr auto Most = std::numeric_limits<std::int32_t>::max();
    struct {
        std::int32_t asked;
        std::int64_t valuesPerScan;
        std::int32_t played;
    } const cases[] = {{1, 1, 1},
                       {25, 16, 25},
                       {156'250, 64, 156'250}, // 1 MS/s over all channels, a hundred times as fast
                       {100'000, 64, 100'000}, // 1 MS/s of each channel
                       {10'000'000, 16, 1'048'576},
                       {Most, 1, 16'777'216},
                       {Most, 65536, 256},
                       {Most, std::int64_t{1} << 40, 1},
                       {Most, 0, 16'777'216},
                       {1, 0, 1},
                       {0, 1, 1}};
    for (const auto& [asked, valuesPerScan, played] : cases)
        EXPECT_EQ(AffordableScans(asked, valuesPerScan), played) << asked << ", " << valuesPerScan;
}

TEST(PlaybackRate, UserReachesFarAroundTheRecordingsOwnRate) {
    for (double rate : {1e-4, 0.1, 1.0, 10.0, 976.5625, 1e6, 1e8}) {
        const SpeedRange range = UserSpeedRange(rate);
        EXPECT_GE(range.highest, 10 * rate);
        EXPECT_LE(range.lowest, rate / 10);
        EXPECT_GT(range.lowest, 0.0);
    }
}

TEST(PlaybackRate, EverySpeedOfTheUsersRangePlays) {
    for (double rate : {1e-300, 1e-9, 1e-6, 0.01, 1e6, 1e12, 1e300}) {
        const SpeedRange range = UserSpeedRange(rate);
        EXPECT_LE(range.lowest, range.highest) << rate;
        for (double speed : {range.lowest, range.highest}) {
            EXPECT_TRUE(IsPlaybackSpeed(speed)) << rate;
            EXPECT_GE(ScansPerTick(speed), 1) << rate;
            EXPECT_GE(TickInterval(speed), 1) << rate;
        }
    }
}

} // namespace
} // namespace tracelet
