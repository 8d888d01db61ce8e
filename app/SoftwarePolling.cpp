#include "app/Handler.h"
#include "app/frmMain.h"
#include "devices/display/ZelGraph.h"
#include "devices/drivers/BoardFamily.h"
#include "graph/TimeBase.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr double ThermoLimit = 0.005; // volts, either side of 0

// At 1 ms a counter of 32 bits is full after 25 days; it then stays where it is.
std::int32_t NextOrHighest(std::int32_t count) {
    return count < std::numeric_limits<std::int32_t>::max() ? count + 1 : count;
}

// On this family's differential inputs each channel takes two of the thermocouple control's numbers.
bool DoublesThermoChannels(const ZelAI& input) {
    return DoublesThermoChannels(input.BoardInfo()) && input.SignalConnection() == Differential;
}

} // namespace

bool frmMain::SoftPoolStart() {
    try {
        SetPolledChart();
        if (bAIEnabled)
            StartPolledAnalog();
        if (bDIEnabled)
            StartPolledDigital();
        StartPollTimer();
        return true;
    } catch (const std::exception&) { // the caller shows the start-failure message
        BtnStart_Click();
        return false;
    }
}

void frmMain::SetPolledChart() {
    if (bDIEnabled) {
        const AxisRange range = DigitalAxisRange(nDIPortStart, nDIPortCount);
        ZelGraph1->SetAxisVisible(DigitalAxis, true);
        ZelGraph1->SetAxisMin(DigitalAxis, range.minimum);
        ZelGraph1->SetAxisMax(DigitalAxis, range.maximum);
    }
    ShowDIVValue(10.0 / 10.0);
    ZelGraph1->SetXAxisMin(0.0);
    ZelGraph1->SetXAxisMax(10.0);
    ZelGraph1->SetChartLength(
        PolledStartChartLength(ZelGraph1->XAxisMin(), ZelGraph1->XAxisMax(), nTimerInterval));
}

void frmMain::StartPolledAnalog() {
    if (ZelAI1->DeviceNumber() < 0)
        throw RunTimeError("No AI device is selected");
    if (ZelThermo1->DeviceNumber() < 0)
        return;
    for (std::int32_t position = ZelAI1->ScanChannelCount() - 1; position >= 0; --position)
        SelectThermoLimits(ScannedChannel(position));
}

void frmMain::StartPolledDigital() {
    if (ZelDIO1->DeviceNumber() < 0)
        throw RunTimeError("No DI device is selected");
    try {
        Files.Put(DIFileNum, nDIPortStart);
        Files.Put(DIFileNum, nDIPortCount);
    } catch (const RunTimeError& error) {
        StopRecording(isDIRecordingBroken, CkDISave2Disk, error);
    }
}

void frmMain::StartPollTimer() {
    if (ZelHiResTimerCtl1->TimerExists(PollTimer)) {
        ZelHiResTimerCtl1->SetTimerInterval(PollTimer, nTimerInterval);
        ZelHiResTimerCtl1->SetTimerEnabled(PollTimer, true);
    } else {
        ZelHiResTimerCtl1->AddTimer(PollTimer, nTimerInterval, true);
    }
}

void frmMain::SelectThermoLimits(std::int32_t channel) {
    if (!M1.AIChanIsThermo[channel])
        return;
    const auto limit = [this](std::int32_t selected) {
        ZelThermo1->SetInputLimits(selected, -ThermoLimit, ThermoLimit);
        ZelThermo1->SetChannel(selected);
    };
    if (!IsUnpairedFamily(ZelAI1->BoardInfo()))
        limit(channel);
    if (DoublesThermoChannels(*ZelAI1))
        limit(ThermoChannel(channel));
}

std::int32_t frmMain::ThermoChannel(std::int32_t physical) const {
    return DoublesThermoChannels(*ZelAI1) ? 2 * physical : physical;
}

