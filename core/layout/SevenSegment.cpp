#include "core/layout/SevenSegment.h"

#include <array>
#include <optional>

namespace tracelet {

namespace {

constexpr std::array<std::uint8_t, 10> DigitSegments = {0x3F, 0x06, 0x5B, 0x4F, 0x66,
                                                        0x6D, 0x7D, 0x07, 0x7F, 0x6F};

std::optional<std::uint8_t> SegmentsOf(char character) {
    if (character >= '0' && character <= '9')
        return DigitSegments[static_cast<std::size_t>(character - '0')];
    if (character == '-')
        return SegmentMiddle;
    if (character == 'e') // drawn as a capital one
        return SegmentTop | SegmentUpperLeft | SegmentMiddle | SegmentLowerLeft | SegmentBottom;
    return std::nullopt;
}

std::optional<std::vector<DigitPlace>> Shown(std::string_view text) {
    std::vector<DigitPlace> shown;
    for (const char character : text) {
        if (character == '.') {
            // The point of ".5" stands behind a dark place.
            if (shown.empty() || shown.back().point)
                shown.emplace_back();
            shown.back().point = true;
        } else if (const auto segments = SegmentsOf(character)) {
            shown.push_back({*segments, false});
        } else {
            return std::nullopt;
        }
    }
    return shown;
}

} // namespace

std::vector<DigitPlace> DigitPlaces(std::string_view text, std::size_t places, std::size_t most) {
    auto shown = Shown(text);
    if (!shown || shown->size() > most)
        return std::vector<DigitPlace>(places, {SegmentMiddle, false});
    if (shown->size() < places)
        shown->insert(shown->begin(), places - shown->size(), DigitPlace{});
    return *shown;
}

} // namespace tracelet
