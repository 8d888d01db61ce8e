// The order of a session's steps: what stands while a message is open, and what a start that fails leaves.

#include "tests/support/MainWindowTest.h"

#include "core/recordings/ProjectInfo.h"
#include "window/chart/ZelGraph.h"
#include "window/files/Dialog.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>

#include <new>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using Box = MessageBoxes::Box;

/// A board whose stream cannot be started, for a reason that no driver foresaw.
template <typename Exception>
class UnforeseenBoard final : public AnalogBoard {
public:
    explicit UnforeseenBoard(Exception thrown) : exception(std::move(thrown)) {
        info.name = "Unforeseen";
        info.channelCount = 4;
        info.resolution = 12;
        info.ranges = {{0, -10, 10}};
        info.lowestRate = 1;
        info.highestRate = 1e5;
    }
    [[nodiscard]] const AnalogBoardInfo& Info() const override { return info; }
    void Open() override {}
    [[nodiscard]] double SettleSampleRate(double rate, std::int32_t) const override { return rate; }
    void ReadScan(std::span<const ChannelSetup>, std::span<double>) override { throw exception; }
    [[nodiscard]] ThermocoupleReading ReadThermocouple(const ChannelSetup&, std::int32_t,
                                                       ThermocoupleType) override {
        throw exception;
    }
    void StartStream(const StreamSetup&) override { throw exception; }
    [[nodiscard]] StreamRead ReadStream(StreamBuffer) override { throw exception; }
    void StopStream() override {}

private:
    AnalogBoardInfo info;
    Exception exception;
};

template <typename Exception>
BoardList Unforeseen(Exception exception) {
    BoardList list;
    list.analog.push_back({"Unforeseen", "Test", "", false,
                           std::make_shared<UnforeseenBoard<Exception>>(std::move(exception))});
    return list;
}

class SessionSteps : public MainWindowTest {
protected:
    void RefuseStart(const char* reason) {
        Faults faults;
        faults.refusedStart = reason;
        AnalogBoardInUse().SetFaults(faults);
    }

    /// Starts a session whose digital reads fail.
    void PollDigitalInVain() {
        SelectPorts(0, {0x01});
        TurnOnDI();
        StartPolling();
        Faults faults;
        faults.readError = "No answer";
        DigitalBoardInUse().SetFaults(faults);
    }

    /// Records three scans of both inputs; `beforeStop` runs before they are complete.
    void RecordBoth(const std::function<void()>& beforeStop = [] {}) {
        SelectPorts(0, {0x01});
        TurnOnAI();
        TurnOnDI();
        Click(window->CkAISave2Disk);
        Click(window->CkDISave2Disk);
        StartPolling();
        Tick(3);
        beforeStop();
        Click(window->BtnStart);
    }

