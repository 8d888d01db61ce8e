#pragma once

#include <QString>

class QWidget;

namespace tracelet {

/// Shows a modal message box with plain text and an OK button, and waits for it.
void MsgBox(QWidget* owner, const QString& text, const QString& title = QStringLiteral("Tracelet"));

} // namespace tracelet
