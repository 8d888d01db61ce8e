#include "core/base/Convert.h"
#include "core/files/Paths.h"
#include "core/playback/PlaybackPosition.h"
#include "core/playback/PlaybackRate.h"
#include "core/recordings/Recording.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelLED.h"
#include "window/widgets/ZelSlider.h"

#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

// Bytes that the chart may take for samples: with them the program stays below 1 GiB whatever a project says,
// and 16 channels at 1 MS/s each still fill the ten seconds that are shown.
constexpr std::int64_t RecordingMemory = std::int64_t{896} << 20;

// The chosen path; empty after a cancel. A name that does not exist may be typed. `folder` is a hint where to
// start; empty, the dialog starts where it was last.
std::string ChosenProject(QWidget* owner, const std::string& folder) {
    QFileDialog dialog(owner);
    if (!folder.empty())
        QuietHandler([&] { dialog.setDirectory(QString::fromStdString(NativePath(folder))); });
    dialog.setObjectName(u"CommonDialog1"_s);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilter(u"Tracelet AI data file manager(*.tlp)"_s);
    dialog.setDefaultSuffix(u"tlp"_s);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0).toStdString();
}

// The one project that is dragged; empty for anything else.
std::string DroppedProject(const QMimeData& dragged) {
    const QList<QUrl> files = dragged.urls();
    if (files.size() != 1 || !files.front().isLocalFile())
        return {};
    const QString file = files.front().toLocalFile();
    return file.endsWith(u".tlp"_s, Qt::CaseInsensitive) ? file.toStdString() : std::string();
}

void AssignPlots(const AttributeTables& tables, const std::vector<PlotRecord>& plots) {
    tables.Resize(static_cast<std::int64_t>(plots.size()));
    std::int64_t i = 0;
    for (const PlotRecord& plot : plots) {
        tables.color[i] = static_cast<std::uint32_t>(plot.PlotColor);
        tables.lineStyle[i] = plot.PlotLineStyle;
        tables.name[i] = plot.PlotName;
        ++i;
    }
}

} // namespace

void frmMain::BtnHistory_Click() {
    Handler(this, u"BtnHistory"_s, [this] {
        const std::string lastSaved = szHisProjectFileName.empty() ? szDir : std::string();
        OpenProject(ChosenProject(this, lastSaved));
    });
}

void frmMain::OpenProject(const std::string& path) {
    if (FileExists(path))
        EnterHistoryMode(path);
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
    if (BtnHistory->isEnabled() && !DroppedProject(*event->mimeData()).empty())
        event->acceptProposedAction();
}

// Where the project comes from must not wait for a message box.
void frmMain::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    const auto open = [this, path = DroppedProject(*event->mimeData())] {
        if (BtnHistory->isEnabled())
            Handler(this, u"BtnHistory"_s, [&] { OpenProject(path); });
    };
    QMetaObject::invokeMethod(this, open, Qt::QueuedConnection);
}

void frmMain::EnterHistoryMode(const std::string& path) {
    if (isHisPlaying || isHisPlayPaused)
        BtnStop_Click();
    LabelNotice->Show({});
    szHisProjectFileName = path;
    bHisFileExist = bHistoryMode = true;
    BtnModeSwitch->setText(u"Acquisition"_s);
    EnableControls(When::Opened);

    ReadProjectInfo();
    BuildPlots(bHistoryMode, true);
    ShowDataFiles();
    ShowRecordingStart();
    PreparePlayback();
}

void frmMain::ShowDataFiles() {
    ReadHisAIFile();
    ReadHisDIFile();
    QStringList names;
    for (const std::string& name : recording.foundBeside)
        names.append(QString::fromStdString(name));
    if (!names.empty())
        LabelNotice->Show(
            (names.size() == 1 ? u"%1 was found beside the project"_s : u"%1 were found beside the project"_s)
                .arg(names.join(u" and "_s)));
}

void frmMain::ShowRecordingStart() {
    ZelGraph1->SetMemoryBudget(RecordingMemory);
    ZelGraph1->ClearData();
    MarkRecordedLosses();
    ZelGraph1->SetNextX(0.0);
    ZelGraph1->SetXAxisMin(0.0);
    ZelGraph1->SetXAxisMax(10.0);
    ZelGraph1->SetAxisAutoScale(TemperatureAxis, true);
    dDIVValue = 1.0;
    ZelGraph1->SetChartLength(OpeningChartLength(ScanInterval));
}

void frmMain::PreparePlayback() {
    if (ZelHiResTimerCtl1->TimerExists(PlayTimer)) {
        ZelHiResTimerCtl1->SetTimerEnabled(PlayTimer, false);
        ZelHiResTimerCtl1->SetTimerInterval(PlayTimer, PlaybackTickMs);
    } else {
        ZelHiResTimerCtl1->AddTimer(PlayTimer, PlaybackTickMs, false);
    }

    ZelSliderR->SetValue(0.0);
    const double ownRate = Quotient(1.0, ScanInterval);
    const SpeedRange range = UserSpeedRange(ownRate);
    ZelSliderV->SetRange(range.lowest, range.highest);
    ZelSliderV->SetValue(ownRate);
    // The slider tells of changes only; a speed that stays the same applies to this recording's timer too.
    QuietHandler([&] { ZelSliderV_Change(ownRate); });

    ZelLED1->SetEnabled(false);
    ShowDIVValue(1.0);
    ZelLED1->SetEnabled(true);
}

void frmMain::ReadProjectInfo() {
    // A missing analog file is created, so that there are no analog data rather than an error.
    Recording opened = OpenRecording(szHisProjectFileName, Disposition::OpenAlways);
    const ProjectInfo& info = opened.info;
    AssignPlots({M1.HisAIPlotLineStyle, M1.HisAIPlotColor, M1.HisAIPlotName}, info.aiPlots);
    M1.HisAIChanIsThermo = Table(info.HisAIChanIsThermo);
    M1.HisAIRangeLimits.Resize(std::int64_t{info.nHisAIMaxChanNum()} * 2);
    AssignPlots({M1.HisDIPlotLineStyle, M1.HisDIPlotColor, M1.HisDIPlotName}, info.diPlots);
    M1.HisDIPortMask = Table(info.HisDIPortMask);
    recording = std::move(opened);
    HisScanIndex = 0;
}

void frmMain::ReadHisAIFile() {
    if (recording.analogFault)
        MsgBox(this, u"CreateFile Fails "_s, u"ReadHisAIFile"_s);
}

void frmMain::ReadHisDIFile() {
    if (recording.digitalFault) // the title is shared with the analog reader
        MsgBox(this, QString::fromUtf8(recording.digitalFault->what()), u"ReadHisAIFile"_s);
    if (nHisDIPortCount < 1)
        return;
    const AxisRange range = DigitalAxisRange(nHisDIPortStart, nHisDIPortCount);
    ZelGraph1->AxisSetRange(DigitalAxis, range.minimum, range.maximum);
}

} // namespace tracelet
