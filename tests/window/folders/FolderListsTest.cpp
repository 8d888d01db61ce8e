#include "window/folders/FolderLists.h"

#include "tests/support/MessageBoxes.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QToolButton>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

// A folder with sub-folders "Alpha" (with "Inner") and "beta", and the program in "Alpha".
class FolderListsTest : public testing::Test {
protected:
    FolderListsTest() {
        fs::create_directories(folder / "Alpha/Inner");
        fs::create_directory(folder / "beta");
        fs::create_directory(folder / ".hidden");
        fs::create_directory(folder / "other\\system");
        folder.Write("file");
        program = folder / "Alpha";
    }
    ~FolderListsTest() override {
        if (fs::exists(folder / "beta"))
            fs::permissions(folder / "beta", fs::perms::owner_all); // or it cannot be removed
        fs::current_path(before);
    }

    [[nodiscard]] std::vector<std::string> Listed() const {
        std::vector<std::string> names;
        for (int row = 0; row < lists.Dir1->count(); ++row)
            names.push_back(lists.Dir1->item(row)->text().toStdString());
        return names;
    }

    void DoubleClick(const char* name) {
        lists.show();
        QListWidgetItem* item = lists.Dir1->findItems(QString::fromUtf8(name), Qt::MatchExactly).value(0);
        ASSERT_NE(item, nullptr) << name;
        lists.Dir1->scrollToItem(item);
        const QPoint at = lists.Dir1->visualItemRect(item).center();
        QTest::mouseClick(lists.Dir1->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(lists.Dir1->viewport(), Qt::LeftButton, {}, at);
    }

    // Picks a drive that was mounted on `mount`.
    void PickDrive(const std::string& mount) {
        lists.Drive1->addItem(QString::fromStdString(mount), QString::fromStdString(mount));
        lists.Drive1->setCurrentIndex(lists.Drive1->count() - 1);
    }

    const fs::path before = fs::current_path();
    const TemporaryFolder folder;
    std::string program;
    std::string drive;
    std::string path;
    FolderLists lists;
};

TEST_F(FolderListsTest, FirstLoadStartsInTheProgramsFolder) {
    lists.Load(program, drive, path);
    EXPECT_EQ(path, program);
    EXPECT_EQ(lists.Path(), program);
    EXPECT_EQ(lists.Drive(), drive);
    EXPECT_GE(lists.Drive1->findData(QString::fromStdString(drive)), 0);
    EXPECT_EQ(program.find(drive), 0U) << "the drive holds the folder";
    EXPECT_EQ(lists.Drive1->currentData().toString().toStdString(), drive);
    EXPECT_EQ(fs::current_path(), program);
    EXPECT_THAT(Listed(), ElementsAre("..", "Inner"));
}

TEST_F(FolderListsTest, LaterLoadsStartWhereTheUserWas) {
    drive = "/";
    path = folder.Path();
    lists.Load(program, drive, path);
    EXPECT_EQ(lists.Path(), folder.Path());
    EXPECT_EQ(lists.Drive(), "/");
    EXPECT_EQ(fs::current_path(), folder.Path());
}

TEST_F(FolderListsTest, AFolderThatIsGoneGivesWayToTheNearestAbove) {
    drive = "/gone";
    path = folder / "Alpha/none/deeper";
    lists.Load(program, drive, path);
    EXPECT_EQ(lists.Path(), program);
    EXPECT_GE(lists.Drive1->currentIndex(), 0);
}

TEST_F(FolderListsTest, ListsVisibleFoldersByName) {
    drive = "/";
    path = folder.Path();
    lists.Load(program, drive, path);
    EXPECT_THAT(Listed(), ElementsAre("..", "Alpha", "beta"));
}

TEST_F(FolderListsTest, DoubleClickGoesIn) {
    lists.Load(program, drive, path);
    DoubleClick("Inner");
    EXPECT_EQ(lists.Path(), program + "/Inner");
    EXPECT_EQ(fs::current_path(), program + "/Inner");
    EXPECT_THAT(Listed(), ElementsAre(".."));
    DoubleClick("..");
    DoubleClick("..");
    EXPECT_EQ(lists.Path(), folder.Path());
    EXPECT_EQ(fs::current_path(), folder.Path());
    EXPECT_EQ(path, program) << "the caller's text changes on OK only";
}

TEST_F(FolderListsTest, EnterGoesIn) {
    lists.Load(program, drive, path);
    lists.Dir1->setCurrentRow(1);
    QTest::keyClick(lists.Dir1, Qt::Key_Return);
    EXPECT_EQ(lists.Path(), program + "/Inner");
    QTest::keyClick(lists.Dir1, Qt::Key_Enter); // ".." is the current entry now
    EXPECT_EQ(lists.Path(), program);
}

TEST_F(FolderListsTest, ATypedPathIsEnteredByEnterAndByLeavingIt) {
    lists.Load(program, drive, path);
    lists.show();
    lists.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&lists));
    const auto type = [this](const std::string& text) {
        lists.txtPath->setFocus();
        lists.txtPath->selectAll();
        QTest::keyClicks(lists.txtPath, QString::fromStdString(text));
    };
    type(folder / "beta");
    QTest::keyClick(lists.txtPath, Qt::Key_Return);
    EXPECT_EQ(lists.Path(), folder / "beta");
    EXPECT_EQ(fs::current_path(), folder / "beta");
    EXPECT_THAT(Listed(), ElementsAre(".."));
    type("../Alpha");
    lists.Dir1->setFocus();
    EXPECT_EQ(lists.Path(), program);
    EXPECT_EQ(lists.txtPath->text().toStdString(), program);
}

