#include "window/main/MainWidgets.h"

#include "window/chart/ZelGraph.h"
#include "window/widgets/ZelButton.h"
#include "window/widgets/ZelLED.h"
#include "window/widgets/ZelSlider.h"

#include <QApplication>
#include <QCheckBox>
#include <QFontInfo>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

OuterSize Pixels(int width, int height) {
    return {static_cast<float>(height) * TwipsPerPixel, static_cast<float>(width) * TwipsPerPixel};
}

class MainWidgetsTest : public testing::Test {
protected:
    MainWidgetsTest() {
        widgets.Build(window);
        PlaceAt(1000, 650);
        window.show();
    }

    void PlaceAt(int width, int height) {
        window.resize(width, height);
        widgets.Place(Pixels(width, height));
        QCoreApplication::processEvents();
    }

    [[nodiscard]] std::vector<QWidget*> NamedWidgets() const {
        std::vector<QWidget*> named;
        for (QWidget* widget : window.findChildren<QWidget*>())
            if (!widget->objectName().isEmpty() && !widget->objectName().startsWith(QLatin1String("qt_")))
                named.push_back(widget);
        return named;
    }

    void ExpectNothingClippedOrOverlapping() const {
        for (QWidget* widget : NamedWidgets()) {
            if (!widget->isVisible())
                continue;
            const std::string name = widget->objectName().toStdString();
            EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry()))
                << name << " leaves its group";
            const bool hasCaption = qobject_cast<QLabel*>(widget) || qobject_cast<QAbstractButton*>(widget);
            const QSize needed = hasCaption ? widget->minimumSizeHint() : QSize(0, 0);
            EXPECT_GE(widget->width(), needed.width()) << name;
            EXPECT_GE(widget->height(), needed.height()) << name;
            for (QWidget* other : NamedWidgets()) {
                const bool beside = other != widget && other->parentWidget() == widget->parentWidget();
                EXPECT_FALSE(beside && other->isVisible() && other->geometry().intersects(widget->geometry()))
                    << name << " and " << other->objectName().toStdString();
            }
        }
    }

    QWidget window;
    MainWidgets widgets;
};

TEST_F(MainWidgetsTest, CaptionsAreThese) {
    const std::pair<const char*, const char16_t*> buttons[] = {{"BtnStart", u"Start"},
                                                               {"BtnModeSwitch", u"History Mode"},
                                                               {"BtnSaveAs", u"Save As"},
                                                               {"BtnHistory", u"&History..."},
                                                               {"BtnExit", u"&Exit"},
                                                               {"BtnSet", u"&Setting..."},
                                                               {"CkAISave2Disk", u"AI Save2Disk"},
                                                               {"CkDISave2Disk", u"DI Save2Disk"},
                                                               {"BtnGraphSet", u"Setting..."},
                                                               {"BtnClearGraph", u"Clear Graph"},
                                                               {"BtnHisConvert", u"Convert"},
                                                               {"ChkPlay", u"4"},
                                                               {"ZelButton1", u"AI"},
                                                               {"ZelButton2", u"DI"}};
    for (const auto& [name, caption] : buttons) {
        auto* button = window.findChild<QAbstractButton*>(QLatin1String(name));
        ASSERT_NE(button, nullptr) << name;
        EXPECT_EQ(button->text(), QString::fromUtf16(caption)) << name;
    }
    const std::pair<const char*, const char16_t*> labels[] = {
        {"Label14", u"High"}, {"Label15", u"Slow"},    {"Label16", u"Play Speed"}, {"Label6", u"100%"},
        {"Label1", u"0%"},    {"Label2", u"Position"}, {"LabelSecDiv", u"sec/div"}};
    for (const auto& [name, caption] : labels) {
        auto* label = window.findChild<QLabel*>(QLatin1String(name));
        ASSERT_NE(label, nullptr) << name;
        EXPECT_EQ(label->text(), QString::fromUtf16(caption)) << name;
    }
    const std::pair<const char*, const char16_t*> groups[] = {{"FrameSet", u"Device"},
                                                              {"FrameCmd", u"Signal"},
                                                              {"FrameGraph", u"Graph"},
                                                              {"FrameHis", u"History Playback"}};
    for (const auto& [name, caption] : groups) {
        auto* group = window.findChild<QGroupBox*>(QLatin1String(name));
        ASSERT_NE(group, nullptr) << name;
        EXPECT_EQ(group->title(), QString::fromUtf16(caption)) << name;
    }
}

