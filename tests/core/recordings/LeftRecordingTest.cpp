#include "core/recordings/LeftRecording.h"

#include "core/base/LittleEndian.h"
#include "core/disk/UserFolders.h"
#include "core/files/Paths.h"
#include "core/recordings/SessionFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
namespace fs = std::filesystem;

ProjectInfo Header(bool analog, bool digital, bool polled) {
    ProjectInfo info;
    info.bHisAISoft = polled;
    info.bHisAIAnalog = true;
    info.bHisAI = analog;
    info.bHisDI = digital;
    if (analog) {
        info.nHisAIChanCount = 2;
        info.aiPlots = {{1, 0, "AI 0"}, {2, 0, "AI 1"}};
        info.HisAIChanIsThermo = {0, 0};
    }
    if (digital) {
        info.nHisDIChanCount = 1;
        info.diPlots = {{2, 0, "DI 0:0"}};
        info.HisDIPortMask = {1, 0, 0};
    }
    return info;
}

std::string Text(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string Ports(std::int32_t count, const std::string& states) {
    std::vector<std::byte> header;
    AppendLittleEndian(header, std::int32_t{0});
    AppendLittleEndian(header, count);
    return Text(header) + states;
}

class LeftRecordingTest : public testing::Test {
protected:
    /// A work folder with these files, old enough to be swept.
    WorkFolder Leave(const std::string& name, const std::string& project, const std::string& ai,
                     const std::string& fast = {}, const std::string& di = {}) {
        const WorkFolder left = WorkFolderAt(parent / name);
        fs::create_directory(parent / name);
        for (const auto& [file, content] :
             {std::pair("Project.tld", project), {"AI.tld", ai}, {"FAI.tld", fast}, {"DI.tld", di}})
            std::ofstream(parent / name + "/" + file, std::ios::binary) << content;
        Age(parent / name, 60);
        return left;
    }
    /// Makes it a folder that was left since the system started.
    void LeaveSession(const WorkFolder& left) {
        std::ofstream(NativePath(SessionFileOf(state.Path(), left.sztmpPath)))
            << "{\"boot\": \"" + BootId() + "\"}";
    }
    static void Age(const std::string& path, std::time_t seconds) {
        const utimbuf times{std::time(nullptr) - seconds, std::time(nullptr) - seconds};
        ASSERT_EQ(utime(path.c_str(), &times), 0);
    }
    std::vector<LeftRecording> Find() {
        const std::string parents[] = {parent.Path()};
        return FindLeftRecordings(parents, state.Path());
    }

    const TemporaryFolder parent;
    const TemporaryFolder state;
    const TemporaryFolder target;
};

TEST_F(LeftRecordingTest, CountsWholeScansOfEveryInput) {
    const std::string both = Text(ProjectHeader(Header(true, true, true)));
    const std::string analog = Text(ProjectHeader(Header(true, false, true)));
    const std::string fast = Text(ProjectHeader(Header(true, false, false)));
    const std::string digital = Text(ProjectHeader(Header(false, true, true)));
    const std::string record = Text(StopRecord(1, 0.25));
    const struct {
        const char* what;
        std::string project;
        std::string ai;
        std::string fast;
        std::string di;
        std::int32_t scans;
        double interval;
        std::size_t analogBytes;
        std::size_t digitalBytes;
    } cases[] = {
        {"analog, a scan torn", analog + record, std::string(3 * 8 + 5, 'a'), "", Ports(1, ""), 3, 0.25, 24,
         0},
        {"no stop record yet", analog, std::string(8, 'a'), "", "", 1, 0.0, 8, 0},
        {"half a stop record", analog + record.substr(0, 7), std::string(8, 'a'), "", "", 1, 0.0, 8, 0},
        {"paced", fast + record, "", std::string(16, 'a'), "", 2, 0.25, 16, 0},
        {"digital", digital + record, "", "", Ports(3, "123456789"), 3, 0.25, 0, 17},
        {"both, digital behind", both + record, std::string(5 * 8, 'a'), "", Ports(3, "123456"), 2, 0.25, 16,
         14},
        {"both, digital lost", both + record, std::string(5 * 8, 'a'), "", "", 5, 0.25, 40, 0},
        {"both, analog lost", both + record, "", "", Ports(3, "123456"), 2, 0.25, 0, 14},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const WorkFolder folder = Leave("tl12aF.tmp", c.project, c.ai, c.fast, c.di);
        LeaveSession(folder);
        {
            const std::vector<LeftRecording> found = Find();
            ASSERT_THAT(found, SizeIs(1));
            EXPECT_EQ(found[0].info.ScanCount, c.scans);
            EXPECT_EQ(found[0].info.ScanInterval, c.interval);
            EXPECT_EQ(found[0].bytes, static_cast<std::int64_t>(c.analogBytes + c.digitalBytes));
            EXPECT_FALSE(found[0].started.empty());
            const std::string home = target.Path() + "\\run";
            EXPECT_EQ(SaveRecording(found[0].parts, home), "");
            const ProjectInfo saved = ReadProjectFile(home + "\\Project.tlp");
            EXPECT_EQ(saved.ScanCount, c.scans);
            EXPECT_EQ(saved.ScanInterval, c.interval);
            EXPECT_EQ(saved.AIDataPath, home + "\\AI.tld");
            EXPECT_EQ(saved.aiPlots, found[0].info.aiPlots);
            EXPECT_EQ(ContentOf(target / "run/AI.tld").size(), c.analogBytes);
            EXPECT_EQ(ContentOf(target / "run/DI.tld").size(), c.digitalBytes);
            Discard(found[0]);
        }
        EXPECT_FALSE(fs::exists(parent / "tl12aF.tmp"));
        fs::remove_all(target / "run");
    }
}

TEST_F(LeftRecordingTest, AfterTheSystemWentDownOnlyScansCountThatWereOnTheDisk) {
    const std::string project = Text(ProjectHeader(Header(true, false, true)));
    const WorkFolder folder =
        Leave("tl0001.tmp", project + Text(StopRecord(2, 0.5)), std::string(5 * 8, 'a'));
    const std::string session = NativePath(SessionFileOf(state.Path(), folder.sztmpPath));
    for (const char* text : {"", "{\"boot\": \"another\", \"started\": \"then\"}", "{\"started\": \"th"}) {
        SCOPED_TRACE(text);
        std::ofstream(session) << text;
        const std::vector<LeftRecording> found = Find();
        ASSERT_THAT(found, SizeIs(1));
        EXPECT_EQ(found[0].info.ScanCount, 2);
        EXPECT_EQ(found[0].parts.analogBytes, 16);
        EXPECT_EQ(found[0].parts.session.ends_with('}'), std::string(text).ends_with('}'))
            << "a torn one goes";
    }
    LeaveSession(folder);
    EXPECT_EQ(Find().at(0).info.ScanCount, 5);
}

TEST_F(LeftRecordingTest, WhatAStartHadSetAsideIsFoundUntilThereIsMore) {
    const std::string record = Text(StopRecord(3, 0.5));
    const WorkFolder folder =
        Leave("tl0001.tmp", Text(ProjectHeader(Header(true, false, true))) + record, std::string(3 * 8, 'a'));
    const std::string files[] = {folder.szProjectFileName, folder.szAIFileName};
    ASSERT_TRUE(SetAside(files));
    EXPECT_EQ(Find().at(0).info.ScanCount, 3);
    std::ofstream(NativePath(folder.szProjectFileName)) << Text(ProjectHeader(Header(true, false, true)));
    std::ofstream(NativePath(folder.szAIFileName)).flush();
    EXPECT_EQ(Find().at(0).info.ScanCount, 3) << "the new one holds nothing yet";
    std::ofstream(NativePath(folder.szProjectFileName), std::ios::app) << Text(StopRecord(1, 0.5));
    std::ofstream(NativePath(folder.szAIFileName)) << std::string(8, 'b');
    EXPECT_EQ(Find().at(0).info.ScanCount, 1);
    Discard(Find().at(0));
    EXPECT_THAT(parent.Names(), IsEmpty());
}

TEST_F(LeftRecordingTest, ATimeThatTheProjectLacksComesFromTheSession) {
    const WorkFolder folder =
        Leave("tl0001.tmp", Text(ProjectHeader(Header(true, false, true))), std::string(16, 'a'));
    SessionFacts facts;
    facts.started = "2026-01-02T03:04:05+01:00";
    facts.asked = 50.0;
    const std::string text = SessionText(facts, {}, 0, 0.0);
    std::ofstream(NativePath(SessionFileOf(state.Path(), folder.sztmpPath))) << text;
    const std::vector<LeftRecording> found = Find();
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].started, facts.started);
    EXPECT_EQ(found[0].info.ScanInterval, 0.02);
    EXPECT_EQ(found[0].parts.session, text);
    Discard(found[0]);
    EXPECT_THAT(state.Names(), IsEmpty());
}

