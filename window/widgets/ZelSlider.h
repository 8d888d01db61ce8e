#pragma once

#include "core/layout/SliderScale.h"

#include <QWidget>

namespace tracelet {

/// Slider over doubles. A value written by the program beyond the range is clamped when ClampsProgram is
/// set, else kept as it is; the user moves within the range: click and drag, arrow keys and wheel (a
/// hundredth of the groove), page keys (a tenth), Home and End.
class ZelSlider : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double Value READ Value WRITE SetValue NOTIFY Changed)
    Q_PROPERTY(double Minimum READ Minimum)
    Q_PROPERTY(double Maximum READ Maximum)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)

public:
    explicit ZelSlider(Qt::Orientation direction, QWidget* parent = nullptr);

    [[nodiscard]] double Value() const { return value; }
    /// Tells Changed when the value changes. Not a number is ignored.
    void SetValue(double newValue);
    [[nodiscard]] double Minimum() const { return scale.minimum; }
    [[nodiscard]] double Maximum() const { return scale.maximum; }
    /// Range that the user moves in; does not touch the value. Ends in the wrong order or not finite raise
    /// "Overflow".
    void SetRange(double lowest, double highest);
    /// Equal steps of the thumb multiply the value instead of adding to it (range above 0 only).
    void SetLogarithmic(bool on);
    void SetClampsProgram(bool on) { clampsProgram = on; }

    /// The slider's own flag, apart from the state of the frame around it: while off, changes are not acted
    /// on (the owner asks for it in its handler) and the user cannot move it.
    [[nodiscard]] bool Enabled() const { return enabledFlag; }
    void SetEnabled(bool on);

    /// What every gesture ends in: the value, brought into the range, unless the slider is off.
    void MoveByUser(double newValue);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    void Changed(double value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    [[nodiscard]] bool IsVertical() const { return orientation == Qt::Vertical; }
    [[nodiscard]] bool MovableByUser() const { return enabledFlag && isEnabled(); }
    void Store(double newValue);
    /// Groove that the thumb's middle runs along, from the lower end to the upper one.
    [[nodiscard]] QLineF Groove() const;
    [[nodiscard]] double FractionAt(QPointF position) const;

    Qt::Orientation orientation;
    SliderScale scale;
    double value = 0.0;
    bool clampsProgram = true;
    bool enabledFlag = true;
    bool dragging = false;
    double grabOffset = 0.0; ///< fraction between the thumb and where it was taken
};

} // namespace tracelet
