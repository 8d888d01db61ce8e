#include "core/base/NumberText.h"
#include "core/settings/BoxRules.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/Handler.h"
#include "window/main/frmMain.h"
#include "window/settings/DialogParts.h"
#include "window/settings/frmSetting.h"
#include "window/widgets/PutSwitch.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

// Code whose reading back tells that the board has what was asked for.
constexpr std::int32_t ProbeCode = 2;

QString GeneralText(double value) {
    return QString::fromStdString(NumberText(value));
}

} // namespace

QWidget* frmSetting::BuildFastPage() {
    BuildAnalogDevice(0, u"Select Device"_s);
    BuildChannelSetting(0, u"Channel Setting"_s);
    BuildFastSetting();
    BuildTrigger();
    cmdFAIOK = Named<QPushButton>(u"cmdFAIOK"_s, u"&OK"_s);

    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    grid->addWidget(FrameAIDevice[0], 0, 0);
    grid->addWidget(SoftSetting[0], 1, 0);
    grid->addWidget(NonSoftSetting, 0, 1, 2, 1);
    grid->addWidget(FrameFAITrigger, 2, 0, 1, 2);
    grid->addWidget(cmdFAIOK, 4, 1, Qt::AlignRight);
    grid->setRowStretch(3, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    return page;
}

void frmSetting::BuildFastSetting() {
    NonSoftSetting = Named<QGroupBox>(u"NonSoftSetting"_s, u"FAI Setting"_s);
    txtCount = NumberBox(u"txtCount"_s, QString::fromStdString(GroupedText(20000)));
    txtSampleRate = NumberBox(u"txtSampleRate"_s, QString::fromStdString(GroupedText(1000)));
    cmbDataReturnType = Named<QComboBox>(u"cmbDataReturnType"_s);
    chkCylic = Named<QCheckBox>(u"chkCylic"_s, u"Cyclic"_s);
    cmbPacerSource = Named<QComboBox>(u"cmbPacerSource"_s);

    auto* grid = FrameGrid(NonSoftSetting, WidestCaption);
    LabelCount = AddRow(grid, u"LabelCount"_s, u"Data Count"_s, txtCount);
    LabelSampleRate = AddRow(grid, u"LabelSampleRate"_s, u"Sample Rate"_s, txtSampleRate);
    LabelHz = AddUnit(grid, u"LabelHz"_s, u"Hz"_s);
    LabelDataReturnType = AddRow(grid, u"LabelDataReturnType"_s, u"Data Type"_s, cmbDataReturnType);
    grid->addWidget(chkCylic, grid->rowCount(), FieldColumn, Qt::AlignLeft);
    LabelPacerSource = AddRow(grid, u"LabelPacerSource"_s, u"Pacer Source"_s, cmbPacerSource);
    grid->setRowStretch(grid->rowCount(), 1);
}

void frmSetting::BuildTrigger() {
    FrameFAITrigger = Named<QGroupBox>(u"FrameFAITrigger"_s, u"Trigger Setting"_s);
    auto* columns = new QHBoxLayout(FrameFAITrigger);
    auto* lists = FrameGrid(nullptr, WidestCaption);
    auto* levels = FrameGrid(nullptr, WidestCaption);
    BuildTriggerLists(lists);
    BuildTriggerLevels(levels);
    // The halves stand under the two frames above.
    const QMargins margins = columns->contentsMargins();
    columns->setSpacing(0);
    columns->addLayout(lists, 1);
    columns->addSpacing(margins.left() + margins.right() +
                        style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing));
    columns->addLayout(levels, 1);
}

