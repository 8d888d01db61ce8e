#include "core/chart/ViewHistory.h"

#include <gtest/gtest.h>

#include <vector>

namespace tracelet {
namespace {

using Step = ViewHistory::Step;

/// A view that is known by its newest sample.
ChartView View(double newest) {
    return {{}, newest};
}

struct Noted {
    Step step;
    std::int64_t milliseconds;
};

/// The numbers, from 0, of the steps that lead back, the last first.
std::vector<double> WayBack(const std::vector<Noted>& steps) {
    ViewHistory history;
    double number = 0;
    for (const Noted& noted : steps)
        history.Note(View(number++), noted.step, noted.milliseconds);
    std::vector<double> back;
    while (const auto view = history.Back())
        back.push_back(view->newest.value());
    return back;
}

TEST(ViewHistory, RunsAreOneStepBackAndTheRestOneEach) {
    using Way = std::vector<double>;
    constexpr std::int64_t moment = ViewHistory::Moment;
    EXPECT_EQ(WayBack({}), Way{});
    EXPECT_EQ(WayBack({{Step::Lone, 0}, {Step::Lone, 1}}), (Way{1, 0}));
    EXPECT_EQ(WayBack({{Step::Run, 0}, {Step::Run, 1}, {Step::Run, 2}}), (Way{0}));
    EXPECT_EQ(WayBack({{Step::Run, 0}, {Step::Run, moment}, {Step::Run, 2 * moment}}), (Way{0}))
        << "a run lasts as long as it goes on";
    EXPECT_EQ(WayBack({{Step::Run, 0}, {Step::Run, moment + 1}}), (Way{1, 0}));
    EXPECT_EQ(WayBack({{Step::Run, 0}, {Step::Lone, 1}, {Step::Run, 2}}), (Way{2, 1, 0}));
}

TEST(ViewHistory, StepBackEndsTheRun) {
    ViewHistory history;
    history.Note(View(0), Step::Run, 0);
    EXPECT_EQ(history.Back()->newest, 0);
    history.Note(View(1), Step::Run, 1);
    EXPECT_EQ(history.Back()->newest, 1);
}

TEST(ViewHistory, OldestViewsGo) {
    const std::vector<Noted> steps(ViewHistory::Most + 5, {Step::Lone, 0});
    const std::vector<double> back = WayBack(steps);
    EXPECT_EQ(back.size(), ViewHistory::Most);
    EXPECT_EQ(back.back(), 5);
}

} // namespace
} // namespace tracelet
