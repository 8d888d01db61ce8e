#include "tests/support/MainWindowTest.h"

#include "window/chart/ZelGraph.h"
#include "window/widgets/ZelLED.h"

#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;

class PlotsTest : public MainWindowTest {
protected:
    [[nodiscard]] std::vector<std::string> PlotNames() const {
        std::vector<std::string> names;
        for (int i = 0; i < window->ZelGraph1->PlotCount(); ++i)
            names.push_back(window->ZelGraph1->Plot(i).name.toStdString());
        return names;
    }
    [[nodiscard]] std::vector<std::string> ListedNames() const {
        std::vector<std::string> names;
        for (int i = 0; i < window->ListView1->topLevelItemCount(); ++i)
            names.push_back(window->ListView1->topLevelItem(i)->text(0).toStdString());
        return names;
    }
    void Scan(std::int32_t start, std::int32_t count) {
        window->ZelAI1->SetScanStartChannel(start);
        window->ZelAI1->SetScanChannelCount(count);
        window->BuildPlots(false, true);
    }
};

TEST_F(PlotsTest, AnalogPlotsComeInScanOrderThenTheLines) {
    Scan(4, 3);
    SelectPorts(0, {0x05, 0x80});
    EXPECT_THAT(PlotNames(), ElementsAre("AI 4", "AI 5", "AI 6", "DI 0:0", "DI 0:2", "DI 1:7"));
    EXPECT_EQ(window->ZelGraph1->Plot(3).axis, DigitalAxis);
    EXPECT_EQ(window->ZelGraph1->Plot(5).color, 0x00FFFFU);
}

TEST_F(PlotsTest, LinesAreNamedAtTheirLevelWhateverTheyDo) {
    SelectPorts(1, {0x05, 0x80});
    EXPECT_THAT(PlotNames(), ElementsAre("AI 0", "DI 1:0", "DI 1:2", "DI 2:7"));
    EXPECT_EQ(window->ZelGraph1->Plot(1).level, 15.0);
    EXPECT_EQ(window->ZelGraph1->Plot(2).level, 18.0);
    EXPECT_EQ(window->ZelGraph1->Plot(3).level, 40.5);
}

TEST_F(PlotsTest, DifferentialPairIsOnePlot) {
    window->ZelAI1->SetChannel(0);
    window->ZelAI1->SetSignalConnection(1);
    window->M1.AIChanConnection[0] = window->M1.AIChanConnection[1] = 1;
    Scan(0, 3);
    EXPECT_THAT(PlotNames(), ElementsAre("AI 0", "AI 2", "AI 3"));
}

TEST_F(PlotsTest, SystemColourIsKeptRaw) {
    Scan(8, 1);
    EXPECT_EQ(window->ZelGraph1->Plot(0).color, 0x80000016U);
    EXPECT_EQ(ResolvedColor(0x80000016U), QColor(0xE3, 0xE3, 0xE3));
    EXPECT_EQ(ResolvedColor(0x0080FFU), QColor(0xFF, 0x80, 0x00));
}

TEST_F(PlotsTest, ThermocoupleChannelHangsOnTheTemperatureAxis) {
    window->M1.AIChanIsThermo[1] = true;
    Scan(0, 2);
    EXPECT_EQ(window->ZelGraph1->Plot(0).axis, VoltageAxis);
    EXPECT_EQ(window->ZelGraph1->Plot(1).axis, TemperatureAxis);
}

TEST_F(PlotsTest, TemperatureAxisFitsWhatIsMeasured) {
    window->M1.AIChanIsThermo[0] = true;
    Scan(0, 1);
    ZelGraph& graph = *window->ZelGraph1;
    EXPECT_EQ(graph.AxisMin(TemperatureAxis), 0.0);
    EXPECT_EQ(graph.AxisMax(TemperatureAxis), 100.0);
    for (const float degrees : {293.2F, 527.7F, 1350.0F, -196.0F, 20.0F}) { // Kelvin, Rankine, furnace …
        graph.ClearData();
        for (const float value : {degrees, NAN, degrees + 0.3F})
            graph.AppendScan(1.0, {&value, 1});
        EXPECT_LT(graph.AxisMin(TemperatureAxis), degrees);
        EXPECT_GT(graph.AxisMax(TemperatureAxis), degrees);
        EXPECT_LE(graph.AxisMax(TemperatureAxis) - graph.AxisMin(TemperatureAxis), 20.0) << degrees;
    }
    const double low = graph.AxisMin(TemperatureAxis);
    const float hot = 400.0F;
    graph.AppendScan(2.0, {&hot, 1});
    EXPECT_GE(graph.AxisMax(TemperatureAxis), hot);
    EXPECT_LE(graph.AxisMin(TemperatureAxis), low);
    const double high = graph.AxisMax(TemperatureAxis);
    graph.ClearData();
    EXPECT_EQ(graph.AxisMax(TemperatureAxis), high) << "until there is something else to fit";
}