TEST_F(LeftRecordingTest, EmptyLeftoversGoAndWhatIsNotOursStays) {
    Leave("tl0001.tmp", Text(ProjectHeader(Header(true, false, true))), "abc");
    Leave("tl0002.tmp", "", "");
    Leave("tl000g.tmp", "", "");
    Leave("notes.tmp", "", "");
    Leave("tl0003.tmp", "no project at all", "data that nothing describes");
    Leave("tl0004.tmp", "", "");
    Age(parent / "tl0004.tmp", 0); // perhaps a program that is just starting
    EXPECT_THAT(Find(), SizeIs(0));
    EXPECT_THAT(parent.Names(),
                testing::UnorderedElementsAre("tl000g.tmp", "notes.tmp", "tl0003.tmp", "tl0004.tmp"));
}

TEST_F(LeftRecordingTest, WhatAProgramHoldsIsNotTouched) {
    const std::string project = Text(ProjectHeader(Header(true, false, true)));
    const WorkFolder full = Leave("tl0001.tmp", project, std::string(16, 'a'));
    const WorkFolder empty = Leave("tl0002.tmp", project, "");
    LeaveSession(full);
    {
        const auto holdFull = HoldFolder(full.sztmpPath);
        const auto holdEmpty = HoldFolder(empty.sztmpPath);
        ASSERT_TRUE(holdFull && holdEmpty);
        EXPECT_THAT(Find(), SizeIs(0));
        EXPECT_THAT(parent.Names(), SizeIs(2));
    }
    const std::vector<LeftRecording> found = Find();
    EXPECT_THAT(found, SizeIs(1));
    EXPECT_THAT(parent.Names(), ElementsAre("tl0001.tmp"));
    EXPECT_THAT(Find(), SizeIs(0)) << "who offers it holds it";
}

