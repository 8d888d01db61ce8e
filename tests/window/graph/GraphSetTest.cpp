// Opening and closing the dialog, and its axes.

#include "tests/window/graph/GraphSetTest.h"

#include "window/chart/ZelGraph.h"
#include "window/graph/RangeBox.h"
#include "window/widgets/ZelLED.h"

#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Box = MessageBoxes::Box;

TEST_F(GraphSetTest, ShowsThePlotsAndTheRanges) {
    Scan(0, 2);
    SelectPorts(0, {0x01});
    InDialog([&] {
        EXPECT_EQ(dialog->windowTitle(), u"Graph Setting"_s);
        const auto* list = Find<QListWidget>("lstPlots");
        ASSERT_EQ(list->count(), 3);
        EXPECT_EQ(list->item(0)->text(), u"AI 0"_s);
        EXPECT_EQ(list->item(2)->text(), u"DI 0:0"_s);
        const auto* styles = Find<QComboBox>("CmbLineStyle");
        ASSERT_EQ(styles->count(), 5);
        EXPECT_EQ(styles->itemText(0), u"Solid"_s);
        EXPECT_EQ(styles->itemText(1), u"Dash"_s);
        EXPECT_EQ(styles->itemText(2), u"Dot"_s);
        EXPECT_EQ(styles->itemText(3), u"DashDot"_s);
        EXPECT_EQ(styles->itemText(4), u"DashDotDot"_s);
        EXPECT_FALSE(Find<QCheckBox>("chkXAutoS")->isChecked());
        EXPECT_FALSE(Find<QCheckBox>("chkYAutoS")->isChecked());
        EXPECT_EQ(TextOf("txtXMin"), u"0"_s);
        EXPECT_EQ(TextOf("txtXMax"), u"10"_s);
        EXPECT_EQ(TextOf("txtYMin"), u"-10"_s);
        EXPECT_EQ(TextOf("txtYMax"), u"10"_s);
        EXPECT_TRUE(Find<QLineEdit>("txtXMin")->isEnabled());
        EXPECT_EQ(Find<QLineEdit>("txtXMax")->toolTip(), u"input the range you want"_s);
        EXPECT_EQ(Find<QLabel>("Label7")->text(), u"LineColor"_s);
        EXPECT_EQ(Find<QLabel>("Label6")->text(), u"LineStyle"_s);
        EXPECT_EQ(Find<QLabel>("Label4")->text(), u"Min:"_s);
        EXPECT_EQ(Find<QLabel>("Label5")->text(), u"Max:"_s);
        EXPECT_EQ(Find<QGroupBox>("framePlots")->title(), u"Plots"_s);
        EXPECT_EQ(Find<QGroupBox>("frameAxes")->title(), u"Axes"_s);
        EXPECT_EQ(Find<QGroupBox>("Frame1")->title(), u"X"_s);
        EXPECT_EQ(Find<QGroupBox>("Frame2")->title(), u"Y"_s);
        EXPECT_EQ(Find<QCheckBox>("chkXAutoS")->text(), u"AutoScale"_s);
        EXPECT_EQ(Find<QCheckBox>("chkYAutoS")->text(), u"AutoScale"_s);
        EXPECT_EQ(Find<QPushButton>("BtnApply")->text(), u"OK"_s);
        EXPECT_EQ(Find<QPushButton>("BtnCancel")->text(), u"Cancel"_s);
        EXPECT_TRUE(Find<QPushButton>("BtnColor")->text().isEmpty());
    });
}

TEST_F(GraphSetTest, ReturnInABoxPressesNoButton) {
    InDialog([&] {
        Type("txtXMax", "99");
        QTest::keyClick(Find<QLineEdit>("txtXMax"), Qt::Key_Return);
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
    });
}

