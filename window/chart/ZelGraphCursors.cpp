#include "window/chart/ZelGraphState.h"

#include "core/base/Convert.h"
#include "core/base/NumberText.h"
#include "core/samples/Statistics.h"

#include <QAccessible>
#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
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
constexpr double Percent = 100;

QString Text(double value, ValueForm form) {
    return QString::fromStdString(ValueText(value, form));
}
/// Of what many samples tell more finely than one.
QString FineText(double value, ValueForm form) {
    constexpr int more = 2;
    return Text(value, form.exponent ? form : ValueForm{form.decimals + more, false});
}
/// For spreadsheets: all digits, nothing for what is no number.
QString Cell(double value) {
    return std::isfinite(value) ? QString::fromStdString(NumberText(value)) : QString();
}

} // namespace

/// What lies at the cursors and between them, of one plot.
struct ZelGraph::State::CursorRow {
    const PlotAttributes& look;
    ValueForm form;
    std::array<double, 2> at = {SpanStatistics::None, SpanStatistics::None};
    SpanStatistics span;
    LineStatistics line; ///< of a digital line

    [[nodiscard]] bool IsLine() const { return look.axis == DigitalAxis; }
    [[nodiscard]] double Step() const { return at[1] - at[0]; }
    [[nodiscard]] double PeakToPeak() const { return span.maximum - span.minimum; }
    [[nodiscard]] std::int64_t Count() const { return IsLine() ? line.count : span.count; }
};

std::vector<ZelGraph::State::CursorRow> ZelGraph::State::CursorRows() const {
    std::vector<CursorRow> rows;
    for (int plot = 0; plot < store.PlotCount(); ++plot) {
        const auto& [look, visible] = plots[static_cast<std::size_t>(plot)];
        if (!visible)
            continue;
        CursorRow row{look, FormOfPlot(plot), {}, {}, {}};
        for (std::size_t i = 0; i < cursors.size(); ++i) {
            const auto sample = cursors[i] ? NearestSample(store, plot, *cursors[i]) : std::nullopt;
            row.at[i] = sample ? sample->y - look.level : SpanStatistics::None;
        }
        if (cursors[0] && cursors[1]) {
            const auto [from, to] = std::minmax(*cursors[0], *cursors[1]);
            if (row.IsLine())
                row.line = LineStatisticsBetween(store, plot, from, to, look.level);
            else
                row.span = StatisticsBetween(store, plot, from, to);
        }
        rows.push_back(row);
    }
    return rows;
}

// The table.

int ZelGraph::State::TableLines() const {
    int lines = 0;
    std::optional<bool> kind;
    for (const auto& [look, visible] : plots) {
        if (!visible)
            continue;
        const bool isLine = look.axis == DigitalAxis;
        lines += kind == isLine ? 1 : 2; // with captions
        kind = isLine;
    }
    return lines;
}

QString ZelGraph::State::CursorHeading() const {
    QStringList parts;
    for (std::size_t i = 0; i < cursors.size(); ++i)
        if (cursors[i])
            parts.append(CursorNames[i] + u' ' +
                         QString::fromStdString(TimeText(*cursors[i], timeSpan.Length() / 1e4)));
    if (!cursors[0] || !cursors[1])
        return parts.join(QString()) + u"     Shift+click places the other cursor"_s;
    const double apart = *cursors[1] - *cursors[0];
    parts.append(u"\u0394t "_s + QString::fromStdString(PrefixedText(apart, "s")));
    parts.append(u"1/\u0394t "_s + QString::fromStdString(PrefixedText(1 / std::abs(apart), "Hz")));
    return parts.join(u"     "_s);
}

std::vector<ValuePanel::Row> ZelGraph::State::TableRows() const {
    const QStringList common = {QString(), u"n"_s, u"A"_s, u"B"_s, u"B \u2212 A"_s};
    const QStringList ofSamples = {u"Min"_s, u"Max"_s, u"Mean"_s, u"RMS"_s, u"Std dev"_s, u"Pk\u2013pk"_s};
    const QStringList ofLines = {u"Edges"_s, u"Frequency"_s, u"Duty"_s};
    std::vector<ValuePanel::Row> rows;
    std::optional<bool> kind;
    for (const CursorRow& row : CursorRows()) {
        if (kind != row.IsLine())
            rows.push_back({ChartColor::Title, common + (row.IsLine() ? ofLines : ofSamples), false});
        kind = row.IsLine();
        const SpanStatistics& span = row.span;
        QStringList cells = {row.look.unit.isEmpty() ? row.look.name
                                                     : u"%1 [%2]"_s.arg(row.look.name, row.look.unit),
                             QString::number(row.Count()), Text(row.at[0], row.form),
                             Text(row.at[1], row.form), Text(row.Step(), row.form)};
        if (row.IsLine())
            cells += {QString::number(row.line.edges),
                      QString::fromStdString(PrefixedText(row.line.frequency, "Hz")),
                      Text(Percent * row.line.highShare, {2, false}) + u" %"_s};
        else
            cells += {Text(span.minimum, row.form),       Text(span.maximum, row.form),
                      FineText(span.mean, row.form),      FineText(span.rootMeanSquare, row.form),
                      FineText(span.deviation, row.form), Text(row.PeakToPeak(), row.form)};
        rows.push_back({ReadableOnChart(ResolvedColor(row.look.color).rgb()), cells});
    }
    return rows;
}

QString ZelGraph::CursorText() const {
    const auto& times = state->cursors;
    if (!state->HasCursors())
        return {};
    const double a = times[0].value_or(SpanStatistics::None);
    const double b = times[1].value_or(SpanStatistics::None);
    QStringList lines{
        u"Plot\tUnit\tA [s]\tB [s]\tB-A [s]\t1/(B-A) [Hz]\tValue at A\tValue at "
        u"B\tDifference\tSamples\tMinimum\t"
        "Maximum\tMean\tRMS\tStandard deviation (n)\tPeak to peak\tEdges\tFrequency [Hz]\tDuty cycle [%]"_s};
    for (const State::CursorRow& row : state->CursorRows()) {
        QStringList cells{row.look.name,    row.look.unit,
                          Cell(a),          Cell(b),
                          Cell(b - a),      Cell(1 / (b - a)),
                          Cell(row.at[0]),  Cell(row.at[1]),
                          Cell(row.Step()), QString::number(row.Count())};
        for (const double value : {row.span.minimum, row.span.maximum, row.span.mean, row.span.rootMeanSquare,
                                   row.span.deviation, row.PeakToPeak()})
            cells.append(Cell(value));
        cells.append(row.IsLine() ? QString::number(row.line.edges) : QString());
        cells.append(Cell(row.line.frequency));
        cells.append(Cell(Percent * row.line.highShare));
        lines.append(cells.join(u'\t'));
    }
    return lines.join(u'\n') + u'\n';
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
    QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
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
