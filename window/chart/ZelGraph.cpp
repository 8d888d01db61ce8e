#include "window/chart/ZelGraph.h"

#include "core/base/RunTimeError.h"
#include "window/chart/ZelGraphState.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QPushButton>
#include <QTimerEvent>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <new>
#include <unistd.h>

namespace tracelet {

namespace {

constexpr int FrameMilliseconds = 16;
constexpr int MostIdleTicks = 60; ///< frames without samples after which the repaint timer rests
constexpr int OutOfMemory = 7;

std::int64_t HalfOfMemory() {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0)
        return INT64_MAX;
    return std::int64_t{pages} / 2 * pageSize;
}

} // namespace

QColor ResolvedColor(std::uint32_t raw) {
    if (raw > 0xffffffU)
        return QColor(0xe3, 0xe3, 0xe3);
    return QColor(static_cast<int>(raw & 0xffU), static_cast<int>(raw >> 8 & 0xffU),
                  static_cast<int>(raw >> 16 & 0xffU));
}

ZelGraph::ZelGraph(QWidget* parent) : QWidget(parent), state(std::make_unique<State>()) {
    BtnHold = MakeHoldButton(this); // its coming is an event, which asks for the state
    state->axes[VoltageAxis].ends.SetBoth(-10, 10);
    state->axes[DigitalAxis].ends.SetBoth(-1, 29);
    state->axes[TemperatureAxis].ends.SetBoth(0, 100);
    state->axes[VoltageAxis].title = QStringLiteral("V");
    state->axes[TemperatureAxis].title = QStringLiteral("\u00b0");
    SetMemoryBudget(HalfOfMemory());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(false);
    setAccessibleName(tr("Graph"));
    connect(BtnHold, &QPushButton::toggled, this, &ZelGraph::Hold);
    InstallChartAccessibility();
}

ZelGraph::~ZelGraph() = default;

QSize ZelGraph::sizeHint() const {
    return {640, 400};
}

// Plots.

ZelGraph::State::PlotEntry& ZelGraph::State::PlotOf(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= plots.size())
        throw Fault::SubscriptOutOfRange();
    return plots[static_cast<std::size_t>(index)];
}

int ZelGraph::PlotCount() const {
    return static_cast<int>(state->plots.size());
}

int ZelGraph::AddPlot(const PlotAttributes& attributes) {
    state->plots.push_back({attributes, true});
    state->store.AddPlot();
    state->scan.resize(state->plots.size());
    LookChanged();
    return PlotCount() - 1;
}

void ZelGraph::RemovePlots() {
    state->plots.clear();
    state->store.RemovePlots();
    state->history = {}; // of other plots
    BtnHold->setChecked(false);
    state->FitAnew();
    state->store.SetLimit(state->chartLength);
    LookChanged();
}

const PlotAttributes& ZelGraph::Plot(int index) const {
    return state->PlotOf(index).attributes;
}

void ZelGraph::SetPlot(int index, const PlotAttributes& attributes) {
    state->PlotOf(index).attributes = attributes;
    LookChanged();
}

bool ZelGraph::PlotVisible(int index) const {
    return state->PlotOf(index).visible;
}

void ZelGraph::SetPlotVisible(int index, bool visible) {
    State::PlotEntry& plot = state->PlotOf(index);
    if (plot.visible == visible)
        return;
    plot.visible = visible;
    state->FitAnew();
    LookChanged();
}

std::int64_t ZelGraph::PointCount(int index) const {
    (void)state->PlotOf(index);
    return state->store.Count(index);
}

QPointF ZelGraph::PointAt(int index, std::int64_t position) const {
    if (position < 0 || position >= PointCount(index))
        throw Fault::SubscriptOutOfRange();
    const SampleStore::Point point = state->store.At(index, position);
    return {point.x, point.y};
}

// Axes.

ZelGraph::State::Axis& ZelGraph::State::AxisOf(int axis) {
    if (axis < XAxis || axis > TemperatureAxis)
        throw Fault::SubscriptOutOfRange();
    FitAxes();
    return axes[static_cast<std::size_t>(axis)];
}

double ZelGraph::AxisMin(int axis) const {
    return state->AxisOf(axis).ends.minimum;
}
double ZelGraph::AxisMax(int axis) const {
    return state->AxisOf(axis).ends.maximum;
}

void ZelGraph::SetAxisMin(int axis, double value) {
    state->AxisOf(axis).ends.SetMinimum(value);
    state->ViewLikeSpan();
    LookChanged();
}

void ZelGraph::SetAxisMax(int axis, double value) {
    state->AxisOf(axis).ends.SetMaximum(value);
    state->ViewLikeSpan();
    LookChanged();
}

