#include "window/chart/ZelGraph.h"

#include "core/base/Convert.h"
#include "window/chart/ZelGraphState.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QWheelEvent>

#include <algorithm>
#include <chrono>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tracelet {

namespace {

constexpr double ZoomStep = 0.8; ///< span that a key or a notch of the wheel leaves
constexpr double PanStep = 0.1;  ///< of the span, a key
constexpr double Notch = 120;    ///< eighths of a degree
constexpr double LineRoom = 1;   ///< digital units beside the levels of lines
constexpr int HoldMargin = 2;    ///< logical pixels about the button
constexpr int LeastHeight = 160; ///< of a chart that has room for the button, logical pixels

std::int64_t Now() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void ZoomAbout(AxisEnds& ends, double fraction, double factor) {
    ends.TakePart(fraction - fraction * factor, fraction + (1 - fraction) * factor);
}

/// Keeps its picture, as it is painted again with every frame of the chart beneath.
class HoldButton : public QPushButton {
public:
    using QPushButton::QPushButton;

    [[nodiscard]] QSize sizeHint() const override {
        const QFontMetrics metrics = fontMetrics();
        return {metrics.horizontalAdvance(text()) + 7 * metrics.height() / 4, metrics.height() + 2};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const Look now{isChecked(), hasFocus(), underMouse(), size(), devicePixelRatioF()};
        if (!(now == look)) {
            look = now;
            Draw();
        }
        QPainter(this).drawPixmap(0, 0, picture);
    }

private:
    struct Look {
        bool checked = false;
        bool focused = false;
        bool hovered = false;
        QSize size;
        double scale = 0;
        bool operator==(const Look&) const = default;
    };

    void Draw() {
        picture = QPixmap(look.size * look.scale);
        picture.setDevicePixelRatio(look.scale);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        const QColor ground = look.checked ? QColor(0xe8a33d) : QColor(ChartColor::Grid);
        const QColor ink = look.checked ? QColor(ChartColor::Ground) : QColor(ChartColor::Label);
        painter.setPen(look.focused ? ChartColor::Label : ChartColor::Border);
        painter.setBrush(look.hovered ? ground.lighter(115) : ground);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
        // Two bars, as on a button that pauses.
        const double unit = height() / 8.0;
        for (const double left : {3.0, 5.0})
            painter.fillRect(QRectF(left * unit, 2.5 * unit, unit, 3 * unit), ink);
        painter.setPen(ink);
        painter.drawText(rect().adjusted(CLng(7.5 * unit), 0, 0, 0), Qt::AlignVCenter, text());
    }

    Look look;
    QPixmap picture;
};

} // namespace

QPushButton* MakeHoldButton(ZelGraph* graph) {
    auto* button = new HoldButton(u"Hold"_s, graph);
    button->setObjectName(u"BtnHold"_s);
    button->setCheckable(true);
    button->setFocusPolicy(Qt::TabFocus); // a click leaves the keys to the chart
    button->setCursor(Qt::ArrowCursor);
    button->setAccessibleName(u"Hold the view"_s);
    button->setToolTip(u"Hold the view still while samples go on (Space)"_s);
    return button;
}

void ZelGraph::PlaceHold() {
    QFont font = this->font();
    font.setPixelSize(std::max(9, QFontInfo(font).pixelSize() - 1));
    BtnHold->setFont(font);
    const QSize size = BtnHold->sizeHint();
    const QSize room = this->size() - state->RoomForPanels(*this);
    BtnHold->setGeometry(QRect(
        QPoint(room.width() - size.width() - HoldMargin, room.height() - size.height() - HoldMargin), size));
    BtnHold->setVisible(height() >= LeastHeight);
}

// What is shown.

ChartView ZelGraph::State::View() {
    ChartView view;
    for (std::size_t axis = 0; axis < axes.size(); ++axis)
        view.axes[axis] = axes[axis].ends;
    view.axes[XAxis] = ShownTime();
    if (const auto times = HeldTimes())
        view.newest = times->high;
    return view;
}

