#include "core/recordings/SaveRecording.h"

#include "core/base/RunTimeError.h"
#include "core/recordings/ProjectInfo.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::ElementsAre;
namespace fs = std::filesystem;

class SaveRecordingTest : public testing::Test {
protected:
    SaveRecordingTest() {
        parts.project = {std::byte{1}, std::byte{2}};
        parts.analog = source.Write("AI", "analog data");
        parts.digital = source.Write("DI", "digital");
        parts.session = "{}";
    }

    [[nodiscard]] std::string Project() const {
        return "\1\2" + home + "\\AI.tld" + '\0' + home + "\\DI.tld";
    }
    void ExpectSaved() const {
        EXPECT_EQ(ContentOf(place + "/Project.tlp"), Project());
        EXPECT_EQ(ContentOf(place + "/AI.tld"), "analog data");
        EXPECT_EQ(ContentOf(place + "/DI.tld"), "digital");
        EXPECT_EQ(ContentOf(place + "/Session.json"), "{}");
        EXPECT_THAT(target.Names(), ElementsAre("run")) << "no litter";
    }
    void WriteOld() const {
        fs::create_directory(place);
        for (const char* name : {"/Project.tlp", "/AI.tld", "/DI.tld"})
            std::ofstream(place + name) << "old";
    }
    void ExpectOld() const {
        for (const char* name : {"/Project.tlp", "/AI.tld", "/DI.tld"})
            EXPECT_EQ(ContentOf(place + name), "old");
        EXPECT_THAT(target.Names(), ElementsAre("run")) << "no litter";
    }

    const TemporaryFolder source;
    const TemporaryFolder target;
    const std::string home = target.Path() + "\\run";
    const std::string place = target / "run";
    RecordingParts parts;
};

TEST_F(SaveRecordingTest, MakesTheFolder) {
    EXPECT_EQ(SaveRecording(parts, home), "");
    ExpectSaved();
}

TEST_F(SaveRecordingTest, TakesOnlyWhatBelongsToTheRecording) {
    parts.analogBytes = 6;
    parts.digitalBytes = 1;
    EXPECT_EQ(SaveRecording(parts, home), "");
    EXPECT_EQ(ContentOf(place + "/AI.tld"), "analog");
    EXPECT_EQ(ContentOf(place + "/DI.tld"), "d");
}

TEST_F(SaveRecordingTest, TakesTheOldOnesPlaceAndLeavesWhatElseStandsThere) {
    WriteOld();
    std::ofstream(place + "/notes.txt") << "mine";
    fs::permissions(place, fs::perms::owner_all);
    EXPECT_EQ(SaveRecording(parts, home), "");
    ExpectSaved();
    EXPECT_EQ(ContentOf(place + "/notes.txt"), "mine");
    EXPECT_EQ(fs::status(place).permissions(), fs::perms::owner_all);
}

TEST_F(SaveRecordingTest, GoesFileByFileWhereTheFolderHoldsFolders) {
    WriteOld();
    fs::create_directory(place + "/sub");
    EXPECT_EQ(SaveRecording(parts, home), "");
    ExpectSaved();
    EXPECT_TRUE(fs::exists(place + "/sub"));
}

TEST_F(SaveRecordingTest, KeepsTheOldOneWhenItFails) {
    WriteOld();
    parts.analog = source.Write("AI", std::string(Project().size() + 1, 'x'));
    {
        const FileSizeLimit full(static_cast<rlim_t>(Project().size()));
        EXPECT_EQ(SaveRecording(parts, home), "File too large");
    }
    ExpectOld();
    parts.analog = source / "none";
    EXPECT_EQ(SaveRecording(parts, home), "File not found");
    ExpectOld();
    const FileSizeLimit full(1);
    EXPECT_THROW((void)SaveRecording(parts, home), RunTimeError);
    ExpectOld();
}

TEST_F(SaveRecordingTest, KeepsTheOldOneWhenItIsCancelled) {
    WriteOld();
    std::int64_t told = 0;
    EXPECT_EQ(SaveRecording(parts, home,
                            [&](std::int64_t bytes) {
                                told += bytes;
                                throw RunTimeError("Cancelled");
                            }),
              "Cancelled");
    EXPECT_EQ(told, 11);
    ExpectOld();
    EXPECT_EQ(SaveRecording(parts, home, [&](std::int64_t bytes) { told += bytes; }), "");
    EXPECT_EQ(told, 11 + 11 + 7);
    ExpectSaved();
}

TEST_F(SaveRecordingTest, LeavesNoFolderThatItMadeForNothing) {
    const auto cancel = [](std::int64_t) { throw RunTimeError("enough"); };
    EXPECT_EQ(SaveRecording(parts, home, cancel), "enough");
    EXPECT_THAT(target.Names(), testing::IsEmpty());
    {
        const FileSizeLimit full(1);
        EXPECT_THROW((void)SaveRecording(parts, home), RunTimeError);
    }
    EXPECT_THAT(target.Names(), testing::IsEmpty());
    fs::create_directory(place);
    EXPECT_EQ(SaveRecording(parts, home, cancel), "enough");
    EXPECT_THAT(target.Names(), ElementsAre("run")) << "it was there before";
}

} // namespace
} // namespace tracelet
