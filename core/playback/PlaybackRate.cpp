#include "core/playback/PlaybackRate.h"

#include "core/base/Convert.h"

#include <algorithm>
#include <cmath>

namespace tracelet {
namespace {

constexpr double SingleScanSpeed = 10.0; // ticks of one scan up to here
constexpr double MillisecondsASecond = 1000.0;
constexpr double TicksASecond = MillisecondsASecond / PlaybackTickMs;
constexpr double UserFactor = 100.0;
constexpr double SlowestSpeed = 1e-6;
constexpr double FastestSpeed = 2e10;

} // namespace

bool IsPlaybackSpeed(double speed) {
    return std::isfinite(speed) && speed > 0.0;
}

std::int32_t ScansPerTick(double speed) {
    return speed <= SingleScanSpeed ? 1 : CLng(speed / TicksASecond);
}

std::int32_t TickInterval(double speed) {
    if (speed > SingleScanSpeed)
        return PlaybackTickMs;
    return CLng(Quotient(MillisecondsASecond, speed));
}

std::int32_t AffordableScans(std::int32_t scans, std::int64_t valuesPerScan) {
    const std::int64_t most = MostValuesATick / std::max<std::int64_t>(1, valuesPerScan);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(most, 1, std::max(1, scans)));
}

SpeedRange UserSpeedRange(double ownRate) {
    return {std::clamp(ownRate / UserFactor, SlowestSpeed, FastestSpeed),
            std::clamp(ownRate * UserFactor, SlowestSpeed, FastestSpeed)};
}

} // namespace tracelet
