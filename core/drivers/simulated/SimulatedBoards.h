#pragma once

#include "core/boards/BoardList.h"
#include "core/drivers/simulated/SimulatedSignals.h"

namespace tracelet {

/// New simulated boards, one of each of the catalogue. The plain ones stand first. What is polled of them
/// follows the clock; without one, readings are PolledStep apart, whenever they are taken.
[[nodiscard]] BoardList SimulatedBoards(const SignalClock& clock = {});

} // namespace tracelet
