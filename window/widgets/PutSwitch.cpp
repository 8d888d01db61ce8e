#include "window/widgets/PutSwitch.h"

#include "window/widgets/ZelButton.h"

#include <QSignalBlocker>

namespace tracelet {

void PutSwitch(ZelButton* button, bool on) {
    const QSignalBlocker blocker(button);
    button->SetValue(on);
    button->update();
}

} // namespace tracelet
