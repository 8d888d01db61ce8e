#include "tests/support/FileSizeLimit.h"
#include "tests/support/MainWindowTest.h"

#include "core/base/LittleEndian.h"
#include "window/chart/ZelGraph.h"
#include "window/widgets/ZelLED.h"

#include <QFile>

#include <thread>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class FastAnalogInputTest : public MainWindowTest {
protected:
    FastAnalogInputTest() {
        window->M1.SoftMode = false;
        AnalogBoardInUse().SetPaced(false);
    }

    void UseChannels(std::int32_t count) {
        window->ZelAI1->SetScanChannelCount(count);
        window->BuildPlots(false, true);
    }

    void RunOneShot() {
        Click(window->BtnStart);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
    }

    [[nodiscard]] std::vector<float> Recorded() const {
        const std::vector<std::uint8_t> bytes = Bytes(window->szFAIFileName);
        std::vector<float> values;
        for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4)
            values.push_back(ReadLittleEndian<float>(std::as_bytes(std::span(bytes)), at));
        return values;
    }

    [[nodiscard]] float Expected(std::size_t sample, std::int32_t channels) {
        const SimulatedAnalogBoard& board = AnalogBoardInUse();
        const auto channel = static_cast<std::int32_t>(sample % static_cast<std::size_t>(channels));
        const Signal signal = StreamSignal(board.Number(), channel, window->ZelAI1->SampleRate() / channels);
        return static_cast<float>(SampledValue(board.ConverterOf(),
                                               {channel, board.Info().ranges.front(), SingleEnded}, signal,
                                               sample / static_cast<std::size_t>(channels)));
    }
};

TEST_F(FastAnalogInputTest, OneShotStopsByItselfAfterTheSecondHalf) {
    UseChannels(4);
    TurnOnAI();
    Click(window->CkAISave2Disk);
    RunOneShot();
    EXPECT_EQ(window->ScanCount, 1024);
    EXPECT_EQ(window->BtnStart->text(), u"Start"_s);
    EXPECT_TRUE(window->FAIWritten);
    EXPECT_TRUE(window->BtnSaveAs->isEnabled());
    EXPECT_EQ(window->FAIFileHandle.Handle(), -1);
    const std::vector<float> recorded = Recorded();
    ASSERT_THAT(recorded, SizeIs(4096));
    for (std::size_t i = 0; i < recorded.size(); ++i)
        ASSERT_EQ(recorded[i], Expected(i, 4)) << i;
    EXPECT_EQ(window->ZelGraph1->PointCount(3), 1024);
    EXPECT_EQ(static_cast<float>(window->ZelGraph1->PointAt(2, 10).y()), Expected(42, 4));
    EXPECT_NEAR(window->ZelGraph1->PointAt(2, 10).x(), 10 * 4 / window->ZelAI1->SampleRate(), 1e-9);
}

TEST_F(FastAnalogInputTest, HalvesHoldWholeScans) {
    UseChannels(3);
    window->nAISampleCnt = 1000; // halves of 166 scans
    TurnOnAI();
    Click(window->CkAISave2Disk);
    RunOneShot();
    EXPECT_EQ(window->ScanCount, 332);
    const std::vector<float> recorded = Recorded();
    ASSERT_THAT(recorded, SizeIs(996));
    for (std::size_t i = 0; i < recorded.size(); ++i)
        ASSERT_EQ(recorded[i], Expected(i, 3)) << i;
}

TEST_F(FastAnalogInputTest, StopRecordTellsTheTimeBetweenScans) {
    UseChannels(4);
    window->ZelAI1->SetSampleRate(1000.0);
    TurnOnAI();
    Click(window->CkAISave2Disk);
    RunOneShot();
    const std::vector<std::uint8_t> project = Bytes(window->szProjectFileName);
    const auto view = std::as_bytes(std::span(project));
    EXPECT_EQ(ReadLittleEndian<std::int32_t>(view, view.size() - 12), 1024);
    EXPECT_DOUBLE_EQ(ReadLittleEndian<double>(view, view.size() - 8), 4 / window->ZelAI1->SampleRate());
}

TEST_F(FastAnalogInputTest, OneScanHasItsIntervalToo) {
    AnalogBoardInUse().SetPaced(true);
    UseChannels(2);
    window->ZelAI1->SetSampleRate(1.0);
    window->bFAICyclic = true;
    TurnOnAI();
    Click(window->BtnStart);
    const float scan[] = {1.0F, 2.0F};
    emit window->ZelAI1->OnFirstBufferChange({}, scan, 2);
    Click(window->BtnStart);
    const std::vector<std::uint8_t> project = Bytes(window->szProjectFileName);
    const auto view = std::as_bytes(std::span(project));
    EXPECT_EQ(ReadLittleEndian<std::int32_t>(view, view.size() - 12), 1);
    EXPECT_DOUBLE_EQ(ReadLittleEndian<double>(view, view.size() - 8), 2.0);
}

