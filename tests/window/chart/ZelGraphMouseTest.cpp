#include "core/base/Convert.h"
#include "window/chart/ZelGraph.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <vector>

namespace tracelet {
namespace {

class ZelGraphMouse : public testing::Test {
protected:
    ZelGraphMouse() {
        graph.resize(600, 400);
        graph.AddPlot({QStringLiteral("AI 0"), 0xff, 0, VoltageAxis});
        graph.AddPlot({QStringLiteral("AI 1"), 0xff, 0, TemperatureAxis});
        graph.show();
        area = graph.PlotRect();
    }

    /// Place at fractions of the plot area, from its left and upper edge.
    [[nodiscard]] QPoint At(double x, double y) const {
        return {area.left() + CLng(x * area.width()), area.top() + CLng(y * area.height())};
    }
    [[nodiscard]] double Share(int x) const { return static_cast<double>(x - area.left()) / area.width(); }
    [[nodiscard]] double ShareDown(int y) const {
        return static_cast<double>(y - area.top()) / area.height();
    }

    void Drag(QPoint from, QPoint to) {
        QTest::mousePress(&graph, Qt::LeftButton, {}, from);
        QTest::mouseMove(&graph, (from + to) / 2);
        QTest::mouseMove(&graph, to);
        QTest::mouseRelease(&graph, Qt::LeftButton, {}, to);
    }

    void ExpectRange(int axis, double low, double high) {
        const double tolerance = 1e-9 * (high - low);
        EXPECT_NEAR(graph.AxisMin(axis), low, tolerance) << axis;
        EXPECT_NEAR(graph.AxisMax(axis), high, tolerance) << axis;
    }
    void ExpectFirstRanges() {
        ExpectRange(XAxis, 0, 10);
        ExpectRange(VoltageAxis, -10, 10);
        ExpectRange(TemperatureAxis, 0, 100);
        ExpectRange(DigitalAxis, -1, 29);
    }

