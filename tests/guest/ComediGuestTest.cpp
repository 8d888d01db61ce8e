#include "tests/support/MainWindowTest.h"

#include "core/base/LittleEndian.h"
#include "core/base/RunTimeError.h"
#include "core/drivers/comedi/ComediBoards.h"
#include "core/drivers/comedi/ComediDevice.h"
#include "window/chart/ZelGraph.h"

#include <QProcess>

#include <chrono>
#include <cmath>
#include <thread>

using namespace Qt::StringLiterals;

// Real boards through the real window, on Comedi's own drivers as the guest attaches them: comedi0 is a
// waveform board (channel 0 a sawtooth, channel 1 a square wave, of 1 V and 100 ms), comedi1 the parallel
// port, comedi2 an 8255 chip. Codes of the waveform board are 16 bits over -10 to 10 V, with 0 V at code
// 32767.

namespace tracelet {
namespace {

using testing::ElementsAre;

constexpr double Step = 20.0 / 65535.0; // volts of one code
constexpr double Amplitude = 1.0;
constexpr double Period = 0.1;      // seconds of the waveform
constexpr int LongestWait = 600000; // milliseconds of the guest's clock, which runs ahead while it idles

BoardList RealBoards() {
    BoardList boards;
    FindComediBoards(boards);
    return boards;
}

std::shared_ptr<AnalogBoard> Waveform() {
    auto board = RealBoards().analog.at(0).board;
    board->Open();
    return board;
}

ComediHandle OpenBeside(const char* node) {
    ComediHandle handle(comedi_open(node));
    EXPECT_TRUE(handle) << node;
    return handle;
}

StreamSetup StreamOf(const AnalogBoard& board, std::int32_t channels, double rate, std::uint64_t total) {
    StreamSetup setup;
    for (std::int32_t channel = 0; channel < channels; ++channel)
        setup.channels.push_back({channel, board.Info().ranges.front(), SingleEnded});
    setup.sampleRate = board.SettleSampleRate(rate, channels);
    setup.totalSamples = total;
    return setup;
}

int Configure(const QStringList& arguments) {
    return QProcess::execute(u"comedi_config"_s, arguments);
}

// Every scan of a recording. The sawtooth rises from one scan to the next by 2 V a period and falls back once
// a period, the square wave is at one of its two levels for half a period each, the others are flat.
void ExpectWaveform(const std::vector<float>& samples, std::size_t channels, double scanTime) {
    const double rise = 2.0 * Amplitude * scanTime / Period;
    std::size_t falls = 0;
    std::size_t high = 0;
    const std::size_t scans = samples.size() / channels;
    for (std::size_t scan = 0; scan < scans; ++scan) {
        const float* const at = samples.data() + scan * channels;
        ASSERT_LE(std::abs(at[0]), Amplitude + 2 * Step) << scan;
        ASSERT_NEAR(std::abs(at[1]), Amplitude, 2 * Step) << scan;
        high += at[1] > 0.0F ? 1 : 0;
        for (std::size_t flat = 2; flat < channels; ++flat)
            ASSERT_NEAR(at[flat], 0.0, 2 * Step) << scan;
        if (scan == 0)
            continue;
        const double change = at[0] - at[-static_cast<std::ptrdiff_t>(channels)];
        const bool fell = change < 0.0;
        falls += fell ? 1 : 0;
        ASSERT_NEAR(change + (fell ? 2.0 * Amplitude : 0.0), rise, 3 * Step) << scan;
    }
    const double periods = static_cast<double>(scans) * scanTime / Period;
    EXPECT_NEAR(static_cast<double>(falls), periods, 1.0);
    EXPECT_NEAR(static_cast<double>(high), static_cast<double>(scans) / 2.0, Period / scanTime / 2.0 + 1.0);
}

class ComediGuestTest : public MainWindowTest {
protected:
    ComediGuestTest() { Open(RealBoards()); }

    void UseFastInput(std::int32_t channels, double rate, std::int32_t count, bool cyclic) {
        window->M1.SoftMode = false;
        window->bFAICyclic = cyclic;
        window->nAISampleCnt = count;
        window->ZelAI1->SetScanChannelCount(channels);
        window->ZelAI1->SetSampleRate(rate);
        window->BuildPlots(false, true);
    }

    [[nodiscard]] std::vector<float> Recorded(const std::string& name) const {
        const std::vector<std::uint8_t> bytes = Bytes(name);
        std::vector<float> values;
        for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4)
            values.push_back(ReadLittleEndian<float>(std::as_bytes(std::span(bytes)), at));
        return values;
    }

