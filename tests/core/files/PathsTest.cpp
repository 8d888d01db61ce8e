#include "core/files/Paths.h"

#include "core/files/FileOperations.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace tracelet {
namespace {

using testing::IsEmpty;
namespace fs = std::filesystem;

TEST(NativePath, TurnsBackslashesIntoSeparators) {
    EXPECT_EQ(NativePath("/data\\AI.tld"), "/data/AI.tld");
    EXPECT_EQ(NativePath("/\\name"), "//name");
    EXPECT_EQ(NativePath("\\a\\b"), "/a/b");
    EXPECT_EQ(NativePath("/home/me/Ä.tlp"), "/home/me/Ä.tlp");
    EXPECT_EQ(NativePath("name"), "name");
    EXPECT_EQ(NativePath(""), "");
    EXPECT_EQ(NativePath("1:x"), "1:x") << "no drive letter";
}

TEST(NativePath, RefusesTextOfAnotherSystem) {
    for (const std::string text : {"C:\\x", "c:x", "z:", "D:/x", "\\\\server\\share\\x"})
        EXPECT_EQ(FaultOf([&] { (void)NativePath(text); }), "Path not found") << text;
    EXPECT_EQ(FaultOf([] { (void)NativePath(std::string_view("/tmp\0x", 6)); }), "Path not found");
}

TEST(FileNameFromPath, IsWhatStandsBehindTheLastSeparator) {
    EXPECT_EQ(FileNameFromPath(""), "");
    EXPECT_EQ(FileNameFromPath("a"), "a");
    EXPECT_EQ(FileNameFromPath("C:\\data\\Project.tlp"), "Project.tlp");
    EXPECT_EQ(FileNameFromPath("C:\\data\\"), "");
    EXPECT_EQ(FileNameFromPath("/home/me/run 1\\AI.tld"), "AI.tld");
    EXPECT_EQ(FileNameFromPath("/home/me/AI.tld"), "AI.tld");
    EXPECT_EQ(FileNameFromPath("/home/me/"), "");
    EXPECT_EQ(FileNameFromPath("\\\\a\\\\b"), "b");
}

TEST(SiblingPath, LiesInTheSameFolder) {
    EXPECT_EQ(SiblingPath("/a/b/Project.tlp", "AI.tld"), "/a/b/AI.tld");
    EXPECT_EQ(SiblingPath("/a\\b\\Project.tlp", "AI.tld"), "/a\\b\\AI.tld");
    EXPECT_EQ(SiblingPath("Project.tlp", "AI.tld"), "AI.tld");
    EXPECT_EQ(SiblingPath("/Project.tlp", ""), "/");
}

TEST(FileExists, FindsRegularFilesWithoutCase) {
    const TemporaryFolder folder;
    folder.Write("Project.tlp");
    folder.Write("Größe.TLP");
    fs::create_directory(folder / "Sub");
    EXPECT_TRUE(FileExists(folder / "Project.tlp"));
    EXPECT_TRUE(FileExists(folder.Path() + "\\Project.tlp"));
    EXPECT_TRUE(FileExists(folder / "PROJECT.TLP"));
    EXPECT_TRUE(FileExists(folder / "gRÖßE.tlp"));
    EXPECT_FALSE(FileExists(folder / "Project.tl"));
    EXPECT_FALSE(FileExists(folder / "*.tlp"));
    EXPECT_FALSE(FileExists(folder / "Sub"));
    EXPECT_FALSE(FileExists(folder / "Sub/"));
    EXPECT_FALSE(FileExists(folder / "Project.tlp/"));
    EXPECT_FALSE(FileExists(folder / "none/Project.tlp"));
    EXPECT_FALSE(FileExists(""));
    EXPECT_EQ(ExistingFile(folder / "PROJECT.TLP"), folder / "Project.tlp");
}

TEST(FileExists, ComparesBytesThatAreNoUtf8AsTheyAre) {
    const TemporaryFolder folder;
    folder.Write("a\xE4.tld");
    EXPECT_TRUE(FileExists(folder / "A\xE4.TLD"));
    EXPECT_FALSE(FileExists(folder / "a\xC4.tld"));
    EXPECT_FALSE(FileExists(folder / "aä.tld"));
    EXPECT_FALSE(FileExists(folder / "a\xE4"));
}

TEST(FileExists, KnowsNoHiddenFilesAndNoDevices) {
    const TemporaryFolder folder;
    folder.Write(".hidden");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(FileExists(folder / ".hidden"));
    EXPECT_FALSE(FileExists(folder / "pipe"));
    EXPECT_FALSE(FileExists("/dev/null"));
}

TEST(FileExists, FollowsLinks) {
    const TemporaryFolder folder;
    fs::create_symlink(folder.Write("file"), folder / "link");
    fs::create_symlink(folder / "loop2", folder / "loop1");
    fs::create_symlink(folder / "loop1", folder / "loop2");
    fs::create_symlink(folder / "nothing", folder / "dangling");
    fs::create_symlink(folder.Path(), folder / "toFolder");
    EXPECT_TRUE(FileExists(folder / "link"));
    EXPECT_TRUE(FileExists(folder / "LINK"));
    EXPECT_FALSE(FileExists(folder / "loop1"));
    EXPECT_FALSE(FileExists(folder / "dangling"));
    EXPECT_FALSE(FileExists(folder / "toFolder"));
    EXPECT_FALSE(FileExists(folder / "loop1/file"));
}

// Runs in a folder of its own, so that a path taken as a name of this folder would show.
class InCurrentFolder : public testing::Test {
protected:
    InCurrentFolder() { fs::current_path(folder.Path()); }
    ~InCurrentFolder() override { fs::current_path(before); }

