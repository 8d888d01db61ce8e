// The program itself, telling when its window was painted.

#include "bench/start/FirstPaint.h"
#include "window/main/Run.h"
#include "window/main/frmMain.h"

#include <memory>

int main(int argc, char** argv) {
    std::unique_ptr<FirstPaint> observer;
    return tracelet::Run(argc, argv, [&](tracelet::frmMain& window) {
        observer = std::make_unique<FirstPaint>(window, argc > 1 ? std::atof(argv[1]) : 0);
    });
}
