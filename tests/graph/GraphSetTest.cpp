#include "tests/support/MainWindowTest.h"

#include "devices/display/ZelGraph.h"
#include "devices/display/ZelLED.h"
#include "graph/frmGraphSet.h"

#include <QAbstractItemView>
#include <QColorDialog>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTreeWidget>

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Box = MessageBoxes::Box;

class GraphSetTest : public MainWindowTest {
protected:
    /// Opens the dialog by its button, runs `action` on it and cancels it if it is still open.
    void InDialog(std::function<void()> action) {
        bool ran = false;
        OnModalDialog<frmGraphSet>([&](frmGraphSet& opened) {
            dialog = &opened;
            action();
            ran = true;
            if (opened.isVisible())
                opened.reject();
        });
        Click(window->BtnGraphSet);
        EXPECT_TRUE(ran);
        dialog = nullptr;
    }

    template <typename Widget>
    [[nodiscard]] Widget* Find(const char* name) const {
        auto* widget = dialog->findChild<Widget*>(QString::fromLatin1(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }
    [[nodiscard]] QString TextOf(const char* name) const { return Find<QLineEdit>(name)->text(); }
    /// Gives a box the focus, as if the user had come to it.
    void Enter(const char* name) {
        dialog->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        Find<QLineEdit>(name)->setFocus(Qt::OtherFocusReason);
    }
    void Type(const char* name, const char* text) {
        Enter(name);
        auto* box = Find<QLineEdit>(name);
        box->selectAll();
        QTest::keyClicks(box, QString::fromLatin1(text));
    }
    void Tab() { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); }
    void Ok() { Click(Find<QPushButton>("BtnApply")); }
    void Select(int row) { Find<QListWidget>("lstPlots")->setCurrentRow(row); }
    void Choose(int style) { Find<QComboBox>("CmbLineStyle")->setCurrentIndex(style); }
    void Scan(std::int32_t start, std::int32_t count) {
        window->ZelAI1->SetScanStartChannel(start);
        window->ZelAI1->SetScanChannelCount(count);
        window->BuildPlots(false, true);
    }

    frmGraphSet* dialog = nullptr;
};

TEST_F(GraphSetTest, ShowsThePlotsAndTheRanges) {
    Scan(0, 2);
    SelectPorts(0, {0x01});
    InDialog([&] {
        EXPECT_EQ(dialog->windowTitle(), u"Graph Setting"_qs);
        const auto* list = Find<QListWidget>("lstPlots");
        ASSERT_EQ(list->count(), 3);
        EXPECT_EQ(list->item(0)->text(), u"AI 0"_qs);
        EXPECT_EQ(list->item(2)->text(), u"DI 0:0"_qs);
        const auto* styles = Find<QComboBox>("CmbLineStyle");
        ASSERT_EQ(styles->count(), 5);
        EXPECT_EQ(styles->itemText(0), u"Solid"_qs);
        EXPECT_EQ(styles->itemText(1), u"Dash"_qs);
        EXPECT_EQ(styles->itemText(2), u"Dot"_qs);
        EXPECT_EQ(styles->itemText(3), u"DashDot"_qs);
        EXPECT_EQ(styles->itemText(4), u"DashDotDot"_qs);
        EXPECT_FALSE(Find<QCheckBox>("chkXAutoS")->isChecked());
        EXPECT_FALSE(Find<QCheckBox>("chkYAutoS")->isChecked());
        EXPECT_EQ(TextOf("txtXMin"), u"0"_qs);
        EXPECT_EQ(TextOf("txtXMax"), u"10"_qs);
        EXPECT_EQ(TextOf("txtYMin"), u"-10"_qs);
        EXPECT_EQ(TextOf("txtYMax"), u"10"_qs);
        EXPECT_TRUE(Find<QLineEdit>("txtXMin")->isEnabled());
        EXPECT_EQ(Find<QLineEdit>("txtXMax")->toolTip(), u"input the range you want"_qs);
        EXPECT_EQ(Find<QLabel>("Label7")->text(), u"LineColor"_qs);
        EXPECT_EQ(Find<QLabel>("Label6")->text(), u"LineStyle"_qs);
        EXPECT_EQ(Find<QLabel>("Label4")->text(), u"Min:"_qs);
        EXPECT_EQ(Find<QLabel>("Label5")->text(), u"Max:"_qs);
        EXPECT_EQ(Find<QGroupBox>("framePlots")->title(), u"Plots"_qs);
        EXPECT_EQ(Find<QGroupBox>("frameAxes")->title(), u"Axes"_qs);
        EXPECT_EQ(Find<QGroupBox>("Frame1")->title(), u"X"_qs);
        EXPECT_EQ(Find<QGroupBox>("Frame2")->title(), u"Y"_qs);
        EXPECT_EQ(Find<QCheckBox>("chkXAutoS")->text(), u"AutoScale"_qs);
        EXPECT_EQ(Find<QPushButton>("BtnApply")->text(), u"OK"_qs);
        EXPECT_EQ(Find<QPushButton>("BtnCancel")->text(), u"Cancel"_qs);
        EXPECT_TRUE(Find<QPushButton>("BtnColor")->text().isEmpty());
    });
}

TEST_F(GraphSetTest, StyleOfAScanThatStartsAtChannelFour) {
    Scan(4, 3);
    InDialog([&] {
        Select(1);
        Choose(3);
        Select(2);
        EXPECT_EQ(Find<QComboBox>("CmbLineStyle")->currentIndex(), 0);
        Ok();
    });
    EXPECT_EQ(window->M1.AIPlotLineStyle[5], 3);
    EXPECT_EQ(window->M1.AIPlotLineStyle[4], 0);
    EXPECT_EQ(window->M1.AIPlotLineStyle[6], 0);
    EXPECT_EQ(window->ZelGraph1->Plot(1).lineStyle, 3);
}

TEST_F(GraphSetTest, LinesMapToTheirPlots) {
    Scan(0, 2);
    SelectPorts(0, {0x05, 0x80});
    InDialog([&] {
        for (int plot = 2; plot <= 4; ++plot) {
            Select(plot);
            Choose(plot - 1);
        }
        Ok();
    });
    EXPECT_EQ(window->M1.DIPlotLineStyle[0], 1);
    EXPECT_EQ(window->M1.DIPlotLineStyle[2], 2);
    EXPECT_EQ(window->M1.DIPlotLineStyle[15], 3);
    EXPECT_EQ(window->M1.DIPlotLineStyle[1], 0);
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

TEST_F(GraphSetTest, StyleCodeWithoutEntryKeepsTheSelection) {
    window->M1.AIPlotLineStyle[1] = 2;
    window->M1.AIPlotLineStyle[2] = 7;
    window->M1.AIPlotLineStyle[3] = -1;
    Scan(1, 3);
    InDialog([&] {
        Select(0);
        EXPECT_EQ(Find<QComboBox>("CmbLineStyle")->currentIndex(), 2);
        Select(1);
        EXPECT_EQ(Find<QComboBox>("CmbLineStyle")->currentIndex(), 2);
        Select(2);
        EXPECT_EQ(Find<QComboBox>("CmbLineStyle")->currentIndex(), 2);
        Ok();
    });
    EXPECT_EQ(window->M1.AIPlotLineStyle[2], 7);
    EXPECT_EQ(window->M1.AIPlotLineStyle[3], -1);
}

TEST_F(GraphSetTest, EntryThatIsShownAlreadyCanBeChosen) {
    window->M1.AIPlotLineStyle[1] = 2;
    window->M1.AIPlotLineStyle[2] = 7;
    Scan(1, 2);
    InDialog([&] {
        Select(0);
        Select(1);
        auto* list = Find<QComboBox>("CmbLineStyle");
        list->showPopup();
        QTest::keyClick(list->view(), Qt::Key_Return);
        EXPECT_EQ(list->currentIndex(), 2);
        Ok();
    });
    EXPECT_EQ(window->M1.AIPlotLineStyle[2], 2);
}

TEST_F(GraphSetTest, KeysChooseStyles) {
    InDialog([&] {
        Select(0);
        QTest::keyClick(Find<QComboBox>("CmbLineStyle"), Qt::Key_Down);
        QTest::keyClick(Find<QComboBox>("CmbLineStyle"), Qt::Key_Down);
        Ok();
    });
    EXPECT_EQ(window->M1.AIPlotLineStyle[0], 2);
}

TEST_F(GraphSetTest, ColourButtonShowsThePlotsColour) {
    Scan(6, 3);
    const QColor colors[] = {{0xFF, 0x80, 0x00}, {0xFF, 0xFF, 0xFF}, {0xE3, 0xE3, 0xE3}};
    InDialog([&] {
        for (int plot = 0; plot < 3; ++plot) {
            Select(plot);
            const QImage picture = Find<QPushButton>("BtnColor")->grab().toImage();
            EXPECT_EQ(picture.pixelColor(picture.rect().center()), colors[plot]) << plot;
        }
        OnModalDialog<QColorDialog>([](QColorDialog& chooser) {
            chooser.setCurrentColor(QColor(1, 2, 3));
            chooser.accept();
        });
        Click(Find<QPushButton>("BtnColor"));
        const QImage picture = Find<QPushButton>("BtnColor")->grab().toImage();
        EXPECT_EQ(picture.pixelColor(picture.rect().center()), QColor(1, 2, 3));
    });
    EXPECT_EQ(window->M1.AIPlotColor[8], 0x80000016U); // cancelled
}

TEST_F(GraphSetTest, ColourWithoutAPlotOpensNoChooser) {
    InDialog([&] {
        Click(Find<QPushButton>("BtnColor"));
        EXPECT_EQ(QApplication::activeModalWidget(), dialog);
    });
}

TEST_F(GraphSetTest, CoversColoursOfLinesAndOfARecording) {
    Scan(0, 1);
    SelectPorts(1, {0x40});
    const auto paint = [this](int plot, QColor color) {
        Select(plot);
        OnModalDialog<QColorDialog>([color](QColorDialog& chooser) {
            chooser.setCurrentColor(color);
            chooser.accept();
        });
        Click(Find<QPushButton>("BtnColor"));
    };
    InDialog([&] {
        paint(1, QColor(1, 2, 3));
        Ok();
    });
    EXPECT_EQ(window->M1.DIPlotColor[14], 0x030201U);
    EXPECT_EQ(window->M1.AIPlotColor[0], 0x0000FFU);

    window->bHistoryMode = window->bHisAI = window->bHisDI = true;
    window->ScanInterval = 0.1;
    window->nHisAIChanCount = window->nHisDIChanCount = 1;
    for (auto* table : {&window->M1.HisAIPlotLineStyle, &window->M1.HisDIPlotLineStyle})
        table->Resize(1);
    for (auto* table : {&window->M1.HisAIPlotColor, &window->M1.HisDIPlotColor})
        table->Resize(1);
    window->M1.HisAIPlotName.Resize(1);
    window->M1.HisDIPlotName.Resize(1);
    window->BuildPlots(true, true);
    InDialog([&] {
        paint(0, QColor(4, 5, 6));
        paint(1, QColor(7, 8, 9));
        Ok();
    });
    EXPECT_EQ(window->M1.HisAIPlotColor[0], 0x060504U);
    EXPECT_EQ(window->M1.HisDIPlotColor[0], 0x090807U);
    EXPECT_EQ(window->ZelGraph1->Plot(1).color, 0x090807U);
    EXPECT_EQ(window->M1.DIPlotColor[14], 0x030201U);
}

TEST_F(GraphSetTest, ClicksOnTheBoxesRefillTheRanges) {
    InDialog([&] {
        for (const char* box : {"txtXMin", "txtXMax", "txtYMin", "txtYMax"})
            Find<QLineEdit>(box)->setText(u"abc"_qs);
        Click(Find<QCheckBox>("chkXAutoS"));
        Click(Find<QCheckBox>("chkYAutoS"));
        for (int twice = 0; twice < 2; ++twice) {
            EXPECT_EQ(TextOf("txtXMin"), u"0"_qs);
            EXPECT_EQ(TextOf("txtXMax"), u"10"_qs);
            EXPECT_EQ(TextOf("txtYMin"), u"-10"_qs);
            EXPECT_EQ(TextOf("txtYMax"), u"10"_qs);
            for (const char* box : {"txtXMin", "txtXMax", "txtYMin", "txtYMax"})
                Find<QLineEdit>(box)->setText(u"7"_qs);
            Find<QCheckBox>("chkXAutoS")->setChecked(twice == 1);
            Find<QCheckBox>("chkYAutoS")->setChecked(twice == 1);
        }
        EXPECT_FALSE(Find<QLineEdit>("txtXMin")->isEnabled());
    });
}

TEST_F(GraphSetTest, PlayingRecordingLeavesTheAxisGroupAsMade) {
    window->isHisPlaying = true;
    window->ZelGraph1->AxisSetRange(XAxis, 20.0, 45.0);
    InDialog([&] {
        EXPECT_TRUE(Find<QCheckBox>("chkXAutoS")->isChecked());
        EXPECT_TRUE(TextOf("txtXMax").isEmpty());
        Click(Find<QCheckBox>("chkXAutoS"));
        EXPECT_EQ(TextOf("txtXMin"), u"0"_qs);
        EXPECT_EQ(TextOf("txtXMax"), u"25"_qs);
        EXPECT_FALSE(Find<QLineEdit>("txtXMin")->isEnabled());
        Click(Find<QCheckBox>("chkYAutoS"));
        EXPECT_EQ(TextOf("txtYMin"), u"-10"_qs);
        EXPECT_TRUE(Find<QLineEdit>("txtYMin")->isEnabled());
    });
    window->isHisPlaying = false;
}

TEST_F(GraphSetTest, AFaultLeavesEarlierStepsInForce) {
    InDialog([&] {
        Find<QLineEdit>("txtXMin")->setText(u"1"_qs);
        Find<QLineEdit>("txtXMax")->setText(u"3"_qs);
        Find<QLineEdit>("txtYMin")->setText(u"-2"_qs);
        Find<QLineEdit>("txtYMax")->setText(u"x"_qs);
        Ok();
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Graph Set Apply Error", "Tracelet"}));
    });
    EXPECT_EQ(window->ZelGraph1->XAxisMin(), 1.0);
    EXPECT_EQ(window->ZelGraph1->XAxisMax(), 3.0);
    EXPECT_EQ(window->ZelGraph1->AxisMin(VoltageAxis), -2.0);
    EXPECT_EQ(window->ZelGraph1->AxisMax(VoltageAxis), 10.0);
    EXPECT_EQ(window->dDIVValue, 1.0);
}

TEST_F(GraphSetTest, PlotOutsideATableIsAFault) {
    Scan(0, 2);
    InDialog([&] {
        Find<QLineEdit>("txtXMax")->setText(u"20"_qs);
        Select(0);
        Choose(1);
        window->M1.AIPlotLineStyle.Resize(1);
        Ok();
        EXPECT_THAT(boxes.Take(), ElementsAre(Box{"Graph Set Apply Error", "Tracelet"}));
        EXPECT_TRUE(dialog->isVisible());
        window->M1.AIPlotLineStyle.Resize(65);
    });
    EXPECT_EQ(window->dDIVValue, 2.0);
}

TEST_F(GraphSetTest, CancelledDialogRebuildsThePlotsToo) {
    TurnOnAI();
    InDialog([&] {
        window->M1.AIPlotName[0] = "Pressure";
        dialog->close();
    });
    EXPECT_EQ(window->ZelGraph1->Plot(0).name, u"Pressure"_qs);
    EXPECT_EQ(window->ListView1->topLevelItem(0)->text(0), u"Pressure"_qs);
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

TEST_F(GraphSetTest, StyleWithoutAPlotDoesNothing) {
    InDialog([&] {
        Choose(2);
        Ok();
    });
    EXPECT_EQ(window->M1.AIPlotLineStyle[0], 0);
}

TEST_F(GraphSetTest, ChosenColourIsStoredRaw) {
    InDialog([&] {
        Select(0);
        OnModalDialog<QColorDialog>([](QColorDialog& chooser) {
            EXPECT_EQ(chooser.objectName(), u"CommonDialog1"_qs);
            EXPECT_EQ(chooser.currentColor(), QColor(0xFF, 0, 0));
            chooser.setCurrentColor(QColor(0x12, 0x34, 0x56));
            chooser.accept();
        });
        Click(Find<QPushButton>("BtnColor"));
        Ok();
    });
    EXPECT_EQ(window->M1.AIPlotColor[0], 0x563412U);
    EXPECT_EQ(window->ZelGraph1->Plot(0).color, 0x563412U);
}

TEST_F(GraphSetTest, CancelledChooserKeepsTheSystemColour) {
    Scan(8, 1);
    InDialog([&] {
        Select(0);
        OnModalDialog<QColorDialog>([](QColorDialog& chooser) { chooser.reject(); });
        Click(Find<QPushButton>("BtnColor"));
        Ok();
    });
    EXPECT_EQ(window->M1.AIPlotColor[8], 0x80000016U);
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
    EXPECT_EQ(window->ZelLED1->Text(), u"2.500000"_qs);
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
        Find<QLineEdit>("txtXMax")->setText(u"abc"_qs);
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

TEST_F(GraphSetTest, RunningSessionLeavesTheAxisGroupAsMade) {
    TurnOnAI();
    StartPolling();
    Tick(3);
    InDialog([&] {
        EXPECT_TRUE(Find<QCheckBox>("chkXAutoS")->isChecked());
        EXPECT_TRUE(Find<QCheckBox>("chkYAutoS")->isChecked());
        for (const char* box : {"txtXMin", "txtXMax", "txtYMin", "txtYMax"})
            EXPECT_TRUE(TextOf(box).isEmpty()) << box;
        Click(Find<QCheckBox>("chkXAutoS"));
        EXPECT_EQ(TextOf("txtXMin"), u"0"_qs);
        EXPECT_EQ(TextOf("txtXMax"), u"10"_qs);
        EXPECT_FALSE(Find<QLineEdit>("txtXMin")->isEnabled());
        EXPECT_TRUE(Find<QLineEdit>("txtXMax")->isEnabled());
        Select(0);
        Choose(1);
        Find<QCheckBox>("chkYAutoS")->setChecked(true);
        Ok();
    });
    EXPECT_EQ(window->ZelGraph1->PointCount(0), 3);
    EXPECT_EQ(window->ZelGraph1->Plot(0).lineStyle, 1);
    Click(window->BtnStart);
}

TEST_F(GraphSetTest, FastInputWithoutLinePlotsEndsTheWriteBack) {
    SelectPorts(0, {0x03});
    TurnOnAI();
    window->M1.SoftMode = false;
    window->BuildPlots(false, true);
    window->M1.DIPlotLineStyle[0] = 4;
    InDialog([&] {
        Select(0);
        Choose(1);
        Ok();
        EXPECT_FALSE(dialog->isVisible());
    });
    EXPECT_EQ(window->M1.AIPlotLineStyle[0], 1);
    EXPECT_EQ(window->M1.DIPlotLineStyle[0], 4);
}

TEST_F(GraphSetTest, HistoryModeWritesTheHistoryTables) {
    window->bHistoryMode = window->bHisAI = window->bHisDI = true;
    window->ScanInterval = 0.1;
    window->nHisAIChanCount = 2;
    window->nHisDIChanCount = 1;
    for (auto* table : {&window->M1.HisAIPlotLineStyle, &window->M1.HisDIPlotLineStyle})
        table->Resize(2);
    for (auto* table : {&window->M1.HisAIPlotColor, &window->M1.HisDIPlotColor})
        table->Resize(2);
    window->M1.HisAIPlotName.Resize(2);
    window->M1.HisDIPlotName.Resize(1);
    window->BuildPlots(true, true);
    InDialog([&] {
        Select(1);
        Choose(2);
        Select(2);
        Choose(4);
        Ok();
    });
    EXPECT_EQ(window->M1.HisAIPlotLineStyle[1], 2);
    EXPECT_EQ(window->M1.HisDIPlotLineStyle[0], 4);
    EXPECT_EQ(window->M1.AIPlotLineStyle[1], 0);
    EXPECT_EQ(window->ZelGraph1->Plot(2).lineStyle, 4);
}

} // namespace
} // namespace tracelet
