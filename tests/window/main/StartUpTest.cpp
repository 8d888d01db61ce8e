#include "tests/support/MainWindowTest.h"

#include "core/base/LittleEndian.h"
#include "window/chart/ZelGraph.h"
#include "window/widgets/ZelLED.h"

#include <QDir>
#include <QFile>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

using StartUpTest = MainWindowTest;

QStringList EntriesOf(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
}

TEST_F(StartUpTest, MembersHaveTheirDefaults) {
    EXPECT_EQ(window->nAISampleCnt, 4096);
    EXPECT_FALSE(window->bFAICyclic);
    EXPECT_FALSE(window->bAISaveToDisk);
    EXPECT_FALSE(window->bDISaveToDisk);
    EXPECT_EQ(window->nTimerInterval, 100);
    EXPECT_EQ(window->nDIMaxPortCount, window->ZelDIO1->MaxPortCount());
    EXPECT_EQ(window->nDIChanCount, 0);
    EXPECT_EQ(window->nDIPortCount, 0);
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_FALSE(window->bHistoryMode);
    EXPECT_FALSE(window->bHisFileExist);
    EXPECT_FALSE(window->isHisPlaying);
    EXPECT_FALSE(window->isHisPlayPaused);
    EXPECT_FALSE(window->bAIEnabled);
    EXPECT_FALSE(window->bDIEnabled);
    EXPECT_TRUE(window->M1.SoftMode);
    EXPECT_EQ(window->dDIVValue, 1.0);
    EXPECT_FALSE(window->isNumEditEventFired);
    EXPECT_EQ(window->FAIFileHandle.Handle(), -1);
    EXPECT_FALSE(window->SoftAIWritten || window->FAIWritten || window->DIWritten);
}

TEST_F(StartUpTest, TablesHaveOneSpareElement) {
    const std::int64_t channels = window->ZelAI1->MaxChannelCount();
    const std::int64_t ports = window->ZelDIO1->MaxPortCount();
    EXPECT_EQ(window->M1.AIChanIsThermo.Count(), channels + 1);
    EXPECT_EQ(window->M1.AIChanConnection.Count(), channels + 1);
    EXPECT_EQ(window->M1.AIThermoExpChan.Count(), channels + 1);
    EXPECT_EQ(window->M1.AIThermoScale.Count(), channels + 1);
    EXPECT_EQ(window->M1.AIThermoType.Count(), channels + 1);
    EXPECT_EQ(window->M1.AIPlotName.Count(), channels + 1);
    EXPECT_EQ(window->M1.DIPortMask.Count(), ports + 1);
    EXPECT_EQ(window->M1.DIPlotName.Count(), ports * 8 + 1);
    for (std::int64_t port = 0; port <= ports; ++port)
        EXPECT_EQ(window->M1.DIPortMask[port], 0);
}

TEST_F(StartUpTest, ThermocoupleNamesHaveTheirOrder) {
    const auto& types = window->M1.ThermoTypeNames;
    ASSERT_EQ(types.Count(), 8);
    const char* expected[] = {"J", "K", "S", "T", "B", "R", "E", ""};
    for (std::int64_t i = 0; i < 8; ++i)
        EXPECT_EQ(types[i], expected[i]);
    const auto& scales = window->M1.ThermoScaleNames;
    ASSERT_EQ(scales.Count(), 4);
    EXPECT_EQ(scales[0], "Celsius");
    EXPECT_EQ(scales[1], "Fahrenheit");
    EXPECT_EQ(scales[2], "Rankine");
    EXPECT_EQ(scales[3], "Kelvin");
}

TEST_F(StartUpTest, GraphShowsTenSecondsOfOneChannel) {
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 0);
    EXPECT_EQ(window->ZelLED1->Text(), u"1.000000"_s);
    ASSERT_EQ(window->ZelGraph1->PlotCount(), 1);
    EXPECT_EQ(window->ZelGraph1->Plot(0).name, u"AI 0"_s);
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 0);
}

