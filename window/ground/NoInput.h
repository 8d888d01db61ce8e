#pragma once

#include <QObject>

class QWidget;

namespace tracelet {

/// While it lives, mouse, keys and requests to close a window do nothing, so that the event loop can run
/// inside an event handler: windows are painted and timers go on.
class NoInput : public QObject {
public:
    NoInput();

    /// Lets input through to this dialog, none again with nullptr.
    void Except(const QWidget* dialog) { allowed = dialog; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool IsAllowed(const QObject* watched) const;

    const QWidget* allowed = nullptr;
};

} // namespace tracelet
