#include "window/chart/ZelGraph.h"

#include "core/base/Convert.h"
#include "window/chart/ZelGraphState.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

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

/// From the oldest to the newest point held of what is visible.
std::optional<AxisSpan> ZelGraph::State::HeldTimes() const {
    AxisSpan times{HUGE_VAL, -HUGE_VAL};
    for (int plot = 0; plot < store.PlotCount(); ++plot) {
        if (store.Count(plot) == 0 || !plots[static_cast<std::size_t>(plot)].visible)
            continue;
        times.low = std::min(times.low, store.X(plot, store.First(plot)));
        times.high = std::max(times.high, store.X(plot, store.End(plot) - 1));
    }
    return times.low <= times.high ? std::optional(times) : std::nullopt;
}

void ZelGraph::State::FitTime() {
    const auto [low, high] = HeldTimes().value_or(AxisSpan{0, 0});
    AxisEnds& ends = axes[XAxis].ends;
    if (!(low < high) || (low == ends.minimum && high == ends.maximum))
        return;
    // The last digits of a sum are no reason to draw everything at another scale.
    const double span = std::abs(high - low - ends.span) <= 1e-9 * ends.span ? ends.span : high - low;
    ends.SetBoth(low, high);
    ends.span = span;
}

void ZelGraph::State::FitValues(int axis) {
    const AxisEnds& time = ShownTime();
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

void ZelGraph::State::ArrangeFrame(const QFont& font) {
    frame.SetLook(font, scale);
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
    const int thickness = LineThickness(scale, pixelSize.width(), pixelSize.height());
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
    const AxisEnds& ends = ShownTime();
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
    Prepare(graph, graph.devicePixelRatioF());
}

void ZelGraph::State::Prepare(const ZelGraph& graph, double newScale) {
    FitAxes();
    const QSize newSize(Int(graph.width() * newScale), Int(graph.height() * newScale));
    if (newScale != scale || newSize != pixelSize) {
        scale = newScale;
        pixelSize = newSize;
        ++revision;
    }
    timeSpan = DrawnSpan(ShownTime().minimum, ShownTime().maximum);
    PlaceGrid();
    if (!frame.TimeFits(timeSpan))
        ++revision;
    if (arranged == revision) {
        frame.MoveTime(timeSpan);
        return;
    }
    panelRoom = RoomForPanels(graph);
    ArrangeFrame(graph.font());
    PlaceGrid();
    BuildScene();
    arranged = revision;
}

void ZelGraph::paintEvent(QPaintEvent*) {
    state->Prepare(*this);
    QPainter painter(this);
    painter.scale(1 / state->scale, 1 / state->scale); // device pixels from here on
    state->Draw(painter);
    if (state->frame.PlotArea().isEmpty())
        return;
    state->DrawHint(painter, font());
    state->DrawOverlay(painter);
}

void ZelGraph::DrawPicture(QPainter& painter, double scale) {
    state->Prepare(*this, scale);
    state->Draw(painter);
    state->DrawCursors(painter);
    painter.scale(scale, scale); // pixels of the screen from here on
    for (ValuePanel* panel : {state->readOut, state->cursorTable})
        if (panel != nullptr && panel->isVisible())
            panel->render(&painter, panel->pos(), {}, {}); // without its buttons
    state->Prepare(*this);
}

void ZelGraph::State::Draw(QPainter& painter) {
    const QRect area = frame.PlotArea();
    if (area.isEmpty()) {
        frame.Draw(painter, FrameSize() + QSize(1, 1), grid, 0);
        return;
    }
    const std::int64_t first = FirstColumn();
    plotPainter.Update(store, scene, arranged, first);
    frame.Draw(painter, FrameSize() + QSize(1, 1), grid, first);
    plotPainter.Draw(painter, area.left(), area.top());
    if (!losses.empty())
        DrawLosses(painter);
}

// A line with a tag at its head; where time went on without samples, a veil up to their return. Marks in one
// column are drawn once.
void ZelGraph::State::DrawLosses(QPainter& painter) const {
    constexpr QColor Loss{0xff, 0x52, 0x52};
    constexpr QColor Veil{0xff, 0x52, 0x52, 0x38};
    constexpr double TagSize = 4; // logical pixels
    const QRect area = frame.PlotArea();
    const auto first = std::ranges::lower_bound(losses, timeSpan.low, {}, &LossMark::to);
    int drawn = std::numeric_limits<int>::min();
    painter.save();
    painter.setClipRect(area);
    painter.setRenderHint(QPainter::Antialiasing);
    for (auto mark = first; mark != losses.end() && mark->from <= timeSpan.high; ++mark) {
        const double left = PlaceOf(std::max(mark->from, timeSpan.low - timeSpan.Length()));
        if (const double right = PlaceOf(std::min(mark->to, timeSpan.high + timeSpan.Length()));
            right > left + 1)
            painter.fillRect(QRectF(left, area.top(), right - left, area.height()), Veil);
        const int column = Int(std::floor(left));
        if (std::exchange(drawn, column) == column)
            continue;
        const double tag = TagSize * scale;
        painter.fillRect(QRectF(column, area.top(), std::max(1.0, std::round(scale)), area.height()), Loss);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Loss);
        painter.drawPolygon(QPolygonF{{column - tag, area.top() + 0.0},
                                      {column + tag + scale, area.top() + 0.0},
                                      {column + scale / 2, area.top() + 2 * tag}});
    }
    painter.restore();
}

void ZelGraph::SetHint(const QString& text) {
    if (state->hint == text)
        return;
    state->hint = text;
    update();
}

QString ZelGraph::Hint() const {
    return state->hint;
}

void ZelGraph::State::DrawHint(QPainter& painter, const QFont& font) const {
    for (int plot = 0; plot < store.PlotCount(); ++plot)
        if (store.Count(plot) > 0)
            return;
    painter.save();
    painter.scale(scale, scale); // logical pixels
    QFont large = font;
    large.setPixelSize(QFontInfo(font).pixelSize() * 5 / 4);
    painter.setFont(large);
    painter.setPen(QColor(ChartColor::Title));
    painter.drawText(plotRect, Qt::AlignCenter | Qt::TextWordWrap, hint);
    painter.restore();
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
