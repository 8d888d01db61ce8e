#pragma once

#include "core/base/RunTimeError.h"
#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "tour/Pictures.h"
#include "window/main/frmMain.h"

#include <QString>

#include <functional>
#include <memory>

class QAbstractButton;
class QDialog;

namespace tracelet {

/// Drives the real window on simulated boards as a user would, and takes pictures on the way. A step that
/// does not go as it should raises RunTimeError with what went wrong. Time is counted in ticks, so every tour
/// takes the same pictures.
class Tour {
public:
    /// Pictures go to `pictureFolder`, saved and converted recordings to `recordingFolder`.
    Tour(const QString& pictureFolder, const QString& recordingFolder);

    /// The window as it opens, its settings and its range table.
    void LookAtSettings();
    /// Records analog and digital input by polling and saves it as "Polled".
    void RecordPolled();
    /// Sixteen channels of fast input at 1 MS/s, drawn live and saved as "Fast".
    void RecordFast();
    /// As many plots as the board has channels.
    void LookAtManyPlots();
    /// Scans that are lost on the way, and a recording that was not saved.
    void LoseScans();
    /// Opens, plays, pauses, seeks and converts the recording of that name.
    void Replay(const QString& name);
    /// Menu, zooms, graph settings, temperatures beside voltages, other sizes and a dark palette.
    void LookAtGraph();
    /// Pictures of the main window only, for other scale factors.
    void LookAtWindow(const QString& name);

    [[nodiscard]] int PictureCount() const { return pictures.Count(); }

private:
    /// A new window on new simulated boards.
    void OpenWindow();
    /// Presses `opener`, runs `action` on the dialog that it opens and closes that if it is still open.
    void InDialog(QAbstractButton* opener, const std::function<void(QDialog&)>& action);
    /// Lets the window live for a while.
    static void Run(int milliseconds);
    /// Lets the window live until so many ticks of that timer were handled.
    void RunTicks(const QString& timer, int count);
    /// Lets so many ticks of polling come, whatever the machine is busy with.
    void Poll(int count);
    /// Lets the window live until so many scans were taken.
    void RunScans(std::int32_t count);
    void Picture(const QString& name);
    void SaveAs(const QString& name);
    void ChooseLines(QDialog& settings, int port, std::initializer_list<int> lines);
    void SetUpThermocouples(QDialog& settings);
    void Zoom(const char* entry, QPointF from, QPointF to);
    void PlaceCursor(double share);
    void PictureCursors(const QString& name);
    void PictureMenu();
    void PictureSizes();
    void PictureDarkPalette();

    Pictures pictures;
    QString recordings;
    std::shared_ptr<SimulatedAnalogBoard> board; // the plain one, selected as the window opens
    std::unique_ptr<frmMain> window;
};

} // namespace tracelet
