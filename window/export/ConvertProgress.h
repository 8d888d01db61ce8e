#pragma once

#include <QElapsedTimer>
#include <QObject>

#include <chrono>
#include <memory>

class QDialog;
class QProgressBar;
class QWidget;

namespace tracelet {

/// Shows how far a conversion is while it runs inside an event handler. A modal bar appears once it has taken
/// longer than `patience`, and goes with the object. Mouse, keys and requests to close a window do nothing
/// as long as the object lives; windows are painted and timers go on.
class ConvertProgress : public QObject {
    Q_OBJECT

public:
    explicit ConvertProgress(QWidget* owner,
                             std::chrono::milliseconds patience = std::chrono::milliseconds(500));
    ~ConvertProgress() override;

    /// To be called often with the fraction that is done, 0 to 1.
    void Show(double fraction);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Build();

    QWidget* owner;
    std::chrono::milliseconds patience;
    QElapsedTimer sinceStart;
    QElapsedTimer sinceUpdate;
    std::unique_ptr<QDialog> dialog; // none before it is shown
    QProgressBar* bar = nullptr;
};

} // namespace tracelet
