#pragma once

#include <QString>

#include <utility>

namespace tracelet {

/// Makes a widget that bears `name` as its object name. Its parent, or the layout it goes into, owns it.
template <typename Widget, typename... Arguments>
[[nodiscard]] Widget* Named(const QString& name, Arguments&&... arguments) {
    auto* widget = new Widget(std::forward<Arguments>(arguments)...);
    widget->setObjectName(name);
    return widget;
}

template <typename Widget, typename... Arguments>
[[nodiscard]] Widget* Named(const char* name, Arguments&&... arguments) {
    return Named<Widget>(QString::fromLatin1(name), std::forward<Arguments>(arguments)...);
}

} // namespace tracelet