TEST_F(GraphSetTest, EnterPressesTheButtonThatHasTheFocus) {
    InDialog([&] {
        Enter("txtXMax");
        Find<QPushButton>("BtnCancel")->setFocus();
        QTest::keyClick(Find<QPushButton>("BtnCancel"), Qt::Key_Return);
        EXPECT_FALSE(dialog->isVisible());
    });
    InDialog([&] {
        Type("txtXMax", "99");
        Find<QPushButton>("BtnApply")->setFocus();
        QTest::keyClick(Find<QPushButton>("BtnApply"), Qt::Key_Enter);
        EXPECT_FALSE(dialog->isVisible());
    });
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 99.0);
}

TEST_F(GraphSetTest, RangesAreShownRoundedAndKeptAsTheyAre) {
    const double minimum = 1.0 / 3.0;
    const double maximum = 10.0 / 3.0;
    ZelGraph& graph = *window->ZelGraph1;
    graph.AxisSetRange(XAxis, minimum, maximum);
    graph.AxisSetRange(VoltageAxis, -1e-7 / 3.0, 1e-7);
    InDialog([&] {
        EXPECT_EQ(Find<RangeBox>("txtXMin")->Drawn(), u"0.333333"_s);
        EXPECT_EQ(TextOf("txtXMin"), u"0.333333333333333"_s);
        EXPECT_EQ(Find<RangeBox>("txtXMax")->Drawn(), u"3.333333"_s);
        EXPECT_EQ(Find<RangeBox>("txtYMax")->Drawn(), u"1e-07"_s);
        Enter("txtXMin");
        EXPECT_EQ(Find<RangeBox>("txtXMin")->Drawn(), u"0.333333333333333"_s) << "while one may type";
        Tab();
        Ok();
    });
    EXPECT_DOUBLE_EQ(graph.XAxisMin(), minimum);
    EXPECT_DOUBLE_EQ(graph.XAxisMax(), maximum);
    EXPECT_EQ(graph.AxisMin(VoltageAxis), -1e-7 / 3.0);
    InDialog([&] {
        Type("txtXMin", "0.33333");
        Ok();
    });
    EXPECT_NEAR(graph.XAxisMin(), 0.33333, 1e-12);
    EXPECT_NEAR(graph.XAxisMax(), maximum, 1e-12) << "the other end was not typed";
}

TEST_F(GraphSetTest, ClosingWhenIdleKeepsTheSamples) {
    window->ZelGraph1->AddPoint(0, 1.0, 1.0);
    InDialog([&] { Ok(); });
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 1);
}

TEST_F(GraphSetTest, AutomaticScaleIsOffEvenWhenTheRangeIsRefused) {
    window->ZelGraph1->SetAxisAutoScale(XAxis, true);
    InDialog([&] {
        Click(Find<QCheckBox>("chkXAutoS"));
        Find<QLineEdit>("txtXMin")->setText(u"abc"_s);
        Ok();
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Graph Set Apply Error", "Tracelet"}));
    });
    EXPECT_FALSE(window->ZelGraph1->AxisAutoScale(XAxis));
}

TEST_F(GraphSetTest, OkSetsTheRangeAnewAroundItsMiddle) {
    InDialog([&] {
        Type("txtXMin", "0.1");
        Type("txtXMax", "0.7");
        Ok();
    });
    const double division = (0.7 - 0.1) / 10;
    const double middle = (0.7 + 0.1) / 2;
    EXPECT_EQ(window->dDIVValue, division);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), middle - 5 * division);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), middle + 5 * division);
    EXPECT_NE(window->ZelGraph1->XAxisMin(), 0.1); // by the last digit
}

