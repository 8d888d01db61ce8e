#include "tests/monkey/Monkey.h"

#include "core/drivers/simulated/SimulatedAnalogBoard.h"
#include "core/drivers/simulated/SimulatedBoards.h"
#include "core/drivers/simulated/SimulatedDigitalBoard.h"
#include "tests/monkey/Checks.h"
#include "tests/monkey/Diary.h"
#include "tests/monkey/Hands.h"
#include "window/chart/ZelGraph.h"
#include "window/widgets/ZelButton.h"
#include "window/widgets/ZelLED.h"
#include "window/widgets/ZelSlider.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QDirIterator>
#include <QGroupBox>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace tracelet {

Monkey::Monkey(std::uint32_t seed) : random(seed), programFolder(root.filePath(u"a/b/program"_s)) {
    root.setAutoRemove(false);
    QDir().mkpath(programFolder);
    WatchDialogs();
    Open();
}

Monkey::~Monkey() {
    window.reset();
    // Broken projects name files that are no text, which the toolkit does not see.
    std::filesystem::remove_all(root.path().toStdString());
}

void Monkey::Open() {
    window.reset();
    boards = random.Percent(3) ? BoardList{} : SimulatedBoards();
    frmMain::Surroundings surroundings;
    surroundings.boards = boards;
    surroundings.findMore = [](BoardList&) {};
    surroundings.programFolder = programFolder;
    surroundings.stateFolder = programFolder.toStdString();
    window = std::make_unique<frmMain>(std::move(surroundings));
    window->show();
    if (random.Percent(30))
        window->ZelGraph1->SetMemoryBudget(4 << 20);
}

void Monkey::Step() {
    if (!window->isVisible() && !window->isMinimized()) // Exit was pressed
        CloseAndCheck();
    switch (random.Below(12)) {
    case 0:
    case 1:
    case 2:
    case 3:
        UseSession();
        break;
    case 4:
    case 5:
        UseHistory();
        break;
    case 6:
    case 7:
        UseGraph();
        break;
    case 8:
    case 9:
        UseDialogs();
        break;
    case 10:
        UseBoards();
        break;
    default:
        UseWindow();
    }
    QTest::qWait(random.Below(25));
    Require(QApplication::activeModalWidget() == nullptr, "every dialog was left");
    if (window->isVisible())
        CheckWindow(*window);
}

void Monkey::UseSession() {
    QWidget* const often[] = {window->BtnStart,   window->BtnStart,      window->ZelButton1,
                              window->ZelButton2, window->CkAISave2Disk, window->CkDISave2Disk,
                              window->BtnSaveAs,  window->BtnSaveAs};
    QWidget& widget = *random.Pick(often);
    if (widget.isEnabled())
        Poke(random, widget);
}

void Monkey::UseHistory() {
    if (random.Percent(10))
        BreakARecording();
    QWidget* const often[] = {window->BtnHistory, window->BtnHistory,    window->BtnModeSwitch,
                              window->ChkPlay,    window->ChkPlay,       window->BtnAccelerate,
                              window->BtnStop,    window->BtnHisConvert, window->ZelSliderR,
                              window->ZelSliderV};
    QWidget& widget = *random.Pick(often);
    if (widget.isEnabled())
        Poke(random, widget);
}

void Monkey::UseGraph() {
    switch (random.Below(5)) {
    case 0:
        return random.Pick(window->Menufile->actions())->trigger();
    case 1:
        return Poke(random, *window->ZelLED1);
    case 2:
        return Poke(random, *window->BtnClearGraph);
    default:
        return Drag(random, *window->ZelGraph1);
    }
}

void Monkey::UseDialogs() {
    QWidget& widget = random.Percent(60) ? *window->BtnSet : *window->BtnGraphSet;
    if (widget.isEnabled())
        Poke(random, widget);
}

