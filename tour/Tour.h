#pragma once

#include "app/frmMain.h"
#include "tour/Pictures.h"

#include <QString>

#include <functional>
#include <memory>

namespace tracelet {

/// Drives the real window on simulated boards as a user would, and takes pictures on the way. A step that does
/// not go as it should raises RunTimeError with what went wrong.
class Tour {
public:
    Tour(const QString& pictureFolder, const QString& projectFolder);

    /// Records analog and digital input by polling and saves it: folder "Polled".
    void RecordPolled();
    /// Sixteen channels of fast input at 1 MS/s, drawn live and saved: folder "Fast".
    void RecordFast();
    /// Opens, plays, pauses, seeks and converts the polled recording.
    void ReplayAndConvert();
    /// Menu, zooms, the graph settings, temperatures beside voltages, dense plots, other sizes and a dark palette.
    void LookAround();

    [[nodiscard]] int PictureCount() const { return pictures.Count(); }

private:
    /// Presses `opener`, runs `action` on the dialog it opens, which must close it.
    template <typename Dialog>
    void InDialog(QAbstractButton* opener, std::function<void(Dialog&)> action);
    void Run(int milliseconds);
    void Picture(const QString& name) { pictures.Take(*window, name); }
    void SaveAs(const QString& folderName, bool picture);
    void ChooseBoard(const QString& namePart);
    void PictureSettings();
    void PictureRangeTable();
    void Zoom(const char* entry, const QString& name);
    void PictureSizes();
    void PictureDarkPalette();

    Pictures pictures;
    QString projectFolder;
    std::unique_ptr<frmMain> window;
};

} // namespace tracelet
