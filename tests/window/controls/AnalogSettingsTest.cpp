#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "tests/support/FakeBoard.h"
#include "window/controls/ZelAI.h"

#include <QVariant>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::ThrowsMessage;
using Range = std::tuple<std::int32_t, double, double>;

// Places in the simulated catalogue.
enum Catalogue : std::int32_t { Small = 2, Unpaired6605 = 5 };

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

class AnalogSettingsTest : public testing::Test {
protected:
    AnalogSettingsTest() {
        boards.analog.push_back(EntryOf(fake));
        BoardEntry<AnalogBoard> broken;
        broken.name = "Broken";
        broken.reason = "no permission";
        boards.analog.push_back(broken);
        control.SetBoards(boards);
        control.SetDeviceNumber(0);
        simulated.SetBoards(SimulatedBoards());
    }

    static Range RangeOf(const ZelAI& ai, std::int32_t channel) {
        Range range;
        ai.GetChannelRange(std::get<0>(range), std::get<1>(range), std::get<2>(range), channel);
        return range;
    }

    static std::vector<std::int32_t> Connections(ZelAI& ai) {
        std::vector<std::int32_t> codes;
        for (std::int32_t channel = 0; channel <= ai.MaxChannelCount(); ++channel) {
            ai.SetChannel(channel);
            codes.push_back(ai.SignalConnection());
        }
        return codes;
    }

    static void Connect(ZelAI& ai, std::int32_t channel, std::int32_t code) {
        ai.SetChannel(channel);
        ai.SetSignalConnection(code);
    }

    static std::vector<std::int32_t> Scanned(ZelAI& ai, FakeBoard& board) {
        (void)ai.ReadChannels();
        std::vector<std::int32_t> channels;
        for (const ChannelSetup& channel : board.scanned)
            channels.push_back(channel.channel);
        return channels;
    }

    std::shared_ptr<FakeBoard> fake = std::make_shared<FakeBoard>();
    BoardList boards;
    ZelAI control;
    ZelAI simulated;
};

TEST_F(AnalogSettingsTest, WithoutABoardNothingRaisesAndNothingIsKept) {
    ZelAI none;
    EXPECT_EQ(none.DeviceNumber(), -1);
    EXPECT_EQ(none.DeviceName(), QStringLiteral("No Device"));
    EXPECT_EQ(none.Resolution(), 0);
    EXPECT_EQ(none.MaxChannelCount(), 0);
    EXPECT_EQ(none.ScanStartChannel(), 0);
    EXPECT_EQ(none.ScanChannelCount(), 0);
    none.SetChannel(7);
    none.SetSignalConnection(1);
    none.SetScanStartChannel(-1);
    none.SetScanChannelCount(99);
    none.SetSampleRate(0.0);
    none.SetPacerSource(1);
    none.SetDataType(1);
    none.SetTriggerMode(1);
    none.SetTriggerVoltage(NotANumber);
    none.SetTriggerDelayTime(-1);
    none.SetTriggerAfterTime(-1);
    none.SetChannelRange(1, 2, 3);
    EXPECT_EQ(none.Channel(), 0);
    EXPECT_EQ(none.SignalConnection(), 0);
    EXPECT_EQ(none.PacerSource(), 0);
    EXPECT_EQ(none.DataType(), 2);
    EXPECT_EQ(none.TriggerMode(), 0);
    EXPECT_EQ(none.SampleRate(), 0.0);
    EXPECT_EQ(RangeOf(none, 5), Range(0, 0.0, 0.0));
    Range first{1, 1.0, 1.0};
    none.FirstRange(std::get<0>(first), std::get<1>(first), std::get<2>(first));
    EXPECT_EQ(first, Range(0, 0.0, 0.0));
    EXPECT_TRUE(none.ReadChannels().empty());
    EXPECT_EQ(none.ErrorText(), QString());
    none.StopBufferedAI(0);
}

