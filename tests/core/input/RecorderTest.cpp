#include "core/input/Recorder.h"

#include "core/files/FileOperations.h"
#include "core/files/Paths.h"
#include "core/recordings/RecordingReader.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tracelet {
namespace {

std::string BytesOf(const std::string& path) {
    return ContentOf(NativePath(path));
}

std::string Text(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

class RecorderTest : public testing::Test {
protected:
    RecorderTest() { recorder.Open(MakeWorkFolder(folder.Path())); }
    ~RecorderTest() override {
        recorder.Close();
        RemoveWorkFolder(recorder.work);
    }

    /// A header that says which inputs are recorded.
    static ProjectInfo Header(bool analog, bool digital) {
        ProjectInfo info;
        info.bHisAISoft = info.bHisAIAnalog = true;
        info.bHisAI = analog;
        info.bHisDI = digital;
        info.nHisAIChanCount = info.nHisDIChanCount = 1;
        if (analog) {
            info.aiPlots = {{1, 0, "AI 0"}};
            info.HisAIChanIsThermo = {0};
        }
        if (digital) {
            info.diPlots = {{2, 0, "DI 0:0"}};
            info.HisDIPortMask = {1};
        }
        return info;
    }

    void Begin(bool analog, bool digital) {
        recorder.Begin();
        ASSERT_TRUE(recorder.RecreateFastFile());
        recorder.PutHeader(Header(analog, digital));
        recorder.PutPortHeader(0, 1);
        recorder.SoftAIWritten = recorder.FAIWritten = recorder.DIWritten = false;
    }

    /// A polled session of one scan of each input.
    void RecordOneScan(float value, std::uint8_t state) {
        Begin(true, true);
        recorder.PutScan({&value, 1});
        recorder.PutPorts({&state, 1});
        EXPECT_FALSE(recorder.Settle());
        recorder.ScanCount = 1;
        recorder.Complete(0.25);
    }

    TemporaryFolder folder;
    Recorder recorder;
};

TEST_F(RecorderTest, ASessionLeavesItsBytes) {
    RecordOneScan(2.5F, 0x81);
    EXPECT_EQ(BytesOf(recorder.work.szProjectFileName),
              Text(ProjectHeader(Header(true, true))) + Text(StopRecord(1, 0.25)));
    const float value = 2.5F;
    EXPECT_EQ(BytesOf(recorder.work.szAIFileName), Text(std::as_bytes(std::span(&value, 1))));
    EXPECT_EQ(BytesOf(recorder.work.szDIFileName), std::string("\0\0\0\0\1\0\0\0\x81", 9));
    EXPECT_TRUE(recorder.SoftAIWritten);
    EXPECT_FALSE(recorder.FAIWritten);
    EXPECT_TRUE(recorder.DIWritten);
}

TEST_F(RecorderTest, TheHeaderOfTheDigitalFileIsNoDigitalData) {
    Begin(false, false);
    recorder.Settle();
    EXPECT_FALSE(recorder.DIWritten);
    EXPECT_EQ(BytesOf(recorder.work.szDIFileName).size(), 8U);
}

TEST_F(RecorderTest, FastHalvesGoToTheFastFile) {
    Begin(true, false);
    const std::int32_t codes[] = {65536, -1};
    const float values[] = {1.0F};
    recorder.PutHalf(codes);
    recorder.PutHalf(values);
    recorder.Settle();
    EXPECT_EQ(BytesOf(recorder.work.szFAIFileName),
              Text(std::as_bytes(std::span(codes))) + Text(std::as_bytes(std::span(values))));
    EXPECT_TRUE(recorder.FAIWritten);
    EXPECT_FALSE(recorder.SoftAIWritten);
}

TEST_F(RecorderTest, AfterAFailedWriteThatInputAloneEnds) {
    Begin(true, true);
    const std::vector<float> scan(1000);
    const std::uint8_t state = 7;
    {
        const FileSizeLimit limit(2000);
        recorder.PutScan(scan);
        recorder.PutPorts({&state, 1});
        EXPECT_TRUE(recorder.Settle());
        EXPECT_FALSE(recorder.Settle()) << "the fault is no news any more";
    }
    EXPECT_FALSE(recorder.Fault(Recorder::Analog).empty());
    EXPECT_EQ(recorder.Fault(Recorder::Digital), "");
    recorder.PutScan(scan);
    recorder.PutPorts({&state, 1});
    recorder.Settle();
    EXPECT_EQ(BytesOf(recorder.work.szAIFileName), "");
    EXPECT_EQ(BytesOf(recorder.work.szDIFileName).size(), 10U);
    EXPECT_FALSE(recorder.SoftAIWritten);

    Begin(true, true);
    EXPECT_EQ(recorder.Fault(Recorder::Analog), "");
    recorder.PutScan(scan);
    recorder.Settle();
    EXPECT_TRUE(recorder.SoftAIWritten);
}

TEST_F(RecorderTest, AHeaderThatCannotBeWrittenFailsTheInputsItNames) {
    for (const auto& [analog, digital] : {std::pair(true, false), {false, true}}) {
        recorder.Begin();
        const FileSizeLimit limit(1);
        recorder.PutHeader(Header(analog, digital));
        EXPECT_EQ(!recorder.Fault(Recorder::Analog).empty(), analog);
        EXPECT_EQ(!recorder.Fault(Recorder::Digital).empty(), digital);
    }
}

TEST_F(RecorderTest, TheLastRecordingComesBackAfterARefusedStart) {
    RecordOneScan(1.0F, 1);
    const std::string project = BytesOf(recorder.work.szProjectFileName);
    recorder.SetAside();
    recorder.ScanCount = 0;
    Begin(true, true);
    EXPECT_NE(BytesOf(recorder.work.szProjectFileName), project);
    EXPECT_TRUE(recorder.PutBack());
    EXPECT_EQ(BytesOf(recorder.work.szProjectFileName), project);
    EXPECT_EQ(BytesOf(recorder.work.szAIFileName).size(), 4U);
    EXPECT_EQ(recorder.ScanCount, 1);
    EXPECT_TRUE(recorder.SoftAIWritten && recorder.DIWritten);
    EXPECT_FALSE(recorder.PutBack()) << "once";
}

TEST_F(RecorderTest, TheLastRecordingGoesWhenAStartWorked) {
    RecordOneScan(1.0F, 1);
    recorder.SetAside();
    Begin(true, true);
    recorder.DropAside();
    EXPECT_FALSE(recorder.PutBack());
    recorder.Close();
    RemoveWorkFolder(recorder.work);
    EXPECT_FALSE(FileExists(recorder.work.szProjectFileName + ".last"));
}

TEST_F(RecorderTest, ASavedRecordingReadsBack) {
    RecordOneScan(2.5F, 0x81);
    const std::string target = folder.Path() + "\\saved";
    EXPECT_EQ(recorder.SaveTo(target), "");
    const ProjectInfo info = ReadProjectFile(target + "\\Project.tlp");
    EXPECT_EQ(info.ScanCount, 1);
    EXPECT_EQ(info.ScanInterval, 0.25);
    EXPECT_EQ(info.AIDataPath, target + "\\AI.tld");
    EXPECT_EQ(info.DIDataPath, target + "\\DI.tld");
    EXPECT_EQ(BytesOf(info.AIDataPath).size(), 4U);
    EXPECT_EQ(BytesOf(info.DIDataPath).size(), 9U);
}

TEST(ScanInterval, IsTheAverageOfPolledAndTheRateOfPacedSessions) {
    EXPECT_EQ(PolledScanInterval(1500, 6), 0.25);
    EXPECT_EQ(PolledScanInterval(1500, 0), 0.0);
    EXPECT_EQ(PacedScanInterval(1000.0, 4, 1), 0.004);
    EXPECT_EQ(PacedScanInterval(1000.0, 4, 0), 0.0);
    EXPECT_THROW((void)PacedScanInterval(0.0, 4, 1), RunTimeError);
}

} // namespace
} // namespace tracelet
