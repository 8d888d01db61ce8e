#pragma once

#include "tests/support/OnModalDialog.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <string>
#include <vector>

namespace tracelet {

/// Answers modal message boxes while it lives: records text and title of each and presses its only button.
/// A box that no test asked about (Take was not called) fails the test when the recorder goes.
class MessageBoxes : public QObject {
public:
    struct Box {
        std::string text;
        std::string title;
        bool operator==(const Box&) const = default;
    };

    MessageBoxes();
    ~MessageBoxes() override;

    /// The boxes since the last call, oldest first.
    [[nodiscard]] std::vector<Box> Take();

    /// Runs while the next box is open, before it is answered.
    void WhenNextOpens(std::function<void()> action) { beforeAnswer = std::move(action); }

private:
    void Answer();

    QTimer poll;
    std::vector<Box> boxes;
    std::function<void()> beforeAnswer;
};

void PrintTo(const MessageBoxes::Box& box, std::ostream* out);

} // namespace tracelet
