#include "core/base/Convert.h"
#include "window/chart/ZelGraph.h"
#include "window/labels/LineNames.h"
#include "window/labels/ValuePanel.h"

#include <QAccessible>
#include <QTest>
#include <QToolButton>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

class ZelGraphReadOut : public testing::Test {
protected:
    ZelGraphReadOut() {
        graph.resize(700, 400);
        graph.show();
    }

    void AddPlots() {
        graph.AddPlot({u"AI 0"_s, 0x0000ff, 0, VoltageAxis, 0, u"V"_s});
        graph.AddPlot({u"AI 1"_s, 0xff0000, 0, TemperatureAxis, 0, u"\u00b0C"_s});
        graph.AddPlot({u"DI 0:1"_s, 0xffffff, 0, DigitalAxis, 1.5});
        graph.ShowReadOut(true);
        QCoreApplication::processEvents();
    }
    /// Scans a second apart from 0 on; the digital line is high in the odd ones.
    void AppendScans(int count) {
        for (int i = 0; i < count; ++i) {
            const std::array values = {0.25F * static_cast<float>(i), 20.0F + static_cast<float>(i),
                                       1.5F + static_cast<float>(i % 2)};
            graph.AppendScan(i, values);
        }
    }
    [[nodiscard]] ValuePanel* Panel() const { return graph.findChild<ValuePanel*>(u"ReadOut"_s); }
    [[nodiscard]] QToolButton* Button() const { return graph.findChild<QToolButton*>(u"BtnReadOut"_s); }
    [[nodiscard]] QStringList Lines() const { return Panel()->Lines(); }
    template <typename Condition>
    [[nodiscard]] static bool Soon(Condition condition) {
        return QTest::qWaitFor(condition, 2000);
    }

    /// Lets the pointer stand at a time, or far away.
    void PointAt(double seconds) {
        const QRect area = graph.PlotRect();
        const double share = (seconds - graph.XAxisMin()) / (graph.XAxisMax() - graph.XAxisMin());
        QTest::mouseMove(&graph, {area.left() + CLng(share * area.width()), area.center().y()});
    }

    ZelGraph graph;
};

TEST_F(ZelGraphReadOut, IsThereOnlyOnceItIsShown) {
    const QRect whole = graph.PlotRect();
    EXPECT_EQ(Panel(), nullptr);
    AddPlots();
    AppendScans(2);
    EXPECT_TRUE(Panel()->isVisible());
    EXPECT_LT(graph.PlotRect().right(), Panel()->x()) << "it covers no trace";
    graph.ShowReadOut(false);
    QCoreApplication::processEvents();
    EXPECT_FALSE(Panel()->isVisible());
    graph.RemovePlots();
    EXPECT_EQ(graph.PlotRect(), whole);
}

TEST_F(ZelGraphReadOut, SaysTheLatestValues) {
    AddPlots();
    EXPECT_TRUE(Soon([&] {
        return Lines() ==
               (QStringList{u"latest"_s, u"AI 0\t\u2013"_s, u"AI 1\t\u2013"_s, u"DI 0:1\t\u2013"_s});
    }));
    AppendScans(4);
    EXPECT_TRUE(Soon([&] {
        return Lines() ==
               (QStringList{u"latest"_s, u"AI 0\t0.75000 V"_s, u"AI 1\t23.000 \u00b0C"_s, u"DI 0:1\t1"_s});
    }));
    graph.AppendScan(4, std::array{std::numeric_limits<float>::quiet_NaN(), -5.0F, 1.5F});
    EXPECT_TRUE(Soon([&] {
        return Lines() ==
               (QStringList{u"latest"_s, u"AI 0\t\u2013"_s, u"AI 1\t-5.000 \u00b0C"_s, u"DI 0:1\t0"_s});
    }));
    graph.ClearData();
    EXPECT_TRUE(Soon([&] { return Lines().at(1) == u"AI 0\t\u2013"_s; }));
}

TEST_F(ZelGraphReadOut, LeavesOutHiddenPlots) {
    AddPlots();
    AppendScans(4);
    graph.SetPlotVisible(1, false);
    EXPECT_TRUE(Soon([&] {
        return Lines() == (QStringList{u"latest"_s, u"AI 0\t0.75000 V"_s, u"DI 0:1\t1"_s});
    }));
}

