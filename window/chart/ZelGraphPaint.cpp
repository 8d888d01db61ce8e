#include "window/chart/ZelGraph.h"

#include "core/base/Convert.h"
#include "window/chart/ZelGraphState.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tracelet {

namespace {

constexpr double WholeColumn = 1e-6;     ///< columns closer than this to a whole number count as it
constexpr double MostColumns = 1e15;     ///< beyond, doubles cannot tell columns apart
constexpr double LeastTemperatures = 10; ///< degrees of any scale that an automatic axis spans

} // namespace

// Automatic axes.

void ZelGraph::State::FitAxes() {
    if (!fitPending)
        return;
    fitPending = false;
    if (axes[XAxis].ends.automatic)
        FitTime();
    for (const int axis : {VoltageAxis, DigitalAxis, TemperatureAxis})
        if (axes[static_cast<std::size_t>(axis)].ends.automatic)
            FitValues(axis);
}

void ZelGraph::State::FitTime() {
    double low = HUGE_VAL;
    double high = -HUGE_VAL;
    for (int plot = 0; plot < store.PlotCount(); ++plot) {
        if (store.Count(plot) == 0 || !plots[static_cast<std::size_t>(plot)].visible)
            continue;
        low = std::min(low, store.X(plot, store.First(plot)));
        high = std::max(high, store.X(plot, store.End(plot) - 1));
    }
    AxisEnds& ends = axes[XAxis].ends;
    if (!(low < high) || (low == ends.minimum && high == ends.maximum))
        return;
    // The last digits of a sum are no reason to draw everything at another scale.
    const double span = std::abs(high - low - ends.span) <= 1e-9 * ends.span ? ends.span : high - low;
    ends.SetBoth(low, high);
    ends.span = span;
}

void ZelGraph::State::FitValues(int axis) {
    const AxisEnds& time = axes[XAxis].ends;
    const AxisSpan view = DrawnSpan(time.minimum, time.maximum);
    Extent extent;
    for (std::size_t i = 0; i < plots.size(); ++i) {
        const int plot = static_cast<int>(i);
        if (plots[i].visible && plots[i].attributes.axis == axis)
            extent.Add(ExtentBetween(store, plot, view.low, view.high));
    }
    if (extent.Empty())
        return;
    Axis& target = axes[static_cast<std::size_t>(axis)];
    AxisEnds& ends = target.ends;
    const AxisSpan current = DrawnSpan(ends.minimum, ends.maximum);
    // The noise of a steady temperature is no reason for a range of its own.
    const double least = axis == TemperatureAxis ? LeastTemperatures : 0;
    const double low = static_cast<double>(extent.low);
    const double high = static_cast<double>(extent.high);
    const double beyond = std::max(0.0, least - (high - low)) / 2;
    const AxisSpan fitted = target.fit.Next(low - beyond, high + beyond, current, view);
    if (fitted == current)
        return;
    ends.SetBoth(fitted.low, fitted.high);
    ++revision;
}

/// What is shown changed as a whole: an automatic axis need not remember what it showed.
void ZelGraph::State::FitAnew() {
    for (Axis& axis : axes)
        axis.fit.Forget();
}

// Picture.

AxisStrip ZelGraph::State::StripOf(int axis) const {
    const Axis& source = axes[static_cast<std::size_t>(axis)];
    AxisStrip strip;
    strip.span = DrawnSpan(source.ends.minimum, source.ends.maximum);
    strip.title = source.Caption();
    strip.named = axis == DigitalAxis;
    for (const auto& [look, visible] : plots)
        if (strip.named && visible && look.axis == axis)
            strip.names.push_back({look.name, look.level, ReadableOnChart(ResolvedColor(look.color).rgb())});
    return strip;
}

void ZelGraph::State::ArrangeFrame(const ZelGraph& graph) {
    frame.SetLook(graph.font(), scale);
    frame.time.span = timeSpan;
    frame.time.title = axes[XAxis].title;
    frame.timeShown = axes[XAxis].allowed;
    frame.division = division;
    frame.strips.clear();
    for (const int axis : {VoltageAxis, DigitalAxis, TemperatureAxis})
        if (Shown(axis))
            frame.strips.push_back(StripOf(axis));
    frame.Arrange(FrameSize());
    const QRect area = frame.PlotArea();
    plotRect = QRect(CLng(area.left() / scale), CLng(area.top() / scale), CLng(area.width() / scale),
                     CLng(area.height() / scale));
}

