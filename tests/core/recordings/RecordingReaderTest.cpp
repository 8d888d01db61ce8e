#include "core/recordings/RecordingReader.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unreadable.h"

#include <bit>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <sys/mman.h>
#include <unistd.h>

namespace tracelet {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

template <typename T>
std::string AsBytes(std::initializer_list<T> values) {
    std::vector<std::byte> bytes;
    for (const T value : values)
        AppendLittleEndian(bytes, value);
    return AsText(bytes);
}

DigitalHeader Header(std::string_view bytes) {
    ByteReader reader(std::as_bytes(std::span(bytes)));
    return ReadDigitalHeader(reader);
}

TEST(Offsets, AreSixtyFourBit) {
    EXPECT_EQ(AnalogOffset(0, 16), 0);
    EXPECT_EQ(AnalogOffset(5, 3), 60);
    EXPECT_EQ(AnalogOffset(2'000'000'000, 64), 512'000'000'000);
    EXPECT_EQ(DigitalOffset(0, 4), 8);
    EXPECT_EQ(DigitalOffset(2'000'000'000, 12), 24'000'000'008);
}

TEST(DigitalHeader, IsStartAndCount) {
    EXPECT_EQ(Header("\x02\0\0\0\x03\0\0\0samples"s), (DigitalHeader{2, 3}));
    const TemporaryFolder folder;
    const SystemFile file(folder.Write("DI.tld", "\0\0\0\0\x01\0\0\0\x55"s), Disposition::OpenExisting);
    EXPECT_EQ(ReadDigitalHeader(file), (DigitalHeader{0, 1}));
}

TEST(DigitalHeader, EveryTruncationIsTold) {
    const auto whole = "\x02\0\0\0\x03\0\0\0"s;
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(FaultOf([&] { (void)Header(whole.substr(0, length)); }), "Unexpected end of file")
            << length;
}

TEST(DigitalHeader, PortsThatNoDeviceHasAreTold) {
    constexpr auto Most = std::numeric_limits<std::int32_t>::max();
    struct {
        std::int32_t start;
        std::int32_t count;
        bool possible;
    } const cases[] = {{0, 1, true},        {0, 65536, true}, {65535, 1, true}, {-1, 1, false},
                       {0, 0, false},       {0, -1, false},   {Most, 1, false}, {0, Most, false},
                       {Most, Most, false}, {1, 65536, false}};
    for (const auto& [start, count, possible] : cases) {
        const std::string expected = "The digital file cannot hold " + std::to_string(count) +
                                     " ports from port " + std::to_string(start);
        const std::string bytes = AsBytes({start, count});
        EXPECT_EQ(FaultOf([&] { (void)Header(bytes); }), possible ? "" : expected);
    }
}

TEST(DataBlock, ReadsFloatsOfAnOffset) {
    const TemporaryFolder folder;
    const SystemFile file(folder.Write("AI.tld", AsBytes({1.0F, 2.0F, 3.0F, 4.0F})),
                          Disposition::OpenExisting);
    DataBlock<float> block;
    EXPECT_THAT(block.Values(), IsEmpty());
    EXPECT_EQ(block.Read(file, 4, 2), 8);
    EXPECT_THAT(block.Values(), ElementsAre(2.0F, 3.0F));
    EXPECT_EQ(block.Read(file, 8, 10), 8) << "short at the end";
    EXPECT_THAT(block.Values(), ElementsAre(3.0F, 4.0F));
    EXPECT_EQ(block.Read(file, 16, 1), 0);
    EXPECT_EQ(block.Read(file, 1'000'000, 1), 0);
    EXPECT_EQ(block.Read(file, -4, 1), 0);
    EXPECT_EQ(block.Read(file, 0, -1), 0);
    EXPECT_THAT(block.Values(), IsEmpty());
}

TEST(DataBlock, ReadsRawCodesAndBytes) {
    const TemporaryFolder folder;
    const SystemFile raw(folder.Write("AI.tld", AsBytes<std::int32_t>({65536, 4095, -1})),
                         Disposition::OpenExisting);
    const SystemFile digital(folder.Write("DI.tld", "\0\0\0\0\x02\0\0\0\x01\xFF\x80"s),
                             Disposition::OpenExisting);
    DataBlock<std::int32_t> codes;
    DataBlock<std::uint8_t> bytes;
    EXPECT_EQ(codes.Read(raw, 0, 3), 12);
    EXPECT_THAT(codes.Values(), ElementsAre(65536, 4095, -1));
    EXPECT_EQ(bytes.Read(digital, DigitalOffset(0, 2), 4), 3) << "the last sample is incomplete";
    EXPECT_THAT(bytes.Values(), ElementsAre(1, 0xFF, 0x80));
}

TEST(DataBlock, CountsBytesOfAValueCutShort) {
    const TemporaryFolder folder;
    const std::string whole = AsBytes({1.0F, 2.0F});
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const SystemFile file(folder.Write("AI.tld", whole.substr(0, length)), Disposition::OpenExisting);
        DataBlock<float> block;
        EXPECT_EQ(block.Read(file, 0, 2), static_cast<std::int64_t>(length));
        EXPECT_EQ(block.Values().size(), length / 4);
    }
}

TEST(DataBlock, ClosedFileIsAShortRead) {
    DataBlock<float> block;
    const SystemFile closed;
    EXPECT_EQ(block.Read(closed, 0, 100), 0);
    EXPECT_EQ(BytesFrom(closed, 0), 0);
    std::byte byte{};
    const BlockRead read = ReadBlock(closed, 0, {&byte, 1});
    EXPECT_EQ(read.bytes, 0U);
    EXPECT_FALSE(read.failure);
    EXPECT_FALSE(block.Failure());
}

TEST(DataBlock, WhatCannotBeReadIsAFailureAndNoEnd) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("AI.tld", AsBytes({1.0F, 2.0F}));
    const SystemFile whole(path, Disposition::OpenExisting);
    const SystemFile broken(path, Disposition::OpenExisting);
    MakeUnreadable(broken);
    DataBlock<float> block;
    EXPECT_EQ(block.Read(broken, 0, 2), 0);
    ASSERT_TRUE(block.Failure());
    EXPECT_STREQ(block.Failure()->what(), UnreadableText);
    EXPECT_THAT(block.Values(), IsEmpty());
    EXPECT_EQ(block.Read(whole, 0, 3), 8);
    EXPECT_FALSE(block.Failure());
}

// The memory of this program as a file: 0 bytes long, as it says, and unreadable where nothing is mapped.
TEST(DataBlock, WhatLiesInFrontOfAnErrorIsRead) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* const mapped = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(mapped, MAP_FAILED);
    std::memset(mapped, 7, page);
    ASSERT_EQ(munmap(static_cast<std::byte*>(mapped) + page, page), 0);
    const SystemFile memory("/proc/self/mem", Disposition::OpenExisting);
    std::vector<std::byte> bytes(2 * page);
    const BlockRead read =
        ReadBlock(memory, static_cast<std::int64_t>(std::bit_cast<std::uintptr_t>(mapped)), bytes);
    munmap(mapped, page);
    EXPECT_EQ(read.bytes, page);
    EXPECT_EQ(bytes[page - 1], std::byte{7});
    ASSERT_TRUE(read.failure);
    EXPECT_STREQ(read.failure->what(), "Input/output error");
    DataBlock<float> block;
    EXPECT_EQ(block.Read(memory, 0, 1000), 0);
    EXPECT_TRUE(block.Failure());
}