    /// The bytes of the work files.
    struct Recording {
        std::vector<std::uint8_t> project, analog, fast, digital;
        bool operator==(const Recording&) const = default;
    };
    [[nodiscard]] Recording Recorded() const {
        return {Bytes(window->szProjectFileName), Bytes(window->szAIFileName), Bytes(window->szFAIFileName),
                Bytes(window->szDIFileName)};
    }
    [[nodiscard]] QStringList WorkFiles() const {
        return QDir(QString::fromStdString(NativePath(window->sztmpPath)))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    void ExpectIdle() const {
        EXPECT_FALSE(window->isSystemRunning);
        EXPECT_EQ(window->BtnStart->text(), u"Start"_s);
        for (const QWidget* widget :
             std::initializer_list<QWidget*>{window->FrameSet, window->BtnSet, window->FrameCmd,
                                             window->ZelButton1, window->ZelButton2, window->BtnHistory})
            EXPECT_TRUE(widget->isEnabled()) << widget->objectName().toStdString();
    }
};

TEST_F(SessionSteps, RefusedSwitchIsPutBackAfterTheMessage) {
    Open({});
    for (ZelButton* button : {window->ZelButton1, window->ZelButton2}) {
        bool onDuringMessage = false;
        boxes.WhenNextOpens([&] { onDuringMessage = button->Value(); });
        Click(button);
        EXPECT_TRUE(onDuringMessage);
        EXPECT_FALSE(button->Value());
        EXPECT_EQ(button->Image(), u"PUSHROCKERSWITCH_OFF"_s);
        EXPECT_THAT(boxes.Take(), SizeIs(1));
    }
    EXPECT_FALSE(window->CkAISave2Disk->isEnabled());
    EXPECT_FALSE(window->CkDISave2Disk->isEnabled());
}

TEST_F(SessionSteps, FailedFastStartIsToldBeforeItIsUndone) {
    window->M1.SoftMode = false;
    AnalogBoardInUse().SetPaced(false);
    TurnOnAI();
    Click(window->CkAISave2Disk);
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
    ASSERT_TRUE(window->BtnSaveAs->isEnabled());
    const Recording recorded = Recorded();

    RefuseStart("The board is busy");
    bool runningDuringMessage = false;
    boxes.WhenNextOpens([&] {
        runningDuringMessage = window->isSystemRunning && window->BtnStart->text() == u"Stop"_s &&
                               !window->FrameSet->isEnabled();
    });
    Click(window->CkAISave2Disk);
    Click(window->BtnStart);
    EXPECT_TRUE(runningDuringMessage);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"The board is busy", "BtnStart"}));
    ExpectIdle();
    EXPECT_TRUE(window->BtnSaveAs->isEnabled());
    EXPECT_TRUE(window->FAIWritten);
    EXPECT_FALSE(window->FAIFileHandle.IsOpen());
    EXPECT_THAT(recorded.fast, SizeIs(4096 * 4));
    EXPECT_EQ(Recorded(), recorded);

    AnalogBoardInUse().SetFaults({});
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
    EXPECT_EQ(window->ScanCount, 4096);
    EXPECT_THAT(Bytes(window->szProjectFileName), SizeIs(16 + 12));
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
}

TEST_F(SessionSteps, RefusedStartKeepsThePolledRecording) {
    RecordBoth();
    const Recording recorded = Recorded();
    EXPECT_THAT(recorded.analog, SizeIs(3 * 4));
    EXPECT_THAT(recorded.digital, SizeIs(8 + 3));
    window->ZelDIO1->SetDeviceNumber(-1);
    for (const bool projectIsOpen : {true, false}) { // saving closes it
        if (!projectIsOpen)
            window->Files.Close(frmMain::ProjectFileNum);
        Click(window->BtnStart);
        EXPECT_THAT(boxes.Take(), SizeIs(1));
        ExpectIdle();
        EXPECT_EQ(Recorded(), recorded);
        EXPECT_TRUE(window->SoftAIWritten && window->DIWritten && !window->FAIWritten);
        EXPECT_TRUE(window->BtnSaveAs->isEnabled());
        EXPECT_EQ(window->Files.IsOpen(frmMain::ProjectFileNum), projectIsOpen);
        EXPECT_TRUE(window->Files.IsOpen(frmMain::AIFileNum) && window->Files.IsOpen(frmMain::DIFileNum));
        EXPECT_THAT(WorkFiles(),
                    UnorderedElementsAre(u"AI.tld"_s, u"DI.tld"_s, u"FAI.tld"_s, u"Project.tld"_s));
    }
}

TEST_F(SessionSteps, RefusedStartKeepsTheStopRecordThatWasNotWrittenYet) {
    RecordBoth([&] { window->Files.Close(frmMain::ProjectFileNum); }); // as good as a full disk
    const auto withoutStop = Bytes(window->szProjectFileName).size();
    window->ZelDIO1->SetDeviceNumber(-1);
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), SizeIs(1));
    EXPECT_THAT(Bytes(window->szProjectFileName), SizeIs(withoutStop));
    const QTemporaryDir target;
    window->szDrive = "/";
    window->szDir = target.path().toStdString();
    OnModalDialog<Dialog>([&](Dialog& dialog) {
        dialog.findChild<QLineEdit*>(u"txtFolderName"_s)->setText(u"a"_s);
        Click(dialog.findChild<QPushButton*>(u"OKButton"_s));
    });
    Click(window->BtnSaveAs);
    EXPECT_EQ(ReadProjectFile(target.filePath(u"a/Project.tlp"_s).toStdString()).ScanCount, 3);
}

