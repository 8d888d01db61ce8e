#pragma once

#include "core/base/Table.h"

#include <array>
#include <cstdint>
#include <string>

namespace tracelet {

/// State that the main window shares with its dialogs. Tables of analog channels are indexed by physical
/// channel, tables of ports by port; each has one spare element behind the last. Colours are raw 32-bit
/// values: 0x00BBGGRR, or 0x80000000 + n for system colour n.
struct M1 {
    // Analog channels
    Table<bool> AIChanIsThermo;           ///< read as a thermocouple
    Table<std::int32_t> AIChanConnection; ///< wiring, 0 single-ended, 1 differential
    Table<std::uint8_t> AIThermoExpChan;  ///< expansion-board channel, 0 to 15
    Table<std::uint8_t> AIThermoScale;    ///< index into ThermoScaleNames
    Table<std::uint8_t> AIThermoType;     ///< index into ThermoTypeNames
    Table<std::int32_t> AIPlotLineStyle;
    Table<std::uint32_t> AIPlotColor;
    Table<std::string> AIPlotName;

    // Digital ports, and lines at port × 8 + line
    Table<std::uint8_t> DIPortMask; ///< bit n set: line n is shown and recorded
    Table<std::int32_t> DIPlotLineStyle;
    Table<std::uint32_t> DIPlotColor;
    Table<std::string> DIPlotName;

    // The same facts of the opened recording, plots by their position in it
    Table<std::uint8_t> HisAIChanIsThermo; ///< by channel of the recorded device, non-zero: thermocouple
    Table<double> HisAIRangeLimits;        ///< two a channel
    Table<std::int32_t> HisAIPlotLineStyle;
    Table<std::uint32_t> HisAIPlotColor;
    Table<std::string> HisAIPlotName;
    Table<std::uint8_t> HisDIPortMask;
    Table<std::int32_t> HisDIPlotLineStyle;
    Table<std::uint32_t> HisDIPlotColor;
    Table<std::string> HisDIPlotName;

    bool SoftMode = false;    ///< software-polled; else fast analog input
    bool SoftAIValid = false; ///< an analog device was there when the polled settings were accepted
    bool DIValid = false;     ///< a digital device was there when the polled settings were accepted

    Table<std::string> ThermoTypeNames;  ///< eight slots, the last empty
    Table<std::string> ThermoScaleNames; ///< four
    std::array<std::uint32_t, 16> AIColorTable{};
};

} // namespace tracelet
