#include "core/base/Convert.h"
#include "core/input/SampleConversion.h"
#include "core/plots/TimeBase.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/Handler.h"
#include "window/main/frmMain.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

std::int32_t ScansOf(std::int32_t dataCount, std::int32_t channels) {
    return CLng(Quotient(dataCount, channels));
}

std::int32_t SampleCount(std::int32_t channels, std::int32_t scans) {
    return CLng(static_cast<double>(channels) * scans);
}

} // namespace

bool frmMain::FAIStart() {
    const std::int32_t channels = ZelAI1->ScanChannelCount();
    for (int i = 0; i < ZelGraph1->PlotCount(); ++i)
        ZelGraph1->SetPlotVisible(i, i < channels);
    if (bFAICyclic) {
        ZelGraph1->SetXAxisMin(0.0);
        const CyclicWindow window = CyclicFastWindow(ZelAI1->SampleRate());
        ZelGraph1->SetXAxisMax(window.seconds);
        ZelGraph1->SetChartLength(window.chartLength);
        ShowDIVValue(window.seconds / 10.0);
    } else {
        ZelGraph1->SetChartLength(nAISampleCnt);
    }
    try {
        ZelAI1->StartBufferedAI(nAISampleCnt, bFAICyclic);
    } catch (const std::exception&) { // the control keeps the text for the start-failure message
        return false;
    }
    return true;
}

void frmMain::ZelAI1_OnFirstBufferChange(std::span<const std::int16_t> RawData,
                                         std::span<const float> AnalogData, std::int32_t dataCount) {
    QuietHandler([&] { HandleHalf(RawData, AnalogData, dataCount); });
}

void frmMain::ZelAI1_OnSecondBufferChange(std::span<const std::int16_t> RawData,
                                          std::span<const float> AnalogData, std::int32_t dataCount) {
    QuietHandler([&] {
        HandleHalf(RawData, AnalogData, dataCount);
        if (!bFAICyclic && isSystemRunning)
            BtnStart_Click();
    });
}

void frmMain::HandleHalf(std::span<const std::int16_t> RawData, std::span<const float> AnalogData,
                         std::int32_t dataCount) {
    const std::int32_t DataCntPerChan = ScansOf(dataCount, ZelAI1->ScanChannelCount());
    switch (ZelAI1->DataType()) {
    case AnalogValues:
        QuietHandler([&] { BufferChangeFunc(AnalogData, DataCntPerChan); });
        break;
    case RawCounts:
        QuietHandler([&] { BufferChangeFunc(RawData, DataCntPerChan); });
        break;
    default:
        MsgBox(this, u"Wrong Data Return Type"_s, u"OnFirstBufferChange"_s);
    }
    recorder.CountHalf(DataCntPerChan);
    SettleRecording();
}

void frmMain::BufferChangeFunc(std::span<const float> DataArray, std::int32_t DataCntPerChan) {
    const std::int32_t channels = ZelAI1->ScanChannelCount();
    const std::int32_t n =
        std::min(SampleCount(channels, DataCntPerChan), CLng(static_cast<double>(DataArray.size())));
    if (bAISaveToDisk)
        AppendSingles(ConvertAnalogData(DataArray, n), n);
    ZelGraph1->AppendSamples(1.0 / ZelAI1->SampleRate() * channels,
                             ZelGraph::PlotInterleaved(n / channels, channels, DataArray));
}

void frmMain::BufferChangeFunc(std::span<const std::int16_t> DataArray, std::int32_t DataCntPerChan) {
    const std::int32_t channels = ZelAI1->ScanChannelCount();
    const std::int32_t n =
        std::min(SampleCount(channels, DataCntPerChan), CLng(static_cast<double>(DataArray.size())));
    ConvertRawData(DataArray, rawBuffer, n, ZelAI1->BoardInfo());
    if (bAISaveToDisk)
        AppendLongs(rawBuffer, n);
    ZelGraph1->AppendSamples(
        1.0 / ZelAI1->SampleRate() * channels,
        ZelGraph::PlotInterleaved(n / channels, channels, std::span<const std::int32_t>(rawBuffer)));
}

void frmMain::AppendSingles(std::span<const float> Buffer, std::int32_t Count) {
    recorder.PutHalf(Buffer.first(static_cast<std::size_t>(Count)), Count / ZelAI1->ScanChannelCount());
}

void frmMain::AppendLongs(std::span<const std::int32_t> Buffer, std::int32_t Count) {
    recorder.PutHalf(Buffer.first(static_cast<std::size_t>(Count)), Count / ZelAI1->ScanChannelCount());
}

void frmMain::ZelAI1_OnOverrunNotice() {
    recorder.CountOverrun();
    NoteLosses();
}

void frmMain::ZelAI1_OnInputFailed() {
    if (!isSystemRunning)
        return;
    const QString reason = ZelAI1->ErrorText();
    QuietHandler([this] { BtnStart_Click(); });
    MsgBox(this, reason, u"BtnStart"_s);
}

} // namespace tracelet