TEST_F(ZelGraphReadOut, SaysTheSamplesNearestToThePointer) {
    AddPlots();
    AppendScans(9);
    PointAt(2.6);
    EXPECT_TRUE(Soon([&] {
        return Lines().mid(1) ==
               (QStringList{u"AI 0\t0.7500 V"_s, u"AI 1\t23.000 \u00b0C"_s, u"DI 0:1\t1"_s});
    }));
    EXPECT_TRUE(Lines().first().startsWith(u"2.6"_s)) << qPrintable(Lines().first());
    EXPECT_TRUE(Lines().first().endsWith(u" s"_s));
    PointAt(2.4);
    EXPECT_TRUE(Soon([&] {
        return Lines().mid(1) ==
               (QStringList{u"AI 0\t0.5000 V"_s, u"AI 1\t22.000 \u00b0C"_s, u"DI 0:1\t0"_s});
    }));
    PointAt(9.6);
    EXPECT_TRUE(Soon([&] {
        return Lines().mid(1) == (QStringList{u"AI 0\t\u2013"_s, u"AI 1\t\u2013"_s, u"DI 0:1\t\u2013"_s});
    })) << "no sample is anywhere near";
    QTest::mouseMove(&graph, {5, 5});
    EXPECT_TRUE(Soon([&] { return Lines().first() == u"latest"_s; }));
    PointAt(2.4);
    EXPECT_TRUE(Soon([&] { return Lines().first() != u"latest"_s; }));
    QTest::mouseMove(Panel(), {30, 60});
    EXPECT_TRUE(Soon([&] { return Lines().first() == u"latest"_s; }));
    PointAt(2.4);
    EXPECT_TRUE(Soon([&] { return Lines().first() != u"latest"_s; }));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&graph, &leave);
    EXPECT_TRUE(Soon([&] { return Lines().first() == u"latest"_s; }));
}

TEST_F(ZelGraphReadOut, KeepsThePointsOfAPlotsValuesInPlace) {
    AddPlots();
    AppendScans(5);
    for (const float value : {0.001F, -0.5F, 0.999F}) {
        graph.AddPoint(0, 10, static_cast<double>(value));
        graph.RefreshValues();
        const QString text = Lines().at(1).section(u'\t', 1).section(u' ', 0, 0);
        EXPECT_EQ(text.section(u'.', 1).size(), 4) << qPrintable(text);
    }
}

TEST_F(ZelGraphReadOut, IsWrittenInThePlotsColourMadeReadable) {
    AddPlots();
    EXPECT_TRUE(Soon([&] { return Lines().size() == 4; }));
    const QImage picture = Panel()->grab().toImage();
    const QRgb blue = ReadableOnChart(qRgb(0, 0, 255));
    EXPECT_NE(blue, qRgb(0, 0, 255));
    int nearest = 3 * 255; // smooth edges of letters need not reach it
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb found = picture.pixel(x, y);
            nearest = std::min(nearest, std::abs(qRed(found) - qRed(blue)) +
                                            std::abs(qGreen(found) - qGreen(blue)) +
                                            std::abs(qBlue(found) - qBlue(blue)));
        }
    EXPECT_LT(nearest, 30);
}

TEST_F(ZelGraphReadOut, FoldsAwayByItsButton) {
    AddPlots();
    const int narrow = graph.PlotRect().width();
    QTest::mouseClick(Button(), Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_GT(graph.PlotRect().width(), narrow + 80);
    EXPECT_THAT(Lines(), testing::IsEmpty());
    EXPECT_TRUE(Button()->isVisible());
    EXPECT_GT(Panel()->x() + Button()->x(), graph.PlotRect().right());
    EXPECT_EQ(Button()->accessibleName(), u"Show the values"_s);
    EXPECT_EQ(Button()->toolTip(), u"Show the values"_s);
    EXPECT_TRUE(Button()->focusPolicy() & Qt::TabFocus);
    Button()->setFocus();
    QTest::keyClick(Button(), Qt::Key_Space);
    QCoreApplication::processEvents();
    EXPECT_EQ(graph.PlotRect().width(), narrow);
    EXPECT_EQ(Button()->accessibleName(), u"Hide the values"_s);
    EXPECT_TRUE(Soon([&] { return Lines().size() == 4; }));
}

TEST_F(ZelGraphReadOut, FoldsItselfWhereTheGraphIsNarrow) {
    AddPlots();
    graph.resize(480, 400);
    QCoreApplication::processEvents();
    EXPECT_TRUE(Panel()->isVisible());
    graph.resize(479, 400);
    QCoreApplication::processEvents();
    EXPECT_FALSE(Panel()->isVisible());
    EXPECT_GT(graph.PlotRect().width(), 300);
}

TEST_F(ZelGraphReadOut, SaysHowManyPlotsDidNotFit) {
    for (int i = 0; i < 64; ++i)
        graph.AddPlot({u"AI %1"_s.arg(i), 0x0000ff});
    graph.ShowReadOut(true);
    EXPECT_TRUE(Soon([&] { return Lines().size() > 10; }));
    const qsizetype shown = Lines().size() - 2;
    EXPECT_LT(shown, 64);
    EXPECT_EQ(Lines().last(), u"\u2026 %1 more"_s.arg(64 - shown));
    graph.resize(700, 1400);
    EXPECT_TRUE(Soon([&] { return Lines().size() == 65; }));
}

TEST_F(ZelGraphReadOut, IsReadByAssistiveTechnology) {
    AddPlots();
    AppendScans(4);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&graph);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Chart);
    EXPECT_EQ(accessible->text(QAccessible::Name), u"Graph"_s);
    EXPECT_EQ(accessible->text(QAccessible::Value),
              u"latest\nAI 0 0.75000 V\nAI 1 23.000 \u00b0C\nDI 0:1 1"_s);
}

} // namespace
} // namespace tracelet
