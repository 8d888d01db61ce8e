#pragma once

#include "window/ground/NoInput.h"

#include <QElapsedTimer>

#include <chrono>
#include <memory>

class QDialog;
class QProgressBar;
class QWidget;

namespace tracelet {

/// Shows how far a conversion is while it runs inside an event handler. A modal bar appears once it has taken
/// longer than `patience`, and goes with the object. There is no input as long as the object lives.
class ConvertProgress {
public:
    explicit ConvertProgress(QWidget* owner,
                             std::chrono::milliseconds patience = std::chrono::milliseconds(500));
    ~ConvertProgress();
    ConvertProgress(const ConvertProgress&) = delete;
    ConvertProgress& operator=(const ConvertProgress&) = delete;

    /// To be called often with the fraction that is done, 0 to 1.
    void Show(double fraction);

private:
    void Build();

    const NoInput noInput;
    QWidget* owner;
    std::chrono::milliseconds patience;
    QElapsedTimer sinceStart;
    QElapsedTimer sinceUpdate;
    std::unique_ptr<QDialog> dialog; // none before it is shown
    QProgressBar* bar = nullptr;
};

} // namespace tracelet
