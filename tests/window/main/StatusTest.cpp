// What the window's foot and title tell: of a session, of its losses, of a recording.

#include "tests/window/files/RecordedTest.h"
#include "tests/window/history/HistoryWindowTest.h"
#include "window/ground/StatusLine.h"

#include <QDesktopServices>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QToolButton>
#include <QToolTip>

#include <thread>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string StatusOf(frmMain& window) {
    window.ShowStatus();
    return window.LabelStatus->text().toStdString();
}

class StatusTest : public RecordedTest {
protected:
    [[nodiscard]] std::string Status() { return StatusOf(*window); }
    void FailReads(const char* text) {
        Faults faults;
        faults.readError = text;
        AnalogBoardInUse().SetFaults(faults);
    }
};

// ---- Boards and state

TEST_F(StatusTest, AWindowThatOpensIsReadyWithItsBoardSimulatedOrNot) {
    const std::string name = AnalogBoardInUse().Info().name;
    EXPECT_EQ(Status(), "Ready · " + name + " (simulated)");
    EXPECT_EQ(window->windowTitle(), u"Tracelet"_s);
    AnalogBoardInfo real = AnalogBoardInUse().Info();
    real.simulated = false;
    Open(OneAnalogBoard(real));
    EXPECT_EQ(Status(), "Ready · " + name);
    Open({});
    EXPECT_EQ(Status(), "Ready");
}

TEST_F(StatusTest, BoardsOfInputsThatAreOnAreTold) {
    SelectPorts(0, {0x01});
    const std::string digital = DigitalBoardInUse().Info().name;
    EXPECT_THAT(Status(), Not(HasSubstr(digital + " (simulated)")));
    TurnOnDI();
    EXPECT_EQ(Status(), "Ready · " + digital + " (simulated)");
    TurnOnAI();
    EXPECT_EQ(Status(),
              "Ready · " + AnalogBoardInUse().Info().name + " (simulated), " + digital + " (simulated)");
}

TEST_F(StatusTest, ARunThatIsNotRecordedSaysSo) {
    TurnOnAI();
    StartPolling();
    EXPECT_THAT(window->LabelStatus->text().toStdString(), StartsWith("○ Running, not recorded · 00:00:00"))
        << "at once";
    Tick(30);
    EXPECT_THAT(Status(),
                StartsWith("○ Running, not recorded · 00:00:03 · 30 scans · 10.0 of 10 scans/s · "));
    Click(window->BtnStart);
    EXPECT_THAT(window->LabelStatus->text().toStdString(), StartsWith("Ready · 30 scans · "));
}

TEST_F(StatusTest, ARecordingTellsItsSizeAndThatItIsNotSavedUntilItIs) {
    TurnOnAI();
    Click(window->CkAISave2Disk);
    StartPolling();
    Tick(1000);
    EXPECT_THAT(Status(),
                StartsWith("● Recording · 00:01:40 · 1,000 scans · 10.0 of 10 scans/s · 4.0 kB · "));
    EXPECT_THAT(Status(), Not(HasSubstr("Not saved")));
    Click(window->BtnStart);
    EXPECT_THAT(Status(), StartsWith("Ready · Not saved · 1,000 scans · 4.0 kB"));
    NameFolder(window->BtnSaveAs, u"a"_s);
    EXPECT_THAT(window->LabelStatus->text().toStdString(), StartsWith("Ready · 1,000 scans · 4.0 kB"));
}

TEST_F(StatusTest, OfTwoInputsTheOneThatIsRecordedIsNamed) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    TurnOnDI();
    Click(window->CkDISave2Disk);
    StartPolling();
    EXPECT_THAT(Status(), StartsWith("● Recording DI only"));
    Click(window->BtnStart);
    Click(window->CkAISave2Disk);
    StartPolling();
    EXPECT_THAT(Status(), StartsWith("● Recording · "));
}

TEST_F(StatusTest, ARecordingThatBrokeIsNoRecording) {
    TurnOnAI();
    Click(window->CkAISave2Disk);
    StartPolling();
    window->Files.Close(frmMain::AIFileNum);
    Tick(1);
    EXPECT_THAT(Status(), StartsWith("○ Running, not recorded · Recording stopped: "));
}

TEST_F(StatusTest, TheTimeThatTheDiskLastsFollowsThePaceSoFar) {
    frmMain::Surroundings surroundings;
    surroundings.boards = boards;
    surroundings.findMore = [](BoardList&) {};
    surroundings.programFolder = folder.path();
    surroundings.stateFolder = state.path().toStdString();
    surroundings.ticks = [this] { return now; };
    surroundings.freeBytes = [](const std::string&) { return std::int64_t{40 * 3600 * 5}; };
    window = std::make_unique<frmMain>(std::move(surroundings));
    Record(20);
    Click(window->BtnStart);
    Tick(20);
    EXPECT_THAT(Status(), HasSubstr("disk lasts 5 h"));
}

