#include "tests/window/files/RecordedTest.h"

#include "core/recordings/ProjectInfo.h"
#include "tests/support/GatedDisk.h"
#include "window/files/SaveProgress.h"
#include "window/ground/NoticeLine.h"

#include <QDir>
#include <QProgressBar>
#include <QProgressDialog>
#include <QToolButton>

#include <array>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using Box = MessageBoxes::Box;

class UnsavedTest : public RecordedTest {
protected:
    UnsavedTest() { Settle(); }

    /// Lets the window come up and look for what was left behind.
    static void Settle() {
        for (int turn = 0; turn < 10; ++turn)
            QTest::qWait(2);
    }

    void Reopen() {
        Open(SimulatedBoards());
        Settle();
    }

    /// Presses something that asks for a folder, and answers.
    void Save(QAbstractButton* by, const QString& name, const char* button = "OKButton") {
        window->szDrive = "/";
        window->szDir = target.path().toStdString();
        NameFolder(by, name, button);
    }

    /// Once a saving shows its bar, looks at it and presses Cancel.
    void CancelSaving() {
        OnModalDialog<QProgressDialog>([this](QProgressDialog& bar) {
            wasBarShown = true;
            EXPECT_EQ(bar.windowTitle(), u"Save As"_s);
            Click(window->BtnExit);
            EXPECT_TRUE(window->isVisible());
            Click(bar.findChild<QPushButton*>());
            CopyGate().Open();
        });
    }

    [[nodiscard]] bool IsOffered() const { return window->LabelNotice->BtnNoticeSave->isVisible(); }
    [[nodiscard]] std::int32_t SavedScans(const QString& name) const {
        return ReadProjectFile(target.filePath(name + u"/Project.tlp"_s).toStdString()).ScanCount;
    }

    bool wasBarShown = false;
};

// ---- The offer

TEST_F(UnsavedTest, NothingIsOfferedWhereNothingWasLeft) {
    EXPECT_FALSE(IsOffered());
    EXPECT_EQ(Notice(), "");
    Reopen();
    EXPECT_FALSE(IsOffered());
}

TEST_F(UnsavedTest, ARecordingThatWasNotSavedIsOfferedAtTheNextStart) {
    Record(30);
    EXPECT_FALSE(IsOffered());
    Reopen();
    EXPECT_TRUE(IsOffered());
    EXPECT_THAT(Notice(), MatchesRegex("Unsaved recording of [0-9]+ [A-Z][a-z]+ [0-9]+ [0-9:]+ "
                                       "\\(3 s, 1 signal, 120 bytes\\):"));
    for (const QToolButton* link : {window->LabelNotice->BtnNoticeSave, window->LabelNotice->BtnNoticeDiscard,
                                    window->LabelNotice->BtnNoticeLater}) {
        EXPECT_TRUE(link->isVisible());
        EXPECT_TRUE(window->LabelNotice->rect().contains(link->geometry()));
        EXPECT_NE(link->focusPolicy() & Qt::TabFocus, 0);
        EXPECT_FALSE(link->accessibleName().isEmpty());
    }
}

TEST_F(UnsavedTest, NothingIsLookedForBeforeTheWindowIsPainted) {
    Record(1);
    Open(SimulatedBoards());
    EXPECT_FALSE(IsOffered());
    Settle();
    EXPECT_TRUE(IsOffered());
}

TEST_F(UnsavedTest, ASavedRecordingIsNotOffered) {
    Record(3);
    Save(window->BtnSaveAs, u"a"_s);
    Reopen();
    EXPECT_FALSE(IsOffered());
}

TEST_F(UnsavedTest, TheOneBeforeASecondSessionIsOfferedAtTheNextStart) {
    Record(3);
    Record(5);
    Save(window->BtnSaveAs, u"a"_s);
    EXPECT_FALSE(IsOffered());
    Reopen();
    ASSERT_TRUE(IsOffered());
    Save(window->LabelNotice->BtnNoticeSave, u"b"_s);
    EXPECT_EQ(SavedScans(u"b"_s), 3);
}

TEST_F(UnsavedTest, ClosingDuringASessionKeepsItsRecording) {
    TurnOnAI();
    Click(window->CkAISave2Disk);
    StartPolling();
    Tick(4);
    Reopen();
    ASSERT_TRUE(IsOffered());
    Save(window->LabelNotice->BtnNoticeSave, u"b"_s);
    EXPECT_EQ(SavedScans(u"b"_s), 4);
}

