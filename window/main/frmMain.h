#pragma once

// The main window owns all state. Its procedures, by subject, under window/:
//
// clang-format off
//   main/StartUp.cpp            Form_Load, Form_Unload, BtnExit_Click
//   main/Session.cpp            ZelButton1_Change, ZelButton2_Change, CkAISave2Disk_Click, CkDISave2Disk_Click,
//                               BtnStart_Click (StartSession, StopSession, StopInput)
//   main/Enabled.cpp            EnableSetCmdControls, EnableHisControls; what is enabled by all that happens
//   main/FastAnalogInput.cpp    FAIStart, BufferChangeFunc, AppendSingles, AppendLongs, the buffer notifications
//   main/SoftwarePolling.cpp    SoftPoolStart, SoftPoolTimerPorc, SoftAIScan, SoftDIScan, ZelHiResTimerCtl1_OnTimer
//   main/Status.cpp             ShowStatus, NoteLosses: what the line at the foot tells
//   main/Resize.cpp             Form_Resize
//   files/WriteProjectInfo.cpp  WriteProjectInfo, WriteStopRecord; beside it SessionFacts
//   files/SaveAs.cpp            BtnSaveAs_Click
//   files/LeftRecordings.cpp    the offer of recordings that were not saved: FindUnsaved, OfferUnsaved
//   history/OpenHistory.cpp     BtnHistory_Click, ReadProjectInfo, ReadHisAIFile, ReadHisDIFile
//   history/ModeSwitch.cpp      BtnModeSwitch_Click
//   history/Playback.cpp        ChkPlay_Click, BtnStop_Click (of playback), BtnAccelerate_Click, the sliders, HistoryTick,
//                               PlayFAIData, PlaySoftAIData, PlaySoftDIData
//   export/Convert.cpp          BtnHisConvert_Click
//   settings/BtnSet.cpp         BtnSet_Click, PhysToLogicalChan, LogicalToPhysChan, LogicalChanCount
//   graph/Plots.cpp             SetAIColors, InitPlotAttributes, BuildPlots, UpdatePlotListView, BringBackAxes
//   graph/TimeAxis.cpp          AdjustXAxisAndChartLength, ZelLED1_Step
//   graph/Interaction.cpp       Menufile, the graph's mouse and error handlers, BtnClearGraph_Click
//   graph/Pictures.cpp          pictures of the chart: CopyPicture, SavePicture, PrintPicture
//   graph/GraphSet.cpp          BtnGraphSet_Click
//   help/Keys.cpp               what keys do; beside it the page that F1 shows
//   help/MainTips.cpp           what controls tell of themselves
//   help/Hint.cpp               what to do next, in the empty chart
// clang-format on

#include "core/base/TickCount.h"
#include "core/disk/UserFolders.h"
#include "core/drivers/FindBoards.h"
#include "core/input/PollPlan.h"
#include "core/input/PollReader.h"
#include "core/input/Recorder.h"
#include "core/input/SessionStatus.h"
#include "core/plots/PlotTables.h"
#include "core/recordings/LeftRecording.h"
#include "core/recordings/Recording.h"
#include "core/settings/M1.h"
#include "window/controls/ZelAI.h"
#include "window/controls/ZelDIO.h"
#include "window/controls/ZelHiResTimerCtl.h"
#include "window/controls/ZelThermo.h"
#include "window/main/MainWidgets.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

class QMenu;

namespace tracelet {

struct ChannelNumbers;

class frmMain : public QWidget, public MainWidgets {
    Q_OBJECT

public:
    /// What a test or a tour may put in the machine's place.
    struct Surroundings {
        BoardList boards = FindBoards();
        std::function<void(BoardList&)> findMore = FindMoreBoards; ///< what was plugged in since
        QString programFolder; ///< "" is the folder that the program lies in
        TickClock ticks = GetTickCount;
        /// Where the program keeps what outlives it (a native path, "" for nowhere); unless told the user's
        /// folder.
        std::optional<std::string> stateFolder{};
        std::function<std::int64_t(const std::string& folder)> freeBytes = FreeBytes;
    };

    frmMain();
    explicit frmMain(Surroundings surroundings);
    ~frmMain() override;

