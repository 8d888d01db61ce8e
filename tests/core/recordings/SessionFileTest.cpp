#include "core/recordings/SessionFile.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace tracelet {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

SessionFacts Facts() {
    SessionFacts facts;
    facts.started = "2026-01-02T03:04:05+01:00";
    facts.analogBoard = {"AD \"16\"", true};
    facts.digitalBoard = {"Lines", false};
    facts.asked = 50.0;
    return facts;
}

TEST(ReadSessionSummary, KnowsBoardsAndLossesOfAText) {
    const SessionEvents events{{{2, 3, "No answer"}, {7, SampleLoss::Unknown, "Overrun \xff"}}, {}};
    const SessionSummary summary = ReadSessionSummary(SessionText(Facts(), events, 9, 0.0));
    EXPECT_EQ(summary.started, Facts().started);
    EXPECT_EQ(summary.scansPerSecond, 50.0);
    ASSERT_THAT(summary.boards, SizeIs(2));
    EXPECT_EQ(summary.boards[0].name, "AD \"16\"");
    EXPECT_TRUE(summary.boards[0].isSimulated);
    EXPECT_EQ(summary.boards[1].name, "Lines");
    EXPECT_FALSE(summary.boards[1].isSimulated);
    ASSERT_THAT(summary.losses, SizeIs(2));
    EXPECT_EQ(summary.losses[0].nextScan, 2);
    EXPECT_EQ(summary.losses[0].scans, 3);
    EXPECT_EQ(summary.losses[0].reason, "No answer");
    EXPECT_EQ(summary.losses[1].nextScan, 7);
    EXPECT_EQ(summary.losses[1].scans, SampleLoss::Unknown);
}

TEST(ReadSessionSummary, TakesNothingFromWhatIsBadlyTold) {
    for (const char* text : {"", "{", "[]", "7", R"({"losses":7,"analog":[],"digital":{"board":7}})",
                             R"({"analog":{"board":{"name":7}},"started":{},"scansPerSecond":"fast"})",
                             R"({"losses":[7,{},{"nextScan":1},{"reason":"a"},{"nextScan":-1,"reason":"a"},)"
                             R"({"nextScan":2147483648,"reason":"a"},{"nextScan":1.5,"reason":"a"},)"
                             R"({"nextScan":1,"reason":null}]})"}) {
        const SessionSummary summary = ReadSessionSummary(text);
        EXPECT_EQ(summary.started, "") << text;
        EXPECT_EQ(summary.scansPerSecond, 0.0) << text;
        EXPECT_THAT(summary.boards, IsEmpty()) << text;
        EXPECT_THAT(summary.losses, IsEmpty()) << text;
    }
}

TEST(ReadSessionSummary, ALossOfAnOddNumberIsOneOfUnknownLength) {
    for (const char* scans : {"-5", "\"3\"", "1.5", "null"}) {
        const SessionSummary summary = ReadSessionSummary(
            std::string(R"({"losses":[{"nextScan":1,"reason":"a","scans":)") + scans + "}]}");
        ASSERT_THAT(summary.losses, SizeIs(1)) << scans;
        EXPECT_EQ(summary.losses[0].scans, SampleLoss::Unknown) << scans;
    }
    const SessionSummary most =
        ReadSessionSummary(R"({"losses":[{"nextScan":1,"reason":"a","scans":18446744073709551615}]})");
    EXPECT_EQ(most.losses.at(0).scans, SampleLoss::Unknown);
}

TEST(BoardsText, NamesEachOnceAndTheSimulatedOnes) {
    EXPECT_EQ(BoardsText({}), "");
    EXPECT_EQ(BoardsText({{"pci-6052e", false}, {"usb-2", true}}), "pci-6052e, usb-2 (simulated)");
    EXPECT_EQ(BoardsText({{"", false}, {"usb-2", true}}), "usb-2 (simulated)");
    EXPECT_EQ(BoardsText({{"Both", false}, {"Both", false}}), "Both");
}

TEST(SessionTextOf, IsEmptyForWhatIsNoSuchFile) {
    const TemporaryFolder folder;
    const std::string path = folder.Path() + "/Session.json";
    EXPECT_EQ(SessionTextOf(path), "");
    std::ofstream(path) << "text";
    EXPECT_EQ(SessionTextOf(path), "text");
    std::filesystem::resize_file(path, (64 << 20) + 1);
    EXPECT_EQ(SessionTextOf(path), "");
    EXPECT_EQ(SessionTextOf(folder.Path()), "");
}

} // namespace
} // namespace tracelet
