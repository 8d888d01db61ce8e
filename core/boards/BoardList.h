#pragma once

#include "core/boards/Board.h"

#include <memory>
#include <string>
#include <vector>

namespace tracelet {

/// One line of a board picker. A board that was found but cannot be used has no `board` and a `reason`.
template <typename BoardType>
struct BoardEntry {
    std::string name; ///< the plain device name; the picker marks simulated boards
    std::string driver;
    std::string reason; ///< why it cannot be used, "" otherwise
    bool simulated = false;
    std::shared_ptr<BoardType> board;
    std::string address{}; ///< where it is plugged in, as the system or the network names it; "" for nowhere
    bool onlyWhenPicked = false; ///< never selected by itself: a microphone, or what a serial line belongs to
};

/// Every board of the machine. A device number is the index in its list, so real boards stand first.
struct BoardList {
    std::vector<BoardEntry<AnalogBoard>> analog;
    std::vector<BoardEntry<DigitalBoard>> digital;

    /// First real board that can be used and need not be picked, else the plain simulated one; -1 when there
    /// is none.
    [[nodiscard]] std::int32_t DefaultAnalog() const;
    [[nodiscard]] std::int32_t DefaultDigital() const;
};

} // namespace tracelet
