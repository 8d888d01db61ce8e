#include "tour/Tour.h"

#include "core/drivers/simulated/SimulatedBoards.h"
#include "tests/support/OnModalDialog.h"
#include "window/chart/ZelGraph.h"
#include "window/widgets/ZelButton.h"
#include "window/widgets/ZelSlider.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTimer>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr int Patience = 30000; // milliseconds that anything may take

template <typename Widget>
Widget* Find(QObject& parent, const QString& name) {
    if (auto* widget = parent.findChild<Widget*>(name))
        return widget;
    throw RunTimeError("There is no widget " + name.toStdString());
}

void Expect(bool condition, const char* what) {
    if (!condition)
        throw RunTimeError(std::string("This did not happen: ") + what);
}

void Press(QDialog& dialog, const char* button) {
    Find<QPushButton>(dialog, QString::fromLatin1(button))->click();
}

void Type(QDialog& dialog, const char* box, const QString& text) {
    Find<QLineEdit>(dialog, QString::fromLatin1(box))->setText(text);
}

void SendMouse(QWidget& widget, QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held,
               Qt::KeyboardModifiers keys = Qt::NoModifier) {
    QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, keys);
    QApplication::sendEvent(&widget, &event);
}

} // namespace

Tour::Tour(const QString& pictureFolder, const QString& recordingFolder)
    : pictures(pictureFolder), recordings(QDir(recordingFolder).absolutePath()) {
    Expect(QDir().mkpath(recordings), "the folder for the recordings was made");
    OpenWindow();
}

void Tour::OpenWindow() {
    window.reset();
    frmMain::Surroundings surroundings;
    surroundings.boards = SimulatedBoards();
    surroundings.findMore = [](BoardList&) {};
    surroundings.stateFolder = "";
    board = std::dynamic_pointer_cast<SimulatedAnalogBoard>(surroundings.boards.analog.front().board);
    surroundings.freeBytes = [](const std::string&) { return std::int64_t{250} << 30; };
    surroundings.ticks = [this] {
        if (!window || window->M1.SoftMode)
            return window ? static_cast<std::uint32_t>(window->TickCount * window->nTimerInterval) : 0U;
        const double rate = window->ZelAI1->SampleRate() / window->ZelAI1->ScanChannelCount();
        return static_cast<std::uint32_t>(window->ScanCount * 1000.0 / rate);
    };
    window = std::make_unique<frmMain>(std::move(surroundings));
    window->show();
    Run(100);
}

