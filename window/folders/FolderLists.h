#pragma once

#include <QHash>
#include <QStringList>
#include <QWidget>

#include <string>

class QComboBox;
class QLineEdit;
class QListWidget;
class QToolButton;

namespace tracelet {

/// The mounted volumes that hold files of people, by the folder they are mounted on, "/" first. Memory and
/// kernel file systems, packed programs and single mounted files are left out.
[[nodiscard]] QStringList MountedVolumes();

/// A drive list (a mounted volume each) above a list of the folders in the current folder, as both folder
/// dialogs show them, and the current folder in a box to type another into. Going into a drive or folder
/// makes it the process's current folder, so relative names and the next file dialog start there; a mounted
/// stick therefore stays busy while it is current. Folders that are hidden, or whose name holds a "\" and so
/// fits no composed path, are not listed, nor are work folders.
///
/// Use: lay it out in the dialog, call Load once, read Drive and Path on OK.
class FolderLists : public QWidget {
    Q_OBJECT

public:
    explicit FolderLists(QWidget* parent = nullptr);

    /// Shows the remembered drive and folder and makes them current. While `drive` is empty, both are first
    /// set from the program's folder: the drive that holds it, and the folder itself. Where that cannot be
    /// written, the user's documents stand in for it, or else the home folder. A remembered folder that is
    /// gone gives way to the nearest folder above it that is there.
    void Load(const std::string& programFolder, std::string& drive, std::string& folder);

    [[nodiscard]] std::string Drive() const; ///< the folder that the chosen drive is mounted on
    [[nodiscard]] std::string Path() const;  ///< the folder gone into, a native path

    QComboBox* Drive1;  ///< each item's data is the folder that the drive is mounted on
    QListWidget* Dir1;  ///< ".." first, unless this is "/"; double click or Enter goes in
    QLineEdit* txtPath; ///< shows Path; Enter, and leaving it, goes to the folder typed

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Build();
    [[nodiscard]] QToolButton* PlaceButton(const char* name, const QString& caption, const QString& folder);
    /// False after a message: there is no such folder.
    [[nodiscard]] bool EnterTyped();
    void Drive1_Change();
    void Dir1_Change(const QString& name);
    bool Enter(const QString& folder);
    void List();
    void SelectDrive(const QString& drive);
    [[nodiscard]] QString DriveOf(const QString& folder) const;

    QString path;
    QString drive;
    QHash<QString, QString> currentFolders; ///< where each drive was left, by drive
};

} // namespace tracelet