TEST_F(MainWidgetsTest, MembersBearTheirNames) {
    const std::pair<QWidget*, const char*> members[] = {
        {widgets.ZelGraph1, "ZelGraph1"},   {widgets.FrameListView, "FrameListView"},
        {widgets.ListView1, "ListView1"},   {widgets.Picture4, "Picture4"},
        {widgets.ZelLED1, "ZelLED1"},       {widgets.ZelSliderR, "ZelSliderR"},
        {widgets.ZelSliderV, "ZelSliderV"}, {widgets.BtnAccelerate, "BtnAccelerate"},
        {widgets.BtnStop, "BtnStop"},       {widgets.Label1, "Label1"},
        {widgets.Label2, "Label2"}};
    for (const auto& [widget, name] : members)
        EXPECT_EQ(widget->objectName(), QLatin1String(name));
}

TEST_F(MainWidgetsTest, OpensWithHistoryOff) {
    EXPECT_FALSE(widgets.FrameHis->isEnabled());
    EXPECT_FALSE(widgets.ChkPlay->isEnabled());
    EXPECT_FALSE(widgets.BtnModeSwitch->isEnabled());
    EXPECT_TRUE(widgets.BtnHistory->isEnabled());
    EXPECT_TRUE(widgets.BtnStart->isEnabled());
    EXPECT_FALSE(widgets.ZelButton1->Value());
    EXPECT_FALSE(widgets.ZelButton2->Value());
    EXPECT_TRUE(widgets.ZelSliderR->Enabled());
    EXPECT_TRUE(widgets.ZelSliderV->Enabled());
}

TEST_F(MainWidgetsTest, HistoryButtonStandsOutsideEveryGroup) {
    EXPECT_EQ(widgets.BtnHistory->parentWidget(), &window);
    EXPECT_EQ(widgets.BtnStart->parentWidget(), &window);
}

TEST_F(MainWidgetsTest, PlotListHasTwoColumns) {
    ASSERT_EQ(widgets.ListView1->columnCount(), 2);
    EXPECT_EQ(widgets.ListView1->headerItem()->text(0), QStringLiteral(" Chan"));
    EXPECT_EQ(widgets.ListView1->headerItem()->text(1), QStringLiteral(" Line"));
    EXPECT_FALSE(widgets.ListView1->rootIsDecorated());
}

TEST_F(MainWidgetsTest, StrokesAreDrawnInTheirPlotsColour) {
    auto* row = new QTreeWidgetItem(widgets.ListView1, {QStringLiteral("AI 0"), QStringLiteral("-------")});
    row->setForeground(1, QColor(255, 0, 255));
    QCoreApplication::processEvents();
    const QRect stroke = widgets.ListView1->visualItemRect(row);
    const QImage picture = widgets.ListView1->viewport()->grab(stroke).toImage();
    int magenta = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            magenta += color.red() > 150 && color.blue() > 150 && color.green() < 80 ? 1 : 0;
        }
    EXPECT_GT(magenta, 10);
    EXPECT_EQ(picture.pixelColor(stroke.width() / 2, 1), QColor(0x10, 0x15, 0x1A));
}

TEST_F(MainWidgetsTest, FitsAtEverySizeFromTheMinimumOn) {
    for (const QSize size : {QSize(763, 483), QSize(800, 600), QSize(1000, 650), QSize(3840, 2160)}) {
        SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height());
        PlaceAt(size.width(), size.height());
        ExpectNothingClippedOrOverlapping();
    }
}