TEST_F(FolderListsTest, ATypedPathThatCannotBeEnteredIsTold) {
    MessageBoxes boxes;
    lists.Load(program, drive, path);
    lists.show();
    const auto activate = [this] {
        lists.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&lists));
    };
    activate();
    for (const std::string& typed : {folder / "none", folder / "file", folder / "other\\system"}) {
        lists.txtPath->setFocus();
        lists.txtPath->setText(QString::fromStdString(typed));
        QTest::keyClick(lists.txtPath, Qt::Key_Return);
        EXPECT_THAT(boxes.Take(), ElementsAre(MessageBoxes::Box{"Path not found", "Tracelet"}));
        EXPECT_EQ(lists.txtPath->text().toStdString(), typed) << "to be put right";
        activate();
        lists.txtPath->setFocus();
        lists.Dir1->setFocus();
        EXPECT_THAT(boxes.Take(), ElementsAre(MessageBoxes::Box{"Path not found", "Tracelet"}));
        EXPECT_EQ(lists.txtPath->text().toStdString(), program) << "left as it is, it means nothing";
    }
    EXPECT_EQ(lists.Path(), program);
}

TEST_F(FolderListsTest, HomeAndDocumentsAreAClickAway) {
    const QByteArray homeBefore = qgetenv("HOME");
    qputenv("HOME", folder.Path().c_str());
    fs::create_directory(folder / "Documents");
    FolderLists places;
    places.Load(program, drive, path);
    for (const auto& [button, name] : {std::pair("BtnDocuments", "/Documents"), {"BtnHome", ""}}) {
        QTest::mouseClick(places.findChild<QToolButton*>(QLatin1String(button)), Qt::LeftButton);
        EXPECT_EQ(places.Path(), folder.Path() + name);
    }
    fs::remove(folder / "Documents");
    EXPECT_TRUE(FolderLists().findChild<QToolButton*>(u"BtnDocuments"_s)->isHidden());
    qputenv("HOME", homeBefore);
}

TEST_F(FolderListsTest, WorkFoldersAreNotListed) {
    for (const char* name : {"tl0A1f.tmp", "tl0A1g.tmp", "tl.tmp"})
        fs::create_directory(fs::path(program) / name);
    lists.Load(program, drive, path);
    EXPECT_THAT(Listed(), ElementsAre("..", "Inner", "tl.tmp", "tl0A1g.tmp"));
}

TEST_F(FolderListsTest, TheRootHasNothingAbove) {
    drive = path = "/";
    lists.Load(program, drive, path);
    EXPECT_EQ(lists.Path(), "/");
    EXPECT_THAT(Listed(), testing::Not(testing::Contains("..")));
    DoubleClick("tmp");
    EXPECT_EQ(lists.Path(), "/tmp");
}

TEST_F(FolderListsTest, AFolderThatCannotBeEnteredChangesNothing) {
    drive = "/";
    path = folder.Path();
    lists.Load(program, drive, path);
    fs::remove(folder / "beta");
    DoubleClick("beta");
    EXPECT_EQ(lists.Path(), folder.Path());
    EXPECT_THAT(Listed(), ElementsAre("..", "Alpha", "beta"));
}

