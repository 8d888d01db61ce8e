#include "core/recordings/ScaleCodes.h"

#include "core/base/RunTimeError.h"

#include <cmath>
#include <cstddef>
#include <limits>

namespace tracelet {
namespace {

constexpr double CodeSpan = 4096.0;

float Single(double value) {
    if (std::isfinite(value) && std::abs(value) > std::numeric_limits<float>::max())
        throw Fault::Overflow();
    return static_cast<float>(value);
}

float Scaled(std::int32_t code, double high, double low) {
    const double r = code;
    return Single(high * r / CodeSpan + low * (CodeSpan - r) / CodeSpan);
}

} // namespace

void Convert2Float(std::span<const std::int32_t> arrL, std::span<float> arrd,
                   std::span<const double> arrRange, std::int32_t DataCntPerChan, std::int32_t ChanCount) {
    if (DataCntPerChan < 1 || ChanCount < 1)
        return;
    const auto channels = static_cast<std::size_t>(ChanCount);
    const std::size_t count = static_cast<std::size_t>(DataCntPerChan) * channels;
    if (arrL.size() < count || arrd.size() < count || arrRange.size() < 2 * channels)
        throw Fault::SubscriptOutOfRange();
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t channel = i % channels;
        arrd[i] = Scaled(arrL[i], arrRange[2 * channel], arrRange[2 * channel + 1]);
    }
}

} // namespace tracelet
