#pragma once

#include "tests/window/settings/SettingsTest.h"

namespace tracelet {

/// The range dialog, opened from the settings of the real main window.
class GainRangeTest : public SettingsTest {
protected:
    static std::string Cell(const dlgGainRange& dialog, int row, int column) {
        return dialog.lstViewGain->topLevelItem(row)->text(column).toStdString();
    }

    static std::vector<std::string> RowTexts(const dlgGainRange& dialog, int row) {
        std::vector<std::string> texts;
        for (int column = 0; column < dialog.lstViewGain->columnCount(); ++column)
            texts.push_back(Cell(dialog, row, column));
        return texts;
    }

    template <typename T>
    std::vector<int> Values(const Table<T>& table) const {
        std::vector<int> values;
        for (std::int64_t i = 0; i < table.Count(); ++i)
            values.push_back(table[i]);
        return values;
    }

    std::int32_t AnalogConnection(std::int32_t channel) const {
        window->ZelAI1->SetChannel(channel);
        return window->ZelAI1->SignalConnection();
    }
    std::int32_t ThermoConnection(std::int32_t channel) const {
        window->ZelThermo1->SetChannel(channel);
        return window->ZelThermo1->SignalConnection();
    }

    std::pair<double, double> AnalogRange(std::int32_t channel) const {
        std::int32_t code = 0;
        std::pair<double, double> range;
        window->ZelAI1->GetChannelRange(code, range.first, range.second, channel);
        return range;
    }

    /// A window on one board with thermocouples and four channels.
    void OpenFamily(const char* name) { Open(Boards({Described(name, 4)})); }
};

} // namespace tracelet
