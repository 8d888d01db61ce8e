#include "window/main/frmMain.h"

#include "core/playback/PlaybackRate.h"
#include "core/recordings/WorkFolder.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/widgets/ZelButton.h"
#include "window/widgets/ZelLED.h"
#include "window/widgets/ZelSlider.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr int StatusMs = 200;

} // namespace

const QString frmMain::PollTimer = u"SoftPoolTimer"_s;
const QString frmMain::PlayTimer = u"HistoryTimer"_s;

frmMain::frmMain() : frmMain(Surroundings{}) {}

frmMain::frmMain(Surroundings given) : surroundings(std::move(given)) {
    setObjectName(u"frmMain"_s);
    const QString folder = surroundings.programFolder.isEmpty() ? QCoreApplication::applicationDirPath()
                                                                : surroundings.programFolder;
    szProgramPath = folder.toStdString();
    MakeControls();
    MainWidgets::Build(*this);
    Form_Load();
    ConnectControls();
    ConnectWidgets();
    ConnectGraph();
    ConnectKeys();
    SetUpTips();
    setAcceptDrops(true);
    statusTimer.start(StatusMs);
}

frmMain::~frmMain() {
    Form_Unload();
}

void frmMain::MakeControls() {
    ZelAI1 = new ZelAI(this);
    ZelThermo1 = new ZelThermo(this);
    ZelDIO1 = new ZelDIO(this);
    ZelHiResTimerCtl1 = new ZelHiResTimerCtl(this);
    ZelAI1->setObjectName(u"ZelAI1"_s);
    ZelThermo1->setObjectName(u"ZelThermo1"_s);
    ZelDIO1->setObjectName(u"ZelDIO1"_s);
    ZelHiResTimerCtl1->setObjectName(u"ZelHiResTimerCtl1"_s);
    ZelAI1->SetBoards(surroundings.boards);
    ZelThermo1->SetBoards(surroundings.boards);
    ZelDIO1->SetBoards(surroundings.boards);
    QuietHandler([this] { ZelAI1->SetDeviceNumber(surroundings.boards.DefaultAnalog()); });
    QuietHandler([this] { ZelDIO1->SetDeviceNumber(surroundings.boards.DefaultDigital()); });
}

void frmMain::FindMore() {
    surroundings.findMore(surroundings.boards);
    ZelAI1->AddBoards(surroundings.boards);
    ZelThermo1->AddBoards(surroundings.boards);
    ZelDIO1->AddBoards(surroundings.boards);
}

void frmMain::ConnectControls() {
    connect(ZelAI1, &ZelAI::Picking, this, &frmMain::FindMore);
    connect(ZelDIO1, &ZelDIO::Picking, this, &frmMain::FindMore);
    connect(ZelHiResTimerCtl1, &ZelHiResTimerCtl::OnTimer, this, &frmMain::ZelHiResTimerCtl1_OnTimer);
    connect(&statusTimer, &QTimer::timeout, this, [this] { QuietHandler([this] { ShowStatus(); }); });
    silence.setSingleShot(true);
    connect(&silence, &QTimer::timeout, this, &frmMain::TellSilence);
    connect(ZelAI1, &ZelAI::OnFirstBufferChange, this, &frmMain::ZelAI1_OnFirstBufferChange);
    connect(ZelAI1, &ZelAI::OnSecondBufferChange, this, &frmMain::ZelAI1_OnSecondBufferChange);
    connect(ZelAI1, &ZelAI::OnOverrunNotice, this, &frmMain::ZelAI1_OnOverrunNotice);
    connect(ZelAI1, &ZelAI::OnInputFailed, this, &frmMain::ZelAI1_OnInputFailed);
}

void frmMain::ConnectWidgets() {
    const auto on = [this](QAbstractButton* button, void (frmMain::*procedure)()) {
        connect(button, &QAbstractButton::clicked, this,
                [this, procedure] { QuietHandler([&] { (this->*procedure)(); }); });
    };
    on(BtnStart, &frmMain::BtnStart_Click);
    on(BtnSaveAs, &frmMain::BtnSaveAs_Click);
    on(LabelNotice->BtnNoticeSave, &frmMain::BtnNoticeSave_Click);
    on(LabelNotice->BtnNoticeDiscard, &frmMain::BtnNoticeDiscard_Click);
    on(LabelNotice->BtnNoticeLater, &frmMain::BtnNoticeLater_Click);
    on(BtnExit, &frmMain::BtnExit_Click);
    on(BtnSet, &frmMain::BtnSet_Click);
    on(BtnHistory, &frmMain::BtnHistory_Click);
    on(BtnModeSwitch, &frmMain::BtnModeSwitch_Click);
    on(BtnStop, &frmMain::BtnStop_Click);
    on(BtnAccelerate, &frmMain::BtnAccelerate_Click);
    on(BtnHisConvert, &frmMain::BtnHisConvert_Click);
    on(BtnGraphSet, &frmMain::BtnGraphSet_Click);
    on(BtnClearGraph, &frmMain::BtnClearGraph_Click);
    connect(ChkPlay, &QCheckBox::toggled, this, [this] { QuietHandler([this] { ChkPlay_Click(); }); });
    connect(CkAISave2Disk, &QCheckBox::toggled, this, &frmMain::CkAISave2Disk_Click);
    connect(CkDISave2Disk, &QCheckBox::toggled, this, &frmMain::CkDISave2Disk_Click);
    connect(ZelButton1, &ZelButton::ValueChanged, this,
            [this] { QuietHandler([&] { ZelButton1_Change(); }); });
    connect(ZelButton2, &ZelButton::ValueChanged, this,
            [this] { QuietHandler([&] { ZelButton2_Change(); }); });
    connect(ZelLED1, &ZelLED::Step, this, [this](bool up) { QuietHandler([&] { ZelLED1_Step(up); }); });
    connect(ZelSliderV, &ZelSlider::Changed, this,
            [this](double value) { QuietHandler([&] { ZelSliderV_Change(value); }); });
    connect(ZelSliderR, &ZelSlider::Changed, this,
            [this](double value) { QuietHandler([&] { ZelSliderR_Change(value); }); });
}

