#include "core/disk/BlockWriter.h"

#include "core/base/RunTimeError.h"

#include <future>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;

namespace tracelet {
namespace {

constexpr std::size_t Plenty = std::size_t{1} << 20;

std::span<const std::byte> Bytes(std::string_view text) {
    return std::as_bytes(std::span(text));
}

std::string Text(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// What a disk was given. The first write waits until the disk is let go.
class HangingDisk {
public:
    BlockWriter::Write Writer() {
        return [this](int file, std::span<const std::byte> bytes) {
            if (writes++ == 0) {
                reached.set_value();
                letGo.get_future().wait();
            }
            files[file] += Text(bytes);
        };
    }
    void WaitUntilReached() { reached.get_future().wait(); }
    void LetGo() { letGo.set_value(); }

    int writes = 0;
    std::map<int, std::string> files;

private:
    std::promise<void> reached;
    std::promise<void> letGo;
};

TEST(BlockWriter, WritesInTheOrderGivenAndJoinsNeighbours) {
    HangingDisk disk;
    BlockWriter writer(disk.Writer(), Plenty);
    ASSERT_TRUE(writer.Put(1, Bytes("first")));
    disk.WaitUntilReached();
    for (const auto& [file, text] : {std::pair{2, "a"}, {1, "b"}, {1, "c"}, {2, "d"}})
        ASSERT_TRUE(writer.Put(file, Bytes(text)));
    disk.LetGo();
    writer.Flush();
    EXPECT_EQ(disk.files[1], "firstbc");
    EXPECT_EQ(disk.files[2], "ad");
    EXPECT_EQ(disk.writes, 4); // "first", "a", "bc", "d"
    EXPECT_EQ(writer.Written(1), 7U);
    EXPECT_EQ(writer.Written(2), 2U);
    EXPECT_EQ(writer.Written(3), 0U);
}

TEST(BlockWriter, WaitsNoLongerThanAsked) {
    HangingDisk disk;
    BlockWriter writer(disk.Writer(), Plenty);
    ASSERT_TRUE(writer.Put(1, Bytes("x")));
    EXPECT_FALSE(writer.WaitFor(1ms));
    disk.LetGo();
    EXPECT_TRUE(writer.WaitFor(1h));
    EXPECT_EQ(disk.files[1], "x");
}

TEST(BlockWriter, RefusesWhatHasNoRoom) {
    HangingDisk disk;
    BlockWriter writer(disk.Writer(), 8);
    EXPECT_FALSE(writer.Put(1, Bytes("nine bytes")));
    ASSERT_TRUE(writer.Put(1, Bytes("taken")));
    disk.WaitUntilReached();
    EXPECT_TRUE(writer.Put(1, Bytes("12345678"))); // what is being written waits no more
    EXPECT_FALSE(writer.Put(1, Bytes("9")));
    disk.LetGo();
    writer.Flush();
    EXPECT_TRUE(writer.Put(1, Bytes("9")));
    writer.Flush();
    EXPECT_EQ(disk.files[1], "taken123456789");
}

/// A disk that refuses one file for a while.
struct RefusingDisk {
    BlockWriter::Write Writer() {
        return [this](int file, std::span<const std::byte> bytes) {
            const std::lock_guard lock(mutex);
            if (file == refused) {
                ++refusals;
                throw RunTimeError("Disk full");
            }
            files[file] += Text(bytes);
            ++writes[file];
        };
    }
    void Refuse(int file) {
        const std::lock_guard lock(mutex);
        refused = file;
    }

    std::mutex mutex;
    int refused = -1;
    int refusals = 0;
    std::map<int, std::string> files;
    std::map<int, int> writes;
};

/// Waits for news of a writer.
BlockWriter::News NewsOf(BlockWriter& writer) {
    for (;;) {
        if (auto news = writer.TakeNews())
            return *news;
        std::this_thread::sleep_for(1ms);
    }
}

TEST(BlockWriter, LosesNothingByAnErrorThatPasses) {
    RefusingDisk disk;
    disk.Refuse(1);
    BlockWriter writer(disk.Writer(), Plenty);
    for (const char* text : {"a", "b", "c"}) {
        ASSERT_TRUE(writer.Put(1, Bytes(text)));
        ASSERT_TRUE(writer.Put(2, Bytes(text)));
    }
    EXPECT_TRUE(writer.WaitFor(1h)) << "what waits for an error to pass is not waited for";
    BlockWriter::News news = NewsOf(writer);
    EXPECT_EQ(news.file, 1);
    EXPECT_EQ(news.reason, "Disk full");
    EXPECT_FALSE(writer.TakeNews()) << "told once";
    disk.Refuse(-1);
    news = NewsOf(writer);
    EXPECT_EQ(news.file, 1);
    EXPECT_EQ(news.reason, "");
    ASSERT_TRUE(writer.Put(1, Bytes("d")));
    writer.Flush();
    EXPECT_EQ(disk.files[1], "abcd");
    EXPECT_EQ(disk.files[2], "abc");
    EXPECT_EQ(writer.Written(1), 4U);
    EXPECT_EQ(writer.GivenUp(1), 0U);
}

TEST(BlockWriter, TriesOnceMoreBeforeItGivesUp) {
    RefusingDisk disk;
    disk.Refuse(1);
    BlockWriter writer(disk.Writer(), Plenty);
    ASSERT_TRUE(writer.Put(1, Bytes("lost")));
    EXPECT_EQ(NewsOf(writer).reason, "Disk full");
    writer.Flush();
    EXPECT_GE(disk.refusals, 2);
    EXPECT_EQ(writer.GivenUp(1), 4U);
    EXPECT_EQ(writer.Written(1), 0U);
    disk.Refuse(-1);
    ASSERT_TRUE(writer.Put(1, Bytes("kept")));
    writer.Flush();
    EXPECT_EQ(disk.files[1], "kept");
    writer.Restart();
    EXPECT_EQ(writer.GivenUp(1) + writer.Written(1), 0U);
}

TEST(BlockWriter, WhatWaitsForAnErrorToPassTakesRoom) {
    RefusingDisk disk;
    disk.Refuse(1);
    BlockWriter writer(disk.Writer(), 8);
    ASSERT_TRUE(writer.Put(1, Bytes("12345")));
    EXPECT_EQ(NewsOf(writer).reason, "Disk full");
    EXPECT_FALSE(writer.Put(2, Bytes("1234")));
    EXPECT_TRUE(writer.Put(2, Bytes("123")));
    disk.Refuse(-1);
    writer.Flush();
    EXPECT_TRUE(writer.Put(2, Bytes("12345678")));
    writer.Flush();
    EXPECT_EQ(disk.files[1], "12345");
    EXPECT_EQ(disk.files[2], "12312345678");
}

TEST(BlockWriter, BlocksOfAReplacingFileAreNotJoinedAndOnlyTheNewestWaits) {
    RefusingDisk disk;
    BlockWriter writer(disk.Writer(), Plenty, 6);
    for (const char* text : {"a", "b"})
        ASSERT_TRUE(writer.Put(6, Bytes(text)));
    writer.Flush();
    EXPECT_EQ(disk.writes[6], 2);
    disk.Refuse(6);
    for (const char* text : {"c", "d"}) {
        ASSERT_TRUE(writer.Put(6, Bytes(text)));
        EXPECT_EQ(NewsOf(writer).reason, "Disk full");
    }
    disk.Refuse(-1);
    EXPECT_EQ(NewsOf(writer).reason, "");
    EXPECT_EQ(disk.files[6], "abd");
}

TEST(BlockWriter, WritesWhatWaitsBeforeItEnds) {
    HangingDisk disk;
    {
        BlockWriter writer(disk.Writer(), Plenty);
        ASSERT_TRUE(writer.Put(5, Bytes("a")));
        disk.WaitUntilReached();
        ASSERT_TRUE(writer.Put(5, Bytes("b")));
        disk.LetGo();
    }
    EXPECT_EQ(disk.files[5], "ab");
}

} // namespace
} // namespace tracelet
