#pragma once

#include "core/input/SessionStatus.h"

#include <QLabel>

#include <vector>

namespace tracelet {

/// One line of facts side by side; where it is short, the less important ones are told briefly or not at all.
/// Its text has all of them whole, and so has its tooltip.
class StatusLine : public QLabel {
public:
    explicit StatusLine(QWidget* parent = nullptr);

    void Show(const SessionStatus& status);

    [[nodiscard]] QSize sizeHint() const override;        ///< of all facts
    [[nodiscard]] QSize minimumSizeHint() const override; ///< of those that are always told

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int WidthOf(const std::string& text) const;
    [[nodiscard]] std::vector<StatusField> Fitting(int room) const;
    [[nodiscard]] int WidthIn(int room) const;

    std::vector<StatusField> fields;
};

} // namespace tracelet
