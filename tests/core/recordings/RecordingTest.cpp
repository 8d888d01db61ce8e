#include "core/recordings/Recording.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// A folder with a project of one channel and of lines 0 and 7 of port 1 and line 4 of port 2, and its data.
class RecordingTest : public testing::Test {
protected:
    RecordingTest() { Write(info); }

    void Write(const ProjectInfo& project) {
        saved.Write("Project.tlp", AsText(ProjectHeader(project)) +
                                       AsText(StopRecord(project.ScanCount, project.ScanInterval)) +
                                       AsText(SavedPaths(project.AIDataPath, project.DIDataPath)));
    }

    [[nodiscard]] Recording Open(Disposition missing = Disposition::OpenExisting) const {
        return OpenRecording(saved / "Project.tlp", missing);
    }

    /// What kept a data file from opening; "" when it is open, "absent" when there was none to open.
    static std::string StateOf(const SystemFile& file, const std::optional<RunTimeError>& fault) {
        EXPECT_FALSE(file.IsOpen() && fault);
        return fault ? fault->what() : file.IsOpen() ? "" : "absent";
    }

    TemporaryFolder saved;
    const std::string analog = saved.Write("AI.tld", "\0\0\x80\x3F"s);
    const std::string digital = saved.Write("DI.tld", "\x01\0\0\0\x02\0\0\0\x81\x10"s);
    ProjectInfo info{.bHisAI = true,
                     .bHisDI = true,
                     .bHisAISoft = true,
                     .bHisAIAnalog = true,
                     .nHisAIChanCount = 1,
                     .nHisDIChanCount = 3,
                     .aiPlots = {{1, 0, "AI 0"}},
                     .HisAIChanIsThermo = {0},
                     .diPlots = {{2, 0, "a"}, {3, 0, "b"}, {4, 0, "c"}},
                     .HisDIPortMask = {0xFF, 0x81, 0x10},
                     .ScanCount = 1,
                     .ScanInterval = 0.5,
                     .AIDataPath = saved.Path() + "\\AI.tld",
                     .DIDataPath = saved.Path() + "\\DI.tld"};
};

TEST_F(RecordingTest, IsOpenedWhole) {
    Recording recording = Open();
    EXPECT_EQ(recording.info, info);
    EXPECT_EQ(StateOf(recording.analogFile, recording.analogFault), "");
    EXPECT_EQ(recording.analogFile.Size(), 4);
    EXPECT_EQ(StateOf(recording.digitalFile, recording.digitalFault), "");
    EXPECT_EQ(recording.digitalFile.Size(), 10);
    EXPECT_EQ(recording.digitalHeader, (DigitalHeader{1, 2}));
    EXPECT_THAT(recording.lines, ElementsAre(8, 15, 20));
    EXPECT_THAT(recording.foundBeside, IsEmpty());

    recording.CloseFiles();
    EXPECT_FALSE(recording.analogFile.IsOpen());
    EXPECT_FALSE(recording.digitalFile.IsOpen());
    EXPECT_THAT(recording.lines, ElementsAre(8, 15, 20)) << "what was read stays";
}

TEST_F(RecordingTest, WhatTheFlagsDoNotNameIsAbsent) {
    for (const bool isAnalog : {false, true}) {
        ProjectInfo one = info;
        (isAnalog ? one.bHisDI : one.bHisAI) = false;
        Write(one);
        const Recording recording = Open();
        EXPECT_EQ(StateOf(recording.analogFile, recording.analogFault), isAnalog ? "" : "absent");
        EXPECT_EQ(StateOf(recording.digitalFile, recording.digitalFault), isAnalog ? "absent" : "");
        EXPECT_EQ(recording.digitalHeader.nHisDIPortCount, isAnalog ? 0 : 2);
        EXPECT_EQ(recording.lines.size(), isAnalog ? 0U : 3U);
    }
}

TEST_F(RecordingTest, DataAreLookedForAtTheirPathThenBesideTheProject) {
    const TemporaryFolder elsewhere;
    elsewhere.Write("ai.tld", "12345678");
    const struct {
        std::string analogPath;
        std::string digitalPath;
        std::int64_t analogBytes;
        std::vector<std::string> foundBeside;
    } cases[] = {{elsewhere / "AI.tld", info.DIDataPath, 8, {}},
                 {"/no folder\\AI.tld", info.DIDataPath, 4, {"AI.tld"}},
                 {"C:\\Run 1\\ai.TLD", "\\\\server\\share/DI.tld", 4, {"ai.TLD", "DI.tld"}},
                 {info.AIDataPath, "DI.tld.old\\DI.tld", 4, {"DI.tld"}}};
    for (const auto& c : cases) {
        info.AIDataPath = c.analogPath;
        info.DIDataPath = c.digitalPath;
        Write(info);
        const Recording recording = Open();
        EXPECT_EQ(recording.analogFile.Size(), c.analogBytes) << c.analogPath;
        EXPECT_TRUE(recording.digitalFile.IsOpen()) << c.digitalPath;
        EXPECT_EQ(recording.foundBeside, c.foundBeside);
        EXPECT_EQ(recording.info, info) << "the paths stay as the project tells";
    }
}

TEST_F(RecordingTest, MissingAnalogDataAreCreatedOnlyWhereThatIsAskedFor) {
    std::filesystem::remove(analog);
    const Recording refused = Open();
    EXPECT_EQ(StateOf(refused.analogFile, refused.analogFault), "File not found");
    EXPECT_FALSE(std::filesystem::exists(analog));
    EXPECT_TRUE(refused.digitalFile.IsOpen()) << "the other file opens all the same";

    const Recording created = Open(Disposition::OpenAlways);
    EXPECT_EQ(StateOf(created.analogFile, created.analogFault), "");
    EXPECT_EQ(created.analogFile.Size(), 0);
    EXPECT_TRUE(std::filesystem::exists(analog));
}

TEST_F(RecordingTest, DigitalFileThatDoesNotOpenLeavesNothingOfItself) {
    const struct {
        std::string bytes;
        std::string fault;
    } cases[] = {{"", "Unexpected end of file"},
                 {"\x01\0\0\0\x02\0\0"s, "Unexpected end of file"},
                 {"\x01\0\0\0\0\0\0\0"s, "The digital file cannot hold 0 ports from port 1"}};
    for (const auto& c : cases) {
        saved.Write("DI.tld", c.bytes);
        const Recording recording = Open();
        EXPECT_EQ(StateOf(recording.digitalFile, recording.digitalFault), c.fault);
        EXPECT_EQ(recording.digitalHeader, DigitalHeader{});
        EXPECT_THAT(recording.lines, IsEmpty());
        EXPECT_TRUE(recording.analogFile.IsOpen());
    }
    std::filesystem::remove(digital);
    EXPECT_EQ(Open().digitalFault.value().what(), "File not found"s);
    EXPECT_FALSE(std::filesystem::exists(digital));
}

TEST_F(RecordingTest, ProjectThatCannotBeReadIsRaisedBeforeDataAreCreated) {
    std::filesystem::remove(analog);
    const std::string whole = ContentOf(saved / "Project.tlp");
    saved.Write("Project.tlp", whole.substr(0, ProjectHeader(info).size() + 3));
    EXPECT_EQ(FaultOf([&] { (void)Open(Disposition::OpenAlways); }), "Unexpected end of file");
    EXPECT_FALSE(std::filesystem::exists(analog));
    EXPECT_EQ(FaultOf([&] { (void)OpenRecording(saved / "None.tlp", Disposition::OpenAlways); }),
              "File not found");
}

} // namespace
} // namespace tracelet