TEST_F(AnalogSettingsTest, SelectingABoardGivesItsDataAndTheDefaults) {
    EXPECT_EQ(control.DeviceNumber(), 0);
    EXPECT_EQ(control.DeviceName(), QStringLiteral("Fake 8"));
    EXPECT_EQ(control.Resolution(), 16);
    EXPECT_EQ(control.MaxChannelCount(), 8);
    EXPECT_EQ(control.ScanStartChannel(), 0);
    EXPECT_EQ(control.ScanChannelCount(), 1);
    EXPECT_EQ(control.SampleRate(), 1000.0);
    EXPECT_EQ(control.PacerSource(), 0);
    EXPECT_EQ(control.DataType(), 2);
    EXPECT_EQ(control.TriggerMode(), 0);
    EXPECT_EQ(RangeOf(control, 0), Range(3, -10.0, 10.0));
    EXPECT_THAT(Connections(control), testing::Each(0));
    EXPECT_EQ(fake->opened, 1);
}

TEST_F(AnalogSettingsTest, NumbersOfNoUsableBoardDeselect) {
    for (std::int32_t number : {-1, -2, 1, 2, 2147483647}) {
        control.SetDeviceNumber(0);
        EXPECT_EQ(control.DeviceNumber(), 0);
        control.SetDeviceNumber(number);
        EXPECT_EQ(control.DeviceNumber(), -1) << number;
        EXPECT_EQ(control.DeviceName(), QStringLiteral("No Device")) << number;
        EXPECT_EQ(control.ScanChannelCount(), 0) << number;
    }
}

TEST_F(AnalogSettingsTest, SelectingTheSameBoardKeepsItsSettings) {
    control.SetSampleRate(500);
    control.SetDeviceNumber(0);
    EXPECT_EQ(control.SampleRate(), 500.0);
    EXPECT_EQ(fake->opened, 1);
    control.SetDeviceNumber(-1);
    control.SetDeviceNumber(0);
    EXPECT_EQ(control.SampleRate(), 1000.0);
}

TEST_F(AnalogSettingsTest, ABoardThatDoesNotOpenLeavesTheSelection) {
    auto second = std::make_shared<FakeBoard>();
    second->refusedOpen = "The board is in use";
    boards.analog.push_back(EntryOf(second));
    control.SetBoards(boards);
    EXPECT_EQ(control.DeviceNumber(), -1);
    control.SetDeviceNumber(0);
    EXPECT_THAT([&] { control.SetDeviceNumber(2); }, ThrowsMessage<RunTimeError>("The board is in use"));
    EXPECT_EQ(control.DeviceNumber(), 0);
}

TEST_F(AnalogSettingsTest, ABoardWithoutChannelsScansNone) {
    fake->info.channelCount = 0;
    control.SetBoards(boards);
    control.SetDeviceNumber(0);
    EXPECT_EQ(control.DeviceNumber(), 0);
    EXPECT_EQ(control.ScanChannelCount(), 0);
    control.SetScanStartChannel(0);
    control.SetScanChannelCount(0);
    EXPECT_THROW(control.SetScanStartChannel(1), RunTimeError);
    EXPECT_THROW(control.SetScanChannelCount(1), RunTimeError);
    control.SetSampleRate(100);
    EXPECT_TRUE(control.ReadChannels().empty());
    EXPECT_THAT([&] { control.StartBufferedAI(4096, true); },
                ThrowsMessage<RunTimeError>("No analog channel is selected"));
}

TEST_F(AnalogSettingsTest, TheChannelBehindTheLastCanBeSelected) {
    control.SetChannel(8);
    EXPECT_EQ(control.Channel(), 8);
    EXPECT_EQ(control.SignalConnection(), 0);
    control.SetSignalConnection(1);
    EXPECT_EQ(control.SignalConnection(), 0);
    EXPECT_THAT([&] { control.SetChannel(9); }, ThrowsMessage<RunTimeError>("The device has no channel 9"));
    EXPECT_THAT([&] { control.SetChannel(-1); }, ThrowsMessage<RunTimeError>("The device has no channel -1"));
    EXPECT_EQ(control.Channel(), 8);
}

