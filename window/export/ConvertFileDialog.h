#pragma once

#include <QDialog>

#include <string>

class QCheckBox;
class QLineEdit;

namespace tracelet {

class FolderLists;

/// Where a conversion goes and what it writes. The members belong to the caller and outlive the dialog.
struct TextSave {
    std::string& szTextSaveDrive;  ///< drive last chosen, "" before the first time
    std::string& szTextSaveDir;    ///< folder that the new one is made in
    std::string& szTextSaveFolder; ///< name of the new folder; "" when cancelled
    bool& bTextSaveAI;             ///< write "AI.xlt"
    bool& bTextSaveDI;             ///< write "DI.xlt"
};

/// Asks for the new folder that a recording is converted into, and for which of its data. The check boxes set
/// their flags at once; drive, folder and name are stored by OK, which refuses an empty name. Cancel, Escape
/// and the title bar's button empty the name and leave everything else.
class ConvertFileDialog : public QDialog {
    Q_OBJECT

public:
    /// `bHisAI` and `bHisDI` tell what the recording holds; only that can be chosen.
    ConvertFileDialog(const std::string& programFolder, const TextSave& save, bool bHisAI, bool bHisDI,
                      QWidget* owner = nullptr);

    void reject() override;

private:
    void Build();
    static void Offer(QCheckBox* box, bool recorded, bool& flag);
    void OKButton_Click();

    TextSave save;
    FolderLists* lists;
    QLineEdit* txtFolderName;
    QCheckBox* ChkAI;
    QCheckBox* ChkDI;
};

} // namespace tracelet
