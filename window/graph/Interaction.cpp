#include "window/chart/ZelGraph.h"
#include "window/ground/Handler.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelLED.h"

#include <QMenu>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr int RightButton = 2;

struct ModeEntry {
    const char16_t* name;
    const char16_t* caption;
    MouseModeCode code;
};

constexpr ModeEntry ModeEntries[] = {
    {u"None", u"None", MouseNone},    {u"xz", u"XZoom", MouseXZoom}, {u"yz", u"YZoom", MouseYZoom},
    {u"xyz", u"XYZoom", MouseXYZoom}, {u"xp", u"XPan", MouseXPan},   {u"yp", u"YPan", MouseYPan},
    {u"xyp", u"XYPan", MouseXYPan},
};

} // namespace

void frmMain::ConnectGraph() {
    BuildModeMenu();
    ConnectPictures();
    ZelGraph1->ShowReadOut(true);
    connect(ZelGraph1, &ZelGraph::MouseDown, this, [this](int button, int, double x, double y) {
        if (button == RightButton)
            Menufile->popup(ZelGraph1->mapToGlobal(QPointF(x, y).toPoint()));
    });
    connect(ZelGraph1, &ZelGraph::MouseUp, this, [this] { QuietHandler([&] { ZelGraph1_MouseUp(); }); });
    connect(ZelGraph1, &ZelGraph::Zoomed, this,
            [this](double seconds) { QuietHandler([&] { TakeTimeSpan(seconds); }); });
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, ZelGraph1, &ZelGraph::StepBack);
    connect(ZelGraph1, &ZelGraph::Error, this, [this](int, const QString& text) { ZelGraph1_Error(text); });
}

void frmMain::BuildModeMenu() {
    Menufile = new QMenu(u"Popup Menu"_s, this);
    Menufile->setObjectName(u"Menufile"_s);
    QAction* heading = Menufile->addAction(u"MouseMode"_s);
    heading->setObjectName(u"commet"_s);
    heading->setEnabled(false);
    Menufile->addSeparator()->setObjectName(u"delimiter"_s);
    for (const ModeEntry& entry : ModeEntries) {
        QAction* action = Menufile->addAction(QString::fromUtf16(entry.caption), this,
                                              [this, code = entry.code] { ZelGraph1->SetMouseMode(code); });
        action->setObjectName(QString::fromUtf16(entry.name));
    }
}

void frmMain::ZelGraph1_MouseUp() {
    if (ZelGraph1->MouseMode() < MouseXZoom)
        return;
    TakeTimeSpan(ZelGraph1->XAxisMax() - ZelGraph1->XAxisMin());
}

void frmMain::TakeTimeSpan(double seconds) {
    ZelLED1->SetEnabled(false);
    dDIVValue = seconds / 10;
    ZelLED1->SetValue(dDIVValue);
    QuietHandler([this] { AdjustXAxisAndChartLength(false); });
    ZelLED1->SetEnabled(true);
}

void frmMain::ZelGraph1_Error(const QString& text) {
    if (text != u"Out of memory!")
        MsgBox(this, text, u"Graph Error Message"_s);
}

void frmMain::BtnClearGraph_Click() {
    ZelGraph1->ClearData();
}

} // namespace tracelet
