#pragma once

namespace tracelet {

class ZelButton;

/// Moves a rocker switch without running its handler: the caller stores what follows from the position.
void PutSwitch(ZelButton* button, bool on);

} // namespace tracelet