    const fs::path before = fs::current_path();
    const TemporaryFolder folder;
};

TEST_F(InCurrentFolder, TextOfAnotherSystemTouchesNothing) {
    folder.Write("C:\\x");
    folder.Write("C:x");
    EXPECT_FALSE(FileExists("C:\\x"));
    EXPECT_FALSE(FileExists("C:x"));
    EXPECT_FALSE(FileExists("\\\\server\\x"));
    EXPECT_FALSE(CreateFolder("C:\\new"));
    EXPECT_FALSE(CreateFolder("C:new"));
    EXPECT_FALSE(DeleteFile("C:x"));
    EXPECT_EQ(GetTempFile(true, "tl", "C:\\Temp"), "");
    EXPECT_EQ(folder.Names().size(), 2U);
}

TEST_F(InCurrentFolder, NamesAloneLieThere) {
    folder.Write("here.tlp");
    EXPECT_TRUE(FileExists("here.tlp"));
    EXPECT_TRUE(FileExists("HERE.tlp"));
    EXPECT_FALSE(FileExists("there.tlp"));
}

TEST(GetTempDir, IsAFolderWithASeparatorAtItsEnd) {
    const std::string folder = GetTempDir();
    EXPECT_TRUE(fs::is_directory(folder));
    EXPECT_EQ(folder.back(), '/');
    EXPECT_NE(folder.substr(folder.size() - 2), "//");
}

TEST(GetTempFile, MakesAnEmptyFileOfANewName) {
    const TemporaryFolder folder;
    const std::string path = GetTempFile(true, "tl", folder.Path());
    EXPECT_THAT(path.substr(folder.Path().size()), testing::MatchesRegex("/tl[0-9A-F]{4}\\.tmp"));
    EXPECT_TRUE(fs::is_regular_file(path));
    EXPECT_EQ(fs::file_size(path), 0U);
    const std::string second = GetTempFile(true, "tl", folder.Path() + "\\");
    EXPECT_NE(second, path);
    EXPECT_EQ(fs::path(second).parent_path(), folder.Path());
}

TEST(GetTempFile, LeavesNothingWhenNotKept) {
    const TemporaryFolder folder;
    const std::string path = GetTempFile(false, "tl", folder.Path());
    EXPECT_FALSE(path.empty());
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(GetTempFile, HasDefaults) {
    const std::string path = GetTempFile(false);
    EXPECT_EQ(path.find(GetTempDir() + "tmp"), 0U) << path;
    EXPECT_FALSE(fs::exists(path));
}

TEST(GetTempFile, IsEmptyWhereNothingCanBeMade) {
    const TemporaryFolder folder;
    EXPECT_EQ(GetTempFile(true, "tl", folder / "none"), "");
    EXPECT_EQ(GetTempFile(true, "tl", folder.Write("file")), "");
    EXPECT_EQ(GetTempFile(true, "tl", ""), "");
}

} // namespace
} // namespace tracelet
