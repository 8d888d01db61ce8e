#include "core/chart/ViewHistory.h"

#include <utility>

namespace tracelet {

void ViewHistory::Note(const ChartView& left, Step step, std::int64_t milliseconds) {
    const bool isRun = step == Step::Run;
    const auto before = std::exchange(running, isRun ? std::optional(milliseconds) : std::nullopt);
    if (isRun && before && milliseconds - *before <= Moment)
        return;
    if (views.size() == Most)
        views.erase(views.begin());
    views.push_back(left);
}

std::optional<ChartView> ViewHistory::Back() {
    running.reset();
    if (views.empty())
        return std::nullopt;
    const ChartView last = views.back();
    views.pop_back();
    return last;
}

} // namespace tracelet
