#include "core/drivers/simulated/SimulatedAnalogBoard.h"

#include "core/base/RunTimeError.h"
#include "core/boards/ConverterCounts.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "core/drivers/simulated/SimulatedSignals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <limits>
#include <thread>
#include <vector>

namespace tracelet {
namespace {

using std::chrono::milliseconds;
using testing::ThrowsMessage;

enum Catalogue : std::size_t { Plain, Swift, Small, HighGain6601, Tagged6602, HighGain6605, Isolated3605 };

class SimulatedAnalogTest : public testing::Test {
protected:
    SimulatedAnalogTest() { Use(Plain); }

    void Use(Catalogue which) {
        board = std::dynamic_pointer_cast<SimulatedAnalogBoard>(SimulatedBoards().analog[which].board);
        board->Open();
        board->SetPaced(false);
    }

    [[nodiscard]] std::vector<ChannelSetup> Channels(std::int32_t first, std::int32_t count,
                                                     std::size_t range = 0) const {
        std::vector<ChannelSetup> channels;
        for (std::int32_t i = 0; i < count; ++i)
            channels.push_back({first + i, board->Info().ranges[range],
                                board->Info().singleEnded ? SingleEnded : Differential});
        return channels;
    }

    [[nodiscard]] StreamSetup Stream(std::vector<ChannelSetup> channels, std::uint64_t total,
                                     SampleForm form = AnalogValues, double rate = 10000.0) const {
        StreamSetup setup;
        setup.sampleRate = board->SettleSampleRate(rate, static_cast<std::int32_t>(channels.size()));
        setup.channels = std::move(channels);
        setup.totalSamples = total;
        setup.form = form;
        return setup;
    }

    template <typename Sample>
    std::vector<Sample> Run(const StreamSetup& setup, std::size_t room) {
        board->StartStream(setup);
        std::vector<Sample> all;
        std::vector<Sample> buffer(room);
        StreamState state = StreamState::Running;
        while (state != StreamState::Ended) {
            const StreamRead read = board->ReadStream(std::span<Sample>(buffer));
            all.insert(all.end(), buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(read.count));
            state = read.state;
        }
        return all;
    }

    // The code of sample n of a stream, straight from the documented functions.
    [[nodiscard]] std::int32_t Code(const StreamSetup& setup, std::uint64_t n,
                                    std::uint64_t firstScan = 0) const {
        const std::size_t count = setup.channels.size();
        const ChannelSetup& channel = setup.channels[static_cast<std::size_t>(n % count)];
        const Signal signal =
            StreamSignal(board->Number(), channel.channel, setup.sampleRate / static_cast<double>(count));
        return CodeOf(SignalValue(signal, channel.range, firstScan + n / count), channel.range,
                      board->Info().resolution);
    }

    // A read of the running stream on a thread of its own, which has had time to begin.
    std::future<StreamRead> WaitingRead() {
        isReading = false;
        std::future<StreamRead> reading = std::async(std::launch::async, [&] {
            std::vector<float> buffer(16);
            isReading = true;
            return board->ReadStream(std::span<float>(buffer));
        });
        while (!isReading)
            std::this_thread::yield();
        std::this_thread::sleep_for(milliseconds(50));
        return reading;
    }

    std::vector<double> ReadScan(const std::vector<ChannelSetup>& channels) {
        std::vector<double> values(channels.size());
        board->ReadScan(channels, values);
        return values;
    }

