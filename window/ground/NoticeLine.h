#pragma once

#include <QLabel>

namespace tracelet {

/// One line of text at the window's foot: what happened that is worth a word but no message box. A text that
/// is too long ends in "…"; its tooltip tells it whole.
class NoticeLine : public QLabel {
public:
    explicit NoticeLine(QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override; ///< one line, however short

    /// Shows a text until the next; an empty one clears the line.
    void Show(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tracelet
