#include "core/drivers/FindBoards.h"

#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "core/drivers/simulated/SimulatedDigitalBoard.h"

#include <gtest/gtest.h>

namespace tracelet {
namespace {

BoardEntry<AnalogBoard> Analog(bool simulated, bool usable) {
    BoardEntry<AnalogBoard> entry;
    entry.simulated = simulated;
    if (usable)
        entry.board = std::make_shared<SimulatedAnalogBoard>(SimulatedAnalogKind{});
    else
        entry.reason = "Permission denied";
    return entry;
}

BoardEntry<DigitalBoard> Digital(bool simulated, bool usable) {
    BoardEntry<DigitalBoard> entry;
    entry.simulated = simulated;
    if (usable)
        entry.board = std::make_shared<SimulatedDigitalBoard>(DigitalBoardInfo{});
    return entry;
}

TEST(BoardListTest, EmptyListHasNoDefaults) {
    EXPECT_EQ(BoardList{}.DefaultAnalog(), -1);
    EXPECT_EQ(BoardList{}.DefaultDigital(), -1);
}

TEST(BoardListTest, FirstUsableRealBoardIsTheDefault) {
    BoardList list;
    list.analog = {Analog(true, true), Analog(false, false), Analog(false, true), Analog(false, true)};
    list.digital = {Digital(false, false), Digital(false, true), Digital(true, true)};
    EXPECT_EQ(list.DefaultAnalog(), 2);
    EXPECT_EQ(list.DefaultDigital(), 1);
}

TEST(BoardListTest, WithoutARealBoardTheFirstSimulatedOneIs) {
    BoardList list;
    list.analog = {Analog(false, false), Analog(true, true), Analog(true, true)};
    list.digital = {Digital(true, false), Digital(true, true)};
    EXPECT_EQ(list.DefaultAnalog(), 1);
    EXPECT_EQ(list.DefaultDigital(), 1);
    list.analog = {Analog(false, false), Analog(true, false)};
    EXPECT_EQ(list.DefaultAnalog(), -1);
}

TEST(BoardListTest, FindsTheSimulatedBoardsAtTheEnd) {
    const BoardList found = FindBoards();
    const BoardList simulated = SimulatedBoards();
    ASSERT_GE(found.analog.size(), simulated.analog.size());
    ASSERT_GE(found.digital.size(), simulated.digital.size());
    const std::size_t firstAnalog = found.analog.size() - simulated.analog.size();
    for (std::size_t i = 0; i < found.analog.size(); ++i)
        EXPECT_EQ(found.analog[i].simulated, i >= firstAnalog);
    for (std::size_t i = 0; i < simulated.analog.size(); ++i)
        EXPECT_EQ(found.analog[firstAnalog + i].name, simulated.analog[i].name);
    const std::size_t firstDigital = found.digital.size() - simulated.digital.size();
    for (std::size_t i = 0; i < simulated.digital.size(); ++i)
        EXPECT_EQ(found.digital[firstDigital + i].name, simulated.digital[i].name);
}

TEST(BoardListTest, EveryCallMakesBoardsOfItsOwn) {
    const BoardList first = FindBoards();
    const BoardList second = FindBoards();
    EXPECT_NE(first.analog.back().board, second.analog.back().board);
    EXPECT_NE(first.digital.back().board, second.digital.back().board);
}

} // namespace
} // namespace tracelet