TEST_F(UnsavedTest, SavingMakesTheFolderThatSaveAsWouldHaveMade) {
    Record(7);
    Save(window->BtnSaveAs, u"twin"_s);
    const std::vector<std::uint8_t> twin = Bytes(target.filePath(u"twin/AI.tld"_s).toStdString());
    Record(7); // the same samples; nobody saves them
    Reopen();
    Save(window->LabelNotice->BtnNoticeSave, u"rescued"_s);
    EXPECT_THAT(Saved(u"rescued"_s), ElementsAre(u"AI.tld"_s, u"Project.tlp"_s, u"Session.json"_s));
    EXPECT_EQ(Bytes(target.filePath(u"rescued/AI.tld"_s).toStdString()).size(), twin.size());
    EXPECT_EQ(SavedScans(u"rescued"_s), 7);
    EXPECT_FALSE(IsOffered());
    EXPECT_EQ(Notice(), "Saved in");
    EXPECT_EQ(window->LabelNotice->BtnNoticeFolder->text(), target.filePath(u"rescued"_s));
    Reopen();
    EXPECT_FALSE(IsOffered()) << "once";
}

TEST_F(UnsavedTest, ASavingThatFailsIsToldAndTheOfferStays) {
    Record(3);
    Reopen();
    Save(window->LabelNotice->BtnNoticeSave, u"none/run"_s);
    EXPECT_THAT(Notice(), StartsWith("The recording was not saved: Path not found. Unsaved recording of"));
    ASSERT_TRUE(IsOffered());
    Save(window->LabelNotice->BtnNoticeSave, u"a"_s, "BtnCancel");
    ASSERT_TRUE(IsOffered());
    Save(window->LabelNotice->BtnNoticeSave, u"a"_s);
    EXPECT_EQ(SavedScans(u"a"_s), 3);
}

TEST_F(UnsavedTest, DiscardDeletesIt) {
    Record(3);
    Reopen();
    Click(window->LabelNotice->BtnNoticeDiscard);
    EXPECT_FALSE(IsOffered());
    EXPECT_EQ(Notice(), "");
    EXPECT_FALSE(QDir(state.filePath(u"unsaved"_s)).exists());
    Reopen();
    EXPECT_FALSE(IsOffered());
}

TEST_F(UnsavedTest, LaterAsksAgainAtTheNextStart) {
    Record(3);
    Reopen();
    QTest::keyClick(window->LabelNotice->BtnNoticeLater, Qt::Key_Space);
    EXPECT_FALSE(IsOffered());
    Reopen();
    EXPECT_TRUE(IsOffered());
}

TEST_F(UnsavedTest, WhatAKilledProgramLeftIsOfferedFirstTheNewest) {
    Record(3);
    window->close();
    const QString left = folder.filePath(u"tl00AB.tmp"_s); // older by its time of change
    ASSERT_TRUE(QDir().mkpath(left));
    for (const char* name : {"Project.tld", "AI.tld"})
        ASSERT_TRUE(QFile::copy(state.filePath(u"unsaved/"_s + QLatin1String(name)),
                                left + u'/' + QLatin1String(name)));
    QFile project(left + u"/Project.tld"_s);
    ASSERT_TRUE(project.open(QIODevice::ReadWrite));
    project.setFileTime(QDateTime(QDate(2026, 1, 2), QTime(3, 4)), QFileDevice::FileModificationTime);
    project.close();
    Reopen();
    EXPECT_THAT(Notice(), testing::Not(HasSubstr("2 Jan 2026")));
    Click(window->LabelNotice->BtnNoticeLater);
    EXPECT_THAT(Notice(), StartsWith("Unsaved recording of 2 Jan 2026 03:04 ("));
    Save(window->LabelNotice->BtnNoticeSave, u"old"_s);
    EXPECT_EQ(SavedScans(u"old"_s), 3);
    EXPECT_FALSE(QDir(left).exists());
}

TEST_F(UnsavedTest, NothingIsOfferedWhileASessionRuns) {
    Record(3);
    Reopen();
    TurnOnAI();
    StartPolling();
    EXPECT_FALSE(IsOffered());
    EXPECT_EQ(Notice(), "");
    Faults faults;
    faults.readError = "No answer";
    AnalogBoardInUse().SetFaults(faults);
    Tick(2);
    EXPECT_EQ(Notice(), "Scans are being lost: No answer");
    EXPECT_FALSE(IsOffered());
    Click(window->BtnStart);
    EXPECT_TRUE(IsOffered());
}

TEST_F(UnsavedTest, NothingIsOfferedWhereOtherTextStands) {
    Record(3);
    Reopen();
    Record(5);
    EXPECT_TRUE(IsOffered());
    Save(window->BtnSaveAs, u"a"_s);
    EXPECT_FALSE(IsOffered());
    EXPECT_EQ(Notice(), "Saved in");
    StartPolling();
    Click(window->BtnStart);
    EXPECT_TRUE(IsOffered());
}

