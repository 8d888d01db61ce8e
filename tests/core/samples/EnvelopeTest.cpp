#include "core/samples/Envelope.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <span>
#include <vector>

namespace tracelet {
namespace {

constexpr float Nan = std::numeric_limits<float>::quiet_NaN();
constexpr float Inf = std::numeric_limits<float>::infinity();

Extent PlainExtent(const std::vector<float>& values, std::int64_t first, std::int64_t end) {
    Extent extent;
    for (std::int64_t i = first; i < end; ++i)
        extent.Add(values[static_cast<std::size_t>(i)]);
    return extent;
}

/// By the vectors of this machine and by those of every machine.
class ExtentTest : public testing::TestWithParam<Extent (*)(std::span<const float>)> {};
INSTANTIATE_TEST_SUITE_P(Vectors, ExtentTest, testing::Values(ExtentOf, ExtentByNarrowVectors));

TEST_P(ExtentTest, OfNothingIsEmpty) {
    EXPECT_TRUE(Extent{}.Empty());
    EXPECT_TRUE(GetParam()({}).Empty());
    const std::vector<float> values(100, Nan);
    EXPECT_TRUE(GetParam()(values).Empty());
}

TEST_P(ExtentTest, PassesOverWhatIsNoNumberWhereverItStands) {
    for (std::size_t count : {1U, 7U, 8U, 9U, 16U, 63U, 64U, 65U}) {
        for (std::size_t at = 0; at < count; ++at) {
            std::vector<float> values(count, 2.0F);
            values[at] = Nan;
            const Extent extent = GetParam()(values);
            EXPECT_EQ(extent.Empty(), count == 1);
            if (count > 1) {
                EXPECT_EQ(extent, (Extent{2, 2})) << count << " " << at;
            }
            values[at] = -Inf;
            EXPECT_EQ(GetParam()(values).low, -Inf) << count << " " << at;
            values[at] = Inf;
            EXPECT_EQ(GetParam()(values).high, Inf) << count << " " << at;
        }
    }
}

TEST_P(ExtentTest, HoldsEveryValueAndNoMore) {
    std::mt19937 random(2);
    std::uniform_real_distribution<float> value(-5, 5);
    for (std::size_t count = 1; count < 200; ++count) {
        std::vector<float> values(count);
        std::ranges::generate(values, [&] { return value(random); });
        EXPECT_EQ(GetParam()(values), (Extent{std::ranges::min(values), std::ranges::max(values)})) << count;
    }
}

TEST(Envelope, AnswersEveryRangeAsAPlainScanDoes) {
    std::mt19937 random(1);
    std::normal_distribution<float> noise;
    Envelope envelope;
    std::vector<float> values;
    for (int i = 0; i < 40000; ++i) {
        const float value = i % 997 == 0 ? Nan : noise(random) + static_cast<float>(i) * 0.001F;
        envelope.Append(value);
        values.push_back(value);
    }
    const std::int64_t dropped = 1234;
    envelope.DropBefore(dropped);
    const auto count = static_cast<std::int64_t>(values.size());
    std::uniform_int_distribution<std::int64_t> any(dropped, count);
    for (int i = 0; i < 3000; ++i) {
        const std::int64_t first = any(random);
        const std::int64_t longest = i % 3 == 0 ? count : i % 3 == 1 ? 2000 : 100;
        const std::int64_t end = std::min(any(random), first + longest);
        if (first < end) {
            ASSERT_EQ(envelope.Range(first, end), PlainExtent(values, first, end)) << first << " " << end;
        }
    }
    EXPECT_EQ(envelope.Range(dropped, count), PlainExtent(values, dropped, count));
    EXPECT_EQ(envelope.Range(0, count), PlainExtent(values, dropped, count)) << "only what is held";
}

TEST(Envelope, FiniteRangePassesOverInfiniteSamples) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    std::mt19937 random(2);
    std::normal_distribution<float> noise;
    for (const unsigned often : {1U, 2U, 1000U}) {
        Envelope envelope;
        std::vector<float> finite;
        for (int i = 0; i < 20'000; ++i) {
            const bool odd = random() % often == 0 || (i > 7000 && i < 8000);
            finite.push_back(odd ? Nan : noise(random));
            envelope.Append(odd ? (random() % 2 == 0 ? infinity : -infinity) : finite.back());
        }
        envelope.DropBefore(100);
        for (const auto& [first, end] : {std::pair<std::int64_t, std::int64_t>{100, 20'000},
                                         {150, 151},
                                         {3000, 3500},
                                         {7100, 7900},
                                         {900, 17'000}})
            EXPECT_EQ(envelope.FiniteRange(first, end), PlainExtent(finite, first, end))
                << often << " " << first;
        EXPECT_EQ(envelope.FiniteRange(0, 30'000), PlainExtent(finite, 100, 20'000)) << "only what is held";
    }
}

TEST(Envelope, RangeOfNothingIsEmpty) {
    Envelope envelope;
    EXPECT_TRUE(envelope.Range(0, 0).Empty()) << "nothing held";
    for (int i = 0; i < 10; ++i)
        envelope.Append(1);
    EXPECT_TRUE(envelope.Range(5, 5).Empty());
    EXPECT_TRUE(envelope.Range(6, 5).Empty());
    EXPECT_TRUE(envelope.Range(10, 10).Empty());
}

TEST(Envelope, KeepsALoneSpikeThroughAllLevels) {
    Envelope envelope;
    constexpr std::int64_t Count = 3'000'000;
    constexpr std::int64_t Spike = 2'345'678;
    for (std::int64_t done = 0; done < Count;) {
        envelope.Reserve(4096);
        std::int64_t room = 0;
        float* cells = envelope.Room(Count - done, room);
        for (std::int64_t i = 0; i < room; ++i)
            cells[i] = done + i == Spike ? 8.0F : 0.0F;
        envelope.Appended(room);
        done += room;
    }
    EXPECT_EQ(envelope.Range(0, Count), (Extent{0, 8}));
    EXPECT_EQ(envelope.Range(0, Spike), (Extent{0, 0}));
    EXPECT_EQ(envelope.Range(Spike, Count), (Extent{0, 8}));
    EXPECT_EQ(envelope.Range(Spike, Spike + 1), (Extent{8, 8}));
    EXPECT_EQ(envelope.Range(Spike + 1, Count), (Extent{0, 0}));
}

TEST(Envelope, HoldsAtMostFourAndAHalfBytesASample) {
    Envelope envelope;
    constexpr std::int64_t Count = 500'000;
    for (std::int64_t i = 0; i < Count; ++i)
        envelope.Append(static_cast<float>(i));
    EXPECT_LE(static_cast<double>(envelope.HeldBytes()), 4.5 * Count);
}

TEST(Envelope, GivesBackMemoryOfDroppedSamplesAndKeepsItsSizeAfterwards) {
    Envelope envelope;
    for (int i = 0; i < 300'000; ++i)
        envelope.Append(1);
    const std::size_t full = envelope.HeldBytes();
    envelope.DropBefore(290'000);
    const std::size_t small = envelope.HeldBytes();
    EXPECT_LT(small * 8, full);
    for (int i = 300'000; i < 2'000'000; ++i) {
        envelope.Append(static_cast<float>(i));
        envelope.DropBefore(i - 10'000);
    }
    EXPECT_LE(envelope.HeldBytes(), small + 4 * 4096 * sizeof(float));
    EXPECT_EQ(envelope.Range(1'989'999, 2'000'000), (Extent{1'989'999, 1'999'999}));
}

} // namespace
} // namespace tracelet
