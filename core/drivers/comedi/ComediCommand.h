#pragma once

#include "core/drivers/comedi/ComediDevice.h"

#include <cstdint>
#include <vector>

namespace tracelet {

/// What a streaming command shall do.
struct CommandWish {
    std::vector<unsigned int> channels; ///< scan order, packed with range and reference
    double sampleRate = 1.0;            ///< hertz, conversions of all channels together
    bool externalPacer = false;
    bool externalStart = false;
    bool fallingEdge = false;       ///< of the start
    std::uint64_t totalSamples = 0; ///< 0 endless
};

/// The command nearest to the wish that the driver takes; its channel list is left to the caller. Raises when
/// the driver has none.
[[nodiscard]] comedi_cmd SettleCommand(ComediDevice& device, unsigned int subdevice, const CommandWish& wish);

/// Rate in hertz at which a settled command converts.
[[nodiscard]] double SampleRateOf(const comedi_cmd& command);

/// Has the driver stop after so many whole scans as hold these samples, if it can count and so far; 0
/// endless.
void SetTotal(comedi_cmd& command, bool canCount, std::uint64_t totalSamples);

/// Starts a command over `channels`; raises.
void RunCommand(ComediDevice& device, comedi_cmd command, std::vector<unsigned int>& channels);

} // namespace tracelet
