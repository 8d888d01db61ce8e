#include "core/playback/PlaybackPosition.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tracelet {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(PlaybackPosition, ScanAtRoundsToTheNearestHalvesToEven) {
    struct Case {
        double percent;
        std::int32_t scanCount;
        std::int32_t scan;
    };
    for (const Case& c : {Case{0, 1000, 0}, Case{100, 1000, 1000}, Case{50, 1000, 500}, Case{0.1, 1000, 1},
                          Case{0.1, 10, 0}, Case{25, 10, 2}, Case{75, 10, 8}, Case{50, 5, 2}, Case{50, 7, 4},
                          Case{33.3, 10, 3}, Case{100, 0, 0}, Case{50, 0, 0},
                          Case{100, 2147483647, 2147483647}, Case{50, 2147483646, 1073741823}})
        EXPECT_EQ(ScanAt(c.percent, c.scanCount), c.scan) << c.percent << " % of " << c.scanCount;
    EXPECT_EQ(FaultOf([] { (void)ScanAt(NotANumber, 10); }), "Overflow");
    EXPECT_EQ(FaultOf([] { (void)ScanAt(200, 2147483647); }), "Overflow");
}

TEST(PlaybackPosition, PercentAdvancesByTheShareOfTheScansPlayed) {
    EXPECT_DOUBLE_EQ(AdvancedPercent(0, 1, 10), 10.0);
    EXPECT_DOUBLE_EQ(AdvancedPercent(10, 2, 8), 35.0);
    EXPECT_DOUBLE_EQ(AdvancedPercent(0.1, 1, 1000), 0.2);
    EXPECT_DOUBLE_EQ(AdvancedPercent(95, 1, 10), 105.0);
    EXPECT_DOUBLE_EQ(AdvancedPercent(0, 100000, 2000000000), 0.005);
    EXPECT_EQ(AdvancedPercent(42, 5, 0), 42.0);
}

TEST(PlaybackPosition, TimeIsScanTimesInterval) {
    EXPECT_EQ(ScanTime(0, 0.25), 0.0);
    EXPECT_EQ(ScanTime(3, 0.25), 0.75);
    EXPECT_EQ(ScanTime(std::int64_t{1} << 40, 0.5), 549755813888.0);
    EXPECT_EQ(ScanTime(7, 0.0), 0.0);
    EXPECT_EQ(FaultOf([] { (void)ScanTime(2, std::numeric_limits<double>::max()); }), "Overflow");
    EXPECT_EQ(FaultOf([] { (void)ScanTime(0, Infinity); }), "Overflow");
}

TEST(PlaybackPosition, ChartKeepsTwentySecondsOfScans) {
    EXPECT_EQ(OpeningChartLength(0.1), 200);
    EXPECT_EQ(OpeningChartLength(0.004), 5000);
    EXPECT_EQ(OpeningChartLength(1e-6), 20000000);
    EXPECT_EQ(OpeningChartLength(8.0), 2);  // 2.5, half to even
    EXPECT_EQ(OpeningChartLength(40.0), 0); // 0.5, half to even
    EXPECT_EQ(OpeningChartLength(20.0 / 3.5), 4);
    EXPECT_EQ(FaultOf([] { (void)OpeningChartLength(0.0); }), "Division by zero");
    EXPECT_EQ(FaultOf([] { (void)OpeningChartLength(1e-9); }), "Overflow");
}

} // namespace
} // namespace tracelet
