#include "tests/support/OrdinaryUser.h"
#include "tests/window/history/HistoryWindowTest.h"

#include "window/export/ConvertFileDialog.h"
#include "window/files/Dialog.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Box = MessageBoxes::Box;

/// Files and folders that their owner keeps from the user of the window.
class RefusedFilesTest : public HistoryWindowTest {
protected:
    RefusedFilesTest() {
        for (const fs::path& path : {fs::path(saved.Path()), fs::path(window->szProgramPath)})
            fs::permissions(path, fs::perms{0755});
        fs::current_path(saved.Path()); // where the tests were built may be closed to the user
    }
    ~RefusedFilesTest() override {
        fs::current_path("/");
        if (fs::exists(saved / "Saved"))
            Permit("Saved", 0755); // or nothing in it can be removed
    }

    [[nodiscard]] bool IsOrdinary(const OrdinaryUser& user) const {
        return user.Reaches(saved.Path()) && user.Reaches(window->szProgramPath);
    }

    [[nodiscard]] std::string SaveBoth() {
        SavedRecording recording = Polled(3);
        AddDigital(recording, 3);
        return Save(recording);
    }

    void Permit(const char* name, unsigned mode) const { fs::permissions(saved / name, fs::perms{mode}); }
};

TEST_F(RefusedFilesTest, ProjectIsToldByTheCommandAfterTheModeHasChanged) {
    const std::string project = SaveBoth();
    Permit("Saved/Project.tlp", 0);
    const OrdinaryUser user;
    if (!IsOrdinary(user))
        GTEST_SKIP() << "no other user gets in here";
    OpenProject(project);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Permission denied", "BtnHistory"}));
    EXPECT_TRUE(window->bHistoryMode);
    EXPECT_FALSE(window->BtnStart->isEnabled());
}

TEST_F(RefusedFilesTest, DataAreToldByTheirReaderAndLoadingGoesOn) {
    const std::string project = SaveBoth();
    Permit("Saved/AI.tld", 0);
    Permit("Saved/DI.tld", 0);
    const OrdinaryUser user;
    if (!IsOrdinary(user))
        GTEST_SKIP() << "no other user gets in here";
    OpenProject(project);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"CreateFile Fails ", "ReadHisAIFile"},
                                          Box{"Permission denied", "ReadHisAIFile"}));
    EXPECT_TRUE(window->ZelHiResTimerCtl1->TimerExists(frmMain::PlayTimer));
}

TEST_F(RefusedFilesTest, RecordingThatMayOnlyBeReadPlays) {
    const std::string project = SaveBoth();
    for (const char* name : {"Saved/AI.tld", "Saved/DI.tld", "Saved/Project.tlp"})
        Permit(name, 0444);
    Permit("Saved", 0555);
    const OrdinaryUser user;
    if (!IsOrdinary(user))
        GTEST_SKIP() << "no other user gets in here";
    OpenProject(project);
    Click(window->ChkPlay);
    PlayTicks(3);
    EXPECT_THAT(PointsOf(0), SizeIs(3));
    EXPECT_THAT(PointsOf(4), SizeIs(3));
}

TEST_F(RefusedFilesTest, MissingDataAreNotCreatedWhereNothingMayBe) {
    const std::string project = Save(Polled(3));
    fs::remove(saved / "Saved/AI.tld");
    Permit("Saved", 0555);
    const OrdinaryUser user;
    if (!IsOrdinary(user))
        GTEST_SKIP() << "no other user gets in here";
    OpenProject(project);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"CreateFile Fails ", "ReadHisAIFile"}));
}

TEST_F(RefusedFilesTest, ConversionMakesNoFolder) {
    OpenProject(SaveBoth());
    const OrdinaryUser user;
    if (!IsOrdinary(user))
        GTEST_SKIP() << "no other user gets in here";
    OnModalDialog<ConvertFileDialog>([](ConvertFileDialog& dialog) {
        dialog.findChild<QLineEdit*>(u"txtFolderName"_s)->setText(u"texts"_s);
        Click(dialog.findChild<QPushButton*>(u"OKButton"_s));
    });
    Click(window->BtnHisConvert);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Create Directory Fail", "Tracelet"}));
}

TEST_F(RefusedFilesTest, SaveAsIsToldAndTheEarlierRecordingStays) {
    TurnOnAI();
    Click(window->CkAISave2Disk);
    StartPolling();
    Tick(2);
    Click(window->BtnStart);
    window->szDrive = "/";
    window->szDir = saved.Path();
    const auto saveAs = [this](const QString& name) {
        OnModalDialog<Dialog>([&](Dialog& dialog) {
            dialog.findChild<QLineEdit*>(u"txtFolderName"_s)->setText(name);
            Click(dialog.findChild<QPushButton*>(u"OKButton"_s));
        });
        Click(window->BtnSaveAs);
    };
    saveAs(u"run"_s);
    const std::string earlier = ContentOf(saved / "run/Project.tlp");
    Permit("run/Project.tlp", 0444);
    const OrdinaryUser user;
    if (!IsOrdinary(user))
        GTEST_SKIP() << "no other user gets in here";
    saveAs(u"run"_s);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Permission denied", "BtnSaveAs"}));
    EXPECT_EQ(ContentOf(saved / "run/Project.tlp"), earlier);
    saveAs(u"other"_s); // its folder cannot be made
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Path not found", "BtnSaveAs"}));
}

} // namespace
} // namespace tracelet
