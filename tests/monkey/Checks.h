#pragma once

namespace tracelet {

class frmMain;

/// What holds of the window whenever no dialog is open, whatever was done to it; the program fails otherwise.
void CheckWindow(const frmMain& window);

/// Memory of this process, in MiB.
[[nodiscard]] long ResidentMiB();

} // namespace tracelet
