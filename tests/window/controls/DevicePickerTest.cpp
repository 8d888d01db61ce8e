#include "window/controls/DevicePicker.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "tests/support/FakeBoard.h"
#include "tests/support/MessageBoxes.h"
#include "window/controls/ZelAI.h"
#include "window/controls/ZelDIO.h"

#include <QHeaderView>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using testing::ElementsAre;
using Texts = std::vector<std::string>;

QTreeWidget* ListOf(const QDialog& picker) {
    return picker.findChild<QTreeWidget*>(QStringLiteral("lstBoards"));
}

QPushButton* ButtonOf(const QDialog& picker, const QString& name) {
    return picker.findChild<QPushButton*>(name);
}

Texts TextsOf(const QTreeWidgetItem& item) {
    Texts texts;
    for (int column = 0; column < item.columnCount(); ++column)
        texts.push_back(item.text(column).toStdString());
    return texts;
}

void ClickRow(QTreeWidget& list, int row, bool twice = false) {
    const QPoint place = list.visualItemRect(list.topLevelItem(row)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
    if (twice)
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
}

class DevicePickerTest : public testing::Test {
protected:
    DevicePickerTest() {
        auto real = std::make_shared<FakeBoard>();
        real->info.resolution = 12;
        boards.analog.push_back(EntryOf(real));
        BoardEntry<AnalogBoard> broken;
        broken.name = "Broken";
        broken.driver = "Fakes";
        broken.reason = "permission denied";
        boards.analog.push_back(broken);
        const BoardList simulated = SimulatedBoards();
        boards.analog.insert(boards.analog.end(), simulated.analog.begin(), simulated.analog.end());
        boards.digital = simulated.digital;
        ai.SetBoards(boards);
        dio.SetBoards(boards);
        ai.SetDeviceNumber(2);
        dio.SetDeviceNumber(0);
    }

    // Opens the picker of a control, as a user sees it; `action` must close it.
    template <typename Control>
    void Pick(Control& control, const std::function<void(QDialog&)>& action) {
        bool opened = false;
        OnModalDialog<QDialog>([&](QDialog& picker) {
            opened = true;
            EXPECT_EQ(picker.objectName(), QStringLiteral("DevicePicker"));
            ASSERT_NE(ListOf(picker), nullptr);
            action(picker);
            if (picker.isVisible()) {
                ADD_FAILURE() << "the picker is still open";
                picker.reject();
            }
        });
        control.SelectDevice(&owner);
        EXPECT_TRUE(opened);
    }

    QWidget owner;
    BoardList boards;
    ZelAI ai;
    ZelDIO dio;
};

TEST_F(DevicePickerTest, ListsAnalogBoards) {
    Pick(ai, [&](QDialog& picker) {
        EXPECT_TRUE(picker.isModal());
        EXPECT_EQ(picker.windowTitle(), QStringLiteral("Select Device"));
        const QTreeWidget& list = *ListOf(picker);
        EXPECT_EQ(TextsOf(*list.headerItem()), (Texts{"Driver", "Name", "Channels", "Resolution"}));
        ASSERT_EQ(list.topLevelItemCount(), static_cast<int>(boards.analog.size()));
        EXPECT_EQ(TextsOf(*list.topLevelItem(0)), (Texts{"Fakes", "Fake 8", "8", "12 bits"}));
        EXPECT_EQ(TextsOf(*list.topLevelItem(2)),
                  (Texts{"Simulation", "Merula 64 (simulated)", "64", "16 bits"}));
        for (int row = 2; row < list.topLevelItemCount(); ++row)
            EXPECT_TRUE(list.topLevelItem(row)->text(1).endsWith(QLatin1String(" (simulated)")));
        EXPECT_EQ(list.indexOfTopLevelItem(list.currentItem()), 2);
        picker.reject();
    });
}

TEST_F(DevicePickerTest, ListsDigitalBoards) {
    Pick(dio, [&](QDialog& picker) {
        const QTreeWidget& list = *ListOf(picker);
        EXPECT_EQ(TextsOf(*list.headerItem()), (Texts{"Driver", "Name", "Ports"}));
        ASSERT_EQ(list.topLevelItemCount(), 3);
        EXPECT_EQ(TextsOf(*list.topLevelItem(2)), (Texts{"Simulation", "Merula Port 12 (simulated)", "12"}));
        ClickRow(*ListOf(picker), 2);
        QTest::mouseClick(ButtonOf(picker, QStringLiteral("OKButton")), Qt::LeftButton);
    });
    EXPECT_EQ(dio.DeviceName(), QStringLiteral("Merula Port 12"));
    EXPECT_EQ(dio.MaxPortCount(), 12);
}

TEST_F(DevicePickerTest, OkTakesTheSelectedBoard) {
    Pick(ai, [&](QDialog& picker) {
        ClickRow(*ListOf(picker), 0);
        QTest::mouseClick(ButtonOf(picker, QStringLiteral("OKButton")), Qt::LeftButton);
    });
    EXPECT_EQ(ai.DeviceNumber(), 0);
    EXPECT_EQ(ai.DeviceName(), QStringLiteral("Fake 8"));
}

TEST_F(DevicePickerTest, ADoubleClickTakesTheBoard) {
    Pick(ai, [&](QDialog& picker) { ClickRow(*ListOf(picker), 3, true); });
    EXPECT_EQ(ai.DeviceNumber(), 3);
}

TEST_F(DevicePickerTest, KeysSelectAndEnterTakes) {
    Pick(ai, [&](QDialog& picker) {
        EXPECT_EQ(picker.focusWidget(), ListOf(picker));
        QTest::keyClick(ListOf(picker), Qt::Key_Down);
        QTest::keyClick(ListOf(picker), Qt::Key_Down);
        QTest::keyClick(ListOf(picker), Qt::Key_Return);
    });
    EXPECT_EQ(ai.DeviceNumber(), 4);
}

TEST_F(DevicePickerTest, CancelAndEscapeKeepTheSelectionAndItsSettings) {
    ai.SetSampleRate(777);
    Pick(ai, [&](QDialog& picker) {
        ClickRow(*ListOf(picker), 0);
        QTest::mouseClick(ButtonOf(picker, QStringLiteral("BtnCancel")), Qt::LeftButton);
    });
    EXPECT_EQ(ai.DeviceNumber(), 2);
    Pick(ai, [&](QDialog& picker) {
        ClickRow(*ListOf(picker), 0);
        QTest::keyClick(ListOf(picker), Qt::Key_Escape);
    });
    EXPECT_EQ(ai.DeviceNumber(), 2);
    EXPECT_EQ(ai.SampleRate(), 777.0);
}

TEST_F(DevicePickerTest, EnterOnCancelCancels) {
    Pick(ai, [&](QDialog& picker) {
        picker.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&picker));
        ClickRow(*ListOf(picker), 0);
        QPushButton* cancel = ButtonOf(picker, QStringLiteral("BtnCancel"));
        cancel->setFocus();
        QTest::keyClick(cancel, Qt::Key_Return);
    });
    EXPECT_EQ(ai.DeviceNumber(), 2);
}

