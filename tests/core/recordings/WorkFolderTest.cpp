#include "core/recordings/WorkFolder.h"

#include "core/files/Paths.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::IsEmpty;
namespace fs = std::filesystem;

void WriteWorkFiles(const WorkFolder& work) {
    for (const std::string& path :
         {work.szProjectFileName, work.szAIFileName, work.szDIFileName, work.szFAIFileName})
        std::ofstream(NativePath(path)) << "x";
}

TEST(WorkFolder, IsMadeInTheProgramsFolder) {
    const TemporaryFolder program;
    const WorkFolder work = MakeWorkFolder(program.Path());
    EXPECT_TRUE(fs::is_directory(work.sztmpPath));
    EXPECT_THAT(FileNameFromPath(work.sztmpPath), testing::MatchesRegex("tl[0-9A-F]{4}\\.tmp"));
    EXPECT_EQ(fs::path(work.sztmpPath).parent_path(), program.Path());
    EXPECT_EQ(work.szProjectFileName, work.sztmpPath + "\\Project.tld");
    EXPECT_EQ(work.szAIFileName, work.sztmpPath + "\\AI.tld");
    EXPECT_EQ(work.szDIFileName, work.sztmpPath + "\\DI.tld");
    EXPECT_EQ(work.szFAIFileName, work.sztmpPath + "\\FAI.tld");
}

TEST(WorkFolder, IsAnotherForEachProgram) {
    const TemporaryFolder program;
    EXPECT_NE(MakeWorkFolder(program.Path()).sztmpPath, MakeWorkFolder(program.Path()).sztmpPath);
    EXPECT_EQ(program.Names().size(), 2U);
}

TEST(WorkFolder, FallsBackToTheTemporaryFolder) {
    const TemporaryFolder program;
    for (const std::string& unusable :
         {program / "none", program.Write("file"), std::string("C:\\Program")}) {
        const WorkFolder work = MakeWorkFolder(unusable);
        EXPECT_TRUE(fs::is_directory(work.sztmpPath)) << unusable;
        EXPECT_EQ(work.sztmpPath.find(GetTempDir() + "tl"), 0U) << work.sztmpPath;
        RemoveWorkFolder(work);
        EXPECT_FALSE(fs::exists(work.sztmpPath));
    }
}

TEST(WorkFolder, ThatCanBeMadeNowhereNamesNothing) {
    const TemporaryFolder folder;
    fs::permissions(folder.Path(), fs::perms{0555});
    const char* before = std::getenv("TMPDIR");
    const std::string kept = before != nullptr ? before : "";
    setenv("TMPDIR", folder.Path().c_str(), 1);
    {
        const OrdinaryUser user;
        if (user.Reaches(folder.Path())) {
            const WorkFolder work = MakeWorkFolder(folder / "none");
            std::error_code ignored;
            EXPECT_FALSE(fs::exists(work.sztmpPath, ignored));
            EXPECT_FALSE(fs::exists(fs::path(NativePath(work.szAIFileName)).parent_path(), ignored));
            RemoveWorkFolder(work); // nothing raised
        }
    }
    if (before != nullptr)
        setenv("TMPDIR", kept.c_str(), 1);
    else
        unsetenv("TMPDIR");
    EXPECT_THAT(folder.Names(), IsEmpty());
    fs::permissions(folder.Path(), fs::perms::owner_all);
}

TEST(WorkFolder, GoesWithItsFourFiles) {
    const TemporaryFolder program;
    const WorkFolder work = MakeWorkFolder(program.Path());
    WriteWorkFiles(work);
    RemoveWorkFolder(work);
    EXPECT_THAT(program.Names(), IsEmpty());
    RemoveWorkFolder(work); // again: nothing to do, nothing raised
}

TEST(WorkFolder, SetsFilesAsideAndPutsThemBack) {
    const TemporaryFolder program;
    const WorkFolder work = MakeWorkFolder(program.Path());
    WriteWorkFiles(work);
    const std::string files[] = {work.szProjectFileName, work.szAIFileName};
    ASSERT_TRUE(SetAside(files));
    for (const std::string& file : files) {
        EXPECT_FALSE(fs::exists(NativePath(file)));
        std::ofstream(NativePath(file)) << "new";
    }
    PutBack(files);
    for (const std::string& file : files)
        EXPECT_EQ(ContentOf(NativePath(file)), "x");
    ASSERT_TRUE(SetAside(files));
    DropAside(files);
    PutBack(files); // nothing to put back, nothing raised
    for (const std::string& file : files)
        EXPECT_FALSE(fs::exists(NativePath(file)));
    RemoveWorkFolder(work);
    EXPECT_THAT(program.Names(), IsEmpty());
}

TEST(WorkFolder, SetsAllFilesAsideOrNone) {
    const TemporaryFolder program;
    const WorkFolder work = MakeWorkFolder(program.Path());
    WriteWorkFiles(work);
    const std::string files[] = {work.szProjectFileName, work.sztmpPath + "\\none", work.szAIFileName};
    EXPECT_FALSE(SetAside(files));
    EXPECT_EQ(ContentOf(NativePath(work.szProjectFileName)), "x");
    EXPECT_EQ(ContentOf(NativePath(work.szAIFileName)), "x");
    RemoveWorkFolder(work);
    EXPECT_THAT(program.Names(), IsEmpty());
}

TEST(WorkFolder, GoesWithFilesThatAreSetAside) {
    const TemporaryFolder program;
    const WorkFolder work = MakeWorkFolder(program.Path());
    WriteWorkFiles(work);
    ASSERT_TRUE(SetAside({&work.szAIFileName, 1}));
    RemoveWorkFolder(work);
    EXPECT_THAT(program.Names(), IsEmpty());
}

TEST(WorkFolder, StaysWithAStrayFile) {
    const TemporaryFolder program;
    const WorkFolder work = MakeWorkFolder(program.Path());
    WriteWorkFiles(work);
    std::ofstream(work.sztmpPath + "/stray") << "x";
    RemoveWorkFolder(work);
    std::vector<std::string> left;
    for (const auto& entry : fs::directory_iterator(work.sztmpPath))
        left.push_back(entry.path().filename().string());
    EXPECT_THAT(left, testing::ElementsAre("stray"));
}

} // namespace
} // namespace tracelet
