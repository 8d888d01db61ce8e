#include "core/files/BlockWriter.h"

#include "core/base/RunTimeError.h"

#include <future>
#include <gtest/gtest.h>
#include <map>

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

TEST(BlockWriter, KeepsAFailureAndDropsTheRestOfThatFile) {
    std::string second;
    int refusals = 0;
    BlockWriter writer(
        [&](int file, std::span<const std::byte> bytes) {
            if (file == 1) {
                ++refusals;
                throw RunTimeError("Disk full");
            }
            second += Text(bytes);
        },
        Plenty);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(writer.Put(1, Bytes("lost")));
        ASSERT_TRUE(writer.Put(2, Bytes("kept")));
    }
    writer.Flush();
    EXPECT_EQ(refusals, 1);
    EXPECT_EQ(second, "keptkeptkept");
    const auto failure = writer.TakeFailure();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->file, 1);
    EXPECT_EQ(failure->reason, "Disk full");
    EXPECT_FALSE(writer.TakeFailure());
    EXPECT_EQ(writer.Written(1), 0U);
}

TEST(BlockWriter, StartsAfreshAfterAFailure) {
    bool full = true;
    std::string written;
    BlockWriter writer(
        [&](int, std::span<const std::byte> bytes) {
            if (full)
                throw RunTimeError("Disk full");
            written += Text(bytes);
        },
        Plenty);
    ASSERT_TRUE(writer.Put(0, Bytes("lost")));
    writer.Flush();
    full = false;
    writer.Restart();
    EXPECT_FALSE(writer.TakeFailure());
    ASSERT_TRUE(writer.Put(0, Bytes("kept")));
    writer.Flush();
    EXPECT_EQ(written, "kept");
    EXPECT_EQ(writer.Written(0), 4U);
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
