#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tracelet {

/// Segments of one digit, as bits: top, upper right, lower right, bottom, lower left, upper left, middle.
enum Segment : std::uint8_t {
    SegmentTop = 1,
    SegmentUpperRight = 2,
    SegmentLowerRight = 4,
    SegmentBottom = 8,
    SegmentLowerLeft = 16,
    SegmentUpperLeft = 32,
    SegmentMiddle = 64
};

/// One place of a numeric display: lit segments and the point behind them.
struct DigitPlace {
    std::uint8_t segments = 0;
    bool point = false;
    bool operator==(const DigitPlace&) const = default;
};

/// Places that show `text` (digits, "-", "." and "e"), right-aligned in at least `places` places. A number
/// that needs more than `most` places, or text that segments cannot show, gives `places` bars without a
/// point: never a part of the number.
[[nodiscard]] std::vector<DigitPlace> DigitPlaces(std::string_view text, std::size_t places,
                                                  std::size_t most);

} // namespace tracelet
