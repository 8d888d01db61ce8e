#include "tests/support/FileSizeLimit.h"
#include "tests/window/history/HistoryWindowTest.h"

#include <QApplication>
#include <QClipboard>
#include <QPrintDialog>
#include <QPrinter>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class PicturesTest : public HistoryWindowTest {
protected:
    void Press(Qt::Key key, Qt::KeyboardModifiers held) {
        window->activateWindow(); // also after a dialog
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window->focusWidget(), key, held);
    }

    /// A short session of the first channel.
    void Record() {
        TurnOnAI();
        StartPolling();
        Tick(80);
        Click(window->BtnStart);
    }
    void Copy() {
        window->ZelGraph1->setFocus();
        Press(Qt::Key_C, Qt::ControlModifier);
    }
    /// Saves under that name as a user does; what was written.
    std::string SavePicture(const std::string& path) {
        OnModalDialog<QFileDialog>([&](QFileDialog& dialog) {
            EXPECT_TRUE(window->ZelGraph1->BtnHold->isChecked()) << "the view waits for the picture";
            dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(QString::fromStdString(path));
            Click(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save));
        });
        Press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_FALSE(window->ZelGraph1->BtnHold->isChecked());
        return ContentOf(path);
    }
    [[nodiscard]] std::string Notice() const { return window->LabelNotice->text().toStdString(); }
    [[nodiscard]] static int PixelsOf(const QImage& image, const QRect& area, QRgb color) {
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                count += image.pixel(x, y) == color ? 1 : 0;
        return count;
    }
};

TEST_F(PicturesTest, ChartIsCopiedWithItsNamesBelow) {
    Record();
    QApplication::clipboard()->clear();
    Copy();
    const QImage picture = QApplication::clipboard()->image();
    const ZelGraph& graph = *window->ZelGraph1;
    ASSERT_EQ(picture.width(), graph.width());
    ASSERT_GT(picture.height(), graph.height() + 20);
    const QRgb red = qRgb(255, 0, 0); // of the first plot
    EXPECT_GT(PixelsOf(picture, picture.rect(), red), 500) << "the trace";
    const QRect names(0, picture.height() - 20, 40, 20);
    EXPECT_GE(PixelsOf(picture, names, red) + PixelsOf(picture, names, qRgb(255, 84, 84)), 30)
        << "its stroke";
    EXPECT_THAT(Notice(), HasSubstr("copied"));
}

TEST_F(PicturesTest, OnlyTheChartCopies) {
    QApplication::clipboard()->setText(u"mine"_s);
    window->BtnStart->setFocus();
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), u"mine");
}

TEST_F(PicturesTest, PictureIsNoTraceOfTheKeyboardsFrameOrTheHold) {
    Record();
    Copy();
    const QImage plain = QApplication::clipboard()->image();
    window->ZelGraph1->clearFocus();
    window->ZelGraph1->setFocus(Qt::TabFocusReason);
    window->ZelGraph1->BtnHold->setChecked(true);
    Copy();
    EXPECT_EQ(QApplication::clipboard()->image(), plain);
}

TEST_F(PicturesTest, EndingOfTheNameDecidesWhatIsSaved) {
    Record();
    window->ZelGraph1->RefreshValues();
    const QImage before = window->ZelGraph1->grab().toImage();
    EXPECT_THAT(SavePicture(saved / "Chart.png"), StartsWith("\x89PNG"));
    EXPECT_THAT(Notice(), HasSubstr("Chart.png"));
    EXPECT_THAT(SavePicture(saved / "Chart.PDF"), StartsWith("%PDF"));
    EXPECT_THAT(SavePicture(saved / "Chart.svg"), StartsWith("<?xml"));
    EXPECT_THAT(saved.Names(), testing::UnorderedElementsAre("Chart.png", "Chart.PDF", "Chart.svg"));
    EXPECT_EQ(window->ZelGraph1->grab().toImage(), before) << "the chart itself stays as it is";
}

TEST_F(PicturesTest, NameWithoutAnEndingIsAPng) {
    SavePicture(saved / "Chart");
    EXPECT_THAT(saved.Names(), ElementsAre("Chart.png"));
}

TEST_F(PicturesTest, DrawingKeepsAxesAndNamesAsTextWithBoardAndTime) {
    Record();
    const std::string drawing = SavePicture(saved / "Chart.svg");
    const std::string board = window->ZelAI1->BoardInfo().name + " (simulated)";
    const std::string started = window->recorder.Session().started;
    ASSERT_EQ(started.size(), 25U);
    const std::string clock = started.substr(0, 10) + ' ' + started.substr(11, 8);
    for (const std::string& text : {std::string("Second"), std::string("AI Data [V]"), std::string("-10"),
                                    std::string("AI 0"), board + " · " + clock})
        EXPECT_THAT(drawing, HasSubstr('>' + text + "</text>"));
    EXPECT_THAT(drawing, HasSubstr("data:image/png")) << "the traces";
}

TEST_F(PicturesTest, RecordingIsNamedWithItsBoardAndTime) {
    const std::string project = Save(Polled(5));
    OpenProject(project);
    EXPECT_THAT(SavePicture(saved / "Own.svg"), HasSubstr(">Saved · 20")) << "the time of the project's file";
    saved.Write("Saved/Session.json",
                R"({"started": "2024-05-06T07:08:09+02:00",
                    "analog": {"board": {"name": "daq-1", "simulated": false}}})");
    OpenProject(project);
    EXPECT_THAT(SavePicture(saved / "Told.svg"), HasSubstr(">Saved · daq-1 · 2024-05-06 07:08:09</text>"));
}

TEST_F(PicturesTest, HiddenPlotsHaveNoName) {
    Record();
    window->ZelGraph1->SetPlotVisible(0, false);
    EXPECT_THAT(SavePicture(saved / "Chart.svg"), Not(HasSubstr(">AI 0<")));
}

TEST_F(PicturesTest, OtherEndingsSaveNothingAndSaySo) {
    EXPECT_EQ(SavePicture(saved / "Chart.gif"), "");
    EXPECT_THAT(Notice(), HasSubstr(".png, .svg or .pdf"));
    EXPECT_THAT(saved.Names(), IsEmpty());
}

TEST_F(PicturesTest, PictureThatCannotBeWrittenIsToldAndLeavesNoLitter) {
    Record();
    SavePicture("/proc/Chart.png");
    EXPECT_THAT(Notice(), HasSubstr("could not be saved as /proc/Chart.png"));
    {
        const FileSizeLimit limit(100);
        SavePicture(saved / "Chart.png");
    }
    EXPECT_THAT(Notice(), HasSubstr("could not be saved"));
    EXPECT_THAT(saved.Names(), IsEmpty());
}

TEST_F(PicturesTest, CancelledDialogSavesNothing) {
    OnModalDialog<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    Press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Notice(), "");
    EXPECT_FALSE(window->ZelGraph1->BtnHold->isChecked());
}

TEST_F(PicturesTest, ChartIsPrinted) {
    Record();
    const std::string file = saved / "Print.pdf";
    OnModalDialog<QPrintDialog>([&](QPrintDialog& dialog) {
        dialog.printer()->setOutputFileName(QString::fromStdString(file));
        static_cast<QDialog&>(dialog).done(QDialog::Accepted);
    });
    Press(Qt::Key_P, Qt::ControlModifier);
    const std::string printed = ContentOf(file);
    EXPECT_THAT(printed, StartsWith("%PDF"));
    EXPECT_GT(printed.size(), 5000U);
}

} // namespace
} // namespace tracelet