TEST_F(GraphSetTest, CancelForgets) {
    InDialog([&] {
        Select(0);
        Choose(2);
        Type("txtXMax", "99");
        Click(Find<QPushButton>("BtnCancel"));
    });
    EXPECT_EQ(window->M1.AIPlotLineStyle[0], 0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
    InDialog([&] {
        Select(0);
        EXPECT_EQ(Find<QComboBox>("CmbLineStyle")->currentIndex(), 0);
    });
}

TEST_F(GraphSetTest, ClicksOnTheBoxesRefillTheRanges) {
    InDialog([&] {
        for (const char* box : {"txtXMin", "txtXMax", "txtYMin", "txtYMax"})
            Find<QLineEdit>(box)->setText(u"abc"_s);
        Click(Find<QCheckBox>("chkXAutoS"));
        Click(Find<QCheckBox>("chkYAutoS"));
        for (int twice = 0; twice < 2; ++twice) {
            EXPECT_EQ(TextOf("txtXMin"), u"0"_s);
            EXPECT_EQ(TextOf("txtXMax"), u"10"_s);
            EXPECT_EQ(TextOf("txtYMin"), u"-10"_s);
            EXPECT_EQ(TextOf("txtYMax"), u"10"_s);
            for (const char* box : {"txtXMin", "txtXMax", "txtYMin", "txtYMax"})
                Find<QLineEdit>(box)->setText(u"7"_s);
            Find<QCheckBox>("chkXAutoS")->setChecked(twice == 1);
            Find<QCheckBox>("chkYAutoS")->setChecked(twice == 1);
        }
        EXPECT_FALSE(Find<QLineEdit>("txtXMin")->isEnabled());
    });
}

TEST_F(GraphSetTest, OpensOnAPlayingRecordingAsTheAxesAre) {
    window->isHisPlaying = true;
    window->ZelGraph1->AxisSetRange(XAxis, 20.0, 45.0);
    window->ZelGraph1->SetAxisAutoScale(VoltageAxis, true);
    InDialog([&] {
        EXPECT_FALSE(Find<QCheckBox>("chkXAutoS")->isChecked());
        EXPECT_EQ(TextOf("txtXMin"), u"0"_s);
        EXPECT_EQ(TextOf("txtXMax"), u"25"_s);
        EXPECT_FALSE(Find<QLineEdit>("txtXMin")->isEnabled());
        EXPECT_TRUE(Find<QCheckBox>("chkYAutoS")->isChecked());
        EXPECT_EQ(TextOf("txtYMin"), u"-10"_s);
        EXPECT_FALSE(Find<QLineEdit>("txtYMin")->isEnabled());
        Click(Find<QCheckBox>("chkXAutoS"));
        EXPECT_EQ(TextOf("txtXMin"), u"0"_s);
        EXPECT_EQ(TextOf("txtXMax"), u"25"_s);
        EXPECT_FALSE(Find<QLineEdit>("txtXMin")->isEnabled());
        Click(Find<QCheckBox>("chkYAutoS"));
        EXPECT_EQ(TextOf("txtYMin"), u"-10"_s);
        EXPECT_TRUE(Find<QLineEdit>("txtYMin")->isEnabled());
    });
    window->isHisPlaying = false;
}

TEST_F(GraphSetTest, AFaultLeavesEarlierStepsInForce) {
    InDialog([&] {
        Find<QLineEdit>("txtXMin")->setText(u"1"_s);
        Find<QLineEdit>("txtXMax")->setText(u"3"_s);
        Find<QLineEdit>("txtYMin")->setText(u"-2"_s);
        Find<QLineEdit>("txtYMax")->setText(u"x"_s);
        Ok();
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Graph Set Apply Error", "Tracelet"}));
    });
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 1.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 3.0);
    EXPECT_EQ(window->ZelGraph1->AxisMin(VoltageAxis), -2.0);
    EXPECT_EQ(window->ZelGraph1->AxisMax(VoltageAxis), 10.0);
    EXPECT_EQ(window->dDIVValue, 1.0);
}

TEST_F(GraphSetTest, CancelledDialogRebuildsThePlotsToo) {
    TurnOnAI();
    InDialog([&] {
        window->M1.AIPlotName[0] = "Pressure";
        dialog->close();
    });
    EXPECT_EQ(window->ZelGraph1->Plot(0).name, u"Pressure"_s);
    EXPECT_EQ(window->ListView1->topLevelItem(0)->text(0), u"Pressure"_s);
}

