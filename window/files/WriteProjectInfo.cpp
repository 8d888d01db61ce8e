#include "core/base/Convert.h"
#include "core/recordings/ProjectInfo.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/MsgBox.h"
#include "window/main/frmMain.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

PlotRecord RecordOf(const PlotAttributes& plot) {
    return {static_cast<std::int32_t>(plot.color), plot.lineStyle, plot.name.toStdString()};
}

PlotRecord RecordOf(std::int32_t index, const Table<std::uint32_t>& colors, const Table<std::int32_t>& styles,
                    const Table<std::string>& names) {
    if (index >= names.Count())
        return {};
    return {static_cast<std::int32_t>(colors[index]), styles[index], names[index]};
}

} // namespace

void frmMain::WriteProjectInfo() {
    const ProjectInfo info = RecordingInfo();
    recorder.Begin(FactsOfSession(info));
    if (!recorder.RecreateFastFile())
        MsgBox(this, u"CreateFile Fails "_s, u"WriteProjectInfo"_s);
    recorder.PutHeader(info);
    ShowRecordingFaults();
}

ProjectInfo frmMain::RecordingInfo() const {
    ProjectInfo info;
    info.bHisAI = bAIEnabled && bAISaveToDisk;
    info.bHisDI = bDIEnabled && bDISaveToDisk;
    info.bHisAISoft = M1.SoftMode;
    info.bHisAIAnalog = M1.SoftMode || ZelAI1->DataType() == AnalogValues;
    info.nHisAIChanCount = ZelAI1->ScanChannelCount();
    info.nHisDIChanCount = nDIChanCount;
    if (info.bHisAI)
        AddAnalogSections(info);
    if (info.bHisDI)
        AddDigitalSections(info);
    return info;
}

void frmMain::AddAnalogSections(ProjectInfo& info) const {
    for (int i = 0; i < info.nHisAIChanCount; ++i) {
        info.aiPlots.push_back(i < ZelGraph1->PlotCount() ? RecordOf(ZelGraph1->Plot(i))
                                                          : RecordOf(ScannedChannel(i), M1.AIPlotColor,
                                                                     M1.AIPlotLineStyle, M1.AIPlotName));
    }
    for (std::int32_t channel = 0; channel < ZelAI1->MaxChannelCount(); ++channel)
        info.HisAIChanIsThermo.push_back(M1.AIChanIsThermo[channel] ? 255 : 0);
}

void frmMain::AddDigitalSections(ProjectInfo& info) const {
    // A line that is not on the graph (fast input was accepted last) is described by its table entry.
    const std::vector<std::int32_t> lines = SelectedLines(M1.DIPortMask, nDIPortStart, nDIPortCount);
    for (int k = 0; k < info.nHisDIChanCount; ++k) {
        const int plot = info.nHisAIChanCount + k;
        const std::int32_t line = k < static_cast<int>(lines.size())
                                      ? lines[static_cast<std::size_t>(k)]
                                      : CLng(static_cast<double>(M1.DIPlotName.Count()));
        info.diPlots.push_back(plot < ZelGraph1->PlotCount()
                                   ? RecordOf(ZelGraph1->Plot(plot))
                                   : RecordOf(line, M1.DIPlotColor, M1.DIPlotLineStyle, M1.DIPlotName));
    }
    for (std::int32_t port = 0; port < nDIMaxPortCount; ++port)
        info.HisDIPortMask.push_back(port < M1.DIPortMask.Count() ? M1.DIPortMask[port] : std::uint8_t{0});
}

void frmMain::WriteStopRecord(std::uint32_t elapsedMs) {
    recorder.Complete(M1.SoftMode
                          ? PolledScanInterval(elapsedMs, ScanCount)
                          : PacedScanInterval(ZelAI1->SampleRate(), ZelAI1->ScanChannelCount(), ScanCount));
    ShowRecordingFaults();
    NoteLosses(); // what the disk did not take to the end
}

} // namespace tracelet