void ZelGraph::State::Show(const ChartView& view) {
    for (const int axis : {VoltageAxis, DigitalAxis, TemperatureAxis})
        axes[static_cast<std::size_t>(axis)].ends = view.axes[static_cast<std::size_t>(axis)];
    ShownTime() = view.axes[XAxis];
    SpanLikeView();
    const auto times = HeldTimes();
    if (!stillTime && times && times->high != view.newest)
        axes[XAxis].ends.Follow(times->high);
    FitAnew();
}

/// Makes a change that can be undone; False when it changed nothing.
bool ZelGraph::State::Change(ViewHistory::Step step, const std::function<void()>& change) {
    const ChartView left = View();
    change();
    SpanLikeView();
    if (View().axes == left.axes)
        return false;
    history.Note(left, step, Now());
    return true;
}

/// X takes the span of a held view and stays at its newest end.
void ZelGraph::State::SpanLikeView() {
    AxisEnds& time = axes[XAxis].ends;
    if (!stillTime || stillTime->span == time.span)
        return;
    time.minimum = time.maximum - stillTime->span;
    time.span = stillTime->span;
    time.automatic = false;
}

/// A held view takes the span of X and keeps its middle.
void ZelGraph::State::ViewLikeSpan() {
    if (!stillTime || stillTime->span == axes[XAxis].ends.span)
        return;
    const double middle = stillTime->minimum + stillTime->span / 2;
    const double span = axes[XAxis].ends.span;
    stillTime->SetBoth(middle - span / 2, middle + span / 2);
    stillTime->span = span;
}

std::vector<int> ZelGraph::State::ShownValueAxes() const {
    std::vector<int> shown;
    for (const int axis : {VoltageAxis, DigitalAxis, TemperatureAxis})
        if (Shown(axis))
            shown.push_back(axis);
    return shown;
}

/// The axis beside the plot area at that place, or else all.
std::vector<int> ZelGraph::State::ValueAxesAt(QPointF position) const {
    std::vector<int> shown = ShownValueAxes();
    const double x = position.x() * scale;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const AxisStrip& strip = frame.strips[i];
        if (strip.left ? x < frame.PlotArea().left() : x >= strip.area.left() && x <= strip.area.right())
            return {shown[i]};
    }
    return shown;
}

void ZelGraph::State::ZoomValues(const std::vector<int>& which, double fraction, double factor) {
    for (const int axis : which)
        ZoomAbout(axes[static_cast<std::size_t>(axis)].ends, fraction, factor);
}

void ZelGraph::State::PanValues(double fraction) {
    for (const int axis : ShownValueAxes())
        axes[static_cast<std::size_t>(axis)].ends.Pan(fraction);
}

/// Fits the axes to what is held. Digital lines show whole, whatever their levels were.
void ZelGraph::State::ShowAll() {
    const auto times = HeldTimes();
    if (!times)
        return;
    if (times->low < times->high) {
        ShownTime().SetBoth(times->low, times->high);
        ShownTime().automatic = false;
    }
    axes[TemperatureAxis].ends.automatic = true;
    FitAnew();
    for (const int axis : {VoltageAxis, TemperatureAxis})
        FitValues(axis);
    AxisSpan lines{HUGE_VAL, -HUGE_VAL};
    for (const auto& [look, visible] : plots)
        if (visible && look.axis == DigitalAxis)
            lines = {std::min(lines.low, look.level), std::max(lines.high, look.level + 1)};
    if (lines.low < lines.high)
        axes[DigitalAxis].ends.SetBoth(lines.low - LineRoom, lines.high + LineRoom);
}

void ZelGraph::ChangeView(bool isRun, const std::function<void()>& change) {
    State& s = *state;
    s.Prepare(*this);
    const double span = s.ShownTime().span;
    s.Change(isRun ? ViewHistory::Step::Run : ViewHistory::Step::Lone, change);
    LookChanged();
    if (s.ShownTime().span != span)
        emit Zoomed(s.ShownTime().span);
}