TEST_F(StatusTest, IsKeptCurrentByItself) {
    TurnOnAI();
    StartPolling();
    Tick(1);
    now += 60000;
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->LabelStatus->text().contains(u"00:01:00"_s); }, 20000));
}

// ---- Losses

TEST_F(StatusTest, LossesStayUntilTheNextStart) {
    TurnOnAI();
    StartPolling();
    Tick(600);
    FailReads("No answer");
    Tick(2);
    AnalogBoardInUse().SetFaults({});
    Tick(50);
    EXPECT_THAT(Status(), HasSubstr("Lost: 2 scans, last at 00:01:00"));
    ASSERT_EQ(window->ZelGraph1->LossMarkCount(), 1);
    Click(window->BtnStart);
    EXPECT_THAT(Status(), HasSubstr("Lost: 2 scans, last at 00:01:00"));
    StartPolling();
    EXPECT_THAT(Status(), Not(HasSubstr("Lost")));
    EXPECT_EQ(window->ZelGraph1->LossMarkCount(), 0);
}

TEST_F(StatusTest, EachLossIsMarkedAtItsTime) {
    TurnOnAI();
    StartPolling();
    Tick(20);
    FailReads("No answer");
    Tick(5);
    AnalogBoardInUse().SetFaults({});
    Tick(25);
    FailReads("Unplugged");
    Tick(1);
    AnalogBoardInUse().SetFaults({});
    Tick(9);
    const auto at = [&](double seconds) {
        const QRect area = window->ZelGraph1->PlotRect();
        return window->ZelGraph1->LossAt(area.left() + seconds / 10.0 * area.width()).toStdString();
    };
    EXPECT_EQ(window->ZelGraph1->LossMarkCount(), 2);
    EXPECT_EQ(at(2.1), "5 scans lost: No answer");
    EXPECT_EQ(at(2.4), "5 scans lost: No answer");
    EXPECT_EQ(at(5.1), "1 scan lost: Unplugged");
    EXPECT_EQ(at(1.0), "");
    EXPECT_EQ(at(4.0), "");
    EXPECT_EQ(at(6.0), "");
}

TEST_F(StatusTest, TicksThatABusyMachineSkippedAreLosses) {
    TurnOnAI();
    window->nTimerInterval = 10;
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount > 0; }, 20000));
    const std::int32_t before = window->recorder.MissedTickCount;
    std::this_thread::sleep_for(std::chrono::milliseconds(105)); // whatever else the machine does
    const std::int32_t scans = window->ScanCount;
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount > scans; }, 20000));
    EXPECT_GE(window->recorder.MissedTickCount, before + 9);
    EXPECT_THAT(Status(), HasSubstr(" missed ticks, last at "));
    EXPECT_GE(window->ZelGraph1->LossMarkCount(), 1);
    EXPECT_EQ(window->LostScanCount, 0) << "none was tried";
    Click(window->BtnStart);
}

TEST_F(StatusTest, AnOverrunIsMarkedWhereItsSamplesWouldBe) {
    window->M1.SoftMode = false;
    window->bFAICyclic = true;
    TurnOnAI();
    Click(window->BtnStart);
    ASSERT_TRUE(window->isSystemRunning);
    window->ZelGraph1->SetNextX(0.5);
    window->ZelAI1_OnOverrunNotice();
    EXPECT_THAT(Status(), HasSubstr("Lost: 1 overrun, last at "));
    const QRect area = window->ZelGraph1->PlotRect();
    const double x = area.left() + (0.5 - window->ZelGraph1->XAxisMin()) /
                                       (window->ZelGraph1->XAxisMax() - window->ZelGraph1->XAxisMin()) *
                                       area.width();
    EXPECT_EQ(window->ZelGraph1->LossAt(x), u"Samples lost: The board or its queue lost samples"_s);
    Click(window->BtnStart);
}

TEST_F(StatusTest, AMarkTellsItsLossUnderThePointer) {
    TurnOnAI();
    StartPolling();
    Tick(20);
    FailReads("No answer");
    Tick(1);
    const QRect area = window->ZelGraph1->PlotRect();
    const QPoint mark(area.left() + area.width() * 21 / 100, area.center().y());
    QHelpEvent help(QEvent::ToolTip, mark, window->ZelGraph1->mapToGlobal(mark));
    QCoreApplication::sendEvent(window->ZelGraph1, &help);
    EXPECT_EQ(QToolTip::text(), u"1 scan lost: No answer"_s);
    QToolTip::hideText();
    Click(window->BtnStart);
}

// ---- Where things were put

/// Takes the place of the desktop's file manager.
class Opener : public QObject {
    Q_OBJECT
public:
    Opener() { QDesktopServices::setUrlHandler(u"file"_s, this, "Take"); }
    ~Opener() override { QDesktopServices::unsetUrlHandler(u"file"_s); }
    QList<QUrl> opened;
public slots:
    void Take(const QUrl& url) { opened.append(url); }
};

