#include "core/input/PollPlan.h"

#include "tests/support/GatedBoards.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

constexpr std::int32_t Channels = 8;

/// Tables of eight channels; those named are thermocouples of expansion channel 3 whose type and scale follow
/// from their number.
M1 TablesWith(std::initializer_list<std::int32_t> thermocouples) {
    M1 tables;
    tables.AIChanIsThermo.Resize(Channels + 1);
    tables.AIThermoExpChan.Resize(Channels + 1);
    tables.AIThermoScale.Resize(Channels + 1);
    tables.AIThermoType.Resize(Channels + 1);
    for (const std::int32_t channel : thermocouples) {
        tables.AIChanIsThermo[channel] = true;
        tables.AIThermoExpChan[channel] = 3;
        tables.AIThermoType[channel] = static_cast<std::uint8_t>(channel % 7);
        tables.AIThermoScale[channel] = static_cast<std::uint8_t>(channel % 4);
    }
    return tables;
}

/// A wiring of eight channels in which the named pairs are differential.
Table<std::int32_t> WiringWith(std::initializer_list<std::int32_t> pairs) {
    Table<std::int32_t> wiring(Channels + 1);
    for (const std::int32_t even : pairs)
        wiring[even] = wiring[even + 1] = Differential;
    return wiring;
}

AnalogBoardInfo BoardNamed(std::string_view name) {
    AnalogBoardInfo board;
    board.name = name;
    board.channelCount = Channels;
    return board;
}

struct AnalogCase {
    const char* name;
    std::string_view board;
    std::initializer_list<std::int32_t> thermocouples;
    std::initializer_list<std::int32_t> pairs;
    std::int32_t start;
    std::int32_t count;
    bool doubled;
    bool readsScan;
    std::vector<std::int32_t> positions; // of the couples in the scan
    std::vector<std::int32_t> inputs;    // of the board, one a position
};

const AnalogCase AnalogCases[] = {
    {"voltages alone", "Plain", {}, {}, 0, 8, false, true, {}, {}},
    {"one couple", "Plain", {2}, {}, 1, 3, false, true, {1}, {2}},
    {"a couple outside the scan", "Plain", {5}, {}, 1, 3, false, true, {}, {}},
    {"couples behind a pair", "Plain", {2, 3}, {0}, 0, 3, false, true, {1, 2}, {2, 3}},
    {"doubled inputs", "Plain", {2, 3}, {}, 2, 2, true, true, {0, 1}, {4, 6}},
    {"unpaired family without couples", "3605", {}, {}, 0, 4, false, false, {}, {}},
    {"unpaired family, couple outside the scan", "3605", {7}, {}, 0, 4, false, false, {}, {}},
    {"unpaired family with a couple", "3605", {3}, {0}, 0, 4, false, true, {3}, {3}},
};

TEST(PlanAnalog, TellsWhatATickReads) {
    for (const AnalogCase& c : AnalogCases) {
        SCOPED_TRACE(c.name);
        const Table<std::int32_t> wiring = WiringWith(c.pairs);
        const AnalogBoardInfo board = BoardNamed(c.board);
        PollPlan plan;
        plan.channels = {{7, {}, 0}}; // of the session before
        plan.thermocouples.resize(3);
        PlanAnalog(plan, TablesWith(c.thermocouples), {{board, wiring}, c.start, c.count, c.doubled});
        EXPECT_EQ(plan.channelCount, c.count);
        EXPECT_EQ(plan.readsScan, c.readsScan);
        EXPECT_THAT(plan.channels, IsEmpty());
        ASSERT_EQ(plan.thermocouples.size(), c.positions.size());
        for (std::size_t i = 0; i < c.positions.size(); ++i) {
            const PolledThermocouple& couple = plan.thermocouples[i];
            EXPECT_EQ(couple.position, c.positions[i]);
            EXPECT_EQ(couple.channel.channel, c.inputs[i]);
            const std::int32_t physical = c.doubled ? c.inputs[i] / 2 : c.inputs[i];
            EXPECT_EQ(static_cast<std::int32_t>(couple.type), physical % 7);
            EXPECT_EQ(static_cast<std::int32_t>(couple.scale), physical % 4);
            EXPECT_EQ(couple.expansion, 3);
        }
    }
}

