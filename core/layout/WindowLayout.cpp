#include "core/layout/WindowLayout.h"

#include <algorithm>

namespace tracelet {

namespace {

constexpr float Gap = LayoutGap;

// Title bar and lower border of the window, which the outer height includes, and a gap above the latter.
constexpr float BelowBottomRow = 14 * Gap;

void PlaceVertically(WindowPlaces& at, float height) {
    at.ZelGraph1.top = 0;
    at.FrameSet.top = height - at.FrameSet.height - BelowBottomRow;
    at.FrameCmd.top = at.FrameSet.top;
    at.FrameGraph.top = at.FrameSet.top;
    at.FrameHis.top = at.FrameSet.top - at.FrameHis.height - Gap;
    at.ZelGraph1.height = at.FrameHis.top - 2 * Gap;
    at.FrameListView.height = at.ZelGraph1.height - at.FrameListView.top;
    at.Picture4.top = at.ZelGraph1.height - at.Picture4.height;
    at.ListView1.height = at.FrameListView.height - at.Picture4.height;
    at.BtnStart.top = at.FrameHis.top + 2 * Gap;
    at.BtnModeSwitch.top = at.BtnStart.Bottom();
    at.BtnSaveAs.top = at.BtnModeSwitch.Bottom();
    at.BtnHistory.top = at.BtnSaveAs.Bottom();
    at.BtnExit.top = at.FrameSet.Bottom() - at.BtnExit.height;
}

void PlaceHorizontally(WindowPlaces& at, float width) {
    at.ZelGraph1.left = Gap;
    at.ZelGraph1.width = width - at.FrameListView.width - 3 * Gap;
    at.FrameListView.left = at.ZelGraph1.width + Gap;
    at.BtnStart.left = at.FrameListView.left + 5 * Gap;
    for (WidgetPlace* button : {&at.BtnModeSwitch, &at.BtnSaveAs, &at.BtnHistory, &at.BtnExit})
        button->left = at.BtnStart.left;
    at.FrameHis.left = at.ZelGraph1.left;
    at.FrameHis.width = at.ZelGraph1.width;
    at.FrameSet.left = at.ZelGraph1.left;
    at.FrameCmd.left = at.FrameSet.Right() + Gap;
    at.FrameGraph.left = at.FrameCmd.Right() + Gap;
    at.FrameGraph.width = std::max(at.FrameGraph.width, at.FrameHis.Right() - at.FrameGraph.left);
}

// Three labels over a slider: at its lower end, its middle and its upper end.
void PlaceLabels(const WidgetPlace& slider, WidgetPlace& low, WidgetPlace& middle, WidgetPlace& high) {
    low.left = slider.left;
    middle.left = slider.left + (slider.width - middle.width) / 2;
    high.left = slider.Right() - high.width;
}

// The buttons from the left, Convert and the speed from the right; the position slider takes what is between.
void PlacePlaybackRow(WindowPlaces& at) {
    at.ChkPlay.left = 3 * Gap;
    at.BtnAccelerate.left = at.ChkPlay.Right();
    at.BtnStop.left = at.BtnAccelerate.Right();
    at.BtnHisConvert.left = at.FrameHis.width - at.BtnHisConvert.width - 3 * Gap;
    at.ZelSliderV.left = at.BtnHisConvert.left - at.ZelSliderV.width - 4 * Gap;
    at.ZelSliderR.left = at.BtnStop.Right() + 4 * Gap;
    at.ZelSliderR.width = std::max(12 * Gap, at.ZelSliderV.left - at.ZelSliderR.left - 4 * Gap);
    PlaceLabels(at.ZelSliderR, at.Label1, at.Label2, at.Label6);
    PlaceLabels(at.ZelSliderV, at.Label15, at.Label16, at.Label14);
}

} // namespace

ResizeStep StepFor(OuterSize outer, bool minimized) {
    if (outer.height >= MinimumHeight && outer.width >= MinimumWidth)
        return ResizeStep::LayOut;
    return minimized ? ResizeStep::LeaveAlone : ResizeStep::Snap;
}

WindowPlaces LaidOut(OuterSize outer, const WindowPlaces& designed) {
    WindowPlaces at = designed;
    PlaceVertically(at, outer.height);
    PlaceHorizontally(at, outer.width);
    PlacePlaybackRow(at);
    return at;
}

} // namespace tracelet
