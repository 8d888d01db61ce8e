#include "window/export/ConvertProgress.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using namespace std::chrono_literals;

constexpr auto AtOnce = -1ms;
constexpr auto Never = std::chrono::milliseconds(24h);

class ConvertProgressTest : public testing::Test {
protected:
    ConvertProgressTest() {
        button = new QPushButton(&window);
        window.show();
        QObject::connect(button, &QPushButton::clicked, button, [this] { ++clicks; });
    }

    // What a user may try while a conversion runs.
    void TryEverything() {
        QTest::mouseClick(button, Qt::LeftButton);
        QTest::keyClick(button, Qt::Key_Space);
        QTest::keyClick(&window, Qt::Key_Escape);
        EXPECT_FALSE(window.close());
        if (QWidget* shown = QApplication::activeModalWidget()) {
            QTest::keyClick(shown, Qt::Key_Escape);
            shown->close();
        }
    }

    QWidget window;
    QPushButton* button;
    int clicks = 0;
};

TEST_F(ConvertProgressTest, ShowsNothingBeforeItsTime) {
    ConvertProgress progress(&window, Never);
    progress.Show(0.0);
    progress.Show(0.5);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(ConvertProgressTest, ShowsAModalBarAfterItsTime) {
    {
        ConvertProgress progress(&window, AtOnce);
        progress.Show(0.25);
        QWidget* shown = QApplication::activeModalWidget();
        ASSERT_NE(shown, nullptr);
        EXPECT_TRUE(shown->isVisible());
        EXPECT_TRUE(shown->findChildren<QPushButton*>().isEmpty());
        const auto* bar = shown->findChild<QProgressBar*>();
        ASSERT_NE(bar, nullptr);
        EXPECT_EQ(bar->value(), bar->maximum() / 4);
        QTest::qSleep(50); // longer than the time between two updates
        progress.Show(1.0);
        EXPECT_EQ(bar->value(), bar->maximum());
    }
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(ConvertProgressTest, WaitsHalfASecond) {
    ConvertProgress progress(&window);
    QTest::qSleep(600);
    progress.Show(0.5);
    EXPECT_NE(QApplication::activeModalWidget(), nullptr);
}

// Keeps the types of the events that reach it.
class Receiver : public QObject {
public:
    bool event(QEvent* event) override {
        seen.push_back(event->type());
        return true;
    }
    std::vector<int> seen;
};

TEST_F(ConvertProgressTest, EveryKindOfInputIsDroppedAndNothingElse) {
    Receiver receiver;
    const auto send = [&](QEvent::Type type) {
        QEvent event(type);
        QCoreApplication::sendEvent(&receiver, &event);
        return event.isAccepted();
    };
    const ConvertProgress progress(&window, Never);
    for (const QEvent::Type type : {QEvent::MouseButtonPress,
                                    QEvent::MouseButtonRelease,
                                    QEvent::MouseButtonDblClick,
                                    QEvent::MouseMove,
                                    QEvent::Wheel,
                                    QEvent::KeyPress,
                                    QEvent::KeyRelease,
                                    QEvent::ShortcutOverride,
                                    QEvent::Shortcut,
                                    QEvent::InputMethod,
                                    QEvent::ContextMenu,
                                    QEvent::TouchBegin,
                                    QEvent::TouchUpdate,
                                    QEvent::TouchEnd,
                                    QEvent::TabletPress,
                                    QEvent::TabletMove,
                                    QEvent::TabletRelease,
                                    QEvent::NativeGesture,
                                    QEvent::DragEnter,
                                    QEvent::Drop,
                                    QEvent::Close})
        EXPECT_FALSE(send(type)) << type;
    EXPECT_TRUE(receiver.seen.empty());
    for (const QEvent::Type type : {QEvent::Timer, QEvent::Paint, QEvent::User})
        send(type);
    EXPECT_EQ(receiver.seen, (std::vector<int>{QEvent::Timer, QEvent::Paint, QEvent::User}));
}

TEST_F(ConvertProgressTest, InputThatWaitsWhenItEndsIsDropped) {
    {
        ConvertProgress progress(&window, AtOnce);
        progress.Show(0.5);
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            QCoreApplication::postEvent(button, new QKeyEvent(type, Qt::Key_Space, Qt::NoModifier));
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 0);
}

TEST_F(ConvertProgressTest, HandlesNoInputWhileItLives) {
    for (const auto patience : {AtOnce, Never}) {
        {
            ConvertProgress progress(&window, patience);
            progress.Show(0.1);
            TryEverything();
            EXPECT_EQ(QApplication::activeModalWidget() != nullptr, patience == AtOnce);
        }
        EXPECT_EQ(clicks, 0);
        EXPECT_TRUE(window.isVisible());
    }
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(window.close());
}

TEST_F(ConvertProgressTest, InputThatArrivesOnTheWayIsDropped) {
    bool tried = false;
    QTimer::singleShot(0, &window, [&] {
        TryEverything();
        tried = true;
    });
    {
        ConvertProgress progress(&window, AtOnce);
        progress.Show(0.5);
        EXPECT_TRUE(tried) << "windows are to stay alive meanwhile";
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 0);
    EXPECT_TRUE(window.isVisible());
}

} // namespace
} // namespace tracelet
