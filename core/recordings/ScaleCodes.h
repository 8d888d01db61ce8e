#pragma once

#include <cstdint>
#include <span>

namespace tracelet {

/// Turns raw codes of a 12-bit converter into engineering units. `arrL` and `arrd` hold `DataCntPerChan`
/// scans of `ChanCount` values each, scan after scan; `arrRange` holds the high and the low end of each
/// channel's range. Code 0 gives the low end, code 4096 would give the high end. An array that is too short
/// raises "Subscript out of range", a value beyond the range of float "Overflow"; counts below 1 convert
/// nothing.
void Convert2Float(std::span<const std::int32_t> arrL, std::span<float> arrd,
                   std::span<const double> arrRange, std::int32_t DataCntPerChan, std::int32_t ChanCount);

} // namespace tracelet