TEST_F(SessionSteps, StartThatWorksReplacesTheRecording) {
    RecordBoth();
    StartPolling();
    EXPECT_THAT(WorkFiles(), UnorderedElementsAre(u"AI.tld"_s, u"DI.tld"_s, u"FAI.tld"_s, u"Project.tld"_s));
    EXPECT_THAT(Bytes(window->szAIFileName), SizeIs(0));
    EXPECT_THAT(Bytes(window->szDIFileName), SizeIs(8));
    Tick(1);
    Click(window->BtnStart);
    EXPECT_THAT(Bytes(window->szAIFileName), SizeIs(4));
}

TEST_F(SessionSteps, RecordingThatCannotBeSetAsideHoldsNoStartUp) {
    RecordBoth();
    const QString inTheWay = QString::fromStdString(NativePath(window->szAIFileName)) + u".last"_s;
    ASSERT_TRUE(QDir().mkdir(inTheWay));
    StartPolling();
    EXPECT_THAT(Bytes(window->szAIFileName), SizeIs(0));
    Tick(2);
    Click(window->BtnStart);
    EXPECT_THAT(Bytes(window->szAIFileName), SizeIs(2 * 4));
    ASSERT_TRUE(QDir().rmdir(inTheWay));
    EXPECT_THAT(WorkFiles(), SizeIs(4));
}

TEST_F(SessionSteps, FailedPolledStartIsToldAfterItWasStopped) {
    TurnOnAI();
    StartPolling();
    Tick(5);
    Click(window->BtnStart);
    window->ZelAI1->SetDeviceNumber(-1);
    bool idleDuringMessage = false;
    boxes.WhenNextOpens(
        [&] { idleDuringMessage = !window->isSystemRunning && window->BtnStart->text() == u"Start"_s; });
    Click(window->BtnStart);
    EXPECT_TRUE(idleDuringMessage);
    EXPECT_THAT(boxes.Take(), SizeIs(1));
    const std::vector<std::uint8_t> project = Bytes(window->szProjectFileName);
    ASSERT_THAT(project, SizeIs(16 + 12));
    EXPECT_THAT(std::vector(project.end() - 12, project.end()), testing::Each(0)); // not the scans before
    EXPECT_FALSE(window->ZelHiResTimerCtl1->TimerEnabled(frmMain::PollTimer));
    ExpectIdle();
}

TEST_F(SessionSteps, FailedPolledStartShowsItsOwnReason) {
    SelectPorts(0, {0x01});
    window->M1.SoftMode = false;
    TurnOnAI();
    RefuseStart("The converter is too hot");
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"The converter is too hot", "BtnStart"}));
    window->M1.SoftMode = true;
    TurnOnDI();
    window->ZelDIO1->SetDeviceNumber(-1);
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No DI device is selected", "BtnStart"}));
    window->ZelAI1->SetDeviceNumber(-1);
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No AI device is selected", "BtnStart"}));
    EXPECT_FALSE(window->isSystemRunning);
}

TEST_F(SessionSteps, AnyReasonIsAStartFailure) {
    const auto start = [&](BoardList list) {
        Open(std::move(list));
        window->M1.SoftMode = false;
        TurnOnAI();
        Click(window->BtnStart);
        ExpectIdle();
        return boxes.Take();
    };
    EXPECT_THAT(start(Unforeseen(std::logic_error("No such register"))),
                ElementsAre(Box{"No such register", "BtnStart"}));
    EXPECT_THAT(start(Unforeseen(std::bad_alloc())), ElementsAre(Box{"Out of memory", "BtnStart"}));
}

TEST_F(SessionSteps, PolledStartWithoutAnIntervalFails) {
    TurnOnAI();
    const struct {
        std::int32_t interval;
        const char* reason;
    } cases[] = {{0, "Division by zero"}, {-5, "A timer interval must be at least 1 ms"}};
    for (const auto& c : cases) {
        window->nTimerInterval = c.interval;
        Click(window->BtnStart);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{c.reason, "BtnStart"}));
        ExpectIdle();
    }
}

TEST_F(SessionSteps, UnforeseenReadErrorEndsItsTickQuietly) {
    Open(Unforeseen(std::logic_error("No such register")));
    TurnOnAI();
    StartPolling();
    Tick(2);
    EXPECT_TRUE(window->isSystemRunning);
    EXPECT_EQ(window->TickCount, 2);
    EXPECT_EQ(window->ScanCount, 0);
    Click(window->BtnStart);
    ExpectIdle();
}