    std::shared_ptr<SimulatedAnalogBoard> board;
    std::atomic<bool> isReading = false;
};

TEST_F(SimulatedAnalogTest, PolledScansFollowTheirOrdinal) {
    const std::vector<ChannelSetup> channels = Channels(0, 5);
    for (std::uint64_t ordinal = 0; ordinal < 120; ++ordinal) {
        EXPECT_EQ(board->ScansRead(), ordinal);
        const std::vector<double> values = ReadScan(channels);
        for (std::size_t i = 0; i < channels.size(); ++i) {
            const Signal signal = PolledSignal(0, channels[i].channel);
            const std::int32_t code =
                CodeOf(SignalValue(signal, channels[i].range, ordinal), channels[i].range, 16);
            EXPECT_EQ(values[i], ValueOf(code, channels[i].range, 16));
            EXPECT_EQ(values[i], board->PolledValue(channels[i], ordinal));
        }
    }
}

TEST_F(SimulatedAnalogTest, PolledValuesAreQuantisedAndClamped) {
    const std::vector<ChannelSetup> wide = Channels(1, 1);
    const std::vector<ChannelSetup> narrow = Channels(1, 1, 3);  // ±1.25 V
    EXPECT_EQ(ReadScan(wide)[0], -10.0 + 20.0 * 49152 / 65536);  // a square of 5 V
    EXPECT_EQ(ReadScan(narrow)[0], -1.25 + 2.5 * 65535 / 65536); // beyond the range's end
    const std::vector<ChannelSetup> current = Channels(1, 1, 6); // 4 ~ 20 mA
    EXPECT_EQ(ReadScan(current)[0], 4.0 + 16.0 * 65535 / 65536);
}

TEST_F(SimulatedAnalogTest, ScanOrderAndRepeatsAreKept) {
    std::vector<ChannelSetup> channels = Channels(0, 3);
    std::swap(channels[0], channels[2]);
    channels.push_back(channels[0]);
    const std::vector<double> values = ReadScan(channels);
    EXPECT_EQ(values[0], board->PolledValue(channels[0], 0));
    EXPECT_EQ(values[2], board->PolledValue(channels[2], 0));
    EXPECT_EQ(values[3], values[0]);
    EXPECT_NE(values[2], values[0]);
}

TEST_F(SimulatedAnalogTest, ScansThatFailAreNotCounted) {
    board->SetFaults({.readError = "Conversion timed out"});
    EXPECT_THAT([&] { ReadScan(Channels(0, 1)); }, ThrowsMessage<RunTimeError>("Conversion timed out"));
    board->SetFaults({});
    EXPECT_THROW(ReadScan(Channels(64, 1)), RunTimeError);
    EXPECT_EQ(board->ScansRead(), 0U);
}

TEST_F(SimulatedAnalogTest, MustBeOpened) {
    board = std::dynamic_pointer_cast<SimulatedAnalogBoard>(SimulatedBoards().analog[HighGain6601].board);
    EXPECT_THAT([&] { ReadScan(Channels(0, 1)); }, ThrowsMessage<RunTimeError>("The board is not open"));
    EXPECT_THROW(board->StartStream(Stream(Channels(0, 1), 1)), RunTimeError);
    EXPECT_THROW((void)board->ReadThermocouple(Channels(0, 1)[0], 0, ThermocoupleType::K), RunTimeError);
}

TEST_F(SimulatedAnalogTest, StreamsAreExactForEveryBoardFormAndBuffer) {
    for (const Catalogue which :
         {Plain, Swift, Small, HighGain6601, Tagged6602, HighGain6605, Isolated3605}) {
        Use(which);
        for (const std::int32_t count : {1, 3, 8}) {
            for (const std::size_t room : {std::size_t{7}, std::size_t{5000}, std::size_t{20000}}) {
                const StreamSetup raw = Stream(Channels(0, count), 30001, RawCounts);
                StreamSetup scaled = raw;
                scaled.form = AnalogValues;
                const std::vector<std::int16_t> counts = Run<std::int16_t>(raw, room);
                const std::vector<float> values = Run<float>(scaled, room);
                ASSERT_EQ(counts.size(), 30001U);
                ASSERT_EQ(values.size(), 30001U);
                for (std::size_t n = 0; n < counts.size(); ++n) {
                    const std::int32_t code = Code(raw, n);
                    const double value =
                        ValueOf(code, raw.channels[n % raw.channels.size()].range, board->Info().resolution);
                    ASSERT_EQ(CodeOfCount(counts[n], board->Info().resolution), code) << n;
                    ASSERT_EQ(values[n], static_cast<float>(value)) << n;
                }
            }
        }
    }
}

TEST_F(SimulatedAnalogTest, SixteenBitCountsAreSigned) {
    const std::vector<std::int16_t> counts =
        Run<std::int16_t>(Stream(Channels(0, 4), 65536, RawCounts), 65536);
    EXPECT_THAT(counts, testing::Contains(testing::Lt(0)));
    EXPECT_THAT(counts, testing::Contains(testing::Gt(0)));
    EXPECT_EQ(counts[0], 0);      // the sine's first sample, 0 V
    EXPECT_EQ(counts[1], 16384);  // the square's, 5 V of 10
    EXPECT_EQ(counts[2], -16384); // the triangle's, -5 V
}

TEST_F(SimulatedAnalogTest, CountsOfThe6602CarryTheirChannel) {
    Use(Tagged6602);
    const std::vector<std::int16_t> counts = Run<std::int16_t>(Stream(Channels(0, 16), 1600, RawCounts), 512);
    for (std::size_t n = 0; n < counts.size(); ++n)
        ASSERT_EQ((counts[n] >> 12) & 15, static_cast<int>(n % 16));
    EXPECT_THAT(counts, testing::Contains(testing::Lt(0))); // channels 8 to 15 set the sign
}

TEST_F(SimulatedAnalogTest, StreamTakesItsChannelsInScanOrder) {
    std::vector<ChannelSetup> channels = Channels(0, 3);
    std::swap(channels[0], channels[2]);
    channels[1].range = board->Info().ranges[5]; // 0 ~ 20 mA
    const StreamSetup setup = Stream(channels, 600);
    const std::vector<float> values = Run<float>(setup, 100);
    for (std::size_t n = 0; n < values.size(); ++n)
        ASSERT_EQ(values[n], static_cast<float>(ValueOf(Code(setup, n), setup.channels[n % 3].range, 16)));
}

TEST_F(SimulatedAnalogTest, TriggeredStreamsBeginAtTheirFirstScan) {
    StreamSetup setup = Stream(Channels(0, 2), 200, AnalogValues, 2000.0);
    for (const TriggerSetup& trigger :
         {TriggerSetup{1, 0, 1, 4.9, 0.0, 0.0}, TriggerSetup{2, 1, 1, 2.0, 30.0, 0.0},
          TriggerSetup{3, 0, 1, 4.9, 0.0, 90.0}}) {
        setup.trigger = trigger;
        const std::uint64_t firstScan = FirstScan(0, setup).value();
        EXPECT_GT(firstScan, 0U);
        const std::vector<float> values = Run<float>(setup, 64);
        ASSERT_EQ(values.size(), 200U);
        for (std::size_t n = 0; n < values.size(); ++n)
            ASSERT_EQ(values[n], static_cast<float>(
                                     ValueOf(Code(setup, n, firstScan), setup.channels[n % 2].range, 16)));
    }
}

TEST_F(SimulatedAnalogTest, TriggerThatNeverComesWaitsForTheStop) {
    StreamSetup setup = Stream(Channels(0, 1), 100);
    setup.trigger = {1, 0, 1, 9.0, 0.0, 0.0};
    board->StartStream(setup);
    std::vector<float> buffer(16);
    const StreamRead read = board->ReadStream(std::span<float>(buffer));
    EXPECT_EQ(read.count, 0U);
    EXPECT_EQ(read.state, StreamState::Running);
    board->StopStream();
    EXPECT_EQ(board->ReadStream(std::span<float>(buffer)).state, StreamState::Ended);
}

TEST_F(SimulatedAnalogTest, RefusesTriggersThatDoNotExist) {
    StreamSetup setup = Stream(Channels(0, 1), 100);
    for (const TriggerSetup& trigger :
         {TriggerSetup{4, 0, 0, 0, 0, 0}, TriggerSetup{-1, 0, 0, 0, 0, 0}, TriggerSetup{1, 0, 5, 0, 0, 0},
          TriggerSetup{1, 0, -1, 0, 0, 0}, TriggerSetup{2, 0, 0, 0, -1.0, 0},
          TriggerSetup{2, 0, 0, 0, 1e300, 0}}) {
        setup.trigger = trigger;
        EXPECT_THROW(board->StartStream(setup), RunTimeError) << trigger.mode << ' ' << trigger.source;
    }
    setup.trigger = {};
    EXPECT_EQ(Run<float>(setup, 16).size(), 100U);
}

TEST_F(SimulatedAnalogTest, PlainBoardRunsAtEveryWholeRate) {
    for (const double rate : {1.0, 999.0, 12345.0, 24999.0, 25000.0, 999999.0, 1e6})
        EXPECT_EQ(board->SettleSampleRate(rate, 1), rate);
    EXPECT_EQ(board->SettleSampleRate(1000.00049, 1), 1000.0);
    EXPECT_EQ(board->SettleSampleRate(1e300, 64), 1e6);
    EXPECT_EQ(board->SettleSampleRate(std::numeric_limits<double>::infinity(), 64), 1e6);
    EXPECT_EQ(board->SettleSampleRate(1e-300, 64), 0.1);
}

TEST_F(SimulatedAnalogTest, OtherBoardsDivideTheirClock) {
    Use(Small); // 10 MHz
    EXPECT_EQ(board->SettleSampleRate(1000.0, 1), 1000.0);
    EXPECT_EQ(board->SettleSampleRate(30000.0, 1), 10e6 / 333);
    EXPECT_EQ(board->SettleSampleRate(24999.0, 1), 25000.0);
    EXPECT_EQ(board->SettleSampleRate(1e9, 1), 1e5);
    Use(Swift); // 20 MHz
    EXPECT_EQ(board->SettleSampleRate(1e300, 16), 20e6);
    EXPECT_EQ(board->SettleSampleRate(9e6, 16), 10e6);
}

TEST_F(SimulatedAnalogTest, PacedStreamKeepsToTheClock) {
    board->SetPaced(true);
    const auto start = std::chrono::steady_clock::now();
    board->StartStream(Stream(Channels(0, 2), 0, AnalogValues, 100000.0));
    std::vector<float> buffer(1 << 20);
    std::size_t received = 0;
    while (received < 5000)
        received += board->ReadStream(std::span<float>(buffer)).count;
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_LE(static_cast<double>(received), elapsed.count() * 100000.0); // never ahead of time
    board->StopStream();
}

TEST_F(SimulatedAnalogTest, LateReaderFindsEverything) {
    board->SetPaced(true);
    const StreamSetup setup = Stream(Channels(0, 3), 0, AnalogValues, 300000.0);
    const auto start = std::chrono::steady_clock::now();
    board->StartStream(setup);
    std::this_thread::sleep_for(milliseconds(120));
    const std::chrono::duration<double> slept = std::chrono::steady_clock::now() - start;
    std::vector<float> buffer(1 << 20);
    const StreamRead read = board->ReadStream(std::span<float>(buffer));
    EXPECT_EQ(read.state, StreamState::Running);
    EXPECT_GE(static_cast<double>(read.count), 0.9 * std::min(slept.count() * 300000.0, 1048576.0));
    for (std::size_t n = 0; n < read.count; n += 17)
        ASSERT_EQ(buffer[n], static_cast<float>(ValueOf(Code(setup, n), setup.channels[n % 3].range, 16)));
    board->StopStream();
}

TEST_F(SimulatedAnalogTest, SlowStreamHandsBackEmptyReads) {
    board->SetPaced(true);
    board->StartStream(Stream(Channels(0, 1), 0, AnalogValues, 0.1));
    std::vector<float> buffer(16);
    const StreamRead read = board->ReadStream(std::span<float>(buffer));
    EXPECT_EQ(read.count, 0U);
    EXPECT_EQ(read.state, StreamState::Running);
    board->StopStream();
}

TEST_F(SimulatedAnalogTest, StopWakesAWaitingReader) {
    board->SetFaults({.slow = std::chrono::hours(24)});
    board->StartStream(Stream(Channels(0, 1), 0));
    std::future<StreamRead> reading = WaitingRead();
    board->StopStream();
    const StreamRead read = reading.get(); // a day later if the stop did not wake it
    EXPECT_EQ(read.count, 0U);
    EXPECT_EQ(read.state, StreamState::Ended);
}

TEST_F(SimulatedAnalogTest, ReaderOfAStoppedStreamDoesNotTakeFromTheNext) {
    board->SetFaults({.slow = std::chrono::hours(24)});
    board->StartStream(Stream(Channels(0, 1), 0));
    std::future<StreamRead> reading = WaitingRead();
    board->StopStream();
    board->SetFaults({});
    board->StartStream(Stream(Channels(0, 1), 0));
    const StreamRead read = reading.get();
    EXPECT_EQ(read.count, 0U);
    EXPECT_EQ(read.state, StreamState::Ended);
    board->StopStream();
}

TEST_F(SimulatedAnalogTest, OverrunLosesWholeScansOnce) {
    const StreamSetup setup = Stream(Channels(0, 3), 0);
    board->StartStream(setup);
    std::vector<float> buffer(100); // ends inside a scan
    EXPECT_EQ(board->ReadStream(std::span<float>(buffer)).state, StreamState::Running);
    board->SetFaults({.lostScans = 50});
    const StreamRead read = board->ReadStream(std::span<float>(buffer));
    EXPECT_EQ(read.count, 100U);
    EXPECT_EQ(read.state, StreamState::Overrun);
    EXPECT_EQ(board->ReadStream(std::span<float>(buffer)).state, StreamState::Running);
    for (std::size_t i = 0; i < buffer.size(); ++i) {
        const std::size_t n = 200 + 50 * 3 + i;
        ASSERT_EQ(buffer[i], static_cast<float>(ValueOf(Code(setup, n), setup.channels[n % 3].range, 16)));
    }
    board->StopStream();
}

TEST_F(SimulatedAnalogTest, StreamStandsStillWhereItIsTold) {
    board->StandStillAfter(30);
    for (const bool paced : {false, true}) {
        board->SetPaced(paced);
        const StreamSetup setup = Stream(Channels(0, 3), 0, AnalogValues, 300000.0);
        board->StartStream(setup);
        std::vector<float> buffer(200);
        std::size_t count = 0;
        for (int reads = 0; reads < 3; ++reads) {
            const StreamRead read = board->ReadStream(std::span<float>(buffer).subspan(count));
            EXPECT_EQ(read.state, StreamState::Running);
            count += read.count;
        }
        EXPECT_EQ(count, 90U);
        EXPECT_EQ(buffer[89], static_cast<float>(ValueOf(Code(setup, 89), setup.channels[2].range, 16)));
        board->SetFaults({.lostScans = 50}); // past the end
        EXPECT_EQ(board->ReadStream(std::span<float>(buffer)).count, 0U);
        EXPECT_EQ(board->ReadStream(std::span<float>(buffer)).count, 0U);
        board->StopStream();
    }
}

TEST_F(SimulatedAnalogTest, ReadErrorShowsInTheStream) {
    board->StartStream(Stream(Channels(0, 1), 0));
    std::vector<float> buffer(16);
    EXPECT_EQ(board->ReadStream(std::span<float>(buffer)).count, 16U);
    board->SetFaults({.readError = "DMA halted"});
    EXPECT_THAT([&] { (void)board->ReadStream(std::span<float>(buffer)); },
                ThrowsMessage<RunTimeError>("DMA halted"));
    board->SetFaults({.unplugged = true});
    EXPECT_THROW((void)board->ReadStream(std::span<float>(buffer)), RunTimeError);
    board->StopStream(); // never fails
    EXPECT_EQ(board->ReadStream(std::span<float>(buffer)).state, StreamState::Ended);
}

TEST_F(SimulatedAnalogTest, UnpluggedBoardRefusesEverything) {
    const StreamSetup setup = Stream(Channels(0, 1), 1);
    board->SetFaults({.unplugged = true});
    EXPECT_THROW(board->Open(), RunTimeError);
    EXPECT_THROW(ReadScan(Channels(0, 1)), RunTimeError);
    EXPECT_THROW((void)board->SettleSampleRate(1000.0, 1), RunTimeError);
    EXPECT_THROW(board->StartStream(setup), RunTimeError);
    EXPECT_EQ(board->Info().channelCount, 64);
}

TEST_F(SimulatedAnalogTest, RefusalsCarryTheirText) {
    const StreamSetup setup = Stream(Channels(0, 1), 1);
    board->SetFaults({.refusedRate = "Clock in use"});
    EXPECT_THAT([&] { (void)board->SettleSampleRate(1000.0, 1); },
                ThrowsMessage<RunTimeError>("Clock in use"));
    board->SetFaults({.refusedStart = "No interrupt"});
    EXPECT_THAT([&] { board->StartStream(setup); }, ThrowsMessage<RunTimeError>("No interrupt"));
    board->SetFaults({});
    EXPECT_EQ(Run<float>(setup, 16).size(), 1U);
}

TEST_F(SimulatedAnalogTest, EmptyBufferTakesNothing) {
    board->StartStream(Stream(Channels(0, 1), 5));
    const StreamRead read = board->ReadStream(std::span<float>());
    EXPECT_EQ(read.count, 0U);
    EXPECT_EQ(read.state, StreamState::Running);
    board->StopStream();
}

TEST_F(SimulatedAnalogTest, LongestOneShotAndFullScanAtTopRateStart) {
    Use(Swift);
    StreamSetup setup = Stream(Channels(0, 16), 2147483647, AnalogValues, 1e300);
    board->StartStream(setup);
    std::vector<float> buffer(1000);
    EXPECT_EQ(board->ReadStream(std::span<float>(buffer)).count, 1000U);
    board->StopStream();
}

} // namespace
} // namespace tracelet