void ZelGraph::State::BuildScene() {
    const QRect area = frame.PlotArea();
    scene = PlotScene();
    scene.width = area.width();
    scene.height = area.height();
    scene.grid = grid;
    scene.timeStep = frame.TimeGrid();
    scene.gridRows = frame.GridRows();
    scene.ground = ChartColor::Ground;
    scene.gridColor = ChartColor::Grid;
    const int thickness = std::clamp(CLng(scale), 1, 4);
    for (std::size_t i = 0; i < plots.size(); ++i) {
        const PlotAttributes& look = plots[i].attributes;
        if (!plots[i].visible)
            continue;
        const bool known = look.axis > XAxis && look.axis <= TemperatureAxis;
        const AxisEnds& ends = axes[static_cast<std::size_t>(known ? look.axis : VoltageAxis)].ends;
        PlotScene::Trace trace;
        trace.plot = static_cast<int>(i);
        trace.joint = look.axis == DigitalAxis ? Joint::Step : Joint::Line;
        trace.range = DrawnSpan(ends.minimum, ends.maximum);
        trace.stroke = {ResolvedColor(look.color).rgb(), thickness, look.axis != DigitalAxis,
                        DashPattern(look.lineStyle, thickness)};
        scene.traces.push_back(std::move(trace));
    }
}

void ZelGraph::State::PlaceGrid() {
    const int columns = frame.PlotArea().width();
    if (columns <= 0)
        return;
    ColumnGrid placed;
    placed.width = timeSpan.Length() / columns;
    const AxisEnds& ends = axes[XAxis].ends;
    if (ends.span > 0 && timeSpan == AxisSpan{ends.minimum, ends.maximum})
        placed.width = ends.span / columns; // the same for every position of the axis
    const double largest = std::max(std::abs(timeSpan.low), std::abs(timeSpan.high));
    if (largest / placed.width > MostColumns)
        placed.origin = timeSpan.low;
    if (placed == grid)
        return;
    grid = placed;
    ++revision;
}

std::int64_t ZelGraph::State::FirstColumn() const {
    const double end = std::ceil((timeSpan.high - grid.origin) / grid.width - WholeColumn);
    return static_cast<std::int64_t>(std::clamp(end, -2 * MostColumns, 2 * MostColumns)) - scene.width;
}

void ZelGraph::State::Prepare(const ZelGraph& graph) {
    FitAxes();
    const double newScale = graph.devicePixelRatioF();
    const QSize newSize(Int(graph.width() * newScale), Int(graph.height() * newScale));
    if (newScale != scale || newSize != pixelSize) {
        scale = newScale;
        pixelSize = newSize;
        ++revision;
    }
    timeSpan = DrawnSpan(axes[XAxis].ends.minimum, axes[XAxis].ends.maximum);
    PlaceGrid();
    if (!frame.TimeFits(timeSpan))
        ++revision;
    if (arranged == revision) {
        frame.MoveTime(timeSpan);
        return;
    }
    panelRoom = RoomForPanels(graph);
    ArrangeFrame(graph);
    PlaceGrid();
    BuildScene();
    arranged = revision;
}

void ZelGraph::paintEvent(QPaintEvent*) {
    State& s = *state;
    s.Prepare(*this);
    QPainter painter(this);
    painter.scale(1 / s.scale, 1 / s.scale); // device pixels from here on
    const QRect area = s.frame.PlotArea();
    if (area.isEmpty()) {
        s.frame.Draw(painter, s.FrameSize() + QSize(1, 1), s.grid, 0);
        return;
    }
    const std::int64_t first = s.FirstColumn();
    s.plotPainter.Update(s.store, s.scene, s.arranged, first);
    s.frame.Draw(painter, s.FrameSize() + QSize(1, 1), s.grid, first);
    s.plotPainter.Draw(painter, area.left(), area.top());
    s.DrawOverlay(painter);
}

void ZelGraph::State::DrawOverlay(QPainter& painter) const {
    const QRect area = frame.PlotArea();
    const int line = std::max(1, CLng(scale));
    DrawCursors(painter);
    painter.setBrush(Qt::NoBrush);
    if (gesture == Gesture::Zoom) {
        const QRectF band = Band();
        const QRectF shown(band.topLeft() * scale, band.size() * scale);
        painter.fillRect(shown, QColor(120, 180, 230, 45));
        painter.setPen(QPen(QColor(140, 195, 240), line));
        painter.drawRect(shown);
    }
    if (keyboardFocus) {
        painter.setPen(QPen(QColor(ChartColor::Focus), line));
        painter.drawRect(area.adjusted(-line, -line, 0, 0));
    }
}

QRect ZelGraph::PlotRect() const {
    state->Prepare(*this);
    return state->plotRect;
}

double ZelGraph::TimeAt(double x) const {
    state->Prepare(*this);
    return state->TimeOf(x);
}

double ZelGraph::State::TimeOf(double x) const {
    if (plotRect.isEmpty())
        return timeSpan.low;
    return timeSpan.low + (x - plotRect.left()) / plotRect.width() * timeSpan.Length();
}

} // namespace tracelet
