#pragma once

#include <QWidget>

class QAbstractButton;

namespace tracelet {

/// Numeric display with a step-up and a step-down button. Shows its value with the pattern ".#####0" in
/// seven-segment digits, right-aligned.
class ZelLED : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double Value READ Value WRITE SetValue)
    Q_PROPERTY(QString Text READ Text)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)

public:
    explicit ZelLED(QWidget* parent = nullptr);

    [[nodiscard]] double Value() const { return value; }
    void SetValue(double newValue);
    [[nodiscard]] QString Text() const; ///< the digits shown, "1.000000" or ".200000"

    /// While off the buttons do nothing; the digits stay lit.
    [[nodiscard]] bool Enabled() const { return isEnabled(); }
    void SetEnabled(bool on) { setEnabled(on); }

    [[nodiscard]] QSize sizeHint() const override;

signals:
    void Step(bool up);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    double value = 0.0;
    QAbstractButton* up = nullptr;   ///< objectName "StepUp"
    QAbstractButton* down = nullptr; ///< objectName "StepDown"
};

} // namespace tracelet