    // ── Shared tables and device controls ────────────────────────────────────────────────────────────
    tracelet::M1 M1;
    ZelAI* ZelAI1 = nullptr;
    ZelThermo* ZelThermo1 = nullptr;
    ZelDIO* ZelDIO1 = nullptr;
    ZelHiResTimerCtl* ZelHiResTimerCtl1 = nullptr;

    // ── Acquisition ──────────────────────────────────────────────────────────────────────────────────
    std::int32_t nAISampleCnt = 0;     ///< conversions of one fast-input buffer
    bool bFAICyclic = false;           ///< fast input runs endlessly instead of one buffer
    bool bAISaveToDisk = false;        ///< analog data are recorded
    std::int32_t nTimerInterval = 100; ///< polling period, milliseconds
    std::int32_t nDIMaxPortCount = 0;  ///< ports of the digital device
    std::int32_t nDIPortStart = 0;     ///< first port polled
    std::int32_t nDIPortCount = 0;     ///< ports polled
    std::int32_t nDIChanCount = 0;     ///< digital lines selected
    bool bDISaveToDisk = false;        ///< digital data are recorded
    bool isSystemRunning = false;      ///< an acquisition is running
    bool bDIEnabled = false;           ///< DI switch is on
    bool bAIEnabled = false;           ///< AI switch is on

    std::int32_t TickCount = 0;   ///< timer ticks since the session started
    std::uint32_t StartTicks = 0; ///< millisecond count at session start
    Recorder recorder;            ///< what the session does to files
    std::int32_t& ScanCount = recorder.ScanCount;
    std::int32_t& OverrunCount = recorder.OverrunCount;
    std::int32_t& LostScanCount = recorder.LostScanCount;
    bool& SoftAIWritten = recorder.SoftAIWritten;
    bool& FAIWritten = recorder.FAIWritten;
    bool& DIWritten = recorder.DIWritten;

    // ── Files ────────────────────────────────────────────────────────────────────────────────────────
    // Paths are texts whose last separator is "\"; files/Paths turns them into native ones.
    std::string szProgramPath;                                              ///< the program's folder
    const std::string& sztmpPath = recorder.work.sztmpPath;                 ///< work folder
    const std::string& szProjectFileName = recorder.work.szProjectFileName; ///< work project file
    const std::string& szAIFileName = recorder.work.szAIFileName;           ///< polled analog samples
    const std::string& szFAIFileName = recorder.work.szFAIFileName;         ///< fast analog samples
    const std::string& szDIFileName = recorder.work.szDIFileName;           ///< digital samples
    std::string szDrive;     ///< drive last chosen in the folder dialog
    std::string szDir;       ///< folder last chosen in the folder dialog
    std::string szNewFolder; ///< folder name typed in the folder dialog; "" when cancelled
    bool bPathDlgAI = false;

    static const QString PollTimer; ///< "SoftPoolTimer"
    static const QString PlayTimer; ///< "HistoryTimer"

    static constexpr int AIFileNum = Recorder::AIFileNum;
    static constexpr int DIFileNum = Recorder::DIFileNum;
    static constexpr int ProjectFileNum = Recorder::ProjectFileNum;
    BinaryFiles& Files = recorder.Files; ///< the files open under these numbers
    SystemFile& FAIFileHandle = recorder.FAIFileHandle;

    // ── History ──────────────────────────────────────────────────────────────────────────────────────
    bool bHistoryMode = false;        ///< the window shows a recording
    bool bHisFileExist = false;       ///< a recording was opened at least once
    std::string szHisProjectFileName; ///< the project chosen last, whether or not it could be opened
    Recording recording;              ///< the one that is shown; replaced whole by the next
    const bool& bHisAI = recording.info.bHisAI;
    const bool& bHisDI = recording.info.bHisDI;
    const bool& bHisAISoft = recording.info.bHisAISoft;
    const bool& bHisAIAnalog = recording.info.bHisAIAnalog;
    const std::int32_t& nHisAIChanCount = recording.info.nHisAIChanCount;
    const std::int32_t& nHisDIChanCount = recording.info.nHisDIChanCount;
    [[nodiscard]] std::int32_t nHisAIMaxChanNum() const { return recording.info.nHisAIMaxChanNum(); }
    [[nodiscard]] std::int32_t nHisDIMaxPortCount() const { return recording.info.nHisDIMaxPortCount(); }
    const std::int32_t& nHisDIPortStart = recording.digitalHeader.nHisDIPortStart;
    const std::int32_t& nHisDIPortCount = recording.digitalHeader.nHisDIPortCount;
    const std::int32_t& HisScanCount = recording.info.ScanCount;
    const double& ScanInterval = recording.info.ScanInterval;
    const std::string& AIDataPath = recording.info.AIDataPath;
    const std::string& DIDataPath = recording.info.DIDataPath;
    const SystemFile& HisAIFileHandle = recording.analogFile;
    std::int32_t dHisPlaySpeed = 1; ///< scans read and plotted a tick, as far as the window stays usable
    std::int64_t HisScanIndex = 0;  ///< scan that the next tick reads
    bool isHisPlaying = false;
    bool isHisPlayPaused = false;

