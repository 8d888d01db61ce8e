#include "core/drivers/simulated/SimulatedBoards.h"

#include "core/base/RunTimeError.h"
#include "core/boards/Thermocouple.h"
#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedDigitalBoard.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace tracelet {
namespace {

const AnalogBoardInfo* Find(const BoardList& list, const std::string& text) {
    for (const auto& entry : list.analog) {
        if (entry.name.find(text) != std::string::npos)
            return &entry.board->Info();
    }
    return nullptr;
}

bool HasRange(const AnalogBoardInfo& info, double first, double second) {
    for (const InputRange& range : info.ranges) {
        if (range.first == first && range.second == second)
            return true;
    }
    return false;
}

TEST(SimulatedCatalogue, EntriesTellWhatTheirBoardsAre) {
    const BoardList list = SimulatedBoards();
    std::set<std::string> names;
    for (const auto& entry : list.analog) {
        EXPECT_TRUE(entry.simulated && entry.board->Info().simulated);
        EXPECT_EQ(entry.name, entry.board->Info().name);
        EXPECT_EQ(entry.driver, entry.board->Info().driver);
        EXPECT_EQ(entry.reason, "");
        EXPECT_EQ(entry.name.find("simulated"), std::string::npos); // said by the picker
        EXPECT_TRUE(names.insert(entry.name).second);
    }
    for (const auto& entry : list.digital) {
        EXPECT_TRUE(entry.simulated && entry.board->Info().simulated);
        EXPECT_EQ(entry.name, entry.board->Info().name);
        EXPECT_TRUE(names.insert(entry.name).second);
    }
}

TEST(SimulatedCatalogue, ThePlainBoardIsTheDefault) {
    const BoardList list = SimulatedBoards();
    ASSERT_EQ(list.DefaultAnalog(), 0);
    const AnalogBoardInfo& plain = list.analog[0].board->Info();
    EXPECT_EQ(plain.channelCount, 64);
    EXPECT_EQ(plain.resolution, 16);
    EXPECT_TRUE(plain.externalPacer && plain.hardwareTrigger && plain.singleEnded && plain.differential);
    EXPECT_FALSE(plain.thermocouples);
    EXPECT_GE(plain.highestRate, 1e6);
    for (const auto& [first, second] : {std::pair{-10.0, 10.0},
                                        {-5.0, 5.0},
                                        {-2.5, 2.5},
                                        {-1.25, 1.25},
                                        {0.0, 10.0},
                                        {0.0, 20.0},
                                        {4.0, 20.0}})
        EXPECT_TRUE(HasRange(plain, first, second)) << first << " ~ " << second;
    EXPECT_EQ(plain.ranges[0], (InputRange{0, -10.0, 10.0}));
    for (const char* family : {"05", "6601", "6602"})
        EXPECT_EQ(plain.name.find(family), std::string::npos);
    ASSERT_EQ(list.DefaultDigital(), 0);
    EXPECT_EQ(list.digital[0].board->Info().portCount, 4);
}

TEST(SimulatedCatalogue, EveryFamilyIsThere) {
    const BoardList list = SimulatedBoards();
    for (const char* family : {"6601HG", "6602", "6605HG", "3605"}) {
        ASSERT_NE(Find(list, family), nullptr) << family;
        EXPECT_EQ(Find(list, family)->thermocouples, std::string(family) != "6602") << family;
    }
    EXPECT_EQ(Find(list, "6602")->resolution, 12);
    EXPECT_TRUE(Find(list, "6601HG")->singleEnded && Find(list, "6601HG")->differential);
    EXPECT_FALSE(Find(list, "6605HG")->singleEnded);
    EXPECT_FALSE(Find(list, "3605")->differential);
    int thermocoupleBoards = 0;
    for (const auto& entry : list.analog)
        thermocoupleBoards += entry.board->Info().thermocouples ? 1 : 0;
    EXPECT_EQ(thermocoupleBoards, 3);
}

TEST(SimulatedCatalogue, HasABareBoardAndAFastOne) {
    bool bare = false;
    bool fast = false;
    for (const auto& entry : SimulatedBoards().analog) {
        const AnalogBoardInfo& info = entry.board->Info();
        bare = bare ||
               (!info.externalPacer && !info.hardwareTrigger && !info.differential && !info.thermocouples);
        fast = fast || info.highestRate >= 20e6;
    }
    EXPECT_TRUE(bare);
    EXPECT_TRUE(fast);
}

TEST(SimulatedCatalogue, HasDigitalBoardsOfEverySize) {
    std::set<std::int32_t> sizes;
    for (const auto& entry : SimulatedBoards().digital)
        sizes.insert(entry.board->Info().portCount);
    EXPECT_EQ(sizes, (std::set<std::int32_t>{1, 4, 12}));
}

TEST(SimulatedCatalogue, NumbersAreThePlaces) {
    const BoardList list = SimulatedBoards();
    for (std::size_t i = 0; i < list.analog.size(); ++i)
        EXPECT_EQ(dynamic_cast<SimulatedAnalogBoard&>(*list.analog[i].board).Number(),
                  static_cast<std::int32_t>(i));
}

TEST(SimulatedCatalogue, PolledSignalsFollowTheClock) {
    double seconds = 0.0;
    const BoardList list = SimulatedBoards([&seconds] { return seconds; });
    auto& analog = dynamic_cast<SimulatedAnalogBoard&>(*list.analog[3].board); // has thermocouple inputs
    AnalogBoard& board = analog;
    board.Open();
    DigitalBoard& ports = *list.digital[0].board;
    ports.Open();
    const ChannelSetup channel{2, board.Info().ranges.front(), SingleEnded};
    for (const double time : {0.0, 0.25, 0.25, 60.0}) {
        seconds = time;
        double value = 0.0;
        board.ReadScan({&channel, 1}, {&value, 1});
        EXPECT_EQ(value, analog.PolledValue(channel, time / PolledStep)) << time;
        const ThermocoupleReading reading = board.ReadThermocouple(channel, 0, ThermocoupleType::K);
        EXPECT_NEAR(ThermocoupleCelsius(ThermocoupleType::K, reading),
                    SimulatedCelsius(2, 0, time / PolledStep), 1e-6);
        std::uint8_t port = 0;
        ports.ReadPorts(0, {&port, 1});
        EXPECT_EQ(port, SimulatedPort(0, time / PolledStep)) << time;
    }
}

class SimulatedDigitalTest : public testing::Test {
protected:
    SimulatedDigitalTest() { board.Open(); }

