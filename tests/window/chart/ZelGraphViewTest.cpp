#include "window/chart/ZelGraph.h"

#include "core/base/Convert.h"

#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace tracelet {
namespace {

/// A chart of 0 to 10 s with a voltage, a temperature and a digital line on it.
class ZelGraphView : public testing::Test {
protected:
    ZelGraphView() {
        graph.resize(700, 420);
        graph.AddPlot({QStringLiteral("AI 0"), 0xff, 0, VoltageAxis});
        graph.AddPlot({QStringLiteral("AI 1"), 0xffffff, 0, TemperatureAxis});
        graph.AddPlot({QStringLiteral("DI 0:0"), 0xffff, 0, DigitalAxis, 1.5});
        graph.show();
        area = graph.PlotRect();
    }

    /// Scans from `from` on, a tenth of a second apart: a sine of 3 V, 20 to 80 degrees, a line that is low.
    void Take(int from, int count) {
        for (int i = from; i < from + count; ++i) {
            const auto wave = static_cast<float>(std::sin(i * 0.1));
            const std::array<float, 3> values = {3 * wave, 50 + 30 * wave, 1.5F};
            graph.AppendScan(i * 0.1, values);
        }
    }

    /// Place at fractions of the plot area, from its left and upper edge.
    [[nodiscard]] QPoint At(double x, double y) const {
        return {area.left() + CLng(x * area.width()), area.top() + CLng(y * area.height())};
    }
    void Drag(QPoint from, QPoint to) {
        QTest::mousePress(&graph, Qt::LeftButton, {}, from);
        QTest::mouseMove(&graph, (from + to) / 2);
        QTest::mouseMove(&graph, to);
        QTest::mouseRelease(&graph, Qt::LeftButton, {}, to);
    }
    /// As it comes from a mouse.
    void DoubleClick(QPoint at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers held = {}) {
        QTest::mouseClick(&graph, button, held, at);
        QTest::mouseDClick(&graph, button, held, at);
        QTest::mouseRelease(&graph, button, held, at);
    }
    void Wheel(QPoint at, int eighths, Qt::KeyboardModifiers held = {}) {
        QWheelEvent event(at, graph.mapToGlobal(QPointF(at)), {}, {0, eighths}, Qt::NoButton, held,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&graph, &event);
    }
    void Press(int key, Qt::KeyboardModifiers held = {}) {
        QTest::keyClick(&graph, static_cast<Qt::Key>(key), held);
    }

    using Ranges = std::vector<double>;
    [[nodiscard]] Ranges AllRanges() const {
        Ranges ends;
        for (const int axis : {XAxis, VoltageAxis, DigitalAxis, TemperatureAxis}) {
            ends.push_back(graph.AxisMin(axis));
            ends.push_back(graph.AxisMax(axis));
        }
        return ends;
    }
    [[nodiscard]] double Span(int axis) const { return graph.AxisMax(axis) - graph.AxisMin(axis); }
    /// Times at the edges of the plot area.
    [[nodiscard]] std::pair<double, double> Seen() const {
        const QRect plot = graph.PlotRect();
        return {graph.TimeAt(plot.left()), graph.TimeAt(plot.left() + plot.width())};
    }

