#include "window/main/MainWidgets.h"

#include "window/chart/ZelGraph.h"
#include "window/ground/Named.h"
#include "window/ground/NoticeLine.h"
#include "window/ground/Shading.h"
#include "window/ground/StatusLine.h"
#include "window/widgets/PlaybackButtons.h"
#include "window/widgets/StartButton.h"
#include "window/widgets/ZelButton.h"
#include "window/widgets/ZelLED.h"
#include "window/widgets/ZelSlider.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeWidget>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr QSize OpeningSize{1000, 650};
constexpr int FootGap = 18; // pixels between status and notice

// Lays a group's widgets on a grid of its own.
QGridLayout* GridIn(QGroupBox* group) {
    auto* grid = new QGridLayout(group);
    grid->setContentsMargins(10, 6, 10, 8);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(4);
    return grid;
}

QPalette ChartPalette(QPalette palette) {
    palette.setColor(QPalette::Window, ChartGround);
    palette.setColor(QPalette::Base, ChartGround);
    palette.setColor(QPalette::Button, ChartGround.lighter(150));
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(role, ChartText);
    return palette;
}

QFont StrokeFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setBold(true);
    return font;
}

/// Width of the column of strokes, given that of one of their characters; both in pixels.
int StrokeColumnWidth(double character) {
    return static_cast<int>(std::ceil(7 * character)) + 14;
}

/// Rows with air between them.
class RowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(6, 5);
    }
};

/// Draws the stroke in its own colour whether or not the row is selected.
class StrokeDelegate : public RowDelegate {
public:
    using RowDelegate::RowDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->font = StrokeFont();
        option->palette.setColor(QPalette::HighlightedText, option->palette.color(QPalette::Text));
    }
};

} // namespace

void MainWidgets::Build(QWidget& window) {
    ZelGraph1 = Named<ZelGraph>("ZelGraph1", &window);
    BuildPlotList(window);
    BuildDeviceGroup(window);
    BuildSignalGroup(window);
    BuildGraphGroup(window);
    BuildPlaybackGroup(window);
    BuildCommands(window);
    BuildFoot(window);
    NameForAssistance();
    OrderTabs();
    window.resize(OpeningSize);
}

void MainWidgets::BuildPlotList(QWidget& window) {
    FrameListView = Named<QWidget>("FrameListView", &window);
    FrameListView->setPalette(ChartPalette(window.palette()));
    FrameListView->setAutoFillBackground(true);

    ListView1 = Named<QTreeWidget>("ListView1", FrameListView);
    QPalette rows = FrameListView->palette();
    rows.setColor(QPalette::Highlight, ChartGrid);
    rows.setColor(QPalette::HighlightedText, ChartText);
    ListView1->setPalette(rows);
    ListView1->setHeaderLabels({u" Chan"_s, u" Line"_s});
    ListView1->setRootIsDecorated(false);
    ListView1->setItemsExpandable(false);
    ListView1->setUniformRowHeights(true);
    ListView1->setFrameShape(QFrame::NoFrame);
    ListView1->setTextElideMode(Qt::ElideRight);
    ListView1->setItemDelegate(new RowDelegate(ListView1));
    ListView1->setItemDelegateForColumn(1, new StrokeDelegate(ListView1));
    QHeaderView* header = ListView1->header();
    header->setStretchLastSection(false);
    header->setSectionsMovable(false);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
    header->setSectionResizeMode(1, QHeaderView::Fixed);
    // Loading the strokes' own font can wait until there are some: until then this share of the height, which
    // most such fonts are wide, will do.
    header->resizeSection(1, StrokeColumnWidth(0.602 * QFontInfo(ListView1->font()).pixelSize()));
    QObject::connect(
        ListView1->model(), &QAbstractItemModel::rowsInserted, header,
        [header] {
            header->resizeSection(1, StrokeColumnWidth(QFontMetricsF(StrokeFont()).horizontalAdvance(u'-')));
        },
        Qt::SingleShotConnection);

    Picture4 = Named<QWidget>("Picture4", FrameListView);
    ZelLED1 = Named<ZelLED>("ZelLED1", Picture4);
    auto* unit = Named<QLabel>("LabelSecDiv", u"sec/div"_s, Picture4);
    auto* row = new QHBoxLayout(Picture4);
    row->setContentsMargins(4, 4, 5, 4);
    row->setSpacing(5);
    row->addWidget(ZelLED1, 1);
    row->addWidget(unit);
}

void MainWidgets::BuildDeviceGroup(QWidget& window) {
    FrameSet = Named<QGroupBox>("FrameSet", u"Device"_s, &window);
    BtnSet = Named<QPushButton>("BtnSet", u"&Setting..."_s, FrameSet);
    CkAISave2Disk = Named<QCheckBox>("CkAISave2Disk", u"AI Save2Disk"_s, FrameSet);
    CkDISave2Disk = Named<QCheckBox>("CkDISave2Disk", u"DI Save2Disk"_s, FrameSet);
    QGridLayout* grid = GridIn(FrameSet);
    grid->addWidget(BtnSet, 0, 0);
    grid->addWidget(CkAISave2Disk, 1, 0);
    grid->addWidget(CkDISave2Disk, 2, 0);
}

