#include "tests/window/controls/BufferedInputTest.h"
#include "window/controls/ZelDIO.h"
#include "window/controls/ZelThermo.h"

#include <limits>

// Boards whose drivers do not keep to what is asked of them.

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

const auto NoAnswer =
    ThrowsMessage<RunTimeError>("The board does not answer; it can be used again once it does");
const auto Unexplained = ThrowsMessage<RunTimeError>("The board's driver failed without saying why");

class DriverFaultsTest : public BufferedInputTest {
protected:
    ~DriverFaultsTest() override { fake->Release(); }

    void ExpectGone() {
        EXPECT_THAT([&] { control->StartBufferedAI(8, true); }, NoAnswer);
        EXPECT_THAT([&] { (void)control->ReadChannels(); }, NoAnswer);
        EXPECT_THAT([&] { control->SetSampleRate(1000.0); }, NoAnswer);
        control->SetDeviceNumber(1);
        EXPECT_THAT([&] { control->SetDeviceNumber(0); }, NoAnswer);
        EXPECT_EQ(control->DeviceNumber(), 1);
    }

    void ExpectBack() {
        const auto isBack = [this] {
            try {
                control->SetDeviceNumber(0);
                return true;
            } catch (const RunTimeError&) {
                return false;
            }
        };
        ASSERT_TRUE(QTest::qWaitFor(isBack, 20000));
        heard.clear();
        control->StartBufferedAI(8, true);
        fake->Feed(4);
        WaitFor(1);
        EXPECT_THAT(heard, ElementsAre(First(0, 4)));
        EXPECT_TRUE(Stop());
    }
};

TEST_F(DriverFaultsTest, AReadThatDoesNotReturnIsLeftToItself) {
    control->StartBufferedAI(8, true);
    fake->Feed(6);
    WaitUntilRead(6);
    fake->HangIn(true, false);
    WaitForReads(1);
    EXPECT_FALSE(Stop());
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 2))) << "what had come is kept";
    EXPECT_EQ(control->ErrorText(),
              QStringLiteral("The board does not answer; it can be used again once it does"));
    EXPECT_TRUE(Stop()) << "told once";
    ExpectGone();
    fake->Release();
    ExpectBack();
}

TEST_F(DriverFaultsTest, AStopThatDoesNotReturnIsLeftToItself) {
    control->StartBufferedAI(8, true);
    fake->Feed(6);
    WaitUntilRead(6);
    fake->HangIn(false, true);
    EXPECT_FALSE(Stop());
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 2)));
    ExpectGone();
    fake->Release();
    ExpectBack();
}

TEST_F(DriverFaultsTest, ABoardThatDoesNotEndItsOneShotBufferIsToldAtTheStop) {
    fake->HangIn(false, true);
    control->StartBufferedAI(8, false);
    fake->Feed(8);
    WaitFor(2);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4)));
    EXPECT_FALSE(Stop());
    ExpectGone();
    fake->Release();
    ExpectBack();
}

TEST_F(DriverFaultsTest, TheControlMayGoBeforeABoardThatHangs) {
    control->StartBufferedAI(8, true);
    fake->HangIn(true, true);
    WaitForReads(1);
    control.reset();
    const std::weak_ptr<FakeBoard> board = fake;
    boards = {};
    std::exchange(fake, std::make_shared<FakeBoard>())->Release();
    for (int i = 0; i < 20000 && !board.expired(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_TRUE(board.expired()) << "its threads let it go when they returned";
}

TEST_F(DriverFaultsTest, MoreSamplesThanWereAskedForFail) {
    for (const std::size_t claimed : {std::size_t{1}, std::numeric_limits<std::size_t>::max() / 2}) {
        heard.clear();
        fake->Claim(claimed);
        control->StartBufferedAI(8, false); // the room ends with the half
        fake->Feed(4);
        WaitFor(1);
        EXPECT_THAT(heard, ElementsAre(Failed));
        EXPECT_EQ(control->ErrorText(),
                  QStringLiteral("The board's driver delivered more samples than it was asked for"));
        EXPECT_TRUE(Stop());
    }
}

TEST_F(DriverFaultsTest, ThrowingWhatIsNoExceptionFailsTheInput) {
    control->StartBufferedAI(8, true);
    fake->Feed(4);
    WaitFor(1);
    fake->ThrowNumbers(true);
    WaitFor(2);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Failed));
    EXPECT_EQ(control->ErrorText(), QStringLiteral("The board's driver failed without saying why"));
    EXPECT_TRUE(Stop());
}

