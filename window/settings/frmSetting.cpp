#include "window/settings/frmSetting.h"

#include "core/settings/BoxRules.h"
#include "window/aids/EnterPresses.h"
#include "window/ground/Handler.h"
#include "window/ground/LeaveCheck.h"
#include "window/main/frmMain.h"
#include "window/settings/DialogParts.h"
#include "window/settings/dlgGainRange.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr int FastPage = 0;
constexpr int SoftPage = 1;
constexpr int LongestNameWidth = 24; // characters of a device name that fit into one line

QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString OnPage(const char* name, int page) {
    return u"%1_%2"_s.arg(QLatin1String(name)).arg(page);
}

} // namespace

const QString frmSetting::WidestCaption = u"DataValueRange"_s;

frmSetting::frmSetting(frmMain& mainWindow)
    : QDialog(&mainWindow), main(mainWindow), ZelAI1(*mainWindow.ZelAI1), ZelDIO1(*mainWindow.ZelDIO1) {
    setObjectName(u"frmSetting"_s);
    setWindowTitle(u"Tracelet device setting"_s);
    BuildPages();
    ConnectWidgets();
    WatchBoxes();
    SetUpTips();

    txtAITimeInterval->setText(QString::number(main.nTimerInterval));
    QuietHandler([this] { GetAIPropertiesEx(); });
    QuietHandler([this] { GetDIProperties(); });
    SSTab1->setCurrentIndex(main.M1.SoftMode ? SoftPage : FastPage);
}

void frmSetting::BuildPages() {
    SSTab1 = Named<QTabWidget>(u"SSTab1"_s);
    SSTab1->addTab(BuildFastPage(), u"Fast AI"_s);
    SSTab1->addTab(BuildSoftPage(), u"SoftAI and/or DI"_s);
    SSTab1->tabBar()->setFocusPolicy(Qt::StrongFocus); // a click on a tab leaves the box that has the focus
    SSTab1->tabBar()->setAccessibleName(u"Page"_s);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(SSTab1);
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    for (QPushButton* button : findChildren<QPushButton*>())
        EnterPresses(button);
}

void frmSetting::BuildAnalogDevice(int page, const QString& caption) {
    FrameAIDevice[page] = Named<QGroupBox>(OnPage("FrameAIDevice", page), caption);
    LabelAIDeviceNumber[page] = FactLabel(OnPage("LabelAIDeviceNumber", page));
    labAIDeviceName[page] = FactLabel(OnPage("labAIDeviceName", page));
    labAIDeviceName[page]->setMinimumWidth(fontMetrics().averageCharWidth() * LongestNameWidth);
    labAIResolution[page] = FactLabel(OnPage("labAIResolution", page));
    cmdAISelectDevice[page] = Named<QPushButton>(OnPage("cmdAISelectDevice", page), u"Select Device"_s);

    auto* grid = FrameGrid(FrameAIDevice[page], WidestCaption);
    AddRow(grid, OnPage("LabelAIDeviceNumberCaption", page), u"Device Number"_s, LabelAIDeviceNumber[page]);
    AddRow(grid, OnPage("labAIDeviceNameCaption", page), u"Device Name"_s, labAIDeviceName[page]);
    AddRow(grid, OnPage("labAIResolutionCaption", page), u"Resolution"_s, labAIResolution[page]);
    grid->addWidget(cmdAISelectDevice[page], grid->rowCount(), FieldColumn);
}

void frmSetting::BuildChannelSetting(int page, const QString& caption) {
    SoftSetting[page] = Named<QGroupBox>(OnPage("SoftSetting", page), caption);
    txtAIScanStart[page] = NumberBox(OnPage("txtAIScanStart", page), u"0"_s);
    txtAIScanNumber[page] = NumberBox(OnPage("txtAIScanNumber", page), u"1"_s);
    cmdRange[page] = Named<QPushButton>(OnPage("cmdRange", page), u"Set &Range"_s);

    auto* grid = FrameGrid(SoftSetting[page], WidestCaption);
    LabelAIScanStart[page] =
        AddRow(grid, OnPage("LabelAIScanStart", page), u"ChanStart"_s, txtAIScanStart[page]);
    LabelAIScanNumber[page] =
        AddRow(grid, OnPage("LabelAIScanNumber", page), u"ChanCount"_s, txtAIScanNumber[page]);
    LabelRange[page] = AddRow(grid, OnPage("LabelRange", page), u"DataValueRange"_s, cmdRange[page]);
    cmdRange[page]->setAccessibleName({}); // its own caption says more
}

