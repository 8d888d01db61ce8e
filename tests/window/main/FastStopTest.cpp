// What the end of a fast session keeps.

#include "core/base/LittleEndian.h"
#include "tests/support/FakeBoard.h"
#include "tests/support/MainWindowTest.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/NoticeLine.h"

#include <thread>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class FastStopTest : public MainWindowTest {
protected:
    FastStopTest() {
        BoardList list;
        list.analog.push_back(EntryOf(fake));
        Open(std::move(list));
        window->M1.SoftMode = false;
        TurnOnAI();
        Click(window->CkAISave2Disk);
    }
    ~FastStopTest() override { fake->Release(); }

    void Start(bool cyclic) {
        window->bFAICyclic = cyclic;
        Click(window->BtnStart);
        ASSERT_TRUE(window->isSystemRunning);
        projectBytes = Bytes(window->szProjectFileName).size();
    }

    // Lets the board deliver while the window is frozen.
    void Deliver(std::uint64_t samples) {
        fake->Feed(samples);
        for (int i = 0; i < 20000 && (fake->SamplesRead() < samples || fake->HasNews()); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::this_thread::sleep_for(std::chrono::milliseconds(10)); // for the reading thread to queue it
        ASSERT_EQ(window->ScanCount, 0);
    }

    // The session has ended, with so many samples of one channel and one stop record that says so.
    void ExpectRecorded(std::uint64_t samples) {
        EXPECT_FALSE(window->isSystemRunning);
        EXPECT_EQ(window->BtnStart->text(), u"Start"_s);
        EXPECT_FALSE(window->FAIFileHandle.IsOpen());
        EXPECT_EQ(window->ScanCount, static_cast<std::int32_t>(samples));
        const std::vector<std::uint8_t> data = Bytes(window->szFAIFileName);
        ASSERT_THAT(data, SizeIs(4 * samples));
        const auto view = std::as_bytes(std::span(data));
        for (std::size_t i = 0; i < samples; ++i) {
            const double sample = window->ZelAI1->DataType() == RawCounts
                                      ? ReadLittleEndian<std::int32_t>(view, 4 * i)
                                      : static_cast<double>(ReadLittleEndian<float>(view, 4 * i));
            ASSERT_EQ(sample, static_cast<double>(i));
        }
        const std::vector<std::uint8_t> project = Bytes(window->szProjectFileName);
        ASSERT_THAT(project, SizeIs(projectBytes + 12));
        EXPECT_EQ(ReadLittleEndian<std::int32_t>(std::as_bytes(std::span(project)), projectBytes),
                  window->ScanCount);
    }

    std::shared_ptr<FakeBoard> fake = std::make_shared<FakeBoard>();
    std::size_t projectBytes = 0;
};

TEST_F(FastStopTest, StopKeepsWhatWaitsBehindAFrozenWindow) {
    for (const std::int32_t form : {AnalogValues, RawCounts}) {
        window->ZelAI1->SetDataType(form);
        Start(true);
        Deliver(3 * 2048 + 321);
        Click(window->BtnStart);
        ExpectRecorded(3 * 2048 + 321);
        EXPECT_EQ(window->ZelGraph1->PointCount(0), 3 * 2048 + 321);
        EXPECT_TRUE(window->BtnSaveAs->isEnabled());
        EXPECT_EQ(window->LabelNotice->text(), QString());
    }
}

TEST_F(FastStopTest, StopKeepsASessionThatIsShorterThanAHalf) {
    Start(true);
    Deliver(7);
    Click(window->BtnStart);
    ExpectRecorded(7);
}

TEST_F(FastStopTest, OneShotThatIsStoppedEarlyEndsOnce) {
    for (const std::uint64_t delivered : {100, 2048, 3000, 4096}) {
        Start(false);
        Deliver(delivered);
        Click(window->BtnStart);
        ExpectRecorded(delivered);
        QTest::qWait(30);
        ExpectRecorded(delivered);
    }
}

TEST_F(FastStopTest, StopTellsLossesThatWait) {
    window->ZelAI1->SetQueueLimit(6 * 2048 * sizeof(float));
    Start(true);
    Deliver(40 * 2048);
    EXPECT_EQ(window->OverrunCount, 0);
    Click(window->BtnStart);
    EXPECT_EQ(window->OverrunCount, 1);
    EXPECT_GE(window->ScanCount, 6 * 2048);
}

TEST_F(FastStopTest, FailureKeepsWhatCameBefore) {
    for (const bool cyclic : {true, false}) {
        fake->Feed(3000);
        fake->FailNext("The board was unplugged");
        Start(cyclic);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
        ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeModalWidget() == nullptr; }, 20000));
        EXPECT_THAT(boxes.Take(), ElementsAre(MessageBoxes::Box{"The board was unplugged", "BtnStart"}));
        ExpectRecorded(3000);
    }
}

TEST_F(FastStopTest, FailureThatWaitsIsToldAtTheFoot) {
    fake->Feed(3000);
    fake->FailNext("The board was unplugged");
    Start(true);
    Deliver(0);
    Click(window->BtnStart);
    ExpectRecorded(3000);
    EXPECT_EQ(window->LabelNotice->text(), u"The board was unplugged"_s);
}

TEST_F(FastStopTest, BoardThatHangsIsGivenUpAndRefusedUntilItIsBack) {
    Start(true);
    Deliver(3000);
    fake->HangIn(true, true);
    Click(window->BtnStart);
    ExpectRecorded(3000);
    const char* const noAnswer = "The board does not answer; it can be used again once it does";
    EXPECT_EQ(window->LabelNotice->text(), QLatin1String(noAnswer));
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(MessageBoxes::Box{noAnswer, "BtnStart"}));
    EXPECT_FALSE(window->isSystemRunning);
    fake->Release();
    const auto isBack = [this] {
        Click(window->BtnStart);
        (void)boxes.Take();
        return window->isSystemRunning;
    };
    ASSERT_TRUE(QTest::qWaitFor(isBack, 20000));
    projectBytes = Bytes(window->szProjectFileName).size();
    Deliver(2048);
    Click(window->BtnStart);
    ExpectRecorded(2048);
}

// A message box of a notification runs the event loop, from which the user may stop.
TEST_F(FastStopTest, StopDuringAStopWaitsForIt) {
    Start(true);
    Deliver(3000);
    int halves = 0;
    QObject::connect(window->ZelAI1, &ZelAI::OnSecondBufferChange, window.get(), [&] {
        ++halves;
        Click(window->BtnStart);
        EXPECT_TRUE(window->isSystemRunning);
    });
    Click(window->BtnStart);
    EXPECT_EQ(halves, 1);
    ExpectRecorded(3000);
}

} // namespace
} // namespace tracelet
