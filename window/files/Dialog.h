#pragma once

#include <QDialog>

#include <string>

class QLineEdit;

namespace tracelet {

class FolderLists;

/// Asks for the folder that a recording is saved in: a folder to go into and the name of a folder in it. The
/// three texts belong to the caller and outlive the dialog. OK stores them, whatever the name; Cancel, Escape
/// and the title bar's button empty the name and leave drive and folder.
class Dialog : public QDialog {
    Q_OBJECT

public:
    Dialog(const std::string& programFolder, std::string& szDrive, std::string& szDir,
           std::string& szNewFolder, QWidget* owner = nullptr);

    void reject() override;

private:
    void Build();
    void OKButton_Click();

    std::string& szDrive;
    std::string& szDir;
    std::string& szNewFolder;
    FolderLists* lists;
    QLineEdit* txtFolderName;
};

} // namespace tracelet
