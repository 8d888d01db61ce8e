#include "core/plots/TimeBase.h"

#include "core/base/RunTimeError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::ThrowsMessage;

const auto Overflows = ThrowsMessage<RunTimeError>("Overflow");
const auto DividesByZero = ThrowsMessage<RunTimeError>("Division by zero");

TEST(SteppedDivision, StepsByFiveWithinTheBounds) {
    const struct {
        double from;
        bool up;
        double expected;
    } cases[] = {{0.000002, false, 0.000001},
                 {0.000001, false, 0.000001},
                 {0.000005, false, 0.000001},
                 {0.00001, false, 0.000002},
                 {25, true, 100},
                 {100, true, 100},
                 {20, true, 100},
                 {20.1, true, 100},
                 {0.0000049, false, 0.000001},
                 {19, true, 95},
                 {0.8, true, 4},
                 {1, true, 5},
                 {1, false, 0.2},
                 {1000, true, 100},
                 {1000, false, 200}};
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(SteppedDivision(c.from, c.up), c.expected) << c.from << (c.up ? " up" : " down");
}

TEST(FastChartLength, PointsOfTenDivisions) {
    EXPECT_EQ(FastChartLength(1.0, 1000.0, 1), 10000);
    EXPECT_EQ(FastChartLength(5.0, 1000.0, 4), 12500);
    EXPECT_EQ(FastChartLength(0.00025, 1000.0, 1), 2); // 2.5, halves to even
    EXPECT_THAT([] { (void)FastChartLength(100.0, 20e6, 1); }, Overflows);
    EXPECT_THAT([] { (void)FastChartLength(1.0, 1000.0, 0); }, DividesByZero);
}

TEST(PolledChartLength, RoundsTheScansASecondFirst) {
    EXPECT_EQ(PolledChartLength(1.0, 3), 3331);
    EXPECT_EQ(PolledChartLength(1.0, 100), 101);
    EXPECT_EQ(PolledChartLength(5.0, 100), 501);
    EXPECT_EQ(PolledChartLength(1.0, 2500), 1); // 0.4 scans a second round to none
    EXPECT_EQ(PolledChartLength(1.0, 400), 21); // 2.5 rounds to 2
    EXPECT_THAT([] { (void)PolledChartLength(1.0, 0); }, DividesByZero);
}

TEST(HistoryChartLength, HasNoExtraPoint) {
    EXPECT_EQ(HistoryChartLength(0.2, 0.004), 500);
    EXPECT_EQ(HistoryChartLength(1.0, 0.1), 100);
    EXPECT_EQ(HistoryChartLength(1.0, 0.003), 3330); // 333.33 scans a second round first
    EXPECT_EQ(HistoryChartLength(1.0, 0.4), 20);     // 2.5 rounds to 2
    EXPECT_THAT([] { (void)HistoryChartLength(1.0, 0.0); }, DividesByZero);
    EXPECT_THAT([] { (void)HistoryChartLength(1.0, 1e-12); }, Overflows);
}

TEST(PolledStartChartLength, RoundsDownAndAddsOne) {
    EXPECT_EQ(PolledStartChartLength(0.0, 10.0, 100), 101);
    EXPECT_EQ(PolledStartChartLength(0.0, 10.0, 3), 3334);
    EXPECT_EQ(PolledStartChartLength(0.0, 10.0, 1), 10001);
    EXPECT_EQ(PolledStartChartLength(0.0, 10.0, 65535), 1);
    EXPECT_THAT([] { (void)PolledStartChartLength(0.0, 10.0, 0); }, DividesByZero);
}

TEST(CyclicFastWindow, TenSecondsOrAHundredThousandPoints) {
    const struct {
        double rate;
        double seconds;
        std::int32_t length;
    } cases[] = {{25000, 4.0, 100000},
                 {24999, 10.0, 249990},
                 {1000, 10.0, 10000},
                 {1e6, 0.1, 100000},
                 {33333, 100000.0 / 33333, 100000}};
    for (const auto& c : cases) {
        EXPECT_DOUBLE_EQ(CyclicFastWindow(c.rate).seconds, c.seconds) << c.rate;
        EXPECT_EQ(CyclicFastWindow(c.rate).chartLength, c.length) << c.rate;
    }
}

} // namespace
} // namespace tracelet