TEST_F(PlotsTest, NewSessionBringsTheTemperatureAxisBack) {
    TurnOnAI();
    window->ZelGraph1->SetAxisAutoScale(TemperatureAxis, false);
    StartPolling();
    EXPECT_TRUE(window->ZelGraph1->AxisAutoScale(TemperatureAxis));
    Click(window->BtnStart);
}

TEST_F(PlotsTest, UnitsFollowTheChannels) {
    const auto units = [&](std::int32_t count) {
        Scan(0, count);
        EXPECT_EQ(window->ZelGraph1->AxisTitle(VoltageAxis), u"AI Data"_s);
        EXPECT_EQ(window->ZelGraph1->AxisTitle(TemperatureAxis), u"Temperature Data"_s);
        return std::pair(window->ZelGraph1->AxisUnit(VoltageAxis).toStdString(),
                         window->ZelGraph1->AxisUnit(TemperatureAxis).toStdString());
    };
    using Units = std::pair<std::string, std::string>;
    EXPECT_EQ(units(2), Units("V", ""));
    window->ZelAI1->SetChannelRange(0.0, 20.0, 1);
    EXPECT_EQ(units(2), Units("V, mA", ""));
    EXPECT_EQ(units(1), Units("V", ""));
    window->ZelAI1->SetChannelRange(0.0, 20.0, 0);
    EXPECT_EQ(units(2), Units("mA", ""));
    window->M1.AIChanIsThermo[1] = true;
    const char* scales[] = {"°C", "°F", "°R", "K"};
    for (std::uint8_t scale = 0; scale < 4; ++scale) {
        window->M1.AIThermoScale[1] = scale;
        EXPECT_EQ(units(2), Units("mA", scales[scale]));
    }
    window->M1.SoftMode = false;
    EXPECT_EQ(units(2), Units("mA", "mA")) << "fast input reads the couple's terminals";
    window->ZelAI1->SetDataType(RawCounts);
    EXPECT_EQ(units(1), Units("counts", ""));
}

TEST_F(PlotsTest, FastInputShowsNoLines) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    window->M1.SoftMode = false;
    window->BuildPlots(false, true);
    EXPECT_THAT(PlotNames(), ElementsAre("AI 0"));
    TurnOnAI();
    window->BuildPlots(false, true);
    EXPECT_THAT(PlotNames(), ElementsAre("AI 0", "DI 0:0"));
}

TEST_F(PlotsTest, LinesBeyondTheTablesHaveNoPlot) {
    window->M1.DIPlotName.Resize(2); // as after the change to a board with more ports
    SelectPorts(0, {0x07});
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 3);
}

TEST_F(PlotsTest, WrapsAtTheLastChannel) {
    for (std::size_t i = 0; i < boards.analog.size(); ++i) {
        if (boards.analog[i].name.find("3605") != std::string::npos)
            window->ZelAI1->SetDeviceNumber(static_cast<std::int32_t>(i));
    }
    const std::int32_t channels = window->ZelAI1->MaxChannelCount();
    window->M1.AIChanIsThermo.Resize(channels + 1);
    window->InitPlotAttributes(true);
    Scan(channels - 2, 2);
    EXPECT_THAT(PlotNames(),
                ElementsAre("AI " + std::to_string(channels - 2), "AI " + std::to_string(channels - 1)));
}

TEST_F(PlotsTest, RebuildDuringASessionKeepsTheSamples) {
    TurnOnAI();
    StartPolling();
    Tick(3);
    window->M1.AIPlotColor[0] = 0x123456;
    window->BuildPlots(false, true);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 3);
    EXPECT_EQ(window->ZelGraph1->Plot(0).color, 0x123456U);
    Click(window->BtnStart);
    window->BuildPlots(false, true);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 0);
}

TEST_F(PlotsTest, RebuildWithOtherPlotsDuringASessionStartsAnew) {
    TurnOnAI();
    StartPolling();
    Tick(3);
    window->M1.AIChanIsThermo[0] = true;
    window->BuildPlots(false, true);
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 1);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 0);
    Click(window->BtnStart);
}

