#include "core/layout/WindowLayout.h"

#include <gtest/gtest.h>

namespace tracelet {

void PrintTo(const WidgetPlace& place, std::ostream* out) {
    *out << "{" << place.left << ", " << place.top << ", " << place.width << ", " << place.height << "}";
}

namespace {

constexpr OuterSize Smallest{7245, 11445};

WidgetPlace Sized(float width, float height) {
    return {0, 0, width, height};
}

WindowPlaces Designed() {
    WindowPlaces at;
    at.FrameListView = Sized(3000, 0);
    at.ListView1 = Sized(3000, 0);
    at.Picture4 = Sized(3000, 600);
    at.FrameSet = Sized(2500, 1500);
    at.FrameCmd = Sized(3000, 1500);
    at.FrameGraph = Sized(2200, 1500);
    at.FrameHis = Sized(0, 1200);
    at.ChkPlay = {77, 400, 600, 500};
    at.BtnAccelerate = {0, 400, 610, 500};
    at.BtnStop = {0, 400, 620, 500};
    at.BtnHisConvert = {0, 400, 1100, 450};
    at.ZelSliderR = {0, 600, 0, 360};
    at.ZelSliderV = {0, 600, 2000, 360};
    at.Label1 = {0, 300, 200, 250};
    at.Label2 = {0, 300, 700, 250};
    at.Label6 = {0, 300, 400, 250};
    at.Label15 = {0, 300, 300, 250};
    at.Label16 = {0, 300, 900, 250};
    at.Label14 = {0, 300, 310, 250};
    at.BtnStart = Sized(2750, 750);
    at.BtnModeSwitch = Sized(2750, 420);
    at.BtnSaveAs = Sized(2750, 430);
    at.BtnHistory = Sized(2750, 440);
    at.BtnExit = Sized(2750, 450);
    return at;
}

TEST(WindowLayout, SnapsBothLengthsWhenEitherIsTooSmall) {
    struct Case {
        OuterSize outer;
        bool minimized;
        ResizeStep step;
    };
    const Case cases[] = {
        {{7245, 11445}, false, ResizeStep::LayOut},    {{7244, 11445}, false, ResizeStep::Snap},
        {{7245, 11444}, false, ResizeStep::Snap},      {{9000, 11000}, false, ResizeStep::Snap},
        {{7000, 20000}, false, ResizeStep::Snap},      {{0, 0}, false, ResizeStep::Snap},
        {{9000, 11000}, true, ResizeStep::LeaveAlone}, {{0, 0}, true, ResizeStep::LeaveAlone},
        {{7244.5F, 11445}, false, ResizeStep::Snap},   {{32400, 57600}, false, ResizeStep::LayOut},
    };
    for (const Case& c : cases)
        EXPECT_EQ(StepFor(c.outer, c.minimized), c.step) << c.outer.width << " x " << c.outer.height;
}

TEST(WindowLayout, TopsAndHeightsAtTheMinimum) {
    const WindowPlaces at = LaidOut(Smallest, Designed());
    EXPECT_EQ(at.ZelGraph1.top, 0);
    EXPECT_EQ(at.FrameSet.top, 7245 - 1500 - 700); // 5045
    EXPECT_EQ(at.FrameCmd.top, 5045);
    EXPECT_EQ(at.FrameGraph.top, 5045);
    EXPECT_EQ(at.FrameHis.top, 5045 - 1200 - 50); // 3795
    EXPECT_EQ(at.ZelGraph1.height, 3695);
    EXPECT_EQ(at.FrameListView.height, 3695);
    EXPECT_EQ(at.Picture4.top, 3095);
    EXPECT_EQ(at.ListView1.height, 3095);
    EXPECT_EQ(at.BtnStart.top, 3895);
    EXPECT_EQ(at.BtnModeSwitch.top, 3895 + 750);
    EXPECT_EQ(at.BtnSaveAs.top, 3895 + 750 + 420);
    EXPECT_EQ(at.BtnHistory.top, 3895 + 750 + 420 + 430);
    EXPECT_EQ(at.BtnExit.top, 5045 + 1500 - 450);
}

TEST(WindowLayout, LeftsAndWidthsAtTheMinimum) {
    const WindowPlaces at = LaidOut(Smallest, Designed());
    EXPECT_EQ(at.ZelGraph1.left, 50);
    EXPECT_EQ(at.ZelGraph1.width, 11445 - 3000 - 150); // 8295
    EXPECT_EQ(at.FrameListView.left, 8345);
    EXPECT_EQ(at.FrameListView.left, at.ZelGraph1.Right());
    EXPECT_EQ(at.FrameListView.width, 3000);
    for (const WidgetPlace& button : {at.BtnStart, at.BtnModeSwitch, at.BtnSaveAs, at.BtnHistory, at.BtnExit})
        EXPECT_EQ(button.left, 8345 + 250);
    EXPECT_EQ(at.FrameHis.left, 50);
    EXPECT_EQ(at.FrameHis.width, 8295);
}

TEST(WindowLayout, ListStartsWhereItWasDesigned) {
    WindowPlaces designed = Designed();
    designed.FrameListView.top = 120;
    const WindowPlaces at = LaidOut(Smallest, designed);
    EXPECT_EQ(at.FrameListView.top, 120);
    EXPECT_EQ(at.FrameListView.height, 3695 - 120);
    EXPECT_EQ(at.Picture4.top, 3095);
    EXPECT_EQ(at.ListView1.height, 3695 - 120 - 600);
}

TEST(WindowLayout, BottomRowFillsFromTheLeftAndEndsAtTheGraphsEdge) {
    for (const float width : {11445.0F, 15000.0F, 57600.0F}) {
        const WindowPlaces at = LaidOut({7245, width}, Designed());
        EXPECT_EQ(at.FrameSet, (WidgetPlace{50, 5045, 2500, 1500}));
        EXPECT_EQ(at.FrameCmd, (WidgetPlace{2600, 5045, 3000, 1500}));
        EXPECT_EQ(at.FrameGraph, (WidgetPlace{5650, 5045, at.ZelGraph1.Right() - 5650, 1500}));
    }
}

TEST(WindowLayout, PositionSliderStaysLongEnoughToGrab) {
    WindowPlaces designed = Designed();
    designed.ZelSliderV.width = 6000;
    EXPECT_EQ(LaidOut(Smallest, designed).ZelSliderR.width, 600);
}

TEST(WindowLayout, GraphGroupIsNeverNarrowerThanDesigned) {
    WindowPlaces designed = Designed();
    designed.FrameGraph.width = 4000;
    EXPECT_EQ(LaidOut(Smallest, designed).FrameGraph.width, 4000);
}

TEST(WindowLayout, PlayButtonsStandEdgeToEdge) {
    const WindowPlaces at = LaidOut(Smallest, Designed());
    EXPECT_EQ(at.ChkPlay, (WidgetPlace{150, 400, 600, 500}));
    EXPECT_EQ(at.BtnAccelerate, (WidgetPlace{750, 400, 610, 500}));
    EXPECT_EQ(at.BtnStop, (WidgetPlace{1360, 400, 620, 500}));
}

TEST(WindowLayout, PositionSliderTakesWhatTheRowLeaves) {
    const WindowPlaces at = LaidOut(Smallest, Designed());
    EXPECT_EQ(at.BtnHisConvert.left, 8295 - 1100 - 150);                        // 7045
    EXPECT_EQ(at.ZelSliderV, (WidgetPlace{7045 - 2000 - 200, 600, 2000, 360})); // 4845
    EXPECT_EQ(at.ZelSliderR, (WidgetPlace{2180, 600, 4845 - 200 - 2180, 360})); // 2465 wide
    EXPECT_EQ(at.Label1, (WidgetPlace{2180, 300, 200, 250}));
    EXPECT_EQ(at.Label2, (WidgetPlace{2180 + (2465.0F - 700) / 2, 300, 700, 250}));
    EXPECT_EQ(at.Label6, (WidgetPlace{2180 + 2465 - 400, 300, 400, 250}));
    EXPECT_EQ(at.Label15.left, 4845);
    EXPECT_EQ(at.Label16.left, 4845 + 550);
    EXPECT_EQ(at.Label14.left, 4845 + 2000 - 310);
}

TEST(WindowLayout, WideningMovesWhatIsAtTheRight) {
    const WindowPlaces before = LaidOut(Smallest, Designed());
    const WindowPlaces after = LaidOut({7245, 12445}, Designed());
    EXPECT_EQ(after.ZelGraph1.width, before.ZelGraph1.width + 1000);
    EXPECT_EQ(after.FrameHis.width, before.FrameHis.width + 1000);
    EXPECT_EQ(after.FrameListView.left, before.FrameListView.left + 1000);
    EXPECT_EQ(after.FrameListView.width, before.FrameListView.width);
    EXPECT_EQ(after.BtnStart.left, before.BtnStart.left + 1000);
    EXPECT_EQ(after.BtnExit.left, before.BtnExit.left + 1000);
    EXPECT_EQ(after.ZelSliderR.width, before.ZelSliderR.width + 1000);
    EXPECT_EQ(after.ZelSliderR.left, before.ZelSliderR.left);
    EXPECT_EQ(after.BtnHisConvert.left, before.BtnHisConvert.left + 1000);
    EXPECT_EQ(after.ZelGraph1.height, before.ZelGraph1.height);
}

TEST(WindowLayout, HeighteningGrowsGraphAndListOnly) {
    const WindowPlaces before = LaidOut(Smallest, Designed());
    const WindowPlaces after = LaidOut({8245, 11445}, Designed());
    EXPECT_EQ(after.ZelGraph1.height, before.ZelGraph1.height + 1000);
    EXPECT_EQ(after.FrameListView.height, before.FrameListView.height + 1000);
    EXPECT_EQ(after.ListView1.height, before.ListView1.height + 1000);
    EXPECT_EQ(after.Picture4.top, before.Picture4.top + 1000);
    for (auto place : {&WindowPlaces::FrameHis, &WindowPlaces::FrameSet, &WindowPlaces::FrameCmd,
                       &WindowPlaces::FrameGraph, &WindowPlaces::BtnStart, &WindowPlaces::BtnModeSwitch,
                       &WindowPlaces::BtnSaveAs, &WindowPlaces::BtnHistory, &WindowPlaces::BtnExit}) {
        EXPECT_EQ((after.*place).top, (before.*place).top + 1000);
        EXPECT_EQ((after.*place).height, (before.*place).height);
    }
}

} // namespace
} // namespace tracelet
