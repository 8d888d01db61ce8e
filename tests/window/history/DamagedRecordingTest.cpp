#include "tests/window/history/HistoryWindowTest.h"

#include <QTreeWidget>

namespace tracelet {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Not;
using Box = MessageBoxes::Box;

class DamagedRecordingTest : public HistoryWindowTest {
protected:
    /// Opens a project of these bytes and expects one box with the title of the command.
    void ExpectRefused(const std::string& bytes, const std::string& text) {
        OpenProject(saved.Write("Broken.tlp", bytes));
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{text, "BtnHistory"}));
    }
};

TEST_F(DamagedRecordingTest, RecordingStoppedBeforeTheFirstScanFailsByDivision) {
    SavedRecording recording = Polled(0, 0.0);
    window->ZelGraph1->SetXAxisMax(30.0);
    window->dDIVValue = 25.0;
    OpenSaved(recording);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Division by zero", "BtnHistory"}));
    EXPECT_TRUE(window->bHistoryMode);
    EXPECT_TRUE(window->bHisFileExist);
    EXPECT_EQ(window->BtnModeSwitch->text(), u"Acquisition");
    EXPECT_TRUE(window->FrameHis->isEnabled());
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 2);
    EXPECT_TRUE(window->HisAIFileHandle.IsOpen());
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
    EXPECT_EQ(window->dDIVValue, 1.0);
    EXPECT_FALSE(window->ZelHiResTimerCtl1->TimerExists(frmMain::PlayTimer));

    Click(window->ChkPlay); // nothing to play
    EXPECT_FALSE(window->ChkPlay->isChecked());
    EXPECT_FALSE(window->isHisPlaying);
    EXPECT_TRUE(window->BtnModeSwitch->isEnabled());
    Click(window->BtnModeSwitch);
    EXPECT_TRUE(window->BtnStart->isEnabled());
    ASSERT_EQ(window->ZelGraph1->PlotCount(), 1); // the live plots, though there is no timer to stop
    EXPECT_EQ(window->ZelGraph1->Plot(0).name, u"AI 0");
}

TEST_F(DamagedRecordingTest, MovedAnalogDataAreCreatedEmpty) {
    const std::string project = Save(Polled(3));
    std::filesystem::remove(saved / "Saved/AI.tld");
    OpenProject(project);
    EXPECT_TRUE(window->HisAIFileHandle.IsOpen());
    EXPECT_EQ(std::filesystem::file_size(saved / "Saved/AI.tld"), 0U);
    Click(window->ChkPlay);
    PlayTicks(1);
    EXPECT_FALSE(window->isHisPlaying);
    EXPECT_THAT(PointsOf(0), IsEmpty());
}

TEST_F(DamagedRecordingTest, MissingDigitalDataAreToldAndLoadingGoesOn) {
    SavedRecording recording = Polled(3);
    AddDigital(recording, 3);
    const std::string project = Save(recording);
    std::filesystem::remove(saved / "Saved/DI.tld");
    OpenProject(project);
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"File not found", "ReadHisAIFile"}));
    EXPECT_FALSE(std::filesystem::exists(saved / "Saved/DI.tld"));
    EXPECT_TRUE(window->ZelHiResTimerCtl1->TimerExists(frmMain::PlayTimer));
    EXPECT_EQ(window->ZelSliderV->Value(), 1 / Slow);
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 5); // the plots are those of the project
    EXPECT_EQ(window->ListView1->topLevelItemCount(), 5);
    Click(window->ChkPlay);
    PlayTicks(3);
    EXPECT_TRUE(window->isHisPlaying);
    EXPECT_EQ(PointsOf(0).size(), 3U);
    EXPECT_THAT(PointsOf(2), IsEmpty());
    PlayTicks(1);
    EXPECT_FALSE(window->isHisPlaying);
    EXPECT_EQ(Notice(), "");
}