TEST_F(SessionSteps, FailedDigitalReadIsToldBeforeTheSessionStops) {
    PollDigitalInVain();
    bool runningDuringMessage = false;
    boxes.WhenNextOpens(
        [&] { runningDuringMessage = window->isSystemRunning && window->BtnStart->text() == u"Stop"_s; });
    Tick(1);
    EXPECT_TRUE(runningDuringMessage);
    EXPECT_THAT(boxes.Take(), SizeIs(1));
    ExpectIdle();
}

// Closing the window, say, may stop the session while the message is open.
TEST_F(SessionSteps, SessionStoppedDuringTheMessageStaysStopped) {
    PollDigitalInVain();
    boxes.WhenNextOpens([&] { window->BtnStart_Click(); });
    Tick(1);
    EXPECT_THAT(boxes.Take(), SizeIs(1));
    ExpectIdle();
}

TEST_F(SessionSteps, StopEndsTheTicks) {
    window->nTimerInterval = 1;
    TurnOnAI();
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->TickCount >= 3; }));
    Click(window->BtnStart);
    EXPECT_FALSE(window->ZelHiResTimerCtl1->TimerEnabled(frmMain::PollTimer));
    const std::int32_t ticks = window->TickCount;
    QTest::qWait(20);
    EXPECT_EQ(window->TickCount, ticks);
}

TEST_F(SessionSteps, DigitalHeaderThatCannotBeWrittenShowsOnItsBox) {
    SelectPorts(0, {0x01});
    TurnOnDI();
    const QString path = QString::fromStdString(NativePath(window->szDIFileName));
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkdir(path));
    StartPolling();
    EXPECT_TRUE(window->CkDISave2Disk->toolTip().isEmpty()) << "nothing is recorded";
    EXPECT_TRUE(window->CkDISave2Disk->styleSheet().isEmpty());
    Click(window->BtnStart);
    Click(window->CkDISave2Disk);
    StartPolling();
    EXPECT_THAT(window->CkDISave2Disk->toolTip().toStdString(), testing::StartsWith("Recording stopped: "));
    EXPECT_TRUE(window->CkAISave2Disk->toolTip().isEmpty());
    ASSERT_TRUE(QDir().rmdir(path));
    Tick(2);
    Click(window->BtnStart);
    EXPECT_FALSE(window->DIWritten);
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());

    StartPolling();
    EXPECT_TRUE(window->CkDISave2Disk->toolTip().isEmpty());
    EXPECT_TRUE(window->CkDISave2Disk->styleSheet().isEmpty());
    Tick(1);
    Click(window->BtnStart);
    EXPECT_THAT(Bytes(window->szDIFileName), SizeIs(8 + 1));
}

// Only the thermocouple control can have no limits set; without it the start goes on.
TEST_F(SessionSteps, ThermocouplesWithoutTheirControlStartAndReadNothing) {
    window->M1.AIChanIsThermo[0] = true;
    window->BuildPlots(false, true);
    ASSERT_LT(window->ZelThermo1->DeviceNumber(), 0);
    TurnOnAI();
    StartPolling();
    Tick(2);
    EXPECT_EQ(window->TickCount, 2);
    EXPECT_EQ(window->ScanCount, 0);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 0);
    Click(window->BtnStart);
}

TEST_F(SessionSteps, TitlesOfTheAxesStay) {
    const auto titles = [&] {
        std::vector<std::string> texts;
        for (const int axis : {XAxis, VoltageAxis, DigitalAxis, TemperatureAxis})
            texts.push_back(window->ZelGraph1->AxisTitle(axis).toStdString());
        return texts;
    };
    const auto expected = ElementsAre("Second", "AI Data", "DI Data", "Temperature Data");
    EXPECT_THAT(titles(), expected);
    SelectPorts(0, {0x01});
    TurnOnAI();
    TurnOnDI();
    StartPolling();
    EXPECT_THAT(titles(), expected);
    Tick(1);
    Click(window->BtnStart);
    EXPECT_THAT(titles(), expected);
}

} // namespace
} // namespace tracelet
