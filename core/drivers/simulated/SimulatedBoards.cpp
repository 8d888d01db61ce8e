#include "core/drivers/simulated/SimulatedBoards.h"

#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedDigitalBoard.h"

#include <memory>
#include <utility>

namespace tracelet {
namespace {

constexpr const char* DriverName = "Simulation";

// Ranges in enumeration order; their codes count from 0.
std::vector<InputRange> Ranges(std::initializer_list<std::pair<double, double>> limits) {
    std::vector<InputRange> ranges;
    for (const auto& [first, second] : limits)
        ranges.push_back({static_cast<std::int32_t>(ranges.size()), first, second});
    return ranges;
}

std::vector<InputRange> PlainRanges() {
    return Ranges({{-10, 10}, {-5, 5}, {-2.5, 2.5}, {-1.25, 1.25}, {0, 10}, {0, 20}, {4, 20}});
}

std::vector<InputRange> HighGainRanges() {
    return Ranges({{-10, 10},
                   {-5, 5},
                   {-1, 1},
                   {-0.5, 0.5},
                   {-0.1, 0.1},
                   {-0.05, 0.05},
                   {-0.01, 0.01},
                   {-0.005, 0.005}});
}

SimulatedAnalogKind Described(const char* name, std::int32_t resolution, std::int32_t channelCount,
                              std::vector<InputRange> ranges, double highestRate, double dividedClock) {
    SimulatedAnalogKind kind;
    AnalogBoardInfo& info = kind.info;
    info.name = name;
    info.driver = DriverName;
    info.simulated = true;
    info.resolution = resolution;
    info.channelCount = channelCount;
    info.ranges = std::move(ranges);
    info.lowestRate = 0.1;
    info.highestRate = highestRate;
    kind.dividedClock = dividedClock;
    return kind;
}

// The board that is selected when there is no real one.
SimulatedAnalogKind Plain() {
    SimulatedAnalogKind kind = Described("Merula 64", 16, 64, PlainRanges(), 1e6, 0);
    kind.info.externalPacer = true;
    kind.info.hardwareTrigger = true;
    return kind;
}

SimulatedAnalogKind Swift() {
    SimulatedAnalogKind kind = Described("Merula Swift 16", 16, 16, PlainRanges(), 20e6, 20e6);
    kind.info.externalPacer = true;
    kind.info.hardwareTrigger = true;
    return kind;
}

// No external pacer, no trigger, no pairs.
SimulatedAnalogKind Small() {
    SimulatedAnalogKind kind = Described("Merula 8", 12, 8, Ranges({{-10, 10}, {0, 10}}), 1e5, 10e6);
    kind.info.differential = false;
    return kind;
}

SimulatedAnalogKind HighGain6601() {
    SimulatedAnalogKind kind = Described("Alcedo 6601HG", 12, 16, HighGainRanges(), 1e5, 10e6);
    kind.info.externalPacer = true;
    kind.info.thermocouples = true;
    return kind;
}

// Raw counts carry the channel in their upper four bits.
SimulatedAnalogKind Tagged6602() {
    SimulatedAnalogKind kind =
        Described("Alcedo 6602", 12, 16, Ranges({{-10, 10}, {-5, 5}, {0, 10}, {0, 5}}), 5e5, 10e6);
    kind.taggedCounts = true;
    kind.info.externalPacer = true;
    kind.info.hardwareTrigger = true;
    return kind;
}

// Every input has two terminals of its own: always differential, and no channels pair up.
SimulatedAnalogKind HighGain6605() {
    SimulatedAnalogKind kind = Described("Alcedo 6605HG", 16, 16, HighGainRanges(), 1e5, 10e6);
    kind.info.singleEnded = false;
    kind.info.thermocouples = true;
    return kind;
}

SimulatedAnalogKind Isolated3605() {
    SimulatedAnalogKind kind =
        Described("Alcedo 3605", 16, 32, Ranges({{-10, 10}, {-1, 1}, {-0.1, 0.1}, {-0.01, 0.01}}), 1e4, 10e6);
    kind.info.differential = false;
    kind.info.thermocouples = true;
    return kind;
}

template <typename BoardType>
BoardEntry<BoardType> Entry(std::shared_ptr<BoardType> board) {
    BoardEntry<BoardType> entry;
    entry.name = board->Info().name;
    entry.driver = board->Info().driver;
    entry.simulated = true;
    entry.board = std::move(board);
    return entry;
}

void Add(BoardList& list, SimulatedAnalogKind kind, const SignalClock& clock) {
    kind.clock = clock;
    kind.number = static_cast<std::int32_t>(list.analog.size());
    list.analog.push_back(Entry<AnalogBoard>(std::make_shared<SimulatedAnalogBoard>(std::move(kind))));
}

void Add(BoardList& list, const char* name, std::int32_t portCount, const SignalClock& clock) {
    DigitalBoardInfo info;
    info.name = name;
    info.driver = DriverName;
    info.simulated = true;
    info.portCount = portCount;
    list.digital.push_back(
        Entry<DigitalBoard>(std::make_shared<SimulatedDigitalBoard>(std::move(info), clock)));
}

} // namespace

BoardList SimulatedBoards(const SignalClock& clock) {
    BoardList list;
    for (auto* make : {Plain, Swift, Small, HighGain6601, Tagged6602, HighGain6605, Isolated3605})
        Add(list, make(), clock);
    Add(list, "Merula Port 4", 4, clock);
    Add(list, "Merula Port 1", 1, clock);
    Add(list, "Merula Port 12", 12, clock);
    return list;
}

} // namespace tracelet