    ZelGraph graph;
    QRect area;
};

TEST_F(ZelGraphView, EveryDragIsAStepBack) {
    std::vector<Ranges> ways = {AllRanges()};
    for (const std::int32_t mode : {MouseXZoom, MouseYZoom, MouseXYZoom, MouseXPan, MouseYPan, MouseXYPan}) {
        graph.SetMouseMode(mode);
        Drag(At(0.2, 0.2), At(0.7, 0.8));
        ASSERT_NE(AllRanges(), ways.back()) << mode;
        ways.push_back(AllRanges());
    }
    for (std::size_t back = ways.size() - 1; back-- > 0;) {
        Press(Qt::Key_Backspace);
        EXPECT_EQ(AllRanges(), ways[back]) << back;
    }
    graph.StepBack();
    EXPECT_EQ(AllRanges(), ways.front()) << "there is nothing before";
}

TEST_F(ZelGraphView, WhatChangesNothingIsNoStep) {
    graph.SetMouseMode(MouseXZoom);
    Drag(At(0.2, 0.2), At(0.6, 0.8));
    const Ranges zoomed = AllRanges();
    Drag(At(0.5, 0.5), At(0.5, 0.5));
    graph.SetMouseMode(MouseXYPan);
    Drag(At(0.5, 0.5), At(0.5, 0.5));
    graph.SetMouseMode(MouseNone);
    Drag(At(0.2, 0.2), At(0.6, 0.8));
    EXPECT_EQ(AllRanges(), zoomed);
    graph.StepBack();
    EXPECT_EQ(graph.XAxisMax(), 10);
}

TEST_F(ZelGraphView, RunOfKeysOrOfTheWheelIsOneStep) {
    const Ranges first = AllRanges();
    graph.SetMouseMode(MouseYZoom);
    for (int i = 0; i < 3; ++i)
        Press(Qt::Key_Right);
    Drag(At(0.5, 0.2), At(0.5, 0.6));
    const Ranges dragged = AllRanges();
    for (int i = 0; i < 5; ++i)
        Wheel(At(0.5, 0.5), 120);
    ASSERT_NE(AllRanges(), dragged);
    graph.StepBack();
    EXPECT_EQ(AllRanges(), dragged);
    graph.StepBack();
    graph.StepBack();
    EXPECT_EQ(AllRanges(), first);
}

TEST_F(ZelGraphView, StepBackStandsAtTheNewestOfSamplesThatCameSince) {
    Take(0, 101);
    graph.SetMouseMode(MouseXZoom);
    Drag(At(0.25, 0.5), At(0.5, 0.5));
    Take(101, 100);
    const double newest = graph.XAxisMax();
    EXPECT_NEAR(newest, 20, 1e-9);
    graph.StepBack();
    EXPECT_EQ(graph.XAxisMax(), newest);
    EXPECT_EQ(graph.XAxisMin(), newest - 10);
    Take(201, 1);
    EXPECT_NEAR(graph.XAxisMax(), 20.1, 1e-9);
}

TEST_F(ZelGraphView, ViewsOfPlotsThatAreGoneDoNotComeBack) {
    Press(Qt::Key_Plus);
    graph.ClearData();
    graph.StepBack();
    EXPECT_EQ(graph.XAxisMax(), 10) << "cleared ones are still there";
    Press(Qt::Key_Plus);
    graph.RemovePlots();
    graph.StepBack();
    EXPECT_DOUBLE_EQ(graph.XAxisMax(), 9);
}

TEST_F(ZelGraphView, ArrowsPanByATenth) {
    Press(Qt::Key_Right);
    EXPECT_DOUBLE_EQ(graph.XAxisMin(), 1);
    EXPECT_DOUBLE_EQ(graph.XAxisMax(), 11);
    Press(Qt::Key_Left);
    Press(Qt::Key_Left);
    EXPECT_DOUBLE_EQ(graph.XAxisMin(), -1);
    Press(Qt::Key_Up);
    EXPECT_DOUBLE_EQ(graph.AxisMin(VoltageAxis), -8);
    EXPECT_DOUBLE_EQ(graph.AxisMax(TemperatureAxis), 110);
    EXPECT_DOUBLE_EQ(graph.AxisMax(DigitalAxis), 32);
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    EXPECT_DOUBLE_EQ(graph.AxisMax(VoltageAxis), 8);
}

TEST_F(ZelGraphView, PlusAndMinusZoomTimeAndShiftedArrowsValues) {
    const QSignalSpy zoomed(&graph, &ZelGraph::Zoomed);
    Press(Qt::Key_Plus);
    EXPECT_DOUBLE_EQ(graph.XAxisMin(), 1);
    EXPECT_DOUBLE_EQ(graph.XAxisMax(), 9);
    Press(Qt::Key_Minus);
    EXPECT_NEAR(Span(XAxis), 10, 1e-9);
    EXPECT_EQ(zoomed.size(), 2);
    EXPECT_DOUBLE_EQ(zoomed.at(0).at(0).toDouble(), 8);
    EXPECT_EQ(Span(VoltageAxis), 20);
    Press(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_DOUBLE_EQ(graph.AxisMin(VoltageAxis), -8);
    EXPECT_DOUBLE_EQ(graph.AxisMax(VoltageAxis), 8);
    EXPECT_DOUBLE_EQ(Span(TemperatureAxis), 80);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_NEAR(Span(VoltageAxis), 20, 1e-9);
    EXPECT_EQ(zoomed.size(), 2) << "time was not zoomed";
}

TEST_F(ZelGraphView, HomeAndEndShowTheOldestAndTheNewest) {
    Take(0, 301);
    Press(Qt::Key_Home);
    EXPECT_EQ(graph.XAxisMin(), 0);
    EXPECT_NEAR(graph.XAxisMax(), 10, 1e-9);
    Press(Qt::Key_End);
    EXPECT_NEAR(graph.XAxisMin(), 20, 1e-9);
    EXPECT_NEAR(graph.XAxisMax(), 30, 1e-9);
}

TEST_F(ZelGraphView, KeysOfOthersAreLeftToThem) {
    const Ranges first = AllRanges();
    for (const Qt::KeyboardModifier held : {Qt::ControlModifier, Qt::AltModifier})
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Plus, Qt::Key_Space, Qt::Key_Home})
            Press(key, held);
    EXPECT_EQ(AllRanges(), first);
    EXPECT_FALSE(graph.BtnHold->isChecked());
}