void frmMain::Form_Load() {
    isLoaded = true;
    nAISampleCnt = 4096;
    bFAICyclic = false;
    bAISaveToDisk = false;
    SizeSharedTables();
    SetAIColors();
    InitPlotAttributes(true);
    InitPlotAttributes(false);
    isHisPlaying = isHisPlayPaused = bHisFileExist = false;
    SetUpTemplates();
    FillThermocoupleNames();
    MakeWorkFiles();
    M1.SoftMode = true;
    nDIChanCount = 0;
    BuildPlots(bHistoryMode, true);
    SoftAIWritten = FAIWritten = DIWritten = false;
    EnableControls(When::Idle);
}

void frmMain::SizeThermoTables() {
    if (ZelAI1->DeviceNumber() < 0)
        return;
    const std::int64_t count = std::int64_t{ZelAI1->MaxChannelCount()} + 1;
    M1.AIChanIsThermo.Resize(count);
    M1.AIThermoExpChan.Resize(count);
    M1.AIThermoScale.Resize(count);
    M1.AIThermoType.Resize(count);
}

void frmMain::SizeSharedTables() {
    SizeThermoTables();
    if (ZelDIO1->DeviceNumber() >= 0)
        nDIMaxPortCount = ZelDIO1->MaxPortCount();
    M1.DIPortMask.Resize(std::int64_t{ZelDIO1->MaxPortCount()} + 1);
}

void frmMain::SetUpTemplates() {
    ZelGraph1->SetXAxisTitle(u"Second"_s);
    ZelGraph1->SetAxisTitle(VoltageAxis, u"AI Data"_s);
    ZelGraph1->SetAxisTitle(DigitalAxis, u"DI Data"_s);
    ZelGraph1->SetAxisTitle(TemperatureAxis, u"Temperature Data"_s);
    ZelGraph1->SetAxisAutoScale(TemperatureAxis, true);
    ZelGraph1->SetXAxisMin(0.0);
    ZelGraph1->SetXAxisMax(10.0);
    ZelGraph1->SetChartLength(0);
    ShowDIVValue(1.0);
    SetUpSliders();
}

// The position slider keeps its 0 to 100 percent; the speed follows the recording, whatever the range.
void frmMain::SetUpSliders() {
    constexpr double OpeningSpeed = 1000.0 / PlaybackTickMs; // scans a second
    const SpeedRange range = UserSpeedRange(OpeningSpeed);
    ZelSliderV->SetClampsProgram(false);
    ZelSliderV->SetLogarithmic(true);
    ZelSliderV->SetRange(range.lowest, range.highest);
    ZelSliderV->SetValue(OpeningSpeed);
}

void frmMain::FillThermocoupleNames() {
    const auto fill = [](Table<std::string>& table, std::initializer_list<const char*> names) {
        std::int64_t at = 0;
        for (const char* name : names)
            table[at++] = name;
    };
    M1.ThermoTypeNames.Resize(8);
    fill(M1.ThermoTypeNames, {"J", "K", "S", "T", "B", "R", "E"});
    M1.ThermoScaleNames.Resize(4);
    fill(M1.ThermoScaleNames, {"Celsius", "Fahrenheit", "Rankine", "Kelvin"});
}

void frmMain::MakeWorkFiles() {
    stateFolder = surroundings.stateFolder ? *surroundings.stateFolder : StateFolder();
    recorder.Open(MakeWorkFolder(szProgramPath, stateFolder), stateFolder);
}

void frmMain::Form_Unload() {
    if (!isLoaded)
        return;
    isLoaded = false;
    statusTimer.stop();
    if (isSystemRunning)
        QuietHandler([this] { BtnStart_Click(); });
    if (isHisPlaying)
        QuietHandler([this] { BtnStop_Click(); });
    leftRecordings.clear();
    recorder.Close();
    recording.CloseFiles();
    RemoveWorkFolder(recorder.work);
}

void frmMain::BtnExit_Click() {
    close();
}

void frmMain::closeEvent(QCloseEvent* event) {
    Form_Unload();
    event->accept();
}

} // namespace tracelet