TEST_F(GraphSetTest, OpensWithoutAnyPlot) {
    Open({});
    InDialog([&] {
        EXPECT_EQ(Find<QListWidget>("lstPlots")->count(), 0);
        Choose(3);
        Ok();
        EXPECT_FALSE(dialog->isVisible());
    });
    EXPECT_EQ(window->dDIVValue, 1.0);
}

TEST_F(GraphSetTest, SpanIsNotHeldWithinTheSteps) {
    InDialog([&] {
        Type("txtXMax", "5000");
        Ok();
    });
    EXPECT_EQ(window->dDIVValue, 500.0);
    EXPECT_EQ(window->ZelLED1->Value(), 500.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 5000.0);
}

TEST_F(GraphSetTest, RangeChecksOnLeavingABox) {
    const struct {
        const char* box;
        const char* minimum;
        const char* maximum;
        const char* message;
        const char* repaired;
    } cases[] = {{"txtXMax", "5", "3", "Invalide X axis range", "15"},
                 {"txtXMin", "5", "3", "Invalide X axis range", "-7"},
                 {"txtYMax", "2.5", "-1", "Invalide Y axis range", "12.5"},
                 {"txtYMin", "2.5", "-1", "Invalide Y axis range", "-11"},
                 {"txtYMin", "2", "2", nullptr, "2"},
                 {"txtXMax", "4", "4", nullptr, "4"},
                 {"txtXMax", "abc", "3", nullptr, "3"},
                 {"txtXMax", "5", "", nullptr, ""},
                 {"txtYMin", "abc", "3", nullptr, "abc"}};
    InDialog([&] {
        for (const auto& c : cases) {
            const bool isX = std::string_view(c.box).find('X') != std::string_view::npos;
            Find<QLineEdit>(isX ? "txtXMin" : "txtYMin")->setText(QString::fromLatin1(c.minimum));
            Find<QLineEdit>(isX ? "txtXMax" : "txtYMax")->setText(QString::fromLatin1(c.maximum));
            Enter(c.box);
            Tab();
            const auto shown = boxes.Take();
            if (c.message == nullptr)
                EXPECT_THAT(shown, IsEmpty()) << c.box << c.minimum << c.maximum;
            else
                EXPECT_THAT(shown, ElementsAre(Box{c.message, "Tracelet"}));
            EXPECT_EQ(TextOf(c.box), QString::fromLatin1(c.repaired)) << c.box << c.minimum << c.maximum;
        }
    });
}

TEST_F(GraphSetTest, ClickThatLeavesAReversedRangeDoesNothingMore) {
    InDialog([&] {
        Type("txtXMin", "5");
        Type("txtXMax", "3");
        Ok();
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Invalide X axis range", "Tracelet"}));
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(window->ZelGraph1->XAxisMax(), 10.0);
        Ok();
        EXPECT_FALSE(dialog->isVisible());
    });
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 5.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 15.0);
}

TEST_F(GraphSetTest, OkSetsAxesAndTimeBase) {
    InDialog([&] {
        Type("txtXMin", "2");
        Type("txtXMax", "27");
        Type("txtYMin", "-1.5");
        Type("txtYMax", "1,000");
        Ok();
    });
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 2.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 27.0);
    EXPECT_EQ(window->ZelGraph1->AxisMin(VoltageAxis), -1.5);
    EXPECT_EQ(window->ZelGraph1->AxisMax(VoltageAxis), 1000.0);
    EXPECT_EQ(window->dDIVValue, 2.5);
    EXPECT_EQ(window->ZelLED1->Text(), u"2.500000"_s);
    EXPECT_EQ(window->ZelGraph1->ChartLength(), 251);
}

