// A device that prints numbers, plugged in while the program runs, picked, watched and recorded.

#include "tests/support/SerialLine.h"
#include "core/drivers/serial/SerialBoards.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/window/settings/SettingsTest.h"
#include "window/chart/ZelGraph.h"

#include <atomic>
#include <cmath>
#include <filesystem>
#include <thread>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

/// A line that prints "1.5,-2" all the time until it goes.
class Printer {
public:
    ~Printer() {
        isOver = true;
        thread.join();
    }
    SerialLine line;

private:
    std::atomic<bool> isOver = false;
    std::thread thread{[this] {
        while (!isOver) {
            line.Write("1.5,-2\n");
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }};
};

class SerialLineTest : public SettingsTest {
protected:
    SerialLineTest() {
        findMore = [this](BoardList& known) { FindSerialBoards(known, devices.Path(), devices / "none"); };
    }
    void PlugIn() { std::filesystem::create_symlink(printer.line.path, devices / "usb-Maker_Thing-if00"); }

    /// Picks the last board of the list on the polled page, three channels of it.
    void PickTheLast() {
        InSettings([&](frmSetting& dialog) {
            ShowPage(dialog, 1);
            Pick(dialog.cmdAISelectDevice[1], static_cast<int>(boards.analog.size()));
            dialog.txtAIScanNumber[1]->setText(u"3"_s);
            Click(dialog.cmdDIOK);
        });
    }

    Printer printer;
    TemporaryFolder devices;
};

TEST_F(SerialLineTest, APluggedInLineIsPickedWatchedAndRecorded) {
    PlugIn();
    PickTheLast();
    EXPECT_EQ(window->ZelAI1->DeviceName(), u"Maker Thing"_s);
    TurnOnAI();
    Click(window->CkAISave2Disk);
    StartPolling();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            Tick(1);
            return window->ScanCount >= 3;
        },
        20000));
    EXPECT_EQ(window->ZelGraph1->PointAt(0, 1).y(), 1.5);
    EXPECT_EQ(window->ZelGraph1->PointAt(1, 1).y(), -2.0);
    EXPECT_EQ(window->ZelGraph1->AxisUnit(VoltageAxis), QString()) << "nobody knows";
    Click(window->BtnStart);
    const std::vector<std::uint8_t> bytes = Bytes(window->szAIFileName);
    ASSERT_GE(bytes.size(), 12U);
    float scan[3] = {};
    std::memcpy(scan, bytes.data(), sizeof scan);
    EXPECT_EQ(scan[0], 1.5F);
    EXPECT_EQ(scan[1], -2.0F);
    EXPECT_TRUE(std::isnan(scan[2])) << "the line has two";
}

TEST_F(SerialLineTest, TheSelectionAndTheNumbersOfBoardsStay) {
    const QString before = window->ZelAI1->DeviceName();
    PlugIn();
    InSettings([&](frmSetting& dialog) {
        ShowPage(dialog, 1);
        Pick(dialog.cmdAISelectDevice[1], 2);
        EXPECT_EQ(window->ZelAI1->DeviceNumber(), 2);
        EXPECT_EQ(window->ZelAI1->DeviceName().toStdString(), boards.analog[2].name);
    });
    Open(boards);
    EXPECT_EQ(window->ZelAI1->DeviceName(), before);
}

TEST_F(SerialLineTest, FastInputIsRefusedWithAReason) {
    PlugIn();
    PickTheLast();
    window->M1.SoftMode = false;
    TurnOnAI();
    Click(window->BtnStart);
    EXPECT_THAT(boxes.Take(),
                testing::ElementsAre(
                    Box{"Lines of numbers come at their own pace: use software polling", "BtnStart"}));
    EXPECT_FALSE(window->isSystemRunning);
}

} // namespace
} // namespace tracelet