TEST_F(AnalogSettingsTest, PairsAreWiredTogether) {
    Connect(control, 3, 1);
    EXPECT_THAT(Connections(control), ElementsAre(0, 0, 1, 1, 0, 0, 0, 0, 0));
    Connect(control, 6, 1);
    EXPECT_THAT(Connections(control), ElementsAre(0, 0, 1, 1, 0, 0, 1, 1, 0));
    Connect(control, 2, 0);
    EXPECT_THAT(Connections(control), ElementsAre(0, 0, 0, 0, 0, 0, 1, 1, 0));
    for (std::int32_t code : {2, -1, 255})
        Connect(control, 6, code);
    EXPECT_THAT(Connections(control), ElementsAre(0, 0, 0, 0, 0, 0, 1, 1, 0));
}

TEST_F(AnalogSettingsTest, AChannelWithoutPartnerStaysSingleEnded) {
    fake->info.channelCount = 3;
    control.SetBoards(boards);
    control.SetDeviceNumber(0);
    Connect(control, 2, 1);
    EXPECT_THAT(Connections(control), ElementsAre(0, 0, 0, 0));
}

TEST_F(AnalogSettingsTest, WiringThatABoardLacksIsIgnored) {
    simulated.SetDeviceNumber(Small); // single-ended only
    Connect(simulated, 0, 1);
    EXPECT_THAT(Connections(simulated), testing::Each(0));
    simulated.SetDeviceNumber(Unpaired6605); // differential only
    Connect(simulated, 0, 0);
    EXPECT_THAT(Connections(simulated), testing::Each(1)); // the spare element too
}

TEST_F(AnalogSettingsTest, UnpairedFamilyWiresChannelsAlone) {
    fake->info.name = "Fake 05";
    control.SetBoards(boards);
    control.SetDeviceNumber(0);
    Connect(control, 3, 1);
    Connect(control, 8, 1); // the spare element is not wired
    EXPECT_THAT(Connections(control), ElementsAre(0, 0, 0, 1, 0, 0, 0, 0, 0));
}

TEST_F(AnalogSettingsTest, RangesAreEnumeratedUntilBothLimitsAreZero) {
    std::vector<Range> ranges;
    Range range;
    auto& [code, first, second] = range;
    for (control.FirstRange(code, first, second); first != 0.0 || second != 0.0;
         control.NextRange(code, first, second))
        ranges.push_back(range);
    EXPECT_THAT(ranges, ElementsAre(Range(3, -10, 10), Range(5, 0, 5), Range(6, 4, 20)));
    control.NextRange(code, first, second);
    EXPECT_EQ(range, Range(0, 0.0, 0.0));
    control.FirstRange(code, first, second);
    EXPECT_EQ(range, Range(3, -10, 10));
}

TEST_F(AnalogSettingsTest, RangesBelongToChannels) {
    control.SetChannelRange(0, 5, 2);
    control.SetChannelRange(4, 20, 8);
    EXPECT_EQ(RangeOf(control, 1), Range(3, -10, 10));
    EXPECT_EQ(RangeOf(control, 2), Range(5, 0, 5));
    EXPECT_EQ(RangeOf(control, 8), Range(6, 4, 20));
    EXPECT_THAT([&] { control.SetChannelRange(0, 5, 9); },
                ThrowsMessage<RunTimeError>("The device has no channel 9"));
    EXPECT_THAT([&] { control.SetChannelRange(0, 5, -1); },
                ThrowsMessage<RunTimeError>("The device has no channel -1"));
    EXPECT_THROW(RangeOf(control, 9), RunTimeError);
    EXPECT_THAT([&] { control.SetChannelRange(-1.5, 5, 2); },
                ThrowsMessage<RunTimeError>("The device has no input range -1.5 ~ 5"));
    EXPECT_THROW(control.SetChannelRange(5, 0, 2), RunTimeError);
    EXPECT_EQ(RangeOf(control, 2), Range(5, 0, 5));
}