TEST_F(StatusTest, SaveAsLeavesALinkThatOpensTheFolder) {
    Opener opener;
    Record(3);
    QToolButton* link = window->LabelNotice->BtnNoticeFolder;
    EXPECT_FALSE(link->isVisible());
    NameFolder(window->BtnSaveAs, u"a"_s);
    EXPECT_EQ(Notice(), "Saved in");
    ASSERT_TRUE(link->isVisible());
    EXPECT_TRUE(window->LabelNotice->rect().contains(link->geometry()));
    EXPECT_TRUE(QDir(link->text()).exists(u"Project.tlp"_s)) << link->text().toStdString();
    Click(link);
    EXPECT_EQ(opener.opened, QList<QUrl>{QUrl::fromLocalFile(link->text())});
    StartPolling();
    EXPECT_FALSE(link->isVisible());
}

// ---- Room

TEST_F(StatusTest, BothLinesShareTheFootAndNothingOfTheStateIsLost) {
    Record(3);
    NameFolder(window->BtnSaveAs, u"a-folder-with-a-name-that-takes-a-good-deal-of-room-in-a-line"_s);
    for (const QSize size : {QSize(765, 485), QSize(1000, 650), QSize(2000, 900)}) {
        window->resize(size);
        QCoreApplication::processEvents();
        EXPECT_GE(window->LabelStatus->width(), window->LabelStatus->minimumSizeHint().width());
        EXPECT_LE(window->LabelStatus->geometry().right(), window->LabelNotice->geometry().left());
        EXPECT_LE(window->LabelNotice->geometry().right(), window->FrameFoot->width());
        EXPECT_GE(window->FrameFoot->height(), QFontMetrics(window->font()).height());
    }
}

// ---- Playback

class PlaybackStatusTest : public HistoryWindowTest {
protected:
    [[nodiscard]] std::string Status() { return StatusOf(*window); }

    void OpenWith(const std::string& session) {
        const std::string project = Save(Polled(5), "run 1");
        saved.Write("run 1/Session.json", session);
        OpenProject(project);
    }
};

TEST_F(PlaybackStatusTest, TheOpenRecordingIsNamedAlsoInTheTitle) {
    OpenWith({});
    EXPECT_EQ(Status(), "Recording “run 1” · 00:08:20 · 5 scans");
    EXPECT_EQ(window->windowTitle(), u"run 1 – Tracelet"_s);
    Click(window->ChkPlay);
    PlayByTheTick(1);
    PlayTicks(2);
    EXPECT_EQ(Status(), "▶ Playing “run 1” · 00:03:20 of 00:08:20 · 5 scans");
    Click(window->ChkPlay);
    EXPECT_EQ(Status(), "Paused “run 1” · 00:03:20 of 00:08:20 · 5 scans");
    Click(window->BtnStop);
    Click(window->BtnModeSwitch);
    EXPECT_THAT(Status(), StartsWith("Ready"));
    EXPECT_EQ(window->windowTitle(), u"Tracelet"_s);
    window->BtnModeSwitch_Click();
    EXPECT_THAT(Status(), StartsWith("Recording “run 1”"));
}

TEST_F(PlaybackStatusTest, BoardsAndLossesOfTheSessionAreShownAgain) {
    OpenWith(
        R"({"analog":{"board":{"name":"AD-16","simulated":true}},)"
        R"("losses":[{"nextScan":2,"scans":3,"reason":"No answer"},{"nextScan":4,"reason":"Overrun"}]})");
    EXPECT_EQ(Status(),
              "Recording “run 1” · 00:08:20 · Lost: 3 scans, 1 overrun · 5 scans · AD-16 (simulated)");
    EXPECT_EQ(window->ZelGraph1->LossMarkCount(), 2);
    window->ZelGraph1->AxisSetRange(XAxis, 0.0, 1000.0);
    const QRect area = window->ZelGraph1->PlotRect();
    const auto at = [&](double seconds) {
        return window->ZelGraph1->LossAt(area.left() + seconds / 1000.0 * area.width()).toStdString();
    };
    EXPECT_EQ(at(200.0), "3 scans lost: No answer");
    EXPECT_EQ(at(400.0), "Samples lost: Overrun");
    EXPECT_EQ(at(300.0), "");
    Click(window->BtnModeSwitch);
    EXPECT_EQ(window->ZelGraph1->LossMarkCount(), 0);
    window->BtnModeSwitch_Click();
    EXPECT_EQ(window->ZelGraph1->LossMarkCount(), 2);
}

TEST_F(PlaybackStatusTest, ARecordingThatDoesNotOpenLeavesTheNameOfTheOneThatIsShown) {
    OpenWith({});
    OpenProject(saved.Write("junk.tlp", "x"));
    (void)boxes.Take();
    EXPECT_THAT(Status(), StartsWith("Recording “run 1”"));
}

} // namespace
} // namespace tracelet

#include "StatusTest.moc"
