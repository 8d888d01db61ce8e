#pragma once

#include "tests/monkey/Random.h"
#include "window/main/frmMain.h"

#include <QObject>
#include <QStringList>
#include <QTemporaryDir>

#include <map>
#include <memory>
#include <string>

class QDialog;
class QFileDialog;
class QMessageBox;

namespace tracelet {

class frmSetting;

/// Uses the main window on simulated boards like somebody who presses whatever there is. The window's state
/// is checked after every step; what does not hold ends the program.
class Monkey : public QObject {
public:
    explicit Monkey(std::uint32_t seed);
    ~Monkey() override;

    void Step();
    /// Ends what runs, checks that everything is as before, and closes the window.
    void Finish();

    /// Message boxes met, by title and text.
    [[nodiscard]] const std::map<std::string, int>& MessagesMet() const { return messages; }

private:
    void Open();
    void CloseAndCheck();
    void StopAll();

    void UseSession();
    void UseHistory();
    void UseGraph();
    void UseDialogs();
    void UseWindow();
    void UseBoards();
    void BreakARecording();
    [[nodiscard]] QStringList Recordings() const;

    // Dialogs run event loops of their own, in which these are called again and again.
    void WatchDialogs();
    void ActOnPopup(QWidget& popup);
    void ActOnDialog(QDialog& dialog);
    void Answer(QMessageBox& box);
    void ChooseFile(QFileDialog& dialog);
    void NameFolder(QDialog& dialog);
    void ChooseSettings(frmSetting& dialog);
    void Leave(QDialog& dialog);

    Random random;
    QTemporaryDir root;
    QString programFolder; ///< deep enough in `root` for names with ".."
    BoardList boards;
    std::unique_ptr<frmMain> window;
    std::map<std::string, int> messages;
    int brokenRecordings = 0;
};

} // namespace tracelet
