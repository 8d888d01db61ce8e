#include "core/export/TextExport.h"

#include "core/base/LittleEndian.h"
#include "core/base/RunTimeError.h"
#include "core/plots/PlotTables.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

namespace tracelet {
namespace {

using Bytes = std::vector<std::byte>;

ReadBytes From(const Bytes& data) {
    return [&data](std::int64_t offset, std::span<std::byte> block) -> std::size_t {
        const std::size_t start = std::min(static_cast<std::size_t>(offset), data.size());
        const std::size_t count = std::min(block.size(), data.size() - start);
        std::copy_n(data.begin() + static_cast<std::ptrdiff_t>(start), count, block.begin());
        return count;
    };
}

const Progress NoProgress = [](double) {};

std::string AnalogTextOf(const AnalogRecording& recording, const Bytes& data,
                         const Progress& progress = NoProgress) {
    const TemporaryFolder folder;
    TextFile file(folder / "AI.xlt");
    WriteAnalogText(file, recording, From(data), progress);
    file.Close();
    return ContentOf(folder / "AI.xlt");
}

std::string DigitalTextOf(const DigitalRecording& recording, const Bytes& data,
                          const Progress& progress = NoProgress) {
    const TemporaryFolder folder;
    TextFile file(folder / "DI.xlt");
    WriteDigitalText(file, recording, From(data), progress);
    file.Close();
    return ContentOf(folder / "DI.xlt");
}

template <typename Sample>
Bytes DataOf(const std::vector<Sample>& samples) {
    Bytes data;
    for (const Sample sample : samples)
        AppendLittleEndian(data, sample);
    return data;
}

Bytes Codes(std::size_t count) {
    Bytes data;
    for (std::size_t i = 0; i < count; ++i)
        AppendLittleEndian(data, static_cast<std::int32_t>(i));
    return data;
}

AnalogRecording Channels(std::size_t count, bool isAnalog = false, double scanInterval = 1.0) {
    AnalogRecording recording{{}, isAnalog, scanInterval, 0};
    for (std::size_t i = 0; i < count; ++i)
        recording.plotNames.push_back("AI " + std::to_string(i));
    return recording;
}

std::string Header(const AnalogRecording& recording) {
    std::string header = "Time";
    for (const std::string& name : recording.plotNames)
        header += "\t" + name;
    return header;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end = text.find("\r\n"); end != std::string::npos; end = text.find("\r\n", start)) {
        lines.push_back(text.substr(start, end - start));
        start = end + 2;
    }
    lines.push_back(text.substr(start));
    return lines;
}

struct BlockCase {
    std::size_t bytes;
    std::int64_t channels;
    std::int32_t scans;
};

TEST(ScansOfBlock, RoundsToTheNearestIndexHalvesToEven) {
    const BlockCase cases[] = {
        // Nothing, and too little for a scan.
        {0, 1, 0},
        {0, 64, 0},
        {1, 1, 0},
        {3, 1, 0},
        {4, 64, 0},
        // Whole scans: one fewer than the block holds.
        {4, 1, 0},
        {8, 1, 1},
        {12, 1, 2},
        {40, 1, 9},
        {28, 7, 0},
        {56, 7, 1},
        {84, 7, 2},
        {256, 64, 0},
        {512, 64, 1},
        {400000, 1, 99999},
        {400000, 2, 49999},
        {400000, 4, 24999},
        {400000, 8, 12499},
        {400000, 16, 6249},
        // A rest below half a scan changes nothing.
        {9, 1, 1},
        {13, 1, 2},
        {64, 7, 1},
        {600, 64, 1},
        // More than half a scan rounds up: then every whole scan is exported.
        {7, 1, 1},
        {11, 1, 2},
        {24, 7, 0},
        {52, 7, 1},
        {80, 7, 2},
        {500, 64, 1},
        {700, 64, 2},
        // Half a scan: to the even index.
        {6, 1, 1},
        {10, 1, 1},
        {14, 1, 3},
        {12, 2, 1},
        {20, 2, 1},
        {28, 2, 3},
        {36, 2, 3},
        {384, 64, 1},
        {640, 64, 1},
        {896, 64, 3},
        {42, 7, 1},
        {70, 7, 1},
        {98, 7, 3},
        // Full blocks that are no whole number of scans.
        {400000, 3, 33332},
        {400000, 7, 14285},
        {400000, 64, 1561},
        {400000, 100001, 0},
        {400000, 66667, 0},
        {400000, 66666, 1},
    };
    for (const BlockCase& each : cases)
        EXPECT_EQ(ScansOfBlock(each.bytes, each.channels), each.scans)
            << each.bytes << " bytes, " << each.channels << " channels";
}

TEST(ScansOfBlock, NeverReachesBeyondTheBlock) {
    for (std::int64_t channels = 1; channels <= 70; ++channels)
        for (std::size_t bytes = 0; bytes <= 3000; ++bytes) {
            const std::int64_t scans = ScansOfBlock(bytes, channels);
            ASSERT_GE(scans, 0);
            ASSERT_LE(scans * channels * 4, static_cast<std::int64_t>(bytes));
        }
}

TEST(ScansOfBlock, RefusesNoChannels) {
    EXPECT_THROW((void)ScansOfBlock(4, 0), RunTimeError);
}

TEST(AnalogText, ExactBytes) {
    const Bytes data = DataOf<float>({0.1F, -2.5F, 1e-5F, 1234567.5F, 0.0F, 10.0F});
    AnalogRecording recording = Channels(2, true, 0.1);
    recording.plotNames = {"AI 0", "Öl °C"};
    EXPECT_EQ(AnalogTextOf(recording, data), "Time\tAI 0\tÖl °C\r\n0.1\t0.1\t-2.5\r\n0.2\t1e-05\t1234568");
}

TEST(AnalogText, RawCodesAreIntegers) {
    const Bytes data = DataOf<std::int32_t>({4095, -1, 2147483647, -2147483647 - 1, 0, 0});
    EXPECT_EQ(AnalogTextOf(Channels(2, false, 0.001), data),
              "Time\tAI 0\tAI 1\r\n0.001\t4095\t-1\r\n0.002\t2147483647\t-2147483648");
}

TEST(AnalogText, WritesWhatIsNoFiniteNumber) {
    using Float = std::numeric_limits<float>;
    const Bytes data =
        DataOf<float>({Float::infinity(), -Float::infinity(), Float::quiet_NaN(), -0.0F, 1.0F});
    EXPECT_EQ(AnalogTextOf(Channels(1, true), data), "Time\tAI 0\r\n1\tinf\r\n2\t-inf\r\n3\tnan\r\n4\t-0");
}

TEST(AnalogText, DataWithoutAScanGivesTheHeaderOnly) {
    for (const std::size_t codes : {0U, 1U, 2U, 3U})
        EXPECT_EQ(AnalogTextOf(Channels(3), Codes(codes)), "Time\tAI 0\tAI 1\tAI 2") << codes << " codes";
}

TEST(AnalogText, TimeIsARunningSum) {
    const std::vector<std::string> lines = Lines(AnalogTextOf(Channels(1, false, 0.1), Codes(20001)));
    ASSERT_EQ(lines.size(), 20001U);
    double seconds = 0.0;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        seconds += 0.1;
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.15g\t%d", seconds, static_cast<int>(i - 1));
        ASSERT_EQ(lines[i], expected);
    }
}