    // ── Conversion ───────────────────────────────────────────────────────────────────────────────────
    std::string szTextSaveDrive;
    std::string szTextSaveDir;
    std::string szTextSaveFolder;
    bool bTextSaveAI = false;
    bool bTextSaveDI = false;

    // ── Graph ────────────────────────────────────────────────────────────────────────────────────────
    double dDIVValue = 1.0;           ///< seconds a division; the graph spans ten
    bool isNumEditEventFired = false; ///< the program itself is writing the sec/div display
    QMenu* Menufile = nullptr;        ///< mouse modes of the graph

    // ── Procedures: start-up, session ────────────────────────────────────────────────────────────────
    void Form_Load();
    void Form_Unload();
    void BtnExit_Click();
    void ZelButton1_Change();
    void ZelButton2_Change();
    void CkAISave2Disk_Click();
    void CkDISave2Disk_Click();
    void BtnStart_Click();
    void EnableSetCmdControls(bool Enable);
    /// When controls become enabled or disabled: an input is switched, a session runs or none does, a
    /// recording is opened, history mode is left or entered again, playback runs, pauses or has ended.
    enum class When { Switched, Running, Idle, Opened, Left, Reentered, Playing, Paused, Ended };
    /// Goes by the flags of switches and of what was written, which are set before.
    void EnableControls(When when);
    /// Brings the line at the foot and the window's title up to date, as happens five times a second.
    void ShowStatus();

    // ── Procedures: acquisition ──────────────────────────────────────────────────────────────────────
    [[nodiscard]] bool FAIStart();
    void ZelAI1_OnFirstBufferChange(std::span<const std::int16_t> RawData, std::span<const float> AnalogData,
                                    std::int32_t dataCount);
    void ZelAI1_OnSecondBufferChange(std::span<const std::int16_t> RawData, std::span<const float> AnalogData,
                                     std::int32_t dataCount);
    void ZelAI1_OnOverrunNotice();
    void ZelAI1_OnInputFailed();
    [[nodiscard]] bool SoftPoolStart();
    void ZelHiResTimerCtl1_OnTimer(const QString& name);
    void SoftPoolTimerPorc();
    void SoftAIScan();
    void SoftDIScan();

    // ── Procedures: files, history, conversion ───────────────────────────────────────────────────────
    void WriteProjectInfo();
    void WriteStopRecord(std::uint32_t elapsedMs);
    void BtnSaveAs_Click();
    void BtnNoticeSave_Click();
    void BtnNoticeDiscard_Click();
    void BtnNoticeLater_Click();
    void BtnHistory_Click();
    void BtnModeSwitch_Click();
    void EnableHisControls(bool value);
    /// Opens the chosen project and its data files, all before anything of the last recording goes.
    void ReadProjectInfo();
    void ReadHisAIFile(); ///< says so when the analog data did not open
    void ReadHisDIFile(); ///< says so when the digital data did not open; else shows their range
    void ChkPlay_Click();
    void BtnStop_Click();
    void BtnAccelerate_Click();
    void ZelSliderV_Change(double value);
    void ZelSliderR_Change(double value);
    void HistoryTick();
    void BtnHisConvert_Click();

