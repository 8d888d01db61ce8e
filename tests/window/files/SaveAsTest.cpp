#include "tests/window/files/RecordedTest.h"

#include "core/recordings/ProjectInfo.h"
#include "tests/support/FileSizeLimit.h"
#include "window/ground/NoticeLine.h"
#include "window/ground/StatusLine.h"

#include <QDir>
#include <QFile>

#include <map>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Box = MessageBoxes::Box;

class SaveAsTest : public RecordedTest {
protected:
    SaveAsTest() {
        window->szDrive = "/";
        window->szDir = target.path().toStdString();
    }

    void SaveAs(const QString& name, const char* button = "OKButton") {
        NameFolder(window->BtnSaveAs, name, button);
    }

    /// Names and bytes of all that was saved in a folder.
    [[nodiscard]] std::map<QString, std::vector<std::uint8_t>> SavedRecording(const QString& name) const {
        std::map<QString, std::vector<std::uint8_t>> files;
        for (const QString& file : Saved(name))
            files[file] = SavedBytes(name + u'/' + file);
        return files;
    }
    [[nodiscard]] std::vector<std::uint8_t> SavedBytes(const QString& file) const {
        return Bytes(target.filePath(file).toStdString());
    }
};

TEST_F(SaveAsTest, CopiesProjectAndDataAndAppendsThePaths) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    TurnOnDI();
    Click(window->CkDISave2Disk);
    Record(3);
    const std::vector<std::uint8_t> work = Bytes(window->szProjectFileName);
    SaveAs(u"run 1"_s);
    EXPECT_THAT(Saved(u"run 1"_s),
                UnorderedElementsAre(u"AI.tld"_s, u"DI.tld"_s, u"Project.tlp"_s, u"Session.json"_s));
    EXPECT_EQ(SavedBytes(u"run 1/AI.tld"_s), Bytes(window->szAIFileName));
    EXPECT_EQ(SavedBytes(u"run 1/DI.tld"_s), Bytes(window->szDIFileName));
    const std::string folderText = target.path().toStdString() + "\\run 1";
    std::string tail = folderText + "\\AI.tld";
    tail += '\0';
    tail += folderText + "\\DI.tld";
    std::vector<std::uint8_t> expected = work;
    expected.insert(expected.end(), tail.begin(), tail.end());
    EXPECT_EQ(SavedBytes(u"run 1/Project.tlp"_s), expected);
    EXPECT_EQ(Bytes(window->szProjectFileName), work);
    EXPECT_FALSE(window->Files.IsOpen(frmMain::ProjectFileNum));
}

TEST_F(SaveAsTest, AnalogAloneStillNamesTheDigitalPath) {
    Record(1);
    SaveAs(u"a"_s);
    EXPECT_THAT(Saved(u"a"_s), UnorderedElementsAre(u"AI.tld"_s, u"Project.tlp"_s, u"Session.json"_s));
    const ProjectInfo info = ReadProjectFile(target.filePath(u"a/Project.tlp"_s).toStdString());
    EXPECT_THAT(info.DIDataPath, EndsWith("\\a\\DI.tld"));
}

TEST_F(SaveAsTest, CancelAndEmptyNameCreateNothing) {
    Record(1);
    SaveAs(u"x"_s, "BtnCancel");
    SaveAs({});
    EXPECT_THAT(Saved(), IsEmpty());
    EXPECT_EQ(window->szNewFolder, "");
    EXPECT_TRUE(window->Files.IsOpen(frmMain::ProjectFileNum));
}

TEST_F(SaveAsTest, DialogClosedByCodeSavesNothing) {
    Record(1);
    window->szNewFolder = "before";
    OnModalDialog<Dialog>([](Dialog& dialog) { dialog.accept(); });
    Click(window->BtnSaveAs);
    EXPECT_THAT(Saved(), IsEmpty());
}

TEST_F(SaveAsTest, ExistingFolderIsOverwrittenAndStaleDataStay) {
    ASSERT_TRUE(QDir(target.path()).mkdir(u"a"_s));
    QFile stale(target.filePath(u"a/DI.tld"_s));
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write("old");
    stale.close();
    QFile longer(target.filePath(u"a/Project.tlp"_s));
    ASSERT_TRUE(longer.open(QIODevice::WriteOnly));
    longer.write(QByteArray(5000, 'x'));
    longer.close();
    Record(2);
    SaveAs(u"a"_s);
    EXPECT_EQ(SavedBytes(u"a/DI.tld"_s).size(), 3U);
    EXPECT_EQ(SavedBytes(u"a/AI.tld"_s).size(), 8U);
    EXPECT_LT(SavedBytes(u"a/Project.tlp"_s).size(), 5000U);
}

TEST_F(SaveAsTest, EachCopyHasOnePairOfPaths) {
    Record(2);
    SaveAs(u"a"_s);
    SaveAs(u"a"_s);
    SaveAs(u"b"_s);
    EXPECT_EQ(SavedBytes(u"a/Project.tlp"_s).size(), SavedBytes(u"b/Project.tlp"_s).size());
    EXPECT_THAT(ReadProjectFile(target.filePath(u"a/Project.tlp"_s).toStdString()).AIDataPath,
                EndsWith("\\a\\AI.tld"));
}