TEST_F(MainWidgetsTest, PlacesFollowTheArithmeticInPixels) {
    PlaceAt(1000, 650);
    const int listWidth = widgets.FrameListView->width();
    EXPECT_EQ(widgets.ZelGraph1->geometry().topLeft(), QPoint(3, 0));
    EXPECT_EQ(widgets.ZelGraph1->width(), 1000 - listWidth - 10);
    EXPECT_EQ(widgets.FrameListView->x(), widgets.ZelGraph1->geometry().right() + 1);
    EXPECT_EQ(widgets.FrameSet->geometry().bottom() + 1, 650 - 47);
    EXPECT_EQ(widgets.BtnModeSwitch->y(), widgets.BtnStart->geometry().bottom() + 1);
    EXPECT_EQ(widgets.BtnSaveAs->y(), widgets.BtnModeSwitch->geometry().bottom() + 1);
    EXPECT_EQ(widgets.BtnExit->geometry().bottom(), widgets.FrameSet->geometry().bottom());
    EXPECT_EQ(widgets.BtnAccelerate->x(), widgets.ChkPlay->geometry().right() + 1);
    EXPECT_EQ(widgets.BtnStop->x(), widgets.BtnAccelerate->geometry().right() + 1);
}

TEST_F(MainWidgetsTest, NeighboursTouchAtEveryWidth) {
    for (int width = 763; width < 779; ++width) {
        PlaceAt(width, 483);
        EXPECT_EQ(widgets.FrameListView->x(), widgets.ZelGraph1->geometry().right() + 1) << width;
        EXPECT_EQ(widgets.FrameHis->geometry().right(), widgets.ZelGraph1->geometry().right()) << width;
        EXPECT_EQ(widgets.BtnStart->geometry().right(), widgets.FrameListView->geometry().right()) << width;
        EXPECT_EQ(widgets.FrameGraph->geometry().right(), widgets.ZelGraph1->geometry().right()) << width;
    }
}

TEST_F(MainWidgetsTest, OpensAtItsDesignedSize) {
    QWidget fresh;
    MainWidgets().Build(fresh);
    EXPECT_EQ(fresh.size(), QSize(1000, 650));
}

TEST_F(MainWidgetsTest, NoSizeHintKeepsTheWindowLarge) {
    window.resize(300, 200);
    EXPECT_EQ(window.size(), QSize(300, 200));
}

TEST_F(MainWidgetsTest, EveryControlIsReachedByTabAndHasAName) {
    std::set<QWidget*> reached;
    for (QWidget* at = widgets.BtnStart; reached.insert(at).second;)
        at = at->nextInFocusChain();
    for (QWidget* widget : std::initializer_list<QWidget*>{
             widgets.BtnStart,      widgets.BtnModeSwitch, widgets.BtnSaveAs,   widgets.BtnHistory,
             widgets.BtnExit,       widgets.ZelButton1,    widgets.ZelButton2,  widgets.BtnSet,
             widgets.CkAISave2Disk, widgets.CkDISave2Disk, widgets.BtnGraphSet, widgets.BtnClearGraph,
             widgets.ChkPlay,       widgets.BtnAccelerate, widgets.BtnStop,     widgets.ZelSliderR,
             widgets.ZelSliderV,    widgets.BtnHisConvert, widgets.ListView1,   widgets.ZelLED1}) {
        const std::string name = widget->objectName().toStdString();
        EXPECT_TRUE(reached.contains(widget)) << name;
        EXPECT_TRUE(widget->focusPolicy() & Qt::TabFocus) << name;
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        EXPECT_TRUE(!widget->accessibleName().isEmpty() || (button && button->text().size() > 1)) << name;
    }
}

} // namespace
} // namespace tracelet
