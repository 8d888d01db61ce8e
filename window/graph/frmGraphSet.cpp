#include "window/graph/frmGraphSet.h"

#include "core/base/NumberText.h"
#include "window/chart/ZelGraph.h"
#include "window/graph/RangeBox.h"
#include "window/ground/Handler.h"
#include "window/main/frmMain.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QListWidget>
#include <QPushButton>

#include <optional>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr double RepairSpan = 10.0;

QString Text(double value) {
    return QString::fromStdString(NumberText(value));
}

struct Ends {
    double minimum;
    double maximum;
};

// The ends as typed; nothing when either is no number.
template <typename Group>
std::optional<Ends> EndsOf(const Group& group) {
    try {
        return Ends{group.minimum->Number(), group.maximum->Number()};
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

std::uint32_t RawColor(const QColor& color) {
    return static_cast<std::uint32_t>(color.blue() << 16 | color.green() << 8 | color.red());
}

} // namespace

bool frmGraphSet::IsRunning() const {
    return main.isSystemRunning || main.isHisPlaying;
}

void frmGraphSet::LoadPlots() {
    const ZelGraph& graph = *main.ZelGraph1;
    PlotColors.Resize(graph.PlotCount());
    PlotLineStyles.Resize(graph.PlotCount());
    for (int i = 0; i < graph.PlotCount(); ++i) {
        const PlotAttributes& plot = graph.Plot(i);
        lstPlots->addItem(plot.name);
        PlotLineStyles[i] = plot.lineStyle;
        PlotColors[i] = plot.color;
    }
    lstPlots->setCurrentRow(0);
}

void frmGraphSet::LoadAxes() {
    x.automatic->setChecked(main.ZelGraph1->AxisAutoScale(XAxis));
    ChkXAutoS_Click();
    y.automatic->setChecked(main.ZelGraph1->AxisAutoScale(VoltageAxis));
    ChkYAutoS_Click();
    x.applies = y.applies = !IsRunning();
}

int frmGraphSet::SelectedPlot() const {
    const QModelIndexList selected = lstPlots->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.first().row();
}

void frmGraphSet::LstPlots_Click() {
    const int i = SelectedPlot();
    if (i < 0)
        return;
    PaintColor(PlotColors[i]);
    if (PlotLineStyles[i] >= 0 && PlotLineStyles[i] < CmbLineStyle->count())
        CmbLineStyle->setCurrentIndex(PlotLineStyles[i]);
}

void frmGraphSet::CmbLineStyle_Click() {
    const int i = SelectedPlot();
    if (i >= 0)
        PlotLineStyles[i] = CmbLineStyle->currentIndex();
}

void frmGraphSet::BtnColor_Click() {
    const int i = SelectedPlot();
    if (i < 0)
        return;
    QColorDialog chooser(ResolvedColor(PlotColors[i]), this);
    chooser.setObjectName(u"CommonDialog1"_s);
    if (chooser.exec() == QDialog::Accepted)
        PlotColors[i] = RawColor(chooser.selectedColor());
    PaintColor(PlotColors[i]);
}

void frmGraphSet::PaintColor(std::uint32_t color) {
    BtnColor->setStyleSheet(
        u"background-color: %1; border: 1px solid palette(mid); border-radius: 2px;"_s.arg(
            ResolvedColor(color).name()));
}

void frmGraphSet::FillRange(const AxisGroup& group, double minimum, double maximum) {
    group.minimum->Show(minimum, maximum - minimum);
    group.maximum->Show(maximum, maximum - minimum);
}

void frmGraphSet::ChkXAutoS_Click() {
    const double minimum = main.ZelGraph1->XAxisMin();
    const double maximum = main.ZelGraph1->XAxisMax();
    if (x.automatic->isChecked()) {
        x.minimum->setEnabled(false);
        x.maximum->setEnabled(false);
    } else if (!IsRunning()) {
        x.minimum->setEnabled(true);
    }
    if (IsRunning())
        FillRange(x, 0.0, maximum - minimum);
    else
        FillRange(x, minimum, maximum);
    x.maximum->setEnabled(true); // a span can always be typed
}

void frmGraphSet::ChkYAutoS_Click() {
    y.minimum->setEnabled(!y.automatic->isChecked());
    y.maximum->setEnabled(!y.automatic->isChecked());
    FillRange(y, main.ZelGraph1->AxisMin(VoltageAxis), main.ZelGraph1->AxisMax(VoltageAxis));
}

bool frmGraphSet::MaximumLeft(const AxisGroup& group) {
    const std::optional<Ends> ends = EndsOf(group);
    if (!ends || ends->minimum <= ends->maximum)
        return true;
    MsgBox(this, group.fault);
    group.maximum->setText(Text(ends->minimum + RepairSpan));
    return false;
}

bool frmGraphSet::MinimumLeft(const AxisGroup& group) {
    const std::optional<Ends> ends = EndsOf(group);
    if (!ends || ends->maximum >= ends->minimum)
        return true;
    MsgBox(this, group.fault);
    group.minimum->setText(Text(ends->maximum - RepairSpan));
    return false;
}

void frmGraphSet::BtnApply_Click() {
    try {
        ApplyAxes();
        if (main.bHistoryMode)
            StoreHistoryAttributes();
        else
            StoreLiveAttributes();
        accept();
    } catch (const std::exception&) {
        MsgBox(this, u"Graph Set Apply Error"_s);
    }
}

void frmGraphSet::ApplyAxes() {
    if (x.applies)
        ApplyTime();
    if (y.applies)
        ApplyValues();
    if (!x.applies)
        return;
    main.ShowDIVValue((main.ZelGraph1->XAxisMax() - main.ZelGraph1->XAxisMin()) / 10);
    main.AdjustXAxisAndChartLength(true);
}

void frmGraphSet::ApplyTime() {
    ZelGraph& graph = *main.ZelGraph1;
    graph.SetAxisAutoScale(XAxis, x.automatic->isChecked());
    if (!x.automatic->isChecked())
        graph.AxisSetRange(XAxis, x.minimum->Number(), x.maximum->Number());
}

void frmGraphSet::ApplyValues() {
    ZelGraph& graph = *main.ZelGraph1;
    graph.SetAxisAutoScale(VoltageAxis, y.automatic->isChecked());
    if (y.automatic->isChecked()) {
        main.BringBackAxes();
        return;
    }
    graph.SetAxisMin(VoltageAxis, y.minimum->Number());
    graph.SetAxisMax(VoltageAxis, y.maximum->Number());
}

void frmGraphSet::StoreLiveAttributes() {
    M1& tables = main.M1;
    const std::int32_t channels = main.ZelAI1->ScanChannelCount();
    for (std::int32_t i = 0; i < channels; ++i) {
        const std::int32_t channel = main.ScannedChannel(i);
        tables.AIPlotColor[channel] = PlotColors[i];
        tables.AIPlotLineStyle[channel] = PlotLineStyles[i];
    }
    std::int64_t plot = channels;
    for (const std::int32_t line : SelectedLines(tables.DIPortMask, 0, main.ZelDIO1->MaxPortCount())) {
        if (plot >= PlotColors.Count()) // fast input shows no lines
            return;
        tables.DIPlotColor[line] = PlotColors[plot];
        tables.DIPlotLineStyle[line] = PlotLineStyles[plot];
        ++plot;
    }
}

void frmGraphSet::StoreHistoryAttributes() {
    M1& tables = main.M1;
    for (std::int32_t i = 0; i < main.nHisAIChanCount; ++i) {
        tables.HisAIPlotColor[i] = PlotColors[i];
        tables.HisAIPlotLineStyle[i] = PlotLineStyles[i];
    }
    for (std::int32_t i = 0; i < main.nHisDIChanCount; ++i) {
        tables.HisDIPlotColor[i] = PlotColors[std::int64_t{main.nHisAIChanCount} + i];
        tables.HisDIPlotLineStyle[i] = PlotLineStyles[std::int64_t{main.nHisAIChanCount} + i];
    }
}

} // namespace tracelet
