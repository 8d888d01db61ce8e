#include "core/samples/Statistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace tracelet {
namespace {

constexpr float Nan = std::numeric_limits<float>::quiet_NaN();
constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr double Digit = std::numeric_limits<double>::epsilon();

struct Samples {
    std::vector<double> times;
    std::vector<float> values;
};

/// A direct pass over the samples first <= index < end, in a wider type.
SpanStatistics Plain(const Samples& samples, std::size_t first, std::size_t end) {
    SpanStatistics plain;
    long double sum = 0;
    long double squares = 0;
    long double part = 0; // many equal roundings would add up
    Extent extent;
    for (std::size_t i = first; i < end; ++i) {
        if (i % 1024 == 0)
            squares += std::exchange(part, 0);
        const float value = samples.values[i];
        if (!std::isfinite(value))
            continue;
        ++plain.count;
        sum += static_cast<long double>(value);
        part += static_cast<long double>(value) * static_cast<long double>(value);
        extent.Add(value);
    }
    if (plain.count == 0)
        return plain;
    const long double mean = sum / static_cast<long double>(plain.count);
    long double deviations = 0;
    for (std::size_t i = first; i < end; ++i)
        if (std::isfinite(samples.values[i])) {
            const long double off = static_cast<long double>(samples.values[i]) - mean;
            deviations += off * off;
        }
    plain.minimum = static_cast<double>(extent.low);
    plain.maximum = static_cast<double>(extent.high);
    plain.mean = static_cast<double>(mean);
    plain.rootMeanSquare =
        static_cast<double>(std::sqrt((squares + part) / static_cast<long double>(plain.count)));
    plain.deviation = static_cast<double>(std::sqrt(deviations / static_cast<long double>(plain.count)));
    return plain;
}

LineStatistics PlainLine(const Samples& samples, std::size_t first, std::size_t end, float low) {
    LineStatistics plain;
    long double high = 0;
    std::vector<double> rises;
    for (std::size_t i = first; i < end; ++i) {
        ++plain.count;
        if (i == first)
            continue;
        plain.edges += samples.values[i] != samples.values[i - 1] ? 1 : 0;
        if (samples.values[i] > samples.values[i - 1])
            rises.push_back(samples.times[i]);
        if (samples.values[i - 1] > low)
            high +=
                static_cast<long double>(samples.times[i]) - static_cast<long double>(samples.times[i - 1]);
    }
    if (end > first + 1)
        plain.highShare = static_cast<double>(high) / (samples.times[end - 1] - samples.times[first]);
    if (rises.size() >= 2)
        plain.frequency = static_cast<double>(rises.size() - 1) / (rises.back() - rises.front());
    return plain;
}

void ExpectNear(double found, double plain, double tolerance) {
    EXPECT_EQ(std::isnan(found), std::isnan(plain));
    if (!std::isnan(plain)) {
        EXPECT_NEAR(found, plain, tolerance);
    }
}

void ExpectSame(const SpanStatistics& found, const SpanStatistics& plain) {
    EXPECT_EQ(found.count, plain.count);
    ExpectNear(found.minimum, plain.minimum, 0);
    ExpectNear(found.maximum, plain.maximum, 0);
    ExpectNear(found.mean, plain.mean, 2 * Digit * plain.rootMeanSquare);
    ExpectNear(found.rootMeanSquare, plain.rootMeanSquare, 4 * Digit * plain.rootMeanSquare);
    // The last digits of a mean far from 0 are worth more than those of the deviations from it.
    ExpectNear(found.deviation, plain.deviation,
               16 * Digit * plain.deviation + Digit / 1024 * plain.rootMeanSquare);
}

void ExpectSame(const LineStatistics& found, const LineStatistics& plain, double timeDigits) {
    EXPECT_EQ(found.count, plain.count);
    EXPECT_EQ(found.edges, plain.edges);
    ExpectNear(found.frequency, plain.frequency, 4 * Digit * plain.frequency);
    ExpectNear(found.highShare, plain.highShare, 16 * Digit * timeDigits);
}

/// Appends in parts, the last of them of one sample each.
SampleStore StoreOf(const Samples& samples, double step) {
    SampleStore store;
    store.AddPlot();
    std::mt19937 random(4);
    for (std::size_t at = 0; at < samples.values.size();) {
        const std::size_t count = std::min<std::size_t>(samples.values.size() - at, 1 + at * 7 % 256);
        if (step > 0)
            store.AppendEven(samples.times[at], step, static_cast<std::int64_t>(count), 1,
                             &samples.values[at]);
        else
            for (std::size_t i = at; i < at + count; ++i)
                store.AppendScan(samples.times[i], {&samples.values[i], 1});
        at += count;
        store.SumUpMoments(random() % 2 == 0 ? 1000 : 0);
    }
    // What is left to sum up is read one by one.
    store.SumUpMoments(static_cast<std::int64_t>(samples.values.size() / 2));
    return store;
}

Samples EvenTimes(std::size_t count, double step) {
    Samples samples;
    for (std::size_t i = 0; i < count; ++i)
        samples.times.push_back(static_cast<double>(i) * step);
    samples.values.resize(count);
    return samples;
}

/// Spans of all lengths. By hand with many more: STATISTICS_SPANS=1000000
int SpansToTry() {
    const char* told = std::getenv("STATISTICS_SPANS");
    return told == nullptr ? 600 : std::stoi(told);
}

class Spans {
public:
    explicit Spans(std::size_t size) : most(size) {}
    struct Span {
        std::size_t first;
        std::size_t end;
    };
    Span Next() {
        std::uniform_real_distribution<double> logarithm(0, std::log(static_cast<double>(most)));
        const auto length = static_cast<std::size_t>(std::exp(logarithm(random)));
        std::size_t first = std::uniform_int_distribution<std::size_t>(0, most - length)(random);
        if (random() % 4 == 0)
            first &= ~std::size_t{255};
        return {first, first + length};
    }

private:
    std::size_t most;
    std::mt19937 random{5};
};

struct Noise {
    float mean;
    float deviation;
};

class StatisticsOfNoise : public testing::TestWithParam<Noise> {};
INSTANTIATE_TEST_SUITE_P(Noise, StatisticsOfNoise,
                         testing::Values(Noise{0, 1}, Noise{5, 0.001F}, Noise{-30000, 0.1F}, Noise{300, 0}));

TEST_P(StatisticsOfNoise, OfAnySpanAreThoseOfADirectPass) {
    constexpr double Step = 0.001;
    Samples samples = EvenTimes(1'200'000, Step);
    std::mt19937 random(6);
    std::normal_distribution<float> noise(0, 1);
    for (float& value : samples.values)
        value = GetParam().mean + GetParam().deviation * noise(random);
    for (std::size_t at = 0; at < samples.values.size(); at += 1000 + random() % 50'000)
        samples.values[at] = at % 3 == 0 ? Nan : at % 3 == 1 ? Inf : -Inf;
    const SampleStore store = StoreOf(samples, Step);
    Spans spans(samples.values.size());
    for (int round = SpansToTry() / 4; round > 0 && !HasFailure(); --round) {
        const auto [first, end] = spans.Next();
        SCOPED_TRACE(testing::Message() << first << " to " << end);
        ExpectSame(
            StatisticsBetween(store, 0, samples.times[first] - Step / 4, samples.times[end - 1] + Step / 4),
            Plain(samples, first, end));
    }
}

class StatisticsOfLines : public testing::TestWithParam<double> {};
INSTANTIATE_TEST_SUITE_P(Steps, StatisticsOfLines, testing::Values(0.001, -1.0));

TEST_P(StatisticsOfLines, OfAnySpanAreThoseOfADirectPassByTime) {
    constexpr float Low = 12;
    Samples samples = EvenTimes(100'000, 0.001);
    std::mt19937 random(7);
    double time = 0;
    float value = Low;
    for (std::size_t i = 0; i < samples.values.size(); ++i) {
        if (random() % (i < 50'000 ? 3 : 2000) == 0)
            value = 2 * Low + 1 - value;
        samples.values[i] = value;
        time +=
            static_cast<double>(1 + random() % 9) * 0.001; // a sample may stand nine times as long as another
        if (GetParam() < 0)
            samples.times[i] = time;
    }
    const SampleStore store = StoreOf(samples, GetParam());
    Spans spans(samples.values.size());
    for (int round = SpansToTry() / 4; round > 0 && !HasFailure(); --round) {
        const auto [first, end] = spans.Next();
        SCOPED_TRACE(testing::Message() << first << " to " << end);
        // A time tells a short span less finely than a long one, and the line's level costs digits too.
        const double duration = samples.times[end - 1] - samples.times[first];
        const double timeDigits =
            static_cast<double>(Low) + samples.times[end - 1] / std::max(duration, 0.001);
        ExpectSame(LineStatisticsBetween(store, 0, samples.times[first] - 0.0002,
                                         samples.times[end - 1] + 0.0002, static_cast<double>(Low)),
                   PlainLine(samples, first, end, Low), timeDigits);
    }
}

TEST(Statistics, OfNothingAreNone) {
    SampleStore store;
    store.AddPlot();
    EXPECT_EQ(StatisticsBetween(store, 0, 0, 1).count, 0);
    EXPECT_TRUE(std::isnan(StatisticsBetween(store, 0, 0, 1).mean));
    EXPECT_FALSE(NearestSample(store, 0, 0).has_value());
    for (int i = 0; i < 1000; ++i)
        store.AppendPoint(0, i, static_cast<double>(i % 2 == 0 ? Nan : Inf));
    EXPECT_EQ(StatisticsBetween(store, 0, 0, 1000).count, 0);
    EXPECT_TRUE(std::isnan(StatisticsBetween(store, 0, 0, 1000).rootMeanSquare));
}

TEST(Statistics, OfHeldSamplesOnly) {
    for (const std::int64_t limit : {10, 255, 256, 700, 5000, 70'000}) {
        Samples samples;
        SampleStore store;
        store.AddPlot();
        store.SetLimit(limit);
        std::mt19937 random(8);
        while (samples.values.size() < 150'000) {
            const std::size_t at = samples.values.size();
            for (int i = 0; i < 200; ++i) {
                samples.times.push_back(static_cast<double>(samples.times.size()));
                samples.values.push_back(static_cast<float>(random() % 100));
            }
            store.AppendEven(samples.times[at], 1, 200, 1, &samples.values[at]);
            if (random() % 16 == 0)
                store.SumUpMoments(1 << 14);
            if (random() % 64 != 0)
                continue;
            const std::size_t held = std::min<std::size_t>(static_cast<std::size_t>(limit), at + 200);
            SCOPED_TRACE(testing::Message() << limit << " of " << at + 200);
            ExpectSame(StatisticsBetween(store, 0, 0, 1e9), Plain(samples, at + 200 - held, at + 200));
        }
    }
}

TEST(Statistics, JoinStretchesBetweenWhichTimeGoesBack) {
    SampleStore store;
    store.AddPlot();
    for (const double start : {0.0, 200.0, 100.0})
        for (int i = 0; i < 1000; ++i)
            store.AppendPoint(0, start + i, i / 100 % 2 + start);
    const SpanStatistics found = StatisticsBetween(store, 0, 200, 299);
    EXPECT_EQ(found.count, 300);
    EXPECT_EQ(found.minimum, 0.0);
    EXPECT_EQ(found.maximum, 200.0);
    const LineStatistics line = LineStatisticsBetween(store, 0, 0, 99, 0);
    EXPECT_EQ(line.count, 100);
    EXPECT_EQ(line.edges, 0);
    EXPECT_TRUE(std::isnan(line.frequency));
    EXPECT_EQ(line.highShare, 0.0);
}

TEST(Statistics, ASquareWaveHasItsFrequencyAndDuty) {
    SampleStore store;
    store.AddPlot();
    std::vector<float> wave;
    for (int i = 0; i < 256; ++i)
        wave.push_back(i % 8 < 2 ? 5.0F : 4.0F);
    for (int block = 0; block < 400; ++block)
        store.AppendEven(block * 0.256, 0.001, 256, 1, wave.data());
    const LineStatistics line = LineStatisticsBetween(store, 0, 0, 200, 4);
    EXPECT_EQ(line.count, 102'400);
    EXPECT_EQ(line.edges, 2 * 12'800 - 1);
    EXPECT_NEAR(line.frequency, 125, 1e-9);
    EXPECT_NEAR(LineStatisticsBetween(store, 0, 0.9999, 9.0001, 4).highShare, 0.25, 1e-12);
}

struct NearestCase {
    double x;
    double time; ///< not a number: none
};

TEST(NearestSample, IsTheNearestAndNoneIsInvented) {
    SampleStore store;
    store.AddPlot();
    for (const double x : {10.0, 11.0, 12.0, 20.0, 20.5})
        store.AppendPoint(0, x, 2 * x);
    constexpr double None = SpanStatistics::None;
    for (const auto& [x, time] : {NearestCase{8.9, None},
                                  {9.1, 10},
                                  {10, 10},
                                  {10.4, 10},
                                  {10.6, 11},
                                  {15.9, 12},
                                  {16.1, 20},
                                  {20.2, 20},
                                  {20.3, 20.5},
                                  {20.9, 20.5},
                                  {21.1, None}}) {
        const std::optional<SampleStore::Point> found = NearestSample(store, 0, x);
        EXPECT_EQ(found.has_value(), !std::isnan(time)) << x;
        if (found) {
            EXPECT_EQ(found->x, time) << x;
            EXPECT_EQ(found->y, 2 * time) << x;
        }
    }
}

TEST(NearestSample, OfThoseEquallyNearIsTheNewest) {
    SampleStore store;
    store.AddPlot();
    for (const double value : {1.0, 2.0})
        for (int i = 0; i < 10; ++i)
            store.AppendPoint(0, i, value);
    EXPECT_EQ(NearestSample(store, 0, 5)->y, 2.0);
    EXPECT_EQ(NearestSample(store, 0, 5.5)->x, 6.0);
}

TEST(TimesAround, AreThoseOfTheSamplesBeforeAndBehind) {
    SampleStore store;
    store.AddPlot();
    for (const double x : {1.0, 2.0, 2.0, 4.0, 3.0, 5.0})
        store.AppendPoint(0, x, 0);
    const auto expect = [&](double x, double before, double behind) {
        EXPECT_EQ(TimesAround(store, 0, x).before, before) << x;
        EXPECT_EQ(TimesAround(store, 0, x).behind, behind) << x;
    };
    constexpr double None = std::numeric_limits<double>::infinity();
    expect(0, -None, 1);
    expect(1, -None, 2);
    expect(2, 1, 3);
    expect(3.5, 3, 4);
    expect(5, 4, None);
}

} // namespace
} // namespace tracelet
