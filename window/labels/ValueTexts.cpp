#include "window/labels/ValueTexts.h"

#include "core/base/NumberText.h"
#include "core/samples/Statistics.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tracelet {

namespace {

constexpr double Percent = 100;

QString Text(double value, ValueForm form) {
    return QString::fromStdString(ValueText(value, form));
}
/// Of what many samples tell more finely than one.
QString FineText(double value, ValueForm form) {
    constexpr int more = 2;
    return Text(value, form.exponent ? form : ValueForm{form.decimals + more, false});
}
QString Prefixed(double value, const char* unit) {
    return QString::fromStdString(PrefixedText(value, unit));
}
/// For spreadsheets: nothing for what is no number.
QString Cell(double value) {
    return std::isfinite(value) ? QString::fromStdString(NumberText(value)) : QString();
}

/// What lies at the cursors and between them, of one plot.
struct Findings {
    std::array<double, 2> at = {SpanStatistics::None, SpanStatistics::None};
    SpanStatistics span;
    LineStatistics line; ///< of a digital line

    [[nodiscard]] double Step() const { return at[1] - at[0]; }
    [[nodiscard]] double PeakToPeak() const { return span.maximum - span.minimum; }
    [[nodiscard]] std::int64_t Count() const { return line.count + span.count; } // one of them is 0
};

Findings Find(const SampleStore& store, const LabelledPlot& plot, const CursorTimes& times) {
    Findings found;
    for (std::size_t i = 0; i < times.size(); ++i)
        if (const auto sample = times[i] ? NearestSample(store, plot.plot, *times[i]) : std::nullopt)
            found.at[i] = sample->y - plot.level;
    if (!times[0] || !times[1])
        return found;
    const auto [from, to] = std::minmax(*times[0], *times[1]);
    if (plot.isLine)
        found.line = LineStatisticsBetween(store, plot.plot, from, to, plot.level);
    else
        found.span = StatisticsBetween(store, plot.plot, from, to);
    return found;
}

QStringList LineCells(const LineStatistics& line) {
    return {QString::number(line.edges), Prefixed(line.frequency, "Hz"),
            Text(Percent * line.highShare, {2, false}) + u" %"_s};
}

QStringList SpanCells(const Findings& found, ValueForm form) {
    const SpanStatistics& span = found.span;
    return {Text(span.minimum, form),       Text(span.maximum, form),
            FineText(span.mean, form),      FineText(span.rootMeanSquare, form),
            FineText(span.deviation, form), Text(found.PeakToPeak(), form)};
}

QStringList Captions(bool ofLines) {
    QStringList captions = {QString(), u"n"_s, u"A"_s, u"B"_s, u"B \u2212 A"_s};
    if (ofLines)
        return captions << u"Edges"_s << u"Frequency"_s << u"Duty"_s;
    return captions << u"Min"_s << u"Max"_s << u"Mean"_s << u"RMS"_s << u"Std dev"_s << u"Pk\u2013pk"_s;
}

} // namespace

ValueForm LabelledPlot::Form(const SampleStore& store) const {
    if (isLine)
        return {0, false};
    const Extent extent = store.Samples(plot).FiniteRange(store.First(plot), store.End(plot));
    if (extent.Empty())
        return {};
    return FormOf(static_cast<double>(std::max(std::abs(extent.low), std::abs(extent.high))));
}

std::vector<ValuePanel::Row> ReadOutRows(const SampleStore& store, const std::vector<LabelledPlot>& plots,
                                         std::optional<double> time) {
    std::vector<ValuePanel::Row> rows;
    for (const LabelledPlot& plot : plots) {
        std::optional<SampleStore::Point> point;
        if (time)
            point = NearestSample(store, plot.plot, *time);
        else if (store.Count(plot.plot) > 0)
            point = store.At(plot.plot, store.Count(plot.plot) - 1);
        const double value = point ? point->y - plot.level : SpanStatistics::None;
        QString text = Text(value, plot.Form(store));
        if (!plot.unit.isEmpty() && !std::isnan(value))
            text += u' ' + plot.unit;
        rows.push_back({plot.color, {plot.name, text}});
    }
    return rows;
}

QString CursorHeading(const CursorTimes& times, double resolution) {
    QStringList parts;
    for (std::size_t i = 0; i < times.size(); ++i)
        if (times[i])
            parts.append((i == 0 ? u"A "_s : u"B "_s) +
                         QString::fromStdString(TimeText(*times[i], resolution)));
    if (!times[0] || !times[1])
        return parts.join(QString()) + u"     Shift+click places the other cursor"_s;
    const double apart = *times[1] - *times[0];
    parts.append(u"\u0394t "_s + Prefixed(apart, "s"));
    parts.append(u"1/\u0394t "_s + Prefixed(1 / std::abs(apart), "Hz"));
    return parts.join(u"     "_s);
}

std::vector<ValuePanel::Row> CursorRows(const SampleStore& store, const std::vector<LabelledPlot>& plots,
                                        const CursorTimes& times, QRgb captionColor) {
    std::vector<ValuePanel::Row> rows;
    std::optional<bool> kind;
    for (const LabelledPlot& plot : plots) {
        if (kind != plot.isLine)
            rows.push_back({captionColor, Captions(plot.isLine), false});
        kind = plot.isLine;
        const ValueForm form = plot.Form(store);
        const Findings found = Find(store, plot, times);
        const QString name = plot.unit.isEmpty() ? plot.name : u"%1 [%2]"_s.arg(plot.name, plot.unit);
        const QStringList cells = {name, QString::number(found.Count()), Text(found.at[0], form),
                                   Text(found.at[1], form), Text(found.Step(), form)};
        rows.push_back({plot.color, cells + (plot.isLine ? LineCells(found.line) : SpanCells(found, form))});
    }
    return rows;
}

int CursorRowCount(const std::vector<LabelledPlot>& plots) {
    int count = 0;
    std::optional<bool> kind;
    for (const LabelledPlot& plot : plots) {
        count += kind == plot.isLine ? 1 : 2; // with captions
        kind = plot.isLine;
    }
    return count;
}

QString CursorText(const SampleStore& store, const std::vector<LabelledPlot>& plots,
                   const CursorTimes& times) {
    const double a = times[0].value_or(SpanStatistics::None);
    const double b = times[1].value_or(SpanStatistics::None);
    QString text =
        u"Plot\tUnit\tA [s]\tB [s]\tB-A [s]\t1/(B-A) [Hz]\tValue at A\tValue at "
        u"B\tDifference\tSamples\tMinimum\t"
        "Maximum\tMean\tRMS\tStandard deviation (n)\tPeak to peak\tEdges\tFrequency [Hz]\tDuty cycle [%]\n"_s;
    for (const LabelledPlot& plot : plots) {
        const Findings found = Find(store, plot, times);
        const SpanStatistics& span = found.span;
        QStringList cells{plot.name, plot.unit};
        for (const double value : {a, b, b - a, 1 / (b - a), found.at[0], found.at[1], found.Step()})
            cells.append(Cell(value));
        cells.append(QString::number(found.Count()));
        for (const double value :
             {span.minimum, span.maximum, span.mean, span.rootMeanSquare, span.deviation, found.PeakToPeak()})
            cells.append(Cell(value));
        cells.append(plot.isLine ? QString::number(found.line.edges) : QString());
        cells.append(Cell(found.line.frequency));
        cells.append(Cell(Percent * found.line.highShare));
        text += cells.join(u'\t') + u'\n';
    }
    return text;
}

} // namespace tracelet
