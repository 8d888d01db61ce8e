#include "core/samples/TimeTrack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace tracelet {
namespace {

std::vector<double> TimesOf(const TimeTrack& track) {
    std::vector<double> times;
    for (std::int64_t i = track.First(); i < track.End(); ++i)
        times.push_back(track.X(i));
    return times;
}

TEST(TimeTrack, EvenTimesStandAStepApart) {
    TimeTrack track;
    track.AppendEven(1, 0.5, 3);
    EXPECT_EQ(TimesOf(track), (std::vector<double>{1, 1.5, 2}));
    track.AppendEven(2.5, 0.5, 2);
    EXPECT_EQ(TimesOf(track), (std::vector<double>{1, 1.5, 2, 2.5, 3}));
}

TEST(TimeTrack, EvenTimesCostNothing) {
    TimeTrack track;
    track.AppendEven(0, 1e-6, 1000);
    const std::size_t few = track.HeldBytes();
    for (int i = 1; i < 10000; ++i)
        track.AppendEven(static_cast<double>(i) * 1000 * 1e-6, 1e-6, 1000);
    EXPECT_EQ(track.End(), 10'000'000);
    EXPECT_EQ(track.HeldBytes(), few);
}

TEST(TimeTrack, TimesOfTheirOwnAreKeptAsTheyAre) {
    TimeTrack track;
    for (const double x : {0.0, 0.1, 0.35, 0.35, 2.0})
        track.AppendOne(x);
    EXPECT_EQ(TimesOf(track), (std::vector<double>{0, 0.1, 0.35, 0.35, 2}));
    EXPECT_EQ(track.StretchCount(), 1);
}

TEST(TimeTrack, KindsFollowOneAnotherInOneStretch) {
    TimeTrack track;
    track.AppendEven(0, 1, 3);
    track.AppendOne(2.5);
    track.AppendOne(2.75);
    track.AppendEven(3, 2, 2);
    EXPECT_EQ(TimesOf(track), (std::vector<double>{0, 1, 2, 2.5, 2.75, 3, 5}));
    std::vector<TimeTrack::Stretch> stretches;
    track.Stretches(0, track.End(), stretches);
    ASSERT_EQ(stretches.size(), 1U);
    EXPECT_EQ(stretches[0].end, 7);
}

TEST(TimeTrack, TimeThatGoesBackStartsAStretch) {
    TimeTrack track;
    track.AppendEven(0, 1, 3);
    track.AppendEven(0.5, 1, 2);
    track.AppendOne(0.25);
    std::vector<TimeTrack::Stretch> stretches;
    track.Stretches(1, track.End(), stretches);
    ASSERT_EQ(stretches.size(), 3U);
    EXPECT_EQ(stretches[0].first, 1);
    EXPECT_EQ(stretches[0].end, 3);
    EXPECT_EQ(stretches[1].end, 5);
    EXPECT_EQ(stretches[2].end, 6);
    EXPECT_EQ(track.StretchCount(), 3);
}

TEST(TimeTrack, DroppedTimesAreForgottenTheRestStays) {
    TimeTrack track;
    track.AppendEven(0, 1, 3);
    track.AppendOne(2.5);
    track.AppendOne(4);
    track.AppendEven(5, 1, 2);
    const std::vector<double> all = TimesOf(track);
    for (std::int64_t first = 1; first < 7; ++first) {
        track.DropBefore(first);
        EXPECT_EQ(TimesOf(track), std::vector<double>(all.begin() + first, all.end()));
        EXPECT_EQ(TimesOf(track.Part(first, 7)), TimesOf(track));
    }
    track.DropBefore(7);
    track.AppendOne(0);
    EXPECT_EQ(TimesOf(track), (std::vector<double>{0}));
}

TEST(TimeTrack, MatchesTellsWhetherSamplesStandAtGivenTimes) {
    TimeTrack track;
    track.AppendEven(0, 0.5, 4);
    track.AppendOne(7);
    EXPECT_TRUE(track.Matches(1, 0.5, 0.5, 3));
    EXPECT_FALSE(track.Matches(1, 0.5, 0.25, 3));
    EXPECT_FALSE(track.Matches(1, 0.75, 0.5, 3));
    EXPECT_FALSE(track.Matches(1, 0.5, 0.5, 4)) << "the last one stands elsewhere";
    EXPECT_FALSE(track.Matches(1, 0.5, 0.5, 5)) << "not held";
    EXPECT_TRUE(track.Matches(4, 7, -1, 1));
    EXPECT_FALSE(track.Matches(4, 6, -1, 1));
}

/// A stretch of a kind of times, each not below the one before.
TimeTrack TrackOf(int kind, std::mt19937& random) {
    std::uniform_real_distribution<double> gap(0, 0.01);
    TimeTrack track;
    double x = kind == 3 ? 1e9 : 0;
    for (int i = 0; i < 300; ++i) {
        const bool even = kind == 0 || kind == 3 || (kind == 2 && i % 7 == 0);
        if (even) {
            const double step = kind == 2 ? gap(random) : 0.001;
            track.AppendEven(x, step, 10);
            x = track.X(track.End() - 1) + step;
        } else {
            x += i % 5 == 0 ? 0 : gap(random);
            track.AppendOne(x);
        }
    }
    return track;
}

TEST(TimeTrack, LowerBoundAgreesWithAPlainSearch) {
    std::mt19937 random(7);
    for (int kind = 0; kind < 4; ++kind) {
        TimeTrack track = TrackOf(kind, random);
        track.DropBefore(37);
        const std::vector<double> times = TimesOf(track);
        const TimeTrack::Stretch stretch{track.First(), track.End()};
        std::uniform_real_distribution<double> anywhere(times.front() - 0.1, times.back() + 0.1);
        for (int i = 0; i < 2000; ++i) {
            const double x = i % 3 == 0 ? times[random() % times.size()] : anywhere(random);
            const auto expected = std::ranges::lower_bound(times, x) - times.begin() + track.First();
            ASSERT_EQ(track.LowerBound(stretch, x), expected) << kind << " " << x;
            const std::int64_t hint = track.First() + (expected - track.First()) / 2;
            ASSERT_EQ(track.LowerBoundFrom(hint, stretch, x), expected) << kind << " " << x;
        }
    }
}

TEST(TimeTrack, LowerBoundEndsWhereDoublesCannotTellSamplesApart) {
    TimeTrack track;
    track.AppendEven(1e9, 1e-12, 1'000'000);
    const TimeTrack::Stretch stretch{0, 1'000'000};
    EXPECT_EQ(track.LowerBound(stretch, 1e9), 0);
    const std::int64_t bound = track.LowerBound(stretch, 1e9 + 5e-7);
    EXPECT_GE(track.X(bound), 1e9 + 5e-7);
    EXPECT_LT(track.X(bound - 1), 1e9 + 5e-7);
}

} // namespace
} // namespace tracelet