    // ── Procedures: settings, graph ──────────────────────────────────────────────────────────────────
    void BtnSet_Click();
    /// Clears and sizes the thermocouple tables for the selected analog device; without one they stay.
    void SizeThermoTables();
    [[nodiscard]] ChannelNumbers ChannelNumbering() const;
    [[nodiscard]] std::int32_t PhysToLogicalChan(std::int32_t channel) const;
    [[nodiscard]] std::int32_t LogicalToPhysChan(std::int32_t& channel) const;
    [[nodiscard]] std::int32_t LogicalChanCount() const;
    /// Physical channel of a position in the scan.
    [[nodiscard]] std::int32_t ScannedChannel(std::int32_t position) const;
    void SetAIColors();
    void InitPlotAttributes(bool isAI);
    void BuildPlots(bool HistoryView, bool RemoveOld);
    void UpdatePlotListView();
    /// Brings the digital and the temperature axis back from a zoom.
    void BringBackAxes();
    void AdjustXAxisAndChartLength(bool bSetXAxis);
    /// Stores a seconds-per-division value and shows it without running the display's handler.
    void ShowDIVValue(double secondsPerDivision);
    void ZelLED1_Step(bool up);
    void BtnClearGraph_Click();
    void BtnGraphSet_Click();
    void Form_Resize();
    /// Makes a window that was not shown yet no larger than its screen.
    void FitToScreen();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void MakeControls();
    void FindMore();
    void ConnectControls();
    void ConnectWidgets();
    void SizeSharedTables();
    void SetUpTemplates();
    void SetUpSliders();
    void FillThermocoupleNames();
    void MakeWorkFiles();

    /// The input goes where its switch was put; a `refusal` that is not "" is shown and keeps it off.
    void SwitchInput(ZelButton* button, bool& isInputEnabled, const QString& refusal);
    void StartSession();
    void StopSession();
    /// Lets what was put reach the disk; an input that records nothing more shows why on its save box.
    void SettleRecording();
    void ShowRecordingFaults();
    void ShowLostScans();
    void ClearRecordingFaults();
    /// Shows `text` on the save boxes of recordings under way that are not at fault; "" for nothing wrong.
    void ShowOnSaveBoxes(const QString& text);

    void StopInput();
    void AwaitDisk();
    void WatchDisk();
    void HandleHalf(std::span<const std::int16_t> RawData, std::span<const float> AnalogData,
                    std::int32_t dataCount);
    void BufferChangeFunc(std::span<const float> DataArray, std::int32_t DataCntPerChan);
    void BufferChangeFunc(std::span<const std::int16_t> DataArray, std::int32_t DataCntPerChan);
    void AppendSingles(std::span<const float> Buffer, std::int32_t Count);
    void AppendLongs(std::span<const std::int32_t> Buffer, std::int32_t Count);

    [[nodiscard]] ProjectInfo RecordingInfo() const;
    [[nodiscard]] SessionFacts FactsOfSession(const ProjectInfo& info) const;
    [[nodiscard]] SessionFacts::Channel FactsOfChannel(std::int32_t position, const ProjectInfo& info) const;
    void AddAnalogSections(ProjectInfo& info) const;
    void AddDigitalSections(ProjectInfo& info) const;

    void SetPolledChart();
    void StartPolledAnalog();
    void StartPolledDigital();
    void PlanAnalogPolling();
    void PlanDigitalPolling();
    void StartPollReader();
    void StartPollTimer();
    void SelectThermoLimits(std::int32_t channel);
    void BeginTickAside();
    void FinishTickAside();
    void TellSilence();
    void TakeScan();
    void TakePorts();
    void ShowThermoSelection();
    void LoseScan();
    void ShowTroubles(); ///< that last, at the foot

    [[nodiscard]] SessionStatus AcquisitionStatus() const;
    [[nodiscard]] SessionStatus PlaybackStatus() const;
    [[nodiscard]] std::vector<SessionFacts::Board> BoardsInUse() const;
    [[nodiscard]] double SessionSeconds() const; ///< since the start
    [[nodiscard]] double ScansAskedASecond() const;
    /// Marks on the chart what the recorder lost since the last call.
    void NoteLosses();
    void ForgetLosses();
    void MarkRecordedLosses();

    /// Looks for recordings that were left behind.
    void FindUnsaved();
    /// Offers the newest of them while no session runs, behind what is said of the one before.
    void OfferUnsaved(const QString& said = {});
    /// Offers the last unsaved recording no more, so that it can be replaced.
    void LetUnsavedGo();

