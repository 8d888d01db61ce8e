#pragma once

#include <QWidget>

#include <initializer_list>

namespace tracelet {

/// In their order: the focus of one that is disabled goes on to the next in the tab order that is enabled by
/// then.
inline void EnableAll(std::initializer_list<QWidget*> widgets, bool enable) {
    for (QWidget* widget : widgets)
        widget->setEnabled(enable);
}

} // namespace tracelet