TEST_F(DamagedRecordingTest, AnalogPathsThatCannotBeOpened) {
    SavedRecording recording = Polled(3);
    Save(recording);
    const std::string loop = saved / "loop";
    ASSERT_EQ(symlink(loop.c_str(), loop.c_str()), 0);
    for (const std::string& path : {std::string(), saved.Path(), std::string("C:\\Data\\AI.tld"),
                                    std::string("\\\\server\\share\\AI.tld"), loop,
                                    saved / "NoFolder\\AI.tld", saved / "Saved\\Project.tlp\\AI.tld"}) {
        recording.info.AIDataPath = path;
        OpenProject(saved.Write("Alone.tlp", ProjectBytes(recording.info)));
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"CreateFile Fails ", "ReadHisAIFile"})) << path;
        EXPECT_EQ(Notice(), "") << path;
        EXPECT_FALSE(window->HisAIFileHandle.IsOpen()) << path;
        EXPECT_TRUE(window->ZelHiResTimerCtl1->TimerExists(frmMain::PlayTimer)) << path;
        Click(window->ChkPlay);
        PlayTicks(1); // a closed file is a short read
        EXPECT_FALSE(window->isHisPlaying) << path;
    }
}

TEST_F(DamagedRecordingTest, DigitalPathsThatCannotBeOpened) {
    SavedRecording recording = Digital(3);
    const std::string loop = saved / "loop";
    ASSERT_EQ(symlink(loop.c_str(), loop.c_str()), 0);
    for (const std::string& path :
         {std::string(), saved.Path(), std::string("D:\\Data\\DI.tld"), loop, saved / "NoFolder\\DI.tld"}) {
        recording.info.DIDataPath = path;
        OpenProject(saved.Write("Project.tlp", ProjectBytes(recording.info)));
        EXPECT_THAT(boxes.Take(), ElementsAre(AllOf(Field(&Box::title, "ReadHisAIFile"),
                                                    Field(&Box::text, Not(IsEmpty())))))
            << path;
        EXPECT_FALSE(window->recording.digitalFile.IsOpen()) << path;
        Click(window->ChkPlay);
        PlayTicks(1);
        EXPECT_FALSE(window->isHisPlaying) << path;
    }
}

TEST_F(DamagedRecordingTest, FaultIsToldOfARecordingThatIsOpenWhole) {
    SavedRecording recording = Polled(3);
    AddDigital(recording, 3);
    Save(recording);
    recording.info.AIDataPath = saved.Path();
    recording.info.DIDataPath = saved / "Saved\\DI.tld";
    double level = 0.0;
    bool isDigitalOpen = false;
    boxes.WhenNextOpens([&] {
        level = window->ZelGraph1->Plot(4).level;
        isDigitalOpen = window->recording.digitalFile.IsOpen() && window->nHisDIPortCount == 2;
    });
    OpenProject(saved.Write("Alone.tlp", ProjectBytes(recording.info)));
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"CreateFile Fails ", "ReadHisAIFile"}));
    EXPECT_EQ(level, 36.0);
    EXPECT_TRUE(isDigitalOpen);
}

TEST_F(DamagedRecordingTest, DigitalHeaderThatIsCutOrAbsurd) {
    SavedRecording recording = Digital(3);
    const std::string whole = recording.digital;
    for (std::size_t size = 0; size < 8; ++size) {
        recording.digital = whole.substr(0, size);
        OpenSaved(recording);
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Unexpected end of file", "ReadHisAIFile"})) << size;
    }
    for (const auto& [start, count] : std::vector<std::pair<int, int>>{
             {0, 0}, {0, -1}, {-1, 1}, {0, 2147483647}, {2147483647, 1}, {-2147483647, 2147483647}}) {
        recording.digital = BytesOf(std::vector<std::int32_t>{start, count}) + whole.substr(8);
        OpenSaved(recording);
        EXPECT_THAT(boxes.Take(), ElementsAre(AllOf(Field(&Box::title, "ReadHisAIFile"),
                                                    Field(&Box::text, Not(IsEmpty())))))
            << start << ", " << count;
        EXPECT_EQ(window->nHisDIPortCount, 0);
        EXPECT_FALSE(window->recording.digitalFile.IsOpen());
        Click(window->ChkPlay);
        PlayTicks(1);
        EXPECT_FALSE(window->isHisPlaying);
    }
}