void frmMain::ZelHiResTimerCtl1_OnTimer(const QString& name) {
    if (name == PollTimer)
        QuietHandler([this] { SoftPoolTimerPorc(); });
    else if (name == PlayTimer)
        QuietHandler([this] { HistoryTick(); });
}

void frmMain::SoftPoolTimerPorc() {
    TickCount = NextOrHighest(TickCount);
    if (bAIEnabled)
        SoftAIScan();
    if (bDIEnabled)
        SoftDIScan();
    ScanCount = NextOrHighest(ScanCount);
}

// Scans are mostly of voltages alone; telling so costs less than working out their channels.
bool frmMain::AnyThermo() const {
    for (std::int64_t channel = 0; channel < M1.AIChanIsThermo.Count(); ++channel) {
        if (M1.AIChanIsThermo[channel])
            return true;
    }
    return false;
}

bool frmMain::AnyScannedThermo(std::int32_t count) const {
    for (std::int32_t position = 0; position < count; ++position) {
        if (M1.AIChanIsThermo[ScannedChannel(position)])
            return true;
    }
    return false;
}

void frmMain::SoftAIScan() {
    const std::int32_t n = ZelAI1->ScanChannelCount();
    if (IsUnpairedFamily(ZelAI1->BoardInfo()) && !AnyScannedThermo(n))
        scanValues.assign(static_cast<std::size_t>(n), 0.0);
    else
        scanValues = ZelAI1->ReadChannels(true);
    if (AnyThermo())
        ReadTemperatures(n);

    const auto time = static_cast<float>((surroundings.ticks() - StartTicks) / 1000.0);
    scanRow.assign(scanValues.size(), 0.0F);
    for (std::size_t i = 0; i < scanValues.size(); ++i)
        scanRow[i] = static_cast<float>(scanValues[i]);
    ZelGraph1->AppendScan(time, scanRow);
    if (bAISaveToDisk)
        RecordScan();
}

void frmMain::ReadTemperatures(std::int32_t count) {
    for (std::int32_t position = 0; position < count; ++position) {
        const std::int32_t p = ScannedChannel(position);
        if (!M1.AIChanIsThermo[p])
            continue;
        ZelThermo1->SetChannel(ThermoChannel(p));
        ZelThermo1->SetThermoType(M1.AIThermoType[p]);
        ZelThermo1->SetThermoScale(M1.AIThermoScale[p]);
        ZelThermo1->SetExpChannel(M1.AIThermoExpChan[p]);
        scanValues.at(static_cast<std::size_t>(position)) = ZelThermo1->Temperature();
    }
}

void frmMain::RecordScan() {
    if (isAIRecordingBroken)
        return;
    try {
        Files.PutBytes(AIFileNum, std::as_bytes(std::span(scanRow)));
        SoftAIWritten = true;
    } catch (const RunTimeError& error) {
        StopRecording(isAIRecordingBroken, CkAISave2Disk, error);
    }
}

void frmMain::SoftDIScan() {
    if (!ZelDIO1->ReadPorts(nDIPortStart, nDIPortCount, portStates)) {
        MsgBox(this, ZelDIO1->ErrorText(), u"SoftPoolTimerProc"_s);
        if (isSystemRunning)
            BtnStart_Click();
        return;
    }
    const double time = (surroundings.ticks() - StartTicks) / 1000.0;
    int plot = ZelAI1->ScanChannelCount();
    for (const std::int32_t index : SelectedLines(M1.DIPortMask, nDIPortStart, nDIPortCount)) {
        if (plot < ZelGraph1->PlotCount())
            ZelGraph1->AddPoint(plot++, time, LineLevel(index, portStates, nDIPortStart));
    }
    if (bDISaveToDisk)
        RecordPorts();
}

void frmMain::RecordPorts() {
    if (isDIRecordingBroken)
        return;
    try {
        Files.PutBytes(DIFileNum, std::as_bytes(std::span(portStates)));
        DIWritten = true;
    } catch (const RunTimeError& error) {
        StopRecording(isDIRecordingBroken, CkDISave2Disk, error);
    }
}

} // namespace tracelet
