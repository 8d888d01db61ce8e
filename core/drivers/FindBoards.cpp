#include "core/drivers/FindBoards.h"

#ifdef TRACELET_COMEDI
#include "core/drivers/comedi/ComediBoards.h"
#endif
#include "core/drivers/serial/SerialBoards.h"
#include "core/drivers/simulated/SimulatedBoards.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace tracelet {
namespace {

void Append(BoardList& list, BoardList more) {
    std::ranges::move(more.analog, std::back_inserter(list.analog));
    std::ranges::move(more.digital, std::back_inserter(list.digital));
}

} // namespace

BoardList FindBoards() {
    BoardList list;
    // Drivers of real boards append theirs here.
#ifdef TRACELET_COMEDI
    FindComediBoards(list);
#endif
    const auto start = std::chrono::steady_clock::now();
    Append(list, SimulatedBoards([start] {
               return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
           }));
    FindMoreBoards(list);
    return list;
}

void FindMoreBoards(BoardList& boards) {
    FindSerialBoards(boards);
}

} // namespace tracelet