TEST_F(ZelGraphView, WheelZoomsTimeAboutThePointer) {
    const QPoint at = At(0.3, 0.5);
    const double time = graph.TimeAt(at.x());
    Wheel(at, 120);
    EXPECT_NEAR(Span(XAxis), 8, 1e-9);
    EXPECT_NEAR(graph.TimeAt(at.x()), time, 1e-9);
    Wheel(at, -240);
    EXPECT_NEAR(Span(XAxis), 12.5, 1e-9);
    EXPECT_NEAR(graph.TimeAt(at.x()), time, 1e-9);
    EXPECT_EQ(Span(VoltageAxis), 20);
}

TEST_F(ZelGraphView, ShiftedWheelZoomsTheValueAxisUnderThePointer) {
    Wheel({3, At(0, 0.25).y()}, 120, Qt::ShiftModifier); // the strip of the voltage axis
    EXPECT_NEAR(Span(VoltageAxis), 16, 1e-9);
    EXPECT_NEAR(graph.AxisMin(VoltageAxis) + 0.75 * Span(VoltageAxis), 5, 0.1);
    EXPECT_EQ(Span(TemperatureAxis), 100);
    Wheel({graph.width() - 15, At(0, 0.5).y()}, 120, Qt::ShiftModifier); // that of the temperature axis
    EXPECT_NEAR(Span(VoltageAxis), 16, 1e-9);
    EXPECT_NEAR(Span(TemperatureAxis), 80, 1e-9);
    Wheel(At(0.5, 0.5), 120, Qt::ShiftModifier); // all of them
    EXPECT_NEAR(Span(VoltageAxis), 12.8, 1e-9);
    EXPECT_NEAR(Span(TemperatureAxis), 64, 1e-9);
    EXPECT_NEAR(Span(DigitalAxis), 24, 1e-9);
    EXPECT_EQ(Span(XAxis), 10);
}

TEST_F(ZelGraphView, ZoomingOutEndsWithinBounds) {
    for (int i = 0; i < 10000; ++i)
        Press(Qt::Key_Minus);
    EXPECT_TRUE(std::isfinite(Span(XAxis)));
    EXPECT_FALSE(graph.grab().isNull());
}

TEST_F(ZelGraphView, DoubleClickShowsAllThatIsHeld) {
    Take(0, 301);
    graph.AxisSetRange(VoltageAxis, 7, 8);
    graph.AxisSetRange(TemperatureAxis, 0, 1);
    graph.AxisSetRange(DigitalAxis, 20, 25);
    const Ranges before = AllRanges();
    for (const std::int32_t mode : {MouseNone, MouseXZoom, MouseXYPan}) {
        graph.SetMouseMode(mode);
        QSignalSpy zoomed(&graph, &ZelGraph::Zoomed);
        DoubleClick(At(0.5, 0.5));
        EXPECT_EQ(graph.XAxisMin(), 0);
        EXPECT_NEAR(graph.XAxisMax(), 30, 1e-9);
        EXPECT_EQ(graph.AxisMin(VoltageAxis), -3);
        EXPECT_EQ(graph.AxisMax(VoltageAxis), 3);
        EXPECT_LE(graph.AxisMin(TemperatureAxis), 20);
        EXPECT_GE(graph.AxisMax(TemperatureAxis), 80);
        EXPECT_EQ(graph.AxisMin(DigitalAxis), 0.5);
        EXPECT_EQ(graph.AxisMax(DigitalAxis), 3.5);
        EXPECT_EQ(zoomed.size(), 1);
        graph.StepBack();
        EXPECT_EQ(AllRanges(), before);
    }
}

