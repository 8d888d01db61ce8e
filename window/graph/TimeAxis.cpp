#include "core/plots/TimeBase.h"
#include "window/chart/ZelGraph.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelLED.h"

#include <QScopeGuard>

namespace tracelet {

void frmMain::AdjustXAxisAndChartLength(bool bSetXAxis) {
    ZelGraph1->SetDivision(dDIVValue);
    if (bSetXAxis) {
        const double middle = (ZelGraph1->XAxisMax() + ZelGraph1->XAxisMin()) / 2;
        ZelGraph1->SetXAxisMin(middle - 5 * dDIVValue);
        ZelGraph1->SetXAxisMax(middle + 5 * dDIVValue);
    }
    if (bHistoryMode) {
        ZelGraph1->SetChartLength(HistoryChartLength(dDIVValue, ScanInterval));
        return;
    }
    const std::int32_t channels = ZelAI1->ScanChannelCount();
    if (channels < 1)
        return;
    ZelGraph1->SetChartLength(M1.SoftMode ? PolledChartLength(dDIVValue, nTimerInterval)
                                          : FastChartLength(dDIVValue, ZelAI1->SampleRate(), channels));
}

void frmMain::ShowDIVValue(double secondsPerDivision) {
    isNumEditEventFired = true;
    dDIVValue = secondsPerDivision;
    ZelLED1->SetValue(secondsPerDivision);
    ZelGraph1->SetDivision(secondsPerDivision);
    isNumEditEventFired = false;
}

void frmMain::ZelLED1_Step(bool up) {
    if (isNumEditEventFired)
        return;
    isNumEditEventFired = true;
    ZelLED1->SetEnabled(false);
    // An axis or chart length that cannot be set must not leave the display dead.
    const auto atEnd = qScopeGuard([this] {
        ZelLED1->SetValue(dDIVValue);
        ZelLED1->SetEnabled(true);
        isNumEditEventFired = false;
    });
    dDIVValue = SteppedDivision(dDIVValue, up);
    AdjustXAxisAndChartLength(true);
}

} // namespace tracelet
