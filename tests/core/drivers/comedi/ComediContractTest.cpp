#include "tests/core/boards/BoardContract.h"

#include "core/drivers/comedi/ComediBoards.h"

#include <iostream>
#include <vector>

// The contract on every board that is attached to this machine. Without one there is nothing to test.

namespace tracelet {
namespace {

template <typename BoardType>
std::vector<BoardCase<BoardType>> Cases(std::vector<BoardEntry<BoardType>> BoardList::*kind) {
    std::vector<BoardCase<BoardType>> cases;
    BoardList found;
    FindComediBoards(found);
    for (std::size_t i = 0; i < (found.*kind).size(); ++i) {
        if ((found.*kind)[i].board)
            cases.push_back({"Board" + std::to_string(i), [kind, i] {
                                 BoardList fresh;
                                 FindComediBoards(fresh);
                                 return (fresh.*kind).at(i).board;
                             }});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Comedi, AnalogBoardContract, testing::ValuesIn(Cases(&BoardList::analog)),
                         CaseLabel);
INSTANTIATE_TEST_SUITE_P(Comedi, DigitalBoardContract, testing::ValuesIn(Cases(&BoardList::digital)),
                         CaseLabel);

TEST(ComediContractTest, HasABoardToTest) {
    BoardList found;
    FindComediBoards(found);
    if (found.DefaultAnalog() < 0 && found.DefaultDigital() < 0)
        GTEST_SKIP() << "no Comedi board can be opened on this machine: the contract was not tested";
    EXPECT_GE(found.analog.size() + found.digital.size(), 1U);
}

} // namespace
} // namespace tracelet
