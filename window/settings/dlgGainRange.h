#pragma once

#include "core/settings/ThermoChoice.h"

#include <QDialog>

#include <vector>

class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QTreeWidget;

namespace tracelet {

class ZelAI;
class ZelThermo;
class frmMain;
struct ChannelFacts;

/// Input range, wiring and thermocouple of each channel. Every choice takes effect at once, for the channel
/// of the selected row; there is no cancel.
class dlgGainRange : public QDialog {
    Q_OBJECT

public:
    /// Shows channel 0. Raises when the board or the tables do not fit; the dialog is then not to be shown.
    dlgGainRange(QWidget& owner, frmMain& mainWindow);

    QTreeWidget* lstViewGain = nullptr; ///< one row a channel; columns as ChannelColumn
    QGroupBox* FrameAIorThermo = nullptr;
    QRadioButton* OptAI = nullptr;
    QRadioButton* OptThermo = nullptr;
    QFrame* FrameScale = nullptr; ///< within FrameAIorThermo
    QLabel* LabelScale = nullptr;
    QComboBox* ComboScale = nullptr;
    QGroupBox* FrameThermo = nullptr;
    QLabel* LabelTCType = nullptr;
    QComboBox* ComboTCType = nullptr;
    QLabel* LabelExpChan = nullptr;
    QComboBox* ComboExpChan = nullptr;
    QGroupBox* FrameAIRange = nullptr;
    QComboBox* ComboRange = nullptr;
    QGroupBox* FrameSignalConnection = nullptr;
    QRadioButton* optSingle = nullptr;
    QRadioButton* optDifferent = nullptr;
    QPushButton* OKButton = nullptr;

    void EnableThermoSetting(bool enable);
    void EnableSignalConnectionFrame(bool enable);
    void EnableAIThermoFrame(bool enable);
    /// Rewrites every row; both controls end up at the channel that was selected on the analog one.
    void RefreshGainTable();

    void lstViewGain_ItemClick(int row);
    void ComboRange_Click();
    void ComboTCType_Click();
    void ComboScale_Click();
    void ComboExpChan_Click();
    void OptAI_Click();
    void OptThermo_Click();
    void optSingle_Click();
    void optDifferent_Click();
    void OKButton_Click();

private:
    void Build();
    void BuildTable();
    [[nodiscard]] QGroupBox* BuildKind();
    [[nodiscard]] QGroupBox* BuildThermo();
    [[nodiscard]] QGroupBox* BuildRange();
    [[nodiscard]] QGroupBox* BuildConnection();
    void SetUpTips();
    void ConnectWidgets();

    void ShowFirstChannel();
    void FillLists();
    void ProbeThermocouples();
    void ProbeConnection();

    void SelectOnBoth(std::int32_t channel);
    void ShowChannel(std::int32_t channel);
    void ShowKind(std::int32_t channel);
    void ShowConnection(std::int32_t code);
    void SelectRangeOf(std::int32_t channel);
    void EnableRange(bool enable);
    [[nodiscard]] std::int32_t ConnectionOf(std::int32_t channel);
    [[nodiscard]] ChannelFacts FactsOf(std::int32_t channel);

    frmMain& main;
    ZelAI& ZelAI1;
    ZelThermo& ZelThermo1;
    ThermoTables tables;
};

} // namespace tracelet
