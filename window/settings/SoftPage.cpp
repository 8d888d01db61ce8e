#include "core/settings/PortBlock.h"
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

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

std::uint8_t BitOf(int line) {
    return static_cast<std::uint8_t>(1u << line);
}

} // namespace

QWidget* frmSetting::BuildSoftPage() {
    BuildAnalogDevice(1, u"AI Select Device"_s);
    BuildChannelSetting(1, u"AI Channel Setting"_s);
    BuildDigitalDevice();
    BuildPorts();
    txtAITimeInterval = NumberBox(u"txtAITimeInterval"_s, u"100"_s);
    cmdDIOK = Named<QPushButton>(u"cmdDIOK"_s, u"OK"_s);

    const QMargins margins = SoftSetting[1]->layout()->contentsMargins();
    auto* interval = FrameGrid(nullptr, WidestCaption);
    interval->setContentsMargins(margins.left(), 0, margins.right(), 0);
    AddRow(interval, u"LabelAITimeInterval"_s, u"Interval"_s, txtAITimeInterval);
    AddUnit(interval, u"LabelAITimeIntervalUnit"_s, u"ms"_s);

    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    grid->addWidget(FrameAIDevice[1], 0, 0);
    grid->addWidget(SoftSetting[1], 1, 0);
    grid->addWidget(FrameDIDevice, 0, 1);
    grid->addWidget(FrameDIScan, 1, 1);
    grid->addLayout(interval, 2, 0);
    grid->addWidget(cmdDIOK, 4, 1, Qt::AlignRight);
    for (const int row : {0, 1}) // as high as the other page
        grid->setRowStretch(row, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    return page;
}

void frmSetting::BuildDigitalDevice() {
    FrameDIDevice = Named<QGroupBox>(u"FrameDIDevice"_s, u"DI Select Device"_s);
    LabelDIDevNum = FactLabel(u"LabelDIDevNum"_s);
    LabelDIDevName = FactLabel(u"LabelDIDevName"_s);
    LabelDIDevName->setMinimumWidth(labAIDeviceName[1]->minimumWidth());
    DISelectDevice = Named<QPushButton>(u"DISelectDevice"_s, u"Select Device"_s);

    auto* grid = FrameGrid(FrameDIDevice, WidestCaption);
    AddRow(grid, u"LabelDIDevNumCaption"_s, u"Device Number"_s, LabelDIDevNum);
    AddRow(grid, u"LabelDIDevNameCaption"_s, u"Device Name"_s, LabelDIDevName);
    grid->setRowStretch(grid->rowCount(), 1);
    grid->addWidget(DISelectDevice, grid->rowCount(), FieldColumn);
}

void frmSetting::BuildPorts() {
    FrameDIScan = Named<QGroupBox>(u"FrameDIScan"_s, u"DI Port Setting"_s);
    ComboDIPort = Named<QComboBox>(u"ComboDIPort"_s);
    auto* grid = FrameGrid(FrameDIScan, WidestCaption);
    LabelDIPort = AddRow(grid, u"LabelDIPort"_s, u"Port"_s, ComboDIPort);

    auto* lines = new QGridLayout;
    for (int line = 0; line < Lines; ++line) {
        const QString number = QString::number(line);
        CheckDIChannel[line] = Named<QCheckBox>(u"CheckDIChannel_"_s + number);
        CheckDIChannel[line]->setAccessibleName(u"Line "_s + number);
        LabelDIChannel[line] = Named<QLabel>(u"LabelDIChannel_"_s + number, number);
        lines->addWidget(LabelDIChannel[line], 0, line, Qt::AlignHCenter);
        lines->addWidget(CheckDIChannel[line], 1, line, Qt::AlignHCenter);
    }
    grid->addLayout(lines, grid->rowCount(), CaptionColumn, 1, UnitColumn);
    grid->setRowStretch(grid->rowCount(), 1);
}

void frmSetting::EnableDIControls(bool enable) {
    EnableAll({FrameDIScan, LabelDIPort, ComboDIPort}, enable);
    for (int line = 0; line < Lines; ++line)
        EnableAll({CheckDIChannel[line], LabelDIChannel[line]}, enable);
}

void frmSetting::GetDIProperties() {
    if (ZelDIO1.DeviceNumber() < 0) {
        LabelDIDevNum->setText(u"-1"_s);
        LabelDIDevName->setText(u"No Device"_s);
        EnableDIControls(false);
        return;
    }
    EnableAll({FrameDIScan, txtAITimeInterval}, true);
    LabelDIDevNum->setText(QString::number(ZelDIO1.DeviceNumber()));
    LabelDIDevName->setText(ZelDIO1.DeviceName());
    QStringList ports;
    for (std::int32_t port = 0; port < ZelDIO1.MaxPortCount(); ++port)
        ports.append(QString::number(port));
    Refill(ComboDIPort, ports);
    if (ports.isEmpty()) {
        EnableDIControls(false);
        return;
    }
    Show(ComboDIPort, 0);
    ComboDIPort_Click();
}

void frmSetting::ComboDIPort_Click() {
    const std::uint8_t mask = main.M1.DIPortMask[ComboDIPort->currentIndex()];
    for (int line = 0; line < Lines; ++line)
        Show(CheckDIChannel[line], (mask & BitOf(line)) > 0);
}

void frmSetting::CheckDIChannel_Click(int line) {
    std::uint8_t& mask = main.M1.DIPortMask[ComboDIPort->currentIndex()];
    const bool selected = CheckDIChannel[line]->isChecked();
    mask = static_cast<std::uint8_t>(selected ? mask | BitOf(line) : mask & ~BitOf(line));
}

void frmSetting::DISelectDevice_Click() {
    Handler(this, u"DISelectDevice"_s, [this] {
        ZelDIO1.SelectDevice(this);
        if (LabelDIDevName->text() == ZelDIO1.DeviceName() &&
            LabelDIDevNum->text() == QString::number(ZelDIO1.DeviceNumber()))
            return;
        const std::int32_t ports = ZelDIO1.MaxPortCount();
        const bool usable = ports >= 1 && ZelDIO1.DeviceNumber() >= 0;
        if (usable) {
            main.nDIMaxPortCount = ports;
            main.M1.DIPortMask.Resize(std::int64_t{ports} + 1);
        }
        EnableDIControls(usable);
        ResetPlotSettings(false);
        GetDIProperties();
    });
}

void frmSetting::SwitchDigitalOff() {
    PutSwitch(main.ZelButton2, false);
    main.bDIEnabled = false;
    main.EnableControls(frmMain::When::Switched);
}

void frmSetting::SetDIProperties() {
    main.M1.DIValid = ZelDIO1.DeviceNumber() >= 0;
    if (!main.M1.DIValid)
        return;
    PortBlock block{main.nDIPortStart, main.nDIPortCount, main.nDIChanCount};
    const PortBlockOutcome outcome = DerivePortBlock(main.M1.DIPortMask, ZelDIO1.MaxPortCount(), block);
    main.nDIPortStart = block.start;
    main.nDIPortCount = block.count;
    main.nDIChanCount = block.lines;
    if (outcome == PortBlockOutcome::Empty)
        SwitchDigitalOff();
}

void frmSetting::cmdDIOK_Click() {
    Handler(this, u"cmdDIOK"_s, [this] {
        main.M1.SoftMode = true;
        SetDIProperties();
        main.M1.SoftAIValid = ZelAI1.DeviceNumber() >= 0;
        if (main.M1.SoftAIValid) {
            ZelAI1.SetScanStartChannel(LongIn(txtAIScanStart[1]));
            ZelAI1.SetScanChannelCount(LongIn(txtAIScanNumber[1]));
        }
        main.nTimerInterval = LongIn(txtAITimeInterval);
        accept();
    });
}

} // namespace tracelet