void MainWidgets::BuildSignalGroup(QWidget& window) {
    FrameCmd = Named<QGroupBox>("FrameCmd", u"Signal"_s, &window);
    ZelButton1 = Named<ZelButton>("ZelButton1", FrameCmd);
    ZelButton2 = Named<ZelButton>("ZelButton2", FrameCmd);
    LabelAIOn = Named<QLabel>("LabelAIOn", FrameCmd);
    LabelAI = Named<QLabel>("LabelAI", u"Analog\ninput"_s, FrameCmd);
    LabelDIOn = Named<QLabel>("LabelDIOn", FrameCmd);
    LabelDI = Named<QLabel>("LabelDI", u"Digital\ninput"_s, FrameCmd);
    QGridLayout* grid = GridIn(FrameCmd);
    grid->setVerticalSpacing(0);
    const auto add = [grid](int column, ZelButton* button, const QString& text, QLabel* on, QLabel* name) {
        button->setText(text);
        grid->addWidget(button, 0, column, 2, 1);
        grid->addWidget(on, 0, column + 1);
        grid->addWidget(name, 1, column + 1);
        grid->setColumnStretch(column + 1, 1);
    };
    add(0, ZelButton1, u"AI"_s, LabelAIOn, LabelAI);
    add(2, ZelButton2, u"DI"_s, LabelDIOn, LabelDI);
}

void MainWidgets::BuildGraphGroup(QWidget& window) {
    FrameGraph = Named<QGroupBox>("FrameGraph", u"Graph"_s, &window);
    BtnGraphSet = Named<QPushButton>("BtnGraphSet", u"Setting..."_s, FrameGraph);
    BtnClearGraph = Named<QPushButton>("BtnClearGraph", u"Clear Graph"_s, FrameGraph);
    BtnClearGraph->setMinimumWidth(112);
    QGridLayout* grid = GridIn(FrameGraph);
    grid->addWidget(BtnGraphSet, 0, 0);
    grid->addWidget(BtnClearGraph, 1, 0);
    LabelGraphHint = Named<QLabel>("LabelGraphHint", FrameGraph);
    LabelGraphHint->setWordWrap(true);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(2, 1);
}

void MainWidgets::BuildPlaybackGroup(QWidget& window) {
    FrameHis = Named<QGroupBox>("FrameHis", u"History Playback"_s, &window);
    ChkPlay = Named<PlayButton>("ChkPlay", FrameHis);
    ChkPlay->setText(u"4"_s);
    BtnAccelerate = Named<GlyphButton>("BtnAccelerate", Glyph::Accelerate, FrameHis);
    BtnStop = Named<GlyphButton>("BtnStop", Glyph::Stop, FrameHis);
    ZelSliderR = Named<ZelSlider>("ZelSliderR", Qt::Horizontal, FrameHis);
    Label1 = Named<QLabel>("Label1", u"0%"_s, FrameHis);
    Label2 = Named<QLabel>("Label2", u"Position"_s, FrameHis);
    Label6 = Named<QLabel>("Label6", u"100%"_s, FrameHis);
    ZelSliderV = Named<ZelSlider>("ZelSliderV", Qt::Horizontal, FrameHis);
    Label15 = Named<QLabel>("Label15", u"Slow"_s, FrameHis);
    Label16 = Named<QLabel>("Label16", u"Play Speed"_s, FrameHis);
    Label14 = Named<QLabel>("Label14", u"High"_s, FrameHis);
    BtnHisConvert = Named<QPushButton>("BtnHisConvert", u"Convert"_s, FrameHis);
    FrameHis->setEnabled(false);
}

void MainWidgets::BuildCommands(QWidget& window) {
    BtnStart = Named<StartButton>("BtnStart", u"Start"_s, &window);
    BtnModeSwitch = Named<QPushButton>("BtnModeSwitch", u"History Mode"_s, &window);
    BtnModeSwitch->setEnabled(false);
    BtnSaveAs = Named<QPushButton>("BtnSaveAs", u"Save As"_s, &window);
    BtnHistory = Named<QPushButton>("BtnHistory", u"&History..."_s, &window);
    BtnExit = Named<QPushButton>("BtnExit", u"&Exit"_s, &window);
}

void MainWidgets::BuildFoot(QWidget& window) {
    FrameFoot = Named<QWidget>("FrameFoot", &window);
    LabelStatus = Named<StatusLine>("LabelStatus", FrameFoot);
    LabelNotice = Named<NoticeLine>("LabelNotice", FrameFoot);
    auto* line = new QHBoxLayout(FrameFoot);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(FootGap);
    line->addWidget(LabelStatus);
    line->addWidget(LabelNotice, 1);
}

void MainWidgets::NameForAssistance() const {
    const std::pair<QWidget*, QString> names[] = {
        {ZelGraph1, u"Chart"_s},
        {ListView1, u"Plots"_s},
        {ZelLED1, u"Seconds per division"_s},
        {ZelButton1, u"Analog input"_s},
        {ZelButton2, u"Digital input"_s},
        {BtnSet, u"Device settings"_s},
        {BtnGraphSet, u"Graph settings"_s},
        {ChkPlay, u"Play"_s},
        {BtnAccelerate, u"Double speed"_s},
        {BtnStop, u"Stop playback"_s},
        {ZelSliderR, u"Position in percent"_s},
        {ZelSliderV, u"Play speed in scans per second"_s},
        {BtnHisConvert, u"Convert to text"_s},
        {LabelStatus, u"Status"_s},
    };
    for (const auto& [widget, name] : names)
        widget->setAccessibleName(name);
}

void MainWidgets::OrderTabs() const {
    QWidget* const order[] = {BtnStart,    BtnModeSwitch, BtnSaveAs,     BtnHistory,    BtnExit,
                              ZelButton1,  ZelButton2,    BtnSet,        CkAISave2Disk, CkDISave2Disk,
                              BtnGraphSet, BtnClearGraph, ChkPlay,       BtnAccelerate, BtnStop,
                              ZelSliderR,  ZelSliderV,    BtnHisConvert, ListView1,     ZelLED1};
    for (std::size_t at = 1; at < std::size(order); ++at)
        QWidget::setTabOrder(order[at - 1], order[at]);
}

} // namespace tracelet