TEST_F(UnsavedTest, ANewerUnsavedRecordingTakesThePlaceOfTheOneOffered) {
    Record(3);
    Reopen();
    ASSERT_TRUE(IsOffered());
    Record(5);
    EXPECT_TRUE(IsOffered()) << "as long as there is none newer";
    Record(7);
    EXPECT_FALSE(IsOffered());
    Save(window->BtnSaveAs, u"a"_s);
    Reopen();
    Save(window->LabelNotice->BtnNoticeSave, u"b"_s);
    EXPECT_EQ(SavedScans(u"b"_s), 5);
}

TEST_F(UnsavedTest, ANewerOneTakesThePlaceAtTheEndToo) {
    Record(3);
    Reopen();
    Record(5);
    Reopen();
    Save(window->LabelNotice->BtnNoticeSave, u"b"_s);
    EXPECT_EQ(SavedScans(u"b"_s), 5);
}

TEST_F(UnsavedTest, ARefusedStartLeavesTheOffer) {
    Record(3);
    Reopen();
    Record(5);
    window->ZelAI1->SetScanStartChannel(window->ZelAI1->MaxChannelCount() - 1);
    window->ZelAI1->SetScanChannelCount(1);
    Faults faults;
    window->M1.SoftMode = false;
    faults.refusedStart = "Busy";
    AnalogBoardInUse().SetFaults(faults);
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), testing::SizeIs(1));
    EXPECT_TRUE(IsOffered());
}

// ---- Saving with progress

TEST_F(UnsavedTest, ALongSavingShowsItsBarAndCanBeCancelled) {
    Record(3);
    Save(window->BtnSaveAs, u"a"_s);
    Record(5);
    CancelSaving();
    {
        const Stall stall(CopyGate());
        Save(window->BtnSaveAs, u"a"_s);
    }
    EXPECT_TRUE(wasBarShown);
    EXPECT_EQ(Notice(), SavingCancelled);
    EXPECT_EQ(SavedScans(u"a"_s), 3);
    EXPECT_THAT(Saved(), ElementsAre(u"a"_s));
    CancelSaving();
    {
        const Stall stall(CopyGate());
        Save(window->BtnSaveAs, u"b"_s);
    }
    EXPECT_THAT(Saved(), ElementsAre(u"a"_s)) << "no empty folder";
    Save(window->BtnSaveAs, u"b"_s);
    EXPECT_EQ(SavedScans(u"b"_s), 5);
    EXPECT_EQ(Notice(), "Saved in");
}

TEST_F(UnsavedTest, TheSavingOfAnOfferCanBeCancelledToo) {
    Record(3);
    Reopen();
    CancelSaving();
    {
        const Stall stall(CopyGate());
        Save(window->LabelNotice->BtnNoticeSave, u"a"_s);
    }
    EXPECT_TRUE(wasBarShown);
    EXPECT_THAT(Notice(), StartsWith("Saving was cancelled. Unsaved recording of "));
    EXPECT_TRUE(IsOffered());
    EXPECT_THAT(Saved(), IsEmpty());
}

TEST_F(UnsavedTest, TheBarTellsHowFarItIsAndGoesAtTheEnd) {
    Gate gate;
    gate.Close();
    OnModalDialog<QProgressDialog>([&](QProgressDialog& dialog) {
        const auto* bar = dialog.findChild<QProgressBar*>(u"ProgressBar"_s);
        EXPECT_EQ(bar->value(), bar->maximum() / 4);
        gate.Open();
    });
    const std::string reason = SaveWithProgress(
        window.get(), 1000,
        [&](const CopyProgress& progress) {
            progress(250);
            gate.Pass();
            return std::string("done");
        },
        std::chrono::milliseconds(50));
    EXPECT_EQ(reason, "done");
    EXPECT_EQ(window->findChild<QProgressDialog*>(), nullptr);
}

TEST_F(UnsavedTest, WhatASavingRaisesIsRaisedHere) {
    EXPECT_THROW((void)SaveWithProgress(
                     window.get(), 1,
                     [](const CopyProgress&) -> std::string { throw RunTimeError("Path not found"); }),
                 RunTimeError);
}

// ---- A disk that stalls

