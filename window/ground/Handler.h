#pragma once

#include "window/ground/MsgBox.h"

#include <exception>
#include <utility>

namespace tracelet {

/// Notes an error that ended a handler quietly in the logging category "tracelet.quiet", which is off unless
/// QT_LOGGING_RULES says "tracelet.quiet.debug=true".
void NoteQuietError(const std::exception& error);

/// Runs the body of an event handler; an error ends it and is shown by its description under `title`.
template <typename Body>
void Handler(QWidget* owner, const QString& title, Body&& body) {
    try {
        std::forward<Body>(body)();
    } catch (const std::exception& error) {
        MsgBox(owner, QString::fromUtf8(error.what()), title);
    }
}

/// Runs the body of an event handler; an error ends it quietly.
template <typename Body>
void QuietHandler(Body&& body) {
    try {
        std::forward<Body>(body)();
    } catch (const std::exception& error) {
        NoteQuietError(error);
    }
}

} // namespace tracelet
