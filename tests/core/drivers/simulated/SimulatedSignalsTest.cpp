#include "core/drivers/simulated/SimulatedSignals.h"

#include "core/base/RunTimeError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <set>
#include <vector>

namespace tracelet {
namespace {

using enum SignalShape;
using testing::ElementsAre;

std::vector<double> Levels(const Signal& signal, std::uint64_t first, std::size_t count) {
    std::vector<double> levels;
    for (std::size_t i = 0; i < count; ++i)
        levels.push_back(SignalLevel(signal, first + i));
    return levels;
}

TEST(SimulatedSignals, ShapesFollowChannelAndBoard) {
    const SignalShape shapes[] = {Sine, Square, Triangle, Noise, Spike};
    for (std::int32_t board = 0; board < 7; ++board) {
        for (std::int32_t channel = 0; channel < 64; ++channel) {
            const SignalShape expected = shapes[(board + channel) % 5];
            EXPECT_EQ(StreamSignal(board, channel, 1000.0).shape, expected);
            EXPECT_EQ(PolledSignal(board, channel).shape, expected);
        }
    }
}

TEST(SimulatedSignals, AmplitudesFallEveryFiveChannels) {
    EXPECT_EQ(PolledSignal(0, 0).amplitude, 5.0);
    EXPECT_EQ(PolledSignal(0, 4).amplitude, 5.0);
    EXPECT_EQ(PolledSignal(0, 5).amplitude, 4.5);
    EXPECT_EQ(StreamSignal(3, 39, 1000.0).amplitude, 1.5);
    EXPECT_EQ(StreamSignal(3, 40, 1000.0).amplitude, 5.0);
}

TEST(SimulatedSignals, StreamPeriodsFollowTheScanRate) {
    struct Row {
        std::int32_t channel;
        double scanRate;
        std::int64_t period;
    };
    for (const Row& row : {Row{0, 1000.0, 100}, Row{0, 1e6, 100000}, Row{0, 20e6, 2000000},
                           Row{1, 1000.0, 67}, Row{2, 1000.0, 50}, Row{0, 15.6, 20}, Row{6, 1e6, 25000},
                           Row{3, 1e6, 16384}, Row{4, 1e6, 100000}, Row{4, 10.0, 100000}})
        EXPECT_EQ(StreamSignal(0, row.channel, row.scanRate).period, row.period) << row.scanRate;
}

TEST(SimulatedSignals, PolledPeriodsFollowTheChannel) {
    EXPECT_EQ(PolledSignal(0, 0).period, 40);
    EXPECT_EQ(PolledSignal(0, 1).period, 50);
    EXPECT_EQ(PolledSignal(0, 3).period, 16384);
    EXPECT_EQ(PolledSignal(0, 4).period, 100);
    EXPECT_EQ(PolledSignal(0, 6).period, 100);
    EXPECT_EQ(PolledSignal(0, 7).period, 40);
}

TEST(SimulatedSignals, LevelsAreThoseOfTheShapes) {
    const double half = std::sqrt(0.5);
    const std::vector<double> sine = Levels({Sine, 8, 1.0, 0}, 0, 8);
    const double expected[] = {0.0, half, 1.0, half, 0.0, -half, -1.0, -half};
    for (std::size_t i = 0; i < sine.size(); ++i)
        EXPECT_NEAR(sine[i], expected[i], 1e-15) << i;
    EXPECT_THAT(Levels({Square, 5, 1.0, 0}, 0, 6), ElementsAre(1, 1, 1, -1, -1, 1));
    EXPECT_THAT(Levels({Triangle, 8, 1.0, 0}, 0, 9), ElementsAre(-1, -0.5, 0, 0.5, 1, 0.5, 0, -0.5, -1));
    EXPECT_THAT(Levels({Spike, 5, 1.0, 0}, 0, 8), ElementsAre(0, 0, 1, 0, 0, 0, 0, 1));
}

TEST(SimulatedSignals, RepeatExactlyHoweverFarTheyRun) {
    for (const SignalShape shape : {Sine, Square, Triangle, Noise, Spike}) {
        const Signal signal{shape, 67, 1.0, 99};
        const std::uint64_t far = 67ULL * 100'000'000'000'000ULL;
        EXPECT_EQ(Levels(signal, far, 67), Levels(signal, 0, 67));
    }
}

TEST(SimulatedSignals, NoiseIsSpreadEvenlyAndOwnToEachChannel) {
    const std::vector<double> levels = Levels(StreamSignal(0, 3, 1000.0), 0, 16384);
    double sum = 0.0;
    int tenths[10] = {};
    for (const double level : levels) {
        ASSERT_GE(level, -1.0);
        ASSERT_LT(level, 1.0);
        sum += level;
        ++tenths[static_cast<std::size_t>((level + 1.0) * 5.0)];
    }
    EXPECT_NEAR(sum / 16384.0, 0.0, 0.02);
    for (const int tenth : tenths)
        EXPECT_NEAR(tenth, 1638, 200);
    EXPECT_NE(levels, Levels(StreamSignal(0, 8, 1000.0), 0, 16384));
    EXPECT_NE(levels, Levels(StreamSignal(1, 2, 1000.0), 0, 16384));
}

TEST(SimulatedSignals, ScrambleHasItsKnownValues) {
    // Worked out apart from the program, from the five steps.
    EXPECT_EQ(Scramble(0), 0U);
    EXPECT_EQ(Scramble(1), 0x688990C0U);
    std::set<std::uint32_t> seen;
    for (std::uint32_t x = 0; x < 10000; ++x)
        seen.insert(Scramble(x));
    EXPECT_EQ(seen.size(), 10000U);
}

TEST(SimulatedSignals, ValuesAreVoltsOrMilliamperes) {
    const Signal signal{Triangle, 8, 4.5, 0};
    const InputRange volts{0, -10.0, 10.0};
    const InputRange milliamperes{1, 4.0, 20.0};
    EXPECT_EQ(SignalValue(signal, volts, 0), -4.5);
    EXPECT_EQ(SignalValue(signal, volts, 4), 4.5);
    EXPECT_EQ(SignalValue(signal, milliamperes, 0), 4.0);
    EXPECT_EQ(SignalValue(signal, milliamperes, 2), 12.0);
    EXPECT_EQ(SignalValue(signal, milliamperes, 4), 20.0);
}

TEST(SimulatedSignals, TemperaturesSwingByFifty) {
    EXPECT_EQ(SimulatedCelsius(0, 0, 0), 50.0);
    EXPECT_EQ(SimulatedCelsius(0, 0, 50), 100.0);
    EXPECT_EQ(SimulatedCelsius(0, 0, 100), 150.0);
    EXPECT_EQ(SimulatedCelsius(0, 0, 200), 50.0);
    EXPECT_EQ(SimulatedCelsius(3, 2, 100), 166.0);
    EXPECT_EQ(SimulatedColdJunction(0), 24.0);
    EXPECT_EQ(SimulatedColdJunction(7), 25.5);
}

TEST(SimulatedSignals, PortsCount) {
    EXPECT_EQ(SimulatedPort(0, 0), 0);
    EXPECT_EQ(SimulatedPort(0, 255), 255);
    EXPECT_EQ(SimulatedPort(0, 256), 0);
    EXPECT_EQ(SimulatedPort(3, 7), 55);
    EXPECT_EQ(SimulatedPort(11, 100), 20);
}

class SimulatedTrigger : public testing::Test {
protected:
    // Four channels at 4000 conversions a second: 1000 scans a second, AI0 a sine of period 100, AI2 a
    // triangle of period 50, both with 5 volts.
    SimulatedTrigger() {
        for (std::int32_t channel = 0; channel < 4; ++channel)
            setup.channels.push_back({channel, {0, -10.0, 10.0}, SingleEnded});
        setup.sampleRate = 4000.0;
        setup.trigger = {1, 0, 1, 0.0, 0.0, 0.0};
    }

