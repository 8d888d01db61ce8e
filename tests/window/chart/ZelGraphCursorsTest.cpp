#include "core/base/Convert.h"
#include "window/chart/ZelGraph.h"
#include "window/labels/ValuePanel.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;

class ZelGraphCursors : public testing::Test {
protected:
    ZelGraphCursors() {
        graph.resize(900, 500);
        graph.AddPlot({u"AI 0"_s, 0x0000ff, 0, VoltageAxis, 0, u"V"_s});
        graph.AddPlot({u"DI 0:0"_s, 0xffffff, 0, DigitalAxis, 3});
        graph.AddPlot({u"AI 1"_s, 0x00ff00, 0, VoltageAxis, 0, u"V"_s});
        graph.SetPlotVisible(2, false);
        graph.show();
        // Eleven scans a second apart: 0, 1, 4, 9, ...; the line is high in every fourth.
        for (int i = 0; i <= 10; ++i)
            graph.AppendScan(i, std::array{static_cast<float>(i * i), i % 4 == 1 ? 4.0F : 3.0F, 7.0F});
    }

    [[nodiscard]] QPoint At(double seconds, double down = 0.5) {
        const QRect area = graph.PlotRect();
        const double share = (seconds - graph.XAxisMin()) / (graph.XAxisMax() - graph.XAxisMin());
        return {area.left() + CLng(share * area.width()), area.top() + CLng(down * area.height())};
    }
    void ShiftClick(double seconds) {
        QTest::mouseClick(&graph, Qt::LeftButton, Qt::ShiftModifier, At(seconds));
        QCoreApplication::processEvents();
    }
    /// Places both cursors exactly upon samples.
    void PlaceAt(double a, double b) {
        ShiftClick(a + 0.4);
        QTest::keyClick(&graph, Qt::Key_Left, Qt::ControlModifier);
        ShiftClick(b + 0.4);
        QTest::keyClick(&graph, Qt::Key_Left, Qt::ControlModifier);
        ASSERT_EQ(graph.CursorTime(0), a);
        ASSERT_EQ(graph.CursorTime(1), b);
    }
    void ExpectCursors(std::optional<double> a, std::optional<double> b) {
        const double pixel = (graph.XAxisMax() - graph.XAxisMin()) / graph.PlotRect().width();
        for (const auto& [found, expected] :
             {std::pair(graph.CursorTime(0), a), std::pair(graph.CursorTime(1), b)}) {
            ASSERT_EQ(found.has_value(), expected.has_value());
            if (found) {
                EXPECT_NEAR(*found, *expected, pixel);
            }
        }
    }
    /// Where the flag of a cursor stands: below the plot area, A's at the left of its line, B's at the right.
    [[nodiscard]] QPoint FlagOf(int cursor) {
        return {At(*graph.CursorTime(cursor)).x() + (cursor == 0 ? -7 : 7), graph.PlotRect().bottom() + 11};
    }
    [[nodiscard]] ValuePanel* Table() const { return graph.findChild<ValuePanel*>(u"CursorTable"_s); }
    [[nodiscard]] std::vector<std::string> Lines() {
        graph.RefreshValues();
        std::vector<std::string> lines;
        for (const QString& line : Table()->Lines())
            lines.push_back(line.toStdString());
        return lines;
    }
    [[nodiscard]] static std::string Clipboard() {
        return QGuiApplication::clipboard()->text().toStdString();
    }
    [[nodiscard]] QToolButton* Button(const QString& name) const {
        return graph.findChild<QToolButton*>(name);
    }

    ZelGraph graph;
};

class ZelGraphCursorModes : public ZelGraphCursors, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(Modes, ZelGraphCursorModes,
                         testing::Values(MouseNone, MouseXPan, MouseYPan, MouseXYPan, MouseXZoom, MouseYZoom,
                                         MouseXYZoom));

TEST_P(ZelGraphCursorModes, ShiftClicksPlaceThemAndDoNothingElse) {
    graph.SetMouseMode(GetParam());
    const QCursor cursor = graph.cursor();
    QSignalSpy down(&graph, &ZelGraph::MouseDown);
    QSignalSpy up(&graph, &ZelGraph::MouseUp);
    ShiftClick(2.5);
    ExpectCursors(2.5, {});
    ShiftClick(8);
    ExpectCursors(2.5, 8);
    ShiftClick(5);
    ExpectCursors(5, 8);
    ShiftClick(9.5);
    ExpectCursors(5, 9.5);
    QTest::mousePress(&graph, Qt::LeftButton, Qt::ShiftModifier, At(4, 0.2));
    QTest::mouseMove(&graph, At(3, 0.4));
    QTest::mouseMove(&graph, At(1, 0.9));
    ExpectCursors(1, 9.5);
    QTest::mouseRelease(&graph, Qt::LeftButton, Qt::ShiftModifier, At(1, 0.9));
    QTest::mouseMove(&graph, At(6));
    ExpectCursors(1, 9.5);
    EXPECT_EQ(graph.XAxisMin(), 0);
    EXPECT_EQ(graph.XAxisMax(), 10);
    EXPECT_EQ(graph.AxisMin(VoltageAxis), -10);
    EXPECT_EQ(graph.AxisMax(VoltageAxis), 10);
    EXPECT_EQ(graph.cursor().shape(), cursor.shape());
    ASSERT_EQ(down.size(), 5);
    ASSERT_EQ(up.size(), 5);
    for (const QSignalSpy* spy : {&down, &up})
        EXPECT_EQ(spy->first().mid(0, 2), (QList<QVariant>{1, 1}));
    EXPECT_EQ(down.last().mid(2), (QList<QVariant>{double(At(4, 0.2).x()), double(At(4, 0.2).y())}));
}

