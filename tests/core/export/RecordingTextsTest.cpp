#include "core/export/RecordingTexts.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Unreadable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace tracelet {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

/// Two channels of two scans and lines 0 and 2 of port 1 in three.
class RecordingTextsTest : public testing::Test {
protected:
    RecordingTextsTest() {
        std::vector<std::byte> codes;
        for (std::int32_t code = 0; code < 4; ++code)
            AppendLittleEndian(codes, code);
        OpenAnalog(AsText(codes));
        OpenDigital("\x01\0\0\0\x01\0\0\0\x01\x04\x05"s);
        recording.info.ScanCount = 3;
        recording.info.ScanInterval = 0.5;
        recording.digitalHeader = {1, 1};
        recording.lines = {8, 10};
    }

    void OpenAnalog(const std::string& bytes) {
        recording.analogFile = SystemFile(data.Write("AI", bytes), Disposition::OpenExisting);
    }
    void OpenDigital(const std::string& bytes) {
        recording.digitalFile = SystemFile(data.Write("DI", bytes), Disposition::OpenExisting);
    }

    std::vector<std::string> Write(WantedTexts wanted) {
        fractions.clear();
        return WriteRecordingTexts(recording, {"left", "right"}, texts.Path(), wanted,
                                   [this](double fraction) { fractions.push_back(fraction); });
    }

    TemporaryFolder data;
    TemporaryFolder texts;
    Recording recording;
    std::vector<double> fractions;
};

TEST_F(RecordingTextsTest, WritesWhatIsWanted) {
    const struct {
        WantedTexts wanted;
        std::vector<std::string> names;
    } cases[] = {{{false, false}, {}},
                 {{true, false}, {"AI.xlt"}},
                 {{false, true}, {"DI.xlt"}},
                 {{true, true}, {"AI.xlt", "DI.xlt"}}};
    for (const auto& c : cases) {
        for (const std::string& name : texts.Names())
            std::filesystem::remove(texts / name);
        EXPECT_THAT(Write(c.wanted), IsEmpty());
        EXPECT_THAT(texts.Names(), UnorderedElementsAreArray(c.names));
    }
    EXPECT_EQ(ContentOf(texts / "AI.xlt"), "Time\tleft\tright\r\n0.5\t0\t1") << "without the last scan";
    EXPECT_EQ(ContentOf(texts / "DI.xlt"), "Time\t1:0\t1:2\r\n0.5\t1\t0\r\n1\t0\t1\r\n1.5\t1\t1");
}

TEST_F(RecordingTextsTest, FloatsAreWrittenAsSuch) {
    recording.info.bHisAIAnalog = true;
    std::vector<std::byte> values;
    for (const float value : {1.5F, -2.25F, 0.0F, 0.0F})
        AppendLittleEndian(values, value);
    OpenAnalog(AsText(values));
    EXPECT_THAT(Write({.analog = true}), IsEmpty());
    EXPECT_EQ(ContentOf(texts / "AI.xlt"), "Time\tleft\tright\r\n0.5\t1.5\t-2.25");
}

TEST_F(RecordingTextsTest, ClosedFilesGiveHeaders) {
    recording.CloseFiles();
    EXPECT_THAT(Write({true, true}), IsEmpty());
    EXPECT_EQ(ContentOf(texts / "AI.xlt"), "Time\tleft\tright");
    EXPECT_EQ(ContentOf(texts / "DI.xlt"), "Time\t1:0\t1:2");
}

TEST_F(RecordingTextsTest, ATextWhoseDataCannotBeReadDoesNotStay) {
    const std::string reason = " was not written: "s + UnreadableText;
    MakeUnreadable(recording.digitalFile);
    EXPECT_THAT(Write({true, true}), ElementsAre("DI.xlt" + reason));
    EXPECT_THAT(texts.Names(), ElementsAre("AI.xlt"));
    MakeUnreadable(recording.analogFile);
    EXPECT_THAT(Write({true, true}), ElementsAre("AI.xlt" + reason, "DI.xlt" + reason));
    EXPECT_THAT(texts.Names(), IsEmpty());
}

TEST_F(RecordingTextsTest, ProgressGoesUpOnceOverBoth) {
    OpenAnalog(std::string(3 * AnalogBlockBytes, '\0'));
    OpenDigital("\0\0\0\0\x01\0\0\0"s + std::string(3 * AnalogBlockBytes, '\0'));
    recording.info.ScanCount = static_cast<std::int32_t>(3 * AnalogBlockBytes);
    EXPECT_THAT(Write({true, true}), IsEmpty());
    EXPECT_TRUE(std::ranges::is_sorted(fractions));
    EXPECT_NEAR(fractions.front(), 1.0 / 6, 1e-3) << "the analog file is half of the bytes";
    EXPECT_DOUBLE_EQ(fractions.back(), 1.0);
}

TEST_F(RecordingTextsTest, AFolderThatIsNotThereIsRaised) {
    std::filesystem::remove_all(texts.Path());
    EXPECT_EQ(FaultOf([&] { (void)Write({true, true}); }), "File not found");
}

} // namespace
} // namespace tracelet
