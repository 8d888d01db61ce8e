#include "tests/core/boards/BoardContract.h"

#include "core/base/RunTimeError.h"
#include "core/boards/ConverterCounts.h"
#include "core/boards/Thermocouple.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <set>
#include <thread>
#include <vector>

namespace tracelet {

ChannelSetup AnalogBoardContract::Plain(std::int32_t channel) const {
    const AnalogBoardInfo& info = board->Info();
    return {channel, info.ranges.front(), info.singleEnded ? SingleEnded : Differential};
}

std::vector<ChannelSetup> AnalogBoardContract::Scan(std::int32_t count) const {
    std::vector<ChannelSetup> channels;
    for (std::int32_t channel = 0; channel < count; ++channel)
        channels.push_back(Plain(channel));
    return channels;
}

StreamSetup AnalogBoardContract::Stream(std::int32_t count, std::uint64_t totalSamples,
                                        SampleForm form) const {
    StreamSetup setup;
    setup.channels = Scan(count);
    setup.sampleRate = board->SettleSampleRate(20000.0, count);
    setup.totalSamples = totalSamples;
    setup.form = form;
    return setup;
}

namespace {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AnalogBoardContract);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(DigitalBoardContract);

// A value may reach a range's ends, and noise may take a step or two beyond.
void ExpectWithin(double value, const InputRange& range) {
    const double slack = (range.second - range.first) / 100.0;
    EXPECT_GE(value, range.first - slack);
    EXPECT_LE(value, range.second + slack);
}

// Reads a stream to its end with buffers of `room` samples.
template <typename Sample>
std::vector<Sample> ReadToEnd(AnalogBoard& board, std::size_t room) {
    std::vector<Sample> all;
    std::vector<Sample> buffer(room);
    while (true) {
        const StreamRead read = board.ReadStream(std::span<Sample>(buffer));
        EXPECT_LE(read.count, room);
        EXPECT_NE(read.state, StreamState::Overrun);
        all.insert(all.end(), buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(read.count));
        if (read.state == StreamState::Ended)
            return all;
    }
}

TEST_P(AnalogBoardContract, InfoIsSane) {
    const AnalogBoardInfo& info = board->Info();
    EXPECT_FALSE(info.name.empty());
    EXPECT_FALSE(info.driver.empty());
    EXPECT_GE(info.resolution, 8);
    EXPECT_LE(info.resolution, 16);
    EXPECT_GE(info.channelCount, 1);
    EXPECT_TRUE(info.singleEnded || info.differential);
    EXPECT_GT(info.lowestRate, 0.0);
    EXPECT_GE(info.highestRate, info.lowestRate);
    ASSERT_FALSE(info.ranges.empty());
    std::set<std::int32_t> codes;
    std::set<std::pair<double, double>> limits;
    for (const InputRange& range : info.ranges) {
        EXPECT_LT(range.first, range.second);
        EXPECT_FALSE(info.noFamily && range.unit == RangeUnit::Unstated) << range.second;
        EXPECT_TRUE(codes.insert(range.code).second) << "code twice: " << range.code;
        EXPECT_TRUE(limits.insert({range.first, range.second}).second) << "limits twice: " << range.second;
    }
}

TEST_P(AnalogBoardContract, OpensAgainWithoutHarm) {
    board->Open();
    double value = 0.0;
    board->ReadScan(Scan(1), std::span(&value, 1));
}

TEST_P(AnalogBoardContract, ReadsScansOfEverySize) {
    for (const std::int32_t count : {1, 2, board->Info().channelCount}) {
        if (count > board->Info().channelCount)
            continue;
        std::vector<double> values(static_cast<std::size_t>(count), std::nan(""));
        board->ReadScan(Scan(count), values);
        for (const double value : values)
            ExpectWithin(value, board->Info().ranges.front());
    }
}

TEST_P(AnalogBoardContract, ReadsEveryRange) {
    for (const InputRange& range : board->Info().ranges) {
        ChannelSetup channel = Plain(0);
        channel.range = range;
        double value = std::nan("");
        board->ReadScan(std::span(&channel, 1), std::span(&value, 1));
        ExpectWithin(value, range);
    }
}

TEST_P(AnalogBoardContract, RefusesWhatItDoesNotHave) {
    const AnalogBoardInfo& info = board->Info();
    std::vector<ChannelSetup> wrong;
    wrong.push_back(Plain(-1));
    wrong.push_back(Plain(info.channelCount));
    wrong.push_back(Plain(std::numeric_limits<std::int32_t>::max()));
    wrong.push_back(Plain(0));
    wrong.back().range = {0, -123.0, 77.0};
    for (const std::int32_t connection : {-1, 2}) {
        wrong.push_back(Plain(0));
        wrong.back().connection = connection;
    }
    if (!info.singleEnded || !info.differential) {
        wrong.push_back(Plain(0));
        wrong.back().connection = info.singleEnded ? Differential : SingleEnded;
    }
    double value = 0.0;
    for (const ChannelSetup& channel : wrong) {
        EXPECT_THROW(board->ReadScan(std::span(&channel, 1), std::span(&value, 1)), RunTimeError);
        StreamSetup setup = Stream(1, 100);
        setup.channels = {channel};
        EXPECT_THROW(board->StartStream(setup), RunTimeError);
    }
    board->ReadScan(Scan(1), std::span(&value, 1)); // and works on
}

TEST_P(AnalogBoardContract, RefusesScansOfImpossibleSize) {
    EXPECT_THROW(board->ReadScan({}, {}), RunTimeError);
    std::vector<ChannelSetup> tooMany(static_cast<std::size_t>(board->Info().channelCount) + 1, Plain(0));
    std::vector<double> manyValues(tooMany.size());
    EXPECT_THROW(board->ReadScan(tooMany, manyValues), RunTimeError);
    StreamSetup setup = Stream(1, 100);
    setup.channels = tooMany;
    EXPECT_THROW(board->StartStream(setup), RunTimeError);
    setup.channels.clear();
    EXPECT_THROW(board->StartStream(setup), RunTimeError);
}

TEST_P(AnalogBoardContract, SettlesRatesToWhatItCanDo) {
    const AnalogBoardInfo& info = board->Info();
    for (const std::int32_t channels : {1, info.channelCount}) {
        for (const double rate : {1e-300, 0.001, 1.0, 999.5, 1000.0, 12345.678, 1e5, 1e6, 1e300}) {
            const double settled = board->SettleSampleRate(rate, channels);
            EXPECT_GT(settled, 0.0) << rate;
            EXPECT_GE(settled, info.lowestRate * 0.999999) << rate;
            EXPECT_LE(settled, info.highestRate * 1.000001) << rate;
            EXPECT_EQ(board->SettleSampleRate(settled, channels), settled) << rate;
        }
        EXPECT_LE(board->SettleSampleRate(1e-300, channels), board->SettleSampleRate(1e300, channels));
    }
}

TEST_P(AnalogBoardContract, RefusesRatesThatAreNone) {
    for (const double rate : {0.0, -1.0, -1e300, std::nan("")})
        EXPECT_THROW((void)board->SettleSampleRate(rate, 1), RunTimeError) << rate;
    for (const std::int32_t channels : {-1, 0, board->Info().channelCount + 1})
        EXPECT_THROW((void)board->SettleSampleRate(1000.0, channels), RunTimeError) << channels;
}

TEST_P(AnalogBoardContract, OneShotDeliversExactlyItsSamples) {
    if (!board->Info().paced)
        GTEST_SKIP() << "no pacer";
    const std::int32_t channels = std::min(3, board->Info().channelCount);
    for (const std::uint64_t total : {std::uint64_t{1}, std::uint64_t{300}, std::uint64_t{1001}}) {
        for (const std::size_t room : {std::size_t{64}, std::size_t{4096}}) {
            board->StartStream(Stream(channels, total));
            const std::vector<float> samples = ReadToEnd<float>(*board, room);
            EXPECT_EQ(samples.size(), total);
            for (const float sample : samples)
                ExpectWithin(sample, board->Info().ranges.front());
        }
    }
}

TEST_P(AnalogBoardContract, OneShotStaysEnded) {
    if (!board->Info().paced)
        GTEST_SKIP() << "no pacer";
    board->StartStream(Stream(1, 10));
    EXPECT_EQ(ReadToEnd<float>(*board, 64).size(), 10U);
    std::vector<float> buffer(64);
    const StreamRead read = board->ReadStream(std::span<float>(buffer));
    EXPECT_EQ(read.count, 0U);
    EXPECT_EQ(read.state, StreamState::Ended);
}

TEST_P(AnalogBoardContract, RawCountsLieInTheRangeOnceScaled) {
    if (!board->Info().paced)
        GTEST_SKIP() << "no pacer";
    const AnalogBoardInfo& info = board->Info();
    board->StartStream(Stream(info.channelCount, 1000, RawCounts));
    const std::vector<std::int16_t> counts = ReadToEnd<std::int16_t>(*board, 333);
    EXPECT_EQ(counts.size(), 1000U);
    for (const std::int16_t count : counts) {
        const std::int32_t code = CodeOfCount(count, info.resolution);
        ASSERT_GE(code, 0);
        ASSERT_LE(code, HighestCode(info.resolution));
        ExpectWithin(ValueOf(code, info.ranges.front(), info.resolution), info.ranges.front());
    }
}

TEST_P(AnalogBoardContract, EndlessStreamRunsUntilItIsStopped) {
    if (!board->Info().paced)
        GTEST_SKIP() << "no pacer";
    board->StartStream(Stream(1, 0));
    std::atomic<std::uint64_t> received = 0;
    std::atomic<bool> ended = false;
    std::thread reader([&] {
        std::vector<float> buffer(4096);
        while (!ended) {
            const StreamRead read = board->ReadStream(std::span<float>(buffer));
            received += read.count;
            ended = read.state == StreamState::Ended;
        }
    });
    while (received < 200 && !ended)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_FALSE(ended);
    board->StopStream();
    reader.join();
    EXPECT_GE(received, 200U);
}

TEST_P(AnalogBoardContract, StartsAgainAfterAStopAndAfterItsEnd) {
    if (!board->Info().paced)
        GTEST_SKIP() << "no pacer";
    for (int round = 0; round < 3; ++round) {
        board->StartStream(Stream(1, 0));
        board->StopStream();
        board->StartStream(Stream(1, 5));
        EXPECT_EQ(ReadToEnd<float>(*board, 64).size(), 5U);
    }
}

TEST_P(AnalogBoardContract, OneStreamAtATime) {
    if (!board->Info().paced)
        GTEST_SKIP() << "no pacer";
    board->StartStream(Stream(1, 0));
    EXPECT_THROW(board->StartStream(Stream(1, 0)), RunTimeError);
    std::vector<float> buffer(16);
    EXPECT_EQ(board->ReadStream(std::span<float>(buffer)).state, StreamState::Running);
    board->StopStream();
    EXPECT_EQ(board->ReadStream(std::span<float>(buffer)).state, StreamState::Ended);
}

TEST_P(AnalogBoardContract, StartsNoStreamWithoutAPacer) {
    if (board->Info().paced)
        GTEST_SKIP() << "it has one";
    EXPECT_THROW(board->StartStream(Stream(1, 0)), RunTimeError);
}

TEST_P(AnalogBoardContract, StopWithoutAStreamDoesNothing) {
    board->StopStream();
    board->StopStream();
    std::vector<float> buffer(16);
    const StreamRead read = board->ReadStream(std::span<float>(buffer));
    EXPECT_EQ(read.count, 0U);
    EXPECT_EQ(read.state, StreamState::Ended);
}

TEST_P(AnalogBoardContract, RefusesABufferOfTheOtherForm) {
    if (!board->Info().paced)
        GTEST_SKIP() << "no pacer";
    board->StartStream(Stream(1, 0, RawCounts));
    std::vector<float> values(16);
    EXPECT_THROW((void)board->ReadStream(std::span<float>(values)), RunTimeError);
    std::vector<std::int16_t> counts(16);
    EXPECT_EQ(board->ReadStream(std::span<std::int16_t>(counts)).state, StreamState::Running);
    board->StopStream();
}

TEST_P(AnalogBoardContract, TakesPacerAndTriggerOnlyIfItHasThem) {
    StreamSetup paced = Stream(1, 0);
    StreamSetup triggered = Stream(1, 0);
    triggered.trigger.mode = 1;
    for (const std::int32_t code : {ExternalPacer, ExternalPacerProbe}) {
        paced.pacer = code;
        if (board->Info().externalPacer)
            board->StartStream(paced);
        else
            EXPECT_THROW(board->StartStream(paced), RunTimeError) << code;
        board->StopStream();
    }
    if (board->Info().hardwareTrigger)
        board->StartStream(triggered);
    else
        EXPECT_THROW(board->StartStream(triggered), RunTimeError);
    board->StopStream();
}

TEST_P(AnalogBoardContract, ReadsThermocouplesOnlyIfItCan) {
    if (!board->Info().thermocouples) {
        EXPECT_THROW((void)board->ReadThermocouple(Plain(0), 0, ThermocoupleType::K), RunTimeError);
        return;
    }
    for (std::int32_t code = 0; code <= 6; ++code) {
        const ThermocoupleReading reading =
            board->ReadThermocouple(Plain(0), 0, static_cast<ThermocoupleType>(code));
        EXPECT_LT(std::abs(reading.millivolts), 100.0);
        EXPECT_GT(reading.coldJunctionCelsius, -60.0);
        EXPECT_LT(reading.coldJunctionCelsius, 120.0);
    }
    EXPECT_THROW((void)board->ReadThermocouple(Plain(0), -1, ThermocoupleType::K), RunTimeError);
    EXPECT_THROW((void)board->ReadThermocouple(Plain(0), 16, ThermocoupleType::K), RunTimeError);
    EXPECT_THROW((void)board->ReadThermocouple(Plain(-1), 0, ThermocoupleType::K), RunTimeError);
    EXPECT_THROW((void)board->ReadThermocouple(Plain(2 * board->Info().channelCount), 0, ThermocoupleType::K),
                 RunTimeError);
}

TEST_P(DigitalBoardContract, InfoIsSane) {
    EXPECT_FALSE(board->Info().name.empty());
    EXPECT_FALSE(board->Info().driver.empty());
    EXPECT_GE(board->Info().portCount, 1);
}

TEST_P(DigitalBoardContract, OpensAgainWithoutHarm) {
    board->Open();
    std::uint8_t state = 0;
    board->ReadPorts(0, std::span(&state, 1));
}

TEST_P(DigitalBoardContract, ReadsEveryStretchOfItsPorts) {
    const std::int32_t portCount = board->Info().portCount;
    for (std::int32_t start = 0; start < portCount; ++start) {
        for (std::int32_t count = 0; start + count <= portCount; ++count) {
            std::vector<std::uint8_t> states(static_cast<std::size_t>(count));
            EXPECT_NO_THROW(board->ReadPorts(start, states)) << start << ", " << count;
        }
    }
}

TEST_P(DigitalBoardContract, RefusesPortsThatItDoesNotHave) {
    const std::int32_t portCount = board->Info().portCount;
    std::vector<std::uint8_t> states(1);
    for (const std::int32_t start :
         {-1, portCount, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min()})
        EXPECT_THROW(board->ReadPorts(start, states), RunTimeError) << start;
    states.resize(static_cast<std::size_t>(portCount) + 1);
    EXPECT_THROW(board->ReadPorts(0, states), RunTimeError);
    states.resize(1);
    board->ReadPorts(0, states); // and works on
}

} // namespace
} // namespace tracelet
