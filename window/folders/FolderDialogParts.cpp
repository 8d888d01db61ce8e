#include "window/folders/FolderDialogParts.h"

#include "window/ground/Named.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

QToolButton* BuildDateName(QLineEdit* txtFolderName, QWidget* dialog) {
    auto* button = Named<QToolButton>("BtnDateName", dialog);
    button->setText(u"Date and time"_s);
    button->setToolTip(u"Start the name from date and time"_s);
    QObject::connect(button, &QToolButton::clicked, txtFolderName, [txtFolderName] {
        txtFolderName->setText(QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH-mm-ss"_s));
        txtFolderName->setFocus();
        txtFolderName->end(false);
    });
    return button;
}

} // namespace

QHBoxLayout* BuildFolderName(QLineEdit* txtFolderName, QWidget* dialog) {
    txtFolderName->setObjectName(u"txtFolderName"_s);
    txtFolderName->setAccessibleName(u"Folder Name"_s);
    txtFolderName->setToolTip(u"Name of the folder that is made in the current one"_s);
    auto* label = new QLabel(u"Folder Name"_s, dialog);
    label->setBuddy(txtFolderName);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(txtFolderName, 1);
    row->addWidget(BuildDateName(txtFolderName, dialog));
    return row;
}

QDialogButtonBox* BuildOKAndCancel(QWidget* dialog) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(u"OKButton"_s);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(u"BtnCancel"_s);
    buttons->button(QDialogButtonBox::Ok)->setToolTip(u"Make the folder, and write into it"_s);
    buttons->button(QDialogButtonBox::Cancel)->setToolTip(u"Write nothing"_s);
    return buttons;
}

} // namespace tracelet
