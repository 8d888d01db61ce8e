#include "app/frmMain.h"
#include "devices/drivers/ChannelNumbers.h"

namespace tracelet {

// The helpers below translate with the wiring as it was last read back from the device.

std::int32_t frmMain::PhysToLogicalChan(std::int32_t channel) const {
    const std::string name = ZelAI1->DeviceName().toStdString();
    return ChannelNumbers{name, ZelAI1->MaxChannelCount(), M1.AIChanConnection}.PhysToLogical(channel);
}

std::int32_t frmMain::LogicalToPhysChan(std::int32_t& channel) const {
    const std::string name = ZelAI1->DeviceName().toStdString();
    return ChannelNumbers{name, ZelAI1->MaxChannelCount(), M1.AIChanConnection}.LogicalToPhys(channel);
}

std::int32_t frmMain::LogicalChanCount() const {
    const std::string name = ZelAI1->DeviceName().toStdString();
    return ChannelNumbers{name, ZelAI1->MaxChannelCount(), M1.AIChanConnection}.LogicalCount();
}

std::int32_t frmMain::ScannedChannel(std::int32_t position) const {
    std::int32_t logical = PhysToLogicalChan(ZelAI1->ScanStartChannel()) + position;
    return LogicalToPhysChan(logical);
}

} // namespace tracelet