TEST_F(FastAnalogInputTest, StoppedBeforeTheFirstHalfWritesZeros) {
    AnalogBoardInUse().SetPaced(true);
    window->ZelAI1->SetSampleRate(1.0);
    TurnOnAI();
    Click(window->BtnStart);
    Click(window->BtnStart);
    const std::vector<std::uint8_t> project = Bytes(window->szProjectFileName);
    ASSERT_THAT(project, SizeIs(16 + 12));
    EXPECT_THAT(std::vector(project.end() - 12, project.end()), testing::Each(0));
}

TEST_F(FastAnalogInputTest, ScansOfAHalfAreRoundedHalvesToEven) {
    UseChannels(2);
    const std::vector<float> samples(8, 1.0F);
    const struct {
        std::int32_t dataCount;
        std::int32_t scans;
    } cases[] = {{7, 4}, {5, 2}, {8, 4}, {1, 0}, {3, 2}};
    for (const auto& c : cases) {
        window->ScanCount = 0;
        emit window->ZelAI1->OnFirstBufferChange({}, samples, c.dataCount);
        EXPECT_EQ(window->ScanCount, c.scans) << c.dataCount;
    }
}

TEST_F(FastAnalogInputTest, RawCountsAreRecordedAsLongs) {
    UseChannels(2);
    window->ZelAI1->SetDataType(RawCounts);
    TurnOnAI();
    Click(window->CkAISave2Disk);
    RunOneShot();
    const std::vector<std::uint8_t> bytes = Bytes(window->szFAIFileName);
    ASSERT_THAT(bytes, SizeIs(4096 * 4));
    const SimulatedAnalogBoard& board = AnalogBoardInUse();
    bool anyNegative = false;
    for (std::size_t i = 0; i < 4096; ++i) {
        const auto channel = static_cast<std::int32_t>(i % 2);
        const Signal signal = StreamSignal(board.Number(), channel, window->ZelAI1->SampleRate() / 2);
        const std::int16_t count = SampledCount(
            board.ConverterOf(), {channel, board.Info().ranges.front(), SingleEnded}, signal, i / 2);
        anyNegative = anyNegative || count < 0;
        const std::int32_t expected = count < 0 ? count + 65537 : count;
        ASSERT_EQ(ReadLittleEndian<std::int32_t>(std::as_bytes(std::span(bytes)), i * 4), expected) << i;
        ASSERT_EQ(window->ZelGraph1->PointAt(channel, static_cast<std::int64_t>(i / 2)).y(), expected);
    }
    EXPECT_TRUE(anyNegative);
    EXPECT_EQ(window->ScanCount, 2048);
    EXPECT_NEAR(window->ZelGraph1->PointAt(1, 100).x(), 100 * 2 / window->ZelAI1->SampleRate(), 1e-9);
}

TEST_F(FastAnalogInputTest, RawCountsOfTheTaggedFamilyKeepTheirLowTwelveBits) {
    constexpr std::int32_t Board6602 = 4;
    window->ZelAI1->SetDeviceNumber(Board6602);
    ASSERT_TRUE(window->ZelAI1->DeviceName().contains(u"6602"));
    AnalogBoardInUse().SetPaced(false);
    window->InitPlotAttributes(true);
    UseChannels(3);
    window->nAISampleCnt = 600;
    window->ZelAI1->SetDataType(RawCounts);
    TurnOnAI();
    Click(window->CkAISave2Disk);
    RunOneShot();
    const std::vector<std::uint8_t> bytes = Bytes(window->szFAIFileName);
    ASSERT_THAT(bytes, SizeIs(600 * 4));
    const SimulatedAnalogBoard& board = AnalogBoardInUse();
    bool anyTag = false;
    for (std::size_t i = 0; i < 600; ++i) {
        const auto channel = static_cast<std::int32_t>(i % 3);
        const Signal signal = StreamSignal(board.Number(), channel, window->ZelAI1->SampleRate() / 3);
        const std::int16_t count = SampledCount(
            board.ConverterOf(), {channel, board.Info().ranges.front(), SingleEnded}, signal, i / 3);
        anyTag = anyTag || (count & 0xF000) != 0;
        ASSERT_EQ(ReadLittleEndian<std::int32_t>(std::as_bytes(std::span(bytes)), i * 4), count & 0xFFF) << i;
    }
    EXPECT_TRUE(anyTag);
}

