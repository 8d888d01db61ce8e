#include "tests/core/boards/BoardContract.h"

#include "core/drivers/simulated/SimulatedBoards.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace tracelet {
namespace {

std::string Label(std::string name) {
    std::erase_if(name, [](unsigned char c) { return !std::isalnum(c); });
    return name;
}

std::vector<BoardCase<AnalogBoard>> AnalogCases() {
    std::vector<BoardCase<AnalogBoard>> cases;
    const BoardList catalogue = SimulatedBoards();
    for (std::size_t i = 0; i < catalogue.analog.size(); ++i)
        cases.push_back({Label(catalogue.analog[i].name), [i] { return SimulatedBoards().analog[i].board; }});
    return cases;
}

std::vector<BoardCase<DigitalBoard>> DigitalCases() {
    std::vector<BoardCase<DigitalBoard>> cases;
    const BoardList catalogue = SimulatedBoards();
    for (std::size_t i = 0; i < catalogue.digital.size(); ++i)
        cases.push_back(
            {Label(catalogue.digital[i].name), [i] { return SimulatedBoards().digital[i].board; }});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Simulated, AnalogBoardContract, testing::ValuesIn(AnalogCases()), CaseLabel);
INSTANTIATE_TEST_SUITE_P(Simulated, DigitalBoardContract, testing::ValuesIn(DigitalCases()), CaseLabel);

} // namespace
} // namespace tracelet