TEST(PlanAnalog, ReadsABoardOfNoFamilyWhateverItsName) {
    const Table<std::int32_t> wiring = WiringWith({});
    AnalogBoardInfo board = BoardNamed("pci-6052e");
    board.noFamily = true;
    PollPlan plan;
    PlanAnalog(plan, TablesWith({}), {{board, wiring}, 0, 4, false});
    EXPECT_TRUE(plan.readsScan);
}

TEST(PlanAnalog, RefusesChannelsThatTheTablesLack) {
    M1 tables;
    tables.AIChanIsThermo.Resize(3);
    const Table<std::int32_t> wiring = WiringWith({});
    const AnalogBoardInfo board = BoardNamed("Plain");
    PollPlan plan;
    EXPECT_NO_THROW(PlanAnalog(plan, tables, {{board, wiring}, 0, 3, false}));
    EXPECT_THROW(PlanAnalog(plan, tables, {{board, wiring}, 0, 4, false}), RunTimeError);
}

TEST(PlanDigital, ListsTheShownLinesInPlotOrder) {
    Table<std::uint8_t> masks(3);
    masks[0] = 0xFF;
    masks[1] = 0x82;
    PollPlan plan;
    PlanDigital(plan, masks, 1, 2);
    EXPECT_EQ(plan.portStart, 1);
    EXPECT_EQ(plan.portCount, 2);
    EXPECT_THAT(plan.lines, ElementsAre(9, 15));
    PlanDigital(plan, masks, 2, 5); // more ports than masks
    EXPECT_EQ(plan.portCount, 5);
    EXPECT_THAT(plan.lines, IsEmpty());
    PlanDigital(plan, masks, 0, -1);
    EXPECT_EQ(plan.portCount, 0);
}

TEST(MayBlock, AsksTheBoardsThatThePlanReads) {
    const auto slow = std::make_shared<GatedAnalogBoard>(true);
    const auto quick = std::make_shared<GatedAnalogBoard>(false);
    const auto digital = std::make_shared<GatedDigitalBoard>();
    PollPlan voltages;
    voltages.readsScan = true;
    PollPlan couples = voltages;
    couples.thermocouples.resize(1);
    PollPlan ports;
    ports.portCount = 1;
    EXPECT_TRUE(MayBlock(voltages, {slow, quick, nullptr}));
    EXPECT_FALSE(MayBlock(voltages, {quick, slow, digital}));
    EXPECT_TRUE(MayBlock(couples, {quick, slow, nullptr}));
    EXPECT_FALSE(MayBlock(couples, {quick, nullptr, nullptr}));
    EXPECT_FALSE(MayBlock(ports, {slow, slow, nullptr}));
    EXPECT_TRUE(MayBlock(ports, {nullptr, nullptr, digital}));
    digital->info.mayBlock = false;
    EXPECT_FALSE(MayBlock(ports, {nullptr, nullptr, digital}));
    EXPECT_FALSE(MayBlock({}, {slow, slow, nullptr}));
}

class ReadTickTest : public testing::Test {
protected:
    ReadTickTest() {
        plan.channelCount = 2;
        plan.readsScan = true;
        plan.channels = {{1, {}, 0}, {2, {}, 0}};
        plan.portStart = 0;
        plan.portCount = 2;
        boards = {analog, analog, digital};
    }

    const std::shared_ptr<GatedAnalogBoard> analog = std::make_shared<GatedAnalogBoard>();
    const std::shared_ptr<GatedDigitalBoard> digital = std::make_shared<GatedDigitalBoard>();
    PollPlan plan;
    PollBoards boards;
    PolledTick tick;
};

TEST_F(ReadTickTest, ReadsBothInputs) {
    ReadTick(plan, boards, tick);
    EXPECT_THAT(tick.values, ElementsAre(1.5, 2.5));
    EXPECT_THAT(tick.states, ElementsAre(16, 17));
    EXPECT_EQ(tick.analogFault + tick.digitalFault, "");
}

