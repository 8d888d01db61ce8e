#include "devices/display/ZelGraph.h"

#include <QElapsedTimer>
#include <QTest>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

/// Counts the paint events of a widget.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

TEST(ZelGraphRepaint, SamplesArePaintedLaterAndTogether) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.show();
    QTest::qWait(50);
    PaintCounter paints(graph);
    const float value[] = {1};
    for (int i = 0; i < 5000; ++i)
        graph.AppendScan(i * 0.001, value);
    EXPECT_EQ(paints.count, 0) << "nothing is drawn while appending";
    EXPECT_TRUE(QTest::qWaitFor([&] { return paints.count > 0; }));
    QTest::qWait(100);
    EXPECT_LE(paints.count, 3) << "once at first, once for the rest";
}

TEST(ZelGraphRepaint, PaintsComeAtTheRateOfADisplayAtMost) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.show();
    QTest::qWait(20);
    PaintCounter paints(graph);
    const float value[] = {1};
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 300) {
        graph.AppendScan(static_cast<double>(clock.nsecsElapsed()) * 1e-9, value);
        QCoreApplication::processEvents();
    }
    EXPECT_GT(paints.count, 0);
    EXPECT_LE(paints.count, clock.elapsed() / 16 + 3);
}

TEST(ZelGraphRepaint, NothingIsPaintedWhileHiddenOrMinimised) {
    ZelGraph graph;
    graph.AddPlot({});
    PaintCounter paints(graph);
    const float value[] = {1};
    const auto feed = [&] {
        for (int i = 0; i < 10; ++i) {
            graph.AppendScan(i * 0.1, value);
            QTest::qWait(5);
        }
    };
    feed();
    EXPECT_EQ(paints.count, 0) << "not shown yet";
    graph.show();
    QTest::qWait(50);
    graph.hide();
    paints.count = 0;
    feed();
    EXPECT_EQ(paints.count, 0) << "hidden";
    graph.showMinimized();
    QTest::qWait(50);
    paints.count = 0;
    feed();
    EXPECT_EQ(paints.count, 0) << "minimised";
    graph.showNormal();
    feed();
    EXPECT_TRUE(QTest::qWaitFor([&] { return paints.count > 0; }));
}

} // namespace
} // namespace tracelet