TEST_F(DamagedRecordingTest, ProjectCutAnywhereBeforeThePathsIsRefused) {
    SavedRecording recording = Polled(1);
    AddDigital(recording, 1);
    const std::string fields =
        AsText(ProjectHeader(recording.info)) + AsText(StopRecord(recording.info.ScanCount, Slow));
    window->bHistoryMode = true;
    window->szHisProjectFileName = saved / "Cut.tlp";
    for (std::size_t size = 0; size < fields.size(); ++size) {
        saved.Write("Cut.tlp", fields.substr(0, size));
        EXPECT_NE(FaultOf([this] { window->ReadProjectInfo(); }), "") << size;
        EXPECT_FALSE(window->bHisAI) << size; // nothing is taken of it
        if (size % 11 != 0)
            continue;
        OpenProject(saved / "Cut.tlp");
        ASSERT_THAT(boxes.Take(),
                    ElementsAre(AllOf(Field(&Box::title, "BtnHistory"), Field(&Box::text, Not(IsEmpty())))))
            << size;
        EXPECT_TRUE(window->bHistoryMode);
    }
}

TEST_F(DamagedRecordingTest, ProjectWithoutPathsHasEmptyOnes) {
    const SavedRecording recording = Polled(1);
    OpenProject(saved.Write("Work.tlp", AsText(ProjectHeader(recording.info)) + AsText(StopRecord(1, Slow))));
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"CreateFile Fails ", "ReadHisAIFile"}));
    EXPECT_EQ(window->AIDataPath, "");
    EXPECT_EQ(window->DIDataPath, "");
}

TEST_F(DamagedRecordingTest, CountsThatCannotBeTrueAreRefused) {
    SavedRecording recording = Polled(1);
    AddDigital(recording, 1);
    const std::string whole = ProjectBytes(recording.info);
    const auto with = [&](std::size_t offset, std::int32_t count) {
        std::string bytes = whole;
        return bytes.replace(offset, 4, BytesOf(std::vector<std::int32_t>{count}));
    };
    constexpr std::size_t AnalogCount = 8;
    constexpr std::size_t DigitalCount = 12;
    for (std::size_t offset : {AnalogCount, DigitalCount}) {
        ExpectRefused(with(offset, 0), "Subscript out of range");
        ExpectRefused(with(offset, -1), "Subscript out of range");
    }
    ExpectRefused(with(AnalogCount, 2147483647), "The project file cannot hold 2147483647 analog plots");
    ExpectRefused(with(DigitalCount, 1000000), "The project file cannot hold 1000000 digital plots");
    std::string room = with(AnalogCount, 65536);
    ExpectRefused(room.append(std::size_t{9} * 65536, '\0'),
                  "The project file cannot hold 65536 analog plots");
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 1); // nothing is taken of it
    const std::size_t channels = whole.find(std::string("\x04\0\0\0\0\xFF", 6));
    ASSERT_NE(channels, std::string::npos);
    ExpectRefused(with(channels, 65537), "The project file cannot hold 65537 analog channels");
    const std::size_t ports = whole.find(std::string("\x03\0\0\0\xFF\x81", 6));
    ASSERT_NE(ports, std::string::npos);
    ExpectRefused(with(ports, 30000), "The project file cannot hold 30000 digital ports");
    recording.info.ScanCount = -5;
    ExpectRefused(ProjectBytes(recording.info), "The project file has a scan count of -5");
    recording.info.ScanCount = 5;
    recording.info.ScanInterval = -1.0;
    ExpectRefused(ProjectBytes(recording.info), "The project file has a scan interval of -1");
    recording.info.ScanInterval = 1e-9;
    EXPECT_TRUE(window->bHistoryMode);
}

TEST_F(DamagedRecordingTest, ChartLengthBeyond32BitsIsAnOverflow) {
    OpenSaved(Polled(3, 1e-9));
    EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Overflow", "BtnHistory"}));
    EXPECT_TRUE(window->bHistoryMode);
}

TEST_F(DamagedRecordingTest, RecordingThatCannotBeReadLeavesTheOneBefore) {
    OpenSaved(Polled(4));
    ExpectRefused("nonsense", "The file is not a Tracelet project");
    Click(window->ChkPlay);
    PlayTicks(2);
    EXPECT_THAT(PointsOf(1), ElementsAre(std::pair(0.0, 1.0), std::pair(Slow, 11.0)));
}

} // namespace
} // namespace tracelet