TEST_F(FastAnalogInputTest, NothingIsWrittenWithoutTheSaveBox) {
    TurnOnAI();
    for (const std::int32_t type : {AnalogValues, RawCounts}) {
        window->ZelAI1->SetDataType(type);
        RunOneShot();
        EXPECT_FALSE(window->FAIWritten);
        EXPECT_THAT(Recorded(), IsEmpty());
        EXPECT_FALSE(window->BtnSaveAs->isEnabled());
        EXPECT_EQ(window->ScanCount, 4096);
        EXPECT_EQ(window->ZelGraph1->PointCount(0), 4096);
    }
}

TEST_F(FastAnalogInputTest, OneShotKeepsTheAxisAndTheWholeBuffer) {
    window->nAISampleCnt = 8192;
    TurnOnAI();
    RunOneShot();
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 8192);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 8192);
    EXPECT_EQ(window->dDIVValue, 1.0);
}

TEST_F(FastAnalogInputTest, CyclicWindowFollowsTheRate) {
    const struct {
        double rate;
        double seconds;
        std::int32_t length;
    } cases[] = {{25000, 4.0, 100000}, {1000, 10.0, 10000}, {100000, 1.0, 100000}};
    window->bFAICyclic = true;
    TurnOnAI();
    for (const auto& c : cases) {
        window->ZelAI1->SetSampleRate(c.rate);
        ASSERT_EQ(window->ZelAI1->SampleRate(), c.rate);
        ASSERT_TRUE(window->FAIStart());
        EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
        EXPECT_DOUBLE_EQ(window->ZelGraph1->XAxisMax(), c.seconds);
        EXPECT_EQ(window->ZelGraph1->ChartLength(), c.length);
        EXPECT_DOUBLE_EQ(window->dDIVValue, c.seconds / 10);
        EXPECT_DOUBLE_EQ(window->ZelLED1->Value(), c.seconds / 10);
        EXPECT_FALSE(window->isNumEditEventFired);
        window->ZelAI1->StopBufferedAI(0);
    }
}

TEST_F(FastAnalogInputTest, CyclicRunsUntilStopped) {
    AnalogBoardInUse().SetPaced(true); // the stop hands over all that the board could deliver
    window->ZelAI1->SetSampleRate(1e6);
    window->bFAICyclic = true;
    TurnOnAI();
    Click(window->CkAISave2Disk);
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount >= 6 * 2048; }, 20000));
    EXPECT_TRUE(window->isSystemRunning);
    Click(window->BtnStart);
    const std::int32_t scans = window->ScanCount;
    QTest::qWait(30);
    EXPECT_EQ(window->ScanCount, scans);
    EXPECT_FALSE(window->isSystemRunning);
    const std::vector<float> recorded = Recorded();
    ASSERT_THAT(recorded, SizeIs(static_cast<std::size_t>(scans)));
    for (std::size_t i = 0; i < recorded.size(); ++i)
        ASSERT_EQ(recorded[i], Expected(i, 1)) << i;
}

TEST_F(FastAnalogInputTest, WindowThatHangsLosesNothing) {
    constexpr int HangSeconds = 1;
    AnalogBoardInUse().SetPaced(true);
    UseChannels(16);
    window->ZelAI1->SetSampleRate(1e6);
    window->nAISampleCnt = 500000;
    window->bFAICyclic = true;
    TurnOnAI();
    Click(window->CkAISave2Disk);
    Click(window->BtnStart);
    std::this_thread::sleep_for(std::chrono::seconds(HangSeconds));
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount >= HangSeconds * 62500; }, 60000));
    Click(window->BtnStart);
    EXPECT_EQ(window->OverrunCount, 0);
    const std::vector<float> recorded = Recorded();
    ASSERT_EQ(recorded.size(), static_cast<std::size_t>(window->ScanCount) * 16);
    for (std::size_t i = 0; i < recorded.size(); i += 997) // every channel in turn
        ASSERT_EQ(recorded[i], Expected(i, 16)) << i;
}

TEST_F(FastAnalogInputTest, CyclicWindowStartsAtZero) {
    window->bFAICyclic = true;
    window->ZelGraph1->SetXAxisMin(-3.0);
    TurnOnAI();
    Click(window->BtnStart);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    Click(window->BtnStart);
}

TEST_F(FastAnalogInputTest, FileStaysOpenAfterASessionThatDidNotRecord) {
    TurnOnAI();
    RunOneShot();
    EXPECT_TRUE(window->FAIFileHandle.IsOpen());
    Click(window->CkAISave2Disk);
    RunOneShot();
    EXPECT_FALSE(window->FAIFileHandle.IsOpen());
}

TEST_F(FastAnalogInputTest, EveryRecordingStartsItsFileAnew) {
    TurnOnAI();
    Click(window->CkAISave2Disk);
    RunOneShot();
    window->nAISampleCnt = 1000;
    RunOneShot();
    EXPECT_THAT(Recorded(), SizeIs(1000));
    EXPECT_EQ(Recorded().front(), Expected(0, 1));
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 1000);
    EXPECT_EQ(window->ZelGraph1->PointAt(0, 0).x(), 0.0);
}