TEST_F(ZelGraphView, DoubleClickWithoutSamplesOrWithAnotherButtonShowsWhatItShowed) {
    const Ranges before = AllRanges();
    DoubleClick(At(0.5, 0.5));
    Take(0, 51);
    DoubleClick(At(0.5, 0.5), Qt::RightButton);
    DoubleClick(At(0.5, 0.5), Qt::LeftButton, Qt::ShiftModifier);
    DoubleClick({3, 3});
    EXPECT_EQ(AllRanges(), before);
}

TEST_F(ZelGraphView, DoubleClickIsToldAsTwoPresses) {
    const QSignalSpy down(&graph, &ZelGraph::MouseDown);
    const QSignalSpy up(&graph, &ZelGraph::MouseUp);
    DoubleClick(At(0.5, 0.5));
    EXPECT_EQ(down.size(), 2);
    EXPECT_EQ(up.size(), 2);
}

TEST_F(ZelGraphView, KeyboardFocusShows) {
    graph.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&graph));
    graph.setFocus(Qt::MouseFocusReason);
    const QImage bare = graph.grab().toImage();
    graph.clearFocus();
    EXPECT_EQ(graph.grab().toImage(), bare) << "a click shows no frame";
    graph.setFocus(Qt::TabFocusReason);
    const QImage framed = graph.grab().toImage();
    EXPECT_NE(framed, bare);
    graph.clearFocus();
    EXPECT_EQ(graph.grab().toImage(), bare);
    graph.setFocus(Qt::MouseFocusReason);
    Press(Qt::Key_Home); // with nothing to go to
    EXPECT_EQ(graph.grab().toImage(), framed);
}

TEST_F(ZelGraphView, HeldViewStandsStillWhileTimeGoesOn) {
    Take(0, 101);
    Press(Qt::Key_Space);
    ASSERT_TRUE(graph.BtnHold->isChecked());
    const QImage held = graph.grab().toImage();
    Take(101, 200);
    EXPECT_EQ(graph.grab().toImage(), held);
    EXPECT_NEAR(Seen().first, 0, 1e-9);
    EXPECT_NEAR(graph.XAxisMin(), 20, 1e-9) << "the axis itself goes on";
    EXPECT_NEAR(graph.XAxisMax(), 30, 1e-9);
    QTest::mouseClick(graph.BtnHold, Qt::LeftButton);
    EXPECT_NEAR(Seen().first, 20, 1e-9);
    EXPECT_NEAR(Seen().second, 30, 1e-9);
}

TEST_F(ZelGraphView, HeldPastIsPannedAndZoomed) {
    Take(0, 301);
    graph.BtnHold->click();
    Press(Qt::Key_Home);
    EXPECT_NEAR(Seen().first, 0, 1e-9);
    EXPECT_NEAR(Seen().second, 10, 1e-9);
    EXPECT_NEAR(graph.XAxisMin(), 20, 1e-9);
    graph.SetMouseMode(MouseXZoom);
    Drag(At(0.2, 0.5), At(0.6, 0.5));
    EXPECT_NEAR(Seen().first, 2, 0.05);
    EXPECT_NEAR(Seen().second, 6, 0.05);
    EXPECT_NEAR(Span(XAxis), Seen().second - Seen().first, 1e-9) << "both span the same";
    EXPECT_NEAR(graph.XAxisMax(), 30, 1e-9);
    Take(301, 10);
    EXPECT_NEAR(graph.XAxisMax(), 31, 1e-9);
    graph.StepBack();
    EXPECT_NEAR(Seen().first, 0, 1e-9) << "a step back does not leave the past";
    EXPECT_NEAR(Span(XAxis), 10, 1e-9);
    EXPECT_NEAR(graph.XAxisMax(), 31, 1e-9);
    graph.BtnHold->click();
    EXPECT_NEAR(Seen().first, 21, 1e-9);
    EXPECT_NEAR(Seen().second, 31, 1e-9);
}