    ZelGraph graph;
    QRect area;
};

TEST_F(ZelGraphMouse, DragsDoNothingInModeNone) {
    Drag(At(0.2, 0.2), At(0.6, 0.7));
    ExpectFirstRanges();
}

TEST_F(ZelGraphMouse, CodesThatAreNoModeAreIgnored) {
    graph.SetMouseMode(MouseXZoom);
    for (const std::int32_t code : {1, 2, 3, 10, -1, 1000000}) {
        graph.SetMouseMode(code);
        EXPECT_EQ(graph.MouseMode(), MouseXZoom) << code;
    }
    for (const std::int32_t code : {4, 5, 6, 7, 8, 9, 0}) {
        graph.SetMouseMode(code);
        EXPECT_EQ(graph.MouseMode(), code);
    }
}

TEST_F(ZelGraphMouse, XZoomTakesTheDraggedSpan) {
    graph.SetMouseMode(MouseXZoom);
    const QPoint from = At(0.25, 0.3);
    const QPoint to = At(0.5, 0.31);
    Drag(from, to);
    ExpectRange(XAxis, 10 * Share(from.x()), 10 * Share(to.x()));
    ExpectRange(VoltageAxis, -10, 10);
    ExpectRange(TemperatureAxis, 0, 100);
}

TEST_F(ZelGraphMouse, QuarterOfTheAxisIsTwoAndAHalfSeconds) {
    graph.resize(600 + (4 - area.width() % 4), 400);
    area = graph.PlotRect();
    ASSERT_EQ(area.width() % 4, 0);
    graph.SetMouseMode(MouseXZoom);
    Drag({area.left() + area.width() / 4, 100}, {area.left() + area.width() / 2, 200});
    EXPECT_EQ(graph.XAxisMin(), 2.5);
    EXPECT_EQ(graph.XAxisMax(), 5);
}

TEST_F(ZelGraphMouse, DirectionOfTheDragDoesNotMatter) {
    graph.SetMouseMode(MouseXYZoom);
    const QPoint from = At(0.8, 0.75);
    const QPoint to = At(0.3, 0.25);
    Drag(from, to);
    ExpectRange(XAxis, 10 * Share(to.x()), 10 * Share(from.x()));
    ExpectRange(VoltageAxis, 10 - 20 * ShareDown(from.y()), 10 - 20 * ShareDown(to.y()));
}

TEST_F(ZelGraphMouse, YZoomTakesTheSameFractionOfEveryVisibleAxis) {
    graph.SetMouseMode(MouseYZoom);
    const QPoint from = At(0.5, 0.2);
    const QPoint to = At(0.5, 0.6);
    Drag(from, to);
    ExpectRange(XAxis, 0, 10);
    ExpectRange(VoltageAxis, 10 - 20 * ShareDown(to.y()), 10 - 20 * ShareDown(from.y()));
    ExpectRange(TemperatureAxis, 100 - 100 * ShareDown(to.y()), 100 - 100 * ShareDown(from.y()));
    ExpectRange(DigitalAxis, -1, 29); // no digital plot
}

TEST_F(ZelGraphMouse, BandEndsAtThePlotArea) {
    graph.SetMouseMode(MouseXYZoom);
    Drag(At(0.5, 0.5), {5000, -5000});
    ExpectRange(XAxis, 10 * Share(At(0.5, 0).x()), 10);
    ExpectRange(VoltageAxis, 10 - 20 * ShareDown(At(0, 0.5).y()), 10);
}

TEST_F(ZelGraphMouse, ThinBandZoomsNothing) {
    graph.SetMouseMode(MouseXZoom);
    Drag(At(0.5, 0.1), At(0.5, 0.9) + QPoint(3, 0));
    ExpectFirstRanges();
    graph.SetMouseMode(MouseYZoom);
    Drag(At(0.1, 0.5), At(0.9, 0.5) + QPoint(0, 3));
    ExpectFirstRanges();
    graph.SetMouseMode(MouseXYZoom);
    Drag(At(0.1, 0.5), At(0.9, 0.5) + QPoint(0, 3));
    ExpectFirstRanges();
    Drag(At(0.5, 0.5), At(0.5, 0.5) + QPoint(4, 4));
    EXPECT_LT(graph.XAxisMax() - graph.XAxisMin(), 1);
}

TEST_F(ZelGraphMouse, XPanMovesTheTimeAxis) {
    graph.SetMouseMode(MouseXPan);
    const QPoint from = At(0.5, 0.5);
    const QPoint to = At(0.25, 0.9);
    Drag(from, to);
    const double moved = 10 * (Share(from.x()) - Share(to.x()));
    ExpectRange(XAxis, moved, 10 + moved);
    ExpectRange(VoltageAxis, -10, 10);
    EXPECT_EQ(graph.XAxisMax() - graph.XAxisMin(), 10);
}

TEST_F(ZelGraphMouse, YPanMovesEveryVisibleYAxis) {
    graph.SetMouseMode(MouseYPan);
    const QPoint from = At(0.5, 0.5);
    const QPoint to = At(0.9, 0.75);
    Drag(from, to);
    const double share = ShareDown(to.y()) - ShareDown(from.y());
    ExpectRange(XAxis, 0, 10);
    ExpectRange(VoltageAxis, -10 + 20 * share, 10 + 20 * share);
    ExpectRange(TemperatureAxis, 100 * share, 100 + 100 * share);
    ExpectRange(DigitalAxis, -1, 29);
}

TEST_F(ZelGraphMouse, XYPanMovesBoth) {
    graph.SetMouseMode(MouseXYPan);
    Drag(At(0.5, 0.5), At(0.75, 0.25));
    EXPECT_LT(graph.XAxisMin(), -2);
    EXPECT_LT(graph.AxisMin(VoltageAxis), -14);
}

TEST_F(ZelGraphMouse, ZoomsAndPansSwitchTheAutomaticScaleOfTheirAxisOff) {
    const std::pair<std::int32_t, std::int32_t> modes[] = {{MouseXZoom, MouseYZoom}, {MouseXPan, MouseYPan}};
    for (const auto& [alongX, alongY] : modes) {
        graph.SetAxisAutoScale(XAxis, true);
        graph.SetAxisAutoScale(VoltageAxis, true);
        graph.SetMouseMode(alongX);
        Drag(At(0.2, 0.2), At(0.6, 0.7));
        EXPECT_FALSE(graph.AxisAutoScale(XAxis)) << alongX;
        EXPECT_TRUE(graph.AxisAutoScale(VoltageAxis)) << alongX;
        graph.SetMouseMode(alongY);
        Drag(At(0.2, 0.2), At(0.6, 0.7));
        EXPECT_FALSE(graph.AxisAutoScale(VoltageAxis)) << alongY;
    }
}

TEST_F(ZelGraphMouse, PlaceOfTheReleaseEndsTheBand) {
    graph.SetMouseMode(MouseXZoom);
    QTest::mousePress(&graph, Qt::LeftButton, {}, At(0.2, 0.5));
    QTest::mouseRelease(&graph, Qt::LeftButton, {}, At(0.6, 0.5)); // no move told before
    ExpectRange(XAxis, 10 * Share(At(0.2, 0).x()), 10 * Share(At(0.6, 0).x()));
}

TEST_F(ZelGraphMouse, AnotherModeGivesTheBandUp) {
    graph.SetMouseMode(MouseXZoom);
    QTest::mousePress(&graph, Qt::LeftButton, {}, At(0.2, 0.5));
    QTest::mouseMove(&graph, At(0.5, 0.5));
    graph.SetMouseMode(MouseXYZoom);
    QTest::mouseRelease(&graph, Qt::LeftButton, {}, At(0.6, 0.8));
    ExpectFirstRanges();
}

TEST_F(ZelGraphMouse, MouseUpComesAfterTheAxisHasChanged) {
    graph.SetMouseMode(MouseXZoom);
    double span = 0;
    QObject::connect(&graph, &ZelGraph::MouseUp, &graph, [&] { span = graph.XAxisMax() - graph.XAxisMin(); });
    Drag(At(0.25, 0.5), At(0.5, 0.5));
    EXPECT_NEAR(span, 2.5, 0.05);
}

TEST_F(ZelGraphMouse, ButtonsKeysAndPlacesAreTold) {
    QSignalSpy down(&graph, &ZelGraph::MouseDown);
    QSignalSpy up(&graph, &ZelGraph::MouseUp);
    QTest::mousePress(&graph, Qt::LeftButton, Qt::ShiftModifier, {10, 20});
    QTest::mouseRelease(&graph, Qt::LeftButton, Qt::ShiftModifier, {11, 21});
    QTest::mouseClick(&graph, Qt::RightButton, Qt::ControlModifier, {12, 22});
    QTest::mouseClick(&graph, Qt::MiddleButton, Qt::AltModifier | Qt::ShiftModifier, {13, 23});
    using Told = std::vector<QVariantList>;
    EXPECT_EQ(Told(down.begin(), down.end()),
              (Told{{1, 1, 10.0, 20.0}, {2, 2, 12.0, 22.0}, {4, 5, 13.0, 23.0}}));
    EXPECT_EQ(Told(up.begin(), up.end()), (Told{{1, 1, 11.0, 21.0}, {2, 2, 12.0, 22.0}, {4, 5, 13.0, 23.0}}));
}

TEST_F(ZelGraphMouse, RightButtonStartsNoBand) {
    graph.SetMouseMode(MouseXYZoom);
    QTest::mousePress(&graph, Qt::RightButton, {}, At(0.2, 0.2));
    QTest::mouseMove(&graph, At(0.6, 0.6));
    QTest::mouseRelease(&graph, Qt::RightButton, {}, At(0.6, 0.6));
    ExpectFirstRanges();
}

TEST_F(ZelGraphMouse, EscapeGivesTheBandUp) {
    graph.SetMouseMode(MouseXZoom);
    const QImage before = graph.grab().toImage();
    QTest::mousePress(&graph, Qt::LeftButton, {}, At(0.2, 0.5));
    QTest::mouseMove(&graph, At(0.6, 0.5));
    EXPECT_NE(graph.grab().toImage(), before) << "the band shows";
    QTest::keyClick(&graph, Qt::Key_Escape);
    EXPECT_EQ(graph.grab().toImage(), before);
    QTest::mouseRelease(&graph, Qt::LeftButton, {}, At(0.6, 0.5));
    ExpectFirstRanges();
}

TEST_F(ZelGraphMouse, ZoomedSpanStaysAndScrollsWithTheNewestSample) {
    const float values[] = {1, 2};
    for (int i = 0; i <= 100; ++i)
        graph.AppendScan(i * 0.1, values);
    graph.SetMouseMode(MouseXZoom);
    Drag(At(0.25, 0.5), At(0.5, 0.5));
    const double span = graph.XAxisMax() - graph.XAxisMin();
    graph.AppendScan(10.1, values);
    EXPECT_EQ(graph.XAxisMax(), 10.1);
    EXPECT_EQ(graph.XAxisMin(), 10.1 - span);
}

TEST_F(ZelGraphMouse, ZoomingOnAndOnEndsWhereDoublesDo) {
    graph.SetMouseMode(MouseXYZoom);
    for (int i = 0; i < 60; ++i)
        Drag(At(0.4, 0.4), At(0.6, 0.6));
    EXPECT_LT(graph.XAxisMin(), graph.XAxisMax());
    EXPECT_LT(graph.XAxisMax() - graph.XAxisMin(), 1e-9);
    EXPECT_LT(graph.AxisMin(VoltageAxis), graph.AxisMax(VoltageAxis));
    EXPECT_FALSE(graph.grab().isNull());
}

TEST_F(ZelGraphMouse, CursorTellsTheMode) {
    std::vector<Qt::CursorShape> shapes;
    for (const std::int32_t mode :
         {MouseNone, MouseXPan, MouseYPan, MouseXYPan, MouseXZoom, MouseYZoom, MouseXYZoom}) {
        graph.SetMouseMode(mode);
        shapes.push_back(graph.cursor().shape());
    }
    EXPECT_EQ(shapes, (std::vector<Qt::CursorShape>{Qt::ArrowCursor, Qt::SizeHorCursor, Qt::SizeVerCursor,
                                                    Qt::OpenHandCursor, Qt::CrossCursor, Qt::CrossCursor,
                                                    Qt::CrossCursor}));
}

TEST_F(ZelGraphMouse, TimeAtSpansThePlotArea) {
    EXPECT_NEAR(graph.TimeAt(area.left()), 0, 1e-12);
    EXPECT_NEAR(graph.TimeAt(area.left() + area.width()), 10, 1e-12);
}

} // namespace
} // namespace tracelet
