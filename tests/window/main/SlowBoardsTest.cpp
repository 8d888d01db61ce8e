// Polled sessions on boards whose reads may take long, or never return.

#include "tests/window/main/SoftwarePollingTest.h"

#include "tests/support/GatedBoards.h"
#include "window/ground/NoticeLine.h"
#include "window/ground/StatusLine.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Box = MessageBoxes::Box;

class SlowBoardsTest : public SoftwarePollingTest {
protected:
    SlowBoardsTest() { OpenGated(); }
    ~SlowBoardsTest() override {
        analog->gate.Open();
        digital->gate.Open();
        window.reset();
        boards = {};
        EXPECT_TRUE(QTest::qWaitFor([&] { return analog.use_count() == 1 && digital.use_count() == 1; }))
            << "the threads have let everything go";
    }

    void OpenGated() {
        BoardList list;
        list.analog.push_back({analog->info.name, "Test", "", false, analog});
        list.digital.push_back({digital->info.name, "Test", "", false, digital});
        Open(std::move(list));
    }

    void StartBoth() {
        SelectPorts(0, {0x01, 0x80});
        TurnOnAI();
        TurnOnDI();
        Record();
        StartPolling();
    }

    /// A tick of boards that answer; on a busy machine it may still come late.
    void TickThrough(std::uint32_t milliseconds = 100) {
        const std::int32_t scans = window->ScanCount;
        Tick(1, milliseconds);
        ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount == scans + 1; }, 20000));
    }

    /// A tick that does not get its values yet.
    void TickInVain(Gate& gate) {
        const int reads = gate.Reads();
        gate.Close();
        Tick(1);
        ASSERT_TRUE(QTest::qWaitFor([&] { return gate.Reads() == reads + 1; }, 20000));
    }

    [[nodiscard]] std::string Notice() const { return window->LabelNotice->text().toStdString(); }
    [[nodiscard]] std::string Status() const {
        window->ShowStatus();
        return window->LabelStatus->text().toStdString();
    }

    const std::shared_ptr<GatedAnalogBoard> analog = std::make_shared<GatedAnalogBoard>();
    const std::shared_ptr<GatedDigitalBoard> digital = std::make_shared<GatedDigitalBoard>();
};

TEST_F(SlowBoardsTest, AnswersAreTakenAsFromAnyBoard) {
    StartBoth();
    TickThrough(50);
    TickThrough(50);
    Click(window->BtnStart);
    EXPECT_NE(analog->gate.Reader(), std::this_thread::get_id());
    EXPECT_EQ(window->TickCount, 2);
    EXPECT_THAT(RecordedScans(), ElementsAre(0.5F, 0.5F));
    EXPECT_THAT(Bytes(window->szDIFileName), ElementsAre(0, 0, 0, 0, 2, 0, 0, 0, 16, 17, 16, 17));
    EXPECT_EQ(window->ZelGraph1->PointAt(0, 1), QPointF(0.1F, 0.5));
    EXPECT_EQ(window->ZelGraph1->PointAt(1, 1), QPointF(0.1, 0.0));
    EXPECT_EQ(Notice(), "");
}

TEST_F(SlowBoardsTest, BoardsThatAnswerAtOnceAreReadInPlace) {
    analog->info.mayBlock = digital->info.mayBlock = false;
    StartBoth();
    Tick(1);
    EXPECT_EQ(window->ScanCount, 1);
    EXPECT_EQ(analog->gate.Reader(), std::this_thread::get_id());
    EXPECT_EQ(digital->gate.Reader(), std::this_thread::get_id());
    Click(window->BtnStart);
}

TEST_F(SlowBoardsTest, LateAnswerCompletesItsTickAtItsOwnTime) {
    StartBoth();
    TickInVain(analog->gate);
    EXPECT_EQ(window->ScanCount, 0);
    Tick(3); // dropped
    EXPECT_EQ(window->TickCount, 1);
    EXPECT_EQ(analog->gate.Reads(), 1);
    now += 70;
    analog->gate.Open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount == 1; }, 20000));
    EXPECT_EQ(window->ZelGraph1->PointAt(0, 0).x(), 0.47F);
    EXPECT_EQ(window->ZelGraph1->PointAt(1, 0).x(), 0.47);
    TickThrough();
    EXPECT_EQ(window->TickCount, 2);
    Click(window->BtnStart);
    EXPECT_THAT(RecordedScans(), SizeIs(2));
    EXPECT_THAT(Bytes(window->szDIFileName), SizeIs(8 + 2 * 2));
}

TEST_F(SlowBoardsTest, LateFaultsAreFaults) {
    StartBoth();
    analog->fault = "No answer";
    TickInVain(analog->gate);
    analog->gate.Open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->LostScanCount == 1; }, 20000));
    EXPECT_EQ(Notice(), "Scans are being lost: No answer");
    EXPECT_THAT(Status(), testing::HasSubstr("Lost: 1 scan"));
    EXPECT_EQ(digital->gate.Reads(), 0);
    analog->fault.clear();
    digital->fault = "No ports";
    TickInVain(digital->gate);
    int readsDuringBox = 0;
    boxes.WhenNextOpens([&] {
        Tick(2); // dropped: the tick is still open
        readsDuringBox = digital->gate.Reads();
    });
    digital->gate.Open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"No ports", "SoftPoolTimerProc"}));
    EXPECT_EQ(readsDuringBox, 1);
    EXPECT_EQ(window->TickCount, 2);
    EXPECT_THAT(RecordedScans(), SizeIs(1));
    EXPECT_TRUE(window->BtnSaveAs->isEnabled());
}

TEST_F(SlowBoardsTest, StopDoesNotWaitForTheBoard) {
    StartBoth();
    TickThrough();
    TickInVain(analog->gate);
    Click(window->BtnStart);
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_EQ(window->ScanCount, 1);
    const auto project = Bytes(window->szProjectFileName);

    Click(window->BtnStart); // the read is still under way
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"The board does not answer", "BtnStart"}));
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_EQ(Bytes(window->szProjectFileName), project);

    analog->gate.Open();
    QTest::qWait(20);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 0); // cleared by the start, and nothing came
    EXPECT_THAT(RecordedScans(), SizeIs(1));
    for (int tries = 0; tries < 1000 && !window->isSystemRunning; ++tries) { // until the thread is through
        Click(window->BtnStart);
        (void)boxes.Take();
    }
    ASSERT_TRUE(window->isSystemRunning);
    window->ZelHiResTimerCtl1->SetTimerEnabled(frmMain::PollTimer, false);
    TickThrough();
    Click(window->BtnStart);
    EXPECT_THAT(RecordedScans(), SizeIs(1));
}

TEST_F(SlowBoardsTest, WindowClosesWhileTheBoardDoesNotAnswer) {
    StartBoth();
    TickInVain(digital->gate);
    window->close();
    EXPECT_FALSE(window->isSystemRunning);
    window.reset();
    EXPECT_THAT(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), IsEmpty());
}

TEST_F(SlowBoardsTest, SilenceIsToldUntilTheBoardAnswers) {
    StartBoth();
    TickInVain(analog->gate);
    EXPECT_EQ(Notice(), "");
    ASSERT_TRUE(QTest::qWaitFor([&] { return Notice() == "The board does not answer"; }, 20000));
    EXPECT_TRUE(window->isSystemRunning);
    analog->gate.Open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount == 1; }, 20000));
    EXPECT_EQ(Notice(), "");
    TickInVain(analog->gate);
    Click(window->BtnStart);
    QTest::qWait(2100); // a session that is over is silent by right
    EXPECT_EQ(Notice(), "");
}

} // namespace
} // namespace tracelet