TEST_F(SaveAsTest, NextStartReopensTheProject) {
    Record(2);
    SaveAs(u"a"_s);
    Record(4);
    EXPECT_EQ(ReadProjectFile(window->szProjectFileName).ScanCount, 4);
    SaveAs(u"b"_s);
    EXPECT_EQ(SavedBytes(u"b/AI.tld"_s).size(), 16U);
}

TEST_F(SaveAsTest, StopRecordThatTheWorkFileDidNotTakeIsInTheSavedCopy) {
    TurnOnAI();
    Click(window->CkAISave2Disk);
    StartPolling();
    Tick(3);
    window->Files.Close(frmMain::ProjectFileNum); // as good as a full disk
    Click(window->BtnStart);
    SaveAs(u"a"_s);
    const ProjectInfo info = ReadProjectFile(target.filePath(u"a/Project.tlp"_s).toStdString());
    EXPECT_EQ(info.ScanCount, 3);
    EXPECT_DOUBLE_EQ(info.ScanInterval, 0.1);
    EXPECT_THAT(info.AIDataPath, EndsWith("\\a\\AI.tld"));
    Record(2);
    SaveAs(u"b"_s);
    EXPECT_EQ(SavedBytes(u"b/Project.tlp"_s).size(), SavedBytes(u"a/Project.tlp"_s).size());
    EXPECT_EQ(ReadProjectFile(target.filePath(u"b/Project.tlp"_s).toStdString()).ScanCount, 2);
}

TEST_F(SaveAsTest, DataThatCannotBeReadAreToldAndAnEarlierRecordingStays) {
    const QString data = QString::fromStdString(NativePath(window->szAIFileName));
    Record(2);
    SaveAs(u"a"_s);
    const auto earlier = SavedRecording(u"a"_s);
    Record(3);
    ASSERT_TRUE(QFile::remove(data));
    for (const char* reason : {"File not found", "Permission denied"}) {
        for (const QString& name : {u"a"_s, u"b"_s}) {
            SaveAs(name);
            EXPECT_EQ(Notice(), std::string("The recording was not saved: ") + reason);
            EXPECT_FALSE(window->Files.IsOpen(frmMain::ProjectFileNum));
        }
        EXPECT_EQ(SavedRecording(u"a"_s), earlier);
        EXPECT_THAT(Saved(u"b"_s), IsEmpty());
        QDir().mkdir(data); // for the second round: nothing that can be read
    }
    ASSERT_TRUE(QDir().rmdir(data));
    Record(1);
    SaveAs(u"a"_s);
    EXPECT_EQ(Notice(), "Saved in");
    EXPECT_EQ(SavedBytes(u"a/AI.tld"_s).size(), 4U);
}

TEST_F(SaveAsTest, FullDiskIsToldAndAnEarlierRecordingStays) {
    Record(2);
    SaveAs(u"a"_s);
    const auto earlier = SavedRecording(u"a"_s);
    Record(200);
    {
        const FileSizeLimit full(700); // there is room for the project, not for the samples
        SaveAs(u"a"_s);
        SaveAs(u"b"_s);
    }
    EXPECT_EQ(Notice(), "The recording was not saved: File too large");
    EXPECT_EQ(SavedRecording(u"a"_s), earlier);
    EXPECT_THAT(Saved(u"b"_s), IsEmpty());
    SaveAs(u"a"_s);
    EXPECT_EQ(SavedBytes(u"a/AI.tld"_s).size(), 800U);
    EXPECT_EQ(ReadProjectFile(target.filePath(u"a/Project.tlp"_s).toStdString()).ScanCount, 200);
}

TEST_F(SaveAsTest, SavingLeavesTheCountOfLostScansInSight) {
    TurnOnAI();
    Click(window->CkAISave2Disk);
    StartPolling();
    Tick(1);
    Faults faults;
    faults.readError = "No answer";
    AnalogBoardInUse().SetFaults(faults);
    Tick(2);
    AnalogBoardInUse().SetFaults({});
    Tick(1);
    Click(window->BtnStart);
    SaveAs(u"none/run"_s);
    EXPECT_THAT(boxes.Take(), testing::SizeIs(1));
    SaveAs(u"a"_s);
    EXPECT_THAT(window->LabelStatus->text().toStdString(), testing::HasSubstr("Lost: 2 scans"));
    EXPECT_EQ(SavedBytes(u"a/AI.tld"_s).size(), 8U);
}

TEST_F(SaveAsTest, FolderInTheWayOfTheDataIsTold) {
    ASSERT_TRUE(QDir(target.path()).mkpath(u"a/AI.tld"_s));
    Record(1);
    SaveAs(u"a"_s);
    EXPECT_EQ(Notice(), "The recording was not saved: Permission denied");
    EXPECT_THAT(Saved(u"a"_s), ElementsAre(u"AI.tld"_s));
}