TEST_F(UnsavedTest, AStopOnADiskThatStallsLeavesTheWindowAlive) {
    TurnOnAI();
    Click(window->CkAISave2Disk);
    StartPolling();
    Tick(2);
    int turns = 0;
    QTimer life;
    QObject::connect(&life, &QTimer::timeout, &life, [&] {
        EXPECT_TRUE(window->isSystemRunning);
        Tick(1); // comes too late
        if (++turns == 3) {
            Click(window->BtnStart);
            EXPECT_FALSE(window->close());
        }
        if (turns == 10) {
            life.stop();
            WriteGate().Open();
        }
    });
    const Stall stall(WriteGate());
    Tick(3);
    window->ZelHiResTimerCtl1->SetTimerEnabled(frmMain::PollTimer, true);
    life.start(20);
    Click(window->BtnStart);
    EXPECT_EQ(turns, 10);
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(Bytes(window->szAIFileName).size(), 5U * 4U);
    EXPECT_EQ(ReadProjectFile(window->szProjectFileName).ScanCount, 5);
}

TEST_F(UnsavedTest, SoDoesTheStopOfFastInput) {
    window->M1.SoftMode = false;
    window->bFAICyclic = true;
    TurnOnAI();
    Click(window->CkAISave2Disk);
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount > 0; }, 20000));
    bool isAlive = false;
    const Stall stall(WriteGate());
    QTimer::singleShot(200, window.get(), [&] {
        isAlive = window->isSystemRunning;
        WriteGate().Open();
    });
    Click(window->BtnStart);
    EXPECT_TRUE(isAlive);
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_EQ(Bytes(window->szFAIFileName).size(), static_cast<std::size_t>(window->ScanCount) * 4U);
    EXPECT_EQ(window->FAIFileHandle.Handle(), SystemFile::ClosedHandle);
}

// ---- A disk that is soon full

class DiskRoomWindow : public UnsavedTest {
protected:
    /// A window whose disk has so many bytes left, recording 10 scans of 4 bytes a second.
    void RecordOn(std::int64_t bytes) {
        window->close();
        window.reset();
        room = bytes;
        frmMain::Surroundings surroundings;
        surroundings.boards = boards;
        surroundings.findMore = [](BoardList&) {};
        surroundings.programFolder = folder.path();
        surroundings.stateFolder = state.path().toStdString();
        surroundings.ticks = [this] { return now; };
        surroundings.freeBytes = [this](const std::string&) {
            ++looks;
            return QDir(state.filePath(u"unsaved"_s)).exists() ? room : room + givenUp;
        };
        window = std::make_unique<frmMain>(std::move(surroundings));
        window->show();
        Settle();
        TurnOnAI();
        Click(window->CkAISave2Disk);
        StartPolling();
    }

    std::int64_t room = 0;
    std::int64_t givenUp = 0;
    int looks = 0;
};

TEST_F(DiskRoomWindow, IsToldBelowTenMinutesAndOnceASecond) {
    RecordOn(40 * 599);
    Tick(10);
    EXPECT_EQ(Notice(), "Disk full in about 9 min");
    EXPECT_EQ(looks, 1);
    room = 40 * 100;
    Tick(9);
    EXPECT_EQ(looks, 1);
    Tick(1);
    EXPECT_EQ(Notice(), "Disk full in about 100 s");
    room = 40 * 601;
    Tick(10);
    EXPECT_EQ(Notice(), "");
    room = 40 * 599;
    Tick(10);
    EXPECT_NE(Notice(), "");
    Click(window->BtnStart);
    EXPECT_EQ(Notice(), "");
}

TEST_F(DiskRoomWindow, StandsBeforeWhatElseIsWrong) {
    RecordOn(40 * 599);
    Tick(10);
    Faults faults;
    faults.readError = "No answer";
    AnalogBoardInUse().SetFaults(faults);
    Tick(1);
    AnalogBoardInUse().SetFaults({});
    EXPECT_EQ(Notice(), "Disk full in about 9 min; Scans are being lost: No answer");
    Click(window->BtnStart);
    EXPECT_EQ(Notice(), "");
}

TEST_F(DiskRoomWindow, TheLastUnsavedRecordingIsGivenUpFirst) {
    Record(3);
    givenUp = 40 * 600;
    RecordOn(40 * 599);
    EXPECT_TRUE(QDir(state.filePath(u"unsaved"_s)).exists());
    Tick(10);
    EXPECT_FALSE(QDir(state.filePath(u"unsaved"_s)).exists());
    EXPECT_EQ(Notice(), "");
    Click(window->BtnStart);
    EXPECT_FALSE(IsOffered());
}

TEST_F(DiskRoomWindow, NothingIsGivenUpWhileThereIsRoom) {
    Record(3);
    RecordOn(40 * 601);
    Tick(20);
    EXPECT_TRUE(QDir(state.filePath(u"unsaved"_s)).exists());
}

} // namespace
} // namespace tracelet
