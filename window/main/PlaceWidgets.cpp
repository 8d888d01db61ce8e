#include "core/base/Convert.h"
#include "window/chart/ZelGraph.h"
#include "window/main/MainWidgets.h"
#include "window/widgets/ZelSlider.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include <algorithm>
#include <initializer_list>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

// Designed sizes in pixels.
constexpr int ListWidth = 200;
constexpr int DisplayHeight = 44;
constexpr int PlaybackHeight = 82;
constexpr int BottomRowHeight = 104;
constexpr int CommandsWidth = 183;
constexpr int HintWidth = 180;

QRect PixelRect(const WidgetPlace& place) {
    const auto pixel = [](float twips) { return CLng(static_cast<double>(twips / TwipsPerPixel)); };
    const QPoint topLeft(pixel(place.left), pixel(place.top));
    return {topLeft, QSize(pixel(place.Right()) - topLeft.x(), pixel(place.Bottom()) - topLeft.y())};
}

WidgetPlace Twips(int top, QSize size) {
    const auto twips = [](int pixels) { return static_cast<float>(pixels) * TwipsPerPixel; };
    return {0.0F, twips(top), twips(size.width()), twips(size.height())};
}

// The designed size, or more where the font needs it.
QSize Snug(const QWidget* widget, int width, int height) {
    return widget->sizeHint().expandedTo({width, height});
}

} // namespace

WindowPlaces MainWidgets::DesignedPlaces() const {
    WindowPlaces at;
    at.FrameListView = at.ListView1 = Twips(0, {ListWidth, 0});
    at.Picture4 = Twips(0, {ListWidth, DisplayHeight});
    DesignGroups(at);
    DesignPlaybackRow(at);
    at.BtnStart = Twips(0, {CommandsWidth, Snug(BtnStart, 0, 52).height()});
    at.BtnModeSwitch = at.BtnSaveAs = at.BtnHistory = at.BtnExit =
        Twips(0, {CommandsWidth, Snug(BtnExit, 0, 30).height()});
    return at;
}

void MainWidgets::DesignGroups(WindowPlaces& at) const {
    const QSize set = Snug(FrameSet, 164, BottomRowHeight);
    const QSize cmd = Snug(FrameCmd, 228, BottomRowHeight);
    const QSize graph = Snug(FrameGraph, 154, BottomRowHeight);
    const int height = std::max({set.height(), cmd.height(), graph.height()});
    at.FrameSet = Twips(0, {set.width(), height});
    at.FrameCmd = Twips(0, {cmd.width(), height});
    at.FrameGraph = Twips(0, {graph.width(), height});
}

void MainWidgets::DesignPlaybackRow(WindowPlaces& at) const {
    at.FrameHis = Twips(0, {0, PlaybackHeight});
    const QMargins frame = FrameHis->contentsMargins();
    const int room = PlaybackHeight - frame.top() - frame.bottom();
    const auto centered = [&](const QWidget* widget, int width, int height) {
        const QSize size = Snug(widget, width, height);
        return Twips(frame.top() + (room - size.height()) / 2, size);
    };
    at.ChkPlay = centered(ChkPlay, 40, 34);
    at.BtnAccelerate = centered(BtnAccelerate, 40, 34);
    at.BtnStop = centered(BtnStop, 40, 34);
    at.BtnHisConvert = centered(BtnHisConvert, 84, 30);

    const int labelHeight = Label16->sizeHint().height();
    const int sliderHeight = ZelSliderR->sizeHint().height();
    const int labelTop = frame.top() + (room - labelHeight - sliderHeight) / 2;
    at.ZelSliderR = Twips(labelTop + labelHeight, {0, sliderHeight});
    at.ZelSliderV = Twips(labelTop + labelHeight, {150, sliderHeight});
    for (auto [place, label] : {std::pair{&at.Label1, Label1},
                                {&at.Label2, Label2},
                                {&at.Label6, Label6},
                                {&at.Label14, Label14},
                                {&at.Label15, Label15},
                                {&at.Label16, Label16}})
        *place = Twips(labelTop, {label->sizeHint().width(), labelHeight});
}

void MainWidgets::Place(OuterSize outer) const {
    const WindowPlaces at = LaidOut(outer, DesignedPlaces());
    const std::initializer_list<std::pair<QWidget*, const WidgetPlace*>> placed = {
        {ZelGraph1, &at.ZelGraph1},   {FrameListView, &at.FrameListView},
        {ListView1, &at.ListView1},   {Picture4, &at.Picture4},
        {FrameSet, &at.FrameSet},     {FrameCmd, &at.FrameCmd},
        {FrameGraph, &at.FrameGraph}, {FrameHis, &at.FrameHis},
        {ChkPlay, &at.ChkPlay},       {BtnAccelerate, &at.BtnAccelerate},
        {BtnStop, &at.BtnStop},       {BtnHisConvert, &at.BtnHisConvert},
        {ZelSliderR, &at.ZelSliderR}, {Label1, &at.Label1},
        {Label2, &at.Label2},         {Label6, &at.Label6},
        {ZelSliderV, &at.ZelSliderV}, {Label15, &at.Label15},
        {Label16, &at.Label16},       {Label14, &at.Label14},
        {BtnStart, &at.BtnStart},     {BtnModeSwitch, &at.BtnModeSwitch},
        {BtnSaveAs, &at.BtnSaveAs},   {BtnHistory, &at.BtnHistory},
        {BtnExit, &at.BtnExit},
    };
    for (const auto& [widget, place] : placed)
        widget->setGeometry(PixelRect(*place));
    const QRect bottomRow = PixelRect(at.FrameSet).united(PixelRect(at.BtnExit));
    FrameFoot->setGeometry(bottomRow.left(), bottomRow.bottom() + 1, bottomRow.width(),
                           FrameFoot->parentWidget()->height() - bottomRow.bottom() - 1);
    PlaceGraphHint();
}

void MainWidgets::PlaceGraphHint() const {
    const bool isWide = FrameGraph->width() >= BtnClearGraph->minimumWidth() + HintWidth;
    const QString text = isWide ? u"Right-click the graph to choose what the mouse does: zoom or pan."_s
                                : u"Right-click to zoom"_s;
    if (LabelGraphHint->text() == text)
        return;
    LabelGraphHint->setText(text);
    LabelGraphHint->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored); // a new text asks for room
    auto* grid = qobject_cast<QGridLayout*>(FrameGraph->layout());
    if (isWide)
        grid->addWidget(LabelGraphHint, 0, 1, 2, 1);
    else
        grid->addWidget(LabelGraphHint, 2, 0, 1, 2);
}

} // namespace tracelet