TEST_F(SaveAsTest, ProjectThatIsGoneIsToldAndAnEarlierRecordingStays) {
    Record(2);
    SaveAs(u"a"_s);
    const auto earlier = SavedRecording(u"a"_s);
    Record(3);
    ASSERT_TRUE(QFile::remove(QString::fromStdString(NativePath(window->szProjectFileName))));
    for (const QString& name : {u"a"_s, u"b"_s}) {
        SaveAs(name);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"File not found", "BtnSaveAs"}));
    }
    EXPECT_EQ(SavedRecording(u"a"_s), earlier);
    EXPECT_THAT(Saved(u"b"_s), IsEmpty());
    Record(1); // makes the project anew
    SaveAs(u"c"_s);
    EXPECT_EQ(ReadProjectFile(target.filePath(u"c/Project.tlp"_s).toStdString()).ScanCount, 1);
}

TEST_F(SaveAsTest, FullDiskIsToldAndLeavesNoProjectOfPathsAlone) {
    Record(2);
    {
        const FileSizeLimit full(10);
        SaveAs(u"a"_s);
    }
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"File too large", "BtnSaveAs"}));
    EXPECT_THAT(Saved(u"a"_s), IsEmpty());
    SaveAs(u"a"_s);
    EXPECT_EQ(ReadProjectFile(target.filePath(u"a/Project.tlp"_s).toStdString()).ScanCount, 2);
}

TEST_F(SaveAsTest, FilesThatWereNotWrittenAreNotCopied) {
    SelectPorts(0, {0x01});
    TurnOnDI();
    Click(window->CkDISave2Disk);
    StartPolling();
    Tick(2);
    Click(window->BtnStart);
    EXPECT_TRUE(window->BtnSaveAs->isEnabled());
    SaveAs(u"digital"_s);
    EXPECT_THAT(Saved(u"digital"_s), UnorderedElementsAre(u"DI.tld"_s, u"Project.tlp"_s, u"Session.json"_s));
    EXPECT_THAT(ReadProjectFile(target.filePath(u"digital/Project.tlp"_s).toStdString()).AIDataPath,
                EndsWith("\\digital\\AI.tld"));
}

TEST_F(SaveAsTest, FastDataReplaceThePolledCopy) {
    Record(2);
    window->FAIWritten = true; // both kinds in one session cannot come from the window
    SaveAs(u"a"_s);
    EXPECT_EQ(SavedBytes(u"a/AI.tld"_s), Bytes(window->szFAIFileName));
}

TEST_F(SaveAsTest, FastRecordingIsSavedAsAnalogData) {
    window->M1.SoftMode = false;
    AnalogBoardInUse().SetPaced(false);
    TurnOnAI();
    Click(window->CkAISave2Disk);
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
    SaveAs(u"fast"_s);
    EXPECT_EQ(SavedBytes(u"fast/AI.tld"_s).size(), 4096U * 4U);
}

TEST_F(SaveAsTest, FolderWhoseParentIsMissingIsToldAndNothingIsMade) {
    Record(1);
    SaveAs(u"none/run"_s);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Path not found", "BtnSaveAs"}));
    EXPECT_THAT(Saved(), IsEmpty());
    SaveAs(u"good"_s);
    EXPECT_THAT(Saved(u"good"_s), UnorderedElementsAre(u"AI.tld"_s, u"Project.tlp"_s, u"Session.json"_s));
}

TEST_F(SaveAsTest, NameMayGoThroughFoldersThatExist) {
    ASSERT_TRUE(QDir(target.path()).mkdir(u"day"_s));
    Record(1);
    SaveAs(u"day/run"_s);
    EXPECT_THAT(Saved(u"day/run"_s), UnorderedElementsAre(u"AI.tld"_s, u"Project.tlp"_s, u"Session.json"_s));
    SaveAs(u"day/.."_s);
    EXPECT_THAT(Saved(), UnorderedElementsAre(u"AI.tld"_s, u"Project.tlp"_s, u"Session.json"_s, u"day"_s));
}

TEST_F(SaveAsTest, TargetThatIsAFileIsTold) {
    QFile file(target.filePath(u"taken"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    Record(1);
    SaveAs(u"taken"_s);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Path not found", "BtnSaveAs"}));
}

TEST_F(SaveAsTest, FileSystemThatCannotBeWrittenIsTold) {
    window->szDir = "/proc";
    Record(1);
    SaveAs(u"run"_s);
    EXPECT_THAT(boxes.Take(), ElementsAre(testing::Field(&Box::title, "BtnSaveAs")));
}

TEST_F(SaveAsTest, DialogReopensWhereTheUserLeftIt) {
    Record(1);
    SaveAs(u"a"_s);
    EXPECT_EQ(window->szDir, target.path().toStdString());
    EXPECT_EQ(window->szNewFolder, "a");
    OnModalDialog<Dialog>([&](Dialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>(u"txtFolderName"_s)->text(), QString());
        dialog.reject();
    });
    Click(window->BtnSaveAs);
    EXPECT_EQ(window->szNewFolder, "");
}

} // namespace
} // namespace tracelet