void ZelGraph::StepBack() {
    State& s = *state;
    const std::optional<ChartView> view = s.history.Back();
    if (!view)
        return;
    const double span = s.ShownTime().span;
    s.Show(*view);
    LookChanged();
    if (s.ShownTime().span != span)
        emit Zoomed(s.ShownTime().span);
}

// Hold.

/// While the view is held, no limit but that of memory.
void ZelGraph::State::LimitStore() {
    store.SetLimit(stillTime ? 0 : chartLength);
}

void ZelGraph::Hold(bool still) {
    state->FitAxes();
    state->stillTime = still ? std::optional(state->axes[XAxis].ends) : std::nullopt;
    state->LimitStore();
    LookChanged();
}

// Wheel, double click and keys.

void ZelGraph::wheelEvent(QWheelEvent* event) {
    State& s = *state;
    const QPoint turned = event->angleDelta();
    const double notches = (turned.y() != 0 ? turned.y() : turned.x()) / Notch;
    s.Prepare(*this);
    if (notches == 0 || s.plotRect.isEmpty() || s.gesture != State::Gesture::None) {
        event->ignore();
        return;
    }
    const double factor = std::pow(ZoomStep, notches);
    const QPointF at = s.Held(event->position());
    const double right = (at.x() - s.plotRect.left()) / s.plotRect.width();
    const double up = 1 - (at.y() - s.plotRect.top()) / s.plotRect.height();
    ChangeView(true, [&] {
        if (event->modifiers().testFlag(Qt::ShiftModifier))
            s.ZoomValues(s.ValueAxesAt(event->position()), up, factor);
        else
            ZoomAbout(s.ShownTime(), right, factor);
    });
    event->accept();
}

void ZelGraph::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
    const bool isPlain = event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier;
    if (!isPlain || !state->plotRect.contains(event->position().toPoint()))
        return;
    state->gesture = State::Gesture::None;
    UpdateCursor();
    ChangeView(false, [this] { state->ShowAll(); });
}

/// What a key does to the view; nothing for any other.
std::function<void()> ZelGraph::State::MoveOf(int key, bool shift) {
    const auto alongTime = [this](double fraction) { return [=, this] { ShownTime().Pan(fraction); }; };
    const auto zoomTime = [this](double factor) {
        return [=, this] { ZoomAbout(ShownTime(), 0.5, factor); };
    };
    const auto goTo = [this](double share) { // of the span, left of the newest or the oldest sample
        return [=, this] {
            if (const auto times = HeldTimes())
                ShownTime().MoveTo((share > 0 ? times->high : times->low) - share * ShownTime().span);
        };
    };
    const auto values = [=, this](double fraction, double factor) -> std::function<void()> {
        if (shift)
            return [=, this] { ZoomValues(ShownValueAxes(), 0.5, factor); };
        return [=, this] { PanValues(fraction); };
    };
    switch (key) {
    case Qt::Key_Left:
        return alongTime(-PanStep);
    case Qt::Key_Right:
        return alongTime(PanStep);
    case Qt::Key_Up:
        return values(PanStep, ZoomStep);
    case Qt::Key_Down:
        return values(-PanStep, 1 / ZoomStep);
    case Qt::Key_Plus:
    case Qt::Key_Equal: // the same key
        return zoomTime(ZoomStep);
    case Qt::Key_Minus:
    case Qt::Key_Underscore:
        return zoomTime(1 / ZoomStep);
    case Qt::Key_Home:
        return goTo(0);
    case Qt::Key_End:
        return goTo(1);
    default:
        return {};
    }
}

/// Handles keys that move what is shown; False for any other.
bool ZelGraph::MoveView(const QKeyEvent& event) {
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    if ((held & ~Qt::ShiftModifier) != Qt::NoModifier)
        return false;
    if (event.key() == Qt::Key_Space)
        BtnHold->toggle();
    else if (event.key() == Qt::Key_Backspace)
        StepBack();
    else if (const auto move = state->MoveOf(event.key(), held.testFlag(Qt::ShiftModifier)))
        ChangeView(true, move);
    else
        return false;
    state->keyboardFocus = true;
    update();
    return true;
}

} // namespace tracelet
