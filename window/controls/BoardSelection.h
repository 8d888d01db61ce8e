#pragma once

#include "core/boards/BoardList.h"

#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace tracelet {

/// The boards that a control can choose from, and the chosen one.
template <typename BoardType>
class BoardSelection {
public:
    void SetBoards(std::vector<BoardEntry<BoardType>> boards) {
        Deselect();
        entries = std::move(boards);
    }

    /// The boards so far in their places, and those that were found since.
    void AddBoards(std::vector<BoardEntry<BoardType>> boards) { entries = std::move(boards); }

    [[nodiscard]] const std::vector<BoardEntry<BoardType>>& Entries() const { return entries; }
    [[nodiscard]] std::int32_t Number() const { return number; } ///< -1 when none is selected
    [[nodiscard]] const std::shared_ptr<BoardType>& Board() const { return board; }
    [[nodiscard]] explicit operator bool() const { return board != nullptr; }
    [[nodiscard]] BoardType* operator->() const { return board.get(); }

    /// Description of the chosen board; without one that of "No Device", which has nothing.
    [[nodiscard]] const auto& Info() const {
        static const auto none = [] {
            std::remove_cvref_t<decltype(board->Info())> info;
            info.name = "No Device";
            return info;
        }();
        return board ? board->Info() : none;
    }

    /// The board of a number; nothing when there is none that can be used.
    [[nodiscard]] std::shared_ptr<BoardType> Find(std::int32_t wanted) const {
        if (wanted < 0 || static_cast<std::size_t>(wanted) >= entries.size())
            return nullptr;
        return entries[static_cast<std::size_t>(wanted)].board;
    }

    void Select(std::int32_t wanted) {
        board = Find(wanted);
        number = board ? wanted : -1;
    }

    void Deselect() { Select(-1); }

private:
    std::vector<BoardEntry<BoardType>> entries;
    std::shared_ptr<BoardType> board;
    std::int32_t number = -1;
};

} // namespace tracelet