TEST_F(ReadTickTest, ReadsOnlyWhatIsOn) {
    plan.channelCount = 0;
    tick.analogFault = "of an earlier session";
    ReadTick(plan, boards, tick);
    EXPECT_EQ(analog->gate.Reads(), 0);
    EXPECT_EQ(digital->gate.Reads(), 1);
    plan.channelCount = 2;
    plan.portCount = 0;
    ReadTick(plan, boards, tick);
    EXPECT_EQ(analog->gate.Reads(), 1);
    EXPECT_EQ(digital->gate.Reads(), 1);
}

TEST_F(ReadTickTest, ABoardThatIsNotReadGivesZeros) {
    plan.readsScan = false;
    tick.values = {5, 5, 5};
    ReadAnalog(plan, boards, tick);
    EXPECT_THAT(tick.values, ElementsAre(0, 0));
    EXPECT_EQ(analog->gate.Reads(), 0);
}

TEST_F(ReadTickTest, AnalogFaultEndsTheTick) {
    analog->fault = "No answer";
    ReadTick(plan, boards, tick);
    EXPECT_EQ(tick.analogFault, "No answer");
    EXPECT_EQ(digital->gate.Reads(), 0);
    analog->fault.clear();
    digital->fault = "No ports";
    ReadTick(plan, boards, tick);
    EXPECT_EQ(tick.analogFault, "");
    EXPECT_EQ(tick.digitalFault, "No ports");
}

TEST_F(ReadTickTest, TemperaturesReplaceTheirValues) {
    plan.thermocouples = {{1, {7, {1, -0.005, 0.005}, 0}, 4, ThermocoupleType::K, TemperatureScale::Kelvin}};
    analog->couple = {ThermocoupleMillivolts(ThermocoupleType::K, 100.0), 0.0};
    ReadTick(plan, boards, tick);
    EXPECT_EQ(tick.values.at(0), 1.5);
    EXPECT_NEAR(tick.values.at(1), 373.15, 1e-6);
    EXPECT_THAT(analog->coupled, ElementsAre(Field(&ChannelSetup::channel, 7)));
}

TEST_F(ReadTickTest, OpenCoupleCostsItsOwnChannelAlone) {
    constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
    plan.thermocouples = {{0, {0, {}, 0}, 0, ThermocoupleType::J, TemperatureScale::Fahrenheit}};
    const ThermocoupleReading outside[] = {{1e6, 25.0}, {-1e6, 25.0}, {NaN, 25.0}, {1.0, NaN}, {1.0, 5000.0}};
    for (const ThermocoupleReading& reading : outside) {
        SCOPED_TRACE(testing::Message() << reading.millivolts << " " << reading.coldJunctionCelsius);
        analog->couple = reading;
        ReadTick(plan, boards, tick);
        EXPECT_EQ(tick.analogFault, "");
        EXPECT_TRUE(std::isnan(tick.values.at(0)));
        EXPECT_EQ(tick.values.at(1), 2.5);
    }
}

TEST_F(ReadTickTest, ControlsWithoutTheirBoardsAreFaults) {
    boards = {analog, nullptr, nullptr};
    ReadDigital(plan, boards, tick);
    EXPECT_EQ(tick.digitalFault, "No digital device is selected");
    plan.thermocouples.resize(1);
    ReadAnalog(plan, boards, tick);
    EXPECT_EQ(tick.analogFault, "No thermocouple device is selected");
}

/// A board that raises what no driver should.
class RudeBoard final : public DigitalBoard {
public:
    [[nodiscard]] const DigitalBoardInfo& Info() const override { return info; }
    void Open() override {}
    void ReadPorts(std::int32_t, std::span<std::uint8_t>) override {
        if (isMute)
            throw RunTimeError("");
        throw 42;
    }
    DigitalBoardInfo info;
    bool isMute = false;
};

TEST_F(ReadTickTest, EveryFaultHasAText) {
    const auto rude = std::make_shared<RudeBoard>();
    boards.digital = rude;
    for (const bool isMute : {false, true}) {
        rude->isMute = isMute;
        ReadDigital(plan, boards, tick);
        EXPECT_EQ(tick.digitalFault, "The board's driver failed without saying why");
    }
}

} // namespace
} // namespace tracelet
