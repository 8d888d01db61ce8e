#include "core/boards/BoardFamily.h"
#include "window/chart/ZelGraph.h"
#include "window/main/frmMain.h"

#include <QTreeWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

const QStringList ThermoUnits = {u"°C"_s, u"°F"_s, u"°R"_s, u"K"_s}; // by AIThermoScale

int AxisOf(PlotKind kind) {
    switch (kind) {
    case PlotKind::Temperature:
        return TemperatureAxis;
    case PlotKind::Digital:
        return DigitalAxis;
    case PlotKind::Voltage:
        break;
    }
    return VoltageAxis;
}

PlotAttributes GraphAttributes(const PlotLook& look) {
    return {QString::fromStdString(look.name), look.color, look.lineStyle, AxisOf(look.kind), look.level};
}

PlotLook LookFrom(PlotKind kind, bool history, std::int32_t index, const Table<std::string>& names,
                  const Table<std::uint32_t>& colors, const Table<std::int32_t>& styles, double level = 0.0) {
    return {kind, history, index, names[index], colors[index], styles[index], level};
}

} // namespace

void frmMain::SetAIColors() {
    M1.AIColorTable = DefaultColors();
}

void frmMain::InitPlotAttributes(bool isAI) {
    if (!isAI) {
        FillDigitalDefaults({M1.DIPlotLineStyle, M1.DIPlotColor, M1.DIPlotName}, ZelDIO1->MaxPortCount());
        return;
    }
    const std::int32_t channels = ZelAI1->MaxChannelCount();
    FillAnalogDefaults({M1.AIPlotLineStyle, M1.AIPlotColor, M1.AIPlotName}, channels, M1.AIColorTable);
    M1.AIChanConnection.Resize(std::int64_t{channels} + 1);
    for (std::int32_t channel = 0; channel < channels; ++channel) {
        ZelAI1->SetChannel(channel);
        M1.AIChanConnection[channel] = ZelAI1->SignalConnection();
    }
}

std::vector<PlotLook> frmMain::LiveLooks() const {
    std::vector<PlotLook> looks;
    for (std::int32_t position = 0; position < ZelAI1->ScanChannelCount(); ++position) {
        const std::int32_t channel = ScannedChannel(position);
        const PlotKind kind = M1.AIChanIsThermo[channel] ? PlotKind::Temperature : PlotKind::Voltage;
        looks.push_back(LookFrom(kind, false, channel, M1.AIPlotName, M1.AIPlotColor, M1.AIPlotLineStyle));
    }
    if (bAIEnabled && !M1.SoftMode)
        return looks;
    for (std::int32_t line : SelectedLines(M1.DIPortMask, nDIPortStart, nDIPortCount)) {
        if (line < M1.DIPlotName.Count())
            looks.push_back(LookFrom(PlotKind::Digital, false, line, M1.DIPlotName, M1.DIPlotColor,
                                     M1.DIPlotLineStyle, LowLevel(line)));
    }
    return looks;
}

std::vector<PlotLook> frmMain::HistoryLooks() const {
    std::vector<PlotLook> looks;
    for (std::int32_t i = 0; bHisAI && i < nHisAIChanCount; ++i) {
        const bool thermo = i < M1.HisAIChanIsThermo.Count() && M1.HisAIChanIsThermo[i] != 0;
        looks.push_back(LookFrom(thermo ? PlotKind::Temperature : PlotKind::Voltage, true, i,
                                 M1.HisAIPlotName, M1.HisAIPlotColor, M1.HisAIPlotLineStyle));
    }
    for (std::int32_t i = 0; bHisDI && i < nHisDIChanCount; ++i) {
        const auto position = static_cast<std::size_t>(i);
        const std::int32_t line = position < recording.lines.size() ? recording.lines[position] : i;
        looks.push_back(LookFrom(PlotKind::Digital, true, i, M1.HisDIPlotName, M1.HisDIPlotColor,
                                 M1.HisDIPlotLineStyle, LowLevel(line)));
    }
    return looks;
}

void frmMain::BuildPlots(bool HistoryView, bool RemoveOld) {
    std::vector<PlotLook> looks = HistoryView ? HistoryLooks() : LiveLooks();
    const bool keepsSamples = (!RemoveOld || isSystemRunning || isHisPlaying) &&
                              std::ranges::equal(looks, shownPlots, &PlotLook::ShowsSame);
    if (!keepsSamples)
        ZelGraph1->RemovePlots();
    for (int i = 0; i < static_cast<int>(looks.size()); ++i) {
        PlotAttributes attributes = GraphAttributes(looks[static_cast<std::size_t>(i)]);
        attributes.unit = UnitOf(looks[static_cast<std::size_t>(i)]);
        if (keepsSamples)
            ZelGraph1->SetPlot(i, attributes);
        else
            ZelGraph1->AddPlot(attributes);
    }
    shownPlots = std::move(looks);
    for (const int axis : {VoltageAxis, TemperatureAxis})
        ZelGraph1->SetAxisUnit(axis, UnitsOn(axis));
    UpdatePlotListView();
    ShowNextStep();
}

// What a recording's temperatures were measured in, it does not tell.
QString frmMain::UnitOf(const PlotLook& look) const {
    if (look.kind == PlotKind::Digital)
        return {};
    QString counts = u"counts"_s;
    if (look.history) {
        if (!bHisAISoft && !bHisAIAnalog)
            return counts;
        return look.kind == PlotKind::Temperature ? QString() : u"V"_s;
    }
    if (!M1.SoftMode && ZelAI1->DataType() == RawCounts)
        return counts;
    if (M1.SoftMode && look.kind == PlotKind::Temperature)
        return ThermoUnits.value(M1.AIThermoScale[look.index]);
    return QString::fromLatin1(tracelet::UnitOf(ZelAI1->RangeOf(look.index)));
}

QString frmMain::UnitsOn(int axis) const {
    QStringList units;
    for (const PlotLook& look : shownPlots) {
        if (AxisOf(look.kind) == axis)
            units.append(UnitOf(look));
    }
    units.removeAll(QString());
    units.removeDuplicates();
    return units.join(u", "_s);
}

void frmMain::BringBackAxes() {
    const AxisRange range = bHistoryMode ? DigitalAxisRange(nHisDIPortStart, nHisDIPortCount)
                                         : DigitalAxisRange(nDIPortStart, nDIPortCount);
    if (range.minimum < range.maximum)
        ZelGraph1->AxisSetRange(DigitalAxis, range.minimum, range.maximum);
    ZelGraph1->SetAxisAutoScale(TemperatureAxis, true);
}

void frmMain::UpdatePlotListView() {
    ListView1->clear();
    int first = 0;
    int last = 0;
    if (bHistoryMode) {
        last = (bHisAI ? nHisAIChanCount : 0) + (bHisDI ? nHisDIChanCount : 0);
    } else {
        const int channels = ZelAI1->ScanChannelCount();
        first = bAIEnabled ? 0 : channels;
        last = bAIEnabled ? channels : 0;
        if (bDIEnabled)
            last = channels + nDIChanCount;
    }
    for (int k = first; k < std::min(last, ZelGraph1->PlotCount()); ++k) {
        const PlotAttributes& plot = ZelGraph1->Plot(k);
        auto* row = new QTreeWidgetItem(ListView1, {plot.name});
        const std::string_view glyph = LineStyleGlyph(plot.lineStyle);
        if (!glyph.empty())
            row->setText(1, QString::fromLatin1(glyph.data(), static_cast<qsizetype>(glyph.size())));
        row->setForeground(1, ResolvedColor(plot.color));
    }
}

} // namespace tracelet
