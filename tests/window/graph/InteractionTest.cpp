#include "tests/support/MainWindowTest.h"

#include "window/chart/ZelGraph.h"
#include "window/widgets/ZelLED.h"

#include <QMenu>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// State of the window whenever the display is written; its tooltip is set anew with every value.
class DisplayWrites : public QObject {
public:
    explicit DisplayWrites(const frmMain& owner) : window(owner) { window.ZelLED1->installEventFilter(this); }

    struct Write {
        double value;
        bool on;
        bool guarded;
        bool operator==(const Write&) const = default;
    };
    std::vector<Write> writes;

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::ToolTipChange)
            writes.push_back(
                {window.ZelLED1->Value(), window.ZelLED1->Enabled(), window.isNumEditEventFired});
        return false;
    }

private:
    const frmMain& window;
};

class InteractionTest : public MainWindowTest {
protected:
    [[nodiscard]] QAction* Entry(const char* name) const {
        return window->Menufile->findChild<QAction*>(QString::fromLatin1(name));
    }
    void RightClick() { QTest::mouseClick(window->ZelGraph1, Qt::RightButton); }
    /// Drags with the left button between two places, as fractions of the graph's size.
    void Drag(QPointF from, QPointF to) {
        const auto at = [this](QPointF fraction) {
            return QPointF(fraction.x() * window->ZelGraph1->width(),
                           fraction.y() * window->ZelGraph1->height())
                .toPoint();
        };
        DragPixels(at(from), at(to));
    }
    void DragPixels(QPoint from, QPoint to) {
        QTest::mousePress(window->ZelGraph1, Qt::LeftButton, {}, from);
        QTest::mouseMove(window->ZelGraph1, (from + to) / 2);
        QTest::mouseMove(window->ZelGraph1, to);
        QTest::mouseRelease(window->ZelGraph1, Qt::LeftButton, {}, to);
    }
};

TEST_F(InteractionTest, MenuHasItsEntriesInOrder) {
    EXPECT_EQ(window->Menufile->title(), u"Popup Menu"_s);
    std::vector<std::string> names;
    std::vector<std::string> captions;
    for (const QAction* action : window->Menufile->actions()) {
        names.push_back(action->objectName().toStdString());
        if (!action->isSeparator())
            captions.push_back(action->text().toStdString());
        EXPECT_FALSE(action->isCheckable());
    }
    EXPECT_THAT(names, ElementsAre("commet", "delimiter", "None", "xz", "yz", "xyz", "xp", "yp", "xyp"));
    EXPECT_THAT(captions,
                ElementsAre("MouseMode", "None", "XZoom", "YZoom", "XYZoom", "XPan", "YPan", "XYPan"));
    EXPECT_TRUE(window->Menufile->actions().at(1)->isSeparator());
    EXPECT_FALSE(Entry("commet")->isEnabled()); // a heading, not a choice
}

TEST_F(InteractionTest, EveryEntryWritesItsCode) {
    const std::pair<const char*, std::int32_t> cases[] = {{"xp", 4}, {"yp", 5},  {"xyp", 6}, {"xz", 7},
                                                          {"yz", 8}, {"xyz", 9}, {"None", 0}};
    for (const auto& [name, code] : cases) {
        Entry(name)->trigger();
        EXPECT_EQ(window->ZelGraph1->MouseMode(), code) << name;
    }
}

TEST_F(InteractionTest, RightButtonOpensTheMenuAndStartsNoZoom) {
    Entry("xyz")->trigger();
    QTest::mousePress(window->ZelGraph1, Qt::RightButton, {}, {100, 100});
    EXPECT_TRUE(window->Menufile->isVisible());
    EXPECT_EQ(window->Menufile->pos(), window->ZelGraph1->mapToGlobal(QPoint(100, 100)));
    Entry("None")->trigger();
    window->Menufile->close();
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
    Drag({0.3, 0.3}, {0.6, 0.6});
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
}

TEST_F(InteractionTest, OtherButtonsOpenNoMenu) {
    QTest::mouseClick(window->ZelGraph1, Qt::LeftButton);
    QTest::mouseClick(window->ZelGraph1, Qt::MiddleButton);
    EXPECT_FALSE(window->Menufile->isVisible());
}

