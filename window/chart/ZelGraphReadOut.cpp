#include "window/chart/ZelGraphState.h"

#include <QAccessibleWidget>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <new>

using namespace Qt::StringLiterals;

namespace tracelet {

namespace {

constexpr int RefreshMilliseconds = 150;
constexpr std::int64_t MostSummedUp = 2'000'000; ///< samples a refresh, some 2 ms
constexpr int NarrowestGraph = 480;              ///< with a read-out, logical pixels
constexpr int ReadOutColumns = 2;
constexpr double TableShare = 0.4; ///< of the graph's height, at most
constexpr int FewestTableLines = 2;
constexpr double TimeResolution = 1e-4; ///< of what is seen of the time axis

/// Role and values of the chart for assistive technology.
class GraphInterface : public QAccessibleWidget {
public:
    explicit GraphInterface(ZelGraph* shown) : QAccessibleWidget(shown, QAccessible::Chart), graph(shown) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? graph->ValuesText() : QAccessibleWidget::text(kind);
    }

private:
    ZelGraph* graph;
};

QAccessibleInterface* InterfaceOf(const QString&, QObject* object) {
    auto* graph = qobject_cast<ZelGraph*>(object);
    return graph == nullptr ? nullptr : new GraphInterface(graph); // owned by the accessibility cache
}

} // namespace

void InstallChartAccessibility() {
    QAccessible::installFactory(InterfaceOf); // a factory known already is not added again
}

ValuePanel* ZelGraph::NewPanel(const QString& name, const QString& firstColumn, const QString& column) {
    auto* panel = new ValuePanel(name, firstColumn, column, this);
    QPalette colors{QColor(ChartColor::Grid), QColor(ChartColor::Ground)}; // light on dark, for buttons too
    colors.setColor(QPalette::WindowText, QColor(ChartColor::Label));
    panel->setPalette(colors);
    return panel;
}

// Places.

QSize ZelGraph::State::FrameSize() const {
    return pixelSize - (QSizeF(panelRoom) * scale).toSize();
}

QSize ZelGraph::State::RoomForPanels(const ZelGraph& graph) const {
    QSize room(0, 0);
    if (readOutShown && graph.width() >= NarrowestGraph)
        room.setWidth(readOutFolded ? readOut->ButtonWidth() : readOut->WidthOf(ReadOutColumns));
    if (cursorTable == nullptr || !HasCursors())
        return room;
    int lines = CursorRowCount(VisiblePlots());
    while (lines >= FewestTableLines && cursorTable->HeightOf(lines) > TableShare * graph.height())
        --lines;
    if (lines >= FewestTableLines)
        room.setHeight(cursorTable->HeightOf(lines));
    return room;
}

void ZelGraph::PlacePanels() {
    State& s = *state;
    for (ValuePanel* panel : {s.readOut, s.cursorTable})
        if (panel != nullptr)
            panel->FollowFont();
    const QSize room = s.RoomForPanels(*this);
    if (s.readOut != nullptr) {
        s.readOut->setGeometry(width() - room.width(), 0, room.width(), height() - room.height());
        s.readOut->setVisible(room.width() > 0);
    }
    if (s.cursorTable != nullptr) {
        s.cursorTable->setGeometry(0, height() - room.height(), width(), room.height());
        s.cursorTable->setVisible(room.height() > 0);
    }
    PlaceHold();
}

// Values.

std::vector<LabelledPlot> ZelGraph::State::VisiblePlots() const {
    std::vector<LabelledPlot> shown;
    for (std::size_t i = 0; i < plots.size(); ++i) {
        const PlotAttributes& look = plots[i].attributes;
        if (plots[i].visible)
            shown.push_back({static_cast<int>(i), look.name, look.unit,
                             ReadableOnChart(ResolvedColor(look.color).rgb()), look.axis == DigitalAxis,
                             look.level});
    }
    return shown;
}

QString ZelGraph::State::ReadOutHeading() const {
    if (!hovered)
        return u"latest"_s;
    return QString::fromStdString(
        TimeText(TimeOf(*hovered), timeSpan.Length() / std::max(1, plotRect.width())));
}

std::vector<ValuePanel::Row> ZelGraph::State::ReadOutTable() const {
    return ReadOutRows(store, VisiblePlots(), hovered ? std::optional(TimeOf(*hovered)) : std::nullopt);
}

QString ZelGraph::State::TableHeading() const {
    return CursorHeading(cursors, timeSpan.Length() * TimeResolution);
}

std::vector<ValuePanel::Row> ZelGraph::State::CursorTable() const {
    return CursorRows(store, VisiblePlots(), cursors, ChartColor::Title);
}

QString ZelGraph::ValuesText() const {
    state->Prepare(*this);
    QStringList lines{state->ReadOutHeading()};
    for (const ValuePanel::Row& row : state->ReadOutTable())
        lines.append(row.cells.join(u' '));
    if (state->HasCursors()) {
        lines.append(state->TableHeading());
        for (const ValuePanel::Row& row : state->CursorTable())
            lines.append(row.cells.join(u' '));
    }
    return lines.join(u'\n');
}

void ZelGraph::ShowReadOut(bool shown) {
    State& s = *state;
    s.readOutShown = shown;
    if (shown && s.readOut == nullptr) {
        s.readOut = NewPanel(u"ReadOut"_s, u"DI 00:00"_s, u"-00.0000 mA"_s);
        QToolButton* button = s.readOut->AddButton(u"BtnReadOut"_s, {}, {});
        const auto fold = [this, button](bool folded) {
            state->readOutFolded = folded;
            state->readOut->SetFolded(folded);
            button->setArrowType(folded ? Qt::LeftArrow : Qt::RightArrow);
            const QString does = folded ? u"Show the values"_s : u"Hide the values"_s;
            button->setToolTip(does);
            button->setAccessibleName(does);
            LookChanged();
        };
        connect(button, &QToolButton::clicked, this, [this, fold] { fold(!state->readOutFolded); });
        fold(false);
        setMouseTracking(true);
    }
    LookChanged();
}

// Refreshing: what changes only marks the texts stale; a timer that runs as long as something does writes
// them.

void ZelGraph::ValuesChanged() {
    state->valuesStale = true;
    if (!state->refresh.isActive())
        state->refresh.start(0, this);
}

void ZelGraph::ValuesDue() {
    bool goesOn = state->valuesStale;
    try {
        goesOn = state->store.SumUpMoments(MostSummedUp) || goesOn;
    } catch (const std::bad_alloc&) {
        // Statistics then read what is not summed up.
    }
    if (state->valuesStale && isVisible())
        RefreshValues();
    state->valuesStale = false;
    if (goesOn)
        state->refresh.start(RefreshMilliseconds, this);
    else
        state->refresh.stop();
}

void ZelGraph::RefreshValues() {
    State& s = *state;
    s.Prepare(*this);
    if (s.readOut != nullptr && !s.readOutFolded)
        s.readOut->Show(s.ReadOutHeading(), s.ReadOutTable());
    if (s.cursorTable != nullptr && s.HasCursors())
        s.cursorTable->Show(s.TableHeading(), s.CursorTable());
    if (s.RoomForPanels(*this) != s.panelRoom) // a longer text
        LookChanged();
}

void ZelGraph::Hover(QPointF position) {
    State& s = *state;
    std::optional<double> place;
    if (QRectF(s.plotRect).contains(position))
        place = position.x();
    if (place == s.hovered)
        return;
    s.hovered = place;
    ValuesChanged();
}

} // namespace tracelet
