#include "core/playback/PlayScans.h"
#include "core/playback/PlaybackPosition.h"
#include "core/playback/PlaybackRate.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelSlider.h"

#include <QCheckBox>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

// The two characters are a triangle and a pause sign in the button's symbol font.
const QString PlayCaption = u"4"_s;
const QString PauseCaption = u";"_s;

constexpr double StoppedPosition = 0.1; // percent; not 0, so that the next start moves the slider

// Values of this block for the first plots of the graph.
template <typename T>
void Append(ZelGraph& graph, double interval, std::int32_t channels, std::span<const T> values,
            std::int32_t scans) {
    graph.AppendSamples(interval, ZelGraph::PlotInterleaved(scans, channels, values));
}

} // namespace

void frmMain::ChkPlay_Click() {
    if (ChkPlay->isChecked())
        Play();
    else
        Pause();
}

void frmMain::Play() {
    LabelNotice->Show({});
    ChkPlay->setText(PauseCaption);
    if (!isHisPlayPaused) {
        ZelSliderR->SetValue(0.0);
        SeekScan(0); // the slider may have stood at 0
    }
    EnableControls(When::Playing);
    if (!ZelHiResTimerCtl1->TimerExists(PlayTimer)) { // no recording was ever opened to the end
        BtnStop_Click();
        return;
    }
    ZelHiResTimerCtl1->SetTimerEnabled(PlayTimer, true);
    isHisPlaying = true;
}

void frmMain::Pause() {
    ChkPlay->setText(PlayCaption);
    ZelHiResTimerCtl1->SetTimerEnabled(PlayTimer, false);
    isHisPlayPaused = true;
    EnableControls(When::Paused);
}

void frmMain::BtnStop_Click() {
    if (ZelHiResTimerCtl1->TimerExists(PlayTimer))
        ZelHiResTimerCtl1->SetTimerEnabled(PlayTimer, false);
    ChkPlay->setChecked(false); // its handler writes the caption
    isHisPlaying = false;
    isHisPlayPaused = false;
    ShowPosition(StoppedPosition);
    EnableControls(When::Ended);
}

void frmMain::BtnAccelerate_Click() {
    ZelSliderV->SetValue(ZelSliderV->Value() * 2);
}

void frmMain::ZelSliderV_Change(double value) {
    if (!ZelSliderV->Enabled() || !IsPlaybackSpeed(value))
        return;
    dHisPlaySpeed = ScansPerTick(value);
    const std::int32_t interval = TickInterval(value);
    // Writing it starts the period anew: a drag along the slider would keep the next tick away.
    if (ZelHiResTimerCtl1->TimerInterval(PlayTimer) != interval)
        ZelHiResTimerCtl1->SetTimerInterval(PlayTimer, interval);
}

void frmMain::ZelSliderR_Change(double value) {
    if (ZelSliderR->Enabled())
        SeekScan(ScanAt(value, HisScanCount));
}

// Files are read at offsets that follow from the index, so this is all there is to a seek.
void frmMain::SeekScan(std::int64_t scan) {
    const double start = ScanTime(scan, ScanInterval);
    const double span = ZelGraph1->XAxisMax() - ZelGraph1->XAxisMin();
    HisScanIndex = scan;
    ZelGraph1->ClearData();
    ZelGraph1->SetNextX(start);
    ZelGraph1->SetXAxisMin(start);
    ZelGraph1->SetXAxisMax(start + span);
}

// Moves the position slider without a seek.
void frmMain::ShowPosition(double percent) {
    ZelSliderR->SetEnabled(false);
    ZelSliderR->SetValue(percent);
    ZelSliderR->SetEnabled(true);
}

void frmMain::HistoryTick() {
    bool end = true;
    try {
        ZelGraph1->SetNextX(ScanTime(HisScanIndex, ScanInterval));
        end = PlayTick();
    } catch (const std::exception& error) { // ends the playback like the end of the data, but not unsaid
        LabelNotice->Show(u"Playback ended: %1"_s.arg(QString::fromUtf8(error.what())));
    }
    if (end) {
        BtnStop_Click();
        return;
    }
    const std::int32_t scans = ScansATick();
    HisScanIndex += scans;
    ShowPosition(AdvancedPercent(ZelSliderR->Value(), scans, HisScanCount));
}

// Scans that a tick plays: dHisPlaySpeed, as far as the window stays usable.
std::int32_t frmMain::ScansATick() const {
    return AffordableScans(dHisPlaySpeed, ValuesAScan(recording));
}

// Plays the scans of one tick; True when a file ran out, or when there is none.
bool frmMain::PlayTick() {
    const bool playsDI = PlaysDigital(recording);
    bool analogEnd = !playsDI; // nothing to play, unless there are analog data
    bool digitalEnd = false;
    if (bHisAI && bHisAISoft)
        PlaySoftAIData(analogEnd);
    else if (bHisAI)
        PlayFAIData(analogEnd);
    if (playsDI)
        PlaySoftDIData(digitalEnd);
    return analogEnd || digitalEnd;
}

void frmMain::PlayFAIData(bool& end) {
    if (bHisAIAnalog)
        PlayAnalog(hisFloats, end);
    else
        PlayAnalog(hisCodes, end);
}

void frmMain::PlaySoftAIData(bool& end) {
    PlayAnalog(hisFloats, end);
}

template <typename T>
void frmMain::PlayAnalog(DataBlock<T>& block, bool& end) {
    end = PlayAnalogScans(recording, block, HisScanIndex, ScansATick(),
                          [this](std::span<const T> values, std::int32_t scans) {
                              Append(*ZelGraph1, ScanInterval, nHisAIChanCount, values, scans);
                          });
}

void frmMain::PlaySoftDIData(bool& end) {
    std::int64_t scan = HisScanIndex;
    end = PlayDigitalScans(recording, hisPorts, scan, ScansATick(),
                           [&](std::span<const std::uint8_t> states, std::int32_t scans) {
                               const auto ports = static_cast<std::size_t>(nHisDIPortCount);
                               for (std::int32_t s = 0; s < scans; ++s, ++scan)
                                   PlayPorts(states.subspan(static_cast<std::size_t>(s) * ports), scan);
                           });
}

// Appends the recorded lines of one scan; `states` starts with the bytes of its ports.
void frmMain::PlayPorts(std::span<const std::uint8_t> states, std::int64_t scan) {
    const double time = ScanTime(scan, ScanInterval);
    int plot = nHisAIChanCount;
    for (const std::int32_t index : recording.lines) {
        if (plot >= ZelGraph1->PlotCount())
            return;
        ZelGraph1->AddPoint(plot++, time, LineLevel(index, states, nHisDIPortStart));
    }
}

} // namespace tracelet
