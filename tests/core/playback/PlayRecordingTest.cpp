#include "core/playback/PlayScans.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::IsEmpty;

TEST(PlaysDigital, WithPortsOfAPolledRecordingOnly) {
    const struct {
        bool isSoft;
        std::int32_t ports;
        bool plays;
    } cases[] = {{true, 2, true}, {true, 0, false}, {false, 2, false}, {false, 0, false}};
    for (const auto& c : cases) {
        Recording recording;
        recording.info.bHisDI = true;
        recording.info.bHisAISoft = c.isSoft;
        recording.digitalHeader.nHisDIPortCount = c.ports;
        EXPECT_EQ(PlaysDigital(recording), c.plays) << c.isSoft << " " << c.ports;
    }
}

TEST(ValuesAScan, APointOfALineCostsEightValues) {
    const struct {
        std::int32_t channels;
        std::int32_t ports;
        std::size_t lines;
        std::int64_t values;
    } cases[] = {{0, 0, 0, 0}, {16, 0, 0, 16}, {0, 2, 5, 42}, {3, 1, 8, 68}, {1024, 65536, 1024, 74752}};
    for (const auto& c : cases) {
        Recording recording;
        recording.info.nHisAIChanCount = c.channels;
        recording.digitalHeader.nHisDIPortCount = c.ports;
        recording.lines.resize(c.lines);
        EXPECT_EQ(ValuesAScan(recording), c.values);
    }
}

class PlayRecordingTest : public testing::Test {
protected:
    /// An analog file of three scans of two channels, a digital file of three scans of two ports: its
    /// header, then the values 0 to 5 in both.
    PlayRecordingTest() {
        std::vector<std::byte> analog;
        for (std::int32_t value = 0; value < 6; ++value)
            AppendLittleEndian(analog, value);
        const std::string ports{0, 0, 0, 0, 2, 0, 0, 0, 0, 1, 2, 3, 4, 5};
        recording.analogFile = SystemFile(folder.Write("AI", AsText(analog)), Disposition::OpenExisting);
        recording.digitalFile = SystemFile(folder.Write("DI", ports), Disposition::OpenExisting);
        recording.info.nHisAIChanCount = recording.digitalHeader.nHisDIPortCount = 2;
    }

    /// Plays and returns whether that was the end; `played` then holds the values.
    bool Play(bool isAnalog, std::int64_t scan, std::int64_t scans) {
        played.clear();
        const auto append = [this](auto values, std::int32_t count) {
            EXPECT_EQ(values.size(), 2U * static_cast<std::size_t>(count));
            played.insert(played.end(), values.begin(), values.end());
        };
        return isAnalog ? PlayAnalogScans(recording, codes, scan, scans, append)
                        : PlayDigitalScans(recording, states, scan, scans, append);
    }

    TemporaryFolder folder;
    Recording recording;
    DataBlock<std::int32_t> codes;
    DataBlock<std::uint8_t> states;
    std::vector<int> played;
};

TEST_F(PlayRecordingTest, ReadsTheScansFromTheOneAskedFor) {
    const struct {
        std::int64_t scan;
        std::int64_t scans;
        bool end;
        std::vector<int> values;
    } cases[] = {{0, 1, false, {0, 1}},
                 {1, 2, false, {2, 3, 4, 5}},
                 {2, 2, true, {4, 5}},
                 {3, 1, true, {}},
                 {std::int64_t{1} << 40, 1, true, {}}};
    for (const bool isAnalog : {true, false}) {
        for (const auto& c : cases) {
            EXPECT_EQ(Play(isAnalog, c.scan, c.scans), c.end) << isAnalog << " " << c.scan;
            EXPECT_EQ(played, c.values) << isAnalog << " " << c.scan;
        }
    }
}

TEST_F(PlayRecordingTest, ClosedFilesHaveEnded) {
    recording.CloseFiles();
    for (const bool isAnalog : {true, false}) {
        EXPECT_TRUE(Play(isAnalog, 0, 1));
        EXPECT_THAT(played, IsEmpty());
    }
}

} // namespace
} // namespace tracelet
