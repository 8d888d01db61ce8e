#include "core/base/RunTimeError.h"
#include "core/boards/Thermocouple.h"
#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "core/drivers/simulated/SimulatedSignals.h"

#include <gtest/gtest.h>

#include <memory>

namespace tracelet {
namespace {

// Places in the simulated catalogue.
enum Catalogue : std::size_t { HighGain6601 = 3, HighGain6605 = 5, Isolated3605 = 6 };

class SimulatedThermocoupleTest : public testing::Test {
protected:
    void Use(Catalogue which) {
        board = std::dynamic_pointer_cast<SimulatedAnalogBoard>(SimulatedBoards().analog[which].board);
        board->Open();
    }

    [[nodiscard]] ChannelSetup Channel(std::int32_t channel) const {
        const AnalogBoardInfo& info = board->Info();
        return {channel, info.ranges.front(), info.singleEnded ? SingleEnded : Differential};
    }

    std::shared_ptr<SimulatedAnalogBoard> board;
};

TEST_F(SimulatedThermocoupleTest, InputsGiveTheirTemperature) {
    for (const Catalogue which : {HighGain6601, HighGain6605, Isolated3605}) {
        Use(which);
        const std::int32_t channel = 5;
        for (std::int32_t code = 0; code <= 6; ++code) {
            const auto type = static_cast<ThermocoupleType>(code);
            const auto ordinal = static_cast<std::uint64_t>(code); // one reading of this input each
            const ThermocoupleReading reading = board->ReadThermocouple(Channel(channel), 3, type);
            EXPECT_EQ(reading.coldJunctionCelsius, SimulatedColdJunction(channel));
            EXPECT_NEAR(ThermocoupleCelsius(type, reading), SimulatedCelsius(channel, 3, ordinal), 1e-6);
        }
    }
}

TEST_F(SimulatedThermocoupleTest, InputsCountApart) {
    Use(HighGain6601);
    const auto celsius = [&](std::int32_t channel, std::int32_t expansion) {
        return ThermocoupleCelsius(ThermocoupleType::K,
                                   board->ReadThermocouple(Channel(channel), expansion, ThermocoupleType::K));
    };
    EXPECT_NEAR(celsius(0, 0), 50.0, 1e-6);
    EXPECT_NEAR(celsius(0, 0), 51.0, 1e-6);
    EXPECT_NEAR(celsius(1, 0), 52.0, 1e-6);
    EXPECT_NEAR(celsius(0, 1), 55.0, 1e-6);
    board->SetFaults({.readError = "Open circuit"});
    EXPECT_THROW(celsius(0, 0), RunTimeError);
    board->SetFaults({});
    EXPECT_NEAR(celsius(0, 0), 52.0, 1e-6);
}

TEST_F(SimulatedThermocoupleTest, DifferentialOnlyBoardCountsInputsInTwos) {
    const auto read = [&](std::int32_t number) {
        (void)board->ReadThermocouple(Channel(number), 0, ThermocoupleType::J);
    };
    Use(HighGain6605);
    EXPECT_NO_THROW(read(30));
    EXPECT_THROW(read(32), RunTimeError);
    Use(HighGain6601);
    EXPECT_THROW(read(16), RunTimeError);
}

TEST_F(SimulatedThermocoupleTest, EveryTypeReadsAtEveryInputAndTime) {
    Use(Isolated3605);
    for (std::int32_t code = 0; code <= 6; ++code) {
        const auto type = static_cast<ThermocoupleType>(code);
        for (const std::int32_t channel : {0, 31}) {
            for (const std::int32_t expansion : {0, 15}) {
                for (int i = 0; i < 200; ++i)
                    ASSERT_NO_THROW((void)ThermocoupleCelsius(
                        type, board->ReadThermocouple(Channel(channel), expansion, type)));
            }
        }
    }
}

} // namespace
} // namespace tracelet