TEST_F(GraphSetTest, AutoScaleIsNotReadFromTheBoxes) {
    InDialog([&] {
        Click(Find<QCheckBox>("chkXAutoS"));
        Click(Find<QCheckBox>("chkYAutoS"));
        EXPECT_FALSE(Find<QLineEdit>("txtXMin")->isEnabled());
        EXPECT_TRUE(Find<QLineEdit>("txtXMax")->isEnabled());
        EXPECT_FALSE(Find<QLineEdit>("txtYMin")->isEnabled());
        EXPECT_FALSE(Find<QLineEdit>("txtYMax")->isEnabled());
        Find<QLineEdit>("txtXMax")->setText(u"abc"_s);
        Ok();
        EXPECT_FALSE(dialog->isVisible());
    });
    EXPECT_TRUE(window->ZelGraph1->AxisAutoScale(XAxis));
    EXPECT_TRUE(window->ZelGraph1->AxisAutoScale(VoltageAxis));
    InDialog([&] {
        EXPECT_TRUE(Find<QCheckBox>("chkXAutoS")->isChecked());
        EXPECT_TRUE(Find<QCheckBox>("chkYAutoS")->isChecked());
        EXPECT_FALSE(Find<QLineEdit>("txtXMin")->isEnabled());
        EXPECT_FALSE(TextOf("txtXMin").isEmpty());
        Click(Find<QCheckBox>("chkXAutoS"));
        Click(Find<QCheckBox>("chkYAutoS"));
        EXPECT_TRUE(Find<QLineEdit>("txtXMin")->isEnabled());
        EXPECT_TRUE(Find<QLineEdit>("txtYMax")->isEnabled());
        Ok();
    });
    EXPECT_FALSE(window->ZelGraph1->AxisAutoScale(XAxis));
    EXPECT_FALSE(window->ZelGraph1->AxisAutoScale(VoltageAxis));
}

TEST_F(GraphSetTest, FaultsKeepTheDialogOpenAndWhatWasDone) {
    const struct {
        const char* box;
        const char* text;
    } cases[] = {
        {"txtXMin", "abc"}, {"txtXMax", ""}, {"txtXMax", "0"}, {"txtYMin", "x"}, {"txtYMax", "1e999"}};
    for (const auto& c : cases) {
        window->ZelGraph1->AxisSetRange(XAxis, 0.0, 10.0);
        InDialog([&] {
            Find<QLineEdit>(c.box)->setText(QString::fromLatin1(c.text));
            Find<QPushButton>("BtnApply")->setFocus(Qt::OtherFocusReason);
            Ok();
            EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Graph Set Apply Error", "Tracelet"})) << c.box;
            EXPECT_TRUE(dialog->isVisible());
        });
    }
}

TEST_F(GraphSetTest, OpensOnARunningSessionAsTheAxesAre) {
    TurnOnAI();
    StartPolling();
    Tick(150);
    InDialog([&] {
        EXPECT_FALSE(Find<QCheckBox>("chkXAutoS")->isChecked());
        EXPECT_FALSE(Find<QCheckBox>("chkYAutoS")->isChecked());
        EXPECT_EQ(TextOf("txtXMin"), u"0"_s);
        EXPECT_EQ(TextOf("txtXMax"), u"10"_s);
        EXPECT_EQ(TextOf("txtYMin"), u"-10"_s);
        EXPECT_EQ(TextOf("txtYMax"), u"10"_s);
        EXPECT_FALSE(Find<QLineEdit>("txtXMin")->isEnabled());
        EXPECT_TRUE(Find<QLineEdit>("txtXMax")->isEnabled());
        EXPECT_TRUE(Find<QLineEdit>("txtYMax")->isEnabled());
    });
    Click(window->BtnStart);
}