    std::vector<std::uint8_t> Read(std::int32_t start, std::size_t count) {
        std::vector<std::uint8_t> states(count, 0xEE);
        board.ReadPorts(start, states);
        return states;
    }

    SimulatedDigitalBoard board{DigitalBoardInfo{"Four", "Simulation", true, 4}};
};

TEST_F(SimulatedDigitalTest, CountsItsReadings) {
    EXPECT_EQ(Read(0, 4), (std::vector<std::uint8_t>{0, 16, 32, 48}));
    EXPECT_EQ(Read(2, 1), (std::vector<std::uint8_t>{33}));
    EXPECT_EQ(Read(1, 2), (std::vector<std::uint8_t>{18, 34}));
    EXPECT_EQ(board.Readings(), 3U);
}

TEST_F(SimulatedDigitalTest, ReadingsThatFailAreNotCounted) {
    board.SetFaults({.readError = "Bus fault"});
    try {
        Read(0, 1);
        FAIL();
    } catch (const RunTimeError& error) {
        EXPECT_STREQ(error.what(), "Bus fault");
    }
    board.SetFaults({.unplugged = true});
    EXPECT_THROW(Read(0, 1), RunTimeError);
    EXPECT_THROW(board.Open(), RunTimeError);
    board.SetFaults({});
    EXPECT_THROW(Read(4, 1), RunTimeError);
    EXPECT_EQ(Read(0, 1), (std::vector<std::uint8_t>{0}));
}

TEST_F(SimulatedDigitalTest, MustBeOpened) {
    SimulatedDigitalBoard closed{DigitalBoardInfo{"Four", "Simulation", true, 4}};
    std::uint8_t state = 0;
    EXPECT_THROW(closed.ReadPorts(0, std::span(&state, 1)), RunTimeError);
}

} // namespace
} // namespace tracelet
