#include "tests/support/MainWindowTest.h"

#include "core/recordings/ProjectInfo.h"
#include "window/chart/ZelGraph.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class WriteProjectInfoTest : public MainWindowTest {
protected:
    [[nodiscard]] ProjectInfo Written() {
        StartPolling();
        Tick(1);
        Click(window->BtnStart);
        return ReadProjectFile(window->szProjectFileName);
    }
};

TEST_F(WriteProjectInfoTest, BytesOfAnAnalogRecording) {
    TurnOnAI();
    Click(window->CkAISave2Disk);
    window->M1.AIChanIsThermo[2] = true;
    StartPolling();
    const std::vector<std::uint8_t> bytes = Bytes(window->szProjectFileName);
    Click(window->BtnStart);
    const std::int32_t channels = window->ZelAI1->MaxChannelCount();
    std::vector<std::uint8_t> expected = {0xFF, 0xFF, 0,   0,   0xFF, 0xFF,
                                          0xFF, 0xFF, // flags
                                          1,    0,    0,   0,   0,    0,
                                          0,    0, // counts
                                          0xFF, 0,    0,   0,   0,    0,
                                          0,    0, // red, solid
                                          'A',  'I',  ' ', '0', 0,    static_cast<std::uint8_t>(channels),
                                          0,    0,    0};
    for (std::int32_t channel = 0; channel < channels; ++channel)
        expected.push_back(channel == 2 ? 255 : 0);
    EXPECT_EQ(bytes, expected);
}

TEST_F(WriteProjectInfoTest, FlagsNeedSwitchAndSaveBox) {
    SelectPorts(0, {0x05});
    TurnOnAI();
    TurnOnDI();
    const struct {
        bool ai;
        bool di;
    } cases[] = {{false, false}, {true, false}, {true, true}, {false, true}};
    for (const auto& c : cases) {
        if (window->CkAISave2Disk->isChecked() != c.ai)
            Click(window->CkAISave2Disk);
        if (window->CkDISave2Disk->isChecked() != c.di)
            Click(window->CkDISave2Disk);
        StartPolling();
        const std::vector<std::uint8_t> bytes = Bytes(window->szProjectFileName);
        Click(window->BtnStart);
        EXPECT_EQ(bytes[0], c.ai ? 0xFF : 0);
        EXPECT_EQ(bytes[2], c.di ? 0xFF : 0);
        EXPECT_EQ(bytes[8], 1);
        EXPECT_EQ(bytes[12], 2); // lines, whatever is saved
        if (!c.ai && !c.di) {
            EXPECT_THAT(bytes, SizeIs(16));
        }
    }
}

TEST_F(WriteProjectInfoTest, TickedSaveBoxOfASwitchThatIsOffRecordsNothing) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    TurnOnDI();
    Click(window->CkAISave2Disk);
    Click(window->CkDISave2Disk);
    TurnOnAI();
    const ProjectInfo digital = Written();
    EXPECT_FALSE(digital.bHisAI);
    EXPECT_TRUE(digital.bHisDI);
    EXPECT_THAT(Bytes(window->szAIFileName), SizeIs(0));
    TurnOnDI();
    TurnOnAI();
    const ProjectInfo analog = Written();
    EXPECT_TRUE(analog.bHisAI);
    EXPECT_FALSE(analog.bHisDI);
    EXPECT_THAT(Bytes(window->szDIFileName), SizeIs(0));
}

TEST_F(WriteProjectInfoTest, DigitalSectionsFollowTheAnalogPlots) {
    SelectPorts(1, {0x05, 0x80});
    window->ZelAI1->SetScanChannelCount(2);
    window->BuildPlots(false, true);
    window->M1.DIPlotColor[8] = 0x80000016;
    window->M1.DIPlotLineStyle[10] = 3;
    window->BuildPlots(false, true);
    TurnOnDI();
    Click(window->CkDISave2Disk);
    const ProjectInfo info = Written();
    EXPECT_FALSE(info.bHisAI);
    EXPECT_TRUE(info.bHisDI);
    EXPECT_THAT(info.diPlots,
                ElementsAre(PlotRecord{static_cast<std::int32_t>(0x80000016), 0, "DI 1:0"},
                            PlotRecord{0x00FFFF, 3, "DI 1:2"}, PlotRecord{0xFFFFFF, 0, "DI 2:7"}));
    EXPECT_THAT(info.HisDIPortMask, ElementsAre(0, 0x05, 0x80, 0));
    EXPECT_EQ(info.ScanCount, 1);
}

