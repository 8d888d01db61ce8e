#include "core/input/SessionStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using Doing = SessionStatus::Doing;
using Tone = StatusField::Tone;
using testing::ElementsAre;

std::vector<std::string> TextsOf(const std::vector<StatusField>& fields) {
    std::vector<std::string> texts;
    for (const StatusField& field : fields)
        texts.push_back(field.text);
    return texts;
}

std::vector<std::string> Texts(const SessionStatus& status) {
    return TextsOf(StatusFields(status));
}

SessionStatus Recording() {
    SessionStatus status;
    status.doing = Doing::Recording;
    status.boards = {{"AD-16", true}};
    status.time = 83.9;
    status.scans = 12345;
    status.asked = 150.0;
    status.reached = 148.81;
    status.bytes = 2'100'000;
    status.diskLasts = 7300.0;
    return status;
}

std::vector<std::string> Shortened(const SessionStatus& status, int room) {
    std::vector<StatusField> fields = StatusFields(status);
    Shorten(fields, room, 1, [](const std::string& text) { return static_cast<int>(text.size()); });
    return TextsOf(fields);
}

// ---- What is told

TEST(StatusFields, TellAllOfARecording) {
    EXPECT_THAT(Texts(Recording()),
                ElementsAre("\u25cf Recording", "00:01:23", "12,345 scans", "148.8 of 150 scans/s", "2.1 MB",
                            "disk lasts 2 h", "AD-16 (simulated)"));
    EXPECT_EQ(StatusFields(Recording()).front().tone, Tone::Recording);
}

TEST(StatusFields, TellThatARunIsNotRecorded) {
    SessionStatus status;
    status.doing = Doing::Running;
    status.boards = {{"AD-16", false}};
    status.asked = 10.0;
    EXPECT_THAT(Texts(status),
                ElementsAre("\u25cb Running, not recorded", "00:00:00", "10 scans/s", "AD-16"));
    EXPECT_EQ(StatusFields(status).front().tone, Tone::Plain);
}

TEST(StatusFields, TellWhichInputAloneIsRecorded) {
    SessionStatus status;
    status.doing = Doing::Recording;
    status.recorded = "DI";
    EXPECT_THAT(Texts(status), ElementsAre("\u25cf Recording DI only", "00:00:00"));
}

TEST(StatusFields, TellWhatWasNotSaved) {
    SessionStatus status;
    EXPECT_THAT(Texts(status), ElementsAre("Ready"));
    status.isUnsaved = true;
    status.scans = 1;
    EXPECT_THAT(Texts(status), ElementsAre("Ready", "Not saved", "1 scan"));
}

TEST(StatusFields, TellLossesAsWarnings) {
    SessionStatus status;
    status.losses = {1, 0, 0};
    EXPECT_THAT(Texts(status), ElementsAre("Ready", "Lost: 1 scan"));
    status.losses = {1200, 1, 2};
    status.lastLoss = 61.0;
    EXPECT_THAT(Texts(status),
                ElementsAre("Ready", "Lost: 1,200 scans, 1 overrun, 2 missed ticks, last at 00:01:01"));
    EXPECT_EQ(StatusFields(status)[1].tone, Tone::Warning);
    EXPECT_EQ(StatusFields(status)[1].brief, "Lost: 1,200 scans, 1 overrun, 2 missed ticks");
}

TEST(StatusFields, TellWhyNothingIsRecorded) {
    SessionStatus status;
    status.doing = Doing::Recording;
    status.fault = "No space left";
    EXPECT_THAT(Texts(status),
                ElementsAre("\u25cb Running, not recorded", "Recording stopped: No space left", "00:00:00"));
    EXPECT_EQ(StatusFields(status)[1].tone, Tone::Warning);
}

TEST(StatusFields, TellARecordingThatIsOpen) {
    SessionStatus status;
    status.recording = "run 1";
    status.time = 5.0;
    status.length = 60.0;
    status.doing = Doing::Open;
    EXPECT_THAT(Texts(status), ElementsAre("Recording \u201crun 1\u201d", "00:01:00"));
    status.doing = Doing::Playing;
    EXPECT_THAT(Texts(status), ElementsAre("\u25b6 Playing \u201crun 1\u201d", "00:00:05 of 00:01:00"));
    status.doing = Doing::Paused;
    EXPECT_THAT(Texts(status), ElementsAre("Paused \u201crun 1\u201d", "00:00:05 of 00:01:00"));
}

