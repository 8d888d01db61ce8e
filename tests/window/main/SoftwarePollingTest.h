#pragma once

#include "core/base/LittleEndian.h"
#include "tests/support/MainWindowTest.h"
#include "window/chart/ZelGraph.h"

namespace tracelet {

/// Polled sessions of the main window, and what they record.
class SoftwarePollingTest : public MainWindowTest {
protected:
    void Record() {
        Click(window->CkAISave2Disk);
        if (window->CkDISave2Disk->isEnabled())
            Click(window->CkDISave2Disk);
    }

    [[nodiscard]] std::vector<float> RecordedScans() const {
        const std::vector<std::uint8_t> bytes = Bytes(window->szAIFileName);
        std::vector<float> values;
        for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4)
            values.push_back(ReadLittleEndian<float>(std::as_bytes(std::span(bytes)), at));
        return values;
    }

    [[nodiscard]] float Expected(std::int32_t channel, std::uint64_t ordinal) {
        const SimulatedAnalogBoard& board = AnalogBoardInUse();
        return static_cast<float>(
            board.PolledValue({channel, board.Info().ranges.front(), SingleEnded}, ordinal));
    }

    void PickBoard(QStringView namePart) {
        for (std::size_t i = 0; i < boards.analog.size(); ++i) {
            if (QString::fromStdString(boards.analog[i].name).contains(namePart))
                window->ZelAI1->SetDeviceNumber(static_cast<std::int32_t>(i));
        }
        ASSERT_TRUE(window->ZelAI1->DeviceName().contains(namePart));
        const std::int64_t count = std::int64_t{window->ZelAI1->MaxChannelCount()} + 1;
        window->M1.AIChanIsThermo.Resize(count);
        window->M1.AIThermoExpChan.Resize(count);
        window->M1.AIThermoScale.Resize(count);
        window->M1.AIThermoType.Resize(count);
        window->InitPlotAttributes(true);
        window->BuildPlots(false, true);
    }
};

} // namespace tracelet
