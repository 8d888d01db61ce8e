#include "window/files/Dialog.h"

#include "window/folders/FolderDialogParts.h"
#include "window/folders/FolderLists.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tracelet {

Dialog::Dialog(const std::string& programFolder, std::string& drive, std::string& dir, std::string& newFolder,
               QWidget* owner)
    : QDialog(owner), szDrive(drive), szDir(dir), szNewFolder(newFolder), lists(new FolderLists(this)),
      txtFolderName(new QLineEdit(this)) {
    Build();
    lists->Load(programFolder, szDrive, szDir);
    txtFolderName->setFocus();
}

void Dialog::Build() {
    setObjectName(u"Dialog"_s);
    setWindowTitle(u"Save As"_s);
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lists, 1);
    layout->addLayout(BuildFolderName(txtFolderName, this));
    auto* buttons = BuildOKAndCancel(this);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { OKButton_Click(); });
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });
    layout->addWidget(buttons);
}

void Dialog::OKButton_Click() {
    szDrive = lists->Drive();
    szDir = lists->Path();
    szNewFolder = txtFolderName->text().toStdString();
    accept();
}

void Dialog::reject() {
    szNewFolder.clear();
    QDialog::reject();
}

} // namespace tracelet
