#pragma once

namespace tracelet {

// Layout of the main window. All lengths are twips (1/1440 inch) in single precision; 15 of them are one
// device-independent pixel. Positions are relative to the group that holds the widget, else to the window.

inline constexpr float TwipsPerPixel = 15.0F;
inline constexpr float MinimumHeight = 7245.0F; ///< smallest outer height of the window
inline constexpr float MinimumWidth = 11445.0F; ///< smallest outer width of the window
inline constexpr float LayoutGap = 50.0F;

struct OuterSize {
    float height = 0.0F;
    float width = 0.0F;
    bool operator==(const OuterSize&) const = default;
};

enum class ResizeStep {
    LeaveAlone, ///< the window is minimised and small
    Snap,       ///< give the window the minimum height and width, both; that resizes it again
    LayOut
};

/// What a resize to this outer size calls for; the minimum itself is large enough.
[[nodiscard]] ResizeStep StepFor(OuterSize outer, bool minimized);

struct WidgetPlace {
    float left = 0.0F;
    float top = 0.0F;
    float width = 0.0F;
    float height = 0.0F;

    [[nodiscard]] float Right() const { return left + width; }
    [[nodiscard]] float Bottom() const { return top + height; }
    bool operator==(const WidgetPlace&) const = default;
};

/// Places of everything that a resize moves, under the widgets' names.
struct WindowPlaces {
    WidgetPlace ZelGraph1;
    WidgetPlace FrameListView;
    WidgetPlace ListView1; ///< in FrameListView
    WidgetPlace Picture4;  ///< in FrameListView

    WidgetPlace FrameSet;
    WidgetPlace FrameCmd;
    WidgetPlace FrameGraph;

    WidgetPlace FrameHis;
    WidgetPlace ChkPlay; ///< this and the rest of the group in FrameHis
    WidgetPlace BtnAccelerate;
    WidgetPlace BtnStop;
    WidgetPlace BtnHisConvert;
    WidgetPlace ZelSliderR;
    WidgetPlace Label1;
    WidgetPlace Label2;
    WidgetPlace Label6;
    WidgetPlace ZelSliderV;
    WidgetPlace Label15;
    WidgetPlace Label16;
    WidgetPlace Label14;

    WidgetPlace BtnStart;
    WidgetPlace BtnModeSwitch;
    WidgetPlace BtnSaveAs;
    WidgetPlace BtnHistory;
    WidgetPlace BtnExit;
};

/// Places in a window of this outer size. `designed` gives the sizes, and the positions that no rule names,
/// as the window was drawn up.
[[nodiscard]] WindowPlaces LaidOut(OuterSize outer, const WindowPlaces& designed);

} // namespace tracelet
