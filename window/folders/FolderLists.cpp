#include "window/folders/FolderLists.h"

#include "core/base/RunTimeError.h"
#include "core/files/Paths.h"
#include "core/recordings/WorkFolder.h"
#include "window/ground/LeaveCheck.h"
#include "window/ground/MsgBox.h"
#include "window/ground/Named.h"

#include <QComboBox>
#include <QDir>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

const QString Root = QStringLiteral("/");
const QString FolderAbove = QStringLiteral("..");

bool HoldsFilesOfPeople(const QStorageInfo& volume) {
    if (volume.rootPath() == Root)
        return true;
    constexpr std::array<QByteArrayView, 9> WithoutDevice = {"nfs", "nfs4",     "cifs", "smb3",      "zfs",
                                                             "9p",  "virtiofs", "ceph", "fuse.sshfs"};
    const QByteArray type = volume.fileSystemType();
    const bool isReal = volume.device().startsWith('/') ||
                        std::find(WithoutDevice.begin(), WithoutDevice.end(), type) != WithoutDevice.end();
    return isReal && type != "squashfs" && QFileInfo(volume.rootPath()).isDir();
}

bool IsUnder(const QString& folder, const QString& drive) {
    return drive == Root || folder == drive || folder.startsWith(drive + Root);
}

QString NearestFolder(QString folder) {
    while (!QFileInfo(folder).isDir() && folder != Root && !folder.isEmpty())
        folder = QFileInfo(folder).path();
    return QDir::isAbsolutePath(folder) ? folder : Root;
}

QString DocumentsFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

// The program's folder, or one of the user's own where it cannot be written.
QString FirstFolder(const std::string& programFolder) {
    if (!GetTempFile(false, "tl", programFolder).empty())
        return QString::fromStdString(programFolder);
    const QString documents = DocumentsFolder();
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

} // namespace

QStringList MountedVolumes() {
    QStringList volumes;
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (HoldsFilesOfPeople(volume))
            volumes << volume.rootPath();
    }
    volumes << Root;
    volumes.sort();
    volumes.removeDuplicates();
    return volumes;
}

FolderLists::FolderLists(QWidget* parent)
    : QWidget(parent), Drive1(new QComboBox(this)), Dir1(new QListWidget(this)),
      txtPath(new QLineEdit(this)) {
    Build();
    for (const QString& volume : MountedVolumes())
        Drive1->addItem(volume, volume);
    connect(Drive1, &QComboBox::currentIndexChanged, this, [this] { Drive1_Change(); });
    connect(Dir1, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { Dir1_Change(item->text()); });
}

void FolderLists::Build() {
    Drive1->setObjectName(u"Drive1"_s);
    Drive1->setAccessibleName(u"Drive"_s);
    Dir1->setObjectName(u"Dir1"_s);
    Dir1->setAccessibleName(u"Folder"_s);
    Dir1->installEventFilter(this);
    Dir1->setMinimumSize(280, 180);
    Drive1->setToolTip(u"Choose a disk"_s);
    Dir1->setToolTip(u"Double click or Enter goes into a folder"_s);
    txtPath->setToolTip(u"The current folder; type another and press Enter to go there"_s);
    txtPath->setObjectName(u"txtPath"_s);
    txtPath->setAccessibleName(u"Current folder"_s);
    txtPath->installEventFilter(this);
    new LeaveCheck(txtPath, [this] {
        const bool isEntered = EnterTyped();
        txtPath->setText(path);
        return isEntered;
    });
    auto* places = new QHBoxLayout;
    places->addWidget(Drive1, 1);
    places->addWidget(PlaceButton("BtnHome", u"Home"_s, QDir::homePath()));
    places->addWidget(PlaceButton("BtnDocuments", u"Documents"_s, DocumentsFolder()));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(places);
    layout->addWidget(txtPath);
    layout->addWidget(Dir1, 1);
    setFocusProxy(Drive1);
}