void ZelGraph::AxisSetRange(int axis, double minimum, double maximum) {
    State::Axis& target = state->AxisOf(axis);
    if (!std::isfinite(minimum) || !std::isfinite(maximum) || minimum >= maximum)
        throw RunTimeError("Invalid axis range");
    target.ends.SetBoth(minimum, maximum);
    target.ends.automatic = false;
    state->ViewLikeSpan();
    LookChanged();
}

bool ZelGraph::AxisAutoScale(int axis) const {
    return state->AxisOf(axis).ends.automatic;
}

void ZelGraph::SetAxisAutoScale(int axis, bool automatic) {
    State::Axis& target = state->AxisOf(axis);
    target.ends.automatic = automatic;
    target.fit.Forget();
    state->fitPending = true;
    LookChanged();
}

bool ZelGraph::State::UsedByVisiblePlot(int axis) const {
    return std::ranges::any_of(
        plots, [axis](const PlotEntry& plot) { return plot.visible && plot.attributes.axis == axis; });
}

bool ZelGraph::State::Shown(int axis) const {
    if (!axes[static_cast<std::size_t>(axis)].allowed)
        return false;
    if (axis == XAxis || UsedByVisiblePlot(axis))
        return true;
    return axis == VoltageAxis && !Shown(DigitalAxis) && !Shown(TemperatureAxis);
}

bool ZelGraph::AxisVisible(int axis) const {
    (void)state->AxisOf(axis);
    return state->Shown(axis);
}

void ZelGraph::SetAxisVisible(int axis, bool visible) {
    state->AxisOf(axis).allowed = visible;
    LookChanged();
}

QString ZelGraph::AxisTitle(int axis) const {
    return state->AxisOf(axis).title;
}

void ZelGraph::SetAxisTitle(int axis, const QString& title) {
    state->AxisOf(axis).title = title;
    LookChanged();
}

QString ZelGraph::AxisUnit(int axis) const {
    return state->AxisOf(axis).unit;
}

void ZelGraph::SetAxisUnit(int axis, const QString& unit) {
    State::Axis& target = state->AxisOf(axis);
    if (target.unit == unit)
        return;
    target.unit = unit;
    LookChanged();
}

double ZelGraph::Division() const {
    return state->division;
}

void ZelGraph::SetDivision(double seconds) {
    if (state->division == seconds)
        return;
    state->division = seconds;
    LookChanged();
}

// Samples.

std::int32_t ZelGraph::ChartLength() const {
    return state->chartLength;
}

void ZelGraph::SetChartLength(std::int32_t points) {
    state->chartLength = points;
    state->LimitStore();
    SamplesChanged();
}

template <typename Value>
static SampleBlock Interleaved(std::int32_t countPerChannel, std::int32_t channels,
                               std::span<const Value> data) {
    const bool negative = countPerChannel < 0 || channels < 0;
    const auto needed = static_cast<std::int64_t>(countPerChannel) * channels;
    if (negative || needed > static_cast<std::int64_t>(data.size()))
        throw Fault::Overflow();
    return {data, countPerChannel, channels};
}

SampleBlock ZelGraph::PlotInterleaved(std::int32_t countPerChannel, std::int32_t channels,
                                      std::span<const float> data) {
    return Interleaved(countPerChannel, channels, data);
}

SampleBlock ZelGraph::PlotInterleaved(std::int32_t countPerChannel, std::int32_t channels,
                                      std::span<const std::int32_t> data) {
    return Interleaved(countPerChannel, channels, data);
}

double ZelGraph::State::NextX() const {
    return runStart + static_cast<double>(runCount) * runStep;
}

void ZelGraph::State::Advance(double step, std::int64_t count) {
    if (step != runStep) {
        runStart = NextX();
        runStep = step;
        runCount = 0;
    }
    runCount += count;
}

double ZelGraph::NextX() const {
    return state->NextX();
}

void ZelGraph::SetNextX(double seconds) {
    state->runStart = seconds;
    state->runCount = 0;
}

/// Goes on with three quarters of the points that are held now.
void ZelGraph::State::MakeRoom() {
    std::int64_t most = 0;
    for (int plot = 0; plot < store.PlotCount(); ++plot)
        most = std::max(most, store.Count(plot));
    const std::int64_t kept = std::max<std::int64_t>(1, most - most / 4);
    store.SetLimit(chartLength > 0 && !stillTime ? std::min<std::int64_t>(chartLength, kept) : kept);
    store.DropSurplus();
}

template <typename Append>
bool ZelGraph::TryAppend(Append append) {
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            append();
            return true;
        } catch (const std::bad_alloc&) {
            state->MakeRoom();
        }
        if (attempt == 0)
            emit Error(OutOfMemory, QStringLiteral("Out of memory!"));
    }
    return false;
}

