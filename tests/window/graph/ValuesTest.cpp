#include "core/base/Convert.h"
#include "tests/support/MainWindowTest.h"

#include "window/chart/ZelGraph.h"
#include "window/labels/ValuePanel.h"

#include <QAccessible>
#include <QAction>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;

/// Values and cursors as the main window shows them.
class ValuesTest : public MainWindowTest {
protected:
    [[nodiscard]] std::vector<std::string> Lines(const QString& panel) {
        QCoreApplication::processEvents();
        window->ZelGraph1->RefreshValues();
        std::vector<std::string> lines;
        for (const QString& line : window->ZelGraph1->findChild<ValuePanel*>(panel)->Lines())
            lines.push_back(line.toStdString());
        return lines;
    }
    [[nodiscard]] std::vector<std::string> ReadOut() { return Lines(u"ReadOut"_s); }
    /// Of the latest sample of a plot.
    [[nodiscard]] double Latest(int plot) {
        return window->ZelGraph1->PointAt(plot, window->ZelGraph1->PointCount(plot) - 1).y();
    }
    [[nodiscard]] QPoint At(double share) {
        const QRect area = window->ZelGraph1->PlotRect();
        return {area.left() + static_cast<int>(share * area.width()), area.center().y()};
    }
};

TEST_F(ValuesTest, TheLatestSamplesStandBesideTheChart) {
    SelectPorts(0, {0x03});
    EXPECT_THAT(ReadOut(), ElementsAre("latest", "AI 0\t\u2013", "DI 0:0\t\u2013", "DI 0:1\t\u2013"));
    TurnOnAI();
    TurnOnDI();
    StartPolling();
    Tick(5);
    const std::vector<std::string> lines = ReadOut();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_THAT(lines[1], testing::EndsWith(" V"));
    EXPECT_NEAR(TextToDouble(lines[1].substr(5, lines[1].size() - 7)), Latest(0), 0.001);
    for (const int line : {0, 1}) {
        const double high = Latest(1 + line) - window->ZelGraph1->Plot(1 + line).level;
        EXPECT_EQ(lines[static_cast<std::size_t>(2 + line)],
                  "DI 0:" + std::to_string(line) + (high == 1 ? "\t1" : "\t0"));
    }
    Click(window->BtnStart);
}

TEST_F(ValuesTest, UnitsFollowTheChannels) {
    const auto unit = [&] {
        window->BuildPlots(false, true);
        return window->ZelGraph1->Plot(0).unit.toStdString();
    };
    EXPECT_EQ(unit(), "V");
    window->M1.AIChanIsThermo[0] = true;
    EXPECT_EQ(unit(), "°C");
    window->M1.AIChanIsThermo[0] = false;
    window->ZelAI1->SetChannelRange(0.0, 20.0, 0);
    EXPECT_EQ(unit(), "mA");
    window->M1.SoftMode = false;
    window->ZelAI1->SetDataType(RawCounts);
    EXPECT_EQ(unit(), "counts");
    window->M1.SoftMode = true;
    SelectPorts(0, {0x01});
    EXPECT_EQ(window->ZelGraph1->Plot(1).unit.toStdString(), "");
}

TEST_F(ValuesTest, CursorsLeaveZoomAndTimeBaseAlone) {
    ZelGraph& graph = *window->ZelGraph1;
    TurnOnAI();
    StartPolling();
    Tick(20);
    Click(window->BtnStart);
    window->Menufile->findChild<QAction*>(u"xyz"_s)->trigger();
    QTest::mouseClick(&graph, Qt::LeftButton, Qt::ShiftModifier, At(0.05));
    QTest::mousePress(&graph, Qt::LeftButton, Qt::ShiftModifier, At(0.1));
    QTest::mouseMove(&graph, At(0.5));
    QTest::mouseMove(&graph, At(0.15));
    QTest::mouseRelease(&graph, Qt::LeftButton, Qt::ShiftModifier, At(0.15));
    EXPECT_NEAR(graph.CursorTime(0).value_or(-1), 0.5, 0.05);
    EXPECT_NEAR(graph.CursorTime(1).value_or(-1), 1.5, 0.05);
    EXPECT_EQ(graph.XAxisMin(), 0.0);
    EXPECT_EQ(graph.XAxisMax(), 10.0);
    EXPECT_EQ(window->dDIVValue, 1.0);
    EXPECT_EQ(graph.ChartLength(), 101);
    const std::vector<std::string> table = Lines(u"CursorTable"_s);
    ASSERT_EQ(table.size(), 3U);
    EXPECT_THAT(table[2], testing::StartsWith("AI 0 [V]\t10\t"));
}

TEST_F(ValuesTest, ReadOutAndTableHaveRoomInTheSmallestWindow) {
    window->resize(1, 1);
    QCoreApplication::processEvents();
    EXPECT_GT(ReadOut().size(), 1U);
    QTest::mouseClick(window->ZelGraph1, Qt::LeftButton, Qt::ShiftModifier, At(0.5));
    EXPECT_GT(Lines(u"CursorTable"_s).size(), 2U);
    EXPECT_GT(window->ZelGraph1->PlotRect().height(), 60);
    EXPECT_GT(window->ZelGraph1->PlotRect().width(), 200);
}

TEST_F(ValuesTest, TheChartIsReadByAssistiveTechnology) {
    QAccessibleInterface* chart = QAccessible::queryAccessibleInterface(window->ZelGraph1);
    EXPECT_EQ(chart->role(), QAccessible::Chart);
    EXPECT_EQ(chart->text(QAccessible::Name).toStdString(), "Chart");
    EXPECT_EQ(chart->text(QAccessible::Value).toStdString(), "latest\nAI 0 \u2013");
}

} // namespace
} // namespace tracelet
