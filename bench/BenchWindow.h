#pragma once

#include "core/drivers/simulated/SimulatedBoards.h"
#include "window/main/frmMain.h"

#include <QTemporaryDir>

#include <memory>

/// The real main window, on simulated boards and in a program folder of its own.
class BenchWindow {
public:
    explicit BenchWindow(tracelet::TickClock ticks = tracelet::GetTickCount) {
        tracelet::frmMain::Surroundings surroundings;
        surroundings.boards = tracelet::SimulatedBoards();
        surroundings.programFolder = folder.path();
        surroundings.stateFolder = folder.path().toStdString();
        surroundings.ticks = std::move(ticks);
        window = std::make_unique<tracelet::frmMain>(std::move(surroundings));
        window->show();
    }

    tracelet::frmMain* operator->() const { return window.get(); }
    tracelet::frmMain& operator*() const { return *window; }

private:
    QTemporaryDir folder;
    std::unique_ptr<tracelet::frmMain> window;
};