TEST_F(AnalogSettingsTest, ScanLimitsRaise) {
    for (std::int32_t start : {-1, 8, 9, 2147483647, -2147483647 - 1}) {
        EXPECT_THROW(control.SetScanStartChannel(start), RunTimeError) << start;
        EXPECT_EQ(control.ScanStartChannel(), 0);
    }
    for (std::int32_t count : {0, -1, 9, 2147483647, -2147483647 - 1}) {
        EXPECT_THROW(control.SetScanChannelCount(count), RunTimeError) << count;
        EXPECT_EQ(control.ScanChannelCount(), 1);
    }
    EXPECT_THAT(
        [&] { control.SetScanStartChannel(8); },
        ThrowsMessage<RunTimeError>("A scan cannot begin with channel 8: the device has no such channel"));
    EXPECT_THAT([&] { control.SetScanChannelCount(9); },
                ThrowsMessage<RunTimeError>("A scan of 9 channels is not possible: the device has 8"));
    control.SetScanStartChannel(5);
    EXPECT_THAT([&] { control.SetScanChannelCount(4); },
                ThrowsMessage<RunTimeError>(
                    "A scan of 4 channels from channel 5 goes beyond the device's last channel"));
    control.SetScanChannelCount(3);
    EXPECT_EQ(control.ScanStartChannel(), 5);
    EXPECT_EQ(control.ScanChannelCount(), 3);
}

TEST_F(AnalogSettingsTest, AnyScanCanBeReachedFromAnyOtherByStartThenCount) {
    std::vector<std::pair<std::int32_t, std::int32_t>> scans;
    for (std::int32_t start = 0; start < 8; ++start) {
        for (std::int32_t count = 1; start + count <= 8; ++count)
            scans.emplace_back(start, count);
    }
    for (const auto& from : scans) {
        for (const auto& to : scans) {
            for (const auto& [start, count] : {from, to}) {
                control.SetScanStartChannel(start);
                control.SetScanChannelCount(count);
                ASSERT_EQ(control.ScanStartChannel(), start);
                ASSERT_EQ(control.ScanChannelCount(), count);
            }
        }
    }
}

TEST_F(AnalogSettingsTest, AScanThatDoesNotFitIsNotRead) {
    control.SetScanChannelCount(8);
    control.SetScanStartChannel(1);
    const char* text = "A scan of 8 channels from channel 1 goes beyond the device's last channel";
    EXPECT_THAT([&] { (void)control.ReadChannels(); }, ThrowsMessage<RunTimeError>(text));
    EXPECT_EQ(control.ErrorText(), QString::fromLatin1(text));
    EXPECT_THAT([&] { control.StartBufferedAI(4096, true); }, ThrowsMessage<RunTimeError>(text));
    control.SetScanStartChannel(0);
    Connect(control, 0, 1); // seven logical channels are left
    EXPECT_THROW((void)control.ReadChannels(), RunTimeError);
    control.SetScanChannelCount(7);
    EXPECT_EQ(control.ReadChannels().size(), 7U);
    EXPECT_EQ(control.ErrorText(), QString());
}

TEST_F(AnalogSettingsTest, ScanPositionsFollowTheWiring) {
    Connect(control, 0, 1);
    Connect(control, 4, 1);
    control.SetScanChannelCount(6);
    EXPECT_THAT(Scanned(control, *fake), ElementsAre(0, 2, 3, 4, 6, 7));
    control.SetScanStartChannel(3);
    EXPECT_THROW(control.SetScanChannelCount(5), RunTimeError);
    control.SetScanChannelCount(4);
    EXPECT_THAT(Scanned(control, *fake), ElementsAre(3, 4, 6, 7));
    EXPECT_EQ(fake->scanned[0].connection, 0);
    EXPECT_EQ(fake->scanned[1].connection, 1);
}

