#pragma once

#include <QLineEdit>

namespace tracelet {

/// A box for an end of an axis. Its text has all digits; while nobody is about to type, it is drawn rounded.
class RangeBox : public QLineEdit {
public:
    using QLineEdit::QLineEdit;

    /// Shows an end of an axis that spans `span`, drawn to a millionth of that.
    void Show(double end, double span);

    /// The end that was shown or, when the text is another, the number typed; other text raises "Type
    /// mismatch" or "Overflow".
    [[nodiscard]] double Number() const;

    /// What is drawn.
    [[nodiscard]] QString Drawn() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString shown;
    QString rounded;
    double exact = 0.0;
};

} // namespace tracelet