TEST_F(InteractionTest, XZoomSetsTheTimeBase) {
    Entry("xz")->trigger();
    Drag({0.4, 0.3}, {0.65, 0.5});
    const double span = window->ZelGraph1->XAxisMax() - window->ZelGraph1->XAxisMin();
    EXPECT_GT(span, 1.0);
    EXPECT_LT(span, 4.5);
    EXPECT_DOUBLE_EQ(window->dDIVValue, span / 10);
    EXPECT_DOUBLE_EQ(window->ZelLED1->Value(), span / 10);
    EXPECT_TRUE(window->ZelLED1->Enabled());
    // polled every 100 ms: ten scans a second
    EXPECT_NEAR(window->ZelGraph1->ChartLength(), span * 10 + 1, 0.51);
}

TEST_F(InteractionTest, DraggedSpanBecomesTheRange) {
    Entry("xz")->trigger();
    const QRect plot = window->ZelGraph1->PlotRect();
    const QPoint from(plot.left() + plot.width() / 5, plot.center().y());
    const QPoint to(from.x() + plot.width() / 4, from.y());
    const double start = window->ZelGraph1->TimeAt(from.x());
    const double end = window->ZelGraph1->TimeAt(to.x());
    DragPixels(to, from); // backwards is as good
    EXPECT_NEAR(window->ZelGraph1->XAxisMin(), start, 1e-9);
    EXPECT_NEAR(window->ZelGraph1->XAxisMax(), end, 1e-9);
    EXPECT_NEAR(window->dDIVValue, (end - start) / 10, 1e-9);
    EXPECT_EQ(window->ZelGraph1->AxisMin(VoltageAxis), -10.0);
}

TEST_F(InteractionTest, YZoomTakesThePartOfEveryAxisShown) {
    SelectPorts(0, {0x01});
    TurnOnAI();
    TurnOnDI();
    Entry("yz")->trigger();
    const QRect plot = window->ZelGraph1->PlotRect();
    const int height = plot.height();
    DragPixels({plot.left() + 50, plot.top() + height / 4}, {plot.left() + 60, plot.top() + height / 2});
    const double top = 1.0 - double(height / 4) / height;
    const double bottom = 1.0 - double(height / 2) / height;
    EXPECT_NEAR(window->ZelGraph1->AxisMax(VoltageAxis), -10 + 20 * top, 1e-9);
    EXPECT_NEAR(window->ZelGraph1->AxisMin(VoltageAxis), -10 + 20 * bottom, 1e-9);
    EXPECT_NEAR(window->ZelGraph1->AxisMax(DigitalAxis), -1 + 30 * top, 1e-9);
    EXPECT_NEAR(window->ZelGraph1->AxisMin(DigitalAxis), -1 + 30 * bottom, 1e-9);
    EXPECT_EQ(window->ZelGraph1->AxisMax(TemperatureAxis), 100.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
    EXPECT_EQ(window->dDIVValue, 1.0);
}

TEST_F(InteractionTest, XYZoomTakesTheRectangle) {
    Entry("xyz")->trigger();
    const QRect plot = window->ZelGraph1->PlotRect();
    const QPoint from(plot.left() + 100, plot.top() + 20);
    const QPoint to(plot.left() + 200, plot.top() + 80);
    const double start = window->ZelGraph1->TimeAt(from.x());
    const double end = window->ZelGraph1->TimeAt(to.x());
    DragPixels(from, to);
    EXPECT_NEAR(window->ZelGraph1->XAxisMin(), start, 1e-9);
    EXPECT_NEAR(window->ZelGraph1->XAxisMax(), end, 1e-9);
    EXPECT_NEAR(window->ZelGraph1->AxisMax(VoltageAxis), 10 - 20.0 * 20 / plot.height(), 1e-9);
    EXPECT_NEAR(window->ZelGraph1->AxisMin(VoltageAxis), 10 - 20.0 * 80 / plot.height(), 1e-9);
    EXPECT_NEAR(window->dDIVValue, (end - start) / 10, 1e-9);
}

TEST_F(InteractionTest, PansMoveTheirAxes) {
    const struct {
        const char* entry;
        bool x;
        bool y;
    } cases[] = {{"xp", true, false}, {"yp", false, true}, {"xyp", true, true}};
    for (const auto& c : cases) {
        window->ZelGraph1->AxisSetRange(XAxis, 0.0, 10.0);
        window->ZelGraph1->AxisSetRange(VoltageAxis, -10.0, 10.0);
        Entry(c.entry)->trigger();
        const QRect plot = window->ZelGraph1->PlotRect();
        DragPixels(plot.center(), plot.center() + QPoint(-40, 30));
        const double right = c.x ? 10.0 * 40 / plot.width() : 0.0;
        const double up = c.y ? 20.0 * 30 / plot.height() : 0.0;
        EXPECT_NEAR(window->ZelGraph1->XAxisMin(), right, 1e-9) << c.entry;
        EXPECT_NEAR(window->ZelGraph1->XAxisMax(), 10.0 + right, 1e-9) << c.entry;
        EXPECT_NEAR(window->ZelGraph1->AxisMin(VoltageAxis), -10.0 + up, 1e-9) << c.entry;
        EXPECT_NEAR(window->ZelGraph1->AxisMax(VoltageAxis), 10.0 + up, 1e-9) << c.entry;
        EXPECT_EQ(window->dDIVValue, 1.0);
    }
}

TEST_F(InteractionTest, BandOfAFewPixelsZoomsNothing) {
    for (const char* entry : {"xz", "yz", "xyz"}) {
        Entry(entry)->trigger();
        DragPixels({300, 100}, {302, 102});
        EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0) << entry;
        EXPECT_EQ(window->ZelGraph1->AxisMax(VoltageAxis), 10.0) << entry;
    }
}