TEST_F(FolderListsTest, ADriveIsEnteredWhereItWasLeft) {
    lists.Load(program, drive, path);
    PickDrive(folder / "beta");
    EXPECT_EQ(lists.Path(), folder / "beta");
    EXPECT_EQ(lists.Drive(), folder / "beta");
    EXPECT_EQ(fs::current_path(), folder / "beta");
    EXPECT_THAT(Listed(), ElementsAre(".."));
    lists.Drive1->setCurrentIndex(lists.Drive1->findData(QString::fromStdString(drive)));
    EXPECT_EQ(lists.Path(), program);
    EXPECT_EQ(lists.Drive(), drive);
}

TEST_F(FolderListsTest, ADriveWithoutMediumIsToldAndLeavesTheLists) {
    MessageBoxes boxes;
    lists.Load(program, drive, path);
    PickDrive(folder / "none");
    EXPECT_THAT(boxes.Take(), ElementsAre(MessageBoxes::Box{"Invalid Drive !", "Tracelet"}));
    EXPECT_EQ(lists.Path(), program);
    EXPECT_EQ(lists.Drive(), drive);
    EXPECT_EQ(lists.Drive1->currentData().toString().toStdString(), drive);
    EXPECT_EQ(fs::current_path(), program);
    EXPECT_THAT(Listed(), ElementsAre("..", "Inner"));
}

TEST_F(FolderListsTest, TheDriveFollowsTheFolder) {
    lists.Load(program, drive, path);
    PickDrive(folder / "beta");
    DoubleClick("..");
    EXPECT_EQ(lists.Path(), folder.Path());
    EXPECT_EQ(lists.Drive(), drive);
    DoubleClick("beta");
    EXPECT_EQ(lists.Drive(), folder / "beta");
}

TEST_F(FolderListsTest, ADriveWhoseLastFolderIsGoneIsEnteredAtItsTop) {
    fs::create_directory(folder / "beta/gone");
    lists.Load(program, drive, path);
    PickDrive(folder / "beta");
    DoubleClick("gone");
    lists.Drive1->setCurrentIndex(lists.Drive1->findData(QString::fromStdString(drive)));
    fs::remove(folder / "beta/gone");
    lists.Drive1->setCurrentIndex(lists.Drive1->count() - 1);
    EXPECT_EQ(lists.Path(), folder / "beta");
    EXPECT_EQ(lists.Drive(), folder / "beta");
}

TEST_F(FolderListsTest, AFolderWhoseNameGoesOnFromADrivesIsNotOnIt) {
    fs::create_directory(folder / "beta2");
    lists.Load(program, drive, path);
    PickDrive(folder / "beta");
    DoubleClick("..");
    DoubleClick("beta2");
    EXPECT_EQ(lists.Path(), folder / "beta2");
    EXPECT_EQ(lists.Drive(), drive);
}

TEST_F(FolderListsTest, ARememberedDriveThatIsNotMountedGivesWay) {
    drive = folder.Path();
    path = program;
    lists.Load(program, drive, path);
    EXPECT_EQ(lists.Path(), program);
    EXPECT_NE(lists.Drive(), folder.Path());
    EXPECT_GE(lists.Drive1->currentIndex(), 0);
}

TEST_F(FolderListsTest, OnlyAnEmptyDriveStartsInTheProgramsFolder) {
    drive = "/";
    lists.Load(program, drive, path);
    EXPECT_EQ(lists.Path(), "/");
}

TEST_F(FolderListsTest, AFolderThatMayNotBeEnteredGivesWayToTheRoot) {
    fs::permissions(folder.Path(), fs::perms{0755});
    fs::permissions(folder / "beta", fs::perms::none);
    drive = "/";
    path = folder / "beta";
    const OrdinaryUser user;
    if (!user.Reaches(folder.Path()))
        GTEST_SKIP() << "no other user gets in here";
    lists.Load(program, drive, path);
    EXPECT_EQ(lists.Path(), "/");
    EXPECT_EQ(fs::current_path(), "/");
}

TEST(MountedVolumes, AreFoldersWithTheRootFirst) {
    const QStringList volumes = MountedVolumes();
    ASSERT_FALSE(volumes.isEmpty());
    EXPECT_EQ(volumes.first(), u"/"_s);
    for (const QString& volume : volumes) {
        EXPECT_TRUE(QFileInfo(volume).isDir()) << volume.toStdString();
        for (const char* kernels : {"/proc", "/sys", "/dev"})
            EXPECT_FALSE(volume.startsWith(QLatin1String(kernels))) << volume.toStdString();
    }
}

} // namespace
} // namespace tracelet