TEST_F(AnalogSettingsTest, ScanPositionsOfTheUnpairedFamilyAreTheChannels) {
    fake->info.name = "Fake 05";
    control.SetBoards(boards);
    control.SetDeviceNumber(0);
    Connect(control, 3, 1);
    control.SetScanStartChannel(2);
    control.SetScanChannelCount(6);
    EXPECT_THAT(Scanned(control, *fake), ElementsAre(2, 3, 4, 5, 6, 7));
}

TEST_F(AnalogSettingsTest, ReadChannelsGivesVolts) {
    control.SetScanChannelCount(3);
    control.SetChannelRange(0, 5, 1);
    EXPECT_THAT(control.ReadChannels(), ElementsAre(10.0, 105.0, 210.0));
    EXPECT_EQ(fake->scanned[1].range.code, 5);
}

TEST_F(AnalogSettingsTest, EveryReadingFollowsWhatWasSetSinceTheOneBefore) {
    control.SetScanChannelCount(2);
    EXPECT_THAT(control.ReadChannels(), ElementsAre(10.0, 110.0));
    control.SetChannelRange(0, 5, 1);
    EXPECT_THAT(control.ReadChannels(), ElementsAre(10.0, 105.0));
    control.SetScanChannelCount(3);
    EXPECT_THAT(control.ReadChannels(), ElementsAre(10.0, 105.0, 210.0));
    control.SetScanStartChannel(1);
    EXPECT_THAT(control.ReadChannels(), ElementsAre(105.0, 210.0, 310.0));
    Connect(control, 2, Differential);
    EXPECT_THAT(control.ReadChannels(), ElementsAre(105.0, 210.0, 410.0));
    control.SetDeviceNumber(-1);
    control.SetDeviceNumber(0);
    EXPECT_THAT(control.ReadChannels(), ElementsAre(10.0));
}

TEST_F(AnalogSettingsTest, AFailedReadingLeavesItsText) {
    fake->refusedScan = "The board was unplugged";
    EXPECT_THAT([&] { (void)control.ReadChannels(); },
                ThrowsMessage<RunTimeError>("The board was unplugged"));
    EXPECT_EQ(control.ErrorText(), QStringLiteral("The board was unplugged"));
    control.SetDeviceNumber(-1);
    EXPECT_EQ(control.ErrorText(), QString());
    control.SetDeviceNumber(0);
    EXPECT_THROW((void)control.ReadChannels(), RunTimeError);
    fake->refusedScan.clear();
    (void)control.ReadChannels();
    EXPECT_EQ(control.ErrorText(), QString());
}

TEST_F(AnalogSettingsTest, PropertiesAreKnownToTheToolkit) {
    EXPECT_EQ(control.property("DeviceName").toString(), QStringLiteral("Fake 8"));
    EXPECT_EQ(control.property("MaxChannelCount").toInt(), 8);
    EXPECT_TRUE(control.setProperty("SampleRate", 250.0));
    EXPECT_EQ(control.SampleRate(), 250.0);
}

TEST_F(AnalogSettingsTest, EverySimulatedBoardReadsItsWholeScan) {
    const BoardList list = SimulatedBoards();
    simulated.SetBoards(list);
    for (std::size_t number = 0; number < list.analog.size(); ++number) {
        simulated.SetDeviceNumber(static_cast<std::int32_t>(number));
        const auto& board = static_cast<const SimulatedAnalogBoard&>(*list.analog[number].board);
        simulated.SetScanChannelCount(simulated.MaxChannelCount());
        const std::uint64_t ordinal = board.ScansRead();
        const std::vector<double> values = simulated.ReadChannels();
        ASSERT_EQ(values.size(), static_cast<std::size_t>(simulated.MaxChannelCount()));
        const std::int32_t wiring = board.Info().singleEnded ? SingleEnded : Differential;
        for (std::int32_t channel = 0; channel < simulated.MaxChannelCount(); ++channel)
            EXPECT_EQ(values[static_cast<std::size_t>(channel)],
                      board.PolledValue({channel, board.Info().ranges.front(), wiring}, ordinal));
    }
}

} // namespace
} // namespace tracelet