TEST(StatusFields, NameABoardOfBothInputsOnce) {
    SessionStatus status;
    status.boards = {{"Both", false}, {"Both", false}};
    EXPECT_THAT(Texts(status), ElementsAre("Ready", "Both"));
    status.boards = {{"Both", false}, {"Lines", true}};
    EXPECT_THAT(Texts(status), ElementsAre("Ready", "Both, Lines (simulated)"));
    EXPECT_EQ(StatusFields(status).back().brief, "simulated");
}

TEST(StatusFields, DoNotTellOfADiskThatLastsForever) {
    SessionStatus status;
    status.diskLasts = 1e9;
    EXPECT_THAT(Texts(status), ElementsAre("Ready"));
}

// ---- What a short line leaves out

TEST(Shorten, LeavesOutTheLessImportantFirst) {
    SessionStatus status = Recording();
    status.losses = {3, 0, 0};
    status.lastLoss = 61.0;
    const std::string red = "\u25cf Recording";
    EXPECT_EQ(Shortened(status, 1000).size(), 8U);
    EXPECT_THAT(Shortened(status, 111), ElementsAre(red, "00:01:23", "Lost: 3 scans, last at 00:01:01",
                                                    "12,345 scans", "disk lasts 2 h", "AD-16 (simulated)"));
    EXPECT_THAT(Shortened(status, 80),
                ElementsAre(red, "00:01:23", "Lost: 3 scans, last at 00:01:01", "AD-16 (simulated)"));
    EXPECT_THAT(Shortened(status, 70),
                ElementsAre(red, "00:01:23", "Lost: 3 scans, last at 00:01:01", "simulated"));
    EXPECT_THAT(Shortened(status, 0), ElementsAre(red, "Lost: 3 scans", "simulated"));
}

TEST(Shorten, LeavesALineThatFitsAlone) {
    const int all = 13 + 8 + 12 + 20 + 6 + 14 + 17 + 6; // bytes, and what lies between
    EXPECT_EQ(Shortened(Recording(), all).size(), 7U);
    EXPECT_EQ(Shortened(Recording(), all - 1).size(), 6U);
}

// ---- Pace

TEST(RateMeter, NeedsTwoTimesThatScansCame) {
    RateMeter meter;
    EXPECT_EQ(meter.ScansPerSecond(), 0.0);
    meter.Add(0.1, 0);
    meter.Add(0.2, 1);
    EXPECT_DOUBLE_EQ(meter.ScansPerSecond(), 10.0);
    meter.Add(0.9, 1); // nothing came
    EXPECT_DOUBLE_EQ(meter.ScansPerSecond(), 10.0);
}

TEST(RateMeter, ForgetsWhatWasLongAgo) {
    RateMeter meter;
    for (int scan = 0; scan <= 100; ++scan)
        meter.Add(scan * 0.1, scan);
    for (int scan = 101; scan <= 130; ++scan)
        meter.Add(10.0 + (scan - 100) * 1.0, scan);
    EXPECT_DOUBLE_EQ(meter.ScansPerSecond(), 1.0);
}

TEST(RateMeter, KnowsHalvesThatAreRare) {
    RateMeter meter;
    meter.Add(30.0, 3000);
    meter.Add(60.0, 6000);
    meter.Add(90.0, 9001);
    EXPECT_DOUBLE_EQ(meter.ScansPerSecond(), 3001.0 / 30.0);
}

TEST(RateMeter, StandsStillWhereTimeDoes) {
    RateMeter meter;
    meter.Add(1.0, 1);
    meter.Add(1.0, 2);
    EXPECT_EQ(meter.ScansPerSecond(), 0.0);
}

// ---- Losses of a recording

TEST(CountsOf, KeepsKnownNumbersAndOthersApart) {
    const std::vector<SampleLoss> losses{
        {0, 3, "a"}, {7, SampleLoss::Unknown, "b"}, {9, 2, "c"}, {9, std::int64_t{1} << 40, "d"}};
    EXPECT_EQ(CountsOf(losses), (LossCounts{2147483647, 1, 0}));
    EXPECT_FALSE(CountsOf({}).Any());
}

} // namespace
} // namespace tracelet
