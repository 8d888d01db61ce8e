#pragma once

#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "core/drivers/simulated/SimulatedDigitalBoard.h"
#include "core/files/Paths.h"
#include "tests/support/MessageBoxes.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelButton.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <fstream>
#include <memory>

namespace tracelet {

/// The real main window on simulated boards, in a program folder of its own and on a clock that the test
/// sets.
class MainWindowTest : public testing::Test {
protected:
    MainWindowTest() { Open(SimulatedBoards()); }

    /// Opens the window anew with these boards.
    void Open(BoardList given) {
        window.reset();
        boards = std::move(given);
        frmMain::Surroundings surroundings;
        surroundings.boards = boards;
        surroundings.findMore = [this](BoardList& known) { findMore(known); };
        surroundings.programFolder = folder.path();
        surroundings.stateFolder = state.path().toStdString();
        surroundings.ticks = [this] { return now; };
        window = std::make_unique<frmMain>(std::move(surroundings));
        window->show();
    }

    /// Clicks as a user does; a disabled button does nothing.
    static void Click(QAbstractButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

    /// Selects lines of ports and the polled block that follows from them.
    void SelectPorts(std::int32_t start, std::initializer_list<std::uint8_t> masks) {
        window->nDIPortStart = start;
        window->nDIPortCount = static_cast<std::int32_t>(masks.size());
        window->nDIChanCount = 0;
        std::int32_t port = start;
        for (std::uint8_t mask : masks) {
            window->M1.DIPortMask[port++] = mask;
            window->nDIChanCount += std::popcount(mask);
        }
        window->BuildPlots(window->bHistoryMode, true);
    }

    /// Presses Start; ticks then come from Tick alone.
    void StartPolling() {
        Click(window->BtnStart);
        ASSERT_TRUE(window->isSystemRunning);
        window->ZelHiResTimerCtl1->SetTimerEnabled(frmMain::PollTimer, false);
    }

    void TurnOnAI() { Click(window->ZelButton1); }
    void TurnOnDI() { Click(window->ZelButton2); }

    /// Board of the selected device number, for its faults.
    [[nodiscard]] SimulatedAnalogBoard& AnalogBoardInUse() {
        return dynamic_cast<SimulatedAnalogBoard&>(
            *boards.analog.at(static_cast<std::size_t>(window->ZelAI1->DeviceNumber())).board);
    }
    [[nodiscard]] SimulatedDigitalBoard& DigitalBoardInUse() {
        return dynamic_cast<SimulatedDigitalBoard&>(
            *boards.digital.at(static_cast<std::size_t>(window->ZelDIO1->DeviceNumber())).board);
    }

    /// Lets the polling timer tick `count` times, `milliseconds` of the clock apart, whatever the real time.
    void Tick(int count, std::uint32_t milliseconds = 100) {
        for (int i = 0; i < count; ++i) {
            now += milliseconds;
            window->ZelHiResTimerCtl1_OnTimer(frmMain::PollTimer);
        }
    }

    [[nodiscard]] static std::vector<std::uint8_t> Bytes(const std::string& path) {
        std::ifstream file(NativePath(path), std::ios::binary | std::ios::ate);
        std::vector<std::uint8_t> bytes(file ? static_cast<std::size_t>(file.tellg()) : 0);
        file.seekg(0);
        file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return bytes;
    }

    QTemporaryDir folder;
    QTemporaryDir state;
    BoardList boards;
    std::function<void(BoardList&)> findMore = [](BoardList&) {}; ///< what a picker finds beside them
    std::uint32_t now = 1000;
    MessageBoxes boxes;
    std::unique_ptr<frmMain> window;
};

/// A list with one analog board made to measure and no digital one.
inline BoardList OneAnalogBoard(AnalogBoardInfo info) {
    BoardList list;
    auto board = std::make_shared<SimulatedAnalogBoard>(SimulatedAnalogKind{0, info, {}, false});
    list.analog.push_back({info.name, info.driver, "", true, board});
    return list;
}

} // namespace tracelet
