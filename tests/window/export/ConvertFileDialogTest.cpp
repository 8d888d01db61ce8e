#include "window/export/ConvertFileDialog.h"

#include "tests/support/MessageBoxes.h"
#include "tests/support/TemporaryFolder.h"
#include "window/folders/FolderLists.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

namespace fs = std::filesystem;

class ConvertFileDialogTest : public testing::Test {
protected:
    ConvertFileDialogTest() : program(folder / "program") { fs::create_directory(program); }
    ~ConvertFileDialogTest() override { fs::current_path(before); }

    std::unique_ptr<ConvertFileDialog> Opened(bool bHisAI = true, bool bHisDI = true) {
        const TextSave save{szTextSaveDrive, szTextSaveDir, szTextSaveFolder, bTextSaveAI, bTextSaveDI};
        auto dialog = std::make_unique<ConvertFileDialog>(program, save, bHisAI, bHisDI);
        dialog->show();
        return dialog;
    }

    template <typename Widget>
    static Widget* Find(const ConvertFileDialog& dialog, const char* name) {
        auto* widget = dialog.findChild<Widget*>(QLatin1String(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }

    static void Press(const ConvertFileDialog& dialog, const char* button) {
        QTest::mouseClick(Find<QPushButton>(dialog, button), Qt::LeftButton);
    }

    const fs::path before = fs::current_path();
    const TemporaryFolder folder;
    std::string program;
    std::string szTextSaveDrive;
    std::string szTextSaveDir;
    std::string szTextSaveFolder;
    bool bTextSaveAI = false;
    bool bTextSaveDI = false;
    MessageBoxes boxes;
};

TEST_F(ConvertFileDialogTest, ShowsItsParts) {
    const auto dialog = Opened();
    EXPECT_TRUE(dialog->isModal());
    for (const char* name : {"Drive1", "Dir1", "txtFolderName"})
        EXPECT_FALSE(Find<QWidget>(*dialog, name)->accessibleName().isEmpty()) << name;
    for (const char* name : {"ChkAI", "ChkDI", "OKButton", "BtnCancel"})
        EXPECT_TRUE(Find<QWidget>(*dialog, name)->isVisible()) << name;
    QStringList labels;
    for (const QLabel* label : dialog->findChildren<QLabel*>())
        labels << label->text();
    EXPECT_TRUE(labels.contains(u"Folder Name"_s));
}

TEST_F(ConvertFileDialogTest, OffersWhatWasRecorded) {
    for (const bool ai : {false, true})
        for (const bool di : {false, true}) {
            bTextSaveAI = !ai;
            bTextSaveDI = !di;
            const auto dialog = Opened(ai, di);
            EXPECT_EQ(Find<QCheckBox>(*dialog, "ChkAI")->isEnabled(), ai);
            EXPECT_EQ(Find<QCheckBox>(*dialog, "ChkAI")->isChecked(), ai);
            EXPECT_EQ(Find<QCheckBox>(*dialog, "ChkDI")->isEnabled(), di);
            EXPECT_EQ(Find<QCheckBox>(*dialog, "ChkDI")->isChecked(), di);
            EXPECT_EQ(bTextSaveAI, ai);
            EXPECT_EQ(bTextSaveDI, di);
        }
}

TEST_F(ConvertFileDialogTest, CheckBoxesSetTheirFlagsAtOnce) {
    const auto dialog = Opened();
    Find<QCheckBox>(*dialog, "ChkAI")->click();
    EXPECT_FALSE(bTextSaveAI);
    EXPECT_TRUE(bTextSaveDI);
    Find<QCheckBox>(*dialog, "ChkDI")->click();
    EXPECT_FALSE(bTextSaveDI);
    Find<QCheckBox>(*dialog, "ChkAI")->click();
    EXPECT_TRUE(bTextSaveAI);
    EXPECT_FALSE(bTextSaveDI);
}

TEST_F(ConvertFileDialogTest, FirstTimeStartsInTheProgramsFolder) {
    const auto dialog = Opened();
    EXPECT_FALSE(szTextSaveDrive.empty());
    EXPECT_EQ(szTextSaveDir, program);
    EXPECT_EQ(fs::current_path(), program);
}

TEST_F(ConvertFileDialogTest, LaterStartsWhereTheUserLeftIt) {
    szTextSaveDrive = "/";
    szTextSaveDir = fs::path(program).parent_path();
    szTextSaveFolder = "last";
    const auto dialog = Opened();
    EXPECT_EQ(dialog->findChild<FolderLists*>()->Path(), szTextSaveDir);
    EXPECT_EQ(dialog->findChild<FolderLists*>()->Drive(), "/");
    EXPECT_EQ(szTextSaveDir, fs::path(program).parent_path());
    EXPECT_EQ(Find<QLineEdit>(*dialog, "txtFolderName")->text(), u""_s);
}

TEST_F(ConvertFileDialogTest, OKStoresDriveFolderAndName) {
    const auto dialog = Opened();
    auto* list = Find<QListWidget>(*dialog, "Dir1");
    list->setCurrentRow(0); // ".."
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(szTextSaveDir, program);
    const std::string driveBefore = szTextSaveDrive;
    auto* drives = Find<QComboBox>(*dialog, "Drive1");
    drives->addItem(u"stick"_s, QString::fromStdString(folder.Path()));
    drives->setCurrentIndex(drives->count() - 1);
    EXPECT_EQ(szTextSaveDrive, driveBefore);
    QTest::keyClicks(Find<QLineEdit>(*dialog, "txtFolderName"), u"texts 1"_s);
    Press(*dialog, "OKButton");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(szTextSaveDir, fs::path(program).parent_path());
    EXPECT_EQ(szTextSaveDrive, folder.Path());
    EXPECT_EQ(szTextSaveFolder, "texts 1");
}

TEST_F(ConvertFileDialogTest, AnEmptyNameIsRefused) {
    szTextSaveFolder = "last";
    const auto dialog = Opened();
    QTest::keyClick(Find<QListWidget>(*dialog, "Dir1"), Qt::Key_Return); // goes up
    for (const char* box : {"ChkAI", "ChkDI"}) {
        Find<QCheckBox>(*dialog, box)->click(); // whatever is to be written
        Press(*dialog, "OKButton");
        EXPECT_THAT(boxes.Take(),
                    testing::ElementsAre(MessageBoxes::Box{"Folder Name should not be null", "Tracelet"}));
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(szTextSaveFolder, "");
        EXPECT_EQ(szTextSaveDir, folder.Path()); // the rest is stored all the same
    }
    Find<QLineEdit>(*dialog, "txtFolderName")->setText(u"now"_s);
    Press(*dialog, "OKButton");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(szTextSaveFolder, "now");
}

TEST_F(ConvertFileDialogTest, CancelInEveryFormEmptiesTheNameAndKeepsTheRest) {
    const std::function<void(ConvertFileDialog&)> ways[] = {
        [](ConvertFileDialog& dialog) { Press(dialog, "BtnCancel"); },
        [](ConvertFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](ConvertFileDialog& dialog) { dialog.close(); },
    };
    for (const auto& cancel : ways) {
        szTextSaveDrive = "/";
        szTextSaveDir = program;
        szTextSaveFolder = "last";
        const auto dialog = Opened();
        Find<QLineEdit>(*dialog, "txtFolderName")->setText(u"typed"_s);
        Find<QCheckBox>(*dialog, "ChkDI")->click();
        QTest::keyClick(Find<QListWidget>(*dialog, "Dir1"), Qt::Key_Return); // goes up
        cancel(*dialog);
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(szTextSaveFolder, "");
        EXPECT_EQ(szTextSaveDir, program);
        EXPECT_EQ(szTextSaveDrive, "/");
        EXPECT_TRUE(bTextSaveAI);
        EXPECT_FALSE(bTextSaveDI);
    }
}

TEST_F(ConvertFileDialogTest, EverythingIsReachedByKeyboard) {
    const auto dialog = Opened();
    QStringList visited;
    for (int step = 0; step < 14; ++step) {
        if (QWidget* focus = dialog->focusWidget())
            visited << focus->objectName();
        QTest::keyClick(dialog.get(), Qt::Key_Tab);
    }
    EXPECT_EQ(visited.value(0), u"txtFolderName"_s) << "typing goes into the name";
    for (const char* name : {"Drive1", "Dir1", "txtFolderName", "ChkAI", "ChkDI", "OKButton", "BtnCancel"})
        EXPECT_TRUE(visited.contains(QLatin1String(name))) << name;
}

} // namespace
} // namespace tracelet