TEST_F(WriteProjectInfoTest, LineThatIsNotOnTheGraphComesFromTheTables) {
    AnalogBoardInUse().SetPaced(false);
    window->M1.SoftMode = false;
    const auto records = [&](std::int32_t start, std::initializer_list<std::uint8_t> masks) {
        SelectPorts(start, masks);
        TurnOnAI();
        window->BuildPlots(false, true);
        EXPECT_EQ(window->ZelGraph1->PlotCount(), 1);
        TurnOnAI();
        TurnOnDI();
        window->CkDISave2Disk->setChecked(true);
        Click(window->BtnStart);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
        TurnOnDI();
        return ReadProjectFile(window->szProjectFileName).diPlots;
    };
    constexpr std::int32_t White = 0xFFFFFF;
    constexpr std::int32_t Yellow = 0x00FFFF;
    EXPECT_THAT(records(0, {0x03}),
                ElementsAre(PlotRecord{White, 0, "DI 0:0"}, PlotRecord{White, 0, "DI 0:1"}));
    window->M1.DIPortMask[0] = 0x80; // ticked since, in settings that were not accepted
    EXPECT_THAT(records(1, {0x05, 0x00, 0x80}),
                ElementsAre(PlotRecord{Yellow, 0, "DI 1:0"}, PlotRecord{Yellow, 0, "DI 1:2"},
                            PlotRecord{Yellow, 0, "DI 3:7"}));
}

TEST_F(WriteProjectInfoTest, StaleLineCountAndRecordsAgree) {
    SelectPorts(0, {0x03});
    TurnOnDI();
    Click(window->CkDISave2Disk);
    window->M1.DIPortMask[0] = 0x01; // changed in the settings, which were not accepted
    window->BuildPlots(false, true);
    const ProjectInfo info = Written();
    EXPECT_EQ(info.nHisDIChanCount, 2);
    EXPECT_THAT(info.diPlots, ElementsAre(PlotRecord{0xFFFFFF, 0, "DI 0:0"}, PlotRecord{}));
}

TEST_F(WriteProjectInfoTest, FastRecordingTellsItsSampleForm) {
    AnalogBoardInUse().SetPaced(false);
    window->M1.SoftMode = false;
    TurnOnAI();
    Click(window->CkAISave2Disk);
    for (const std::int32_t type : {RawCounts, AnalogValues}) {
        window->ZelAI1->SetDataType(type);
        Click(window->BtnStart);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
        const ProjectInfo info = ReadProjectFile(window->szProjectFileName);
        EXPECT_FALSE(info.bHisAISoft);
        EXPECT_EQ(info.bHisAIAnalog, type == AnalogValues);
    }
    window->M1.SoftMode = true;
    window->ZelAI1->SetDataType(RawCounts);
    EXPECT_TRUE(Written().bHisAIAnalog);
}

TEST_F(WriteProjectInfoTest, EveryStartEmptiesTheWorkFiles) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    TurnOnDI();
    Click(window->CkAISave2Disk);
    Click(window->CkDISave2Disk);
    (void)Written();
    EXPECT_THAT(Bytes(window->szAIFileName), SizeIs(4));
    EXPECT_THAT(Bytes(window->szDIFileName), SizeIs(9));
    StartPolling();
    EXPECT_THAT(Bytes(window->szAIFileName), SizeIs(0));
    EXPECT_THAT(Bytes(window->szDIFileName), SizeIs(8));
    EXPECT_TRUE(window->FAIFileHandle.IsOpen());
    Click(window->BtnStart);
}

TEST_F(WriteProjectInfoTest, FastFileThatCannotBeCreatedIsTold) {
    TurnOnAI();
    (void)Written();
    ASSERT_TRUE(window->FAIFileHandle.IsOpen());
    const QString path = QString::fromStdString(NativePath(window->szFAIFileName));
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkdir(path));
    Click(window->CkAISave2Disk);
    const ProjectInfo info = Written();
    EXPECT_THAT(boxes.Take(), ElementsAre(MessageBoxes::Box{"CreateFile Fails ", "WriteProjectInfo"}));
    EXPECT_EQ(info.ScanCount, 1);
    EXPECT_FALSE(window->FAIFileHandle.IsOpen());
    EXPECT_TRUE(QDir().rmdir(path));
}

TEST_F(WriteProjectInfoTest, HeaderThatCannotBeWrittenShowsOnTheBoxesOfWhatIsRecorded) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    TurnOnDI();
    const QString path = QString::fromStdString(NativePath(window->szProjectFileName));
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkdir(path));
    const struct {
        bool ai;
        bool di;
    } cases[] = {{false, false}, {true, false}, {false, true}, {true, true}};
    const auto told = [](const QCheckBox* box) {
        return box->toolTip().startsWith(u"Recording stopped: "_s) && !box->styleSheet().isEmpty();
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.ai << c.di);
        window->CkAISave2Disk->setChecked(c.ai);
        window->CkDISave2Disk->setChecked(c.di);
        StartPolling();
        Tick(2);
        EXPECT_EQ(told(window->CkAISave2Disk), c.ai);
        EXPECT_EQ(told(window->CkDISave2Disk), c.di);
        EXPECT_EQ(window->ScanCount, 2);
        EXPECT_THAT(Bytes(window->szAIFileName), SizeIs(0)); // a recording that nothing describes
        EXPECT_FALSE(window->SoftAIWritten || window->DIWritten);
        Click(window->BtnStart);
        EXPECT_FALSE(window->BtnSaveAs->isEnabled());
    }
    EXPECT_TRUE(QDir().rmdir(path));
    (void)Written();
    EXPECT_FALSE(told(window->CkAISave2Disk) || told(window->CkDISave2Disk));
    EXPECT_TRUE(window->BtnSaveAs->isEnabled());
}

} // namespace
} // namespace tracelet
