#pragma once

#include "core/recordings/ProjectInfo.h"
#include "tests/support/MainWindowTest.h"
#include "tests/support/TemporaryFolder.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/NoticeLine.h"
#include "window/widgets/ZelLED.h"
#include "window/widgets/ZelSlider.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>

#include <string>
#include <utility>
#include <vector>

namespace tracelet {

/// A saved recording in a folder of its own, written by its bytes.
struct SavedRecording {
    ProjectInfo info;
    std::string analog;  ///< bytes of "AI.tld"
    std::string digital; ///< bytes of "DI.tld"
};

template <typename T>
[[nodiscard]] std::string BytesOf(const std::vector<T>& values) {
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)};
}

/// Opens recordings through the file dialog and plays them tick by tick, whatever the real time.
class HistoryWindowTest : public MainWindowTest {
protected:
    /// Between two ticks of the timer lie minutes at this interval, so that only the test ticks; the chart
    /// keeps every point.
    static constexpr double Slow = 100.0;

    /// A polled recording of two channels: sample c of scan s is 10 s + c.
    [[nodiscard]] static SavedRecording Polled(std::int32_t scans, double interval = Slow) {
        SavedRecording recording;
        recording.info = {
            .bHisAI = true,
            .bHisAISoft = true,
            .bHisAIAnalog = true,
            .nHisAIChanCount = 2,
            .aiPlots = {{0x00FF8000, 0, "Left"}, {static_cast<std::int32_t>(0x80000016), 3, "µ"}},
            .HisAIChanIsThermo = {0, 255, 0, 0},
            .ScanCount = scans,
            .ScanInterval = interval};
        std::vector<float> values;
        for (int scan = 0; scan < scans; ++scan) {
            values.push_back(static_cast<float>(10 * scan));
            values.push_back(static_cast<float>(10 * scan + 1));
        }
        recording.analog = BytesOf(values);
        return recording;
    }

    /// Adds ports 1 and 2 to a recording, lines 0 and 7 of port 1 and line 4 of port 2: the state of port 1
    /// is the scan, of port 2 its complement.
    static void AddDigital(SavedRecording& recording, std::int32_t scans) {
        recording.info.bHisDI = true;
        recording.info.nHisDIChanCount = 3;
        recording.info.diPlots = {{0xFFFFFF, 0, "DI 1:0"}, {0xFFFFFF, 1, "DI 1:7"}, {0x00FFFF, 2, "DI 2:4"}};
        recording.info.HisDIPortMask = {0xFF, 0x81, 0x10};
        recording.digital = BytesOf(std::vector<std::int32_t>{1, 2});
        for (int scan = 0; scan < scans; ++scan) {
            recording.digital += static_cast<char>(scan);
            recording.digital += static_cast<char>(~scan);
        }
    }

    /// A recording of digital lines only.
    [[nodiscard]] static SavedRecording Digital(std::int32_t scans, double interval = Slow) {
        SavedRecording recording;
        recording.info = {
            .bHisAISoft = true, .bHisAIAnalog = true, .ScanCount = scans, .ScanInterval = interval};
        AddDigital(recording, scans);
        return recording;
    }

    /// Writes the folder `name` with the project and the data files that its flags name; the path of the
    /// project.
    std::string Save(SavedRecording recording, const std::string& name = "Saved") {
        const std::string target = saved / name;
        std::filesystem::create_directories(target);
        recording.info.AIDataPath = target + "\\AI.tld";
        recording.info.DIDataPath = target + "\\DI.tld";
        if (recording.info.bHisAI)
            saved.Write(name + "/AI.tld", recording.analog);
        if (recording.info.bHisDI)
            saved.Write(name + "/DI.tld", recording.digital);
        return saved.Write(name + "/Project.tlp", ProjectBytes(recording.info));
    }

    [[nodiscard]] static std::string ProjectBytes(const ProjectInfo& info) {
        return AsText(ProjectHeader(info)) + AsText(StopRecord(info.ScanCount, info.ScanInterval)) +
               AsText(SavedPaths(info.AIDataPath, info.DIDataPath));
    }

    /// Presses History and types the name into the file dialog.
    void OpenProject(const std::string& path) {
        bool shown = false;
        OnModalDialog<QFileDialog>([&](QFileDialog& dialog) {
            shown = true;
            dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
                ->setText(QString::fromStdString(path));
            Click(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open));
        });
        Click(window->BtnHistory);
        EXPECT_TRUE(shown);
    }

    void OpenSaved(const SavedRecording& recording) { OpenProject(Save(recording)); }

    /// Lets the playback timer tick.
    void PlayTicks(int count) {
        for (int i = 0; i < count; ++i)
            window->ZelHiResTimerCtl1_OnTimer(frmMain::PlayTimer);
    }

    /// Gives playback a speed without real ticks in between.
    void PlayByTheTick(std::int32_t scansPerTick) {
        window->ZelSliderV->SetValue(10.0 * scansPerTick);
        EXPECT_EQ(window->dHisPlaySpeed, scansPerTick);
        window->ZelHiResTimerCtl1->SetTimerInterval(frmMain::PlayTimer, 3600000);
    }

    using Points = std::vector<std::pair<double, double>>;

    /// The points that a plot holds, oldest first.
    [[nodiscard]] Points PointsOf(int plot) const {
        Points points;
        for (std::int64_t i = 0; i < window->ZelGraph1->PointCount(plot); ++i) {
            const QPointF point = window->ZelGraph1->PointAt(plot, i);
            points.emplace_back(point.x(), point.y());
        }
        return points;
    }

    [[nodiscard]] bool TimerRuns() const {
        return window->ZelHiResTimerCtl1->TimerExists(frmMain::PlayTimer) &&
               window->ZelHiResTimerCtl1->TimerEnabled(frmMain::PlayTimer);
    }

    /// What the window's foot says.
    [[nodiscard]] std::string Notice() const { return window->LabelNotice->text().toStdString(); }

    [[nodiscard]] std::string Caption() const { return window->ChkPlay->text().toStdString(); }

    TemporaryFolder saved;
};

} // namespace tracelet