TEST_F(FastAnalogInputTest, NothingWrittenMeansNothingToSave) {
    window->bFAICyclic = true;
    TurnOnAI();
    Click(window->CkAISave2Disk);
    Click(window->BtnStart);
    window->FAIFileHandle.Close();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount >= 2048; }, 20000));
    EXPECT_FALSE(window->FAIWritten);
    Click(window->BtnStart);
    EXPECT_FALSE(window->BtnSaveAs->isEnabled());
}

TEST_F(FastAnalogInputTest, ErrorsOfANotificationEndIt) {
    Open({}); // nothing is scanned: the scans of a half cannot be counted
    const std::vector<float> samples(8, 1.0F);
    EXPECT_NO_THROW(window->ZelAI1_OnFirstBufferChange({}, samples, 8));
    EXPECT_NO_THROW(window->ZelAI1_OnSecondBufferChange({}, samples, 8));
    EXPECT_EQ(window->ScanCount, 0);
    EXPECT_FALSE(window->isSystemRunning);
}

TEST_F(FastAnalogInputTest, OnlyTheScannedPlotsShow) {
    SelectPorts(0, {0x03});
    UseChannels(2);
    ASSERT_EQ(window->ZelGraph1->PlotCount(), 4);
    TurnOnAI();
    RunOneShot();
    EXPECT_TRUE(window->ZelGraph1->PlotVisible(0));
    EXPECT_TRUE(window->ZelGraph1->PlotVisible(1));
    EXPECT_FALSE(window->ZelGraph1->PlotVisible(2));
    EXPECT_FALSE(window->ZelGraph1->PlotVisible(3));
}

TEST_F(FastAnalogInputTest, BlocksThatCannotBeWrittenShowOnTheSaveBoxAndWait) {
    window->bFAICyclic = true;
    TurnOnAI();
    Click(window->CkAISave2Disk);
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount >= 2048; }, 20000));
    {
        const FileSizeLimit full(static_cast<rlim_t>(window->FAIFileHandle.Size()));
        const std::int32_t scans = window->ScanCount;
        ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount >= scans + 4096; }, 20000));
        EXPECT_TRUE(window->isSystemRunning);
        EXPECT_THAT(window->CkAISave2Disk->toolTip().toStdString(),
                    testing::StartsWith("Recording stopped: "));
        EXPECT_LE(Recorded().size(), static_cast<std::size_t>(scans));
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->CkAISave2Disk->toolTip().isEmpty(); }, 20000));
    EXPECT_EQ(window->CkAISave2Disk->styleSheet(), QString());
    Click(window->BtnStart);
    EXPECT_THAT(Recorded(), SizeIs(static_cast<std::size_t>(window->ScanCount))) << "nothing is lost";
    EXPECT_EQ(window->LostScanCount, 0);
}

TEST_F(FastAnalogInputTest, UnpluggedBoardEndsTheSessionWithItsText) {
    window->bFAICyclic = true;
    TurnOnAI();
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount >= 2048; }, 20000));
    Faults faults;
    faults.unplugged = true;
    AnalogBoardInUse().SetFaults(faults);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeModalWidget() == nullptr; }, 20000));
    EXPECT_THAT(boxes.Take(), ElementsAre(MessageBoxes::Box{
                                  "The board does not answer; it may have been unplugged", "BtnStart"}));
}

TEST_F(FastAnalogInputTest, OverrunIsCountedAndTheSessionGoesOn) {
    window->bFAICyclic = true;
    TurnOnAI();
    Click(window->BtnStart);
    Faults faults;
    faults.lostScans = 10;
    AnalogBoardInUse().SetFaults(faults);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->OverrunCount == 1; }, 20000));
    const std::int32_t scans = window->ScanCount;
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount > scans; }, 20000));
    Click(window->BtnStart);
}

TEST_F(FastAnalogInputTest, DigitalSwitchAloneStartsFastInput) {
    SelectPorts(0, {0x01});
    TurnOnDI();
    RunOneShot();
    EXPECT_EQ(window->ScanCount, 4096);
}

TEST_F(FastAnalogInputTest, CountThatCannotBeHeldIsRefused) {
    window->nAISampleCnt = 2147483647;
    TurnOnAI();
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(), ElementsAre(testing::Field(&MessageBoxes::Box::title, "BtnStart")));
    EXPECT_FALSE(window->isSystemRunning);
}

TEST_F(FastAnalogInputTest, ScanCountStaysAtTheHighestNumber) {
    TurnOnAI();
    Click(window->BtnStart);
    window->ScanCount = 2147483647 - 5;
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
    EXPECT_EQ(window->ScanCount, 2147483647);
}

} // namespace
} // namespace tracelet
