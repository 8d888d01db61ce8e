#pragma once

#include <QWidget>

namespace tracelet {

/// Slider over doubles. A value written by the program beyond the range is clamped when ClampsProgram is
/// set, else kept as it is; the user moves within the range.
class ZelSlider : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double Value READ Value WRITE SetValue NOTIFY Changed)
    Q_PROPERTY(double Minimum READ Minimum)
    Q_PROPERTY(double Maximum READ Maximum)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)

public:
    explicit ZelSlider(Qt::Orientation orientation, QWidget* parent = nullptr);

    [[nodiscard]] double Value() const { return value; }
    /// Tells Changed when the value changes.
    void SetValue(double newValue);
    [[nodiscard]] double Minimum() const { return minimum; }
    [[nodiscard]] double Maximum() const { return maximum; }
    /// Range that the user moves in; does not touch the value.
    void SetRange(double lowest, double highest);
    /// Equal steps of the thumb multiply the value instead of adding to it (range above 0 only).
    void SetLogarithmic(bool on);
    void SetClampsProgram(bool on);

    /// The slider's own flag, apart from the state of the frame around it: while off, changes are not acted
    /// on (the owner asks for it in its handler) and the user cannot move it.
    [[nodiscard]] bool Enabled() const { return enabledFlag; }
    void SetEnabled(bool on);

    [[nodiscard]] QSize sizeHint() const override;

signals:
    void Changed(double value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    Qt::Orientation orientation;
    double value = 0.0;
    double minimum = 0.0;
    double maximum = 100.0;
    bool logarithmic = false;
    bool clampsProgram = true;
    bool enabledFlag = true;
    bool dragging = false;
};

} // namespace tracelet