TEST_F(InteractionTest, SecondButtonEndsTheBand) {
    Entry("xz")->trigger();
    QTest::mousePress(window->ZelGraph1, Qt::LeftButton, {}, {200, 100});
    QTest::mouseMove(window->ZelGraph1, {350, 100});
    QTest::mousePress(window->ZelGraph1, Qt::RightButton, {}, {350, 100});
    EXPECT_TRUE(window->Menufile->isVisible());
    window->Menufile->close();
    QTest::mouseRelease(window->ZelGraph1, Qt::RightButton, {}, {350, 100});
    QTest::mouseRelease(window->ZelGraph1, Qt::LeftButton, {}, {400, 100});
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
}

TEST_F(InteractionTest, ZoomedSpanScrollsWithTheSession) {
    TurnOnAI();
    StartPolling();
    Tick(20);
    Entry("xz")->trigger();
    const QRect plot = window->ZelGraph1->PlotRect();
    DragPixels({plot.left(), 100}, {plot.left() + plot.width() / 10, 100});
    const double span = window->ZelGraph1->XAxisMax() - window->ZelGraph1->XAxisMin();
    EXPECT_NEAR(span, 1.0, 0.02);
    Tick(10);
    EXPECT_NEAR(window->ZelGraph1->XAxisMax(), 3.0, 1e-9);
    EXPECT_NEAR(window->ZelGraph1->XAxisMax() - window->ZelGraph1->XAxisMin(), span, 1e-9);
    Click(window->BtnStart);
}

TEST_F(InteractionTest, ZoomWhoseChartLengthFailsLeavesTheDisplayAlive) {
    window->nTimerInterval = 0;
    window->ZelGraph1->SetMouseMode(MouseXZoom);
    window->ZelGraph1->AxisSetRange(XAxis, 3.0, 5.5);
    emit window->ZelGraph1->MouseUp(1, 0, 0, 0);
    EXPECT_EQ(window->dDIVValue, 0.25);
    EXPECT_EQ(window->ZelLED1->Value(), 0.25);
    EXPECT_TRUE(window->ZelLED1->Enabled());
}

TEST_F(InteractionTest, DisplayIsOffWhileZoomsAndStepsWriteIt) {
    const DisplayWrites display(*window);
    window->ZelGraph1->SetMouseMode(MouseXZoom);
    window->ZelGraph1->AxisSetRange(XAxis, 3.0, 5.5);
    emit window->ZelGraph1->MouseUp(1, 0, 0, 0);
    emit window->ZelLED1->Step(true);
    window->ShowDIVValue(2.0);
    using Write = DisplayWrites::Write;
    EXPECT_THAT(display.writes,
                ElementsAre(Write{0.25, false, false}, Write{1.25, false, true}, Write{2.0, true, true}));
    EXPECT_FALSE(window->isNumEditEventFired);
}

