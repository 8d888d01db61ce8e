#include "core/boards/BoardList.h"

#include <algorithm>

namespace tracelet {
namespace {

// Index of the first entry with a board that can be used and is simulated or not; -1 when there is none.
template <typename Entries>
std::int32_t FirstUsable(const Entries& entries, bool simulated) {
    const auto found = std::ranges::find_if(entries, [&](const auto& entry) {
        return entry.board && entry.simulated == simulated && !entry.onlyWhenPicked;
    });
    return found == entries.end() ? -1 : static_cast<std::int32_t>(found - entries.begin());
}

template <typename Entries>
std::int32_t Default(const Entries& entries) {
    const std::int32_t real = FirstUsable(entries, false);
    return real >= 0 ? real : FirstUsable(entries, true);
}

} // namespace

std::int32_t BoardList::DefaultAnalog() const {
    return Default(analog);
}

std::int32_t BoardList::DefaultDigital() const {
    return Default(digital);
}

} // namespace tracelet
