#pragma once

#include "core/layout/WindowLayout.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QPushButton;
class QTreeWidget;
class QWidget;

namespace tracelet {

class NoticeLine;
class StatusLine;
class ZelButton;
class ZelGraph;
class ZelLED;
class ZelSlider;

/// The widgets of the main window, under the names that they also bear as object names.
struct MainWidgets {
    ZelGraph* ZelGraph1 = nullptr;

    QWidget* FrameListView = nullptr;
    QTreeWidget* ListView1 = nullptr; ///< plot list: columns " Chan" and " Line"
    QWidget* Picture4 = nullptr;      ///< strip below the list, with the display
    ZelLED* ZelLED1 = nullptr;        ///< seconds per division

    QGroupBox* FrameSet = nullptr; ///< "Device"
    QPushButton* BtnSet = nullptr;
    QCheckBox* CkAISave2Disk = nullptr;
    QCheckBox* CkDISave2Disk = nullptr;

    QGroupBox* FrameCmd = nullptr;   ///< "Signal"
    ZelButton* ZelButton1 = nullptr; ///< AI
    ZelButton* ZelButton2 = nullptr; ///< DI
    QLabel* LabelAI = nullptr;
    QLabel* LabelAIOn = nullptr;
    QLabel* LabelDI = nullptr;
    QLabel* LabelDIOn = nullptr;

    QGroupBox* FrameGraph = nullptr; ///< "Graph"
    QPushButton* BtnGraphSet = nullptr;
    QPushButton* BtnClearGraph = nullptr;
    QLabel* LabelGraphHint = nullptr; ///< beside the buttons or, where there is no room, below them

    QGroupBox* FrameHis = nullptr; ///< "History Playback"
    QCheckBox* ChkPlay = nullptr;
    QPushButton* BtnAccelerate = nullptr;
    QPushButton* BtnStop = nullptr;
    QPushButton* BtnHisConvert = nullptr;
    ZelSlider* ZelSliderR = nullptr; ///< position, percent
    ZelSlider* ZelSliderV = nullptr; ///< speed, scans a second
    QLabel* Label1 = nullptr;
    QLabel* Label2 = nullptr;
    QLabel* Label6 = nullptr;
    QLabel* Label14 = nullptr;
    QLabel* Label15 = nullptr;
    QLabel* Label16 = nullptr;

    QPushButton* BtnStart = nullptr;
    QPushButton* BtnModeSwitch = nullptr;
    QPushButton* BtnSaveAs = nullptr;
    QPushButton* BtnHistory = nullptr;
    QPushButton* BtnExit = nullptr;

    QWidget* FrameFoot = nullptr; ///< the line at the window's foot
    StatusLine* LabelStatus = nullptr;
    NoticeLine* LabelNotice = nullptr;

    /// Makes the widgets as children of `window`, in the state of a window that has just opened, and gives
    /// the window the size that it opens with.
    void Build(QWidget& window);

    /// Moves the widgets to their places in a window of this outer size.
    void Place(OuterSize outer) const;

private:
    void BuildPlotList(QWidget& window);
    void BuildDeviceGroup(QWidget& window);
    void BuildSignalGroup(QWidget& window);
    void BuildGraphGroup(QWidget& window);
    void BuildPlaybackGroup(QWidget& window);
    void BuildCommands(QWidget& window);
    void BuildFoot(QWidget& window);
    void NameForAssistance() const;
    void OrderTabs() const;
    [[nodiscard]] WindowPlaces DesignedPlaces() const;
    void DesignGroups(WindowPlaces& at) const;
    void DesignPlaybackRow(WindowPlaces& at) const;
    void PlaceGraphHint() const;
};

} // namespace tracelet