TEST_F(DriverFaultsTest, ThrowingWhatIsNoExceptionFailsEveryCall) {
    fake->info.thermocouples = true;
    ZelThermo thermo;
    thermo.SetBoards(boards);
    thermo.SetDeviceNumber(0);
    fake->ThrowNumbers(true);
    EXPECT_THAT([&] { control->StartBufferedAI(8, true); }, Unexplained);
    EXPECT_THAT([&] { (void)control->ReadChannels(); }, Unexplained);
    EXPECT_THAT([&] { control->SetSampleRate(1000.0); }, Unexplained);
    EXPECT_THAT([&] { control->SetScanChannelCount(2); }, Unexplained);
    EXPECT_THAT([&] { (void)thermo.Temperature(); }, Unexplained);
    thermo.SetDeviceNumber(-1);
    EXPECT_THAT([&] { thermo.SetDeviceNumber(0); }, Unexplained);
    control->SetDeviceNumber(1);
    EXPECT_THAT([&] { control->SetDeviceNumber(0); }, Unexplained);
}

class NumberThrowingPorts final : public DigitalBoard {
public:
    [[nodiscard]] const DigitalBoardInfo& Info() const override { return info; }
    void Open() override { Throw(); }
    void ReadPorts(std::int32_t, std::span<std::uint8_t>) override { Throw(); }

    bool throws = false;

private:
    void Throw() const {
        if (throws)
            throw 42;
    }
    DigitalBoardInfo info{"Ports", "Fakes", false, 2};
};

TEST(DigitalDriverFaultsTest, ThrowingWhatIsNoExceptionFailsEveryCall) {
    auto ports = std::make_shared<NumberThrowingPorts>();
    BoardList list;
    list.digital.push_back({"Ports", "Fakes", "", false, ports});
    ZelDIO control;
    control.SetBoards(list);
    control.SetDeviceNumber(0);
    ports->throws = true;
    std::vector<std::uint8_t> states;
    EXPECT_FALSE(control.ReadPorts(0, 1, states));
    EXPECT_EQ(control.ErrorText(), QStringLiteral("The board's driver failed without saying why"));
    control.SetDeviceNumber(-1);
    EXPECT_THAT([&] { control.SetDeviceNumber(0); }, Unexplained);
}

TEST_F(DriverFaultsTest, ReadsThatComeBackEmptyAtOnceAreSpacedOut) {
    fake->BeHasty();
    control->StartBufferedAI(8, true);
    QTest::qWait(200);
    EXPECT_LT(fake->Reads(), 1000); // hundreds of thousands if they followed each other
    fake->Feed(12);
    WaitFor(3);
    EXPECT_THAT(heard, ElementsAre(First(0, 4), Second(4, 4), First(8, 4)));
    EXPECT_TRUE(Stop());
}

TEST_F(DriverFaultsTest, ARateThatIsNoneIsRefusedWhereItIsSettled) {
    const double before = control->SampleRate();
    for (const auto& [settled, text] : std::vector<std::pair<double, const char*>>{
             {0.0, "0"}, {-1000.0, "-1000"}, {std::nan(""), "nan"}, {HUGE_VAL, "inf"}, {-HUGE_VAL, "-inf"}}) {
        const auto refusal =
            ThrowsMessage<RunTimeError>(std::string("The board settles on a sample rate of ") + text +
                                        " Hz, at which nothing can be measured");
        fake->settledRate = settled;
        EXPECT_THAT([&] { control->SetSampleRate(1000.0); }, refusal);
        EXPECT_THAT([&] { control->SetScanChannelCount(2); }, refusal);
        EXPECT_EQ(control->SampleRate(), before);
        EXPECT_EQ(control->ScanChannelCount(), 1);
        control->SetDeviceNumber(1);
        EXPECT_THAT([&] { control->SetDeviceNumber(0); }, refusal);
        fake->settledRate.reset();
        control->SetDeviceNumber(0);
    }
}

// The thread of a real board is raised as far as the system permits, that of a simulated one is not.
TEST_F(DriverFaultsTest, OnlyRealBoardsAreReadWithPriority) {
    int permitted = SCHED_OTHER;
    std::thread([&] {
        sched_param param{};
        param.sched_priority = sched_get_priority_min(SCHED_RR);
        if (sched_setscheduler(0, SCHED_RR, &param) == 0)
            permitted = SCHED_RR;
    }).join();
    for (const bool simulated : {false, true}) {
        fake->info.simulated = simulated;
        control->StartBufferedAI(8, true);
        fake->Feed(4);
        WaitUntilRead(4);
        EXPECT_EQ(fake->ReadingPolicy(), simulated ? SCHED_OTHER : permitted);
        EXPECT_TRUE(Stop());
    }
}

} // namespace
} // namespace tracelet
