#pragma once

#include "core/boards/Board.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>

namespace tracelet {

// What every driver's boards must do. The tests stand in BoardContract.cpp; a driver's test program links it
// and names its boards:
//
//     INSTANTIATE_TEST_SUITE_P(Simulated, AnalogBoardContract, testing::ValuesIn(AnalogCases()), CaseLabel);
//
// Nothing here knows what the boards measure, so it holds for hardware with nothing connected too.

/// A board to be tested, made anew (not opened) for each test.
template <typename BoardType>
struct BoardCase {
    std::string label; ///< letters and digits
    std::function<std::shared_ptr<BoardType>()> make;
};

template <typename BoardType>
void PrintTo(const BoardCase<BoardType>& tested, std::ostream* out) {
    *out << tested.label;
}

inline constexpr auto CaseLabel = [](const auto& tested) { return tested.param.label; };

/// Opens the board before each test.
template <typename BoardType>
class BoardContract : public testing::TestWithParam<BoardCase<BoardType>> {
protected:
    void SetUp() override { board->Open(); }

    const std::shared_ptr<BoardType> board = this->GetParam().make();
};

class AnalogBoardContract : public BoardContract<AnalogBoard> {
protected:
    /// Set-up of a channel as the board powers up.
    [[nodiscard]] ChannelSetup Plain(std::int32_t channel) const;
    /// Channels 0 to `count` - 1.
    [[nodiscard]] std::vector<ChannelSetup> Scan(std::int32_t count) const;
    /// A stream over `count` channels, at 20,000 conversions a second if the board can.
    [[nodiscard]] StreamSetup Stream(std::int32_t count, std::uint64_t totalSamples,
                                     SampleForm form = AnalogValues) const;
};

class DigitalBoardContract : public BoardContract<DigitalBoard> {};

} // namespace tracelet