    void RunOneShot() {
        Click(window->BtnStart);
        ASSERT_TRUE(window->isSystemRunning);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, LongestWait));
    }

    void RecordOneShot(std::int32_t channels, double rate, std::int32_t count) {
        UseFastInput(channels, rate, count, false);
        TurnOnAI();
        Click(window->CkAISave2Disk);
        RunOneShot();
        const std::vector<float> recorded = Recorded(window->szFAIFileName);
        ASSERT_EQ(recorded.size(), static_cast<std::size_t>(count));
        ExpectWaveform(recorded, static_cast<std::size_t>(channels), channels / window->ZelAI1->SampleRate());
    }
};

TEST(ComediBoardsInGuest, AreAllFound) {
    const BoardList boards = RealBoards();
    ASSERT_EQ(boards.analog.size(), 1U);
    EXPECT_EQ(boards.analog[0].name, "comedi_test");
    EXPECT_EQ(boards.analog[0].driver, "comedi_test");
    EXPECT_EQ(boards.analog[0].reason, "");
    ASSERT_EQ(boards.digital.size(), 2U);
    EXPECT_EQ(boards.digital[0].driver, "comedi_parport");
    EXPECT_EQ(boards.digital[1].driver, "8255");
    EXPECT_EQ(boards.digital[1].board->Info().portCount, 3);
    EXPECT_EQ(boards.DefaultAnalog(), 0);
    EXPECT_EQ(FindBoards().DefaultAnalog(), 0); // before the simulated ones
}

TEST(ComediBoardsInGuest, TheWaveformBoardIsDescribed) {
    const AnalogBoardInfo info = Waveform()->Info();
    EXPECT_EQ(info.resolution, 16);
    EXPECT_EQ(info.channelCount, 8);
    EXPECT_TRUE(info.noFamily);
    EXPECT_THAT(info.ranges, ElementsAre(InputRange{0, -10.0, 10.0, RangeUnit::Volts},
                                         InputRange{1, -5.0, 5.0, RangeUnit::Volts}));
    EXPECT_TRUE(info.singleEnded);
    EXPECT_FALSE(info.differential);
    EXPECT_FALSE(info.externalPacer);
    EXPECT_FALSE(info.hardwareTrigger);
}

TEST(ComediBoardsInGuest, RatesAreWholeMicrosecondsAScan) {
    const auto board = Waveform();
    EXPECT_DOUBLE_EQ(board->SettleSampleRate(1000.0, 1), 1000.0);
    EXPECT_DOUBLE_EQ(board->SettleSampleRate(1000.0, 4), 1000.0);
    EXPECT_DOUBLE_EQ(board->SettleSampleRate(3000.0, 1), 1e6 / 333.0);
    EXPECT_DOUBLE_EQ(board->SettleSampleRate(2e6 / 7.0, 2), 2e6 / 7.0);
    EXPECT_DOUBLE_EQ(board->SettleSampleRate(1e9, 1), 1e6);
    EXPECT_DOUBLE_EQ(board->SettleSampleRate(1e9, 2), 2e6);
}

TEST(ComediBoardsInGuest, SingleReadingsGiveTheVoltageOfTheOutput) {
    const auto board = Waveform();
    const ComediHandle beside = OpenBeside("/dev/comedi0");
    const std::vector<ChannelSetup> scan = StreamOf(*board, 2, 1000.0, 0).channels;
    for (const lsampl_t code : {0U, 1U, 32767U, 65535U}) {
        ASSERT_EQ(comedi_data_write(beside.get(), 1, 0, 0, AREF_GROUND, code), 1);
        ASSERT_EQ(comedi_data_write(beside.get(), 1, 1, 0, AREF_GROUND, 65535 - code), 1);
        std::vector<double> values(2);
        board->ReadScan(scan, values);
        EXPECT_NEAR(values[0], -10.0 + code * Step, 1e-9);
        EXPECT_NEAR(values[1], 10.0 - code * Step, 1e-9);
    }
    for (const unsigned int channel : {0U, 1U})
        ASSERT_EQ(comedi_data_write(beside.get(), 1, channel, 0, AREF_GROUND, 32767), 1);
}