TEST_F(ZelGraphCursors, OtherClicksPlaceNone) {
    QTest::mouseClick(&graph, Qt::LeftButton, {}, At(3));
    QTest::mouseClick(&graph, Qt::RightButton, Qt::ShiftModifier, At(3));
    QTest::mouseClick(&graph, Qt::LeftButton, Qt::ShiftModifier, {2, 2});
    ExpectCursors({}, {});
    EXPECT_EQ(Table(), nullptr);
}

TEST_F(ZelGraphCursors, TheirFlagsDragThem) {
    ShiftClick(2);
    ShiftClick(2.1);
    graph.SetMouseMode(MouseXZoom);
    for (const int cursor : {0, 1}) {
        const QPoint flag = FlagOf(cursor);
        const QPoint by(At(3).x() - At(0).x(), -40);
        QTest::mousePress(&graph, Qt::LeftButton, {}, flag);
        QTest::mouseMove(&graph, flag + by);
        QTest::mouseRelease(&graph, Qt::LeftButton, {}, flag + by);
    }
    ExpectCursors(5, 5.1);
    const QPoint flag = FlagOf(0);
    QTest::mousePress(&graph, Qt::LeftButton, {}, flag);
    QTest::mouseMove(&graph, QPoint(-50, 20));
    QTest::mouseRelease(&graph, Qt::LeftButton, {}, {-50, 20});
    ExpectCursors(0, 5.1);
    EXPECT_EQ(graph.XAxisMax(), 10) << "no zoom";
}

