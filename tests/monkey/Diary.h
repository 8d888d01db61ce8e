#pragma once

#include <QString>

namespace tracelet {

// What a run did last, for the one who reads of its failure.

/// Notes what is done next. It also tells the watchdog that the program is alive.
void Note(const QString& deed);

/// Tells the watchdog that the program is alive.
void Beat();

/// Prints what went wrong and the last deeds, and ends the program with a failure.
[[noreturn]] void Fail(const QString& what);

void Require(bool holds, const char* claim);

/// Fails the program once `seconds` pass without a sign of life.
void StartWatchdog(int seconds);

/// Deeds since the program began.
[[nodiscard]] int DeedCount();

} // namespace tracelet
