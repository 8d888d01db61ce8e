#pragma once

class QWidget;

namespace tracelet {

/// Shows the page that explains the program, in a window of its own beside which the owner can be used;
/// brings it forward when it is open already.
void ShowHelp(QWidget& owner);

} // namespace tracelet
