#include "settings/DeviceFamily.h"

#include <algorithm>
#include <array>

namespace tracelet {
namespace {

bool Contains(std::string_view name, std::string_view part) {
    return name.find(part) != std::string_view::npos;
}

} // namespace

bool IsThermocoupleFamily(std::string_view deviceName) {
    static constexpr std::array<std::string_view, 3> Families = {"6601HG", "6605HG", "3605"};
    return std::ranges::any_of(Families, [&](std::string_view part) { return Contains(deviceName, part); });
}

bool ShowsChoiceAfterPairing(std::string_view deviceName) {
    return Contains(deviceName, "6601");
}

std::int32_t PartnerOf(std::int32_t channel) {
    return channel % 2 == 0 ? channel + 1 : channel - 1;
}

} // namespace tracelet