QToolButton* FolderLists::PlaceButton(const char* name, const QString& caption, const QString& folder) {
    auto* button = Named<QToolButton>(name, this);
    button->setText(caption);
    button->setToolTip(u"Go to %1"_s.arg(folder));
    button->setFocusPolicy(Qt::StrongFocus); // a click leaves the box of the path
    button->setVisible(QFileInfo(folder).isDir());
    connect(button, &QToolButton::clicked, this, [this, folder] { Enter(folder); });
    return button;
}

void FolderLists::Load(const std::string& programFolder, std::string& driveText, std::string& folderText) {
    if (driveText.empty()) {
        const QString first = FirstFolder(programFolder);
        driveText = DriveOf(first).toStdString();
        folderText = first.toStdString();
    }
    const QString folder = NearestFolder(QString::fromStdString(folderText));
    if (!Enter(folder))
        Enter(Root);
    const QString remembered = QString::fromStdString(driveText);
    if (Drive1->findData(remembered) >= 0 && IsUnder(path, remembered))
        SelectDrive(remembered);
}

std::string FolderLists::Drive() const {
    return drive.toStdString();
}

std::string FolderLists::Path() const {
    return path.toStdString();
}

// Enter in the list and in the box of the path goes into the folder; it must not reach the dialog, whose OK
// it would press.
bool FolderLists::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return false;
    if (watched == txtPath)
        (void)EnterTyped();
    else if (const QListWidgetItem* item = Dir1->currentItem())
        Dir1_Change(item->text());
    return true;
}

bool FolderLists::EnterTyped() {
    const QString typed = txtPath->text();
    if (typed == path || (!typed.contains(u'\\') && Enter(QDir::cleanPath(QDir(path).filePath(typed)))))
        return true;
    MsgBox(this, QString::fromUtf8(Fault::PathNotFound().what()));
    return false;
}

void FolderLists::Drive1_Change() {
    const QString chosen = Drive1->currentData().toString();
    const QString left = currentFolders.value(chosen, chosen);
    if (Enter(left) || Enter(chosen)) {
        SelectDrive(chosen);
        return;
    }
    SelectDrive(drive);
    MsgBox(this, u"Invalid Drive !"_s);
}

void FolderLists::Dir1_Change(const QString& name) {
    Enter(QDir::cleanPath(path + Root + name));
}

// Makes `folder` current in the process and in both lists; False leaves all as it was.
bool FolderLists::Enter(const QString& folder) {
    if (folder.isEmpty() || !QDir::setCurrent(folder))
        return false;
    path = folder;
    SelectDrive(DriveOf(path));
    List();
    return true;
}

void FolderLists::List() {
    constexpr auto Folders = QDir::Dirs | QDir::NoDotAndDotDot;
    txtPath->setText(path);
    Dir1->clear();
    if (path != Root)
        Dir1->addItem(FolderAbove);
    for (const QString& name :
         QDir(path).entryList(Folders, QDir::Name | QDir::IgnoreCase | QDir::LocaleAware)) {
        if (!name.contains(u'\\') && !IsWorkFolderName(name.toStdString()))
            Dir1->addItem(name);
    }
    Dir1->setCurrentRow(0);
}

void FolderLists::SelectDrive(const QString& chosen) {
    const QSignalBlocker quiet(Drive1);
    drive = chosen;
    if (IsUnder(path, drive))
        currentFolders[drive] = path;
    Drive1->setCurrentIndex(Drive1->findData(drive));
}

// The drive mounted deepest above `folder`.
QString FolderLists::DriveOf(const QString& folder) const {
    QString deepest = Root;
    for (int i = 0; i < Drive1->count(); ++i) {
        const QString candidate = Drive1->itemData(i).toString();
        if (IsUnder(folder, candidate) && candidate.size() > deepest.size())
            deepest = candidate;
    }
    return deepest;
}

} // namespace tracelet
