#pragma once

#include "core/base/Table.h"

#include <QDialog>

#include <cstdint>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace tracelet {

class RangeBox;
class frmMain;

/// Colours and line styles of the plots, and the ranges of the X and the voltage axis. Works on a copy; "OK"
/// writes the attribute tables of the window's mode and sets the axes; opened while an acquisition or a
/// playback runs, only an axis whose widgets were used. The owner rebuilds its plots afterwards.
class frmGraphSet : public QDialog {
    Q_OBJECT

public:
    explicit frmGraphSet(frmMain& owner);

private:
    /// One axis and its widgets.
    struct AxisGroup {
        QString fault; ///< message of a reversed range
        QGroupBox* frame = nullptr;
        QCheckBox* automatic = nullptr;
        RangeBox* minimum = nullptr;
        RangeBox* maximum = nullptr;
        bool applies = false; ///< "OK" sets the axis
    };

    [[nodiscard]] QGroupBox* BuildPlotGroup();
    [[nodiscard]] QGroupBox* BuildAxesGroup();
    void BuildAxis(AxisGroup& group, const QString& name, const QString& caption);
    void SetUpTips();
    void ConnectWidgets();

    void LoadPlots();
    void LoadAxes();
    void ApplyTime();
    void ApplyValues();
    [[nodiscard]] int SelectedPlot() const; ///< -1 when none is
    void LstPlots_Click();
    void CmbLineStyle_Click();
    void BtnColor_Click();
    void ChkXAutoS_Click();
    void ChkYAutoS_Click();
    /// Checks of a range box that loses the focus; False after a message.
    [[nodiscard]] bool MaximumLeft(const AxisGroup& group);
    [[nodiscard]] bool MinimumLeft(const AxisGroup& group);
    void BtnApply_Click();

    [[nodiscard]] bool IsRunning() const; ///< an acquisition or a playback runs
    void FillRange(const AxisGroup& group, double minimum, double maximum);
    void PaintColor(std::uint32_t color);
    void ApplyAxes();
    void StoreLiveAttributes();
    void StoreHistoryAttributes();

    frmMain& main;
    Table<std::uint32_t> PlotColors; ///< raw colours, by plot
    Table<std::int32_t> PlotLineStyles;

    QListWidget* lstPlots = nullptr;
    QPushButton* BtnColor = nullptr;
    QComboBox* CmbLineStyle = nullptr;
    AxisGroup x;
    AxisGroup y;
    QPushButton* BtnApply = nullptr;
    QPushButton* BtnCancel = nullptr;
};

} // namespace tracelet
