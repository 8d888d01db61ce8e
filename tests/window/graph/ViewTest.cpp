#include "tests/support/MainWindowTest.h"

#include "window/chart/ZelGraph.h"
#include "window/widgets/ZelLED.h"

#include <QApplication>
#include <QWheelEvent>

namespace tracelet {
namespace {

/// Zooms, pans and the hold of the chart, as the window's time base takes them.
class ViewTest : public MainWindowTest {
protected:
    ViewTest() {
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    void Press(Qt::Key key) const { QTest::keyClick(window->ZelGraph1, key); }
    void Undo() const { QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier); }
    void Wheel(int eighths) const {
        const QPointF at = window->ZelGraph1->PlotRect().center();
        QWheelEvent event(at, window->ZelGraph1->mapToGlobal(at), {}, {0, eighths}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(window->ZelGraph1, &event);
    }
    void ZoomByMouse() const {
        window->ZelGraph1->SetMouseMode(MouseXYZoom);
        const QRect plot = window->ZelGraph1->PlotRect();
        const QPoint from = plot.center();
        const QPoint to = from + QPoint(plot.width() / 4, plot.height() / 4);
        QTest::mousePress(window->ZelGraph1, Qt::LeftButton, {}, from);
        QTest::mouseMove(window->ZelGraph1, to);
        QTest::mouseRelease(window->ZelGraph1, Qt::LeftButton, {}, to);
    }
    [[nodiscard]] double Span() const {
        return window->ZelGraph1->XAxisMax() - window->ZelGraph1->XAxisMin();
    }
    [[nodiscard]] double FirstTimeSeen() const {
        return window->ZelGraph1->TimeAt(window->ZelGraph1->PlotRect().left());
    }
    /// The time base goes with the span of the axis; ten polled scans a second.
    void ExpectTimeBase(double seconds) const {
        EXPECT_NEAR(Span(), seconds, 1e-9);
        EXPECT_NEAR(window->dDIVValue, seconds / 10, 1e-12);
        EXPECT_NEAR(window->ZelLED1->Value(), seconds / 10, 1e-12);
        EXPECT_TRUE(window->ZelLED1->Enabled());
        EXPECT_NEAR(window->ZelGraph1->ChartLength(), seconds * 10 + 1, 0.51);
        EXPECT_NEAR(window->ZelGraph1->Division(), seconds / 10, 1e-12);
    }
};

TEST_F(ViewTest, ZoomsOfWheelAndKeysSetTheTimeBase) {
    Wheel(120);
    ExpectTimeBase(8);
    Press(Qt::Key_Plus);
    ExpectTimeBase(6.4);
    Press(Qt::Key_Minus);
    ExpectTimeBase(8);
    Press(Qt::Key_Right);
    ExpectTimeBase(8);
}

TEST_F(ViewTest, UndoBringsSpansAndTimeBaseBackWhereverTheKeysGo) {
    ZoomByMouse();
    ASSERT_LT(Span(), 3);
    ASSERT_LT(window->ZelGraph1->AxisMax(VoltageAxis), 1);
    window->BtnStart->setFocus();
    Undo();
    ExpectTimeBase(10);
    EXPECT_EQ(window->dDIVValue, 1.0) << "exactly";
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->AxisMax(VoltageAxis), 10.0);
    Undo();
    ExpectTimeBase(10);
}

TEST_F(ViewTest, TimeGoesOnFollowingAfterAnUndoneZoom) {
    TurnOnAI();
    StartPolling();
    Tick(150);
    ZoomByMouse();
    Tick(1);
    ASSERT_NEAR(window->ZelGraph1->XAxisMax(), 15.1, 1e-6);
    Undo();
    ExpectTimeBase(10);
    EXPECT_EQ(window->dDIVValue, 1.0) << "exactly";
    EXPECT_NEAR(window->ZelGraph1->XAxisMax(), 15.1, 1e-6);
    Tick(10);
    EXPECT_NEAR(window->ZelGraph1->XAxisMax(), 16.1, 1e-6);
    ExpectTimeBase(10);
    Click(window->BtnStart);
}

TEST_F(ViewTest, UndonePanKeepsTheTimeBase) {
    window->ZelGraph1->SetXAxisMax(20); // other than the time base says
    Press(Qt::Key_Right);
    Undo();
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0);
    EXPECT_EQ(window->dDIVValue, 1.0);
}

TEST_F(ViewTest, DoubleClickShowsAllAndSetsTheTimeBase) {
    TurnOnAI();
    StartPolling();
    Tick(51);
    QTest::mouseDClick(window->ZelGraph1, Qt::LeftButton, {}, window->ZelGraph1->PlotRect().center());
    EXPECT_NEAR(window->ZelGraph1->XAxisMin(), 0.1, 1e-6);
    EXPECT_NEAR(window->ZelGraph1->XAxisMax(), 5.1, 1e-6);
    EXPECT_NEAR(window->dDIVValue, 0.5, 1e-6);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 51);
    Tick(1);
    EXPECT_NEAR(window->ZelGraph1->XAxisMax(), 5.2, 1e-6);
    Click(window->BtnStart);
}

TEST_F(ViewTest, HeldViewStandsStillWhileTheSessionGoesOn) {
    TurnOnAI();
    StartPolling();
    Tick(120);
    Press(Qt::Key_Space);
    const double first = FirstTimeSeen();
    EXPECT_NEAR(first, 2, 1e-6);
    Tick(300);
    EXPECT_EQ(FirstTimeSeen(), first);
    EXPECT_NEAR(window->ZelGraph1->XAxisMax(), 42, 1e-6);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 101) << "as ever";
    EXPECT_GT(window->ZelGraph1->PointCount(0), 400) << "what was held is still there";
    Press(Qt::Key_Space);
    EXPECT_NEAR(FirstTimeSeen(), 32, 1e-6);
    Tick(1);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 101);
    Click(window->BtnStart);
}

TEST_F(ViewTest, ZoomIntoAHeldPastSetsTheTimeBase) {
    TurnOnAI();
    StartPolling();
    Tick(200);
    Click(window->ZelGraph1->BtnHold);
    Press(Qt::Key_Left);
    ZoomByMouse();
    const double span = Span();
    EXPECT_LT(span, 3);
    ExpectTimeBase(span);
    const double first = FirstTimeSeen();
    Tick(50);
    EXPECT_EQ(FirstTimeSeen(), first);
    EXPECT_NEAR(window->ZelGraph1->XAxisMax(), 25, 1e-6);
    window->ZelLED1->Step(true);
    EXPECT_NEAR(FirstTimeSeen(), first + span / 2 - 2.5 * span, 1e-6);
    ExpectTimeBase(5 * span);
    Click(window->BtnStart);
}

TEST_F(ViewTest, HoldIsOffAtEveryStart) {
    TurnOnAI();
    Click(window->ZelGraph1->BtnHold);
    ASSERT_TRUE(window->ZelGraph1->BtnHold->isChecked());
    StartPolling();
    EXPECT_FALSE(window->ZelGraph1->BtnHold->isChecked());
    Tick(120);
    EXPECT_NEAR(FirstTimeSeen(), 2, 1e-6);
    Click(window->BtnStart);
}

} // namespace
} // namespace tracelet
