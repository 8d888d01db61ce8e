// What the controls of the settings dialogs tell of themselves.

#include "window/aids/Tips.h"
#include "window/main/frmMain.h"
#include "window/settings/dlgGainRange.h"
#include "window/settings/frmSetting.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace tracelet {

void frmSetting::SetUpTips() {
    auto* tips = new Tips(this);
    tips->Add(SSTab1->tabBar(),
              u"Input that the board paces, or input that the program polls; the OK of a page "
              "chooses between them"_s);
    for (const int page : {0, 1})
        AddAnalogTips(*tips, page);
    AddFastTips(*tips);
    AddTriggerTips(*tips);
    AddDigitalTips(*tips);
}

QString frmSetting::WhatBoardLacks(const QString& lack) const {
    return ZelAI1.DeviceNumber() < 0 ? u"Select a device first"_s : lack;
}

void frmSetting::AddAnalogTips(Tips& tips, int page) {
    const auto why = [this] { return WhatBoardLacks({}); };
    tips.Add(cmdAISelectDevice[page], u"Choose the analog board"_s);
    tips.Add(txtAIScanStart[page], u"First channel, from 0"_s, why);
    tips.Add(txtAIScanNumber[page], u"Number of channels from the first on"_s, why);
    tips.Add(cmdRange[page], u"Range, wiring and thermocouple of each channel"_s, why);
}

void frmSetting::AddFastTips(Tips& tips) {
    const auto why = [this] {
        return WhatBoardLacks(u"Not while Cyclic is ticked: that goes on until Stop"_s);
    };
    tips.Add(txtCount, u"Samples of all channels together, 4096 or more, after which input ends"_s, why);
    tips.Add(txtSampleRate, u"Samples a second of all channels together; the board may round it"_s, why);
    tips.Add(cmbDataReturnType, u"Record raw counts (Digital) or volts and milliamperes (Analog)"_s, why);
    tips.Add(chkCylic, u"Go on until Stop"_s, why);
    tips.Add(cmbPacerSource, u"Clock of the samples"_s,
             [this] { return WhatBoardLacks(u"The board has no external pacer"_s); });
    tips.Add(cmdFAIOK, u"Use fast input, with these settings"_s);
}

void frmSetting::AddTriggerTips(Tips& tips) {
    const auto why = [this] { return WhatBoardLacks(u"The board has no hardware trigger"_s); };
    tips.Add(cmbTriggerMode,
             u"None: begin at once. Post: at the trigger. Delay: after it. About: before it"_s, why);
    tips.Add(cmbTriggerEdge, u"Direction in which the trigger passes its level"_s, why);
    tips.Add(cmbTriggerSource, u"Digital trigger input or analog channel"_s, why);
    tips.Add(txtTriggerVoltage, u"Level of an analog trigger"_s, why);
    tips.Add(txtTriggerDelayTime, u"Mode Delay: time from the trigger to the first sample"_s, why);
    tips.Add(txtTriggerAfterTimeinAboveMode, u"Mode About: time from the trigger to the last sample"_s, why);
}

void frmSetting::AddDigitalTips(Tips& tips) {
    const auto why = [this] {
        return ZelDIO1.DeviceNumber() < 0 ? u"Select a device first"_s : u"The board has no ports"_s;
    };
    tips.Add(DISelectDevice, u"Choose the digital board"_s);
    tips.Add(ComboDIPort, u"Port whose lines are shown below"_s, why);
    for (QCheckBox* line : CheckDIChannel)
        tips.Add(line, u"Show and record this line of the port"_s, why);
    tips.Add(txtAITimeInterval, u"Time between two scans, 1 to 65535"_s);
    tips.Add(cmdDIOK, u"Use polled input, with these settings"_s);
}

void dlgGainRange::SetUpTips() {
    auto* tips = new Tips(this);
    const QString noThermo = u"The board reads no thermocouples"_s;
    const QString notThermo = u"Choose Thermo for this channel first"_s;
    const QString notAI = u"Choose AI for this channel first"_s;
    const QString oneWiring = u"The board's inputs can be wired in one way only"_s;
    tips->Add(lstViewGain, u"Choose the channel to set"_s);
    tips->Add(OptAI, u"Measure a voltage or a current"_s, noThermo);
    tips->Add(OptThermo, u"Measure a temperature by a thermocouple"_s, noThermo);
    tips->Add(ComboScale, u"Scale of all temperatures"_s, notThermo);
    tips->Add(ComboTCType, u"Type of the thermocouple"_s, notThermo);
    tips->Add(ComboExpChan, u"Channel of the expansion board"_s, notThermo);
    tips->Add(ComboRange, u"Range of this channel"_s, notAI);
    tips->Add(optSingle, u"Measure against ground"_s, oneWiring);
    tips->Add(optDifferent, u"Measure between two inputs"_s, oneWiring);
    tips->Add(OKButton, u"Close; every choice holds already"_s);
}

} // namespace tracelet