void frmSetting::WatchBoxes() {
    for (const int page : {FastPage, SoftPage}) {
        Watch(txtAIScanStart[page], BoxRules::ScanStart);
        Watch(txtAIScanNumber[page], BoxRules::ScanNumber);
    }
    Watch(txtCount, BoxRules::Count);
    Watch(txtSampleRate, BoxRules::SampleRate);
    Watch(txtTriggerVoltage, BoxRules::TriggerVoltage);
    Watch(txtTriggerDelayTime, BoxRules::TriggerDelayTime);
    Watch(txtTriggerAfterTimeinAboveMode, BoxRules::TriggerAfterTime);
    Watch(txtAITimeInterval, BoxRules::TimeInterval);
}

void frmSetting::Watch(QLineEdit* box, const BoxRule& rule) {
    new LeaveCheck(box, [this, box, &rule] {
        const auto refusal = Refusal(rule, box->text().toStdString());
        if (!refusal)
            return true;
        MsgBox(this, Text(*refusal));
        box->setText(Text(rule.putBack));
        return false;
    });
}

void frmSetting::ConnectWidgets() {
    for (const int page : {FastPage, SoftPage}) {
        connect(cmdAISelectDevice[page], &QPushButton::clicked, this,
                [this, page] { cmdAISelectDevice_Click(page); });
        connect(cmdRange[page], &QPushButton::clicked, this, [this, page] { cmdRange_Click(page); });
    }
    connect(chkCylic, &QCheckBox::toggled, this, &frmSetting::chkCylic_Click);
    connect(cmdFAIOK, &QPushButton::clicked, this, &frmSetting::cmdFAIOK_Click);
    connect(DISelectDevice, &QPushButton::clicked, this, &frmSetting::DISelectDevice_Click);
    // What code shows by Show is told to no handler.
    OnChosen(ComboDIPort, [this] { QuietHandler([this] { ComboDIPort_Click(); }); });
    for (int line = 0; line < Lines; ++line)
        connect(CheckDIChannel[line], &QCheckBox::toggled, this,
                [this, line] { QuietHandler([&] { CheckDIChannel_Click(line); }); });
    connect(cmdDIOK, &QPushButton::clicked, this, &frmSetting::cmdDIOK_Click);
}

void frmSetting::GetAIPropertiesEx() {
    if (ZelAI1.DeviceNumber() < 0) {
        for (const int page : {FastPage, SoftPage}) {
            LabelAIDeviceNumber[page]->setText(u"-1"_s);
            labAIDeviceName[page]->setText(u"No Device"_s);
            EnableAIChannelSetting(page, false);
        }
        EnableFAISetting(false);
        EnableFAITriggerControls(false);
        return;
    }
    EnableAIChannelSetting(FastPage, true);
    EnableAIChannelSetting(SoftPage, true);
    EnableFAISetting(true);
    for (const int page : {FastPage, SoftPage}) {
        LabelAIDeviceNumber[page]->setText(QString::number(ZelAI1.DeviceNumber()));
        labAIDeviceName[page]->setText(ZelAI1.DeviceName());
        labAIResolution[page]->setText(QString::number(ZelAI1.Resolution()));
        txtAIScanStart[page]->setText(QString::number(ZelAI1.ScanStartChannel()));
        txtAIScanNumber[page]->setText(QString::number(ZelAI1.ScanChannelCount()));
    }
    GetFAIProperties();
}

void frmSetting::EnableAIChannelSetting(int index, bool enable) {
    EnableAll({SoftSetting[index], LabelAIScanStart[index], txtAIScanStart[index], LabelAIScanNumber[index],
               txtAIScanNumber[index], cmdRange[index]},
              enable);
}

void frmSetting::ResetPlotSettings(bool isAI) {
    main.InitPlotAttributes(isAI);
}

void frmSetting::cmdAISelectDevice_Click(int page) {
    Handler(this, u"cmdAISelectDevice"_s, [&] {
        ZelAI1.SelectDevice(this);
        main.SizeThermoTables();
        ResetPlotSettings(true);
        main.nAISampleCnt = 4096;
        main.bFAICyclic = true;
        if (labAIDeviceName[page]->text() != ZelAI1.DeviceName() ||
            LabelAIDeviceNumber[page]->text() != QString::number(ZelAI1.DeviceNumber()))
            GetAIPropertiesEx();
    });
}

void frmSetting::cmdRange_Click(int page) {
    Handler(this, u"cmdRange"_s, [&] {
        RangeSourcePage = static_cast<std::int16_t>(page);
        dlgGainRange dialog(*this, main);
        dialog.exec();
    });
}

} // namespace tracelet