TEST_F(ZelGraphView, WrittenSpanIsTakenAboutTheMiddleOfAHeldView) {
    Take(0, 301);
    graph.BtnHold->click();
    Press(Qt::Key_Home);
    graph.SetXAxisMin(0);
    graph.SetXAxisMax(50);
    EXPECT_EQ(graph.XAxisMin(), 0);
    EXPECT_EQ(graph.XAxisMax(), 50);
    EXPECT_NEAR(Seen().first, -20, 1e-9);
    EXPECT_NEAR(Seen().second, 30, 1e-9);
}

TEST_F(ZelGraphView, PointsAreKeptWhileTheViewIsHeld) {
    graph.SetChartLength(100);
    Take(0, 150);
    EXPECT_EQ(graph.PointCount(0), 100);
    graph.BtnHold->click();
    Take(150, 1000);
    EXPECT_EQ(graph.PointCount(0), 1100);
    graph.SetChartLength(50);
    Take(1150, 1);
    EXPECT_EQ(graph.PointCount(0), 1101);
    graph.BtnHold->click();
    EXPECT_EQ(graph.PointCount(0), 1101);
    Take(1151, 1);
    EXPECT_EQ(graph.PointCount(0), 50);
}

TEST_F(ZelGraphView, HeldPointsStayWithinTheMemoryBudget) {
    graph.SetChartLength(100);
    graph.SetMemoryBudget(1 << 20);
    graph.BtnHold->click();
    const std::vector<float> data(300000, 1);
    QSignalSpy errors(&graph, &ZelGraph::Error);
    for (int i = 0; i < 10; ++i)
        graph.AppendSamples(1e-3, ZelGraph::PlotInterleaved(100000, 3, std::span<const float>(data)));
    EXPECT_LE(graph.HeldBytes(), 1 << 20);
    EXPECT_GT(graph.PointCount(0), 10000);
    EXPECT_GE(errors.size(), 1);
}

TEST_F(ZelGraphView, NothingIsHeldOnceTheSamplesAreGone) {
    for (const bool plotsToo : {false, true}) {
        Take(0, 101);
        graph.BtnHold->click();
        ASSERT_TRUE(graph.BtnHold->isChecked());
        if (plotsToo)
            graph.RemovePlots();
        else
            graph.ClearData();
        EXPECT_FALSE(graph.BtnHold->isChecked());
        EXPECT_NEAR(Seen().second, graph.XAxisMax(), 1e-9);
    }
}

TEST_F(ZelGraphView, TemperatureAxisFitsWhatAHeldViewShows) {
    graph.SetAxisAutoScale(TemperatureAxis, true);
    Take(0, 101);
    graph.BtnHold->click();
    const double most = graph.AxisMax(TemperatureAxis);
    for (int i = 101; i < 600; ++i)
        graph.AddPoint(1, i * 0.1, 900);
    EXPECT_EQ(graph.AxisMax(TemperatureAxis), most);
    graph.BtnHold->click();
    EXPECT_GE(graph.AxisMax(TemperatureAxis), 900);
}

TEST_F(ZelGraphView, HoldButtonStandsInTheCornerAndTellsWhatItDoes) {
    EXPECT_EQ(graph.BtnHold->objectName(), QStringLiteral("BtnHold"));
    EXPECT_FALSE(graph.BtnHold->accessibleName().isEmpty());
    EXPECT_TRUE(graph.BtnHold->toolTip().contains(QStringLiteral("Space")));
    EXPECT_TRUE(graph.BtnHold->focusPolicy() & Qt::TabFocus);
    for (const QSize size : {QSize(400, 200), QSize(1200, 900)}) {
        graph.resize(size);
        const QRect button = graph.BtnHold->geometry();
        EXPECT_TRUE(graph.rect().contains(button));
        EXPECT_FALSE(graph.PlotRect().intersects(button));
        EXPECT_GT(button.left(), graph.width() - 100);
        EXPECT_GT(button.top(), graph.height() - 40);
    }
    graph.resize(400, 120);
    EXPECT_FALSE(graph.BtnHold->isVisible()) << "there is no room";
}

} // namespace
} // namespace tracelet