TEST(ComediBoardsInGuest, AnOverrunIsToldAndTheStreamGoesOn) {
    const auto board = Waveform();
    const ComediHandle beside = OpenBeside("/dev/comedi0");
    const int largest = comedi_get_max_buffer_size(beside.get(), 0);
    ASSERT_GT(comedi_set_max_buffer_size(beside.get(), 0, 16384), 0);
    board->StartStream(StreamOf(*board, 2, 200000.0, 0));
    std::this_thread::sleep_for(std::chrono::milliseconds(300)); // 120,000 bytes
    std::vector<float> buffer(5000);
    std::size_t before = 0;
    StreamRead read;
    do {
        read = board->ReadStream(std::span(buffer));
        before += read.count;
    } while (read.state == StreamState::Running && before < 100000);
    EXPECT_EQ(read.state, StreamState::Overrun);
    EXPECT_GT(before, 0U);
    EXPECT_EQ(before % 2, 0U);
    do {
        read = board->ReadStream(std::span(buffer));
        ASSERT_NE(read.state, StreamState::Ended);
    } while (read.count == 0);
    EXPECT_NEAR(std::abs(buffer[1]), Amplitude, 2 * Step); // a scan begins with its first channel
    board->StopStream();
    EXPECT_GT(comedi_set_max_buffer_size(beside.get(), 0, static_cast<unsigned int>(largest)), 0);
}

// The driver makes 8 ms of samples at a time, which are more than this buffer holds.
TEST(ComediBoardsInGuest, OverrunsReachTheControlAndDoNotEndTheInput) {
    const ComediHandle beside = OpenBeside("/dev/comedi0");
    const int largest = comedi_get_max_buffer_size(beside.get(), 0);
    ASSERT_GT(comedi_set_max_buffer_size(beside.get(), 0, 16384), 0);
    ZelAI control;
    control.SetBoards(RealBoards());
    control.SetDeviceNumber(0);
    control.SetScanChannelCount(8);
    control.SetSampleRate(1e9);
    EXPECT_DOUBLE_EQ(control.SampleRate(), 8e6);
    int overruns = 0;
    int failures = 0;
    QObject::connect(&control, &ZelAI::OnOverrunNotice, [&] { ++overruns; });
    QObject::connect(&control, &ZelAI::OnInputFailed, [&] { ++failures; });
    control.StartBufferedAI(8192, true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return overruns >= 3; }, LongestWait));
    control.StopBufferedAI(0);
    EXPECT_EQ(failures, 0) << control.ErrorText().toStdString();
    EXPECT_GT(comedi_set_max_buffer_size(beside.get(), 0, static_cast<unsigned int>(largest)), 0);
}

TEST(ComediBoardsInGuest, ABoardInUseSaysSo) {
    const auto board = Waveform();
    const auto other = Waveform();
    other->StartStream(StreamOf(*other, 1, 1000.0, 0));
    try {
        board->StartStream(StreamOf(*board, 1, 1000.0, 0));
        FAIL() << "a second command was taken";
    } catch (const RunTimeError& error) {
        EXPECT_STREQ(error.what(), "The board is in use by another program");
    }
    other->StopStream();
    board->StartStream(StreamOf(*board, 1, 1000.0, 0));
    board->StopStream();
}

void ExpectPatterns(std::size_t digital, const char* node, unsigned int lines, std::int32_t ports) {
    const auto board = RealBoards().digital.at(digital).board;
    board->Open();
    const ComediHandle beside = OpenBeside(node);
    for (unsigned int line = 0; line < lines; ++line)
        ASSERT_GE(comedi_dio_config(beside.get(), 0, line, COMEDI_OUTPUT), 0);
    for (const unsigned int pattern : {0x000000U, 0xFFFFFFU, 0xA55A3CU, 0x5AA5C3U, 0x123456U}) {
        unsigned int written = pattern;
        ASSERT_GE(comedi_dio_bitfield2(beside.get(), 0, (1U << lines) - 1, &written, 0), 0);
        std::vector<std::uint8_t> states(static_cast<std::size_t>(ports));
        board->ReadPorts(0, states);
        for (std::int32_t port = 0; port < ports; ++port)
            EXPECT_EQ(states[static_cast<std::size_t>(port)], (pattern >> 8 * port) & 0xFF) << port;
    }
}

TEST(ComediBoardsInGuest, PortsGiveThePatternsOfTheParallelPort) {
    ExpectPatterns(0, "/dev/comedi1", 8, 1);
}

TEST(ComediBoardsInGuest, PortsGiveThePatternsOfThe8255) {
    ExpectPatterns(1, "/dev/comedi2", 24, 3);
}