TEST_F(PlotsTest, ListFollowsTheSwitches) {
    Scan(0, 2);
    SelectPorts(0, {0x03});
    EXPECT_THAT(ListedNames(), ElementsAre());
    TurnOnAI();
    EXPECT_THAT(ListedNames(), ElementsAre("AI 0", "AI 1"));
    TurnOnDI();
    EXPECT_THAT(ListedNames(), ElementsAre("AI 0", "AI 1", "DI 0:0", "DI 0:1"));
    TurnOnAI();
    EXPECT_THAT(ListedNames(), ElementsAre("DI 0:0", "DI 0:1"));
}

TEST_F(PlotsTest, ListRowShowsTheStrokeInThePlotsColour) {
    for (std::int32_t style = 0; style <= 5; ++style) {
        window->M1.AIPlotLineStyle[style] = style;
        window->M1.AIPlotColor[style] = 0x0080FF;
    }
    Scan(0, 6);
    TurnOnAI();
    const char* glyphs[] = {"-------", "- - - -", ". . . .", "- . - .", "- . . -", ""};
    for (int row = 0; row < 6; ++row) {
        const QTreeWidgetItem* item = window->ListView1->topLevelItem(row);
        EXPECT_EQ(item->text(1), QString::fromLatin1(glyphs[row]));
        EXPECT_EQ(item->foreground(1).color(), QColor(0xFF, 0x80, 0x00));
    }
    EXPECT_EQ(window->ListView1->headerItem()->text(0), u" Chan"_s);
    EXPECT_EQ(window->ListView1->headerItem()->text(1), u" Line"_s);
}

TEST_F(PlotsTest, LineCountBeyondThePlotsListsWhatThereIs) {
    SelectPorts(0, {0x01});
    window->nDIChanCount = 40;
    TurnOnDI();
    EXPECT_THAT(ListedNames(), ElementsAre("DI 0:0"));
}

TEST_F(PlotsTest, StepMovesTheAxisAroundItsMiddle) {
    window->ZelLED1->Step(true);
    EXPECT_EQ(window->dDIVValue, 5.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), -20.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 30.0);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 501);
    EXPECT_EQ(window->ZelLED1->Text(), u"5.000000"_s);
    EXPECT_TRUE(window->ZelLED1->Enabled());
    EXPECT_FALSE(window->isNumEditEventFired);
    window->ZelLED1->Step(false);
    window->ZelLED1->Step(false);
    EXPECT_EQ(window->ZelLED1->Text(), u".200000"_s);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 4.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 6.0);
}

TEST_F(PlotsTest, GraphKnowsTheDivision) {
    EXPECT_EQ(window->ZelGraph1->Division(), 1.0);
    window->ZelLED1->Step(true);
    EXPECT_EQ(window->ZelGraph1->Division(), 5.0);
    window->ZelGraph1->SetMouseMode(MouseXZoom);
    window->ZelGraph1->AxisSetRange(XAxis, 3.0, 5.5);
    emit window->ZelGraph1->MouseUp(1, 0, 0, 0);
    EXPECT_EQ(window->ZelGraph1->Division(), 0.25);
    window->ShowDIVValue(2.0);
    EXPECT_EQ(window->ZelGraph1->Division(), 2.0);
}

TEST_F(PlotsTest, StepIsIgnoredWhileTheProgramWrites) {
    window->isNumEditEventFired = true;
    window->ZelLED1->Step(true);
    EXPECT_EQ(window->dDIVValue, 1.0);
}

TEST_F(PlotsTest, StepThatOverflowsLeavesTheDisplayAlive) {
    window->nTimerInterval = 0;
    window->ZelLED1->Step(true);
    EXPECT_EQ(window->dDIVValue, 5.0);
    EXPECT_TRUE(window->ZelLED1->Enabled());
    EXPECT_FALSE(window->isNumEditEventFired);
    EXPECT_EQ(window->ZelLED1->Value(), 5.0);
}

TEST_F(PlotsTest, ChartLengthOfFastInputCountsTheScans) {
    Scan(0, 4);
    window->M1.SoftMode = false;
    window->ZelAI1->SetSampleRate(1000.0);
    window->ZelLED1->Step(true);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 12500);
}

TEST_F(PlotsTest, ChartLengthStaysWithoutAnalogChannels) {
    Open({});
    window->ZelGraph1->SetChartLength(77);
    window->ZelLED1->Step(true);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 77);
}

