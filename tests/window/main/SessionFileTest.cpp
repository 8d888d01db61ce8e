#include "core/recordings/LeftRecording.h"
#include "tests/window/main/SoftwarePollingTest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

/// What a session leaves in the state folder while the program runs.
class SessionFileTest : public SoftwarePollingTest {
protected:
    [[nodiscard]] QJsonObject Session() const {
        const auto bytes = Bytes(SessionFileOf(state.path().toStdString(), window->sztmpPath));
        return QJsonDocument::fromJson(QByteArray(reinterpret_cast<const char*>(bytes.data()),
                                                  static_cast<qsizetype>(bytes.size())))
            .object();
    }
};

TEST_F(SessionFileTest, TellsOfAPolledSessionWhatTheOtherFilesCannotHold) {
    PickBoard(u"6601HG");
    window->ZelThermo1->SetDeviceNumber(window->ZelAI1->DeviceNumber());
    window->ZelAI1->SetScanChannelCount(2);
    window->M1.AIChanIsThermo[1] = true;
    window->M1.AIThermoType[1] = 1;
    window->M1.AIThermoScale[1] = 3;
    window->BuildPlots(false, true);
    SelectPorts(1, {0x04});
    TurnOnAI();
    TurnOnDI();
    Record();
    StartPolling();
    const QJsonObject started = Session();
    EXPECT_EQ(started[u"format"], 1);
    EXPECT_EQ(started[u"input"], u"polled"_s);
    EXPECT_EQ(started[u"scansPerSecond"][u"asked"], 10.0);
    EXPECT_EQ(started[u"scans"], 0);
    const QDateTime time = QDateTime::fromString(started[u"started"].toString(), Qt::ISODate);
    EXPECT_LT(std::abs(time.secsTo(QDateTime::currentDateTime())), 3600);
    const QJsonObject analog = started[u"analog"].toObject();
    EXPECT_EQ(analog[u"board"][u"name"].toString().toStdString(), AnalogBoardInUse().Info().name);
    EXPECT_EQ(analog[u"board"][u"simulated"], true);
    ASSERT_EQ(analog[u"channels"].toArray().size(), 2);
    const QJsonObject volts = analog[u"channels"][0].toObject();
    EXPECT_EQ(volts[u"channel"], 0);
    EXPECT_EQ(volts[u"name"], u"AI 0"_s);
    EXPECT_EQ(volts[u"unit"], u"V"_s);
    const InputRange range = AnalogBoardInUse().Info().ranges.front();
    EXPECT_EQ(volts[u"range"].toArray(), (QJsonArray{range.first, range.second}));
    EXPECT_FALSE(volts.contains(u"thermocouple"));
    const QJsonObject couple = analog[u"channels"][1].toObject();
    EXPECT_EQ(couple[u"unit"], u"Kelvin"_s);
    EXPECT_EQ(couple[u"thermocouple"], u"K"_s);
    EXPECT_EQ(started[u"digital"][u"lines"].toArray(),
              (QJsonArray{QJsonObject{{u"port"_s, 1}, {u"line"_s, 2}, {u"name"_s, u"DI 1:2"_s}}}));

    Tick(2);
    AnalogBoardInUse().SetFaults({.readError = "Overvoltage"});
    Tick(3);
    AnalogBoardInUse().SetFaults({});
    Tick(1, 500);
    Click(window->BtnStart);
    const QJsonObject ended = Session();
    EXPECT_EQ(ended[u"scans"], 3);
    EXPECT_EQ(
        ended[u"losses"].toArray(),
        (QJsonArray{QJsonObject{{u"nextScan"_s, 2}, {u"reason"_s, u"Overvoltage"_s}, {u"scans"_s, 3}}}));
    EXPECT_EQ(ended[u"times"].toArray(), (QJsonArray{QJsonObject{{u"scan"_s, 0}, {u"seconds"_s, 0.1}},
                                                     QJsonObject{{u"scan"_s, 2}, {u"seconds"_s, 1.0}}}));
}

TEST_F(SessionFileTest, TellsOfAPacedSessionItsRateAndNoUnitOfCodes) {
    AnalogBoardInUse().SetPaced(false);
    window->M1.SoftMode = false;
    window->ZelAI1->SetScanChannelCount(2);
    window->ZelAI1->SetSampleRate(1000.0);
    window->BuildPlots(false, true);
    TurnOnAI();
    for (const std::int32_t type : {RawCounts, AnalogValues}) {
        window->ZelAI1->SetDataType(type);
        Click(window->BtnStart);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isSystemRunning; }, 20000));
        const QJsonObject session = Session();
        EXPECT_EQ(session[u"input"], u"paced"_s);
        EXPECT_EQ(session[u"scansPerSecond"][u"asked"], 500.0);
        EXPECT_EQ(session[u"scansPerSecond"][u"reached"], 500.0);
        EXPECT_EQ(session[u"scans"], window->ScanCount);
        EXPECT_EQ(session[u"analog"][u"channels"][0][u"unit"], type == RawCounts ? u""_s : u"V"_s);
        EXPECT_FALSE(session.contains(u"times"));
        EXPECT_FALSE(session.contains(u"digital"));
    }
}

TEST_F(SessionFileTest, GoesWithTheProgram) {
    TurnOnAI();
    StartPolling();
    Tick(1);
    const std::string path = SessionFileOf(state.path().toStdString(), window->sztmpPath);
    EXPECT_THAT(Bytes(path), testing::Not(testing::IsEmpty()));
    window->close();
    EXPECT_THAT(Bytes(path), testing::IsEmpty());
}

} // namespace
} // namespace tracelet
