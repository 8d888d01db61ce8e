// The program itself, telling when its window was painted.

#include "app/Run.h"
#include "app/frmMain.h"
#include "bench/start/FirstPaint.h"

#include <memory>

int main(int argc, char** argv) {
    std::unique_ptr<FirstPaint> observer;
    return tracelet::Run(argc, argv, [&](tracelet::frmMain& window) {
        observer = std::make_unique<FirstPaint>(window, argc > 1 ? std::atof(argv[1]) : 0);
    });
}