TEST(AnalogText, OneBlockOfOneChannelLacksItsLastScan) {
    const std::vector<std::string> lines = Lines(AnalogTextOf(Channels(1, false, 0.5), Codes(100000)));
    ASSERT_EQ(lines.size(), 1U + 99999U);
    EXPECT_EQ(lines[0], "Time\tAI 0");
    EXPECT_EQ(lines[1], "0.5\t0");
    EXPECT_EQ(lines.back(), "49999.5\t99998");
}

// What the block rule gives, worked out sample by sample.
std::string Expected(const AnalogRecording& recording, std::size_t codes) {
    std::ostringstream text;
    text << Header(recording);
    const std::size_t channels = recording.plotNames.size();
    double seconds = 0.0;
    for (std::size_t blockStart = 0;; blockStart += 100000) {
        const std::size_t inBlock = std::min<std::size_t>(100000, codes - std::min(codes, blockStart));
        const double last =
            std::nearbyint(static_cast<double>(inBlock) / static_cast<double>(channels) - 2.0);
        for (std::size_t s = 0; static_cast<double>(s) <= last; ++s) {
            seconds += recording.scanInterval;
            text << "\r\n" << seconds;
            for (std::size_t c = 0; c < channels; ++c)
                text << '\t' << blockStart + s * channels + c;
        }
        if (inBlock < 100000)
            return text.str();
    }
}

TEST(AnalogText, BlocksBeginInsideAScanWhereScansDoNotFit) {
    for (const std::size_t channels : {1U, 2U, 3U, 7U, 64U})
        for (const std::size_t codes : {99999U, 100000U, 100063U, 200001U}) {
            const AnalogRecording recording = Channels(channels);
            std::string expected = Expected(recording, codes);
            EXPECT_TRUE(AnalogTextOf(recording, Codes(codes)) == expected)
                << channels << " channels, " << codes << " codes";
        }
}