TEST_F(DevicePickerTest, OkOnTheSelectedBoardKeepsItsSettings) {
    ai.SetSampleRate(777);
    Pick(ai, [&](QDialog& picker) { QTest::keyClick(&picker, Qt::Key_Return); });
    EXPECT_EQ(ai.DeviceNumber(), 2);
    EXPECT_EQ(ai.SampleRate(), 777.0);
}

TEST_F(DevicePickerTest, ABoardThatCannotBeUsedIsShownWithItsReason) {
    Pick(ai, [&](QDialog& picker) {
        QTreeWidgetItem& broken = *ListOf(picker)->topLevelItem(1);
        EXPECT_TRUE(broken.isDisabled());
        EXPECT_EQ(broken.text(1), QStringLiteral("Broken: permission denied"));
        ClickRow(*ListOf(picker), 1, true);
        EXPECT_TRUE(picker.isVisible());
        picker.reject();
    });
    EXPECT_EQ(ai.DeviceNumber(), 2);
}

TEST_F(DevicePickerTest, OkNeedsASelection) {
    ai.SetDeviceNumber(-1);
    Pick(ai, [&](QDialog& picker) {
        QPushButton* ok = ButtonOf(picker, QStringLiteral("OKButton"));
        EXPECT_FALSE(ok->isEnabled());
        QTest::keyClick(ListOf(picker), Qt::Key_Return);
        EXPECT_TRUE(picker.isVisible());
        ClickRow(*ListOf(picker), 2);
        EXPECT_TRUE(ok->isEnabled());
        picker.reject();
    });
    EXPECT_EQ(ai.DeviceNumber(), -1);
}

TEST_F(DevicePickerTest, NoBoardsNoChoice) {
    ZelAI none;
    Pick(none, [&](QDialog& picker) {
        EXPECT_EQ(ListOf(picker)->topLevelItemCount(), 0);
        EXPECT_FALSE(ButtonOf(picker, QStringLiteral("OKButton"))->isEnabled());
        QTest::mouseClick(ButtonOf(picker, QStringLiteral("BtnCancel")), Qt::LeftButton);
    });
    EXPECT_EQ(none.DeviceNumber(), -1);
}

TEST_F(DevicePickerTest, EveryTextIsReadable) {
    Pick(ai, [&](QDialog& picker) {
        const QTreeWidget& list = *ListOf(picker);
        for (int row = 0; row < list.topLevelItemCount(); ++row) {
            for (int column = 0; column < list.columnCount(); ++column) {
                const QString text = list.topLevelItem(row)->text(column);
                EXPECT_GT(list.header()->sectionSize(column), list.fontMetrics().horizontalAdvance(text))
                    << text.toStdString();
            }
        }
        picker.reject();
    });
}

TEST_F(DevicePickerTest, AFailingBoardRaisesAndKeepsTheSelection) {
    auto failing = std::make_shared<FakeBoard>();
    failing->refusedOpen = "The board is in use";
    boards.analog.push_back(EntryOf(failing));
    ai.SetBoards(boards);
    ai.SetDeviceNumber(2);
    const int last = static_cast<int>(boards.analog.size()) - 1;
    EXPECT_THAT(
        [&] {
            Pick(ai, [&](QDialog& picker) {
                ListOf(picker)->setCurrentItem(ListOf(picker)->topLevelItem(last));
                picker.accept();
            });
        },
        testing::ThrowsMessage<RunTimeError>("The board is in use"));
    EXPECT_EQ(ai.DeviceNumber(), 2);
}

} // namespace
} // namespace tracelet
