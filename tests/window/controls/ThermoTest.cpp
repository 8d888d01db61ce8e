#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "tests/support/FakeBoard.h"
#include "window/controls/ZelThermo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tracelet {
namespace {

using testing::ThrowsMessage;

enum Catalogue : std::int32_t { Plain = 0, HighGain6601 = 3, Unpaired6605 = 5, Isolated3605 = 6 };

class ThermoTest : public testing::Test {
protected:
    ThermoTest() {
        fake->info.thermocouples = true;
        list.analog.push_back(EntryOf(fake));
        control.SetBoards(list);
    }

    // The range that a reading of channel 0 uses with these limits.
    std::int32_t RangeCode(double low, double high) {
        control.SetInputLimits(0, low, high);
        (void)control.Temperature();
        return fake->scanned.front().range.code;
    }

    std::shared_ptr<FakeBoard> fake = std::make_shared<FakeBoard>();
    BoardList list = SimulatedBoards();
    const std::int32_t fakeNumber = static_cast<std::int32_t>(list.analog.size());
    ZelThermo control;
};

TEST_F(ThermoTest, WithoutABoardSettingsAreIgnoredAndReadingRaises) {
    EXPECT_EQ(control.DeviceNumber(), -1);
    EXPECT_EQ(control.DeviceName(), QStringLiteral("No Device"));
    control.SetChannel(99);
    control.SetSignalConnection(1);
    control.SetThermoType(99);
    control.SetThermoScale(99);
    control.SetExpChannel(99);
    control.SetInputLimits(99, 1, -1);
    EXPECT_EQ(control.Channel(), 0);
    EXPECT_EQ(control.SignalConnection(), 0);
    EXPECT_EQ(control.ThermoType(), 0);
    EXPECT_EQ(control.ThermoScale(), 0);
    EXPECT_EQ(control.ExpChannel(), 0);
    EXPECT_THAT([&] { (void)control.Temperature(); },
                ThrowsMessage<RunTimeError>("No thermocouple device is selected"));
}

TEST_F(ThermoTest, OnlyBoardsWithThermocouplesCanBeSelected) {
    for (std::int32_t number = -2; number <= fakeNumber + 1; ++number) {
        const bool usable = number == HighGain6601 || number == Unpaired6605 || number == Isolated3605 ||
                            number == fakeNumber;
        control.SetDeviceNumber(number);
        EXPECT_EQ(control.DeviceNumber(), usable ? number : -1) << number;
        EXPECT_EQ(control.DeviceName() == QStringLiteral("No Device"), !usable) << number;
    }
}

TEST_F(ThermoTest, DefaultsAndLimitsOfTheSettings) {
    control.SetDeviceNumber(HighGain6601);
    EXPECT_EQ(control.DeviceName(), QStringLiteral("Alcedo 6601HG"));
    EXPECT_EQ(control.Channel(), 0);
    for (std::int32_t channel : {0, 15, 16, 30, 32}) {
        control.SetChannel(channel);
        EXPECT_EQ(control.Channel(), channel);
    }
    for (std::int32_t channel : {-1, 33})
        EXPECT_THROW(control.SetChannel(channel), RunTimeError) << channel;
    control.SetThermoType(6);
    control.SetThermoScale(3);
    control.SetExpChannel(15);
    for (std::int32_t code : {-1, 7, 8})
        EXPECT_THROW(control.SetThermoType(code), RunTimeError) << code;
    EXPECT_THAT([&] { control.SetThermoType(7); },
                ThrowsMessage<RunTimeError>("There is no thermocouple type 7"));
    for (std::int32_t code : {-1, 4})
        EXPECT_THROW(control.SetThermoScale(code), RunTimeError) << code;
    for (std::int32_t code : {-1, 16})
        EXPECT_THROW(control.SetExpChannel(code), RunTimeError) << code;
    EXPECT_EQ(control.Channel(), 32);
    EXPECT_EQ(control.ThermoType(), 6);
    EXPECT_EQ(control.ThermoScale(), 3);
    EXPECT_EQ(control.ExpChannel(), 15);
    control.SetDeviceNumber(HighGain6601);
    EXPECT_EQ(control.ThermoType(), 6) << "selecting the selected board changes nothing";
    control.SetDeviceNumber(Isolated3605);
    EXPECT_EQ(control.ThermoType(), 0);
}

TEST_F(ThermoTest, PairsAreWiredTogether) {
    control.SetDeviceNumber(HighGain6601);
    control.SetChannel(5);
    control.SetSignalConnection(1);
    for (std::int32_t channel = 0; channel < 8; ++channel) {
        control.SetChannel(channel);
        EXPECT_EQ(control.SignalConnection(), channel / 2 == 2 ? 1 : 0) << channel;
    }
    control.SetDeviceNumber(Isolated3605);
    control.SetSignalConnection(1); // single-ended only
    EXPECT_EQ(control.SignalConnection(), 0);
    control.SetDeviceNumber(Unpaired6605); // differential only
    EXPECT_EQ(control.SignalConnection(), 1);
}

TEST_F(ThermoTest, TheNarrowestRangeThatCoversTheLimitsIsUsed) {
    fake->info.ranges = {{0, -10, 10}, {1, -1, 1}, {2, 0, 1}, {3, -0.01, 0.01}, {4, 0, 20}, {5, -5, 5}};
    control.SetDeviceNumber(fakeNumber);
    EXPECT_EQ(RangeCode(-0.005, 0.005), 3);
    EXPECT_EQ(RangeCode(-0.01, 0.01), 3);
    EXPECT_EQ(RangeCode(0, 0.5), 2);
    EXPECT_EQ(RangeCode(-0.5, 0.5), 1);
    EXPECT_EQ(RangeCode(-1, 2), 5);
    EXPECT_EQ(RangeCode(0, 10), 0);
    EXPECT_THAT([&] { control.SetInputLimits(0, 0, 15); }, // the current range is none of volts
                ThrowsMessage<RunTimeError>("The device has no input range from 0 to 15 V"));
    EXPECT_THROW(control.SetInputLimits(0, -11, 0), RunTimeError);
    EXPECT_THROW(control.SetInputLimits(0, std::numeric_limits<double>::quiet_NaN(), 0), RunTimeError);
    EXPECT_THROW(control.SetInputLimits(-1, 0, 1), RunTimeError);
    EXPECT_THROW(control.SetInputLimits(17, 0, 1), RunTimeError);
    control.SetInputLimits(16, 0, 1);
}

TEST_F(ThermoTest, ARangeOfVoltsThatSaysSoCoversLimitsUpToTwenty) {
    fake->info.ranges = {{0, -10, 10}, {1, 0, 20, RangeUnit::Volts}, {2, 0, 16, RangeUnit::Milliamperes}};
    control.SetDeviceNumber(fakeNumber);
    EXPECT_EQ(RangeCode(0, 15), 1);
}

TEST_F(ThermoTest, InputLimitsBelongToTheirChannel) {
    control.SetDeviceNumber(fakeNumber);
    control.SetInputLimits(3, 0, 1);
    (void)control.Temperature();
    EXPECT_EQ(fake->scanned.front().channel, 0);
    EXPECT_EQ(fake->scanned.front().range, (InputRange{3, -10, 10}));
    control.SetChannel(3);
    (void)control.Temperature();
    EXPECT_EQ(fake->scanned.front().channel, 3);
    EXPECT_EQ(fake->scanned.front().range, (InputRange{5, 0, 5}));
}

TEST_F(ThermoTest, TheColdJunctionCountsInEveryTypeAndScale) {
    control.SetDeviceNumber(fakeNumber); // no voltage, cold junction at 25 °C
    for (std::int32_t type = 0; type <= 6; ++type) {
        if (type == static_cast<std::int32_t>(ThermocoupleType::B))
            continue; // whose voltage tells nothing down there
        control.SetThermoType(type);
        const double scales[] = {25.0, 77.0, 536.67, 298.15};
        for (std::int32_t scale = 0; scale <= 3; ++scale) {
            control.SetThermoScale(scale);
            EXPECT_NEAR(control.Temperature(), scales[scale], 1e-6) << type << " " << scale;
        }
    }
}

TEST_F(ThermoTest, SimulatedBoardsGiveTheirTemperatures) {
    for (std::int32_t number : {HighGain6601, Unpaired6605, Isolated3605}) {
        control.SetDeviceNumber(number);
        const std::int32_t step = number == Unpaired6605 ? 2 : 1; // inputs count in steps of two there
        for (std::int32_t channel : {0, step, 15 * step}) {
            for (std::uint64_t ordinal = 0; ordinal < 3; ++ordinal) {
                control.SetChannel(channel);
                control.SetThermoType(1);
                control.SetExpChannel(4);
                control.SetInputLimits(channel, -0.005, 0.005);
                EXPECT_NEAR(control.Temperature(), SimulatedCelsius(channel, 4, ordinal), 1e-6);
            }
        }
    }
}

TEST_F(ThermoTest, FailuresRaise) {
    control.SetDeviceNumber(fakeNumber);
    fake->refusedScan = "The board was unplugged";
    EXPECT_THAT([&] { (void)control.Temperature(); }, ThrowsMessage<RunTimeError>("The board was unplugged"));
    control.SetDeviceNumber(HighGain6601);
    control.SetChannel(32); // can be selected, but has no couple
    EXPECT_THROW((void)control.Temperature(), RunTimeError);
}

TEST_F(ThermoTest, ABoardThatDoesNotOpenLeavesTheSelection) {
    control.SetDeviceNumber(HighGain6601);
    fake->refusedOpen = "in use";
    EXPECT_THROW(control.SetDeviceNumber(fakeNumber), RunTimeError);
    EXPECT_EQ(control.DeviceNumber(), HighGain6601);
}

} // namespace
} // namespace tracelet
