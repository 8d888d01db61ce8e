#include "core/boards/BoardFamily.h"

#include <string_view>

namespace tracelet {
namespace {

bool IsOf(const AnalogBoardInfo& board, std::string_view family) {
    return !board.noFamily && board.name.find(family) != std::string::npos;
}

} // namespace

bool IsUnpairedFamily(const AnalogBoardInfo& board) {
    return IsOf(board, "05");
}

bool OffersThermocouples(const AnalogBoardInfo& board) {
    if (board.noFamily)
        return board.thermocouples;
    return IsOf(board, "6601HG") || IsOf(board, "6605HG") || IsOf(board, "3605");
}

bool DoublesThermoChannels(const AnalogBoardInfo& board) {
    return IsOf(board, "6605");
}

bool ShowsChoiceAfterPairing(const AnalogBoardInfo& board) {
    return IsOf(board, "6601");
}

bool CountsHaveTwelveBits(const AnalogBoardInfo& board) {
    return IsOf(board, "6602");
}

bool IsMilliamperes(const InputRange& range) {
    constexpr double CurrentLimit = 20.0; // of families, only current ranges end there
    return range.unit == RangeUnit::Unstated ? range.second == CurrentLimit
                                             : range.unit == RangeUnit::Milliamperes;
}

const char* UnitOf(const InputRange& range) {
    if (range.unit == RangeUnit::Numbers)
        return "";
    return IsMilliamperes(range) ? "mA" : "V";
}

} // namespace tracelet
