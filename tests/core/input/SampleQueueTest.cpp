#include "core/input/SampleQueue.h"
#include "core/base/RunTimeError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace tracelet {
namespace {

using Kind = SampleQueue::Kind;

constexpr std::size_t MiB = std::size_t{1} << 20;

// Puts whole halves until the queue is full or `most` were put; gives how many.
std::size_t Fill(SampleQueue& queue, std::size_t halfBytes, std::size_t most) {
    std::size_t put = 0;
    while (put < most && !queue.Room().empty())
        put += queue.Commit(halfBytes);
    return put;
}

TEST(SampleQueueTest, AnEmptyQueueGivesNothing) {
    SampleQueue queue(8, 64, false);
    EXPECT_EQ(queue.Take().kind, Kind::None);
    (void)queue.Room();
    EXPECT_EQ(queue.Commit(7), 0U);
    EXPECT_EQ(queue.Partial(), 7U);
    EXPECT_EQ(queue.Take().kind, Kind::None);
    EXPECT_EQ(queue.Commit(1), 1U);
    EXPECT_EQ(queue.Take().kind, Kind::Half);
    EXPECT_EQ(queue.Take().kind, Kind::None);
}

TEST(SampleQueueTest, HalvesComeInOrderAndWhole) {
    SampleQueue queue(4, 1024, false);
    std::uint8_t next = 0;
    std::uint8_t expected = 0;
    for (std::size_t portion : {1, 3, 5, 7, 64, 2, 9, 31, 2}) {
        for (std::size_t put = 0; put < portion;) {
            const std::span<std::byte> room = queue.Room();
            const std::size_t bytes = std::min(room.size(), portion - put);
            for (std::byte& byte : room.first(bytes))
                byte = std::byte{next++};
            (void)queue.Commit(bytes);
            put += bytes;
        }
        for (auto item = queue.Take(); item.kind == Kind::Half; item = queue.Take()) {
            ASSERT_EQ(item.half.size(), 4U);
            for (std::byte byte : item.half)
                EXPECT_EQ(byte, std::byte{expected++});
        }
    }
    EXPECT_EQ(expected, 124);
}

TEST(SampleQueueTest, HoldsAtLeastItsLimit) {
    struct Case {
        std::size_t half, limit;
    };
    for (const Case& c : {Case{4, 64}, Case{16, 64}, Case{64, 64}, Case{1000, 4096}, Case{4096, 8 * MiB},
                          Case{3 * MiB, 8 * MiB}, Case{MiB + 4, 8 * MiB}}) {
        SampleQueue queue(c.half, c.limit, false);
        const std::size_t put = Fill(queue, c.half, 1'000'000);
        EXPECT_GE(put * c.half, c.limit) << c.half;
        EXPECT_LE(put * c.half, c.limit + 3 * std::max(c.half, MiB)) << c.half;
        EXPECT_TRUE(queue.Room().empty());
    }
}

TEST(SampleQueueTest, ThereIsRoomAgainWhenHalvesWereTaken) {
    SampleQueue queue(16, 64, false);
    const std::size_t most = Fill(queue, 16, 1000);
    (void)queue.Take();
    EXPECT_TRUE(queue.Room().empty()) << "the memory of the half just taken is still in use";
    (void)queue.Take();
    EXPECT_EQ(Fill(queue, 16, 1000), 1U);
    for (std::size_t i = 0; i < most - 1; ++i)
        EXPECT_EQ(queue.Take().kind, Kind::Half);
    EXPECT_EQ(queue.Take().kind, Kind::None);
}

TEST(SampleQueueTest, MemoryIsUsedAgain) {
    for (std::size_t half : {std::size_t{64}, 5 * MiB}) {
        SampleQueue queue(half, 256 * MiB, false);
        std::set<const std::byte*> places;
        std::uint64_t halves = 0;
        while (halves < 100'000 && places.size() < 3 * MiB / 64 + 3) {
            places.insert(queue.Room().data());
            halves += queue.Commit(half);
            EXPECT_EQ(queue.Take().kind, Kind::Half);
        }
        EXPECT_EQ(halves, 100'000U);
        // Two pieces at most take turns, each of a MiB or one half.
        EXPECT_LE(places.size(), 2 * std::max<std::size_t>(MiB / half, 1));
    }
}

TEST(SampleQueueTest, ALossStandsBehindTheHalvesAndDropsThePartialOne) {
    SampleQueue queue(8, 256, false);
    (void)queue.Room();
    EXPECT_EQ(queue.Commit(19), 2U);
    queue.PutLoss();
    queue.PutLoss();
    EXPECT_EQ(queue.Partial(), 0U);
    std::span<std::byte> room = queue.Room();
    room[0] = std::byte{42};
    EXPECT_EQ(queue.Commit(8), 1U);
    EXPECT_EQ(queue.Take().kind, Kind::Half);
    EXPECT_EQ(queue.Take().kind, Kind::Half);
    EXPECT_EQ(queue.Take().kind, Kind::Loss);
    EXPECT_EQ(queue.Take().kind, Kind::Loss);
    const SampleQueue::Item last = queue.Take();
    ASSERT_EQ(last.kind, Kind::Half);
    EXPECT_EQ(last.half[0], std::byte{42});
    EXPECT_EQ(queue.Take().kind, Kind::None);
}

TEST(SampleQueueTest, ALossInsideTheFirstHalfComesAtOnce) {
    SampleQueue queue(8, 256, false);
    (void)queue.Room();
    EXPECT_EQ(queue.Commit(5), 0U);
    queue.PutLoss();
    EXPECT_EQ(queue.Partial(), 0U);
    EXPECT_EQ(queue.Take().kind, Kind::Loss);
    EXPECT_EQ(queue.Take().kind, Kind::None);
}

TEST(SampleQueueTest, ALeanQueueKeepsThePartialHalf) {
    SampleQueue queue(8, 256, true);
    EXPECT_EQ(queue.Room().size(), 8U);
    EXPECT_EQ(queue.Commit(5), 0U);
    queue.PutLoss();
    EXPECT_EQ(queue.Partial(), 5U);
    EXPECT_EQ(queue.Room().size(), 3U);
    EXPECT_EQ(queue.Commit(3), 1U);
    EXPECT_EQ(queue.Take().kind, Kind::Loss);
    EXPECT_EQ(queue.Take().kind, Kind::Half);
}

TEST(SampleQueueTest, TheRestIsWhatCameOfTheLastHalf) {
    for (const bool lean : {false, true}) {
        SampleQueue queue(8, 256, lean);
        EXPECT_EQ(queue.Rest().size(), 0U);
        for (int half = 0; half < 2; ++half) {
            (void)queue.Room();
            (void)queue.Commit(8);
        }
        queue.Room()[2] = std::byte{42};
        (void)queue.Commit(3);
        EXPECT_EQ(queue.Take().kind, Kind::Half);
        EXPECT_EQ(queue.Take().kind, Kind::Half);
        EXPECT_EQ(queue.Take().kind, Kind::None);
        ASSERT_EQ(queue.Rest().size(), 3U);
        EXPECT_EQ(queue.Rest()[2], std::byte{42});
    }
}

TEST(SampleQueueTest, TheRestMayComeFromOutside) {
    SampleQueue queue(8, 8, false);
    (void)Fill(queue, 8, 100);
    auto samples = std::make_unique<std::byte[]>(8);
    samples[4] = std::byte{42};
    queue.PutRest(std::move(samples), 5);
    ASSERT_EQ(queue.Rest().size(), 5U);
    EXPECT_EQ(queue.Rest()[4], std::byte{42});
}

TEST(SampleQueueTest, AFailureComesLast) {
    SampleQueue queue(8, 256, false);
    (void)queue.Room();
    EXPECT_EQ(queue.Commit(12), 1U);
    queue.PutFailure("unplugged");
    EXPECT_EQ(queue.Take().kind, Kind::Half);
    const SampleQueue::Item item = queue.Take();
    EXPECT_EQ(item.kind, Kind::Failure);
    EXPECT_EQ(item.text, "unplugged");
    EXPECT_EQ(queue.Take().kind, Kind::None);
}

#ifndef TRACELET_SANITIZED // sanitizers end the program instead
TEST(SampleQueueTest, AHalfThatMemoryCannotHoldIsRefused) {
    EXPECT_THAT([] { SampleQueue(std::size_t{1} << 60, std::size_t{1} << 60, false); },
                testing::ThrowsMessage<RunTimeError>("Out of memory"));
}
#endif

} // namespace
} // namespace tracelet