TEST_F(GraphSetTest, StyleChangedInASessionChangesOnlyThat) {
    TurnOnAI();
    StartPolling();
    Tick(150);
    for (const bool automatic : {false, true}) {
        window->ZelGraph1->SetAxisAutoScale(XAxis, automatic);
        window->ZelGraph1->SetAxisAutoScale(VoltageAxis, automatic);
        const double start = window->ZelGraph1->XAxisMin();
        const double end = window->ZelGraph1->XAxisMax();
        InDialog([&] {
            Select(0);
            Choose(automatic ? 2 : 1);
            Ok();
        });
        EXPECT_EQ(window->ZelGraph1->AxisAutoScale(XAxis), automatic);
        EXPECT_EQ(window->ZelGraph1->AxisAutoScale(VoltageAxis), automatic);
        EXPECT_EQ(window->ZelGraph1->XAxisMin(), start);
        EXPECT_EQ(window->ZelGraph1->XAxisMax(), end);
        EXPECT_EQ(window->dDIVValue, 1.0);
        EXPECT_EQ(window->ZelGraph1->PointCount(0), 101);
        EXPECT_EQ(window->ZelGraph1->Plot(0).lineStyle, automatic ? 2 : 1);
    }
    Click(window->BtnStart);
}

TEST_F(GraphSetTest, AxisUsedInASessionIsSet) {
    TurnOnAI();
    StartPolling();
    Tick(150);
    InDialog([&] {
        Type("txtYMax", "5");
        Ok();
    });
    EXPECT_EQ(window->ZelGraph1->AxisMax(VoltageAxis), 5.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 5.0) << "the other axis stays";
    InDialog([&] {
        Type("txtXMax", "20");
        Ok();
    });
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 0.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 20.0);
    EXPECT_EQ(window->dDIVValue, 2.0);
    InDialog([&] {
        Click(Find<QCheckBox>("chkYAutoS"));
        Ok();
    });
    EXPECT_TRUE(window->ZelGraph1->AxisAutoScale(VoltageAxis));
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 20.0);
    InDialog([&] {
        Type("txtXMax", "abc");
        Ok();
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Graph Set Apply Error", "Tracelet"}));
        EXPECT_TRUE(dialog->isVisible());
    });
    Click(window->BtnStart);
}

TEST_F(GraphSetTest, SessionThatEndsMeanwhileMakesNoDifference) {
    TurnOnAI();
    StartPolling();
    Tick(150);
    InDialog([&] {
        Click(window->BtnStart);
        if (window->isSystemRunning)
            window->BtnStart_Click(); // the dialog takes the mouse
        Ok();
    });
    EXPECT_FALSE(window->isSystemRunning);
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 5.0);
}

TEST_F(GraphSetTest, AutoScaleBringsTheOtherAxesBackFromAZoom) {
    window->M1.AIChanIsThermo[1] = true;
    Scan(0, 2);
    SelectPorts(1, {0x03});
    window->ZelGraph1->SetMouseMode(MouseYZoom);
    const QRect area = window->ZelGraph1->PlotRect();
    const QPoint from(area.left() + 40, area.top() + 20);
    QTest::mousePress(window->ZelGraph1, Qt::LeftButton, {}, from);
    QTest::mouseRelease(window->ZelGraph1, Qt::LeftButton, {}, from + QPoint(0, 30));
    ASSERT_FALSE(window->ZelGraph1->AxisAutoScale(TemperatureAxis));
    const double zoomed = window->ZelGraph1->AxisMin(DigitalAxis);
    ASSERT_GT(zoomed, -1.0);
    InDialog([&] { Ok(); });
    EXPECT_EQ(window->ZelGraph1->AxisMin(DigitalAxis), zoomed) << "AutoScale is off";
    EXPECT_FALSE(window->ZelGraph1->AxisAutoScale(TemperatureAxis));
    InDialog([&] {
        Click(Find<QCheckBox>("chkYAutoS"));
        Ok();
    });
    EXPECT_TRUE(window->ZelGraph1->AxisAutoScale(TemperatureAxis));
    EXPECT_EQ(window->ZelGraph1->AxisMin(DigitalAxis), 14.0);
    EXPECT_EQ(window->ZelGraph1->AxisMax(DigitalAxis), 44.0);
}

} // namespace
} // namespace tracelet
