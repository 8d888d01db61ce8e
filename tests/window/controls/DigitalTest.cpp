#include "core/base/RunTimeError.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "core/drivers/simulated/SimulatedDigitalBoard.h"
#include "core/drivers/simulated/SimulatedSignals.h"
#include "window/controls/ZelDIO.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DigitalTest : public testing::Test {
protected:
    DigitalTest() {
        control.SetBoards(list);
        control.SetDeviceNumber(0); // four ports
    }

    bool Read(std::int32_t start, std::int32_t count) { return control.ReadPorts(start, count, states); }

    BoardList list = SimulatedBoards();
    std::shared_ptr<SimulatedDigitalBoard> board =
        std::static_pointer_cast<SimulatedDigitalBoard>(list.digital.front().board);
    ZelDIO control;
    std::vector<std::uint8_t> states;
};

TEST_F(DigitalTest, WithoutABoardThereAreNoPorts) {
    ZelDIO none;
    EXPECT_EQ(none.DeviceNumber(), -1);
    EXPECT_EQ(none.DeviceName(), QStringLiteral("No Device"));
    EXPECT_EQ(none.MaxPortCount(), 0);
    states = {1, 2};
    EXPECT_FALSE(none.ReadPorts(0, 1, states));
    EXPECT_THAT(states, IsEmpty());
    EXPECT_EQ(none.ErrorText(), QStringLiteral("No digital device is selected"));
}

TEST_F(DigitalTest, SelectsUsableBoardsOnly) {
    EXPECT_EQ(control.DeviceName(), QStringLiteral("Merula Port 4"));
    EXPECT_EQ(control.MaxPortCount(), 4);
    for (std::int32_t number : {-1, 3, -7}) {
        control.SetDeviceNumber(number);
        EXPECT_EQ(control.DeviceNumber(), -1);
        EXPECT_EQ(control.MaxPortCount(), 0);
    }
    control.SetDeviceNumber(2);
    EXPECT_EQ(control.MaxPortCount(), 12);
}

TEST_F(DigitalTest, ReadsPortsInOrder) {
    states.assign(9, 255);
    const std::uint64_t ordinal = board->Readings();
    EXPECT_TRUE(Read(1, 3));
    EXPECT_THAT(states,
                ElementsAre(SimulatedPort(1, ordinal), SimulatedPort(2, ordinal), SimulatedPort(3, ordinal)));
    EXPECT_TRUE(Read(0, 4));
    EXPECT_EQ(states.size(), 4U);
    EXPECT_EQ(states[0], SimulatedPort(0, ordinal + 1));
    EXPECT_EQ(control.ErrorText(), QString());
}

TEST_F(DigitalTest, ReadingNoPortsSucceeds) {
    for (std::int32_t start : {0, 4}) {
        states = {7};
        EXPECT_TRUE(Read(start, 0));
        EXPECT_THAT(states, IsEmpty());
    }
}

TEST_F(DigitalTest, PortsThatTheBoardLacksFail) {
    for (const auto& [start, count] : std::vector<std::pair<std::int32_t, std::int32_t>>{
             {0, 5}, {4, 1}, {-1, 1}, {0, -1}, {2147483647, 2147483647}, {1, 2147483647}, {5, 0}}) {
        states = {7};
        EXPECT_FALSE(Read(start, count)) << start << " " << count;
        EXPECT_THAT(states, IsEmpty());
        EXPECT_EQ(control.ErrorText(), QStringLiteral("The device has no such digital ports"));
    }
}

TEST_F(DigitalTest, AFailureLeavesItsTextUntilTheNextReading) {
    Faults faults;
    faults.readError = "The port does not answer";
    board->SetFaults(faults);
    EXPECT_FALSE(Read(0, 1));
    EXPECT_THAT(states, IsEmpty());
    EXPECT_EQ(control.ErrorText(), QStringLiteral("The port does not answer"));
    board->SetFaults({});
    EXPECT_TRUE(Read(0, 1));
    EXPECT_EQ(control.ErrorText(), QString());
    faults.unplugged = true;
    board->SetFaults(faults);
    EXPECT_FALSE(Read(0, 1));
    control.SetDeviceNumber(1);
    EXPECT_EQ(control.ErrorText(), QString());
    EXPECT_THROW(control.SetDeviceNumber(0), RunTimeError);
    EXPECT_EQ(control.DeviceNumber(), 1);
}

} // namespace
} // namespace tracelet
