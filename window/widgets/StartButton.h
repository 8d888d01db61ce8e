#pragma once

#include <QPushButton>

namespace tracelet {

/// The button that people press: large, green with a play sign while it says "Start", red with a stop sign
/// while it says anything else, so that a running session is seen from afar.
class StartButton : public QPushButton {
    Q_OBJECT

public:
    explicit StartButton(const QString& caption, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] bool Starts() const { return text() == u"Start"; }
    [[nodiscard]] double SignSize() const;
    [[nodiscard]] QColor FaceColor() const;
    void PaintFace(QPainter& painter, const QColor& face) const;
    void PaintCaption(QPainter& painter, const QColor& ink) const;
};

} // namespace tracelet
