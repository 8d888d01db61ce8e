#include "window/chart/ZelGraphState.h"

#include "core/samples/Statistics.h"

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
    QPalette colors(QColor(ChartColor::Grid), QColor(ChartColor::Ground)); // light on dark, for buttons too
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
    int lines = TableLines();
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
}

// Values.

ValueForm ZelGraph::State::FormOfPlot(int plot) const {
    if (plots[static_cast<std::size_t>(plot)].attributes.axis == DigitalAxis)
        return {0, false};
    const Extent extent = store.Samples(plot).FiniteRange(store.First(plot), store.End(plot));
    if (extent.Empty())
        return {};
    return FormOf(static_cast<double>(std::max(std::abs(extent.low), std::abs(extent.high))));
}

QString ZelGraph::State::ReadOutHeading() const {
    if (!hovered)
        return u"latest"_s;
    return QString::fromStdString(
        TimeText(TimeOf(*hovered), timeSpan.Length() / std::max(1, plotRect.width())));
}

std::vector<ValuePanel::Row> ZelGraph::State::ReadOutRows() const {
    std::vector<ValuePanel::Row> rows;
    for (int plot = 0; plot < store.PlotCount(); ++plot) {
        const auto& [look, visible] = plots[static_cast<std::size_t>(plot)];
        if (!visible)
            continue;
        std::optional<SampleStore::Point> point;
        if (hovered)
            point = NearestSample(store, plot, TimeOf(*hovered));
        else if (store.Count(plot) > 0)
            point = store.At(plot, store.Count(plot) - 1);
        const double value = point ? point->y - look.level : SpanStatistics::None;
        QString text = QString::fromStdString(ValueText(value, FormOfPlot(plot)));
        if (!look.unit.isEmpty() && !std::isnan(value))
            text += u' ' + look.unit;
        rows.push_back({ReadableOnChart(ResolvedColor(look.color).rgb()), {look.name, text}});
    }
    return rows;
}

QString ZelGraph::ValuesText() const {
    state->Prepare(*this);
    QStringList lines{state->ReadOutHeading()};
    for (const ValuePanel::Row& row : state->ReadOutRows())
        lines.append(row.cells.join(u' '));
    if (state->HasCursors()) {
        lines.append(state->CursorHeading());
        for (const ValuePanel::Row& row : state->TableRows())
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
        s.readOut->Show(s.ReadOutHeading(), s.ReadOutRows());
    if (s.cursorTable != nullptr && s.HasCursors())
        s.cursorTable->Show(s.CursorHeading(), s.TableRows());
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
