#pragma once

// The device settings. It holds none of its own: it shows those of the device controls and of the main window
// and writes them back. Its procedures, by subject:
//
// clang-format off
//   settings/frmSetting.cpp   opening, the analog device and channels of both pages
//   settings/FastPage.cpp     page "Fast AI": GetFAIProperties, SetFAIProperties, chkCylic_Click, cmdFAIOK_Click
//   settings/SettingTips.cpp  what the controls tell of themselves
//   settings/SoftPage.cpp     page "SoftAI and/or DI": the digital half, cmdDIOK_Click
// clang-format on
//
// A widget that stands on both pages is a pair, 0 on "Fast AI" and 1 on "SoftAI and/or DI"; its object names
// end in "_0" and "_1".

#include <QDialog>

#include <array>
#include <cstdint>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;

namespace tracelet {

class Tips;
class ZelAI;
class ZelDIO;
class frmMain;
struct BoxRule;

class frmSetting : public QDialog {
    Q_OBJECT

public:
    static constexpr int Lines = 8;     ///< of a digital port
    static const QString WidestCaption; ///< of a field

    explicit frmSetting(frmMain& mainWindow);

    template <typename Widget>
    using Pair = std::array<Widget*, 2>;

    QTabWidget* SSTab1 = nullptr;

    // ── Analog device and channels, both pages ───────────────────────────────────────────────────────
    Pair<QGroupBox> FrameAIDevice{};
    Pair<QPushButton> cmdAISelectDevice{};
    Pair<QLabel> LabelAIDeviceNumber{};
    Pair<QLabel> labAIDeviceName{};
    Pair<QLabel> labAIResolution{};
    Pair<QGroupBox> SoftSetting{};
    Pair<QLabel> LabelAIScanStart{};
    Pair<QLineEdit> txtAIScanStart{};
    Pair<QLabel> LabelAIScanNumber{};
    Pair<QLineEdit> txtAIScanNumber{};
    Pair<QLabel> LabelRange{};
    Pair<QPushButton> cmdRange{};

    // ── "Fast AI" ────────────────────────────────────────────────────────────────────────────────────
    QGroupBox* NonSoftSetting = nullptr;
    QLabel* LabelCount = nullptr;
    QLineEdit* txtCount = nullptr;
    QLabel* LabelSampleRate = nullptr;
    QLineEdit* txtSampleRate = nullptr;
    QLabel* LabelHz = nullptr;
    QLabel* LabelDataReturnType = nullptr;
    QComboBox* cmbDataReturnType = nullptr;
    QCheckBox* chkCylic = nullptr;
    QLabel* LabelPacerSource = nullptr;
    QComboBox* cmbPacerSource = nullptr;

    QGroupBox* FrameFAITrigger = nullptr;
    QLabel* LabelTriggerMode = nullptr;
    QComboBox* cmbTriggerMode = nullptr;
    QLabel* LabelTriggerEdge = nullptr;
    QComboBox* cmbTriggerEdge = nullptr;
    QLabel* LabelTriggerSource = nullptr;
    QComboBox* cmbTriggerSource = nullptr;
    QLabel* LabelTriggerVoltage = nullptr;
    QLineEdit* txtTriggerVoltage = nullptr;
    QLabel* LabelVolt = nullptr;
    QLabel* LabelAfterTime = nullptr;
    QLineEdit* txtTriggerDelayTime = nullptr;
    QLabel* LabelAfterTimeUnit = nullptr;
    QLabel* LabelBeforeTime = nullptr;
    QLineEdit* txtTriggerAfterTimeinAboveMode = nullptr;
    QLabel* LabelBeforeTimeUnit = nullptr;

    QPushButton* cmdFAIOK = nullptr;

    // ── "SoftAI and/or DI" ───────────────────────────────────────────────────────────────────────────
    QGroupBox* FrameDIDevice = nullptr;
    QPushButton* DISelectDevice = nullptr;
    QLabel* LabelDIDevNum = nullptr;
    QLabel* LabelDIDevName = nullptr;
    QGroupBox* FrameDIScan = nullptr;
    QLabel* LabelDIPort = nullptr;
    QComboBox* ComboDIPort = nullptr;
    std::array<QCheckBox*, Lines> CheckDIChannel{};
    std::array<QLabel*, Lines> LabelDIChannel{};
    QLineEdit* txtAITimeInterval = nullptr; ///< polling period, milliseconds
    QPushButton* cmdDIOK = nullptr;

    std::int16_t RangeSourcePage = 0; ///< page whose "Set Range" opened the range dialog last

    // ── Procedures ───────────────────────────────────────────────────────────────────────────────────
    void GetAIPropertiesEx();
    void EnableAIChannelSetting(int index, bool enable);
    void EnableFAISetting(bool enable);
    void EnableFAITriggerControls(bool enable);
    void ResetPlotSettings(bool isAI);
    /// Writes the page "Fast AI" into the analog control; true when it finished. A refused property raises.
    [[nodiscard]] bool SetFAIProperties();
    void GetDIProperties();
    void EnableDIControls(bool enable);
    void SetDIProperties();

    void cmdAISelectDevice_Click(int page);
    void cmdRange_Click(int page);
    void chkCylic_Click();
    void cmdFAIOK_Click();
    void DISelectDevice_Click();
    void ComboDIPort_Click();
    void CheckDIChannel_Click(int line);
    void cmdDIOK_Click();

private:
    void BuildPages();
    [[nodiscard]] QWidget* BuildFastPage();
    [[nodiscard]] QWidget* BuildSoftPage();
    void BuildAnalogDevice(int page, const QString& caption);
    void BuildChannelSetting(int page, const QString& caption);
    void BuildFastSetting();
    void BuildTrigger();
    void BuildTriggerLists(QGridLayout* grid);
    void BuildTriggerLevels(QGridLayout* grid);
    void BuildDigitalDevice();
    void BuildPorts();
    void WatchBoxes();
    void Watch(QLineEdit* box, const BoxRule& rule);
    void ConnectWidgets();

    void SetUpTips();
    void AddAnalogTips(Tips& tips, int page);
    void AddFastTips(Tips& tips);
    void AddTriggerTips(Tips& tips);
    void AddDigitalTips(Tips& tips);
    /// Why a control of analog input is disabled: there is no board, or else `lack`.
    [[nodiscard]] QString WhatBoardLacks(const QString& lack) const;

    void GetFAIProperties();
    void ProbePacer();
    void ProbeTrigger();
    void SwitchDigitalOff();

    frmMain& main;
    ZelAI& ZelAI1;
    ZelDIO& ZelDIO1;
};

} // namespace tracelet
