#pragma once

#include "core/chart/AxisEnds.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace tracelet {

/// What a chart shows.
struct ChartView {
    std::array<AxisEnds, 4> axes; ///< by axis number
    std::optional<double> newest; ///< time of the newest sample, seconds
};

/// The views that zooms and pans left, so that there is a way back.
class ViewHistory {
public:
    enum class Step { Lone, Run };

    /// Notes the view that is left at `milliseconds` of any steady clock. Steps of a run that follow each
    /// other within Moment are one.
    void Note(const ChartView& left, Step step, std::int64_t milliseconds);
    /// The view noted last, which is noted no more.
    [[nodiscard]] std::optional<ChartView> Back();

    static constexpr std::int64_t Moment = 1000; ///< milliseconds
    static constexpr std::size_t Most = 200;     ///< views; older ones go

private:
    std::vector<ChartView> views;
    std::optional<std::int64_t> running; ///< when the run's last step came
};

} // namespace tracelet
