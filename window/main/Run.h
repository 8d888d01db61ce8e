#pragma once

#include <functional>

namespace tracelet {

class frmMain;

/// The whole program, from its start to the exit code. `beforeShow` gets the main window before it is shown.
int Run(
    int argc, char** argv, const std::function<void(frmMain&)>& beforeShow = [](frmMain&) {});

} // namespace tracelet
