#include "core/base/Convert.h"
#include "core/files/Paths.h"
#include "core/playback/PlaybackPosition.h"
#include "core/playback/PlaybackRate.h"
#include "core/recordings/ProjectInfo.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelLED.h"
#include "window/widgets/ZelSlider.h"

#include <QFileDialog>
#include <QPushButton>

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

template <typename T>
void Assign(Table<T>& table, const std::vector<T>& values) {
    table.Resize(static_cast<std::int64_t>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i)
        table[static_cast<std::int64_t>(i)] = values[i];
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

// Where a data file lies: at the path that the project tells or else, as when its folder was moved, beside
// the project; its name is then added to `besides`. Where it is in neither place, the path stays.
std::string DataFile(const std::string& path, const std::string& project, QStringList& besides) {
    if (const auto there = ExistingFile(path))
        return *there;
    const std::string name = FileNameFromPath(path);
    const auto beside = ExistingFile(SiblingPath(project, name));
    if (!beside)
        return path;
    besides.append(QString::fromStdString(name));
    return *beside;
}

} // namespace

void frmMain::BtnHistory_Click() {
    Handler(this, u"BtnHistory"_s, [this] {
        const std::string lastSaved = szHisProjectFileName.empty() ? szDir : std::string();
        const std::string path = ChosenProject(this, lastSaved);
        if (FileExists(path))
            OpenRecording(path);
    });
}

void frmMain::OpenRecording(const std::string& path) {
    if (isHisPlaying || isHisPlayPaused)
        BtnStop_Click();
    LabelNotice->Show({});
    szHisProjectFileName = path;
    bHisFileExist = bHistoryMode = true;
    BtnModeSwitch->setText(u"Acquisition"_s);
    EnableControls(When::Opened);

    ReadProjectInfo();
    BuildPlots(bHistoryMode, true);
    OpenDataFiles();
    ShowRecordingStart();
    PreparePlayback();
}

void frmMain::OpenDataFiles() {
    HisAIFileHandle.Close();
    Files.Close(HisFileNumB);
    HisScanIndex = 0;
    nHisDIPortStart = nHisDIPortCount = 0;
    hisLines.clear();
    QStringList besides;
    if (bHisAI)
        ReadHisAIFile(DataFile(AIDataPath, szHisProjectFileName, besides));
    if (bHisDI)
        ReadHisDIFile(DataFile(DIDataPath, szHisProjectFileName, besides));
    if (!besides.empty())
        LabelNotice->Show((besides.size() == 1 ? u"%1 was found beside the project"_s
                                               : u"%1 were found beside the project"_s)
                              .arg(besides.join(u" and "_s)));
}

void frmMain::ShowRecordingStart() {
    ZelGraph1->SetMemoryBudget(RecordingMemory);
    ZelGraph1->ClearData();
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
    const ProjectInfo info = ReadProjectFile(szHisProjectFileName);
    bHisAI = info.bHisAI;
    bHisDI = info.bHisDI;
    bHisAISoft = info.bHisAISoft;
    bHisAIAnalog = info.bHisAIAnalog;
    nHisAIChanCount = info.nHisAIChanCount;
    nHisDIChanCount = info.nHisDIChanCount;
    nHisAIMaxChanNum = info.nHisAIMaxChanNum();
    nHisDIMaxPortCount = info.nHisDIMaxPortCount();
    HisScanCount = info.ScanCount;
    ScanInterval = info.ScanInterval;
    AIDataPath = info.AIDataPath;
    DIDataPath = info.DIDataPath;

    AssignPlots({M1.HisAIPlotLineStyle, M1.HisAIPlotColor, M1.HisAIPlotName}, info.aiPlots);
    Assign(M1.HisAIChanIsThermo, info.HisAIChanIsThermo);
    M1.HisAIRangeLimits.Resize(std::int64_t{nHisAIMaxChanNum} * 2);
    AssignPlots({M1.HisDIPlotLineStyle, M1.HisDIPlotColor, M1.HisDIPlotName}, info.diPlots);
    Assign(M1.HisDIPortMask, info.HisDIPortMask);
}

void frmMain::ReadHisAIFile(const std::string& szFileName) {
    HisAIFileHandle.Close();
    try {
        HisAIFileHandle = SystemFile(szFileName, Disposition::OpenAlways);
        HisScanIndex = 0;
    } catch (const RunTimeError&) {
        MsgBox(this, u"CreateFile Fails "_s, u"ReadHisAIFile"_s);
    }
}

void frmMain::ReadHisDIFile(const std::string& szFileName) {
    Handler(this, u"ReadHisAIFile"_s, [&] { // the title is shared with the analog reader
        Files.Close(HisFileNumB);
        Files.OpenForReading(HisFileNumB, szFileName);
        const DigitalHeader header = ReadDigitalHeader(Files.File(HisFileNumB));
        nHisDIPortStart = header.nHisDIPortStart;
        nHisDIPortCount = header.nHisDIPortCount;
        hisLines = SelectedLines(M1.HisDIPortMask, nHisDIPortStart, nHisDIPortCount);
        const AxisRange range = DigitalAxisRange(nHisDIPortStart, nHisDIPortCount);
        ZelGraph1->AxisSetRange(DigitalAxis, range.minimum, range.maximum);
        BuildPlots(bHistoryMode, false); // the lines' levels are known now
    });
}

} // namespace tracelet
