#include "core/files/FileOperations.h"

#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

namespace fs = std::filesystem;

TEST(CopyWholeFile, CreatesAndOverwrites) {
    const TemporaryFolder folder;
    folder.Write("from", "new content");
    folder.Write("old", "something that is much longer than the new content");
    EXPECT_NO_THROW(CopyWholeFile(folder / "from", folder.Path() + "\\to"));
    EXPECT_NO_THROW(CopyWholeFile(folder / "from", folder / "old"));
    EXPECT_EQ(ContentOf(folder / "to"), "new content");
    EXPECT_EQ(ContentOf(folder / "old"), "new content");
    EXPECT_EQ(ContentOf(folder / "from"), "new content");
}

TEST(CopyWholeFile, CopiesEmptyAndLargeFiles) {
    const TemporaryFolder folder;
    std::string large(3 * 1024 * 1024 + 5, '\0');
    for (std::size_t i = 0; i < large.size(); ++i)
        large[i] = static_cast<char>(i % 251);
    EXPECT_NO_THROW(CopyWholeFile(folder.Write("empty"), folder / "emptyCopy"));
    EXPECT_NO_THROW(CopyWholeFile(folder.Write("large", large), folder / "largeCopy"));
    EXPECT_TRUE(fs::exists(folder / "emptyCopy"));
    EXPECT_EQ(ContentOf(folder / "largeCopy"), large);
}

TEST(CopyWholeFile, LeavesNothingBehindWhenItFails) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("file", "abc");
    fs::create_symlink(file, folder / "link");
    fs::create_directory(folder / "sub");
    EXPECT_ANY_THROW(CopyWholeFile(folder / "none", folder / "to"));
    EXPECT_FALSE(fs::exists(folder / "to"));
    EXPECT_ANY_THROW(CopyWholeFile(file, folder / "sub"));
    EXPECT_ANY_THROW(CopyWholeFile(file, folder / "none/to"));
    EXPECT_ANY_THROW(CopyWholeFile(folder / "sub", folder / "to"));
    EXPECT_ANY_THROW(CopyWholeFile(file, "C:\\to"));
    EXPECT_ANY_THROW(CopyWholeFile(file, file));
    EXPECT_ANY_THROW(CopyWholeFile(file, folder / "link"));
    EXPECT_ANY_THROW(CopyWholeFile(file, folder.Path() + "/./file"));
    EXPECT_EQ(ContentOf(file), "abc");
}

TEST(CopyWholeFile, SaysWhyItFailed) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("file", std::string(100, 'x'));
    fs::create_directory(folder / "sub");
    const std::string old = folder.Write("old", "earlier");
    CopyWholeFile(file, folder / "to");
    EXPECT_EQ(ContentOf(folder / "to"), std::string(100, 'x'));
    EXPECT_EQ(FaultOf([&] { CopyWholeFile(folder / "none", old); }), "File not found");
    EXPECT_EQ(ContentOf(old), "earlier");
    EXPECT_EQ(FaultOf([&] { CopyWholeFile(file, folder / "none/to"); }), "Path not found");
    EXPECT_EQ(FaultOf([&] { CopyWholeFile(file, folder / "sub"); }), "Permission denied");
    EXPECT_EQ(FaultOf([&] { CopyWholeFile(file, file); }), "Permission denied");
    {
        const FileSizeLimit full(60);
        EXPECT_EQ(FaultOf([&] { CopyWholeFile(file, old); }), "File too large");
    }
    EXPECT_FALSE(fs::exists(old)); // an incomplete copy is none
    EXPECT_EQ(ContentOf(file).size(), 100U);
}

TEST(RenameFile, ReplacesOrSaysWhyNot) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("file", "new");
    const std::string old = folder.Write("old", "earlier");
    fs::create_directory(folder / "sub");
    EXPECT_EQ(FaultOf([&] { RenameFile(folder / "none", old); }), "File not found");
    EXPECT_EQ(FaultOf([&] { RenameFile(file, folder / "sub"); }), "Permission denied");
    EXPECT_EQ(ContentOf(file), "new");
    EXPECT_EQ(ContentOf(old), "earlier");
    RenameFile(file, folder.Path() + "\\old");
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(ContentOf(old), "new");
}

TEST(Folders, AreMadeOnceAndRemovedEmpty) {
    const TemporaryFolder folder;
    EXPECT_TRUE(CreateFolder(folder.Path() + "\\new"));
    EXPECT_TRUE(fs::is_directory(folder / "new"));
    EXPECT_FALSE(CreateFolder(folder / "new"));
    EXPECT_FALSE(CreateFolder(folder / "a/b")) << "one folder at a time";
    EXPECT_FALSE(CreateFolder(folder.Write("file")));
    folder.Write("new/x");
    EXPECT_FALSE(RemoveFolder(folder / "new"));
    EXPECT_FALSE(DeleteFile(folder / "new"));
    EXPECT_TRUE(DeleteFile(folder.Path() + "\\new\\x"));
    EXPECT_TRUE(RemoveFolder(folder.Path() + "\\new"));
    EXPECT_FALSE(RemoveFolder(folder / "file"));
    EXPECT_FALSE(DeleteFile(folder / "none"));
}

TEST(FileSize, IsThatOfTheFileOrZero) {
    const TemporaryFolder folder;
    folder.Write("file", "12345");
    EXPECT_EQ(FileSize(folder.Path() + "\\file"), 5);
    EXPECT_EQ(FileSize(folder / "missing"), 0);
    EXPECT_EQ(FileSize(""), 0);
}

} // namespace
} // namespace tracelet
