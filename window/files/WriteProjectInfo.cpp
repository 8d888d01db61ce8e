#include "core/base/Convert.h"
#include "core/files/FileOperations.h"
#include "core/recordings/ProjectInfo.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/Handler.h"
#include "window/main/frmMain.h"

#include <QPushButton>

#include <algorithm>
#include <utility>

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
    RewindWorkFiles();
    RecreateFastFile();
    unwrittenStopRecord.clear();
    try {
        Files.PutBytes(ProjectFileNum, ProjectHeader(RecordingInfo()));
    } catch (const RunTimeError& error) {
        if (bAIEnabled && bAISaveToDisk)
            StopRecording(isAIRecordingBroken, CkAISave2Disk, error);
        if (bDIEnabled && bDISaveToDisk)
            StopRecording(isDIRecordingBroken, CkDISave2Disk, error);
    }
}

std::optional<frmMain::LastRecording> frmMain::SetRecordingAside() {
    if (!BtnSaveAs->isEnabled()) // there is nothing that could be saved
        return std::nullopt;
    LastRecording last{.files = {szProjectFileName},
                       .ScanCount = ScanCount,
                       .SoftAIWritten = SoftAIWritten,
                       .FAIWritten = FAIWritten,
                       .DIWritten = DIWritten,
                       .isProjectOpen = Files.IsOpen(ProjectFileNum),
                       .unwrittenStopRecord = unwrittenStopRecord};
    if (SoftAIWritten)
        last.files.push_back(szAIFileName);
    if (FAIWritten)
        last.files.push_back(szFAIFileName);
    if (DIWritten)
        last.files.push_back(szDIFileName);
    return SetAside(last.files) ? std::optional(std::move(last)) : std::nullopt;
}

void frmMain::PutRecordingBack(LastRecording last) {
    if (last.FAIWritten)
        FAIFileHandle.Close();
    for (const int number : {ProjectFileNum, AIFileNum, DIFileNum})
        Files.Close(number);
    PutBack(last.files);
    QuietHandler([&] { Files.Open(AIFileNum, szAIFileName); });
    QuietHandler([&] { Files.Open(DIFileNum, szDIFileName); });
    if (last.isProjectOpen)
        QuietHandler([&] { Files.Open(ProjectFileNum, szProjectFileName); });
    ScanCount = last.ScanCount;
    SoftAIWritten = last.SoftAIWritten;
    FAIWritten = last.FAIWritten;
    DIWritten = last.DIWritten;
    unwrittenStopRecord = std::move(last.unwrittenStopRecord);
    BtnSaveAs->setEnabled(true);
}

void frmMain::RewindWorkFiles() {
    const auto rewind = [this](int number, const std::string& path) {
        Files.Close(number);
        QuietHandler([&] { // a file that stays closed shows when something is written to it
            Files.OpenForOutput(number, path);
            Files.Close(number);
            Files.Open(number, path);
        });
    };
    rewind(ProjectFileNum, szProjectFileName);
    rewind(AIFileNum, szAIFileName);
    rewind(DIFileNum, szDIFileName);
}

void frmMain::RecreateFastFile() {
    FAIFileHandle.Close();
    DeleteFile(szFAIFileName);
    try {
        FAIFileHandle = SystemFile(szFAIFileName, Disposition::OpenAlways);
    } catch (const RunTimeError&) {
        MsgBox(this, u"CreateFile Fails "_s, u"WriteProjectInfo"_s);
    }
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
    double interval = 0.0;
    if (ScanCount != 0 && !M1.SoftMode)
        interval = Quotient(1.0, ZelAI1->SampleRate() / ZelAI1->ScanChannelCount());
    else if (ScanCount != 0)
        interval = static_cast<double>(elapsedMs) / ScanCount / 1000.0;
    const std::vector<std::byte> record = StopRecord(ScanCount, interval);
    try {
        Files.PutBytes(ProjectFileNum, record);
    } catch (const RunTimeError&) {
        unwrittenStopRecord = record;
    }
}

} // namespace tracelet
