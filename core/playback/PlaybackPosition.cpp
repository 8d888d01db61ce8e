#include "core/playback/PlaybackPosition.h"

#include "core/base/Convert.h"
#include "core/base/RunTimeError.h"

#include <cmath>

namespace tracelet {
namespace {

constexpr double WholeRecording = 100.0; // percent
constexpr double KeptSeconds = 20.0;

} // namespace

std::int32_t ScanAt(double percent, std::int32_t scanCount) {
    return CLng(percent / WholeRecording * scanCount);
}

double AdvancedPercent(double percent, std::int32_t scans, std::int32_t scanCount) {
    if (scanCount == 0)
        return percent;
    return percent + static_cast<double>(scans) / scanCount * WholeRecording;
}

double ScanTime(std::int64_t scan, double scanInterval) {
    const double seconds = static_cast<double>(scan) * scanInterval;
    if (!std::isfinite(seconds))
        throw Fault::Overflow();
    return seconds;
}

std::int32_t OpeningChartLength(double scanInterval) {
    return CLng(Quotient(KeptSeconds, scanInterval));
}

} // namespace tracelet
