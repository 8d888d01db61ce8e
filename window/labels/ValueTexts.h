#pragma once

#include "core/chart/ValueText.h"
#include "core/samples/SampleStore.h"
#include "window/labels/ValuePanel.h"

#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace tracelet {

/// A plot as texts of its values know it.
struct LabelledPlot {
    int plot = 0; ///< of the store
    QString name;
    QString unit;
    QRgb color = 0;
    bool isLine = false; ///< a digital line, whose samples are `level` or 1 above it
    double level = 0;

    /// In which five digits show the largest of its held samples.
    [[nodiscard]] ValueForm Form(const SampleStore& store) const;
};

/// Times of the cursors A and B in seconds, as far as they stand.
using CursorTimes = std::array<std::optional<double>, 2>;

/// A row a plot: its name, and its sample nearest to `time`, the latest one without a time.
[[nodiscard]] std::vector<ValuePanel::Row>
ReadOutRows(const SampleStore& store, const std::vector<LabelledPlot>& plots, std::optional<double> time);

/// Where the cursors stand and how far apart; `resolution` is in seconds.
[[nodiscard]] QString CursorHeading(const CursorTimes& times, double resolution);
/// What lies at and between the cursors: a row a plot, captions above those of a kind.
[[nodiscard]] std::vector<ValuePanel::Row> CursorRows(const SampleStore& store,
                                                      const std::vector<LabelledPlot>& plots,
                                                      const CursorTimes& times, QRgb captionColor);
/// Number of those rows.
[[nodiscard]] int CursorRowCount(const std::vector<LabelledPlot>& plots);
/// The same for spreadsheets, with all digits: a line of captions first, cells with tabs between them.
[[nodiscard]] QString CursorText(const SampleStore& store, const std::vector<LabelledPlot>& plots,
                                 const CursorTimes& times);

} // namespace tracelet
