// Widgets of the graph settings dialog and what they run.

#include "window/aids/EnterPresses.h"
#include "window/aids/Tips.h"
#include "window/chart/ZelGraph.h"
#include "window/graph/RangeBox.h"
#include "window/graph/frmGraphSet.h"
#include "window/ground/Handler.h"
#include "window/ground/LeaveCheck.h"
#include "window/main/frmMain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

template <typename Widget>
Widget* Named(const QString& name, Widget* widget) {
    widget->setObjectName(name);
    return widget;
}

QLabel* Caption(const QString& name, const QString& text, QWidget* buddy) {
    auto* label = Named(name, new QLabel(text));
    label->setBuddy(buddy);
    return label;
}

} // namespace

frmGraphSet::frmGraphSet(frmMain& owner) : QDialog(&owner), main(owner) {
    setObjectName(u"frmGraphSet"_s);
    setWindowTitle(u"Graph Setting"_s);
    x.fault = u"Invalide X axis range"_s;
    y.fault = u"Invalide Y axis range"_s;

    auto* layout = new QGridLayout(this);
    layout->addWidget(BuildPlotGroup(), 0, 0);
    layout->addWidget(BuildAxesGroup(), 0, 1);
    auto* buttons = new QHBoxLayout;
    BtnApply = Named(u"BtnApply"_s, new QPushButton(u"OK"_s));
    BtnCancel = Named(u"BtnCancel"_s, new QPushButton(u"Cancel"_s));
    for (QPushButton* button : {BtnApply, BtnCancel})
        EnterPresses(button);
    buttons->addStretch();
    buttons->addWidget(BtnApply);
    buttons->addWidget(BtnCancel);
    layout->addLayout(buttons, 1, 0, 1, 2);

    SetUpTips();
    ConnectWidgets();
    LoadPlots();
    LoadAxes();
}

QGroupBox* frmGraphSet::BuildPlotGroup() {
    auto* frame = Named(u"framePlots"_s, new QGroupBox(u"Plots"_s));
    lstPlots = Named(u"lstPlots"_s, new QListWidget);
    lstPlots->setAccessibleName(u"Plots"_s);
    BtnColor = Named(u"BtnColor"_s, new QPushButton);
    BtnColor->setAccessibleName(u"Line color"_s);
    EnterPresses(BtnColor);
    CmbLineStyle = Named(u"CmbLineStyle"_s, new QComboBox);
    CmbLineStyle->addItems({u"Solid"_s, u"Dash"_s, u"Dot"_s, u"DashDot"_s, u"DashDotDot"_s});
    CmbLineStyle->setCurrentIndex(-1);

    auto* layout = new QGridLayout(frame);
    layout->addWidget(lstPlots, 0, 0, 1, 2);
    layout->addWidget(Caption(u"Label7"_s, u"LineColor"_s, BtnColor), 1, 0);
    layout->addWidget(BtnColor, 1, 1);
    layout->addWidget(Caption(u"Label6"_s, u"LineStyle"_s, CmbLineStyle), 2, 0);
    layout->addWidget(CmbLineStyle, 2, 1);
    layout->setColumnStretch(1, 1);
    return frame;
}

QGroupBox* frmGraphSet::BuildAxesGroup() {
    auto* frame = Named(u"frameAxes"_s, new QGroupBox(u"Axes"_s));
    BuildAxis(x, u"X"_s, u"Frame1"_s);
    BuildAxis(y, u"Y"_s, u"Frame2"_s);
    x.maximum->setToolTip(u"input the range you want"_s);
    x.maximum->setEnabled(true);
    auto* layout = new QVBoxLayout(frame);
    layout->addWidget(x.frame);
    layout->addWidget(y.frame);
    layout->addStretch();
    return frame;
}

void frmGraphSet::BuildAxis(AxisGroup& group, const QString& axisName, const QString& frameName) {
    group.frame = Named(frameName, new QGroupBox(axisName));
    group.automatic = Named(u"chk%1AutoS"_s.arg(axisName), new QCheckBox(u"AutoScale"_s));
    group.automatic->setChecked(true);
    group.minimum = Named(u"txt%1Min"_s.arg(axisName), new RangeBox);
    group.maximum = Named(u"txt%1Max"_s.arg(axisName), new RangeBox);
    for (RangeBox* box : {group.minimum, group.maximum}) {
        box->setEnabled(false);
        box->setMinimumWidth(box->fontMetrics().horizontalAdvance(u"-0.000000000000000000"_s));
    }
    const bool isX = axisName == u"X"_s;

    auto* layout = new QGridLayout(group.frame);
    layout->addWidget(group.automatic, 0, 0, 1, 2, Qt::AlignLeft);
    layout->addWidget(Caption(isX ? u"Label4"_s : u"LabelYMin"_s, u"Min:"_s, group.minimum), 1, 0);
    layout->addWidget(group.minimum, 1, 1);
    layout->addWidget(Caption(isX ? u"Label5"_s : u"LabelYMax"_s, u"Max:"_s, group.maximum), 2, 0);
    layout->addWidget(group.maximum, 2, 1);
}

void frmGraphSet::SetUpTips() {
    auto* tips = new Tips(this);
    tips->Add(lstPlots, u"Choose the plot to set"_s);
    tips->Add(BtnColor, u"Choose the colour of the plot"_s);
    tips->Add(CmbLineStyle, u"Line style of the plot"_s);
    for (const AxisGroup* group : {&x, &y}) {
        tips->Add(group->automatic, u"Let the axis follow what is measured"_s);
        tips->Add(group->minimum, u"Lower end of the axis"_s, [group] {
            return group->automatic->isChecked()
                       ? u"Not while AutoScale is ticked"_s
                       : u"Time begins at 0 here while a session or playback runs"_s;
        });
        tips->Add(group->maximum, u"Upper end of the axis"_s, u"Not while AutoScale is ticked"_s);
    }
    tips->Add(BtnApply, u"Set plots and axes"_s);
    tips->Add(BtnCancel, u"Leave everything as it is"_s);
}

void frmGraphSet::ConnectWidgets() {
    connect(lstPlots, &QListWidget::itemSelectionChanged, this,
            [this] { QuietHandler([&] { LstPlots_Click(); }); });
    // The entry that is selected already can be chosen too: a plot's code may have no entry.
    for (auto chosen : {&QComboBox::currentIndexChanged, &QComboBox::activated})
        connect(CmbLineStyle, chosen, this, [this] { QuietHandler([&] { CmbLineStyle_Click(); }); });
    connect(BtnColor, &QPushButton::clicked, this, [this] { QuietHandler([&] { BtnColor_Click(); }); });
    connect(x.automatic, &QCheckBox::toggled, this, [this] { ChkXAutoS_Click(); });
    connect(y.automatic, &QCheckBox::toggled, this, [this] { ChkYAutoS_Click(); });
    connect(BtnApply, &QPushButton::clicked, this, [this] { BtnApply_Click(); });
    connect(BtnCancel, &QPushButton::clicked, this, &QDialog::reject);
    for (AxisGroup* group : {&x, &y}) {
        const auto apply = [group] { group->applies = true; };
        connect(group->automatic, &QCheckBox::toggled, this, apply);
        connect(group->minimum, &QLineEdit::textChanged, this, apply);
        connect(group->maximum, &QLineEdit::textChanged, this, apply);
        new LeaveCheck(group->minimum, [this, group] { return MinimumLeft(*group); });
        new LeaveCheck(group->maximum, [this, group] { return MaximumLeft(*group); });
    }
}

} // namespace tracelet
