#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "tests/support/FakeBoard.h"
#include "window/controls/ZelAI.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tracelet {
namespace {

using testing::ThrowsMessage;

// Places in the simulated catalogue.
enum Catalogue : std::int32_t { Plain = 0, Small = 2 };

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();

/// Rate, pacer, form and trigger.
class AnalogPacingTest : public testing::Test {
protected:
    AnalogPacingTest() {
        BoardList boards;
        boards.analog.push_back(EntryOf(fake));
        control.SetBoards(boards);
        control.SetDeviceNumber(0);
        simulated.SetBoards(SimulatedBoards());
    }

    std::shared_ptr<FakeBoard> fake = std::make_shared<FakeBoard>();
    ZelAI control;
    ZelAI simulated;
};

TEST_F(AnalogPacingTest, SampleRatesAreClampedAndReadBack) {
    for (const auto& [asked, settled] : std::vector<std::pair<double, double>>{
             {500, 500}, {0.001, 10}, {1e300, 1e6}, {2e6, 1e6}, {1e6, 1e6}}) {
        control.SetSampleRate(asked);
        EXPECT_EQ(control.SampleRate(), settled) << asked;
    }
    for (double refused : {0.0, -0.0, -1.0, -1e300, NotANumber, Infinite, -Infinite}) {
        EXPECT_THAT([&] { control.SetSampleRate(refused); },
                    ThrowsMessage<RunTimeError>("The sample rate must be above 0 Hz"));
        EXPECT_EQ(control.SampleRate(), 1e6);
    }
}

TEST_F(AnalogPacingTest, TheRateThatABoardSettlesFollowsTheScan) {
    control.SetSampleRate(1000);
    control.SetScanChannelCount(3);
    EXPECT_EQ(control.SampleRate(), 999.5);
    control.SetScanChannelCount(1);
    EXPECT_EQ(control.SampleRate(), 1000.0);
}

TEST_F(AnalogPacingTest, ARateThatABoardRefusesIsNotTaken) {
    auto board = std::dynamic_pointer_cast<SimulatedAnalogBoard>(SimulatedBoards().analog[Plain].board);
    BoardList list;
    list.analog.push_back(EntryOf(board));
    control.SetBoards(list);
    control.SetDeviceNumber(0);
    Faults faults;
    faults.refusedRate = "No such rate";
    board->SetFaults(faults);
    EXPECT_THAT([&] { control.SetSampleRate(7); }, ThrowsMessage<RunTimeError>("No such rate"));
    EXPECT_EQ(control.SampleRate(), 1000.0);
}

TEST_F(AnalogPacingTest, PacerCodes) {
    for (std::int32_t code : {0, 1, 2}) {
        control.SetPacerSource(code);
        EXPECT_EQ(control.PacerSource(), code);
    }
    for (std::int32_t code : {-1, 3, 99}) {
        control.SetPacerSource(code);
        EXPECT_EQ(control.PacerSource(), 2) << code;
    }
    simulated.SetDeviceNumber(Small);
    for (std::int32_t code : {1, 2, -1, 0}) {
        simulated.SetPacerSource(code);
        EXPECT_EQ(simulated.PacerSource(), 0) << code;
    }
}

TEST_F(AnalogPacingTest, BothExternalPacerCodesMeanTheSame) {
    for (const auto& [code, pacer] : std::vector<std::pair<std::int32_t, std::int32_t>>{
             {0, InternalPacer}, {1, ExternalPacer}, {2, ExternalPacer}}) {
        control.SetPacerSource(code);
        control.StartBufferedAI(4096, true);
        EXPECT_EQ(fake->started.pacer, pacer);
        control.StopBufferedAI(0);
    }
}

TEST_F(AnalogPacingTest, DataTypeCodes) {
    for (std::int32_t code : {1, 2}) {
        control.SetDataType(code);
        EXPECT_EQ(control.DataType(), code);
    }
    for (std::int32_t code : {0, 3, -1}) {
        control.SetDataType(code);
        EXPECT_EQ(control.DataType(), 2) << code;
    }
}

TEST_F(AnalogPacingTest, TriggerCodesOfABoardWithATrigger) {
    struct Property {
        void (ZelAI::*set)(std::int32_t);
        std::int32_t (ZelAI::*get)() const;
        std::int32_t last;
    };
    for (const Property& property : {Property{&ZelAI::SetTriggerMode, &ZelAI::TriggerMode, 3},
                                     Property{&ZelAI::SetTriggerEdge, &ZelAI::TriggerEdge, 1},
                                     Property{&ZelAI::SetTriggerSource, &ZelAI::TriggerSource, 4}}) {
        for (std::int32_t code = 0; code <= property.last; ++code) {
            (control.*property.set)(code);
            EXPECT_EQ((control.*property.get)(), code);
        }
        for (std::int32_t code : {-1, property.last + 1}) {
            (control.*property.set)(code);
            EXPECT_EQ((control.*property.get)(), property.last);
        }
    }
}

TEST_F(AnalogPacingTest, TriggerNumbers) {
    control.SetTriggerVoltage(-2.5);
    control.SetTriggerDelayTime(0);
    control.SetTriggerAfterTime(12.5);
    for (double value : {NotANumber, Infinite})
        EXPECT_THROW(control.SetTriggerVoltage(value), RunTimeError);
    for (double value : {NotANumber, Infinite, -0.5}) {
        EXPECT_THROW(control.SetTriggerDelayTime(value), RunTimeError);
        EXPECT_THROW(control.SetTriggerAfterTime(value), RunTimeError);
    }
    EXPECT_EQ(control.TriggerVoltage(), -2.5);
    EXPECT_EQ(control.TriggerDelayTime(), 0.0);
    EXPECT_EQ(control.TriggerAfterTime(), 12.5);
}

TEST_F(AnalogPacingTest, WithoutATriggerItsPropertiesStay) {
    simulated.SetDeviceNumber(Small);
    simulated.SetTriggerMode(2);
    simulated.SetTriggerEdge(1);
    simulated.SetTriggerSource(4);
    simulated.SetTriggerVoltage(3);
    simulated.SetTriggerDelayTime(3);
    simulated.SetTriggerAfterTime(-3);
    EXPECT_EQ(simulated.TriggerMode(), 0);
    EXPECT_EQ(simulated.TriggerEdge(), 0);
    EXPECT_EQ(simulated.TriggerSource(), 0);
    EXPECT_EQ(simulated.TriggerVoltage(), 0.0);
    EXPECT_EQ(simulated.TriggerDelayTime(), 0.0);
    EXPECT_EQ(simulated.TriggerAfterTime(), 0.0);
}

TEST_F(AnalogPacingTest, TheBoardIsStartedWithTheSettings) {
    control.SetScanStartChannel(2);
    control.SetScanChannelCount(2);
    control.SetChannelRange(0, 5, 3);
    control.SetSampleRate(5000);
    control.SetDataType(1);
    control.SetTriggerMode(2);
    control.SetTriggerEdge(1);
    control.SetTriggerSource(3);
    control.SetTriggerVoltage(1.5);
    control.SetTriggerDelayTime(20);
    control.SetTriggerAfterTime(30);
    control.StartBufferedAI(4097, false);
    control.StopBufferedAI(0);
    const StreamSetup& setup = fake->started;
    ASSERT_EQ(setup.channels.size(), 2U);
    EXPECT_EQ(setup.channels[0].channel, 2);
    EXPECT_EQ(setup.channels[1].channel, 3);
    EXPECT_EQ(setup.channels[1].range.code, 5);
    EXPECT_EQ(setup.sampleRate, control.SampleRate());
    EXPECT_EQ(setup.form, RawCounts);
    EXPECT_EQ(setup.trigger.mode, 2);
    EXPECT_EQ(setup.trigger.edge, 1);
    EXPECT_EQ(setup.trigger.source, 3);
    EXPECT_EQ(setup.trigger.voltage, 1.5);
    EXPECT_EQ(setup.trigger.delayTime, 20.0);
    EXPECT_EQ(setup.trigger.afterTime, 30.0);
    EXPECT_EQ(setup.totalSamples, 4096U);
}

} // namespace
} // namespace tracelet
