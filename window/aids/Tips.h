#pragma once

#include <QHash>
#include <QObject>
#include <QString>

#include <functional>

class QWidget;

namespace tracelet {

/// Tooltips of a window's controls, made when the pointer rests on one: what a control that is enabled does,
/// or why one that is disabled cannot be used. A tooltip that a control has of its own goes first.
class Tips : public QObject {
public:
    using Reason = std::function<QString()>;

    /// Owned by the window.
    explicit Tips(QWidget* window);

    /// `why` tells what a disabled control waits for; it is asked only then.
    void Add(QWidget* control, const QString& what, const Reason& why = {});
    /// The same with a reason that never changes.
    void Add(QWidget* control, const QString& what, const QString& why);

    /// What is told of a control, or else of what it lies in; "" for nothing.
    [[nodiscard]] QString Of(const QWidget* control) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Tip {
        QString what;
        Reason why;
    };

    QWidget* window;
    QHash<const QWidget*, Tip> tips;
};

} // namespace tracelet
