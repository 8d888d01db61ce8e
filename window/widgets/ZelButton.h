#pragma once

#include <QAbstractButton>

namespace tracelet {

/// Rocker switch: two positions, with a light and a caption ("AI", "DI") on it.
class ZelButton : public QAbstractButton {
    Q_OBJECT
    Q_PROPERTY(bool Value READ Value WRITE SetValue)
    Q_PROPERTY(QString Image READ Image)

public:
    explicit ZelButton(QWidget* parent = nullptr);

    [[nodiscard]] bool Value() const { return isChecked(); } ///< true: on
    /// Moves the switch; tells ValueChanged only when the position changes.
    void SetValue(bool on) { setChecked(on); }
    /// "PUSHROCKERSWITCH_ON" or "PUSHROCKERSWITCH_OFF".
    [[nodiscard]] QString Image() const;

    [[nodiscard]] QSize sizeHint() const override;

signals:
    void ValueChanged();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void PaintRocker(QPainter& painter, const QRectF& rocker) const;
    void PaintLight(QPainter& painter, const QRectF& upperHalf) const;
    void PaintCaption(QPainter& painter, const QRectF& lowerHalf) const;
};

} // namespace tracelet
