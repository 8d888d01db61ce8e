#include "tests/support/MainWindowTest.h"

#include "window/chart/ZelGraph.h"

#include <QScreen>

namespace tracelet {
namespace {

class ResizeTest : public MainWindowTest {
protected:
    void GiveOuter(int width, int height) {
        const QSize frame = window->frameGeometry().size() - window->size();
        window->resize(QSize(width, height) - frame);
        QCoreApplication::processEvents();
    }
    [[nodiscard]] QSize Outer() const { return window->frameGeometry().size(); }
};

TEST_F(ResizeTest, BothLengthsSnapWhenOneIsTooSmall) {
    const std::pair<QSize, QSize> cases[] = {{{733, 600}, {763, 483}},  {{1000, 400}, {763, 483}},
                                             {{762, 2000}, {763, 483}}, {{100, 100}, {763, 483}},
                                             {{763, 483}, {763, 483}},  {{764, 484}, {764, 484}},
                                             {{733, 600}, {763, 483}},  {{1200, 900}, {1200, 900}}};
    for (const auto& [given, kept] : cases) {
        GiveOuter(given.width(), given.height());
        EXPECT_EQ(Outer(), kept) << given.width() << " x " << given.height();
    }
}

TEST_F(ResizeTest, WidgetsStandForTheOuterSize) {
    GiveOuter(1100, 700);
    EXPECT_EQ(window->FrameListView->geometry().right() + 1,
              1093);                                           // the outer width less two gaps of 50 twips
    EXPECT_EQ(window->FrameSet->geometry().bottom() + 1, 653); // the outer height less fourteen
    const int graphWidth = window->ZelGraph1->width();
    GiveOuter(1200, 700);
    EXPECT_EQ(window->ZelGraph1->width(), graphWidth + 100);
}

TEST_F(ResizeTest, MinimisedWindowIsLeftAlone) {
    GiveOuter(1000, 650);
    const QRect graph = window->ZelGraph1->geometry();
    window->showMinimized();
    window->resize(160, 20);
    window->Form_Resize();
    EXPECT_EQ(window->ZelGraph1->geometry(), graph);
    window->showNormal();
    GiveOuter(1100, 650);
    EXPECT_EQ(window->ZelGraph1->width(), graph.width() + 100);
}

TEST_F(ResizeTest, ANewWindowIsNoLargerThanItsScreen) {
    window->resize(5000, 4000);
    window->FitToScreen();
    const QSize screen = window->screen()->availableSize();
    EXPECT_LE(window->frameGeometry().width(), std::max(screen.width(), 763));
    EXPECT_LT(window->frameGeometry().height(), std::max(screen.height(), 484)) << "with room for the title";
    window->resize(770, 490);
    window->FitToScreen();
    EXPECT_EQ(window->size(), QSize(770, 490));
}

TEST_F(ResizeTest, TheMouseIsExplainedAtEverySize) {
    const int graphHeight = window->FrameGraph->height();
    for (const int width : {763, 800, 1000, 1600, 763}) {
        GiveOuter(width, 483);
        EXPECT_EQ(window->FrameGraph->height(), graphHeight) << width;
        const QLabel& hint = *window->LabelGraphHint;
        EXPECT_TRUE(hint.isVisible());
        const QRect needed =
            hint.fontMetrics().boundingRect(hint.contentsRect(), Qt::TextWordWrap, hint.text());
        EXPECT_TRUE(hint.text().startsWith(u"Right-click"));
        EXPECT_GE(hint.width(), needed.width()) << width;
        EXPECT_GE(hint.height(), needed.height()) << width;
    }
}

TEST_F(ResizeTest, ADesktopThatKeepsTheWindowSmallIsNotAskedForEver) {
    const QSize small(500, 300);
    int asked = 0;
    for (; asked < 100; ++asked) {
        window->resize(small); // as a tiling desktop answers each wish
        if (window->size() == small)
            break;
    }
    EXPECT_LT(asked, 20);
    EXPECT_EQ(window->size(), small);
    EXPECT_EQ(window->FrameSet->geometry().bottom() + 1, 483 - 47);
}

TEST_F(ResizeTest, AHandThatKeepsTryingIsNoDesktopThatWillNot) {
    constexpr QSize Minimum(763, 483);
    for (int width = 500; width < 530; ++width) { // a drag, each size below the minimum another one
        GiveOuter(width, 300);
        ASSERT_EQ(Outer(), Minimum) << width;
    }
    for (int attempt = 1; attempt <= 10; ++attempt) { // the same size ten times, but not at once
        GiveOuter(500, 300);
        ASSERT_EQ(Outer(), Minimum) << attempt;
        if (attempt % 5 == 0)
            QTest::qWait(600);
    }
}

} // namespace
} // namespace tracelet
