#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "tests/window/controls/BufferedInputTest.h"

namespace tracelet {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class SimulatedInputTest : public BufferedInputTest {
protected:
    SimulatedInputTest() {
        control->SetBoards(list);
        control->SetDeviceNumber(0);
    }

    // Sample of a stream over `channels` channels from 0 on.
    double Expected(std::uint64_t sample, std::int32_t channels) {
        ChannelSetup channel{static_cast<std::int32_t>(sample % static_cast<std::uint64_t>(channels)),
                             board->Info().ranges.front(), SingleEnded};
        const Signal signal =
            StreamSignal(board->Number(), channel.channel, control->SampleRate() / channels);
        const std::uint64_t scan = sample / static_cast<std::uint64_t>(channels);
        return control->DataType() == RawCounts ? SampledCount(board->ConverterOf(), channel, signal, scan)
                                                : SampledValue(board->ConverterOf(), channel, signal, scan);
    }

    void ExpectSamples(std::int32_t channels) {
        std::uint64_t next = 0;
        for (const Notification& notification : heard) {
            for (double sample : notification.samples)
                ASSERT_EQ(sample, static_cast<float>(Expected(next++, channels))) << next;
        }
    }

    BoardList list = SimulatedBoards();
    std::shared_ptr<SimulatedAnalogBoard> board =
        std::static_pointer_cast<SimulatedAnalogBoard>(list.analog.front().board);
};

TEST_F(SimulatedInputTest, StreamsAreTheBoardsSignals) {
    for (std::int32_t form : {1, 2}) {
        for (std::int32_t channels : {1, 3, 16, 64}) {
            heard.clear();
            control->SetDataType(form);
            control->SetScanChannelCount(channels);
            control->SetSampleRate(1e6);
            control->StartBufferedAI(4096, true);
            WaitFor(5);
            control->StopBufferedAI(0);
            ExpectSamples(channels);
        }
    }
}

TEST_F(SimulatedInputTest, AOneShotBufferEnds) {
    control->SetSampleRate(1e6);
    control->SetScanChannelCount(7);
    control->StartBufferedAI(20000, false);
    WaitFor(2);
    ExpectSilence();
    EXPECT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard.front().samples.size(), 9996U);
    ExpectSamples(7);
}

TEST_F(SimulatedInputTest, AnUnpluggedBoardEndsTheInput) {
    control->SetSampleRate(1e6);
    control->StartBufferedAI(4096, true);
    WaitFor(2);
    Faults faults;
    faults.unplugged = true;
    board->SetFaults(faults);
    ASSERT_TRUE(QTest::qWaitFor([&] { return heard.back().note == Note::Failed; }, 20000));
    EXPECT_EQ(control->ErrorText(), QStringLiteral("The board does not answer; it may have been unplugged"));
    ExpectSilence();
    EXPECT_THAT(heard, testing::Contains(Failed).Times(1));
    heard.pop_back();
    ExpectSamples(1);
    EXPECT_THROW(control->StartBufferedAI(4096, true), RunTimeError);
    EXPECT_EQ(control->ErrorText(), QStringLiteral("The board does not answer; it may have been unplugged"));
}

TEST_F(SimulatedInputTest, AReadErrorEndsTheInput) {
    Faults faults;
    faults.readError = "Parity error";
    board->SetFaults(faults);
    control->StartBufferedAI(4096, false);
    WaitFor(1);
    EXPECT_THAT(heard, ElementsAre(Failed));
    EXPECT_EQ(control->ErrorText(), QStringLiteral("Parity error"));
}

TEST_F(SimulatedInputTest, LostScansAreToldOnceAndTheInputGoesOn) {
    control->SetSampleRate(1e6);
    control->SetScanChannelCount(5);
    control->StartBufferedAI(4096, true);
    WaitFor(2);
    Faults faults;
    faults.lostScans = 777;
    board->SetFaults(faults);
    ASSERT_TRUE(QTest::qWaitFor([&] { return testing::Value(heard, testing::Contains(Overrun)); }, 20000));
    WaitFor(heard.size() + 3);
    EXPECT_THAT(heard, testing::Contains(Overrun).Times(1));
    for (const Notification& notification : heard)
        EXPECT_EQ(notification.samples.size(), notification == Overrun ? 0U : 2045U);
    control->StopBufferedAI(0);
}

TEST_F(SimulatedInputTest, AStopDoesNotWaitForASlowBoard) {
    Faults faults;
    faults.slow = 60s;
    board->SetFaults(faults);
    control->StartBufferedAI(4096, true);
    QTest::qWait(20);
    control->StopBufferedAI(0); // a minute would be noticed
    EXPECT_TRUE(heard.empty());
}

TEST_F(SimulatedInputTest, TheTopRateOverAllChannelsIsClampedAndRuns) {
    control->SetScanChannelCount(64);
    control->SetSampleRate(1e300);
    EXPECT_EQ(control->SampleRate(), 1e6);
    control->StartBufferedAI(500000, true);
    WaitFor(1);
    EXPECT_EQ(heard.front().samples.size(), 249984U);
}

} // namespace
} // namespace tracelet
