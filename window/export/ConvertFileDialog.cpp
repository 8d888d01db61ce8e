#include "window/export/ConvertFileDialog.h"

#include "window/folders/FolderDialogParts.h"
#include "window/folders/FolderLists.h"
#include "window/ground/MsgBox.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tracelet {

ConvertFileDialog::ConvertFileDialog(const std::string& programFolder, const TextSave& texts, bool bHisAI,
                                     bool bHisDI, QWidget* owner)
    : QDialog(owner), save(texts), lists(new FolderLists(this)), txtFolderName(new QLineEdit(this)),
      ChkAI(new QCheckBox(u"&Analog data"_s, this)), ChkDI(new QCheckBox(u"&Digital data"_s, this)) {
    Build();
    Offer(ChkAI, bHisAI, save.bTextSaveAI);
    Offer(ChkDI, bHisDI, save.bTextSaveDI);
    lists->Load(programFolder, save.szTextSaveDrive, save.szTextSaveDir);
    txtFolderName->setFocus();
}

void ConvertFileDialog::Build() {
    setObjectName(u"ConvertFileDialog"_s);
    setWindowTitle(u"Convert"_s);
    setModal(true);
    ChkAI->setObjectName(u"ChkAI"_s);
    ChkDI->setObjectName(u"ChkDI"_s);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lists, 1);
    layout->addLayout(BuildFolderName(txtFolderName, this));
    layout->addWidget(ChkAI);
    layout->addWidget(ChkDI);
    auto* buttons = BuildOKAndCancel(this);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { OKButton_Click(); });
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });
    layout->addWidget(buttons);
}

void ConvertFileDialog::Offer(QCheckBox* box, bool recorded, bool& flag) {
    box->setEnabled(recorded);
    box->setChecked(recorded);
    box->setToolTip(recorded ? u"Write these data as text"_s : u"The recording holds no such data"_s);
    flag = recorded;
    connect(box, &QCheckBox::toggled, box, [&flag](bool checked) { flag = checked; });
}

void ConvertFileDialog::OKButton_Click() {
    save.szTextSaveDrive = lists->Drive();
    save.szTextSaveDir = lists->Path();
    save.szTextSaveFolder = txtFolderName->text().toStdString();
    if (!save.szTextSaveFolder.empty())
        accept();
    else
        MsgBox(this, u"Folder Name should not be null"_s);
}

void ConvertFileDialog::reject() {
    save.szTextSaveFolder.clear();
    QDialog::reject();
}

} // namespace tracelet
