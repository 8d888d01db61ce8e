#include "core/boards/ConverterCounts.h"

#include "core/base/Convert.h"

#include <algorithm>

namespace tracelet {
namespace {

double StepCount(std::int32_t resolution) {
    return static_cast<double>(std::int32_t{1} << resolution);
}

} // namespace

std::int32_t HighestCode(std::int32_t resolution) {
    return (std::int32_t{1} << resolution) - 1;
}

std::int32_t CodeOf(double value, const InputRange& range, std::int32_t resolution) {
    const double position = (value - range.first) / (range.second - range.first) * StepCount(resolution);
    return CLng(std::clamp(position, 0.0, static_cast<double>(HighestCode(resolution))));
}

double ValueOf(std::int32_t code, const InputRange& range, std::int32_t resolution) {
    return range.first + (range.second - range.first) * code / StepCount(resolution);
}

std::int16_t CountOf(std::int32_t code, std::int32_t resolution) {
    return static_cast<std::int16_t>(resolution == 16 ? code - 32768 : code);
}

std::int32_t CodeOfCount(std::int16_t count, std::int32_t resolution) {
    return resolution == 16 ? count + 32768 : count & HighestCode(resolution);
}

} // namespace tracelet
