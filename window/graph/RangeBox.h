#pragma once

#include <QLineEdit>

namespace tracelet {

/// A box for an end of an axis. It shows the end rounded and keeps it as it is until another is typed.
class RangeBox : public QLineEdit {
public:
    using QLineEdit::QLineEdit;

    /// Shows an end of an axis that spans `span`, to a millionth of that.
    void Show(double end, double span);

    /// The end that was shown or, when the text is another, the number typed; other text raises "Type
    /// mismatch" or "Overflow".
    [[nodiscard]] double Number() const;

private:
    QString shown;
    double exact = 0.0;
};

} // namespace tracelet
