#pragma once

#include "tests/monkey/Random.h"

#include <QString>

class QWidget;

namespace tracelet {

// Random but plausible doings of a user with one widget or one window.

/// Clicks, drags, types, chooses or turns the wheel, as befits the widget.
void Poke(Random& random, QWidget& widget);

/// Pokes some visible and enabled widget of this window; most of them can be reached.
void PokeSomething(Random& random, QWidget& window);

/// Presses some key where the focus is.
void PressSomeKey(Random& random, QWidget& window);

/// Presses a mouse button on the widget, moves on, and releases it.
void Drag(Random& random, QWidget& widget);

/// Name for the diary.
[[nodiscard]] QString NameOf(const QWidget& widget);

} // namespace tracelet
