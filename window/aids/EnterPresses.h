#pragma once

class QPushButton;

namespace tracelet {

/// Lets Enter press the button while it has the focus, though the dialog's boxes must not press it by theirs.
/// The button is then no automatic default.
void EnterPresses(QPushButton* button);

} // namespace tracelet
