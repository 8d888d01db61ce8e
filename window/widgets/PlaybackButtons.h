#pragma once

#include "window/widgets/Glyphs.h"

#include <QCheckBox>
#include <QPushButton>

namespace tracelet {

/// Check box that looks like a push button, for play and pause. Its text is the code of a symbol font, "4"
/// for play and ";" for pause; the button paints the sign itself, so that no such font is needed.
class PlayButton : public QCheckBox {
    Q_OBJECT

public:
    explicit PlayButton(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
};

/// Push button with a sign instead of a caption.
class GlyphButton : public QPushButton {
    Q_OBJECT

public:
    explicit GlyphButton(Glyph sign, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Glyph glyph;
};

} // namespace tracelet