TEST(DataBlock, NeverTakesMoreMemoryThanTheFileNeeds) {
    const TemporaryFolder folder;
    const SystemFile file(folder.Write("AI.tld", AsBytes({1.0F})), Disposition::OpenExisting);
    DataBlock<float> block;
    EXPECT_EQ(block.Read(file, 0, std::numeric_limits<std::int64_t>::max()), 4);
    EXPECT_THAT(block.Values(), ElementsAre(1.0F));
}

TEST(DataBlock, ReusesItsMemory) {
    const TemporaryFolder folder;
    const SystemFile file(folder.Write("AI.tld", AsBytes({1.0F, 2.0F, 3.0F})), Disposition::OpenExisting);
    DataBlock<float> block;
    block.Read(file, 0, 3);
    const float* const memory = block.Values().data();
    block.Read(file, 4, 1);
    EXPECT_EQ(block.Values().data(), memory);
    EXPECT_THAT(block.Values(), ElementsAre(2.0F));
    block.Read(file, 0, 3);
    EXPECT_EQ(block.Values().data(), memory);
}

TEST(DataBlock, ReadsBeyondFourGibibytes) {
    const TemporaryFolder folder;
    SystemFile file(folder / "AI.tld", Disposition::OpenAlways);
    constexpr std::int64_t Far = 6'000'000'000;
    const std::string last = AsBytes({8.0F});
    file.WriteAt(Far, std::as_bytes(std::span(last)));
    DataBlock<float> block;
    EXPECT_EQ(block.Read(file, Far - 4, 100), 8);
    EXPECT_THAT(block.Values(), ElementsAre(0.0F, 8.0F));
}

TEST(DataBlock, FollowsAFileThatShrinks) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("AI.tld", AsBytes({1.0F, 2.0F}));
    const SystemFile file(path, Disposition::OpenExisting);
    DataBlock<float> block;
    EXPECT_EQ(block.Read(file, 0, 2), 8);
    std::filesystem::resize_file(path, 6);
    EXPECT_EQ(block.Read(file, 0, 2), 6);
    EXPECT_THAT(block.Values(), ElementsAre(1.0F));
}

} // namespace
} // namespace tracelet