TEST_F(PlotsTest, StepInHistoryModeCountsTheRecordingsScans) {
    window->bHistoryMode = true;
    window->recording.info.ScanInterval = 0.004;
    window->ZelLED1->Step(false);
    EXPECT_EQ(window->dDIVValue, 0.2);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 500);
    window->recording.info.ScanInterval = 0.0; // an error ends the step
    window->ZelLED1->Step(true);
    EXPECT_EQ(window->dDIVValue, 1.0);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 500);
    EXPECT_TRUE(window->ZelLED1->Enabled());
}

TEST_F(PlotsTest, ListOfARecordingIgnoresTheSwitches) {
    window->bHistoryMode = true;
    window->recording.info.nHisAIChanCount = 2;
    window->recording.info.nHisDIChanCount = 1;
    window->M1.HisAIPlotName.Resize(2);
    window->M1.HisAIPlotColor.Resize(2);
    window->M1.HisAIPlotLineStyle.Resize(2);
    window->M1.HisDIPlotName.Resize(1);
    window->M1.HisDIPlotColor.Resize(1);
    window->M1.HisDIPlotLineStyle.Resize(1);
    window->M1.HisAIChanIsThermo.Resize(3);
    window->M1.HisAIPlotName[0] = "A";
    window->M1.HisAIPlotName[1] = "B";
    window->M1.HisDIPlotName[0] = "D";
    window->M1.HisAIPlotColor[1] = 0x80000016U;
    window->M1.HisDIPlotLineStyle[0] = 3;
    window->M1.HisAIChanIsThermo[1] = 1;
    const struct {
        bool analog;
        bool digital;
        std::vector<std::string> names;
    } cases[] = {
        {true, true, {"A", "B", "D"}}, {true, false, {"A", "B"}}, {false, true, {"D"}}, {false, false, {}}};
    for (const auto& c : cases) {
        window->recording.info.bHisAI = c.analog;
        window->recording.info.bHisDI = c.digital;
        window->BuildPlots(true, true);
        EXPECT_EQ(PlotNames(), c.names);
        EXPECT_EQ(ListedNames(), c.names);
    }
    window->recording.info.bHisAI = window->recording.info.bHisDI = true;
    window->bHistoryMode = false; // the view is the caller's choice
    window->BuildPlots(true, false);
    EXPECT_THAT(PlotNames(), ElementsAre("A", "B", "D"));
    window->bHistoryMode = true;
    window->BuildPlots(true, false);
    EXPECT_EQ(window->ZelGraph1->Plot(0).axis, VoltageAxis);
    EXPECT_EQ(window->ZelGraph1->Plot(1).axis, TemperatureAxis);
    EXPECT_EQ(window->ZelGraph1->Plot(1).color, 0x80000016U);
    EXPECT_EQ(window->ZelGraph1->Plot(2).axis, DigitalAxis);
    EXPECT_EQ(window->ListView1->topLevelItem(2)->text(1), u"- . - ."_s);
    window->bHistoryMode = false;
}

TEST_F(PlotsTest, DefaultsCoverTheDeviceAndReadTheWiring) {
    const std::int32_t channels = window->ZelAI1->MaxChannelCount();
    window->ZelAI1->SetChannel(4);
    window->ZelAI1->SetSignalConnection(1);
    window->M1.AIChanConnection[4] = 0;
    window->InitPlotAttributes(true);
    EXPECT_EQ(window->M1.AIPlotName.Count(), channels + 1);
    EXPECT_EQ(window->M1.AIChanConnection.Count(), channels + 1);
    EXPECT_EQ(window->M1.AIChanConnection[4], 1);
    EXPECT_EQ(window->M1.AIChanConnection[6], 0);
    EXPECT_EQ(window->ZelAI1->Channel(), channels - 1);
    EXPECT_EQ(window->M1.DIPlotName.Count(), window->ZelDIO1->MaxPortCount() * 8 + 1);
}

TEST_F(PlotsTest, RebuildDuringPlaybackKeepsTheSamples) {
    window->isHisPlaying = true;
    window->ZelGraph1->AddPoint(0, 1.0, 1.0);
    window->BuildPlots(false, true);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 1);
    window->isHisPlaying = false;
}

TEST_F(PlotsTest, RemoveOldEmptiesThePlots) {
    window->ZelGraph1->AddPoint(0, 1.0, 1.0);
    window->BuildPlots(false, false); // the same plots stay with their samples
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 1);
    window->BuildPlots(false, true);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 0);
}

} // namespace
} // namespace tracelet
