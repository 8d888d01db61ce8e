#include "core/base/Convert.h"
#include "core/boards/BoardFamily.h"
#include "core/input/SampleConversion.h"
#include "core/plots/TimeBase.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"

#include <QScopeGuard>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr double ThermoLimit = 0.005; // volts, either side of 0

constexpr std::chrono::milliseconds Patience{20}; // how long a tick holds the window up for a board
constexpr std::chrono::milliseconds LongestAnswer{2000};
constexpr const char* BoardIsSilent = "The board does not answer";

// On this family's differential inputs each channel takes two of the thermocouple control's numbers.
bool DoublesThermoChannels(const ZelAI& input) {
    return DoublesThermoChannels(input.BoardInfo()) && input.SignalConnection() == Differential;
}

} // namespace

bool frmMain::SoftPoolStart() {
    pollPlan = {};
    pollBoards = {};
    try {
        SetPolledChart();
        if (bAIEnabled)
            StartPolledAnalog();
        if (bDIEnabled)
            StartPolledDigital();
        StartPollReader();
        StartPollTimer();
        return true;
    } catch (const std::exception& error) { // the caller shows the start-failure message
        pollStartFault = QString::fromUtf8(error.what());
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
    ZelGraph1->SetAxisAutoScale(TemperatureAxis, true);
    ShowDIVValue(10.0 / 10.0);
    ZelGraph1->SetXAxisMin(0.0);
    ZelGraph1->SetXAxisMax(10.0);
    ZelGraph1->SetChartLength(
        PolledStartChartLength(ZelGraph1->XAxisMin(), ZelGraph1->XAxisMax(), nTimerInterval));
}

void frmMain::StartPolledAnalog() {
    if (ZelAI1->DeviceNumber() < 0)
        throw RunTimeError("No AI device is selected");
    if (ZelThermo1->DeviceNumber() >= 0) {
        for (std::int32_t position = ZelAI1->ScanChannelCount() - 1; position >= 0; --position)
            SelectThermoLimits(ScannedChannel(position));
    }
    PlanAnalogPolling();
}

void frmMain::StartPolledDigital() {
    if (ZelDIO1->DeviceNumber() < 0)
        throw RunTimeError("No DI device is selected");
    PlanDigitalPolling();
    recorder.PutPortHeader(nDIPortStart, nDIPortCount);
    ShowRecordingFaults();
}

// Raises for a scan that goes beyond the board's channels.
void frmMain::PlanAnalogPolling() {
    PlanAnalog(pollPlan, M1,
               {ChannelNumbering(), ZelAI1->ScanStartChannel(), ZelAI1->ScanChannelCount(),
                DoublesThermoChannels(*ZelAI1)});
    if (pollPlan.readsScan)
        pollPlan.channels = ZelAI1->ScanSetup();
    if (ZelThermo1->DeviceNumber() >= 0) {
        for (PolledThermocouple& couple : pollPlan.thermocouples)
            couple.channel = ZelThermo1->SetupOf(couple.channel.channel);
    }
    pollBoards.analog = ZelAI1->Board();
    pollBoards.thermocouple = ZelThermo1->Board();
}

void frmMain::PlanDigitalPolling() {
    PlanDigital(pollPlan, M1.DIPortMask, nDIPortStart, nDIPortCount);
    pollBoards.digital = ZelDIO1->Board();
}

void frmMain::StartPollReader() {
    if (pollReader && pollReader->IsReading(pollBoards)) // since the session before
        throw RunTimeError(BoardIsSilent);
    pollReader.reset();
    if (MayBlock(pollPlan, pollBoards))
        pollReader = std::make_unique<PollReader>(pollPlan, pollBoards, [this] {
            QMetaObject::invokeMethod(
                this, [this] { QuietHandler([this] { FinishTickAside(); }); }, Qt::QueuedConnection);
        });
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
        limit(2 * channel);
}

void frmMain::ZelHiResTimerCtl1_OnTimer(const QString& name) {
    if (name == PollTimer)
        QuietHandler([this] { SoftPoolTimerPorc(); });
    else if (name == PlayTimer)
        QuietHandler([this] { HistoryTick(); });
}

void frmMain::SoftPoolTimerPorc() {
    if (isStopping) // the disk still takes what came before
        return;
    if (isSystemRunning && ZelHiResTimerCtl1->TimerExists(PollTimer))
        recorder.CountMissedTicks(ZelHiResTimerCtl1->TakeMissedTicks(PollTimer));
    if (pollReader && isSystemRunning) {
        BeginTickAside();
        return;
    }
    TickCount = SumOrHighest(TickCount, 1);
    if (bAIEnabled)
        SoftAIScan();
    if (bDIEnabled)
        SoftDIScan();
    recorder.CountTick(surroundings.ticks() - StartTicks);
    SettleRecording();
}

// A tick of boards that may block. One that comes while the last is open is dropped, as during a handler.
void frmMain::BeginTickAside() {
    if (!pollReader->IsIdle()) {
        recorder.CountMissedTicks(1);
        return;
    }
    TickCount = SumOrHighest(TickCount, 1);
    pollReader->Begin();
    if (pollReader->Wait(Patience))
        FinishTickAside();
    else
        silence.start(LongestAnswer - Patience);
}

// Also called from the event loop for what was read late; the session may be over by then.
void frmMain::FinishTickAside() {
    if (!isSystemRunning || !pollReader || !pollReader->HasRead())
        return;
    const auto end = qScopeGuard([this] { pollReader->End(); });
    std::swap(polled, pollReader->Tick());
    silence.stop();
    if (LabelNotice->text() == QLatin1StringView(BoardIsSilent))
        ShowTroubles();
    if (bAIEnabled)
        TakeScan();
    if (bDIEnabled)
        TakePorts();
    recorder.CountTick(surroundings.ticks() - StartTicks);
    SettleRecording();
}

void frmMain::TellSilence() {
    LabelNotice->Show(QLatin1StringView(BoardIsSilent));
}

void frmMain::SoftAIScan() {
    if (!isSystemRunning)
        PlanAnalogPolling();
    ReadAnalog(pollPlan, pollBoards, polled);
    TakeScan();
}

void frmMain::TakeScan() {
    if (!polled.analogFault.empty()) {
        LoseScan();
        throw RunTimeError(polled.analogFault); // ends the tick
    }
    if (recorder.EndReadFault()) {
        ShowOnSaveBoxes({});
        ShowTroubles();
    }
    ShowThermoSelection();
    const auto time = static_cast<float>((surroundings.ticks() - StartTicks) / 1000.0);
    ConvertScan(polled.values, scanRow);
    if (bAISaveToDisk)
        recorder.PutScan(scanRow);
    ZelGraph1->AppendScan(time, scanRow);
}

// The control stands as if the temperatures had been read through it.
void frmMain::ShowThermoSelection() {
    for (const PolledThermocouple& couple : pollPlan.thermocouples) {
        ZelThermo1->SetChannel(couple.channel.channel);
        ZelThermo1->SetThermoType(static_cast<std::int32_t>(couple.type));
        ZelThermo1->SetThermoScale(static_cast<std::int32_t>(couple.scale));
        ZelThermo1->SetExpChannel(couple.expansion);
    }
}

// A board that fails for a while costs its scans; that it does shows until it answers again.
void frmMain::LoseScan() {
    if (recorder.LoseScan(polled.analogFault)) {
        ShowLostScans();
        ShowTroubles();
    }
    NoteLosses();
}

void frmMain::ShowTroubles() {
    QStringList texts{diskWarning};
    if (isSystemRunning && !recorder.ReadFault().empty())
        texts += u"Scans are being lost: %1"_s.arg(QString::fromStdString(recorder.ReadFault()));
    if (!recorder.DiskFault().empty())
        texts +=
            u"The disk may not keep the recording: %1"_s.arg(QString::fromStdString(recorder.DiskFault()));
    texts.removeAll(QString());
    const QString text = texts.join(u"; "_s);
    if (diskWarning.isEmpty())
        LabelNotice->Show(text);
    else
        LabelNotice->Warn(text);
}

void frmMain::SoftDIScan() {
    if (!isSystemRunning)
        PlanDigitalPolling();
    ReadDigital(pollPlan, pollBoards, polled);
    TakePorts();
}

void frmMain::TakePorts() {
    if (!polled.digitalFault.empty()) {
        MsgBox(this, QString::fromStdString(polled.digitalFault), u"SoftPoolTimerProc"_s);
        if (isSystemRunning)
            BtnStart_Click();
        return;
    }
    if (bDISaveToDisk)
        recorder.PutPorts(polled.states);
    const double time = (surroundings.ticks() - StartTicks) / 1000.0;
    int plot = ZelAI1->ScanChannelCount();
    for (const std::int32_t index : pollPlan.lines) {
        if (plot < ZelGraph1->PlotCount())
            ZelGraph1->AddPoint(plot++, time, LineLevel(index, polled.states, pollPlan.portStart));
    }
}

} // namespace tracelet
