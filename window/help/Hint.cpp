#include "window/chart/ZelGraph.h"
#include "window/main/frmMain.h"

#include <QCheckBox>

using namespace Qt::StringLiterals;

namespace tracelet {

QString frmMain::NextStep() const {
    if (bHistoryMode)
        return ChkPlay->isChecked() ? QString() : u"Press play to see the recording"_s;
    if (isSystemRunning)
        return u"Waiting for the first sample"_s;
    if (bAIEnabled || bDIEnabled) {
        const bool records = (bAIEnabled && bAISaveToDisk) || (bDIEnabled && bDISaveToDisk);
        return records
                   ? u"Press Start to record"_s
                   : u"Press Start\nTo record, tick %1 Save2Disk first"_s.arg(bAIEnabled ? u"AI"_s : u"DI"_s);
    }
    const bool offersAI = ZelAI1->DeviceNumber() >= 0 && ZelAI1->ScanChannelCount() > 0;
    const bool offersDI = ZelDIO1->DeviceNumber() >= 0 && nDIPortCount > 0;
    if (!offersAI && !offersDI)
        return u"Choose a board first: Setting... in the frame Device"_s;
    return u"Turn on %1, then press Start"_s.arg(offersAI && offersDI ? u"AI or DI"_s
                                                 : offersAI           ? u"AI"_s
                                                                      : u"DI"_s);
}

void frmMain::ShowNextStep() {
    ZelGraph1->SetHint(NextStep());
}

} // namespace tracelet
