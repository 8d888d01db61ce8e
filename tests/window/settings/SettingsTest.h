#pragma once

#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedDigitalBoard.h"
#include "tests/support/MainWindowTest.h"
#include "window/chart/ZelGraph.h"
#include "window/controls/DevicePicker.h"
#include "window/settings/dlgGainRange.h"
#include "window/settings/frmSetting.h"
#include "window/widgets/ZelButton.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeWidget>

namespace tracelet {

/// The settings dialogs, opened from the real main window as a user opens them.
class SettingsTest : public MainWindowTest {
protected:
    using Box = MessageBoxes::Box;

    /// A board of a family, 16 channels, with everything that the family may have.
    static AnalogBoardInfo Described(const char* name, std::int32_t channelCount = 16) {
        AnalogBoardInfo info;
        info.name = name;
        info.driver = "Test";
        info.resolution = 12;
        info.channelCount = channelCount;
        info.ranges = {{0, -10, 10}, {1, -1.25, 1.25}, {2, 0, 5}, {3, 4, 20}};
        info.externalPacer = true;
        info.hardwareTrigger = true;
        info.thermocouples = true;
        info.lowestRate = 1.0;
        info.highestRate = 1e6;
        return info;
    }

    static BoardList Boards(const std::vector<AnalogBoardInfo>& analog,
                            const std::vector<std::pair<std::string, std::int32_t>>& digital = {}) {
        BoardList list;
        for (const AnalogBoardInfo& info : analog) {
            SimulatedAnalogKind kind;
            kind.number = static_cast<std::int32_t>(list.analog.size());
            kind.info = info;
            kind.dividedClock = 10e6;
            list.analog.push_back(
                {info.name, info.driver, "", false, std::make_shared<SimulatedAnalogBoard>(kind)});
        }
        for (const auto& [name, ports] : digital) {
            DigitalBoardInfo info;
            info.name = name;
            info.portCount = ports;
            list.digital.push_back({name, "Test", "", false, std::make_shared<SimulatedDigitalBoard>(info)});
        }
        return list;
    }

    /// Presses Setting..., runs `action` on the open dialog and closes it by its title bar unless `action`
    /// did otherwise.
    void InSettings(const std::function<void(frmSetting&)>& action) {
        bool opened = false;
        OnModalDialog<frmSetting>([&](frmSetting& dialog) {
            opened = true;
            Activate(dialog);
            action(dialog);
            if (dialog.isVisible())
                dialog.close();
        });
        Click(window->BtnSet);
        EXPECT_TRUE(opened);
    }

    /// Presses Set Range on the current page.
    static void InRange(frmSetting& settings, const std::function<void(dlgGainRange&)>& action) {
        bool opened = false;
        OnModalDialog<dlgGainRange>([&](dlgGainRange& dialog) {
            opened = true;
            action(dialog);
            if (dialog.isVisible())
                dialog.close();
        });
        Click(settings.cmdRange[static_cast<std::size_t>(settings.SSTab1->currentIndex())]);
        EXPECT_TRUE(opened);
    }

    /// The range dialog of a window that has just opened.
    void InRange(const std::function<void(dlgGainRange&)>& action) {
        InSettings([&](frmSetting& settings) { InRange(settings, action); });
    }

    /// Presses a Select Device button and picks the board of this row; -1 cancels.
    static void Pick(QPushButton* button, int row) {
        OnModalDialog<DevicePicker>([row](DevicePicker& picker) {
            auto* list = picker.findChild<QTreeWidget*>(QStringLiteral("lstBoards"));
            if (row >= 0)
                list->setCurrentItem(list->topLevelItem(row));
            Click(picker.findChild<QPushButton*>(row >= 0 ? QStringLiteral("OKButton")
                                                          : QStringLiteral("BtnCancel")));
        });
        Click(button);
    }

    /// Opens a list and chooses an item, be it the selected one.
    static void Choose(QComboBox* list, int position) {
        list->showPopup();
        list->view()->setCurrentIndex(list->model()->index(position, 0));
        QTest::keyClick(list->view(), Qt::Key_Return);
    }

    /// Clicks the row of a channel.
    static void ClickRow(const dlgGainRange& dialog, int row) {
        QTreeWidget* table = dialog.lstViewGain;
        QTreeWidgetItem* item = table->topLevelItem(row);
        table->scrollToItem(item);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualItemRect(item).center());
        EXPECT_EQ(table->currentItem(), item);
    }

    static QStringList Items(const QComboBox* list) {
        QStringList items;
        for (int i = 0; i < list->count(); ++i)
            items.append(list->itemText(i));
        return items;
    }

    static void Activate(QWidget& dialog) {
        dialog.activateWindow(); // after a message box no window manager does it here
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    }

    static void Type(QLineEdit* box, const char* text) {
        Activate(*box->window());
        box->setFocus(Qt::MouseFocusReason);
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Delete);
        QTest::keyClicks(box, QString::fromUtf8(text));
    }

    static void ShowPage(frmSetting& dialog, int page) { dialog.SSTab1->setCurrentIndex(page); }
};

} // namespace tracelet
