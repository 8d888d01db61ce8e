#pragma once

#include "core/chart/AxisEnds.h"
#include "core/chart/ViewHistory.h"
#include "core/samples/SampleStore.h"
#include "window/chart/ChartFrame.h"
#include "window/chart/PlotPainter.h"
#include "window/chart/ZelGraph.h"
#include "window/labels/ValueTexts.h"

#include <QBasicTimer>
#include <QPoint>

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace tracelet {

[[nodiscard]] QPushButton* MakeHoldButton(ZelGraph* graph);

/// Everything that the graph holds.
struct ZelGraph::State {
    struct PlotEntry {
        PlotAttributes attributes;
        bool visible = true;
    };
    struct Axis {
        AxisEnds ends;
        CalmSpan fit; ///< when automatic
        bool allowed = true;
        QString title;
        QString unit;

        [[nodiscard]] QString Caption() const {
            return unit.isEmpty() ? title : QStringLiteral("%1 [%2]").arg(title, unit);
        }
    };
    enum class Gesture { None, Zoom, Pan, Cursor };
    struct LossMark {
        double from = 0.0; // seconds
        double to = 0.0;
        QString text;
    };

    // Plots and samples.
    SampleStore store;
    std::vector<PlotEntry> plots;
    std::int32_t chartLength = 0;
    std::int64_t memoryBudget = 0; ///< of the store, bytes
    std::vector<float> scan;       ///< room for the values of one scan

    // The running time of evenly spaced samples: start + count * step, so that it does not drift.
    double runStart = 0;
    double runStep = 0;
    std::int64_t runCount = 0;

    std::vector<LossMark> losses; ///< in the order of time

    // Axes.
    std::array<Axis, 4> axes;
    double division = 0; ///< seconds, of the time axis; 0: none was told

    // What is shown of them.
    std::optional<AxisEnds> stillTime; ///< the time axis as it is shown while the view is held
    ViewHistory history;

    // Picture.
    ChartFrame frame;
    PlotScene scene;
    PlotPainter plotPainter;
    ColumnGrid grid;
    AxisSpan timeSpan;          ///< of the grid
    std::uint64_t revision = 1; ///< of everything that the picture depends on but samples and position
    std::uint64_t arranged = 0; ///< revision that frame and scene were made for
    QSize pixelSize;            ///< of the graph, device pixels
    double scale = 0;           ///< device pixels of a logical one
    QRect plotRect;             ///< logical pixels

    // Repainting at the display's rate.
    QBasicTimer repaint;
    int idleTicks = 0;
    bool stale = false;
    bool fitPending = false; ///< samples changed since automatic axes were fitted

    QString hint; ///< drawn while there are no samples

    // Mouse and keyboard.
    std::int32_t mouseMode = MouseNone;
    Gesture gesture = Gesture::None;
    bool panned = false;        ///< the gesture has moved something
    bool keyboardFocus = false; ///< came by a key, so that it shows
    QPointF pressed;
    QPointF pointer;

    // Read-out and cursors.
    ValuePanel* readOut = nullptr;     ///< once it was shown
    ValuePanel* cursorTable = nullptr; ///< once a cursor stood
    bool readOutShown = false;
    bool readOutFolded = false;
    bool valuesStale = false;      ///< what they say may have changed
    QSize panelRoom;               ///< that the two take at the right and below, logical pixels
    QBasicTimer refresh;           ///< of their texts
    std::optional<double> hovered; ///< horizontal place of the pointer over the plot area
    CursorTimes cursors;
    std::size_t selected = 0; ///< the cursor that keys step
    double grabbedAt = 0;     ///< place of the pointer from the cursor that it drags

    Axis& AxisOf(int axis);
    [[nodiscard]] PlotEntry& PlotOf(int index);
    [[nodiscard]] bool UsedByVisiblePlot(int axis) const;
    [[nodiscard]] bool Shown(int axis) const;
    [[nodiscard]] double NextX() const;
    void Advance(double step, std::int64_t count);
    void MakeRoom();

    // View.
    AxisEnds& ShownTime() { return stillTime ? *stillTime : axes[XAxis].ends; }
    [[nodiscard]] ChartView View();
    void Show(const ChartView& view);
    bool Change(ViewHistory::Step step, const std::function<void()>& change);
    void SpanLikeView();
    void ViewLikeSpan();
    void LimitStore();
    void ZoomValues(const std::vector<int>& which, double fraction, double factor);
    void PanValues(double fraction);
    void ShowAll();
    [[nodiscard]] std::function<void()> MoveOf(int key, bool shift);
    [[nodiscard]] std::vector<int> ShownValueAxes() const;
    [[nodiscard]] std::vector<int> ValueAxesAt(QPointF position) const;

    // Automatic axes.
    [[nodiscard]] std::optional<AxisSpan> HeldTimes() const;
    void FitAxes();
    void FitTime();
    void FitValues(int axis);
    void FitAnew();

    // Picture.
    void Prepare(const ZelGraph& graph);
    void Prepare(const ZelGraph& graph, double newScale);
    void Draw(QPainter& painter);
    void ArrangeFrame(const QFont& font);
    void BuildScene();
    void PlaceGrid();
    [[nodiscard]] std::int64_t FirstColumn() const;
    [[nodiscard]] AxisStrip StripOf(int axis) const;
    void DrawOverlay(QPainter& painter) const;
    void DrawLosses(QPainter& painter) const;
    void DrawHint(QPainter& painter, const QFont& font) const;

    // Read-out.
    [[nodiscard]] QSize FrameSize() const; ///< what the panels leave, device pixels
    [[nodiscard]] QSize RoomForPanels(const ZelGraph& graph) const;
    [[nodiscard]] double TimeOf(double x) const; ///< as the axis stands now; `x` is a place in the graph
    [[nodiscard]] std::vector<LabelledPlot> VisiblePlots() const;
    [[nodiscard]] QString ReadOutHeading() const;
    [[nodiscard]] std::vector<ValuePanel::Row> ReadOutTable() const;

    // Cursors.
    [[nodiscard]] bool HasCursors() const { return cursors[0] || cursors[1]; }
    [[nodiscard]] double PlaceOf(double seconds) const;    ///< of a time, device pixels
    [[nodiscard]] QRectF FlagOf(std::size_t cursor) const; ///< device pixels; empty where none is seen
    void DrawCursors(QPainter& painter) const;
    void PlaceCursor(double seconds);
    void StepCursor(std::size_t cursor, bool forwards);
    [[nodiscard]] QString TableHeading() const;
    [[nodiscard]] std::vector<ValuePanel::Row> CursorTable() const;

    // Gestures.
    [[nodiscard]] bool Zooms() const { return mouseMode >= MouseXZoom; }
    [[nodiscard]] bool Along(Qt::Orientation orientation) const;
    [[nodiscard]] QPointF Held(QPointF position) const; ///< within the plot area
    [[nodiscard]] QRectF Band() const;
    void ApplyZoom();
    void ApplyPan(QPointF by);
};

} // namespace tracelet
