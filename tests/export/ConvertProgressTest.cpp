#include "export/ConvertProgress.h"

#include <QApplication>
#include <QDialog>
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
        window.close();
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