TEST_F(StartUpTest, WidgetsStandInTheirFirstState) {
    EXPECT_FALSE(window->CkAISave2Disk->isEnabled());
    EXPECT_FALSE(window->CkDISave2Disk->isEnabled());
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
    EXPECT_FALSE(window->BtnModeSwitch->isEnabled());
    EXPECT_FALSE(window->FrameHis->isEnabled());
    EXPECT_TRUE(window->BtnStart->isEnabled());
    EXPECT_TRUE(window->BtnSet->isEnabled());
    EXPECT_TRUE(window->BtnHistory->isEnabled());
    EXPECT_TRUE(window->FrameCmd->isEnabled());
    EXPECT_EQ(window->BtnModeSwitch->text(), u"History Mode"_s);
    EXPECT_FALSE(window->ZelButton1->Value());
    EXPECT_FALSE(window->ZelButton2->Value());
    EXPECT_EQ(window->ZelButton1->Image(), u"PUSHROCKERSWITCH_OFF"_s);
}

TEST_F(StartUpTest, WorkFolderLivesAsLongAsTheWindow) {
    const std::string work = window->sztmpPath;
    EXPECT_THAT(work, StartsWith(folder.path().toStdString()));
    EXPECT_THAT(FileNameFromPath(work), StartsWith("tl"));
    EXPECT_EQ(window->szProjectFileName, work + "\\Project.tld");
    EXPECT_EQ(window->szAIFileName, work + "\\AI.tld");
    EXPECT_EQ(window->szDIFileName, work + "\\DI.tld");
    EXPECT_EQ(window->szFAIFileName, work + "\\FAI.tld");
    EXPECT_THAT(EntriesOf(QString::fromStdString(NativePath(work))),
                testing::UnorderedElementsAre(u"AI.tld"_s, u"DI.tld"_s, u"FAI.tld"_s, u"Project.tld"_s));
    for (int number : {1, 2, 5})
        EXPECT_TRUE(window->Files.IsOpen(number));
    window->close();
    EXPECT_TRUE(EntriesOf(folder.path()).isEmpty());
}

TEST_F(StartUpTest, StrayFileKeepsTheWorkFolder) {
    const QString work = QString::fromStdString(NativePath(window->sztmpPath));
    QFile stray(work + u"/stray.txt"_s);
    ASSERT_TRUE(stray.open(QIODevice::WriteOnly));
    window->close();
    EXPECT_THAT(EntriesOf(work), ElementsAre(u"stray.txt"_s));
}

TEST_F(StartUpTest, TwoWindowsHaveTwoWorkFolders) {
    frmMain::Surroundings surroundings;
    surroundings.boards = SimulatedBoards();
    surroundings.programFolder = folder.path();
    surroundings.stateFolder = "";
    const frmMain second(std::move(surroundings));
    EXPECT_NE(second.sztmpPath, window->sztmpPath);
    EXPECT_EQ(EntriesOf(folder.path()).size(), 2);
}

TEST_F(StartUpTest, TemporaryFolderServesWhereTheProgramsCannotBeWritten) {
    frmMain::Surroundings surroundings;
    surroundings.boards = SimulatedBoards();
    surroundings.programFolder = folder.path() + u"/missing"_s;
    surroundings.stateFolder = "";
    const frmMain second(std::move(surroundings));
    EXPECT_THAT(second.sztmpPath, StartsWith(GetTempDir()));
    EXPECT_TRUE(second.Files.IsOpen(frmMain::ProjectFileNum));
}

TEST_F(StartUpTest, ClosingStopsARunningSession) {
    TurnOnAI();
    StartPolling();
    Tick(3);
    std::ifstream project(NativePath(window->szProjectFileName), std::ios::binary); // outlives the deletion
    window->close();
    EXPECT_FALSE(window->isSystemRunning);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(project), {}};
    const auto view = std::as_bytes(std::span(bytes));
    ASSERT_EQ(view.size(), 16U + 12U);
    EXPECT_EQ(ReadLittleEndian<std::int32_t>(view, 16), 3);
    EXPECT_DOUBLE_EQ(ReadLittleEndian<double>(view, 20), 0.1);
    EXPECT_TRUE(EntriesOf(folder.path()).isEmpty());
}

