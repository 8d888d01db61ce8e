#pragma once

#include <QDir>
#include <QString>

class QWidget;

namespace tracelet {

/// Takes numbered pictures of windows into a folder.
class Pictures {
public:
    /// Makes the folder; raises when it cannot be written.
    explicit Pictures(const QString& folder);

    /// A picture of the widget as it stands, "NN-name.png". Menus and lists that pop up over it are on it.
    void Take(QWidget& widget, const QString& name);

    [[nodiscard]] int Count() const { return count; }
    [[nodiscard]] QString Folder() const { return folder.absolutePath(); }

private:
    QDir folder;
    int count = 0;
};

} // namespace tracelet