void Monkey::UseWindow() {
    switch (random.Below(8)) {
    case 0:
        Note(u"resize"_s);
        return window->resize(random.Below(2000), random.Below(1400));
    case 1:
        Note(u"minimise and show again"_s);
        window->showMinimized();
        QTest::qWait(random.Below(10));
        return window->showNormal();
    case 2:
        Note(u"minimum size"_s);
        return window->resize(763, 483);
    case 3:
        if (random.Percent(20))
            Poke(random, *window->BtnExit);
        return;
    case 4:
        Note(u"wait"_s);
        return QTest::qWait(random.Below(200));
    case 5:
        return PressSomeKey(random, *window);
    default:
        return PokeSomething(random, *window);
    }
}

// Something breaks, or everything works again.
void Monkey::UseBoards() {
    Faults faults;
    switch (random.Below(12)) {
    case 0:
        faults.unplugged = true;
        break;
    case 1:
        faults.readError = "The board does not answer";
        break;
    case 2:
        faults.refusedStart = "The board is busy";
        break;
    case 3:
        faults.refusedRate = "No such rate";
        break;
    case 4:
        faults.lostScans = 1000;
        break;
    case 5:
        faults.slow = std::chrono::milliseconds(random.Below(15));
        break;
    default:
        break;
    }
    Note(u"boards change"_s);
    for (const auto& entry : boards.analog)
        dynamic_cast<SimulatedAnalogBoard&>(*entry.board).SetFaults(faults);
    for (const auto& entry : boards.digital)
        dynamic_cast<SimulatedDigitalBoard&>(*entry.board).SetFaults(faults);
}

QStringList Monkey::Recordings() const {
    QStringList found;
    QDirIterator all(root.path(), {u"*.tlp"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (all.hasNext())
        found.push_back(all.next());
    found.sort();
    return found;
}

// Copies some recording, and changes or shortens its project.
void Monkey::BreakARecording() {
    const QStringList recordings = Recordings();
    if (recordings.isEmpty() || brokenRecordings >= 40)
        return;
    QFile whole(random.Pick(recordings));
    if (!whole.open(QIODevice::ReadOnly))
        return;
    QByteArray bytes = whole.readAll();
    for (int i = random.Below(4); i > 0 && !bytes.isEmpty(); --i)
        bytes[random.Below(static_cast<int>(bytes.size()))] = static_cast<char>(random.Below(256));
    if (random.Percent(30))
        bytes.truncate(random.Below(static_cast<int>(bytes.size())));
    QFile broken(root.filePath(u"broken%1.tlp"_s.arg(++brokenRecordings)));
    if (broken.open(QIODevice::WriteOnly))
        broken.write(bytes);
}

void Monkey::StopAll() {
    const Faults none;
    for (const auto& entry : boards.analog)
        dynamic_cast<SimulatedAnalogBoard&>(*entry.board).SetFaults(none);
    for (const auto& entry : boards.digital)
        dynamic_cast<SimulatedDigitalBoard&>(*entry.board).SetFaults(none);
    Note(u"stop all"_s);
    if (window->isSystemRunning)
        QTest::mouseClick(window->BtnStart, Qt::LeftButton);
    if (window->isHisPlaying)
        QTest::mouseClick(window->BtnStop, Qt::LeftButton);
    if (window->bHistoryMode && window->BtnModeSwitch->isEnabled())
        QTest::mouseClick(window->BtnModeSwitch, Qt::LeftButton);
    Require(!window->isSystemRunning, "a session can be stopped");
    Require(!window->bHistoryMode, "history mode can be left");
    CheckWindow(*window);
}

void Monkey::CloseAndCheck() {
    Note(u"close the window"_s);
    window->close();
    window.reset();
    Require(QDir(programFolder).entryList({u"tl*"_s}, QDir::Dirs).isEmpty(), "the work folder is removed");
    Open();
}

void Monkey::Finish() {
    if (window->isVisible()) {
        window->showNormal();
        StopAll();
    }
    CloseAndCheck();
}

} // namespace tracelet
