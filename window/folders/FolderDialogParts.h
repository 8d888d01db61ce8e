#pragma once

class QDialogButtonBox;
class QHBoxLayout;
class QLineEdit;
class QWidget;

namespace tracelet {

// What both dialogs that ask for a new folder have below their lists. The parts are children of `dialog`.

/// The box `txtFolderName` behind its label "Folder Name", and a button that puts date and time into it.
[[nodiscard]] QHBoxLayout* BuildFolderName(QLineEdit* txtFolderName, QWidget* dialog);

/// The buttons `OKButton`, which Enter in a text box presses too, and `BtnCancel`.
[[nodiscard]] QDialogButtonBox* BuildOKAndCancel(QWidget* dialog);

} // namespace tracelet