TEST(AnalogText, SecondBlockOfThreeChannelsBeginsWithItsSecondChannel) {
    const std::vector<std::string> lines = Lines(AnalogTextOf(Channels(3), Codes(100030)));
    // 33333 1/3 scans in the first block, of which 33332 are written; 10 in the second, of which 9 are.
    ASSERT_EQ(lines.size(), 1U + 33332U + 9U);
    EXPECT_EQ(lines[33332], "33332\t99993\t99994\t99995");
    EXPECT_EQ(lines[33333], "33333\t100000\t100001\t100002");
    EXPECT_EQ(lines.back(), "33341\t100024\t100025\t100026");
}

TEST(AnalogText, EndInsideASample) {
    Bytes data = Codes(4);
    data.resize(data.size() -
                1); // 3.75 samples: more than half of the last is there, so all whole ones count
    EXPECT_EQ(AnalogTextOf(Channels(1), data), "Time\tAI 0\r\n1\t0\r\n2\t1\r\n3\t2");
    data.resize(data.size() - 2); // 3.25
    EXPECT_EQ(AnalogTextOf(Channels(1), data), "Time\tAI 0\r\n1\t0\r\n2\t1");
    data.resize(data.size() + 1); // 3.5: index 1.5 rounds to 2
    EXPECT_EQ(AnalogTextOf(Channels(1), data), "Time\tAI 0\r\n1\t0\r\n2\t1\r\n3\t2");
}

TEST(AnalogText, ReadsOnUntilABlockIsNotFull) {
    const Bytes data = Codes(200000);
    std::vector<std::int64_t> offsets;
    const ReadBytes read = [&](std::int64_t offset, std::span<std::byte> block) {
        EXPECT_EQ(block.size(), 400000U);
        offsets.push_back(offset);
        return From(data)(offset, block);
    };
    const TemporaryFolder folder;
    TextFile file(folder / "AI.xlt");
    WriteAnalogText(file, Channels(1), read, NoProgress);
    EXPECT_THAT(offsets, testing::ElementsAre(0, 400000, 800000));
}

TEST(AnalogText, AReadErrorEndsTheData) {
    const Bytes data = Codes(300000);
    const ReadBytes read = [&](std::int64_t offset, std::span<std::byte> block) {
        return offset == 0 ? From(data)(offset, block) : 0;
    };
    const TemporaryFolder folder;
    TextFile file(folder / "AI.xlt");
    WriteAnalogText(file, Channels(1), read, NoProgress);
    file.Close();
    EXPECT_EQ(Lines(ContentOf(folder / "AI.xlt")).size(), 1U + 99999U);
}

TEST(AnalogText, TellsItsProgress) {
    AnalogRecording recording = Channels(1);
    recording.dataBytes = 1000000;
    std::vector<double> fractions;
    (void)AnalogTextOf(recording, Codes(250000), [&](double fraction) { fractions.push_back(fraction); });
    EXPECT_THAT(fractions, testing::ElementsAre(0.4, 0.8, 1.0));
}

TEST(AnalogText, AFullDiskEndsIt) {
    TextFile file("/dev/full");
    const Bytes data = Codes(100000);
    EXPECT_EQ(FaultOf([&] { WriteAnalogText(file, Channels(1), From(data), NoProgress); }), "Disk full");
}

Bytes DigitalData(std::int32_t portStart, std::int32_t portCount, const std::vector<int>& states) {
    Bytes data;
    AppendLittleEndian(data, portStart);
    AppendLittleEndian(data, portCount);
    for (const int state : states)
        data.push_back(static_cast<std::byte>(state));
    return data;
}

DigitalRecording Ports(std::int32_t start, const std::vector<std::uint8_t>& masks, std::int32_t count,
                       std::int32_t scanCount) {
    return {start, count, SelectedLines(Table<std::uint8_t>(masks), start, count), 0.25, scanCount};
}

TEST(DigitalText, ExactBytes) {
    // Ports 1 and 2 of four; bits 0 and 5, then 7. Port 0 and 3 have masks but were not read.
    const Bytes data = DigitalData(1, 2, {0x21, 0x80, 0x20, 0x7F, 0xDE, 0xFF});
    EXPECT_EQ(DigitalTextOf(Ports(1, {0xFF, 0x21, 0x80, 0xFF}, 2, 3), data),
              "Time\t1:0\t1:5\t2:7\r\n0.25\t1\t1\t1\r\n0.5\t0\t1\t0\r\n0.75\t0\t0\t1");
}

