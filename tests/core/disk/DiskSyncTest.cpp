#include "core/disk/DiskSync.h"

#include "core/base/UniqueFd.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

namespace tracelet {
namespace {

TEST(DiskSync, TellsWhatEachFileHasOnTheDisk) {
    const TemporaryFolder folder;
    const UniqueFd file(open(folder.Write("data", "12345").c_str(), O_RDWR));
    const int descriptors[] = {file.Get(), UniqueFd::None};
    DiskSync sync(1h);
    EXPECT_FALSE(sync.Bring(1h)) << "there is nothing to bring";
    std::atomic<std::int64_t> length = -1;
    std::atomic<std::size_t> count = 0;
    sync.Watch(descriptors, [&](std::span<const std::int64_t> lengths) {
        length = lengths[0];
        count = lengths.size();
    });
    EXPECT_TRUE(sync.Bring(1h));
    EXPECT_EQ(length, 5);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(sync.TakeFailure(), "");
    sync.Watch({});
    EXPECT_FALSE(sync.Bring(1h));
}

TEST(DiskSync, BringsAgainAndAgain) {
    const TemporaryFolder folder;
    const UniqueFd file(open(folder.Write("data").c_str(), O_RDWR));
    const int descriptors[] = {file.Get()};
    std::atomic<int> rounds = 0;
    DiskSync sync(1ms);
    sync.Watch(descriptors, [&](std::span<const std::int64_t>) { ++rounds; });
    while (rounds < 5)
        std::this_thread::sleep_for(1ms);
    sync.Watch({});
}

TEST(DiskSync, KeepsWhatTheSystemCouldNotBring) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0); // has no disk to be brought to
    const UniqueFd in(ends[0]);
    const UniqueFd out(ends[1]);
    DiskSync sync(1ms);
    sync.Watch(ends);
    std::string failure;
    while (failure.empty()) {
        std::this_thread::sleep_for(1ms);
        failure = sync.TakeFailure();
    }
    EXPECT_EQ(failure, "Invalid argument");
}

} // namespace
} // namespace tracelet
