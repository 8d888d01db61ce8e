#include "core/files/BinaryFiles.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

void PutText(BinaryFiles& files, int number, std::string_view text) {
    files.PutBytes(number, std::as_bytes(std::span(text)));
}

TEST(BinaryFiles, PutsLittleEndianBytes) {
    const TemporaryFolder folder;
    BinaryFiles files;
    files.Open(5, folder.Path() + "\\Project.tld");
    files.Put(5, std::int16_t{-1});
    files.Put(5, std::int32_t{0x01020304});
    files.Put(5, 1.5F);
    files.Put(5, -2.0);
    PutText(files, 5, "tail");
    const auto expected = "\xFF\xFF\x04\x03\x02\x01\0\0\xC0\x3F\0\0\0\0\0\0\0\xC0tail"s;
    EXPECT_EQ(ContentOf(folder / "Project.tld"), expected) << "seen at once, while the file is open";
    EXPECT_EQ(files.File(5).Position(), static_cast<std::int64_t>(expected.size()));
    EXPECT_EQ(files.Length(5), static_cast<std::int64_t>(expected.size()));
}

TEST(BinaryFiles, OpenKeepsContentAndOpenForOutputCutsIt) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a", "abc");
    BinaryFiles files;
    files.Open(1, path);
    EXPECT_EQ(files.Length(1), 3);
    EXPECT_EQ(files.File(1).Position(), 0);
    files.Close(1);
    files.OpenForOutput(1, path);
    EXPECT_EQ(files.Length(1), 0);
    files.Close(1);
    files.OpenForOutput(1, folder / "new");
    EXPECT_TRUE(fs::exists(folder / "new"));
}

TEST(BinaryFiles, OpenForReadingCreatesNothing) {
    const TemporaryFolder folder;
    BinaryFiles files;
    EXPECT_EQ(FaultOf([&] { files.OpenForReading(4, folder / "none"); }), "File not found");
    EXPECT_FALSE(files.IsOpen(4));
    EXPECT_FALSE(fs::exists(folder / "none"));
    files.OpenForReading(4, folder.Write("a", "x"));
    EXPECT_EQ(files.Length(4), 1);
    EXPECT_EQ(FaultOf([&] { files.Put(4, std::int16_t{1}); }), "Permission denied");
}

TEST(BinaryFiles, NumbersAreOneToFive) {
    const TemporaryFolder folder;
    BinaryFiles files;
    for (const int number : {-1, 0, 6}) {
        EXPECT_EQ(FaultOf([&] { files.Open(number, folder / "a"); }), "Bad file name or number");
        EXPECT_EQ(FaultOf([&] { files.Close(number); }), "Bad file name or number");
    }
    for (int number = 1; number <= 5; ++number) {
        EXPECT_FALSE(files.IsOpen(number));
        EXPECT_EQ(FaultOf([&] { files.Put(number, 1.0); }), "Bad file name or number");
        EXPECT_EQ(FaultOf([&] { files.Seek(number, 0); }), "Bad file name or number");
        EXPECT_EQ(FaultOf([&] { (void)files.Length(number); }), "Bad file name or number");
        EXPECT_EQ(FaultOf([&] { files.Close(number); }), "") << "closing a closed file does nothing";
        files.Open(number, folder / "a");
        EXPECT_TRUE(files.IsOpen(number));
        EXPECT_EQ(FaultOf([&] { files.Open(number, folder / "b"); }), "File already open");
    }
    EXPECT_FALSE(fs::exists(folder / "b"));
    files.CloseAll();
    for (int number = 1; number <= 5; ++number)
        EXPECT_FALSE(files.IsOpen(number));
}

TEST(BinaryFiles, OverwritesInsideAndGrowsAtTheEnd) {
    const TemporaryFolder folder;
    BinaryFiles files;
    files.Open(3, folder.Write("a", "abcdef"));
    files.Seek(3, 1);
    PutText(files, 3, "XY");
    files.Seek(3, files.Length(3));
    PutText(files, 3, "gh");
    EXPECT_EQ(ContentOf(folder / "a"), "aXYdefgh");
}

TEST(BinaryFiles, TellWhenTheFileWasDeletedAndMakeItAnewWhenReopened) {
    const TemporaryFolder folder;
    BinaryFiles files;
    files.Open(1, folder / "a");
    PutText(files, 1, "abc");
    fs::remove(folder / "a");
    EXPECT_EQ(FaultOf([&] { PutText(files, 1, "def"); }), "File not found");
    EXPECT_EQ(files.Length(1), 3);
    EXPECT_EQ(files.File(1).Position(), 3);
    files.Close(1);
    files.Open(1, folder / "a");
    PutText(files, 1, "new");
    EXPECT_EQ(ContentOf(folder / "a"), "new");
}

} // namespace
} // namespace tracelet
