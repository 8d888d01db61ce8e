#include "window/chart/ZelGraphState.h"

#include "core/base/Convert.h"
#include "core/samples/Statistics.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolButton>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tracelet {

namespace {

constexpr int FlagSize = 14; ///< logical pixels
constexpr int FlagGap = 3;   ///< between the plot area and them
constexpr double HitMargin = 2;
constexpr QRgb CursorColor = 0xffdfe6ec;
constexpr std::array CursorNames = {QLatin1StringView("A"), QLatin1StringView("B")};

} // namespace

QString ZelGraph::CursorText() const {
    return tracelet::CursorText(state->store, state->VisiblePlots(), state->cursors);
}

static void CopyTable(const ZelGraph& graph) {
    QGuiApplication::clipboard()->setText(graph.CursorText());
}

// Lines and flags.

double ZelGraph::State::PlaceOf(double seconds) const {
    return static_cast<double>(frame.PlotArea().left()) +
           static_cast<double>(grid.ColumnOf(seconds + grid.width * 1e-6) - FirstColumn());
}

/// A's flag stands at the left of its line, B's at the right: close together, both can be taken.
QRectF ZelGraph::State::FlagOf(std::size_t cursor) const {
    const QRect area = frame.PlotArea();
    if (!cursors[cursor] || area.isEmpty())
        return {};
    const double place = PlaceOf(*cursors[cursor]);
    if (place < area.left() || place > area.right() + 1)
        return {};
    const double size = FlagSize * scale;
    return {cursor == 0 ? place - size + 1 : place, area.bottom() + 1 + FlagGap * scale, size, size};
}

void ZelGraph::State::DrawCursors(QPainter& painter) const {
    const double line = std::max(1, CLng(scale));
    for (const std::size_t cursor : {1 - selected, selected}) {
        const QRectF flag = FlagOf(cursor);
        if (flag.isEmpty())
            continue;
        const double x = PlaceOf(*cursors[cursor]);
        const double top = frame.PlotArea().top();
        const QColor color(CursorColor);
        painter.fillRect(QRectF(x, top, line, flag.top() - top), color);
        painter.fillRect(flag, color);
        if (cursor != selected)
            painter.fillRect(flag.adjusted(line, line, -line, -line), QColor(ChartColor::Grid));
        QFont font = painter.font();
        font.setPixelSize(CLng((FlagSize - 3) * scale));
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(cursor == selected ? QColor(ChartColor::Ground) : color);
        painter.drawText(flag, Qt::AlignCenter, CursorNames[cursor]);
    }
}

// Placing and moving.

std::optional<double> ZelGraph::CursorTime(int cursor) const {
    return state->cursors.at(static_cast<std::size_t>(cursor));
}

void ZelGraph::RemoveCursors() {
    state->cursors = {};
    if (state->gesture == State::Gesture::Cursor)
        state->gesture = State::Gesture::None;
    ChangeCursors();
}

void ZelGraph::ChangeCursors() {
    State& s = *state;
    if (s.cursorTable == nullptr) {
        s.cursorTable = NewPanel(u"CursorTable"_s, u"DI 00:00 [mA]"_s, u"-00.0000"_s);
        connect(s.cursorTable->AddButton(u"BtnCopyCursors"_s, u"Copy"_s, u"Copy the table (Ctrl+Shift+C)"_s),
                &QToolButton::clicked, this, [this] { CopyTable(*this); });
        connect(s.cursorTable->AddButton(u"BtnCloseCursors"_s, u"\u00d7"_s, u"Remove the cursors (Delete)"_s),
                &QToolButton::clicked, this, &ZelGraph::RemoveCursors);
    }
    if (s.HasCursors() != (s.panelRoom.height() > 0))
        LookChanged();
    ValuesChanged();
    update();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, ValuesText());
        QAccessible::updateAccessibility(&event);
    }
}

/// The first one that does not stand yet, else the nearer one.
void ZelGraph::State::PlaceCursor(double seconds) {
    if (cursors[0] && cursors[1])
        selected = std::abs(*cursors[0] - seconds) <= std::abs(*cursors[1] - seconds) ? 0 : 1;
    else
        selected = cursors[0] ? 1 : 0;
    cursors[selected] = seconds;
}

