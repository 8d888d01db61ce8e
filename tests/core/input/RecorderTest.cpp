#include "core/input/Recorder.h"

#include "core/files/FileOperations.h"
#include "core/files/Paths.h"
#include "core/recordings/LeftRecording.h"
#include "core/recordings/RecordingReader.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <thread>

using namespace std::chrono_literals;

namespace tracelet {
namespace {

std::string BytesOf(const std::string& path) {
    return ContentOf(NativePath(path));
}

std::string Text(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The project once its record counts so many scans, or as it is after a while.
ProjectInfo ProjectWith(const std::string& project, std::int32_t scans) {
    ProjectInfo info;
    for (int tries = 0; tries < 2000 && info.ScanCount != scans; ++tries) {
        std::this_thread::sleep_for(1ms);
        try {
            info = ReadProjectFile(project);
        } catch (const RunTimeError&) { // NOLINT(bugprone-empty-catch): no record yet
        }
    }
    return info;
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
        recorder.Begin({});
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
    EXPECT_EQ(recorder.SampleBytes(), 4 + 9);
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
    recorder.PutHalf(codes, 2);
    recorder.PutHalf(values, 1);
    recorder.Settle();
    EXPECT_EQ(BytesOf(recorder.work.szFAIFileName),
              Text(std::as_bytes(std::span(codes))) + Text(std::as_bytes(std::span(values))));
    EXPECT_TRUE(recorder.FAIWritten);
    EXPECT_FALSE(recorder.SoftAIWritten);
}

TEST_F(RecorderTest, WhatTheDiskRefusesWaitsUntilItIsTaken) {
    Begin(true, true);
    const std::vector<float> scan(1000, 1.5F);
    const std::uint8_t state = 7;
    {
        const FileSizeLimit limit(2000);
        recorder.PutScan(scan);
        recorder.PutPorts({&state, 1});
        EXPECT_TRUE(recorder.Settle());
        EXPECT_FALSE(recorder.Settle()) << "the fault is no news any more";
        EXPECT_FALSE(recorder.Fault(Recorder::Analog).empty());
        EXPECT_EQ(recorder.Fault(Recorder::Digital), "");
        recorder.PutScan(scan);
        recorder.PutPorts({&state, 1});
        recorder.Settle();
        EXPECT_EQ(BytesOf(recorder.work.szAIFileName), "");
        EXPECT_EQ(BytesOf(recorder.work.szDIFileName).size(), 10U);
        EXPECT_FALSE(recorder.SoftAIWritten);
    }
    while (!recorder.Settle()) // the error has passed
        std::this_thread::sleep_for(10ms);
    EXPECT_EQ(recorder.Fault(Recorder::Analog), "");
    EXPECT_EQ(BytesOf(recorder.work.szAIFileName).size(), 8000U);
    EXPECT_TRUE(recorder.SoftAIWritten);
    recorder.Complete(0.1);
    EXPECT_EQ(recorder.LostScanCount, 0);
}

TEST_F(RecorderTest, WhatTheDiskDoesNotTakeToTheEndIsLostAndTold) {
    Begin(true, false);
    const std::vector<float> scan(1000);
    const FileSizeLimit limit(2000);
    recorder.PutScan(scan);
    recorder.PutScan(scan);
    recorder.Complete(0.1);
    EXPECT_EQ(recorder.LostScanCount, 2);
    EXPECT_NE(recorder.Fault(Recorder::Analog), "");
    EXPECT_FALSE(recorder.IsWritten());
}

TEST_F(RecorderTest, AHeaderThatCannotBeWrittenFailsTheInputsItNames) {
    for (const auto& [analog, digital] : {std::pair(true, false), {false, true}}) {
        recorder.Begin({});
        recorder.ResetCounts();
        const FileSizeLimit limit(1);
        recorder.PutHeader(Header(analog, digital));
        EXPECT_EQ(!recorder.Fault(Recorder::Analog).empty(), analog);
        EXPECT_EQ(!recorder.Fault(Recorder::Digital).empty(), digital);
        const float value = 1.0F;
        recorder.PutScan({&value, 1});
        recorder.Complete(0.1);
        EXPECT_EQ(BytesOf(recorder.work.szAIFileName), "") << "nothing would describe it";
        EXPECT_EQ(recorder.LostScanCount, 1);
    }
}

TEST_F(RecorderTest, TheProjectIsWholeWhileTheSessionRuns) {
    Recorder often(0ms);
    often.Open(MakeWorkFolder(folder.Path()));
    often.Begin({.isPolled = true});
    often.PutHeader(Header(true, false));
    often.ResetCounts();
    const float value = 1.0F;
    for (std::int32_t scan = 1; scan <= 3; ++scan) {
        often.PutScan({&value, 1});
        often.CountTick(static_cast<std::uint32_t>(scan) * 250);
        often.Settle();
        const ProjectInfo info = ProjectWith(often.work.szProjectFileName, scan);
        EXPECT_EQ(info.ScanCount, scan);
        EXPECT_EQ(info.ScanInterval, 0.25);
    }
    often.Complete(0.5);
    EXPECT_EQ(BytesOf(often.work.szProjectFileName),
              Text(ProjectHeader(Header(true, false))) + Text(StopRecord(3, 0.5)));
    often.Close();
    RemoveWorkFolder(often.work);
}

TEST_F(RecorderTest, ThePacedIntervalIsKnownFromTheFirstHalfOn) {
    Recorder often(0ms);
    often.Open(MakeWorkFolder(folder.Path()));
    often.Begin({.pacedScans = 4.0});
    ASSERT_TRUE(often.RecreateFastFile());
    often.PutHeader(Header(true, false));
    often.ResetCounts();
    const std::vector<float> half(8);
    often.PutHalf(half, 8);
    often.CountHalf(8);
    often.Settle();
    const ProjectInfo info = ProjectWith(often.work.szProjectFileName, 8);
    EXPECT_EQ(info.ScanCount, 8);
    EXPECT_EQ(info.ScanInterval, 0.25);
    often.Close();
    RemoveWorkFolder(often.work);
}

TEST_F(RecorderTest, TheSessionTellsLossesAndTimesOffTheGrid) {
    Recorder often(0ms);
    often.Open(MakeWorkFolder(folder.Path()), folder.Path());
    const std::string session = SessionFileOf(folder.Path(), often.work.sztmpPath);
    often.Begin({.isPolled = true, .asked = 4.0});
    often.PutHeader(Header(true, false));
    often.ResetCounts();
    for (const std::uint32_t ms : {250U, 500U, 1500U, 1750U})
        often.CountTick(ms);
    EXPECT_TRUE(often.LoseScan("Unplugged"));
    EXPECT_FALSE(often.LoseScan("Unplugged"));
    often.CountTick(2000);
    often.CountOverrun();
    often.CountMissedTicks(0);
    often.CountMissedTicks(2);
    often.CountMissedTicks(std::int64_t{1} << 40);
    EXPECT_EQ(often.MissedTickCount, 2147483647);
    often.Complete(0.4);
    const std::string text = BytesOf(session);
    const auto holds = [&](const char* part) { return text.find(part) != std::string::npos; };
    EXPECT_TRUE(holds("\"scans\": 5")) << text;
    EXPECT_TRUE(holds("\"reached\": 2.5")) << text;
    EXPECT_EQ(often.Events().losses.size(), 3U);
    EXPECT_EQ(often.Events().losses[0].nextScan, 4);
    EXPECT_EQ(often.Events().losses[0].scans, 2);
    EXPECT_EQ(often.Events().losses[1].nextScan, 5);
    EXPECT_EQ(often.Events().losses[1].scans, SampleLoss::Unknown);
    EXPECT_EQ(often.Events().losses[2].scans, (std::int64_t{1} << 40) + 2);
    ASSERT_EQ(often.Events().times.size(), 2U) << "the first scan and the late one";
    EXPECT_EQ(often.Events().times[1].scan, 2);
    EXPECT_EQ(often.Events().times[1].seconds, 1.5);
    often.Close();
    EXPECT_FALSE(FileExists(session));
    RemoveWorkFolder(often.work);
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
    EXPECT_FALSE(recorder.IsAsideUnsaved());
    recorder.SetAside();
    EXPECT_TRUE(recorder.IsAsideUnsaved());
    Begin(true, true);
    recorder.DropAside();
    EXPECT_FALSE(recorder.IsAsideUnsaved());
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
