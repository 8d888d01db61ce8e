#include "core/settings/ChannelTable.h"
#include "window/aids/EnterPresses.h"
#include "window/ground/Handler.h"
#include "window/settings/DialogParts.h"
#include "window/settings/dlgGainRange.h"

#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

const QString WidestCaption = u"ExpChan"_s;

} // namespace

void dlgGainRange::Build() {
    BuildTable();
    OKButton = Named<QPushButton>("OKButton", u"Exit"_s);
    EnterPresses(OKButton);

    auto* grid = new QGridLayout(this);
    grid->addWidget(lstViewGain, 0, 0, 6, 1);
    grid->addWidget(BuildKind(), 0, 1);
    grid->addWidget(BuildThermo(), 1, 1);
    grid->addWidget(BuildRange(), 2, 1);
    grid->addWidget(BuildConnection(), 3, 1);
    grid->addWidget(OKButton, 5, 1, Qt::AlignRight);
    grid->setRowStretch(4, 1);
    grid->setColumnStretch(0, 1);
}

void dlgGainRange::BuildTable() {
    lstViewGain = Named<QTreeWidget>("lstViewGain");
    lstViewGain->setAccessibleName(u"Channels"_s);
    lstViewGain->setHeaderLabels(
        {u"Channel"_s, u"Logical Chan"_s, u"Connection"_s, u"Input"_s, u"Range / Type"_s, u"ExpChan"_s});
    lstViewGain->setRootIsDecorated(false);
    lstViewGain->setUniformRowHeights(true);
    lstViewGain->setAllColumnsShowFocus(true);
    lstViewGain->setSelectionBehavior(QAbstractItemView::SelectRows);
    const int width = fontMetrics().averageCharWidth();
    const std::array<int, ChannelColumns> characters = {11, 15, 16, 11, 20, 10};
    int total = 0;
    for (int column = 0; column < ChannelColumns; ++column) {
        const int columnWidth = characters[static_cast<std::size_t>(column)] * width;
        lstViewGain->setColumnWidth(column, columnWidth);
        total += columnWidth;
    }
    lstViewGain->setMinimumWidth(total + 4 * width);
}

QGroupBox* dlgGainRange::BuildKind() {
    FrameAIorThermo = Named<QGroupBox>("FrameAIorThermo");
    FrameAIorThermo->setAccessibleName(u"Input"_s);
    OptAI = Named<QRadioButton>("OptAI", u"AI"_s);
    OptThermo = Named<QRadioButton>("OptThermo", u"Thermo"_s);
    FrameScale = Named<QFrame>("FrameScale");
    ComboScale = Named<QComboBox>("ComboScale");

    auto* scale = FrameGrid(FrameScale, WidestCaption);
    scale->setContentsMargins(0, 0, 0, 0);
    LabelScale = AddRow(scale, u"LabelScale"_s, u"Scale"_s, ComboScale);
    auto* grid = new QGridLayout(FrameAIorThermo);
    grid->addWidget(OptAI, 0, 0, Qt::AlignLeft);
    grid->addWidget(OptThermo, 0, 1, Qt::AlignLeft);
    grid->addWidget(FrameScale, 1, 0, 1, 2);
    return FrameAIorThermo;
}

QGroupBox* dlgGainRange::BuildThermo() {
    FrameThermo = Named<QGroupBox>("FrameThermo", u"Thermo Setting"_s);
    ComboTCType = Named<QComboBox>("ComboTCType");
    ComboExpChan = Named<QComboBox>("ComboExpChan");
    auto* grid = FrameGrid(FrameThermo, WidestCaption);
    LabelTCType = AddRow(grid, u"LabelTCType"_s, u"TC Type"_s, ComboTCType);
    LabelExpChan = AddRow(grid, u"LabelExpChan"_s, u"ExpChan"_s, ComboExpChan);
    return FrameThermo;
}

QGroupBox* dlgGainRange::BuildRange() {
    FrameAIRange = Named<QGroupBox>("FrameAIRange", u"Input Range"_s);
    ComboRange = Named<QComboBox>("ComboRange");
    ComboRange->setAccessibleName(FrameAIRange->title());
    ComboRange->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto* grid = new QGridLayout(FrameAIRange);
    grid->addWidget(ComboRange, 0, 0);
    return FrameAIRange;
}

QGroupBox* dlgGainRange::BuildConnection() {
    FrameSignalConnection = Named<QGroupBox>("FrameSignalConnection", u"SignalConnection"_s);
    optSingle = Named<QRadioButton>("optSingle", u"Single-Ended"_s);
    optDifferent = Named<QRadioButton>("optDifferent", u"Differential"_s);
    auto* grid = new QGridLayout(FrameSignalConnection);
    grid->addWidget(optSingle, 0, 0, Qt::AlignLeft);
    grid->addWidget(optDifferent, 0, 1, Qt::AlignLeft);
    return FrameSignalConnection;
}

// What code shows by Show is told to no handler.
void dlgGainRange::ConnectWidgets() {
    const auto quietly = [this](void (dlgGainRange::*handler)()) {
        return [this, handler] { QuietHandler([&] { (this->*handler)(); }); };
    };
    connect(lstViewGain, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        QuietHandler([&] { lstViewGain_ItemClick(lstViewGain->indexOfTopLevelItem(item)); });
    });
    OnChosen(ComboRange, quietly(&dlgGainRange::ComboRange_Click));
    OnChosen(ComboTCType, quietly(&dlgGainRange::ComboTCType_Click));
    OnChosen(ComboScale, quietly(&dlgGainRange::ComboScale_Click));
    OnChosen(ComboExpChan, quietly(&dlgGainRange::ComboExpChan_Click));
    OnChosen(OptAI, quietly(&dlgGainRange::OptAI_Click));
    OnChosen(OptThermo, quietly(&dlgGainRange::OptThermo_Click));
    OnChosen(optSingle, quietly(&dlgGainRange::optSingle_Click));
    OnChosen(optDifferent, quietly(&dlgGainRange::optDifferent_Click));
    connect(OKButton, &QPushButton::clicked, this, &dlgGainRange::OKButton_Click);
}

} // namespace tracelet
