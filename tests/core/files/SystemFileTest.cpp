#include "core/files/SystemFile.h"

#include "tests/support/FileSizeLimit.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tracelet {
namespace {

namespace fs = std::filesystem;

std::span<const std::byte> Bytes(std::string_view text) {
    return std::as_bytes(std::span(text));
}

/// The text from the position on.
std::string ReadText(const SystemFile& file, std::size_t count) {
    std::string text(count, '?');
    text.resize(file.ReadAt(file.Position(), std::as_writable_bytes(std::span(text))));
    return text;
}

TEST(SystemFile, OpenAlwaysKeepsWhatIsThereAndCreatesWhatIsMissing) {
    const TemporaryFolder folder;
    const SystemFile there(folder.Write("there", "abc"), Disposition::OpenAlways);
    const SystemFile missing(folder.Path() + "\\missing", Disposition::OpenAlways);
    EXPECT_EQ(there.Size(), 3);
    EXPECT_EQ(missing.Size(), 0);
    EXPECT_TRUE(fs::is_regular_file(folder / "missing"));
}

TEST(SystemFile, CheckedCloseSaysWhatTheSystemSays) {
    const TemporaryFolder folder;
    SystemFile file(folder.Write("file"), Disposition::OpenAlways);
    file.CloseChecked();
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(FaultOf([&] { file.CloseChecked(); }), "Bad file name or number");
    file = SystemFile(folder / "file", Disposition::OpenAlways);
    close(file.Handle()); // what the close of the object then fails with
    EXPECT_EQ(FaultOf([&] { file.CloseChecked(); }), "Bad file descriptor");
    EXPECT_FALSE(file.IsOpen());
}

TEST(SystemFile, CreateAlwaysCutsToNothing) {
    const TemporaryFolder folder;
    const SystemFile file(folder.Write("there", "abc"), Disposition::CreateAlways);
    EXPECT_EQ(file.Size(), 0);
}

TEST(SystemFile, OpenExistingReadsWhateverTheCaseOfTheName) {
    const TemporaryFolder folder;
    folder.Write("AI.tld", "abc");
    SystemFile file(folder / "ai.TLD", Disposition::OpenExisting);
    EXPECT_EQ(ReadText(file, 10), "abc");
    EXPECT_EQ(FaultOf([&] { file.Write(Bytes("x")); }), "Permission denied");
    EXPECT_EQ(ContentOf(folder / "AI.tld"), "abc");
}

TEST(SystemFile, SaysWhyItDoesNotOpen) {
    const TemporaryFolder folder;
    fs::create_symlink(folder / "loop", folder / "loop");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    folder.Write("file");
    struct {
        std::string path;
        const char* existing;
        const char* always;
    } const cases[] = {
        {folder / "none/x", "File not found", "Path not found"},
        {folder / "file/x", "Path not found", "Path not found"},
        {folder.Path(), "Permission denied", "Permission denied"},
        {folder / "loop", "Path not found", "Path not found"},
        {folder / "pipe", "Permission denied", "Permission denied"},
        {"/dev/zero", "Permission denied", "Permission denied"},
        {"C:\\x", "Path not found", "Path not found"},
        {"\\\\server\\x", "Path not found", "Path not found"},
        {"", "File not found", "Path not found"},
    };
    for (const auto& [path, existing, always] : cases) {
        const auto faultAs = [&path = path](Disposition disposition) {
            return FaultOf([&] { SystemFile(path, disposition); });
        };
        EXPECT_EQ(faultAs(Disposition::OpenExisting), existing) << path;
        EXPECT_EQ(faultAs(Disposition::OpenAlways), always) << path;
        EXPECT_EQ(faultAs(Disposition::CreateAlways), always) << path;
    }
    EXPECT_EQ(FaultOf([&] { SystemFile(folder / "none", Disposition::OpenExisting); }), "File not found");
    EXPECT_FALSE(fs::exists(folder / "none"));
}

TEST(SystemFile, WhatIsNoFileIsNotOpenedAtAll) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink(folder / "pipe", folder / "link");
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(inotify_add_watch(watch, (folder / "pipe").c_str(), IN_OPEN), 0);
    std::array<char, 4096> events{};
    const auto wasOpened = [&] { return read(watch, events.data(), events.size()) > 0; };
    for (const char* name : {"pipe", "link"})
        for (const Disposition disposition :
             {Disposition::OpenExisting, Disposition::OpenAlways, Disposition::CreateAlways}) {
            EXPECT_EQ(FaultOf([&] { SystemFile(folder / name, disposition); }), "Permission denied");
            EXPECT_FALSE(wasOpened()) << name << " " << static_cast<int>(disposition);
        }
    close(open((folder / "pipe").c_str(), O_RDWR | O_CLOEXEC));
    EXPECT_TRUE(wasOpened()) << "the watch works";
    close(watch);
}