/// To the next sample of any visible plot; one that does not stand yet, to the middle of the time axis.
void ZelGraph::State::StepCursor(std::size_t cursor, bool forwards) {
    std::optional<double>& time = cursors[cursor];
    selected = cursor;
    if (!time) {
        time = (timeSpan.low + timeSpan.high) / 2;
        return;
    }
    NeighbourTimes next;
    for (int plot = 0; plot < store.PlotCount(); ++plot) {
        if (!plots[static_cast<std::size_t>(plot)].visible)
            continue;
        const NeighbourTimes found = TimesAround(store, plot, *time);
        next.before = std::max(next.before, found.before);
        next.behind = std::min(next.behind, found.behind);
    }
    if (const double to = forwards ? next.behind : next.before; std::isfinite(to))
        time = to;
}

bool ZelGraph::GrabCursor(const QMouseEvent& event) {
    State& s = *state;
    if (event.button() != Qt::LeftButton)
        return false;
    s.Prepare(*this);
    const QPointF place = event.position();
    const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
    for (const std::size_t cursor : {s.selected, 1 - s.selected}) {
        const QRectF flag = s.FlagOf(cursor);
        const QRectF taken = flag.adjusted(-HitMargin, -HitMargin, HitMargin, HitMargin);
        if (flag.isEmpty() || !taken.contains(place * s.scale))
            continue;
        s.selected = cursor;
        s.grabbedAt = place.x() - s.PlaceOf(*s.cursors[cursor]) / s.scale;
        return true;
    }
    if (!shift || !QRectF(s.plotRect).contains(place))
        return false;
    s.PlaceCursor(s.TimeOf(place.x()));
    s.grabbedAt = 0;
    return true;
}

bool ZelGraph::DragCursor(const QMouseEvent& event) {
    State& s = *state;
    if (s.gesture != State::Gesture::Cursor)
        return false;
    s.Prepare(*this);
    if (event.position() == s.pointer || s.plotRect.isEmpty())
        return true;
    s.pointer = event.position();
    s.cursors[s.selected] = s.TimeOf(s.Held(s.pointer - QPointF(s.grabbedAt, 0)).x());
    ChangeCursors();
    return true;
}

bool ZelGraph::PressCursorKey(const QKeyEvent& event) {
    State& s = *state;
    const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    if (event.key() == Qt::Key_Delete && s.HasCursors() && !control && !shift) {
        RemoveCursors();
        return true;
    }
    if (!control)
        return false;
    if (event.key() == Qt::Key_C && shift && s.HasCursors()) {
        CopyTable(*this);
        return true;
    }
    if (event.key() != Qt::Key_Left && event.key() != Qt::Key_Right)
        return false;
    s.Prepare(*this);
    s.StepCursor(shift ? 1 - s.selected : s.selected, event.key() == Qt::Key_Right);
    ChangeCursors();
    return true;
}

/// Cursors take what is theirs; all else goes its usual way.
bool ZelGraph::event(QEvent* event) {
    State& s = *state;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        auto& press = *static_cast<QMouseEvent*>(event);
        if (!GrabCursor(press))
            break;
        mousePressEvent(&press); // its signal goes out as ever
        s.gesture = State::Gesture::Cursor;
        s.pointer = press.position();
        setCursor(Qt::SizeHorCursor);
        setFocus(Qt::MouseFocusReason);
        ChangeCursors();
        return true;
    }
    case QEvent::MouseMove:
        Hover(static_cast<QMouseEvent*>(event)->position());
        if (DragCursor(*static_cast<QMouseEvent*>(event)))
            return true;
        break;
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton &&
            DragCursor(*static_cast<QMouseEvent*>(event))) {
            s.gesture = State::Gesture::None;
            UpdateCursor();
        }
        break;
    case QEvent::KeyPress:
        if (PressCursorKey(*static_cast<QKeyEvent*>(event)))
            return true;
        break;
    case QEvent::Leave:
        Hover({-1, -1});
        break;
    case QEvent::ToolTip:
        if (ShowLoss(*static_cast<QHelpEvent*>(event)))
            return true;
        break;
    case QEvent::Show:
        ValuesChanged();
        break;
    case QEvent::LayoutRequest:
        PlacePanels();
        return true;
    default:
        break;
    }
    return QWidget::event(event);
}

} // namespace tracelet