TEST_F(LeftRecordingTest, TheLastUnsavedOneIsKeptForAWeek) {
    const std::string project = Text(ProjectHeader(Header(true, false, true))) + Text(StopRecord(2, 0.5));
    const WorkFolder work = Leave("tl0001.tmp", project, std::string(16, 'a'));
    const std::string aside = AsideName(work.szAIFileName);
    fs::rename(NativePath(work.szAIFileName), NativePath(aside));
    const std::string unsaved = UnsavedFolder(state.Path());
    const std::string files[] = {work.szProjectFileName, aside};
    for (int times = 0; times < 2; ++times) { // one takes the place of the other
        ASSERT_TRUE(KeepUnsaved(files, "{\"started\": \"then\"}", unsaved));
        EXPECT_FALSE(fs::exists(NativePath(work.szProjectFileName)));
        const std::vector<LeftRecording> found = Find();
        ASSERT_THAT(found, SizeIs(1));
        EXPECT_EQ(found[0].info.ScanCount, 2);
        EXPECT_EQ(found[0].started, "then");
        EXPECT_FALSE(KeepUnsaved(files, "", unsaved)) << "held while it is offered";
        Leave("tl0001.tmp", project, "");
        std::ofstream(NativePath(aside)) << std::string(16, 'b');
    }
    ASSERT_TRUE(KeepUnsaved(files, "", unsaved));
    Age(NativePath(unsaved), 6 * 24 * 3600);
    EXPECT_THAT(Find(), SizeIs(1));
    Age(NativePath(unsaved), 8 * 24 * 3600);
    EXPECT_THAT(Find(), SizeIs(0));
    EXPECT_THAT(state.Names(), IsEmpty());
}

