#pragma once

#include "core/boards/Board.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tracelet {

/// Raw converter counts as the 32-bit values that are drawn and recorded, in order; `Out` is resized to
/// `dataCount`. On a board of the "6602" family the low 12 bits count; on any other a negative count v
/// becomes (v and 65535) + 1, so -1 becomes 65536. `dataCount` beyond `DataArray`: "Subscript out of range".
void ConvertRawData(std::span<const std::int16_t> DataArray, std::vector<std::int32_t>& Out,
                    std::int32_t dataCount, const AnalogBoardInfo& board);

/// A polled scan as the 32-bit floats that are drawn and recorded.
void ConvertScan(std::span<const double> values, std::vector<float>& Out);

/// Analog values as 32-bit floats, in order. They come as floats, so this is a view of the first `dataCount`;
/// a count beyond `DataArray` raises "Subscript out of range".
[[nodiscard]] std::span<const float> ConvertAnalogData(std::span<const float> DataArray,
                                                       std::int32_t dataCount);

} // namespace tracelet