TEST_F(ComediGuestTest, TheRealBoardsAreSelected) {
    EXPECT_EQ(window->ZelAI1->DeviceName(), u"comedi_test"_s);
    window->ZelAI1->SetChannel(0);
    window->ZelAI1->SetSignalConnection(Differential);
    EXPECT_EQ(window->ZelAI1->SignalConnection(), SingleEnded);
    window->ZelAI1->SetPacerSource(ExternalPacer);
    EXPECT_EQ(window->ZelAI1->PacerSource(), InternalPacer);
    window->ZelAI1->SetTriggerMode(1);
    EXPECT_EQ(window->ZelAI1->TriggerMode(), 0);
}

TEST_F(ComediGuestTest, RecordsTwoChannelsWithoutALoss) {
    RecordOneShot(2, 20000.0, 40000);
}

TEST_F(ComediGuestTest, RecordsFourChannelsWithoutALoss) {
    RecordOneShot(4, 200000.0, 200000);
}

TEST_F(ComediGuestTest, CyclicInputRunsUntilStopped) {
    UseFastInput(2, 20000.0, 4096, true);
    TurnOnAI();
    Click(window->CkAISave2Disk);
    Click(window->BtnStart);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount >= 10000; }, LongestWait));
    Click(window->BtnStart);
    EXPECT_FALSE(window->isSystemRunning);
    const std::vector<float> recorded = Recorded(window->szFAIFileName);
    ASSERT_GE(recorded.size(), 20000U);
    EXPECT_EQ(recorded.size(), static_cast<std::size_t>(window->ScanCount) * 2); // whole scans
    ExpectWaveform(recorded, 2, 1e-4);
}

TEST_F(ComediGuestTest, AWindowThatHangsTenSecondsLosesNothing) {
    UseFastInput(2, 100000.0, 8192, true);
    TurnOnAI();
    Click(window->CkAISave2Disk);
    Click(window->BtnStart);
    ASSERT_TRUE(window->isSystemRunning);
    std::this_thread::sleep_for(std::chrono::seconds(10));
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->ScanCount >= 500000; }, LongestWait));
    Click(window->BtnStart);
    const std::vector<float> recorded = Recorded(window->szFAIFileName);
    ASSERT_GE(recorded.size(), 1000000U);
    ExpectWaveform(recorded, 2, 2e-5);
}

TEST_F(ComediGuestTest, ABoardThatIsDetachedBetweenSessionsIsMissedAndFoundAgain) {
    UseFastInput(2, 20000.0, 2048, false);
    TurnOnAI();
    RunOneShot();
    ASSERT_EQ(Configure({u"-r"_s, u"/dev/comedi0"_s}), 0);
    EXPECT_THROW(window->ZelAI1->StartBufferedAI(2048, false), RunTimeError);
    EXPECT_EQ(window->ZelAI1->ErrorText(), u"The board is not there any more"_s);
    ASSERT_EQ(Configure({u"/dev/comedi0"_s, u"comedi_test"_s, u"1000000,100000"_s}), 0);
    RunOneShot();
    EXPECT_EQ(window->ScanCount, 1024);
}

TEST_F(ComediGuestTest, PolledSessionsReadBothKindsOfBoards) {
    const ComediHandle analog = OpenBeside("/dev/comedi0");
    const ComediHandle digital = OpenBeside("/dev/comedi1");
    ASSERT_EQ(comedi_data_write(analog.get(), 1, 0, 0, AREF_GROUND, 50000), 1);
    for (unsigned int line = 0; line < 8; ++line)
        ASSERT_GE(comedi_dio_config(digital.get(), 0, line, COMEDI_OUTPUT), 0);
    unsigned int pattern = 0xA5;
    ASSERT_GE(comedi_dio_bitfield2(digital.get(), 0, 0xFF, &pattern, 0), 0);
    SelectPorts(0, {0xFF});
    TurnOnAI();
    TurnOnDI();
    StartPolling();
    Tick(5);
    const ZelGraph& graph = *window->ZelGraph1;
    EXPECT_NEAR(graph.PointAt(0, 4).y(), -10.0 + 50000 * Step, 1e-5);
    for (int line = 0; line < 8; ++line)
        EXPECT_EQ(graph.PointAt(1 + line, 4).y(), 1.5 * line + (0xA5 >> line & 1)) << line;
    Click(window->BtnStart);
    ASSERT_EQ(comedi_data_write(analog.get(), 1, 0, 0, AREF_GROUND, 32767), 1);
}

} // namespace
} // namespace tracelet
