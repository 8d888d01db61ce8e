#include "core/boards/ChannelNumbers.h"
#include "window/main/frmMain.h"
#include "window/settings/frmSetting.h"

namespace tracelet {

void frmMain::BtnSet_Click() {
    frmSetting(*this).exec();
    ReadBackConnections();
    BuildPlots(bHistoryMode, true);
}

// Up to and including the spare element behind the last channel, which the controls accept.
void frmMain::ReadBackConnections() {
    if (ZelAI1->DeviceNumber() < 0)
        return;
    for (std::int32_t channel = 0; channel <= ZelAI1->MaxChannelCount(); ++channel) {
        if (M1.AIChanIsThermo[channel]) {
            ZelThermo1->SetChannel(channel);
            M1.AIChanConnection[channel] = ZelThermo1->SignalConnection();
        } else {
            ZelAI1->SetChannel(channel);
            M1.AIChanConnection[channel] = ZelAI1->SignalConnection();
        }
    }
}

// The helpers below translate with the wiring as it was last read back from the device.

ChannelNumbers frmMain::ChannelNumbering() const {
    return {ZelAI1->BoardInfo(), M1.AIChanConnection};
}

std::int32_t frmMain::PhysToLogicalChan(std::int32_t channel) const {
    return ChannelNumbering().PhysToLogical(channel);
}

std::int32_t frmMain::LogicalToPhysChan(std::int32_t& channel) const {
    return ChannelNumbering().LogicalToPhys(channel);
}

std::int32_t frmMain::LogicalChanCount() const {
    return ChannelNumbering().LogicalCount();
}

std::int32_t frmMain::ScannedChannel(std::int32_t position) const {
    return ChannelNumbering().ScannedChannel(ZelAI1->ScanStartChannel(), position);
}

} // namespace tracelet
