#pragma once

#include <QWidget>

class QAbstractButton;

namespace tracelet {

/// Numeric display with a step-up and a step-down button. Shows its value with the pattern ".#####0" in
/// seven-segment digits, right-aligned, the point always at the same place; a number too small for that shows
/// as a power of ten. A number too long for it shows as bars, never in part; the tooltip then has it.
class ZelLED : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double Value READ Value WRITE SetValue)
    Q_PROPERTY(QString Text READ Text)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)

public:
    explicit ZelLED(QWidget* parent = nullptr);

    [[nodiscard]] double Value() const { return value; }
    void SetValue(double newValue);
    [[nodiscard]] QString Text() const; ///< the digits shown: "1.000000", ".200000", "2.5e-7"

    /// While off neither buttons, keys nor wheel tell a step; the digits stay lit. A flag of its own, so that
    /// a handler that switches it off and on does not lose the keyboard's focus.
    [[nodiscard]] bool Enabled() const { return enabledFlag; }
    void SetEnabled(bool on) { enabledFlag = on; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    void Step(bool up);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void TellStep(bool up);
    [[nodiscard]] QRectF DigitsArea() const;
    void ShowTextWhereDigitsCannot();

    double value = 0.0;
    bool enabledFlag = true;
    int wheelRest = 0;               ///< eighths of a degree not told as a step yet
    QAbstractButton* up = nullptr;   ///< objectName "StepUp"
    QAbstractButton* down = nullptr; ///< objectName "StepDown"
};

} // namespace tracelet