TEST_F(StartUpTest, ClosingLeavesNoFileOpen) {
    window->M1.SoftMode = false;
    AnalogBoardInUse().SetPaced(false);
    window->bFAICyclic = true;
    TurnOnAI();
    Click(window->BtnStart);
    ASSERT_TRUE(window->FAIFileHandle.IsOpen());
    window->recording.analogFile = SystemFile(window->szAIFileName, Disposition::OpenAlways);
    window->recording.digitalFile = SystemFile(window->szDIFileName, Disposition::OpenExisting);
    window->close();
    EXPECT_FALSE(window->FAIFileHandle.IsOpen());
    EXPECT_FALSE(window->HisAIFileHandle.IsOpen());
    EXPECT_FALSE(window->recording.digitalFile.IsOpen());
    for (int number = 1; number <= 5; ++number)
        EXPECT_FALSE(window->Files.IsOpen(number)) << number;
    EXPECT_TRUE(EntriesOf(folder.path()).isEmpty());
}

TEST_F(StartUpTest, ExitClosesTheWindow) {
    Click(window->BtnExit);
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(EntriesOf(folder.path()).isEmpty());
}

TEST_F(StartUpTest, WorksWithoutAnyDevice) {
    Open({});
    EXPECT_EQ(window->ZelAI1->DeviceNumber(), -1);
    EXPECT_EQ(window->M1.AIChanIsThermo.Count(), 0);
    EXPECT_EQ(window->M1.DIPortMask.Count(), 1);
    EXPECT_EQ(window->nDIMaxPortCount, 0);
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 0);
    EXPECT_EQ(window->M1.AIPlotName.Count(), 1);
}

TEST_F(StartUpTest, ControlsCanBeFoundByName) {
    for (const char* name : {"ZelAI1",        "ZelThermo1",    "ZelDIO1",       "ZelHiResTimerCtl1",
                             "ZelGraph1",     "ZelButton1",    "ZelButton2",    "ZelLED1",
                             "ZelSliderR",    "ZelSliderV",    "ListView1",     "Picture4",
                             "FrameListView", "FrameSet",      "FrameCmd",      "FrameGraph",
                             "FrameHis",      "BtnStart",      "BtnModeSwitch", "BtnSaveAs",
                             "BtnExit",       "BtnHistory",    "BtnSet",        "CkAISave2Disk",
                             "CkDISave2Disk", "BtnGraphSet",   "BtnClearGraph", "ChkPlay",
                             "BtnStop",       "BtnAccelerate", "BtnHisConvert", "Label1",
                             "Label2",        "Label6",        "Label14",       "Label15",
                             "Label16"})
        EXPECT_NE(window->findChild<QObject*>(QString::fromLatin1(name)), nullptr) << name;
}

TEST_F(StartUpTest, CaptionsAreTheirs) {
    EXPECT_EQ(window->windowTitle(), u"Tracelet"_s);
    EXPECT_EQ(window->FrameSet->title(), u"Device"_s);
    EXPECT_EQ(window->FrameCmd->title(), u"Signal"_s);
    EXPECT_EQ(window->FrameGraph->title(), u"Graph"_s);
    EXPECT_EQ(window->FrameHis->title(), u"History Playback"_s);
    EXPECT_EQ(window->BtnSet->text(), u"&Setting..."_s);
    EXPECT_EQ(window->CkAISave2Disk->text(), u"AI Save2Disk"_s);
    EXPECT_EQ(window->CkDISave2Disk->text(), u"DI Save2Disk"_s);
    EXPECT_EQ(window->BtnStart->text(), u"Start"_s);
    EXPECT_EQ(window->BtnSaveAs->text(), u"Save As"_s);
    EXPECT_EQ(window->BtnHistory->text(), u"&History..."_s);
    EXPECT_EQ(window->BtnExit->text(), u"&Exit"_s);
    EXPECT_EQ(window->BtnGraphSet->text(), u"Setting..."_s);
    EXPECT_EQ(window->BtnClearGraph->text(), u"Clear Graph"_s);
    EXPECT_EQ(window->BtnHisConvert->text(), u"Convert"_s);
    EXPECT_EQ(window->Label14->text(), u"High"_s);
    EXPECT_EQ(window->Label15->text(), u"Slow"_s);
    EXPECT_EQ(window->Label16->text(), u"Play Speed"_s);
    EXPECT_EQ(window->Label6->text(), u"100%"_s);
}

} // namespace
} // namespace tracelet
