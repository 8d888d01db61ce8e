// Colours and line styles of the plots.

#include "tests/window/graph/GraphSetTest.h"

#include "window/chart/ZelGraph.h"

#include <QAbstractItemView>
#include <QColorDialog>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using Box = MessageBoxes::Box;

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

TEST_F(GraphSetTest, StylesBehindADifferentialPairGoToTheirChannels) {
    window->ZelAI1->SetChannel(0);
    window->ZelAI1->SetSignalConnection(1);
    window->M1.AIChanConnection[0] = window->M1.AIChanConnection[1] = 1;
    Scan(0, 2);
    InDialog([&] {
        Select(1);
        Choose(3);
        Ok();
    });
    EXPECT_EQ(window->ZelGraph1->Plot(1).name, u"AI 2"_s);
    EXPECT_EQ(window->ZelGraph1->Plot(1).lineStyle, 3);
    EXPECT_EQ(window->M1.AIPlotLineStyle[2], 3);
    EXPECT_EQ(window->M1.AIPlotLineStyle[1], 0);
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

TEST_F(GraphSetTest, StyleCodeWithoutEntryKeepsTheSelection) {
    window->M1.AIPlotLineStyle[1] = 2;
    window->M1.AIPlotLineStyle[2] = 5;
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
    EXPECT_EQ(window->M1.AIPlotLineStyle[2], 5);
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

TEST_F(GraphSetTest, TheFirstPlotIsSelectedAtFirst) {
    window->M1.AIPlotLineStyle[0] = 3;
    Scan(0, 2);
    InDialog([&] {
        EXPECT_TRUE(Find<QListWidget>("lstPlots")->item(0)->isSelected());
        EXPECT_EQ(Find<QComboBox>("CmbLineStyle")->currentIndex(), 3);
        EXPECT_FALSE(Find<QPushButton>("BtnColor")->styleSheet().isEmpty());
        Ok();
    });
    EXPECT_EQ(window->M1.AIPlotLineStyle[0], 3);
}

TEST_F(GraphSetTest, WithoutPlotsNoneIsSelected) {
    Open(BoardList{});
    InDialog([&] {
        EXPECT_EQ(Find<QListWidget>("lstPlots")->count(), 0);
        EXPECT_EQ(Find<QComboBox>("CmbLineStyle")->currentIndex(), -1);
        Click(Find<QPushButton>("BtnColor"));
    });
}

TEST_F(GraphSetTest, SolidCanBeChosenForAPlotWithoutEntry) {
    window->M1.AIPlotLineStyle[1] = 7;
    Scan(1, 1);
    InDialog([&] {
        Select(0);
        EXPECT_EQ(Find<QComboBox>("CmbLineStyle")->currentIndex(), -1);
        Choose(0);
        Ok();
    });
    EXPECT_EQ(window->M1.AIPlotLineStyle[1], 0);
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
        Find<QListWidget>("lstPlots")->clearSelection();
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

    window->bHistoryMode = window->recording.info.bHisAI = window->recording.info.bHisDI = true;
    window->recording.info.ScanInterval = 0.1;
    window->recording.info.nHisAIChanCount = window->recording.info.nHisDIChanCount = 1;
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

TEST_F(GraphSetTest, PlotOutsideATableIsAFault) {
    Scan(0, 2);
    InDialog([&] {
        Find<QLineEdit>("txtXMax")->setText(u"20"_s);
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

TEST_F(GraphSetTest, StyleWithoutAPlotDoesNothing) {
    InDialog([&] {
        Find<QListWidget>("lstPlots")->clearSelection();
        Choose(2);
        Ok();
    });
    EXPECT_EQ(window->M1.AIPlotLineStyle[0], 0);
}

TEST_F(GraphSetTest, ChosenColourIsStoredRaw) {
    InDialog([&] {
        Select(0);
        OnModalDialog<QColorDialog>([](QColorDialog& chooser) {
            EXPECT_EQ(chooser.objectName(), u"CommonDialog1"_s);
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
    window->bHistoryMode = window->recording.info.bHisAI = window->recording.info.bHisDI = true;
    window->recording.info.ScanInterval = 0.1;
    window->recording.info.nHisAIChanCount = 2;
    window->recording.info.nHisDIChanCount = 1;
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
