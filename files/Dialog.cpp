#include "files/Dialog.h"

#include "files/FolderLists.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

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
    setObjectName(u"Dialog"_qs);
    setWindowTitle(u"Save As"_qs);
    setModal(true);
    txtFolderName->setObjectName(u"txtFolderName"_qs);
    txtFolderName->setAccessibleName(u"Folder Name"_qs);
    auto* label = new QLabel(u"&Folder Name"_qs, this);
    label->setBuddy(txtFolderName);
    auto* name = new QHBoxLayout;
    name->addWidget(label);
    name->addWidget(txtFolderName, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lists, 1);
    layout->addLayout(name);
    layout->addWidget(BuildButtons());
}

QDialogButtonBox* Dialog::BuildButtons() {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName(u"OKButton"_qs);
    ok->setDefault(true); // Enter in the name presses it
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(u"BtnCancel"_qs);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { OKButton_Click(); });
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });
    return buttons;
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
