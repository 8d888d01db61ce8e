#include "core/disk/StagedFile.h"

#include "tests/support/FileSizeLimit.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

std::span<const std::byte> Bytes(std::string_view text) {
    return std::as_bytes(std::span(text));
}

class StagedFileTest : public testing::Test {
protected:
    const TemporaryFolder folder;
    const TemporaryFolder target;
    const std::string source = folder.Write("source", std::string(100, 'x'));
};

TEST_F(StagedFileTest, TakesItsPlaceWhenItIsWhole) {
    const std::string old = target.Write("file", "earlier and much longer than what takes its place");
    StagedFile file(target.Path() + "\\file");
    file.CopyFrom(source, 5);
    file.Sync();
    EXPECT_EQ(ContentOf(old), "earlier and much longer than what takes its place");
    file.Place();
    EXPECT_EQ(ContentOf(old), "xxxxx");
    file.Place(); // nothing more to place
    EXPECT_THAT(target.Names(), ElementsAre("file"));
    EXPECT_EQ(ContentOf(source), std::string(100, 'x'));
}

TEST_F(StagedFileTest, HoldsBytes) {
    StagedFile file(target.Path() + "\\file");
    file.Write(Bytes("much longer than the next"));
    file.Write(Bytes("short"));
    file.Sync();
    file.Place();
    EXPECT_EQ(ContentOf(target / "file"), "short");
    EXPECT_THAT(target.Names(), ElementsAre("file"));
}

TEST_F(StagedFileTest, LeavesNothingWithoutPlace) {
    {
        StagedFile file(target / "file");
        file.CopyFrom(source);
        EXPECT_THAT(target.Names(), testing::SizeIs(1));
    }
    EXPECT_THAT(target.Names(), IsEmpty());
}

TEST_F(StagedFileTest, KeepsWhatStandsThereWhenItFails) {
    const std::string old = target.Write("file", "earlier");
    const struct {
        std::string from;
        rlim_t room;
        const char* fault;
    } cases[] = {{folder / "none", 1000, "File not found"},
                 {folder.Path(), 1000, "Permission denied"},
                 {source, 99, "File too large"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.from);
        {
            StagedFile file(old);
            const FileSizeLimit full(c.room);
            EXPECT_EQ(FaultOf([&] { file.CopyFrom(c.from); }), c.fault);
        }
        EXPECT_THAT(target.Names(), ElementsAre("file"));
        EXPECT_EQ(ContentOf(old), "earlier");
    }
}

TEST_F(StagedFileTest, TakesNoPlaceThatIsNoFile) {
    fs::create_directory(target / "sub");
    StagedFile file(target / "sub");
    EXPECT_EQ(FaultOf([&] { file.CopyFrom(source); }), "Permission denied");
    EXPECT_THAT(target.Names(), ElementsAre("sub"));
}

TEST_F(StagedFileTest, LeavesAWriteProtectedFileInPlace) {
    const std::string old = target.Write("file", "earlier");
    fs::permissions(old, fs::perms{0444});
    fs::permissions(target.Path(), fs::perms::all);
    fs::permissions(folder.Path(), fs::perms::all);
    const OrdinaryUser user;
    if (!user.Reaches(target.Path()))
        GTEST_SKIP() << "root alone may write here";
    StagedFile file(old);
    EXPECT_EQ(FaultOf([&] { file.CopyFrom(source); }), "Permission denied");
    EXPECT_EQ(ContentOf(old), "earlier");
}

} // namespace
} // namespace tracelet