void Tour::Run(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void Tour::RunTicks(const QString& timer, int count) {
    QEventLoop loop;
    QObject::connect(window->ZelHiResTimerCtl1, &ZelHiResTimerCtl::OnTimer, &loop, [&](const QString& name) {
        if (name == timer && --count == 0)
            loop.quit();
    });
    QTimer::singleShot(Patience, &loop, &QEventLoop::quit);
    loop.exec();
    Expect(count <= 0, "the timer ticked");
}

void Tour::Poll(int count) {
    window->ZelHiResTimerCtl1->SetTimerEnabled(frmMain::PollTimer, false);
    for (; count > 0; --count)
        window->ZelHiResTimerCtl1_OnTimer(frmMain::PollTimer);
}

// Values and status wait for no moment of their own.
void Tour::Picture(const QString& name) {
    window->ZelGraph1->RefreshValues();
    window->ShowStatus();
    Run(0);
    pictures.Take(*window, name);
}

void Tour::RunScans(std::int32_t count) {
    QElapsedTimer waiting;
    waiting.start();
    while (window->ScanCount < count && !waiting.hasExpired(Patience))
        Run(10);
    Expect(window->ScanCount == count, "the scans were taken");
}

void Tour::InDialog(QAbstractButton* opener, const std::function<void(QDialog&)>& action) {
    std::exception_ptr failure;
    OnModalDialog<QDialog>([&](QDialog& dialog) {
        try {
            action(dialog);
        } catch (...) { // an exception must not cross the event loop
            failure = std::current_exception();
        }
        if (dialog.isVisible())
            dialog.reject();
    });
    opener->click();
    if (failure)
        std::rethrow_exception(failure);
}

void Tour::ChooseLines(QDialog& settings, int port, std::initializer_list<int> lines) {
    Find<QComboBox>(settings, u"ComboDIPort"_s)->setCurrentIndex(port);
    for (const int line : lines)
        Find<QCheckBox>(settings, u"CheckDIChannel_%1"_s.arg(line))->click();
}

void Tour::LookAtSettings() {
    Picture(u"first-window"_s);
    InDialog(window->BtnSet, [this](QDialog& settings) {
        auto* pages = Find<QTabWidget>(settings, u"SSTab1"_s);
        pages->setCurrentIndex(0);
        pictures.Take(settings, u"settings-fast"_s);
        pages->setCurrentIndex(1);
        ChooseLines(settings, 0, {0, 1, 2, 7});
        ChooseLines(settings, 1, {0, 4});
        pictures.Take(settings, u"settings-polled"_s);
        InDialog(Find<QPushButton>(settings, u"cmdAISelectDevice_1"_s), [this](QDialog& picker) {
            pictures.Take(picker, u"board-picker"_s);
            auto* list = Find<QTreeWidget>(picker, u"lstBoards"_s);
            list->setCurrentItem(list->topLevelItem(3)); // a board with thermocouple inputs
            Press(picker, "OKButton");
        });
        SetUpThermocouples(settings);
    });
}

void Tour::SetUpThermocouples(QDialog& settings) {
    InDialog(Find<QPushButton>(settings, u"cmdRange_1"_s), [this](QDialog& ranges) {
        auto* table = Find<QTreeWidget>(ranges, u"lstViewGain"_s);
        for (const int channel : {1, 2}) {
            table->setCurrentItem(table->topLevelItem(channel));
            Find<QRadioButton>(ranges, u"OptThermo"_s)->click();
            Find<QComboBox>(ranges, u"ComboTCType"_s)->setCurrentIndex(channel);
        }
        pictures.Take(ranges, u"ranges-and-thermocouples"_s);
        Press(ranges, "OKButton");
    });
    Type(settings, "txtAIScanNumber_1", u"3"_s);
    Type(settings, "txtAITimeInterval", u"20"_s);
    Press(settings, "cmdDIOK");
}

void Tour::RecordPolled() {
    window->ZelButton1->click();
    window->ZelButton2->click();
    Expect(window->bAIEnabled && window->bDIEnabled, "both switches went on");
    window->CkAISave2Disk->click();
    window->CkDISave2Disk->click();
    Picture(u"ready-to-record"_s);
    window->BtnStart->click();
    Expect(window->isSystemRunning, "the polled session started");
    Poll(200);
    Picture(u"polled-session"_s);
    window->ZelGraph1->BtnHold->click();
    Poll(60);
    Picture(u"polled-session-held"_s);
    window->ZelGraph1->BtnHold->click();
    window->BtnStart->click();
    PictureCursors(u"polled-cursors"_s);
    Expect(window->BtnSaveAs->isEnabled(), "the recording can be saved");
    SaveAs(u"Polled"_s);
    Picture(u"saved"_s);
}

void Tour::LookAtManyPlots() {
    OpenWindow();
    InDialog(window->BtnSet, [](QDialog& settings) {
        Find<QTabWidget>(settings, u"SSTab1"_s)->setCurrentIndex(1);
        Type(settings, "txtAIScanNumber_1", u"64"_s);
        Press(settings, "cmdDIOK");
    });
    window->ZelButton1->click();
    window->BtnStart->click();
    Poll(80);
    Picture(u"many-plots"_s);
    window->BtnStart->click();
}

void Tour::LoseScans() {
    OpenWindow();
    window->ZelButton1->click();
    window->CkAISave2Disk->click();
    window->BtnStart->click();
    Poll(40);
    for (const int lost : {1, 12}) {
        Faults faults;
        faults.readError = "The board does not answer";
        board->SetFaults(faults);
        Poll(lost);
        board->SetFaults({});
        Poll(20);
    }
    Picture(u"scans-lost"_s);
    window->BtnStart->click();
    Picture(u"not-saved"_s);
}

void Tour::SaveAs(const QString& name) {
    window->szDrive = "/";
    window->szDir = recordings.toStdString();
    InDialog(window->BtnSaveAs, [&](QDialog& dialog) {
        Type(dialog, "txtFolderName", name);
        pictures.Take(dialog, u"save-as"_s);
        Press(dialog, "OKButton");
    });
    Expect(QFile::exists(recordings + u'/' + name + u"/Project.tlp"_s), "the recording was saved");
}

void Tour::RecordFast() {
    OpenWindow();
    InDialog(window->BtnSet, [](QDialog& settings) {
        Find<QTabWidget>(settings, u"SSTab1"_s)->setCurrentIndex(0);
        Type(settings, "txtAIScanNumber_0", u"16"_s);
        Type(settings, "txtSampleRate", u"1,000,000"_s);
        auto* cyclic = Find<QCheckBox>(settings, u"chkCylic"_s);
        if (!cyclic->isChecked())
            cyclic->click();
        Press(settings, "cmdFAIOK");
    });
    Expect(window->bAIEnabled && !window->M1.SoftMode, "fast input was accepted");
    Expect(window->bFAICyclic, "fast input is cyclic");
    window->CkAISave2Disk->click();
    const std::int32_t scans = 6 * window->nAISampleCnt / 16; // three seconds in halves of a quarter
    board->StandStillAfter(static_cast<std::uint64_t>(scans));
    window->BtnStart->click();
    Expect(window->isSystemRunning, "the fast session started");
    RunScans(scans);
    Picture(u"fast-session"_s);
    window->BtnStart->click();
    Expect(window->OverrunCount == 0, "the fast session lost nothing");
    PictureCursors(u"fast-cursors"_s);
    SaveAs(u"Fast"_s);
}

void Tour::Replay(const QString& name) {
    InDialog(window->BtnHistory, [&](QDialog& dialog) {
        auto& chooser = dynamic_cast<QFileDialog&>(dialog);
        chooser.selectFile(recordings + u'/' + name + u"/Project.tlp"_s);
        Find<QLineEdit>(chooser, u"fileNameEdit"_s)->setText(recordings + u'/' + name + u"/Project.tlp"_s);
        static_cast<QDialog&>(chooser).accept();
    });
    Expect(window->bHistoryMode, "the recording was opened");
    Picture(u"history-opened"_s);
    window->ChkPlay->click();
    RunTicks(frmMain::PlayTimer, 20);
    Picture(u"history-playing"_s);
    window->ChkPlay->click();
    window->ZelSliderR->SetValue(60.0);
    window->ChkPlay->click();
    RunTicks(frmMain::PlayTimer, 5);
    window->ChkPlay->click();
    Picture(u"history-sought-and-paused"_s);
    window->BtnStop->click();
    window->szTextSaveDrive = "/";
    window->szTextSaveDir = recordings.toStdString();
    InDialog(window->BtnHisConvert, [&](QDialog& dialog) {
        Type(dialog, "txtFolderName", name + u"Text"_s);
        pictures.Take(dialog, u"convert"_s);
        Press(dialog, "OKButton");
    });
    Expect(QFile::exists(recordings + u'/' + name + u"Text/AI.xlt"_s), "the recording was converted");
    window->BtnModeSwitch->click();
    Expect(!window->bHistoryMode, "the window went back to acquisition");
}

void Tour::Zoom(const char* entry, QPointF from, QPointF to) {
    ZelGraph& graph = *window->ZelGraph1;
    Find<QAction>(*window->Menufile, QString::fromLatin1(entry))->trigger();
    const QPointF start(from.x() * graph.width(), from.y() * graph.height());
    const QPointF end(to.x() * graph.width(), to.y() * graph.height());
    SendMouse(graph, QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
    SendMouse(graph, QEvent::MouseMove, (start + end) / 2, Qt::NoButton, Qt::LeftButton);
    SendMouse(graph, QEvent::MouseMove, end, Qt::NoButton, Qt::LeftButton);
    Picture(QString::fromLatin1(entry) + u"-band"_s);
    SendMouse(graph, QEvent::MouseButtonRelease, end, Qt::LeftButton, Qt::NoButton);
    Picture(QString::fromLatin1(entry) + u"-done"_s);
}

/// At a share of the plot area's width, with Shift held.
void Tour::PlaceCursor(double share) {
    ZelGraph& graph = *window->ZelGraph1;
    const QRect area = graph.PlotRect();
    const QPointF place(area.left() + share * area.width(), area.center().y());
    SendMouse(graph, QEvent::MouseButtonPress, place, Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    SendMouse(graph, QEvent::MouseButtonRelease, place, Qt::LeftButton, Qt::NoButton, Qt::ShiftModifier);
}

/// The pointer stays over the plot area, so that the values are those at its time.
void Tour::PictureCursors(const QString& name) {
    ZelGraph& graph = *window->ZelGraph1;
    PlaceCursor(0.35);
    PlaceCursor(0.8);
    SendMouse(graph, QEvent::MouseMove, graph.PlotRect().center(), Qt::NoButton, Qt::NoButton);
    Run(50);
    Picture(name);
    graph.RemoveCursors();
    Run(50);
}

void Tour::PictureMenu() {
    ZelGraph& graph = *window->ZelGraph1;
    SendMouse(graph, QEvent::MouseButtonPress, {240, 120}, Qt::RightButton, Qt::RightButton);
    Run(50);
    Picture(u"graph-menu"_s);
    window->Menufile->close();
    SendMouse(graph, QEvent::MouseButtonRelease, {240, 120}, Qt::RightButton, Qt::NoButton);
}

void Tour::LookAtGraph() {
    PictureMenu();
    Zoom("xz", {0.5, 0.3}, {0.7, 0.6});
    Zoom("xyz", {0.3, 0.2}, {0.6, 0.5});
    Zoom("xp", {0.5, 0.5}, {0.6, 0.5});
    InDialog(window->BtnGraphSet, [this](QDialog& dialog) {
        Find<QListWidget>(dialog, u"lstPlots"_s)->setCurrentRow(0);
        pictures.Take(dialog, u"graph-settings"_s);
    });
    PictureSizes();
    PictureDarkPalette();
}

void Tour::PictureSizes() {
    const QSize opened = window->size();
    const struct {
        QSize size;
        const char* name;
    } sizes[] = {{{763, 483}, "smallest"}, {{1920, 1080}, "wide"}, {{3840, 2160}, "4k"}};
    for (const auto& [size, name] : sizes) {
        window->resize(size);
        Run(100);
        Picture(QString::fromLatin1(name));
    }
    window->resize(opened);
}

void Tour::PictureDarkPalette() {
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(0x35, 0x38, 0x3C), QColor(0x2A, 0x2D, 0x31));
    dark.setColor(QPalette::Base, QColor(0x1E, 0x20, 0x23));
    dark.setColor(QPalette::Highlight, QColor(0x2F, 0x6F, 0xB5));
    QApplication::setPalette(dark);
    Run(100);
    Picture(u"dark-palette"_s);
    InDialog(window->BtnSet, [this](QDialog& settings) { pictures.Take(settings, u"dark-settings"_s); });
    QApplication::setPalette(light);
}

void Tour::LookAtWindow(const QString& name) {
    window->ZelButton1->click();
    window->BtnStart->click();
    Poll(25);
    Picture(name);
    window->BtnStart->click();
}

} // namespace tracelet
