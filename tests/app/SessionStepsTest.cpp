// The order of a session's steps: what stands while a message is open, and what a start that fails leaves.

#include "tests/support/MainWindowTest.h"

#include "devices/display/ZelGraph.h"

#include <QDir>
#include <QFile>

#include <new>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
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
    // The recording that was there is gone; a start that failed has no count of scans.
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
    EXPECT_THAT(Bytes(window->szProjectFileName), SizeIs(16));
    EXPECT_THAT(Bytes(window->szFAIFileName), SizeIs(0));

    AnalogBoardInUse().SetFaults({});
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
    EXPECT_EQ(window->ScanCount, 4096);
    EXPECT_THAT(Bytes(window->szProjectFileName), SizeIs(16 + 12));
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

TEST_F(SessionSteps, FailedPolledStartShowsTheAnalogControlsText) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    Faults faults;
    faults.readError = "The converter is too hot";
    AnalogBoardInUse().SetFaults(faults);
    StartPolling();
    Tick(1);
    Click(window->BtnStart);
    TurnOnAI();
    TurnOnDI();
    window->ZelDIO1->SetDeviceNumber(-1);
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"The converter is too hot", "BtnStart"}));
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
    for (const std::int32_t interval : {0, -5}) {
        window->nTimerInterval = interval;
        Click(window->BtnStart);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Device start failed", "BtnStart"})) << interval;
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
