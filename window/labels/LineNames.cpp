#include "window/labels/LineNames.h"

#include "window/ground/Shading.h"

#include <QFontMetrics>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tracelet {

namespace {

double MiddleRow(const LineName& name, const RowScale& scale) {
    return (scale.top - name.level - 0.5) * scale.perUnit + 0.5;
}

/// Length of what a name may share with its neighbours: all up to its last character that is neither letter
/// nor digit.
qsizetype PrefixLength(const QString& text) {
    qsizetype length = text.size();
    while (length > 0 && text[length - 1].isLetterOrNumber())
        --length;
    return length;
}

struct Labels {
    std::vector<NameLabel> shared; ///< what stands once a group
    std::vector<NameLabel> own;
};

void Add(std::vector<NameLabel>& labels, const QString& text, QRgb color, double row) {
    labels.push_back({text, color, row, static_cast<int>(labels.size())});
}

Labels WholeNames(const std::vector<LineName>& names, const RowScale& scale) {
    Labels labels;
    for (const LineName& name : names)
        Add(labels.own, name.text, name.color, MiddleRow(name, scale));
    return labels;
}

Labels GroupedNames(const std::vector<LineName>& names, const RowScale& scale) {
    Labels labels = WholeNames(names, scale);
    for (std::size_t first = 0; first < names.size();) {
        const qsizetype length = PrefixLength(names[first].text);
        const QString prefix = names[first].text.left(length);
        const auto joins = [&](const LineName& name) {
            return PrefixLength(name.text) == length && name.text.startsWith(prefix);
        };
        std::size_t end = first + 1;
        while (end < names.size() && joins(names[end]))
            ++end;
        if (length > 0 && end - first > 1) {
            for (std::size_t i = first; i < end; ++i) {
                labels.own[i].text.remove(0, length);
                labels.own[i].column = static_cast<int>(i - first);
            }
            const double middle = (labels.own[first].row + labels.own[end - 1].row) / 2;
            const QRgb color = names[first].color;
            const bool same = std::all_of(names.begin() + static_cast<std::ptrdiff_t>(first),
                                          names.begin() + static_cast<std::ptrdiff_t>(end),
                                          [&](const LineName& name) { return name.color == color; });
            Add(labels.shared, prefix.trimmed(), same ? color : ChartText.rgb(), middle);
        }
        first = end;
    }
    return labels;
}

/// Whether labels, the lowest one first, do not touch each other when the number that they have in `column`
/// is taken modulo `columns`.
bool Fit(const std::vector<NameLabel>& labels, int columns, int lineHeight) {
    std::vector<double> tops(static_cast<std::size_t>(columns), HUGE_VAL);
    for (const NameLabel& label : labels) {
        double& top = tops[static_cast<std::size_t>(label.column % columns)];
        if (top - label.row < lineHeight)
            return false;
        top = label.row;
    }
    return true;
}

/// Fewest columns in which labels fit, or as many as are worth it.
int ColumnsFor(const std::vector<NameLabel>& labels, int lineHeight) {
    constexpr int most = 16;
    int columns = std::min(static_cast<int>(labels.size()), 1);
    while (columns < most && !Fit(labels, columns, lineHeight))
        ++columns;
    return columns;
}

/// Numbers the columns of labels; returns how many there are.
int Stagger(std::vector<NameLabel>& labels, int lineHeight) {
    int columns = ColumnsFor(labels, lineHeight);
    if (!Fit(labels, columns, lineHeight)) {
        // Groups lie so close that not each of them can start in the first column.
        for (std::size_t i = 0; i < labels.size(); ++i)
            labels[i].column = static_cast<int>(i);
        columns = ColumnsFor(labels, lineHeight);
    }
    for (NameLabel& label : labels)
        label.column %= columns;
    return columns;
}

/// Turns numbers of columns into their places from `left` on, as wide as their texts; returns where they end.
int PlaceColumns(std::vector<NameLabel>& labels, int columns, int left, int space,
                 const QFontMetrics& metrics) {
    std::vector<int> widths(static_cast<std::size_t>(columns));
    for (const NameLabel& label : labels) {
        int& width = widths[static_cast<std::size_t>(label.column)];
        width = std::max(width, metrics.horizontalAdvance(label.text));
    }
    std::vector<int> lefts;
    for (const int width : widths) {
        lefts.push_back(left);
        left += width + space;
    }
    for (NameLabel& label : labels) {
        label.width = widths[static_cast<std::size_t>(label.column)];
        label.column = lefts[static_cast<std::size_t>(label.column)];
    }
    return left;
}

/// Of a colour on a display, 0 to 1.
double Luminance(const QColor& color) {
    const auto linear = [](float part) { return std::pow(static_cast<double>(part), 2.2); };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

NameBlock ArrangeNames(std::vector<LineName> names, const RowScale& scale, const QFontMetrics& metrics,
                       int lineHeight, int mostWidth) {
    std::ranges::stable_sort(names, {}, &LineName::level);
    Labels labels = WholeNames(names, scale);
    if (Stagger(labels.own, lineHeight) > 1)
        labels = GroupedNames(names, scale);
    const int shared = Stagger(labels.shared, lineHeight);
    const int own = Stagger(labels.own, lineHeight);
    const int space = metrics.horizontalAdvance(QLatin1Char(' '));
    const auto place = [&] {
        const int left = PlaceColumns(labels.shared, shared, 0, space, metrics);
        return PlaceColumns(labels.own, own, left, space, metrics) - space;
    };
    Labels whole = labels;
    int width = place();
    if (width > mostWidth) {
        labels = std::move(whole);
        const int shortest = metrics.horizontalAdvance(QStringLiteral("00"));
        const int room = std::max(mostWidth / (shared + own) - space, shortest);
        for (std::vector<NameLabel>* part : {&labels.shared, &labels.own})
            for (NameLabel& label : *part)
                label.text = metrics.elidedText(label.text, Qt::ElideMiddle, room);
        width = place();
    }
    NameBlock block{std::move(labels.own), std::max(width, 0)};
    std::ranges::move(labels.shared, std::back_inserter(block.labels));
    return block;
}

QRgb ReadableOnChart(QRgb color) {
    constexpr double least = 0.2; // four times as bright as the ground, as contrast is usually measured
    QColor readable(color);
    for (int step = 1; Luminance(readable) < least; ++step)
        readable = Mixed(QColor(color), ChartText, 0.05 * step);
    return readable.rgb();
}

} // namespace tracelet