TEST_F(InteractionTest, StepStartsFromTheZoomedValue) {
    window->ZelGraph1->SetMouseMode(MouseXZoom);
    window->ZelGraph1->AxisSetRange(XAxis, 0.0, 3.0);
    emit window->ZelGraph1->MouseUp(1, 0, 0, 0);
    window->ZelLED1->Step(true);
    EXPECT_DOUBLE_EQ(window->dDIVValue, 1.5);
    EXPECT_DOUBLE_EQ(window->ZelGraph1->XAxisMin(), -6.0);
}

TEST_F(InteractionTest, MouseUpTakesTheSpanAsItIs) {
    Entry("xz")->trigger();
    window->ZelGraph1->AxisSetRange(XAxis, 3.0, 5.5);
    emit window->ZelGraph1->MouseUp(1, 0, 0, 0);
    EXPECT_DOUBLE_EQ(window->dDIVValue, 0.25);
    EXPECT_EQ(window->ZelLED1->Text(), u".250000"_s);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 3.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 5.5);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 26);
    window->ZelGraph1->AxisSetRange(XAxis, 0.1, 0.7); // about its middle 0.1 would be another double
    emit window->ZelGraph1->MouseUp(1, 0, 0, 0);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.1);
    window->ZelGraph1->AxisSetRange(XAxis, 0.0, 5000.0); // beyond what the display's steps reach
    emit window->ZelGraph1->MouseUp(4, 0, 0, 0);
    EXPECT_DOUBLE_EQ(window->dDIVValue, 500.0);
}

TEST_F(InteractionTest, OnlyZoomModesChangeTheTimeBase) {
    for (const std::int32_t mode : {0, 4, 5, 6}) {
        window->ZelGraph1->SetMouseMode(mode);
        window->ZelGraph1->AxisSetRange(XAxis, 3.0, 5.5);
        emit window->ZelGraph1->MouseUp(1, 0, 0, 0);
        EXPECT_EQ(window->dDIVValue, 1.0) << mode;
    }
    for (const std::int32_t mode : {7, 8, 9}) {
        window->dDIVValue = 1.0;
        window->ZelGraph1->SetMouseMode(mode);
        emit window->ZelGraph1->MouseUp(1, 0, 0, 0);
        EXPECT_EQ(window->dDIVValue, 0.25) << mode;
    }
}

TEST_F(InteractionTest, PanMovesTheAxisAndKeepsTheTimeBase) {
    Entry("xp")->trigger();
    Drag({0.6, 0.5}, {0.4, 0.5});
    EXPECT_GT(window->ZelGraph1->XAxisMin(), 1.0);
    EXPECT_NEAR(window->ZelGraph1->XAxisMax() - window->ZelGraph1->XAxisMin(), 10.0, 1e-9);
    EXPECT_EQ(window->dDIVValue, 1.0);
}

TEST_F(InteractionTest, ErrorsShowExceptTheOne) {
    emit window->ZelGraph1->Error(7, u"Out of memory!"_s);
    EXPECT_THAT(boxes.Take(), IsEmpty());
    for (const char* text : {"Out of memory", "out of memory!", "Bad axis"}) {
        emit window->ZelGraph1->Error(7, QString::fromLatin1(text));
        EXPECT_THAT(boxes.Take(), ElementsAre(MessageBoxes::Box{text, "Graph Error Message"}));
    }
}

TEST_F(InteractionTest, ClearGraphKeepsPlotsAxesAndMode) {
    Entry("xp")->trigger();
    TurnOnAI();
    StartPolling();
    Tick(3);
    window->ZelGraph1->AxisSetRange(XAxis, 1.0, 2.0);
    Click(window->BtnClearGraph);
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 0);
    EXPECT_EQ(window->ZelGraph1->PlotCount(), 1);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 1.0);
    EXPECT_EQ(window->ZelGraph1->MouseMode(), 4);
    Tick(1);
    EXPECT_EQ(window->ZelGraph1->PointAt(0, 0).x(), 0.4F);
    Click(window->BtnStart);
}

} // namespace
} // namespace tracelet
