#include "app/PutSwitch.h"

#include "devices/display/ZelButton.h"

#include <QSignalBlocker>

namespace tracelet {

void PutSwitch(ZelButton* button, bool on) {
    const QSignalBlocker blocker(button);
    button->SetValue(on);
    button->update();
}

} // namespace tracelet
