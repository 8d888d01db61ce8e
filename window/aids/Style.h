#pragma once

namespace tracelet {

/// Gives the application the style that its windows are drawn up for: Fusion, without icons on the buttons of
/// dialogs, and with boxes and options that a dark window does not swallow.
void InstallStyle();

} // namespace tracelet