void frmSetting::BuildTriggerLists(QGridLayout* grid) {
    cmbTriggerMode = Named<QComboBox>(u"cmbTriggerMode"_s);
    cmbTriggerEdge = Named<QComboBox>(u"cmbTriggerEdge"_s);
    cmbTriggerSource = Named<QComboBox>(u"cmbTriggerSource"_s);
    LabelTriggerMode = AddRow(grid, u"LabelTriggerMode"_s, u"Trigger Mode"_s, cmbTriggerMode);
    LabelTriggerEdge = AddRow(grid, u"LabelTriggerEdge"_s, u"Trigger Edge"_s, cmbTriggerEdge);
    LabelTriggerSource = AddRow(grid, u"LabelTriggerSource"_s, u"Trigger Source"_s, cmbTriggerSource);
}

void frmSetting::BuildTriggerLevels(QGridLayout* grid) {
    txtTriggerVoltage = NumberBox(u"txtTriggerVoltage"_s);
    txtTriggerDelayTime = NumberBox(u"txtTriggerDelayTime"_s);
    txtTriggerAfterTimeinAboveMode = NumberBox(u"txtTriggerAfterTimeinAboveMode"_s);
    LabelTriggerVoltage = AddRow(grid, u"LabelTriggerVoltage"_s, u"Trig Voltage"_s, txtTriggerVoltage);
    LabelVolt = AddUnit(grid, u"LabelVolt"_s, u"v"_s);
    // The captions of the two times are what users of the system know them by.
    LabelAfterTime = AddRow(grid, u"LabelAfterTime"_s, u"AfterTime"_s, txtTriggerDelayTime);
    LabelAfterTimeUnit = AddUnit(grid, u"LabelAfterTimeUnit"_s, u"ms"_s);
    LabelBeforeTime = AddRow(grid, u"LabelBeforeTime"_s, u"BeforeTime"_s, txtTriggerAfterTimeinAboveMode);
    LabelBeforeTimeUnit = AddUnit(grid, u"LabelBeforeTimeUnit"_s, u"ms"_s);
}

void frmSetting::EnableFAISetting(bool enable) {
    EnableAll({NonSoftSetting, LabelCount, txtCount, LabelSampleRate, txtSampleRate, LabelHz,
               LabelDataReturnType, cmbDataReturnType, chkCylic, LabelPacerSource, cmbPacerSource},
              enable);
}

void frmSetting::EnableFAITriggerControls(bool enable) {
    EnableAll({FrameFAITrigger, LabelTriggerMode, cmbTriggerMode, LabelAfterTime, txtTriggerDelayTime,
               LabelAfterTimeUnit, LabelTriggerEdge, cmbTriggerEdge, LabelBeforeTime,
               txtTriggerAfterTimeinAboveMode, LabelBeforeTimeUnit, LabelTriggerSource, cmbTriggerSource,
               LabelTriggerVoltage, txtTriggerVoltage, LabelVolt},
              enable);
}

void frmSetting::GetFAIProperties() {
    txtCount->setText(QString::fromStdString(GroupedText(main.nAISampleCnt)));
    txtSampleRate->setText(GeneralText(ZelAI1.SampleRate()));
    Refill(cmbDataReturnType, {u"Digital "_s, u"Analog "_s});
    Show(cmbDataReturnType, ZelAI1.DataType() == RawCounts ? 0 : 1);
    Show(chkCylic, main.bFAICyclic);
    txtCount->setEnabled(!main.bFAICyclic);
    ProbePacer();
    ProbeTrigger();
}

// Only a board with an external pacer takes the probe code; writing back what was read restores it.
void frmSetting::ProbePacer() {
    const std::int32_t remembered = ZelAI1.PacerSource();
    ZelAI1.SetPacerSource(ProbeCode);
    const bool hasExternal = ZelAI1.PacerSource() == ProbeCode;
    EnableAll({cmbPacerSource, LabelPacerSource}, hasExternal);
    Refill(cmbPacerSource, {});
    if (!hasExternal)
        return;
    ZelAI1.SetPacerSource(remembered);
    Refill(cmbPacerSource, {u"Internal"_s, u"External clock 0"_s});
    if (ZelAI1.PacerSource() == ExternalPacerProbe)
        ZelAI1.SetPacerSource(ExternalPacer);
    Show(cmbPacerSource, ZelAI1.PacerSource());
}

