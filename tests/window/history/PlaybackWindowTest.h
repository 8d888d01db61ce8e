#pragma once

#include "core/playback/PlaybackRate.h"
#include "tests/support/Unreadable.h"
#include "tests/window/history/HistoryWindowTest.h"

#include <vector>

namespace tracelet {

/// Plays recordings and looks at what the graph then holds.
class PlaybackWindowTest : public HistoryWindowTest {
protected:
    void ExpectStopped() {
        EXPECT_FALSE(TimerRuns());
        EXPECT_FALSE(window->ChkPlay->isChecked());
        EXPECT_EQ(Caption(), "4");
        EXPECT_FALSE(window->isHisPlaying);
        EXPECT_FALSE(window->isHisPlayPaused);
        EXPECT_EQ(window->ZelSliderR->Value(), 0.1);
        EXPECT_TRUE(window->ZelSliderR->Enabled());
        EXPECT_TRUE(window->BtnModeSwitch->isEnabled());
        EXPECT_TRUE(window->BtnHisConvert->isEnabled());
        EXPECT_TRUE(window->FrameCmd->isEnabled());
    }

    [[nodiscard]] std::vector<double> ValuesOf(int plot) const {
        std::vector<double> values;
        for (const auto& [x, y] : PointsOf(plot))
            values.push_back(y);
        return values;
    }
};

} // namespace tracelet
