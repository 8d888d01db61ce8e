#include "core/samples/SampleStore.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <vector>

namespace tracelet {
namespace {

using Points = std::vector<std::pair<double, double>>;

Points PointsOf(const SampleStore& store, int plot) {
    Points points;
    for (std::int64_t i = 0; i < store.Count(plot); ++i) {
        const SampleStore::Point point = store.At(plot, i);
        points.emplace_back(point.x, point.y);
    }
    return points;
}

SampleStore StoreOf(int plots) {
    SampleStore store;
    for (int i = 0; i < plots; ++i)
        store.AddPlot();
    return store;
}

void AppendScan(SampleStore& store, double x, std::vector<float> values) {
    store.AppendScan(x, values);
}

TEST(SampleStore, BlocksOfEveryTypeAreSpreadOverTheFirstPlots) {
    SampleStore store = StoreOf(3);
    const std::vector<float> floats = {1, 10, 2, 20};
    const std::vector<std::int32_t> longs = {65536, -5};
    const std::vector<double> doubles = {1e300, -1e300};
    store.AppendEven(0, 0.5, 2, 2, floats.data());
    store.AppendEven(1, 0.5, 1, 2, longs.data());
    store.AppendEven(1.5, 0.5, 1, 2, doubles.data());
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(PointsOf(store, 0), (Points{{0, 1}, {0.5, 2}, {1, 65536}, {1.5, inf}}));
    EXPECT_EQ(PointsOf(store, 1), (Points{{0, 10}, {0.5, 20}, {1, -5}, {1.5, -inf}}));
    EXPECT_EQ(store.Count(2), 0);
}

TEST(SampleStore, MoreChannelsThanPlotsAreIgnored) {
    SampleStore store = StoreOf(1);
    const std::vector<float> values = {1, 10, 100, 2, 20, 200};
    store.AppendEven(0, 1, 2, 3, values.data());
    EXPECT_EQ(PointsOf(store, 0), (Points{{0, 1}, {1, 2}}));
    AppendScan(store, 5, {7, 8});
    EXPECT_EQ(store.Count(0), 3);
}

template <typename Value>
class SampleStoreBlocks : public testing::Test {};
using SampleTypes = testing::Types<float, std::int32_t, double>;
TYPED_TEST_SUITE(SampleStoreBlocks, SampleTypes);

TYPED_TEST(SampleStoreBlocks, EveryChannelOfEveryScanReachesItsPlot) {
    for (const int plots : {1, 3, 4, 6, 9, 16})
        for (const int channels : {plots, plots + 1, plots + 5, 1})
            for (const int scans : {1, 3, 4, 7, 255, 256}) {
                std::vector<TypeParam> values; // of exactly the size that may be read
                for (int i = 0; i < scans * channels; ++i)
                    values.push_back(static_cast<TypeParam>(i));
                SampleStore store = StoreOf(plots);
                for (int block = 0; block < 2; ++block) // the second one does not begin at a chunk
                    store.AppendEven(block * scans, 1, scans, channels, values.data());
                for (int plot = 0; plot < plots; ++plot) {
                    Points expected;
                    for (int i = 0; plot < channels && i < 2 * scans; ++i)
                        expected.emplace_back(i, i % scans * channels + plot);
                    ASSERT_EQ(PointsOf(store, plot), expected)
                        << plot << " of " << channels << ", " << scans << " scans";
                }
            }
}

TEST(SampleStore, PlotsOfAScanShareTheirTimes) {
    SampleStore store = StoreOf(64);
    std::vector<float> values(64, 1);
    for (int i = 0; i < 40'000; ++i)
        store.AppendScan(i * 0.001, values);
    EXPECT_EQ(&store.Track(0), &store.Track(63));
    EXPECT_LE(static_cast<double>(store.HeldBytes()) / (64 * 40'000.0), 4.5);
    EXPECT_FALSE(store.SumUpMoments(64 * 40'000));
    EXPECT_LE(static_cast<double>(store.HeldBytes()) / (64 * 40'000.0), 4.8);
}

TEST(SampleStore, DigitalPointsOfOneTickShareTheirTimes) {
    SampleStore store = StoreOf(10);
    for (int tick = 0; tick < 1000; ++tick) {
        AppendScan(store, tick, {1, 2});
        for (int line = 2; line < 10; ++line)
            store.AppendPoint(line, tick + 0.001, line);
    }
    EXPECT_EQ(&store.Track(2), &store.Track(9));
    EXPECT_NE(&store.Track(0), &store.Track(2));
    EXPECT_EQ(store.At(9, 999).x, 999.001);
    EXPECT_EQ(store.At(1, 999).x, 999);
}

TEST(SampleStore, PlotsPartWhereTheirTimesDiffer) {
    SampleStore store = StoreOf(4);
    AppendScan(store, 0, {1, 2, 3, 4});
    AppendScan(store, 1, {1, 2, 3, 4});
    AppendScan(store, 2, {1, 2});
    store.AppendPoint(2, 2.5, 33);
    store.AppendPoint(3, 2.5, 44);
    AppendScan(store, 3, {1, 2, 3, 4});
    EXPECT_EQ(PointsOf(store, 0), (Points{{0, 1}, {1, 1}, {2, 1}, {3, 1}}));
    EXPECT_EQ(PointsOf(store, 1), (Points{{0, 2}, {1, 2}, {2, 2}, {3, 2}}));
    EXPECT_EQ(PointsOf(store, 2), (Points{{0, 3}, {1, 3}, {2.5, 33}, {3, 3}}));
    EXPECT_EQ(PointsOf(store, 3), (Points{{0, 4}, {1, 4}, {2.5, 44}, {3, 4}}));
    EXPECT_EQ(&store.Track(2), &store.Track(3));
}

TEST(SampleStore, TimesThatOneOfThemNoLongerHoldsAreNotShared) {
    SampleStore store = StoreOf(3);
    for (int i = 0; i < 4; ++i)
        AppendScan(store, i, {1, 2, 3});
    store.AppendPoint(0, 20, 1);
    store.SetLimit(3);
    store.AppendPoint(1, 4.5, 2); // goes its own way with the times 2 and 3 alone
    store.SetLimit(0);
    store.AppendPoint(2, 4.5, 3);
    EXPECT_EQ(PointsOf(store, 1), (Points{{2, 2}, {3, 2}, {4.5, 2}}));
    EXPECT_EQ(PointsOf(store, 2), (Points{{0, 3}, {1, 3}, {2, 3}, {3, 3}, {4.5, 3}}));
}

TEST(SampleStore, APlotThatCameLaterSharesTheTimesThatItNeeds) {
    SampleStore store = StoreOf(3);
    for (int i = 0; i < 5; ++i)
        AppendScan(store, i, {1, 2});
    AppendScan(store, 5, {1, 2, 3});
    store.AppendPoint(0, 20, 1);
    store.SetLimit(3);
    store.AppendPoint(1, 6.5, 2); // goes its own way with the times 4 and 5
    store.AppendPoint(2, 6.5, 3);
    EXPECT_EQ(&store.Track(1), &store.Track(2));
    EXPECT_EQ(PointsOf(store, 1), (Points{{4, 2}, {5, 2}, {6.5, 2}}));
    EXPECT_EQ(PointsOf(store, 2), (Points{{5, 3}, {6.5, 3}}));
}

TEST(SampleStore, OneTimeInCommonMakesNoCommonTimes) {
    SampleStore store = StoreOf(4);
    for (int i = 0; i < 3; ++i)
        for (int plot = 0; plot < 4; ++plot)
            store.AppendPoint(plot, plot < 2 ? i : i + 0.5, plot);
    store.AppendPoint(2, 3.5, 2);
    store.AppendPoint(0, 3, 0);
    store.AppendPoint(3, 3, 3); // as plot 0, whose other times are not those of plot 3
    EXPECT_EQ(PointsOf(store, 3), (Points{{0.5, 3}, {1.5, 3}, {2.5, 3}, {3, 3}}));
}

TEST(SampleStore, FewerChannelsThanBeforeLeaveTheOtherPlotsAlone) {
    SampleStore store = StoreOf(3);
    const std::vector<float> three = {1, 2, 3, 1, 2, 3};
    const std::vector<float> two = {4, 5, 4, 5};
    store.AppendEven(0, 1, 2, 3, three.data());
    store.AppendEven(2, 1, 2, 2, two.data());
    store.AppendEven(4, 1, 2, 3, three.data());
    EXPECT_EQ(PointsOf(store, 0), (Points{{0, 1}, {1, 1}, {2, 4}, {3, 4}, {4, 1}, {5, 1}}));
    EXPECT_EQ(PointsOf(store, 2), (Points{{0, 3}, {1, 3}, {4, 3}, {5, 3}}));
}

TEST(SampleStore, LimitKeepsTheNewestPoints) {
    SampleStore store = StoreOf(2);
    store.SetLimit(100);
    std::vector<float> block(2 * 250);
    for (std::size_t i = 0; i < block.size(); ++i)
        block[i] = static_cast<float>(i / 2);
    store.AppendEven(0, 1, 250, 2, block.data());
    EXPECT_EQ(store.Count(0), 100);
    EXPECT_EQ(store.Count(1), 100);
    EXPECT_EQ(store.At(1, 0).x, 150);
    EXPECT_EQ(store.At(1, 0).y, 150);
    store.AppendPoint(0, 250, 7);
    EXPECT_EQ(store.Count(0), 100);
    EXPECT_EQ(store.At(0, 99).x, 250);
}

TEST(SampleStore, SmallerLimitDropsTheOldestWithTheNextPoint) {
    SampleStore store = StoreOf(1);
    for (int i = 0; i < 10; ++i)
        store.AppendPoint(0, i, i);
    store.SetLimit(4);
    EXPECT_EQ(store.Count(0), 10) << "what is drawn stays until more comes";
    store.AppendPoint(0, 10, 10);
    EXPECT_EQ(PointsOf(store, 0), (Points{{7, 7}, {8, 8}, {9, 9}, {10, 10}}));
}

TEST(SampleStore, DropSurplusKeepsToTheLimitAtOnce) {
    SampleStore store = StoreOf(1);
    for (int i = 0; i < 10; ++i)
        store.AppendPoint(0, i, i);
    store.SetLimit(2);
    store.DropSurplus();
    EXPECT_EQ(PointsOf(store, 0), (Points{{8, 8}, {9, 9}}));
}

TEST(SampleStore, NoLimitKeepsEverything) {
    SampleStore store = StoreOf(1);
    store.SetLimit(0);
    for (int i = 0; i < 100'000; ++i)
        store.AppendPoint(0, i, i);
    EXPECT_EQ(store.Count(0), 100'000);
    EXPECT_EQ(store.At(0, 0).x, 0);
}

TEST(SampleStore, MemoryFollowsWhatIsHeldNotTheLimit) {
    SampleStore store = StoreOf(16);
    store.SetLimit(100'000'000);
    std::vector<float> values(16, 1);
    store.AppendScan(0, values);
    EXPECT_LT(store.HeldBytes(), 16 * 32 * 1024U);
}

TEST(SampleStore, MemoryStaysWhenTheLimitIsReached) {
    SampleStore store = StoreOf(4);
    store.SetLimit(20'000);
    std::vector<float> values(4, 1);
    int tick = 0;
    for (; tick < 60'000; ++tick) {
        store.AppendScan(tick * 0.001, values);
        store.AppendPoint(3, tick * 0.001 + 0.0005, 1);
    }
    const std::size_t bytes = store.HeldBytes();
    for (; tick < 150'000; ++tick) {
        store.AppendScan(tick * 0.001, values);
        store.AppendPoint(3, tick * 0.001 + 0.0005, 1);
    }
    EXPECT_LE(store.HeldBytes(), bytes + 64 * 1024);
}

TEST(SampleStore, PlotWithoutNewPointsDoesNotKeepTheTimesOfOthers) {
    SampleStore store = StoreOf(2);
    store.SetLimit(1000);
    for (int i = 0; i < 1000; ++i)
        AppendScan(store, i, {1, 2});
    for (int i = 1000; i < 100'000; ++i)
        AppendScan(store, i, {1});
    EXPECT_EQ(store.Count(1), 1000);
    EXPECT_EQ(store.At(1, 0).x, 0);
    EXPECT_EQ(store.At(1, 999).x, 999);
    EXPECT_EQ(store.At(0, 999).x, 99'999);
    EXPECT_LT(store.Track(0).HeldBytes(), 64 * 1024U);
}

TEST(SampleStore, ClearKeepsThePlots) {
    SampleStore store = StoreOf(2);
    AppendScan(store, 0, {1, 2});
    store.Clear();
    EXPECT_EQ(store.PlotCount(), 2);
    EXPECT_EQ(store.Count(0), 0);
    AppendScan(store, 5, {3, 4});
    EXPECT_EQ(PointsOf(store, 1), (Points{{5, 4}}));
}

TEST(SampleStore, BudgetThatIsSpentIsOutOfMemoryAndNothingIsAppended) {
    SampleStore store = StoreOf(2);
    store.SetBudget(200'000);
    std::vector<float> block(2 * 256, 1);
    std::int64_t appended = 0;
    EXPECT_THROW(
        {
            for (; appended < 1'000'000; appended += 256)
                store.AppendEven(static_cast<double>(appended), 1, 256, 2, block.data());
        },
        std::bad_alloc);
    EXPECT_GT(appended, 10'000);
    EXPECT_EQ(store.Count(0), appended);
    EXPECT_EQ(store.Count(1), appended);
    EXPECT_LE(store.HeldBytes(), 300'000U);
}

} // namespace
} // namespace tracelet