TEST_F(LeftRecordingTest, OntoAnotherDiskItIsCopied) {
    struct stat here {};
    struct stat there {};
    if (stat(state.Path().c_str(), &here) != 0 || stat("/dev/shm", &there) != 0 ||
        here.st_dev == there.st_dev)
        GTEST_SKIP() << "there is no other disk";
    const std::string other = "/dev/shm/tracelet-test-" + std::to_string(getpid());
    fs::create_directory(other);
    const std::string project = Text(ProjectHeader(Header(true, false, true)));
    const WorkFolder work = Leave("tl0001.tmp", project, std::string(16, 'a'));
    const std::string files[] = {work.szProjectFileName, work.szAIFileName};
    EXPECT_TRUE(KeepUnsaved(files, "", other + "/unsaved"));
    EXPECT_EQ(ContentOf(other + "/unsaved/AI.tld"), std::string(16, 'a'));
    EXPECT_FALSE(fs::exists(NativePath(work.szAIFileName)));
    fs::remove_all(other);
}

TEST_F(LeftRecordingTest, WhatCannotBeKeptWholeIsNotKept) {
    const WorkFolder work = Leave("tl0001.tmp", "project", std::string(16, 'a'));
    const std::string files[] = {work.szProjectFileName, work.sztmpPath + "\\none"};
    EXPECT_FALSE(KeepUnsaved(files, "", UnsavedFolder(state.Path())));
    EXPECT_THAT(state.Names(), IsEmpty());
    EXPECT_FALSE(KeepUnsaved(files, "", ""));
}

TEST_F(LeftRecordingTest, TheNewestComesFirst) {
    const std::string project = Text(ProjectHeader(Header(true, false, true)));
    for (const char* name : {"tl0001.tmp", "tl0003.tmp", "tl0002.tmp"}) {
        LeaveSession(Leave(name, project, std::string(16, 'a')));
        Age(parent / name + "/Project.tld", std::string(name) == "tl0003.tmp" ? 100 : 10000);
    }
    const std::vector<LeftRecording> found = Find();
    ASSERT_THAT(found, SizeIs(3));
    EXPECT_EQ(found[0].folder.sztmpPath, parent / "tl0003.tmp");
}

TEST_F(LeftRecordingTest, IsDescribedToTheUser) {
    LeftRecording left;
    left.started = "2026-11-21T14:03:09+01:00";
    left.info = Header(true, true, true);
    left.info.ScanCount = 120;
    left.info.ScanInterval = 0.1;
    left.parts.analog = left.parts.digital = "file";
    left.bytes = 2100000;
    EXPECT_EQ(Describe(left), "Unsaved recording of 21 Nov 2026 14:03 (12 s, 3 signals, 2.1 MB)");
    left.parts.analog.clear();
    left.started = "2026-01-02T03:04:05+00:00";
    left.bytes = 120;
    EXPECT_EQ(Describe(left), "Unsaved recording of 2 Jan 2026 03:04 (12 s, 1 signal, 120 bytes)");
    for (const char* unclear : {"", "yesterday", "2026-13-02T03:04:05", "2026-00-02T03:04:05"}) {
        left.started = unclear;
        EXPECT_EQ(Describe(left), "Unsaved recording (12 s, 1 signal, 120 bytes)") << unclear;
    }
}

TEST_F(LeftRecordingTest, TheLastUnsavedOneIsGivenUpUnlessItIsOffered) {
    const std::string project = Text(ProjectHeader(Header(true, false, true))) + Text(StopRecord(2, 0.5));
    const WorkFolder work = Leave("tl0001.tmp", project, std::string(16, 'a'));
    const std::string unsaved = UnsavedFolder(state.Path());
    EXPECT_FALSE(GiveUpUnsaved(unsaved));
    const std::string files[] = {work.szProjectFileName, work.szAIFileName};
    ASSERT_TRUE(KeepUnsaved(files, "{}", unsaved));
    {
        const std::vector<LeftRecording> found = Find();
        EXPECT_FALSE(GiveUpUnsaved(unsaved));
        EXPECT_THAT(found, SizeIs(1));
    }
    EXPECT_TRUE(GiveUpUnsaved(unsaved));
    EXPECT_THAT(state.Names(), IsEmpty());
}

} // namespace
} // namespace tracelet