    StreamSetup setup;
};

TEST_F(SimulatedTrigger, WithoutOneTheStreamStartsAtOnce) {
    setup.trigger = {};
    EXPECT_EQ(FirstScan(0, setup), 0U);
    setup.trigger = {0, 1, 3, 99.0, 1000.0, 1000.0};
    EXPECT_EQ(FirstScan(0, setup), 0U);
}

TEST_F(SimulatedTrigger, DigitalComesAtOnce) {
    setup.trigger.source = 0;
    EXPECT_EQ(FirstScan(0, setup), 0U);
}

TEST_F(SimulatedTrigger, PostWaitsForTheEdge) {
    setup.trigger = {1, 0, 1, 4.9999, 0.0, 0.0}; // sine rising to its top
    EXPECT_EQ(FirstScan(0, setup), 25U);
    setup.trigger.edge = 1;
    EXPECT_EQ(FirstScan(0, setup), 26U);
    setup.trigger = {1, 0, 3, 0.0, 0.0, 0.0}; // triangle from -5 through 0
    EXPECT_EQ(FirstScan(0, setup), 13U);
    setup.trigger.edge = 1;
    EXPECT_EQ(FirstScan(0, setup), 38U);
}

TEST_F(SimulatedTrigger, ThresholdThatIsNeverPassedNeverTriggers) {
    setup.trigger.voltage = 5.5;
    EXPECT_EQ(FirstScan(0, setup), std::nullopt);
    setup.trigger.mode = 2;
    EXPECT_EQ(FirstScan(0, setup), std::nullopt);
    setup.trigger.mode = 3;
    EXPECT_EQ(FirstScan(0, setup), std::nullopt);
}

TEST_F(SimulatedTrigger, DelayStartsLaterByItsTime) {
    setup.trigger = {2, 0, 0, 0.0, 20.0, 0.0};
    EXPECT_EQ(FirstScan(0, setup), 20U);
    setup.trigger.delayTime = 20.1;
    EXPECT_EQ(FirstScan(0, setup), 21U);
    setup.trigger = {2, 0, 3, 0.0, 20.0, 0.0};
    EXPECT_EQ(FirstScan(0, setup), 33U);
}

TEST_F(SimulatedTrigger, AboutEndsAfterItsTime) {
    setup.trigger = {3, 0, 3, 0.0, 0.0, 7.0}; // trigger at scan 13, end at scan 20
    setup.totalSamples = 4 * 15;
    EXPECT_EQ(FirstScan(0, setup), 5U);
    setup.totalSamples = 4 * 50; // cannot begin before the start
    EXPECT_EQ(FirstScan(0, setup), 0U);
    setup.totalSamples = 0;
    EXPECT_EQ(FirstScan(0, setup), 0U);
}

TEST_F(SimulatedTrigger, TimesBeyondReasonAreRefused) {
    for (const double time : {-1.0, 1e300, std::nan("")}) {
        setup.trigger = {2, 0, 0, 0.0, time, 0.0};
        EXPECT_THROW((void)FirstScan(0, setup), RunTimeError) << time;
        setup.trigger = {3, 0, 0, 0.0, 0.0, time};
        EXPECT_THROW((void)FirstScan(0, setup), RunTimeError) << time;
    }
}

TEST(SimulatedSignals, ReadingsMayLieBetweenTwoOrdinals) {
    EXPECT_NEAR(SignalLevel({Sine, 40, 1.0, 0}, 2.5), std::sin(2.5 / 40 * 2 * std::numbers::pi), 1e-12);
    EXPECT_DOUBLE_EQ(SignalLevel({Triangle, 40, 1.0, 0}, 42.5), -0.75);
    const Signal noise{Noise, 16384, 1.0, 5};
    EXPECT_EQ(SignalLevel(noise, 7.9), SignalLevel(noise, 7));
    EXPECT_EQ(SignalLevel({Spike, 100, 1.0, 0}, 50.9), 1.0);
    EXPECT_EQ(SignalLevel({Spike, 100, 1.0, 0}, 51.0), 0.0);
    EXPECT_EQ(SimulatedCelsius(0, 0, 50.5), 100.5);
    EXPECT_EQ(SimulatedPort(0, 9.99), 9);
}

} // namespace
} // namespace tracelet