TEST(DigitalText, AllBitsOfAPort) {
    EXPECT_EQ(DigitalTextOf(Ports(0, {0xFF}, 1, 1), DigitalData(0, 1, {0xA5})),
              "Time\t0:0\t0:1\t0:2\t0:3\t0:4\t0:5\t0:6\t0:7\r\n0.25\t1\t0\t1\t0\t0\t1\t0\t1");
}

TEST(DigitalText, NoSelectedBitLeavesTheTimes) {
    EXPECT_EQ(DigitalTextOf(Ports(0, {0x00}, 1, 2), DigitalData(0, 1, {1, 2})), "Time\r\n0.25\r\n0.5");
}

TEST(DigitalText, StopsAtTheScanCount) {
    const Bytes data = DigitalData(0, 1, {1, 0, 1, 0, 1});
    EXPECT_EQ(DigitalTextOf(Ports(0, {1}, 1, 2), data), "Time\t0:0\r\n0.25\t1\r\n0.5\t0");
    EXPECT_EQ(DigitalTextOf(Ports(0, {1}, 1, 0), data), "Time\t0:0");
    EXPECT_EQ(DigitalTextOf(Ports(0, {1}, 1, -1), data), "Time\t0:0");
}

TEST(DigitalText, StopsAtTheEndOfTheFile) {
    const Bytes data = DigitalData(0, 1, {1, 0, 1});
    EXPECT_EQ(DigitalTextOf(Ports(0, {1}, 1, 1000000), data), "Time\t0:0\r\n0.25\t1\r\n0.5\t0\r\n0.75\t1");
    EXPECT_EQ(DigitalTextOf(Ports(0, {1}, 1, 5), DigitalData(0, 1, {})), "Time\t0:0");
    EXPECT_EQ(DigitalTextOf(Ports(0, {1}, 1, 5), Bytes(3)), "Time\t0:0");
}

TEST(DigitalText, APartialLastSampleIsNotWritten) {
    const DigitalRecording recording = Ports(0, {1, 1, 1}, 3, 100);
    EXPECT_EQ(DigitalTextOf(recording, DigitalData(0, 3, {1, 1, 0, 0, 1})),
              "Time\t0:0\t1:0\t2:0\r\n0.25\t1\t1\t0");
    EXPECT_EQ(DigitalTextOf(recording, DigitalData(0, 3, {1, 1})), "Time\t0:0\t1:0\t2:0");
}

TEST(DigitalText, DropsNoSampleOfALongRecording) {
    for (const int portCount : {1, 3, 4}) {
        const std::int32_t scans = 70000;
        std::vector<int> states;
        for (int i = 0; i < scans * portCount; ++i)
            states.push_back(i * 31 / 7 & 0xFF);
        const std::vector<std::string> lines =
            Lines(DigitalTextOf(Ports(0, std::vector<std::uint8_t>(4, 0x10), portCount, scans),
                                DigitalData(0, portCount, states)));
        ASSERT_EQ(lines.size(), 1U + 70000U);
        for (int scan = 0; scan < scans; ++scan) {
            std::ostringstream expected;
            expected.precision(15);
            expected << (scan + 1) * 0.25;
            for (int port = 0; port < portCount; ++port)
                expected << '\t' << (states[static_cast<std::size_t>(scan * portCount + port)] >> 4 & 1);
            ASSERT_EQ(lines[static_cast<std::size_t>(scan) + 1], expected.str());
        }
    }
}

TEST(DigitalText, PortsWithoutAMaskHaveNoColumns) {
    const Bytes data = DigitalData(1, 3, {1, 1, 1, 0, 1, 1});
    EXPECT_EQ(DigitalTextOf(Ports(1, {1, 1}, 3, 9), data), "Time\t1:0\r\n0.25\t1\r\n0.5\t0");
    EXPECT_EQ(DigitalTextOf(Ports(5, {1, 1}, 3, 9), data), "Time\r\n0.25\r\n0.5");
}

TEST(DigitalText, NoPortsGiveNoSamples) {
    for (const int count : {0, -1})
        EXPECT_EQ(DigitalTextOf(Ports(0, {1}, count, 1000), DigitalData(0, count, {1, 2, 3})), "Time");
}

TEST(DigitalText, TellsItsProgress) {
    std::vector<double> fractions;
    (void)DigitalTextOf(Ports(0, {1}, 1, 131072), DigitalData(0, 1, std::vector<int>(131072, 1)),
                        [&](double fraction) { fractions.push_back(fraction); });
    EXPECT_THAT(fractions, testing::ElementsAre(0.5, 1.0));
}

} // namespace
} // namespace tracelet