TEST_F(ZelGraphCursors, AFlagThatIsOnlyClickedStays) {
    PlaceAt(3, 6);
    QTest::mouseClick(&graph, Qt::LeftButton, {}, FlagOf(0));
    EXPECT_EQ(graph.CursorTime(0), 3);
    QTest::keyClick(&graph, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(graph.CursorTime(0), 4) << "it is the one that keys step now";
}

TEST_F(ZelGraphCursors, KeysStepThemFromSampleToSample) {
    graph.AddPoint(1, 10.5, 3);
    ShiftClick(8.4);
    const auto step = [&](int key, Qt::KeyboardModifiers keys) {
        QTest::keyClick(&graph, Qt::Key(key), keys);
    };
    const Qt::KeyboardModifiers other = Qt::ControlModifier | Qt::ShiftModifier;
    step(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(graph.CursorTime(0), 9);
    step(Qt::Key_Right, Qt::ControlModifier);
    step(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(graph.CursorTime(0), 10.5) << "a sample of any visible plot";
    step(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(graph.CursorTime(0), 10.5) << "there is none behind the last";
    step(Qt::Key_Left, other);
    EXPECT_EQ(graph.CursorTime(1), (graph.XAxisMin() + graph.XAxisMax()) / 2) << "placed where none stood";
    step(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(graph.CursorTime(1), 5);
    step(Qt::Key_Left, other);
    EXPECT_EQ(graph.CursorTime(0), 10);
    EXPECT_EQ(graph.CursorTime(1), 5);
}

TEST_F(ZelGraphCursors, TheTableStandsBelowThePlotAreaAndSaysWhatLiesBetween) {
    const QRect whole = graph.PlotRect();
    PlaceAt(2, 6);
    ASSERT_TRUE(Table()->isVisible());
    EXPECT_LT(graph.PlotRect().bottom(), Table()->y());
    EXPECT_LT(graph.PlotRect().height(), whole.height());
    EXPECT_THAT(Lines(),
                ElementsAre("A 2.000 s     B 6.000 s     \u0394t 4.0000 s     1/\u0394t 250.00 mHz",
                            "\tn\tA\tB\tB \u2212 A\tMin\tMax\tMean\tRMS\tStd dev\tPk\u2013pk",
                            "AI 0 [V]\t5\t4.00\t36.00\t32.00\t4.00\t36.00\t18.0000\t21.3260\t11.4368\t32.00",
                            "\tn\tA\tB\tB \u2212 A\tEdges\tFrequency\tDuty",
                            "DI 0:0\t5\t0\t0\t0\t2\t\u2013\t25.00 %"));
}

TEST_F(ZelGraphCursors, ALineHasAFrequencyOnceItRoseTwice) {
    PlaceAt(0, 9);
    EXPECT_EQ(Lines().back(), "DI 0:0\t10\t0\t1\t1\t5\t250.00 mHz\t22.22 %");
}

TEST_F(ZelGraphCursors, OneAloneHasValuesButNoSpan) {
    ShiftClick(3.4);
    QTest::keyClick(&graph, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Lines().front(), "A 3.000 s     Shift+click places the other cursor");
    EXPECT_TRUE(Lines().at(2).starts_with("AI 0 [V]\t0\t9.00\t\u2013\t\u2013\t\u2013")) << Lines().at(2);
}

TEST_F(ZelGraphCursors, WhereNoSampleIsNearNoneIsInvented) {
    graph.AxisSetRange(XAxis, 0, 20);
    ShiftClick(2.6);
    ShiftClick(15);
    EXPECT_TRUE(Lines().at(2).starts_with("AI 0 [V]\t8\t9.00\t\u2013\t\u2013\t9.00\t100.00"))
        << Lines().at(2);
}

TEST_F(ZelGraphCursors, TheTableSaysHowManyPlotsDidNotFit) {
    for (int i = 0; i < 40; ++i)
        graph.AddPlot({u"AI %1"_s.arg(i + 2), 0x0000ff});
    PlaceAt(2, 6);
    int plots = 0;
    const std::vector<std::string> lines = Lines();
    for (const std::string& line : lines)
        plots += line.starts_with("AI") || line.starts_with("DI") ? 1 : 0;
    EXPECT_EQ(lines.back(), "\u2026 " + std::to_string(42 - plots) + " more");
    EXPECT_GT(graph.PlotRect().height(), graph.height() / 3);
}

TEST_F(ZelGraphCursors, GoByDeleteAndByTheirButton) {
    const QRect whole = graph.PlotRect();
    PlaceAt(2, 6);
    QTest::keyClick(&graph, Qt::Key_Delete);
    QCoreApplication::processEvents();
    ExpectCursors({}, {});
    EXPECT_FALSE(Table()->isVisible());
    EXPECT_EQ(graph.PlotRect(), whole);
    PlaceAt(2, 6);
    EXPECT_TRUE(Table()->isVisible());
    QTest::mouseClick(Button(u"BtnCloseCursors"_s), Qt::LeftButton);
    QCoreApplication::processEvents();
    ExpectCursors({}, {});
    EXPECT_FALSE(Table()->isVisible());
}

TEST_F(ZelGraphCursors, AreCopiedAsATable) {
    PlaceAt(2, 6);
    const std::string expected =
        "Plot\tUnit\tA [s]\tB [s]\tB-A [s]\t1/(B-A) [Hz]\tValue at A\tValue at "
        "B\tDifference\tSamples\tMinimum\t"
        "Maximum\tMean\tRMS\tStandard deviation (n)\tPeak to peak\tEdges\tFrequency [Hz]\tDuty cycle [%]\n"
        "AI 0\tV\t2\t6\t4\t0.25\t4\t36\t32\t5\t4\t36\t18\t21.3260404201061\t11.4367827643966\t32\t\t\t\n"
        "DI 0:0\t\t2\t6\t4\t0.25\t0\t0\t0\t5\t\t\t\t\t\t\t2\t\t25\n";
    QGuiApplication::clipboard()->setText(u"before"_s);
    QTest::keyClick(&graph, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Clipboard(), expected);
    QGuiApplication::clipboard()->setText(u"before"_s);
    QTest::mouseClick(Button(u"BtnCopyCursors"_s), Qt::LeftButton);
    EXPECT_EQ(Clipboard(), expected);
    graph.RemoveCursors();
    QTest::keyClick(&graph, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Clipboard(), expected) << "nothing to copy";
}

TEST_F(ZelGraphCursors, AreDrawnAtTheirTimes) {
    const QImage before = graph.grab().toImage();
    ShiftClick(5);
    const QImage behind = graph.grab().toImage();
    const double scale = behind.devicePixelRatio();
    const QPoint top = At(5, 0.02);
    const auto at = [&](const QImage& image, int dx) {
        return image.pixelColor(CLng((top.x() + dx) * scale), CLng(top.y() * scale)).lightness();
    };
    int brightest = 0;
    for (const int dx : {-1, 0, 1})
        brightest = std::max(brightest, at(behind, dx));
    EXPECT_GT(brightest, 200);
    for (const int dx : {-8, 8})
        EXPECT_LT(at(behind, dx), 100);
    EXPECT_LT(at(before, 8), 100);
}

TEST_F(ZelGraphCursors, AreReadByAssistiveTechnology) {
    PlaceAt(2, 6);
    const QString text = QAccessible::queryAccessibleInterface(&graph)->text(QAccessible::Value);
    EXPECT_TRUE(text.contains(u"A 2.000 s     B 6.000 s"_s)) << qPrintable(text);
    EXPECT_TRUE(text.contains(u"AI 0 [V] 5 4.00 36.00"_s)) << qPrintable(text);
    for (const QString& name : {u"BtnCopyCursors"_s, u"BtnCloseCursors"_s}) {
        EXPECT_FALSE(Button(name)->accessibleName().isEmpty());
        EXPECT_TRUE(Button(name)->focusPolicy() & Qt::TabFocus);
    }
}

} // namespace
} // namespace tracelet