void frmSetting::ProbeTrigger() {
    const std::int32_t remembered = ZelAI1.TriggerMode();
    ZelAI1.SetTriggerMode(ProbeCode);
    const bool hasTrigger = ZelAI1.TriggerMode() == ProbeCode;
    if (hasTrigger)
        ZelAI1.SetTriggerMode(remembered);
    EnableFAITriggerControls(hasTrigger);
    if (!hasTrigger)
        return;
    Refill(cmbTriggerMode, {u"None"_s, u"Post"_s, u"Delay"_s, u"About"_s});
    Refill(cmbTriggerEdge, {u"Rising edge"_s, u"Falling edge"_s});
    Refill(cmbTriggerSource, {u"Digital"_s, u"AI or AI0"_s, u"AI1"_s, u"AI2"_s, u"AI3"_s});
    Show(cmbTriggerMode, ZelAI1.TriggerMode());
    Show(cmbTriggerEdge, ZelAI1.TriggerEdge());
    Show(cmbTriggerSource, ZelAI1.TriggerSource());
    txtTriggerDelayTime->setText(GeneralText(ZelAI1.TriggerDelayTime()));
    txtTriggerAfterTimeinAboveMode->setText(GeneralText(ZelAI1.TriggerAfterTime()));
    txtTriggerVoltage->setText(GeneralText(ZelAI1.TriggerVoltage()));
}

void frmSetting::chkCylic_Click() {
    if (!chkCylic->isChecked())
        txtCount->setEnabled(true);
}

bool frmSetting::SetFAIProperties() {
    if (ZelAI1.DeviceNumber() < 0)
        return true;
    ZelAI1.SetScanStartChannel(LongIn(txtAIScanStart[0]));
    ZelAI1.SetScanChannelCount(LongIn(txtAIScanNumber[0]));
    ZelAI1.SetDataType(cmbDataReturnType->currentIndex() + 1);
    main.nAISampleCnt = LongIn(txtCount);
    main.bFAICyclic = chkCylic->isChecked();
    ZelAI1.SetPacerSource(cmbPacerSource->currentIndex());
    ZelAI1.SetSampleRate(DoubleIn(txtSampleRate));
    txtSampleRate->setText(GeneralText(ZelAI1.SampleRate()));
    if (!FrameFAITrigger->isEnabled())
        return true;
    ZelAI1.SetTriggerMode(cmbTriggerMode->currentIndex());
    ZelAI1.SetTriggerEdge(cmbTriggerEdge->currentIndex());
    ZelAI1.SetTriggerSource(cmbTriggerSource->currentIndex());
    ZelAI1.SetTriggerDelayTime(DoubleIn(txtTriggerDelayTime));
    ZelAI1.SetTriggerAfterTime(DoubleIn(txtTriggerAfterTimeinAboveMode));
    ZelAI1.SetTriggerVoltage(DoubleIn(txtTriggerVoltage));
    return true;
}

void frmSetting::cmdFAIOK_Click() {
    Handler(this, u"cmdFAIOK"_s, [this] {
        if (!SetFAIProperties()) {
            MsgBox(this, {}, u"cmdFAIOK"_s);
            return;
        }
        main.ZelGraph1->SetXAxisMin(0.0);
        main.ZelGraph1->SetXAxisMax(10.0);
        main.ShowDIVValue(1.0);
        PutSwitch(main.ZelButton1, true);
        main.bAIEnabled = true;
        main.EnableControls(frmMain::When::Switched);
        if (main.bFAICyclic)
            main.nAISampleCnt = CyclicSampleCount(ZelAI1.SampleRate());
        main.M1.SoftMode = false;
        SwitchDigitalOff();
        accept();
    });
}

} // namespace tracelet
