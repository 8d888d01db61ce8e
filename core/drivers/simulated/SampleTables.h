#pragma once

#include "core/boards/Board.h"
#include "core/drivers/simulated/SimulatedSignals.h"

#include <cstdint>
#include <span>
#include <variant>
#include <vector>

namespace tracelet {

/// How a simulated converter turns codes into raw counts.
struct Converter {
    std::int32_t resolution = 16; ///< bits
    bool taggedCounts = false; ///< 12-bit boards: bits 12 to 15 of a count hold the channel's low four bits
};

/// Raw count of a signal, and its value as the converter sees it, at an index.
[[nodiscard]] std::int16_t SampledCount(const Converter& converter, const ChannelSetup& channel,
                                        const Signal& signal, SignalPlace index);
[[nodiscard]] double SampledValue(const Converter& converter, const ChannelSetup& channel,
                                  const Signal& signal, SignalPlace index);

/// Sample form of a buffer.
[[nodiscard]] SampleForm FormOf(const StreamBuffer& buffer);
/// Samples that a buffer takes.
[[nodiscard]] std::size_t SizeOf(const StreamBuffer& buffer);

/// The samples of a stream: one period of each channel, computed once, so that hundreds of millions of
/// samples a second can be handed over. Sample n belongs to scan n div channels, channel n mod channels.
class SampleTables {
public:
    SampleTables(std::int32_t board, const Converter& converter, const StreamSetup& setup);

    /// Fills the whole buffer with the samples from `firstSample` on. Its form is that of the set-up.
    void Fill(std::uint64_t firstSample, StreamBuffer buffer) const;

private:
    template <typename Sample>
    using Periods = std::vector<std::vector<Sample>>; // by scan position
    std::variant<Periods<std::int16_t>, Periods<float>> periods;
};

} // namespace tracelet
