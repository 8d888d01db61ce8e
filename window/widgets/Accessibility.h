#pragma once

class QWidget;

namespace tracelet {

/// Lets assistive technology read (and, for a slider, set) the values of ZelSlider and ZelLED. Any number of
/// calls install it once.
void InstallDisplayAccessibility();

/// Tells assistive technology that the control's value changed.
void TellAccessibleValue(QWidget& control);

} // namespace tracelet