    void EnableAsOf(When when);

    void OpenProject(const std::string& path);
    void EnterHistoryMode(const std::string& path);
    void ShowDataFiles();
    void ShowRecordingStart();
    void PreparePlayback();
    void EnterAcquisitionMode();
    void ReenterHistoryMode();
    void Play();
    void Pause();
    void SeekScan(std::int64_t scan);
    void ShowPosition(double percent);
    [[nodiscard]] std::int32_t ScansATick() const;
    [[nodiscard]] bool PlayTick();
    void PlayFAIData(bool& end);
    void PlaySoftAIData(bool& end);
    void PlaySoftDIData(bool& end);
    template <typename T>
    void PlayAnalog(DataBlock<T>& block, bool& end);
    void PlayPorts(std::span<const std::uint8_t> states, std::int64_t scan);

    void ReadBackConnections();

    void ConnectGraph();
    void BuildModeMenu();
    void ZelGraph1_MouseUp();
    /// The time base follows a zoom to so many seconds.
    void TakeTimeSpan(double seconds);
    void ZelGraph1_Error(const QString& text);
    void ConnectPictures();
    [[nodiscard]] QString PictureCaption() const;
    void CopyPicture();
    void SavePicture();
    void WritePicture(const QString& path);
    void PrintPicture();

    [[nodiscard]] std::vector<PlotLook> LiveLooks() const;
    [[nodiscard]] std::vector<PlotLook> HistoryLooks() const;
    /// Unit of the values that a plot shows; empty for a digital line and where it is not known.
    [[nodiscard]] QString UnitOf(const PlotLook& look) const;
    /// Units of the shown plots on an axis, "V, mA".
    [[nodiscard]] QString UnitsOn(int axis) const;

    void ConnectKeys();
    void SetUpTips();
    /// Why most of what is disabled is disabled, or else `otherwise`.
    [[nodiscard]] QString WhatGoesFirst(const QString& otherwise) const;
    [[nodiscard]] QString NextStep() const;
    void ShowNextStep();

    void SnapToMinimum();
    void LayOut(QSize outer);

    Surroundings surroundings;
    bool isLoaded = false;                     ///< Form_Load ran and Form_Unload did not yet
    bool isStopping = false;                   ///< a session hands over what is left and waits for the disk
    bool isPainted = false;                    ///< the window was seen
    std::string stateFolder;                   ///< native path, "" for none
    std::vector<LeftRecording> leftRecordings; ///< that can still be saved, newest first
    QTimer statusTimer;                        ///< of ShowStatus
    RateMeter pace;                            ///< of the session's scans
    LossCounts lossesSeen;                     ///< by NoteLosses
    std::size_t lossesMarked = 0;              ///< of the recorder's list
    double lossStart = 0.0;                    ///< of the newest mark, seconds
    double lastLoss = -1.0;                    ///< seconds after the start; below 0 for none
    std::int64_t diskFree = -1;                ///< bytes at the last look; below 0 for unknown
    QString diskWarning;                       ///< of a disk that is soon full
    std::uint32_t diskSeenAt = 0;              ///< milliseconds from the start to the last look at the disk
    QSize laidOutFor;                          ///< outer size, frame included, that the widgets stand for
    QSize snappedFrom;                         ///< size that the last snap to the minimum found
    QElapsedTimer sinceSnap;                   ///< running since that snap
    int snapsInARow = 0;                       ///< snaps that the desktop undid at once
    std::vector<PlotLook> shownPlots;          ///< what BuildPlots put on the graph
    std::vector<std::int32_t> rawBuffer;       ///< reused by every half
    PollPlan pollPlan;
    PollBoards pollBoards;
    PolledTick polled;                      ///< what the last tick read
    std::unique_ptr<PollReader> pollReader; ///< of boards that may block; let go at a stop
    QTimer silence;                         ///< running while a read is awaited from the event loop
    QString pollStartFault;                 ///< why the last polled start failed
    std::vector<float> scanRow;
    DataBlock<float> hisFloats; ///< what the last tick read
    DataBlock<std::int32_t> hisCodes;
    DataBlock<std::uint8_t> hisPorts;
};

} // namespace tracelet
