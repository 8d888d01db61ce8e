// Writes what the simulated boards hand over, one reading a line, for simulated_signals.py to check.

#include "core/boards/Thermocouple.h"
#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedBoards.h"

#include <cstdio>
#include <vector>

namespace tracelet {
namespace {

std::vector<ChannelSetup> AllChannels(const AnalogBoardInfo& info, const InputRange& range) {
    std::vector<ChannelSetup> channels;
    for (std::int32_t channel = 0; channel < info.channelCount; ++channel)
        channels.push_back({channel, range, info.singleEnded ? SingleEnded : Differential});
    return channels;
}

void DumpPolled(SimulatedAnalogBoard& board, const InputRange& range) {
    const std::vector<ChannelSetup> channels = AllChannels(board.Info(), range);
    std::vector<double> values(channels.size());
    for (int scan = 0; scan < 150; ++scan) {
        const auto ordinal = static_cast<unsigned long long>(board.ScansRead());
        board.ReadScan(channels, values);
        for (std::size_t i = 0; i < values.size(); ++i)
            std::printf("polled %d %zu %d %.17g %.17g %llu %.17g\n", board.Number(), i,
                        board.Info().resolution, range.first, range.second, ordinal, values[i]);
    }
}

template <typename Sample>
void DumpStream(SimulatedAnalogBoard& board, const InputRange& range, const char* kind, SampleForm form) {
    StreamSetup setup;
    setup.channels = AllChannels(board.Info(), range);
    setup.sampleRate = board.SettleSampleRate(33333.0, board.Info().channelCount);
    setup.form = form;
    board.SetPaced(false);
    board.StartStream(setup);
    std::vector<Sample> samples(3001 * setup.channels.size());
    const StreamRead read = board.ReadStream(std::span<Sample>(samples));
    board.StopStream();
    for (std::size_t n = 0; n < read.count; n += 13)
        std::printf("%s %d %zu %d %.17g %.17g %.17g %zu %.17g\n", kind, board.Number(),
                    n % setup.channels.size(), board.Info().resolution, range.first, range.second,
                    setup.sampleRate / static_cast<double>(setup.channels.size()), n / setup.channels.size(),
                    static_cast<double>(samples[n]));
}

void DumpThermocouples(SimulatedAnalogBoard& board) {
    const ChannelSetup channel = AllChannels(board.Info(), board.Info().ranges[0])[3];
    for (int ordinal = 0; ordinal < 250; ++ordinal) {
        const ThermocoupleReading reading = board.ReadThermocouple(channel, 2, ThermocoupleType::K);
        const double celsius = ThermocoupleCelsius(ThermocoupleType::K, reading);
        std::printf("celsius 3 2 %d %.17g\n", ordinal, celsius);
    }
}

void DumpPorts(DigitalBoard& board) {
    board.Open();
    std::vector<std::uint8_t> states(static_cast<std::size_t>(board.Info().portCount));
    for (int ordinal = 0; ordinal < 300; ++ordinal) {
        board.ReadPorts(0, states);
        for (std::size_t port = 0; port < states.size(); ++port)
            std::printf("port %zu %d %d\n", port, ordinal, states[port]);
    }
}

void DumpAnalog(SimulatedAnalogBoard& board) {
    board.Open();
    for (const InputRange& range : board.Info().ranges)
        DumpPolled(board, range);
    DumpStream<float>(board, board.Info().ranges.front(), "value", AnalogValues);
    DumpStream<float>(board, board.Info().ranges.back(), "value", AnalogValues);
    DumpStream<std::int16_t>(board, board.Info().ranges.front(),
                             board.ConverterOf().taggedCounts ? "tagged" : "count", RawCounts);
    if (board.Info().thermocouples)
        DumpThermocouples(board);
}

} // namespace
} // namespace tracelet

int main() {
    const tracelet::BoardList list = tracelet::SimulatedBoards();
    for (const auto& entry : list.analog)
        tracelet::DumpAnalog(dynamic_cast<tracelet::SimulatedAnalogBoard&>(*entry.board));
    for (const auto& entry : list.digital)
        tracelet::DumpPorts(*entry.board);
}
