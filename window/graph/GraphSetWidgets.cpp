// Widgets of the graph settings dialog and what they run.

#include "window/chart/ZelGraph.h"
#include "window/graph/frmGraphSet.h"
#include "window/ground/Handler.h"
#include "window/ground/LeaveCheck.h"
#include "window/main/frmMain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
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

// No plot is selected at first: the first arrow key selects the line that the focus stands on, where a plain
// list goes past it.
class PlotList : public QListWidget {
protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool isArrow = event->key() == Qt::Key_Down || event->key() == Qt::Key_Up;
        if (isArrow && selectedItems().isEmpty() && currentItem() != nullptr)
            currentItem()->setSelected(true);
        else
            QListWidget::keyPressEvent(event);
    }
};

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
        button->setAutoDefault(false);
    buttons->addStretch();
    buttons->addWidget(BtnApply);
    buttons->addWidget(BtnCancel);
    layout->addLayout(buttons, 1, 0, 1, 2);

    ConnectWidgets();
    LoadPlots();
    LoadAxes();
}

QGroupBox* frmGraphSet::BuildPlotGroup() {
    auto* frame = Named(u"framePlots"_s, new QGroupBox(u"Plots"_s));
    lstPlots = Named(u"lstPlots"_s, new PlotList);
    lstPlots->setAccessibleName(u"Plots"_s);
    BtnColor = Named(u"BtnColor"_s, new QPushButton);
    BtnColor->setAccessibleName(u"Line color"_s);
    BtnColor->setAutoDefault(false);
    CmbLineStyle = Named(u"CmbLineStyle"_s, new QComboBox);
    CmbLineStyle->addItems({u"Solid"_s, u"Dash"_s, u"Dot"_s, u"DashDot"_s, u"DashDotDot"_s});
    CmbLineStyle->setCurrentIndex(-1); // until a plot is selected

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
    group.minimum = Named(u"txt%1Min"_s.arg(axisName), new QLineEdit);
    group.maximum = Named(u"txt%1Max"_s.arg(axisName), new QLineEdit);
    for (QLineEdit* box : {group.minimum, group.maximum}) {
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