TEST(SystemFile, ClosedHasHandleMinusOneAndRefusesWork) {
    SystemFile file;
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(file.Handle(), -1);
    std::byte byte{};
    EXPECT_EQ(FaultOf([&] { (void)file.Size(); }), "Bad file name or number");
    EXPECT_EQ(FaultOf([&] { (void)file.Position(); }), "Bad file name or number");
    EXPECT_EQ(FaultOf([&] { file.Seek(0); }), "Bad file name or number");
    EXPECT_EQ(FaultOf([&] { (void)file.ReadAt(0, {&byte, 1}); }), "Bad file name or number");
    EXPECT_EQ(FaultOf([&] { file.Write({&byte, 1}); }), "Bad file name or number");
    EXPECT_EQ(FaultOf([&] { file.Append({&byte, 1}); }), "Bad file name or number");
    file.Close();
    EXPECT_EQ(file.Handle(), -1);
}

TEST(SystemFile, MovesOwnership) {
    const TemporaryFolder folder;
    SystemFile first(folder / "a", Disposition::OpenAlways);
    const int handle = first.Handle();
    first.Write(Bytes("abc"));
    SystemFile second(std::move(first));
    EXPECT_EQ(second.Handle(), handle);
    EXPECT_EQ(second.Position(), 3);
    second = SystemFile(folder / "b", Disposition::OpenAlways);
    EXPECT_EQ(second.Position(), 0);
    EXPECT_EQ(fcntl(second.Handle(), F_GETFD) == -1, false);
    second.Write(Bytes("de"));
    SystemFile third;
    third = std::move(second);
    EXPECT_EQ(third.Position(), 2);
    third.Close();
    EXPECT_EQ(third.Handle(), -1);
}

TEST(SystemFile, WritesAtItsPosition) {
    const TemporaryFolder folder;
    SystemFile file(folder / "a", Disposition::OpenAlways);
    file.Write(Bytes("abcdef"));
    EXPECT_EQ(ContentOf(folder / "a"), "abcdef") << "other readers see it at once";
    file.Seek(2);
    file.Write(Bytes("XY"));
    EXPECT_EQ(file.Position(), 4);
    EXPECT_EQ(ReadText(file, 10), "ef");
    EXPECT_EQ(file.Position(), 4) << "reading does not move it";
    EXPECT_EQ(ContentOf(folder / "a"), "abXYef");
    EXPECT_EQ(FaultOf([&] { file.Seek(-1); }), "Subscript out of range");
}

TEST(SystemFile, AppendsBehindTheLastByte) {
    const TemporaryFolder folder;
    SystemFile file(folder.Write("a", "abc"), Disposition::OpenAlways);
    file.Append(Bytes("de"));
    file.Seek(0);
    file.Append(Bytes("f"));
    EXPECT_EQ(file.Position(), 6);
    EXPECT_EQ(ContentOf(folder / "a"), "abcdef");
}

TEST(SystemFile, ReachesBeyondTwoGibibytes) {
    const TemporaryFolder folder;
    SystemFile file(folder / "a", Disposition::OpenAlways);
    constexpr std::int64_t Far = 5'000'000'000;
    file.Seek(Far);
    file.Write(Bytes("abc"));
    EXPECT_EQ(file.Size(), Far + 3);
    file.Seek(Far + 1);
    EXPECT_EQ(ReadText(file, 10), "bc");
}

TEST(SystemFile, FailedWriteLeavesWhatWasWrittenWhole) {
    const TemporaryFolder folder;
    SystemFile file(folder / "a", Disposition::OpenAlways);
    file.Append(Bytes("12345678"));
    const FileSizeLimit limit(10); // room for two more bytes only
    EXPECT_EQ(FaultOf([&] { file.Append(Bytes("abcd")); }), "File too large");
    EXPECT_EQ(file.Position(), 8);
    EXPECT_EQ(ContentOf(folder / "a"), "12345678");
    file.Append(Bytes("ab"));
    EXPECT_EQ(ContentOf(folder / "a"), "12345678ab");
}

TEST(SystemFile, OpenAlwaysReadsWhatMayOnlyBeRead) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a", "abc");
    fs::permissions(path, fs::perms{0444});
    fs::permissions(folder.Path(), fs::perms{0555});
    {
        const OrdinaryUser user;
        if (!user.Reaches(folder.Path()))
            GTEST_SKIP() << "no other user gets in here";
        SystemFile file(path, Disposition::OpenAlways);
        EXPECT_EQ(ReadText(file, 10), "abc");
        EXPECT_EQ(FaultOf([&] { file.Write(Bytes("x")); }), "Permission denied");
        EXPECT_EQ(FaultOf([&] { SystemFile(path, Disposition::CreateAlways); }), "Permission denied");
        EXPECT_EQ(FaultOf([&] { SystemFile(folder / "new", Disposition::OpenAlways); }), "Permission denied");
    }
    EXPECT_EQ(ContentOf(path), "abc");
    fs::permissions(folder.Path(), fs::perms::owner_all);
}

} // namespace
} // namespace tracelet
