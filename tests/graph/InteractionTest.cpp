#include "tests/support/MainWindowTest.h"

#include "devices/display/ZelGraph.h"
#include "devices/display/ZelLED.h"

#include <QMenu>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InteractionTest : public MainWindowTest {
protected:
    [[nodiscard]] QAction* Entry(const char* name) const {
        return window->Menufile->findChild<QAction*>(QString::fromLatin1(name));
    }
    void RightClick() { QTest::mouseClick(window->ZelGraph1, Qt::RightButton); }
    /// Drags with the left button between two places, as fractions of the graph's size.
    void Drag(QPointF from, QPointF to) {
        const auto at = [this](QPointF fraction) {
            return QPointF(fraction.x() * window->ZelGraph1->width(), fraction.y() * window->ZelGraph1->height())
                .toPoint();
        };
        QTest::mousePress(window->ZelGraph1, Qt::LeftButton, {}, at(from));
        QTest::mouseMove(window->ZelGraph1, at((from + to) / 2));
        QTest::mouseMove(window->ZelGraph1, at(to));
        QTest::mouseRelease(window->ZelGraph1, Qt::LeftButton, {}, at(to));
    }
};

TEST_F(InteractionTest, MenuHasItsEntriesInOrder) {
    EXPECT_EQ(window->Menufile->title(), u"Popup Menu"_qs);
    std::vector<std::string> names;
    std::vector<std::string> captions;
    for (const QAction* action : window->Menufile->actions()) {
        names.push_back(action->objectName().toStdString());
        if (!action->isSeparator())
            captions.push_back(action->text().toStdString());
        EXPECT_FALSE(action->isCheckable());
    }
    EXPECT_THAT(names, ElementsAre("commet", "delimiter", "None", "xz", "yz", "xyz", "xp", "yp", "xyp"));
    EXPECT_THAT(captions, ElementsAre("MouseMode", "None", "XZoom", "YZoom", "XYZoom", "XPan", "YPan", "XYPan"));
    EXPECT_TRUE(window->Menufile->actions().at(1)->isSeparator());
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

TEST_F(InteractionTest, MouseUpTakesTheSpanAsItIs) {
    Entry("xz")->trigger();
    window->ZelGraph1->AxisSetRange(XAxis, 3.0, 5.5);
    emit window->ZelGraph1->MouseUp(1, 0, 0, 0);
    EXPECT_DOUBLE_EQ(window->dDIVValue, 0.25);
    EXPECT_EQ(window->ZelLED1->Text(), u".250000"_qs);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 3.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 5.5);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 26);
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
    emit window->ZelGraph1->Error(7, u"Out of memory!"_qs);
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
    EXPECT_EQ(window->ZelGraph1->PointAt(0, 0).x(), 0.4);
    Click(window->BtnStart);
}

} // namespace
} // namespace tracelet
