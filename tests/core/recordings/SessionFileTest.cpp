#include "core/recordings/SessionFile.h"

#include <gtest/gtest.h>

#include <string>

namespace tracelet {
namespace {

TEST(SessionFile, BoardsAreReadBackAsTheyAreTold) {
    SessionFacts facts;
    EXPECT_EQ(ReadSessionSummary(SessionText(facts, {}, 0, 0)).boards, "");
    facts.digitalBoard = {"usb-2", true};
    EXPECT_EQ(ReadSessionSummary(SessionText(facts, {}, 0, 0)).boards, "usb-2 (simulated)");
    facts.analogBoard = {"pci-6052e", false};
    EXPECT_EQ(ReadSessionSummary(SessionText(facts, {}, 0, 0)).boards, "pci-6052e, usb-2 (simulated)");
    EXPECT_EQ(BoardsText(facts.analogBoard, facts.digitalBoard), "pci-6052e, usb-2 (simulated)");
}

TEST(SessionFile, BoardsOfOtherTextsAreNone) {
    for (const char* text : {"", "[]", R"({"analog": 1})", R"({"analog": {"board": "daq"}})",
                             R"({"analog": {"board": {"name": 7, "simulated": "no"}}})"})
        EXPECT_EQ(ReadSessionSummary(text).boards, "") << text;
}

} // namespace
} // namespace tracelet
