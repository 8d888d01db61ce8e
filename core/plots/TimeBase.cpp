#include "core/plots/TimeBase.h"

#include "core/base/Convert.h"

namespace tracelet {
namespace {

constexpr double Divisions = 10.0;
constexpr double StepFactor = 5.0;
constexpr double ShortestDivision = 0.000001;
constexpr double LongestDivision = 100.0;
constexpr double FastRate = 25000.0;
constexpr double FastWindowPoints = 100000.0;

} // namespace

double SteppedDivision(double secondsPerDivision, bool up) {
    if (up)
        return secondsPerDivision * StepFactor >= LongestDivision ? LongestDivision
                                                                  : secondsPerDivision * StepFactor;
    return secondsPerDivision / StepFactor <= ShortestDivision ? ShortestDivision
                                                               : secondsPerDivision / StepFactor;
}

std::int32_t FastChartLength(double secondsPerDivision, double rate, std::int32_t channels) {
    return CLng(Quotient(rate * (Divisions * secondsPerDivision), channels));
}

std::int32_t PolledChartLength(double secondsPerDivision, std::int32_t intervalMs) {
    const std::int32_t scansPerSecond = CLng(Quotient(1000.0, intervalMs));
    return CLng(Divisions * secondsPerDivision * scansPerSecond + 1.0);
}

std::int32_t HistoryChartLength(double secondsPerDivision, double scanInterval) {
    const std::int32_t scansPerSecond = CLng(Quotient(1.0, scanInterval));
    return CLng(Divisions * secondsPerDivision * scansPerSecond);
}

std::int32_t PolledStartChartLength(double minimum, double maximum, std::int32_t intervalMs) {
    return Int(Quotient(maximum - minimum, intervalMs / 1000.0)) + 1;
}

CyclicWindow CyclicFastWindow(double rate) {
    const double seconds = rate >= FastRate ? FastWindowPoints / rate : 10.0;
    return {seconds, CLng(rate * seconds)};
}

} // namespace tracelet
