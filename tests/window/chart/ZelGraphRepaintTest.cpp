#include "window/chart/ZelGraph.h"

#include <QElapsedTimer>
#include <QTest>
#include <gtest/gtest.h>

#include <functional>

namespace tracelet {
namespace {

/// Counts the events of one kind that a widget gets, its paints unless told otherwise.
class EventCounter : public QObject {
public:
    explicit EventCounter(QWidget& widget, QEvent::Type counted = QEvent::Paint) : kind(counted) {
        widget.installEventFilter(this);
    }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == kind ? 1 : 0;
        return false;
    }

private:
    QEvent::Type kind;
};

TEST(ZelGraphRepaint, SamplesArePaintedLaterAndTogether) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.show();
    QTest::qWait(50);
    EventCounter paints(graph);
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
    EventCounter paints(graph);
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
    EventCounter paints(graph);
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

bool IsQuiet(EventCounter& events) {
    events.count = 0;
    QTest::qWait(200);
    return events.count == 0;
}

TEST(ZelGraphRepaint, TheTimerRestsWhenNoSamplesComeAndRunsAgainWithTheNext) {
    ZelGraph graph;
    graph.AddPlot({});
    graph.show();
    const float value[] = {1};
    EventCounter ticks(graph, QEvent::Timer);
    for (int i = 0; i < 2; ++i) {
        graph.AppendScan(i, value);
        EXPECT_TRUE(QTest::qWaitFor([&] { return ticks.count > 3; })) << "more samples may come soon";
        EXPECT_TRUE(QTest::qWaitFor([&] { return IsQuiet(ticks); }, 20000));
    }
}

TEST(ZelGraphRepaint, TheTimerRestsAtOnceWhereNothingCanBeSeen) {
    ZelGraph graph;
    graph.AddPlot({});
    const float value[] = {1};
    const std::function<void()> ways[] = {[&] { graph.hide(); }, [&] { graph.showMinimized(); }};
    for (const auto& putAway : ways) {
        graph.showNormal();
        graph.AppendScan(0, value);
        EventCounter ticks(graph, QEvent::Timer);
        EXPECT_TRUE(QTest::qWaitFor([&] { return ticks.count > 0; }));
        putAway();
        ticks.count = 0;
        QTest::qWait(400); // time for 25 ticks
        EXPECT_LT(ticks.count, 10) << "a few may have been under way";
    }
}

} // namespace
} // namespace tracelet