void ZelGraph::AppendSamples(double xIncrement, const SampleBlock& block) {
    if (!std::isfinite(xIncrement) || xIncrement < 0)
        throw Fault::Overflow();
    const std::int64_t count = block.countPerChannel;
    const std::int64_t channels = block.channels;
    if (count <= 0 || channels <= 0)
        return;
    State& s = *state;
    std::visit(
        [&](auto values) {
            if (count * channels > static_cast<std::int64_t>(values.size()))
                throw Fault::Overflow();
            for (std::int64_t done = 0; done < count; done += SampleStore::TileSize) {
                const std::int64_t tile = std::min(count - done, SampleStore::TileSize);
                const double start = s.NextX();
                TryAppend([&] {
                    s.store.AppendEven(start, xIncrement, tile, channels, values.data() + done * channels);
                });
                s.Advance(xIncrement, tile);
                s.axes[XAxis].ends.Follow(start);
                s.axes[XAxis].ends.Follow(s.runStart + static_cast<double>(s.runCount - 1) * s.runStep);
            }
        },
        block.samples);
    SamplesChanged();
}

void ZelGraph::AppendScan(double x, std::span<const float> values) {
    if (!std::isfinite(x) || values.empty())
        return;
    TryAppend([&] { state->store.AppendScan(x, values); });
    state->axes[XAxis].ends.Follow(x);
    SamplesChanged();
}

void ZelGraph::AddPoint(int plot, double x, double y) {
    (void)state->PlotOf(plot);
    if (!std::isfinite(x))
        return;
    TryAppend([&] { state->store.AppendPoint(plot, x, y); });
    state->axes[XAxis].ends.Follow(x);
    SamplesChanged();
}

void ZelGraph::MarkLoss(double from, double to, const QString& text) {
    if (!state->losses.empty() && state->losses.back().from == from)
        state->losses.pop_back();
    state->losses.push_back({from, std::max(from, to), text});
    update();
}

void ZelGraph::ClearLossMarks() {
    state->losses.clear();
    update();
}

int ZelGraph::LossMarkCount() const {
    return static_cast<int>(state->losses.size());
}

QString ZelGraph::LossAt(double x) const {
    constexpr double Reach = 5; // logical pixels
    const double from = TimeAt(x - Reach);
    const double to = TimeAt(x + Reach);
    const auto mark = std::ranges::lower_bound(state->losses, from, {}, &State::LossMark::to);
    return mark != state->losses.end() && mark->from <= to ? mark->text : QString();
}

void ZelGraph::ClearData() {
    state->store.Clear();
    BtnHold->setChecked(false);
    state->FitAnew();
    state->store.SetLimit(state->chartLength);
    LookChanged();
}

std::int64_t ZelGraph::HeldBytes() const {
    return static_cast<std::int64_t>(state->store.HeldBytes());
}

std::int64_t ZelGraph::MemoryBudget() const {
    return state->memoryBudget;
}

void ZelGraph::SetMemoryBudget(std::int64_t bytes) {
    state->memoryBudget = std::clamp<std::int64_t>(bytes, 0, HalfOfMemory());
    state->store.SetBudget(static_cast<std::size_t>(state->memoryBudget));
}

// Repainting: samples only mark the picture stale; a timer that runs while they come asks for the paint.

void ZelGraph::SamplesChanged() {
    state->fitPending = true;
    ValuesChanged();
    state->stale = true;
    if (state->repaint.isActive() || !isVisible() || window()->isMinimized())
        return;
    state->idleTicks = 0;
    state->repaint.start(FrameMilliseconds, Qt::PreciseTimer, this);
    update();
    state->stale = false;
}

void ZelGraph::LookChanged() {
    ++state->revision;
    state->fitPending = true;
    ValuesChanged();
    if (state->readOut != nullptr || state->cursorTable != nullptr)
        QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
    update();
}

void ZelGraph::timerEvent(QTimerEvent* event) {
    if (event->timerId() == state->refresh.timerId())
        ValuesDue();
    if (event->timerId() != state->repaint.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    if (!isVisible() || window()->isMinimized() || ++state->idleTicks > MostIdleTicks)
        state->repaint.stop();
    if (!state->stale)
        return;
    state->stale = false;
    state->idleTicks = 0;
    update();
}

/// Tells of a loss under the pointer.
bool ZelGraph::ShowLoss(const QHelpEvent& help) {
    const QString loss = LossAt(help.pos().x());
    if (!loss.isEmpty())
        QToolTip::showText(help.globalPos(), loss, this);
    return !loss.isEmpty();
}

void ZelGraph::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        PlaceHold();
        LookChanged();
    }
    QWidget::changeEvent(event);
}

void ZelGraph::resizeEvent(QResizeEvent*) {
    PlacePanels();
    LookChanged();
}

/// The keyboard's focus shows once a key has brought it; a change of windows changes nothing.
void ZelGraph::focusInEvent(QFocusEvent* event) {
    const Qt::FocusReason reason = event->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason)
        state->keyboardFocus = true;
    update();
}
void ZelGraph::focusOutEvent(QFocusEvent* event) {
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        state->keyboardFocus = false;
    update();
}

} // namespace tracelet
