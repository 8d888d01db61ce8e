#include "core/input/SampleConversion.h"

#include "core/base/RunTimeError.h"
#include "core/boards/BoardFamily.h"

#include <algorithm>

namespace tracelet {
namespace {

std::size_t CheckedCount(std::size_t held, std::int32_t dataCount) {
    if (dataCount < 0 || static_cast<std::size_t>(dataCount) > held)
        throw Fault::SubscriptOutOfRange();
    return static_cast<std::size_t>(dataCount);
}

std::int32_t LowTwelveBits(std::int16_t count) {
    return count & 0xFFF;
}

std::int32_t OffsetWhenNegative(std::int16_t count) {
    return count < 0 ? (count & 0xFFFF) + 1 : count;
}

} // namespace

void ConvertRawData(std::span<const std::int16_t> DataArray, std::vector<std::int32_t>& Out,
                    std::int32_t dataCount, const AnalogBoardInfo& board) {
    const auto counts = DataArray.first(CheckedCount(DataArray.size(), dataCount));
    Out.resize(counts.size());
    if (CountsHaveTwelveBits(board))
        std::ranges::transform(counts, Out.begin(), LowTwelveBits);
    else
        std::ranges::transform(counts, Out.begin(), OffsetWhenNegative);
}

void ConvertScan(std::span<const double> values, std::vector<float>& Out) {
    Out.resize(values.size());
    std::ranges::transform(values, Out.begin(), [](double value) { return static_cast<float>(value); });
}

std::span<const float> ConvertAnalogData(std::span<const float> DataArray, std::int32_t dataCount) {
    return DataArray.first(CheckedCount(DataArray.size(), dataCount));
}

} // namespace tracelet
