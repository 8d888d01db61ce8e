#include "window/files/Dialog.h"

#include "tests/support/MessageBoxes.h"
#include "tests/support/TemporaryFolder.h"
#include "window/folders/FolderLists.h"

#include <QComboBox>
#include <QDateTime>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

namespace fs = std::filesystem;

class DialogTest : public testing::Test {
protected:
    DialogTest() {
        fs::create_directory(folder / "program");
        program = folder / "program";
    }
    ~DialogTest() override { fs::current_path(before); }

    template <typename Widget>
    static Widget* Find(const Dialog& dialog, const char* name) {
        auto* widget = dialog.findChild<Widget*>(QLatin1String(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }

    const fs::path before = fs::current_path();
    const TemporaryFolder folder;
    std::string program;
    std::string szDrive;
    std::string szDir;
    std::string szNewFolder;
};

TEST_F(DialogTest, ShowsItsParts) {
    const Dialog dialog(program, szDrive, szDir, szNewFolder);
    EXPECT_EQ(dialog.windowTitle(), u"Save As"_s);
    EXPECT_TRUE(dialog.isModal());
    Find<QComboBox>(dialog, "Drive1");
    Find<QListWidget>(dialog, "Dir1");
    EXPECT_EQ(Find<QPushButton>(dialog, "OKButton")->text().remove(u'&'), u"OK"_s);
    EXPECT_EQ(Find<QPushButton>(dialog, "BtnCancel")->text().remove(u'&'), u"Cancel"_s);
    QStringList labels;
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        labels << label->text();
    EXPECT_TRUE(labels.contains(u"Folder Name"_s));
    for (const char* name : {"Drive1", "Dir1", "txtFolderName"})
        EXPECT_FALSE(Find<QWidget>(dialog, name)->accessibleName().isEmpty()) << name;
}

TEST_F(DialogTest, FirstLoadSetsDriveAndFolder) {
    const Dialog dialog(program, szDrive, szDir, szNewFolder);
    EXPECT_FALSE(szDrive.empty());
    EXPECT_EQ(szDir, program);
    EXPECT_EQ(fs::current_path(), program);
}

TEST_F(DialogTest, FolderOfTheUserServesWhereTheProgramsCannotBeWritten) {
    const QByteArray homeBefore = qgetenv("HOME");
    qputenv("HOME", folder.Path().c_str());
    for (const char* first : {"", "/Documents"}) { // the second time there is one
        const Dialog dialog("/proc", szDrive, szDir, szNewFolder);
        EXPECT_EQ(szDir, folder.Path() + first);
        EXPECT_EQ(fs::current_path(), folder.Path() + first);
        szDrive.clear();
        fs::create_directory(folder / "Documents");
    }
    qputenv("HOME", homeBefore);
}

TEST_F(DialogTest, OKStoresDriveFolderAndName) {
    Dialog dialog(program, szDrive, szDir, szNewFolder);
    dialog.show();
    auto* list = Find<QListWidget>(dialog, "Dir1");
    list->setCurrentRow(0); // ".."
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(szDir, program);
    const std::string driveBefore = szDrive;
    auto* drives = Find<QComboBox>(dialog, "Drive1");
    drives->addItem(u"stick"_s, QString::fromStdString(folder.Path()));
    drives->setCurrentIndex(drives->count() - 1);
    EXPECT_EQ(szDrive, driveBefore);
    QTest::keyClicks(Find<QLineEdit>(dialog, "txtFolderName"), u"run 1"_s);
    QTest::mouseClick(Find<QPushButton>(dialog, "OKButton"), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(szDir, folder.Path());
    EXPECT_EQ(szDrive, folder.Path());
    EXPECT_EQ(szNewFolder, "run 1");
}

TEST_F(DialogTest, EnterInTheNamePressesOK) {
    Dialog dialog(program, szDrive, szDir, szNewFolder);
    dialog.show();
    auto* name = Find<QLineEdit>(dialog, "txtFolderName");
    name->setText(QString::fromUtf8("Größe"));
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(szNewFolder, "Größe");
}

TEST_F(DialogTest, OKTakesAnEmptyNameToo) {
    szNewFolder = "before";
    Dialog dialog(program, szDrive, szDir, szNewFolder);
    dialog.show();
    QTest::mouseClick(Find<QPushButton>(dialog, "OKButton"), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(szNewFolder, "");
}

TEST_F(DialogTest, CancelInEveryFormEmptiesTheNameAndKeepsTheFolder) {
    const std::function<void(Dialog&)> ways[] = {
        [](Dialog& dialog) { QTest::mouseClick(Find<QPushButton>(dialog, "BtnCancel"), Qt::LeftButton); },
        [](Dialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](Dialog& dialog) { dialog.close(); },
    };
    for (const auto& cancel : ways) {
        szDrive = "/";
        szDir = program;
        szNewFolder = "before";
        Dialog dialog(program, szDrive, szDir, szNewFolder);
        dialog.show();
        Find<QLineEdit>(dialog, "txtFolderName")->setText(u"typed"_s);
        QTest::keyClick(Find<QListWidget>(dialog, "Dir1"), Qt::Key_Return); // goes up
        cancel(dialog);
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(szNewFolder, "");
        EXPECT_EQ(szDir, program);
        EXPECT_EQ(szDrive, "/");
    }
}

TEST_F(DialogTest, ReopensWhereTheUserLeftIt) {
    szDrive = "/";
    szDir = folder.Path();
    const Dialog dialog(program, szDrive, szDir, szNewFolder);
    EXPECT_EQ(dialog.findChild<FolderLists*>()->Path(), folder.Path());
    EXPECT_EQ(dialog.findChild<FolderLists*>()->Drive(), "/");
    EXPECT_EQ(Find<QLineEdit>(dialog, "txtFolderName")->text(), u""_s);
}

TEST_F(DialogTest, DateAndTimeAreANameToStartFrom) {
    Dialog dialog(program, szDrive, szDir, szNewFolder);
    auto* name = Find<QLineEdit>(dialog, "txtFolderName");
    EXPECT_EQ(name->text(), u""_s);
    dialog.show();
    QTest::mouseClick(Find<QToolButton>(dialog, "BtnDateName"), Qt::LeftButton);
    const QDateTime told = QDateTime::fromString(name->text(), u"yyyy-MM-dd HH-mm-ss"_s);
    EXPECT_LT(std::abs(told.secsTo(QDateTime::currentDateTime())), 60);
    QTest::mouseClick(Find<QPushButton>(dialog, "OKButton"), Qt::LeftButton);
    EXPECT_EQ(szNewFolder, told.toString(u"yyyy-MM-dd HH-mm-ss"_s).toStdString());
}

TEST_F(DialogTest, AFolderTypedIsTheOneOfOK) {
    Dialog dialog(program, szDrive, szDir, szNewFolder);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto* path = Find<QLineEdit>(dialog, "txtPath");
    path->setFocus();
    path->selectAll();
    QTest::keyClicks(path, QString::fromStdString(folder.Path()));
    QTest::mouseClick(Find<QPushButton>(dialog, "OKButton"), Qt::LeftButton); // without Enter
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(szDir, folder.Path());
}

TEST_F(DialogTest, EnterInThePathKeepsTheDialogOpen) {
    MessageBoxes boxes;
    Dialog dialog(program, szDrive, szDir, szNewFolder);
    dialog.show();
    auto* path = Find<QLineEdit>(dialog, "txtPath");
    for (const std::string& typed : {folder.Path(), folder / "none"}) {
        path->setText(QString::fromStdString(typed));
        QTest::keyClick(path, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.findChild<FolderLists*>()->Path(), folder.Path());
    }
    EXPECT_THAT(boxes.Take(), testing::ElementsAre(MessageBoxes::Box{"Path not found", "Tracelet"}));
}

TEST_F(DialogTest, EverythingIsReachedByKeyboard) {
    Dialog dialog(program, szDrive, szDir, szNewFolder);
    dialog.show();
    QStringList visited;
    for (int step = 0; step < 12; ++step) {
        if (QWidget* focus = dialog.focusWidget())
            visited << focus->objectName();
        QTest::keyClick(&dialog, Qt::Key_Tab);
    }
    EXPECT_EQ(visited.value(0), u"txtFolderName"_s) << "typing goes into the name";
    for (const char* name : {"Drive1", "txtPath", "Dir1", "txtFolderName", "OKButton", "BtnCancel"})
        EXPECT_TRUE(visited.contains(QLatin1String(name))) << name;
}

} // namespace
} // namespace tracelet
