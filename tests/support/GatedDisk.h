#pragma once

#include "tests/support/GatedBoards.h"

namespace tracelet {

// A disk that stalls: while a gate is closed, no write, or no copy by the system, of the whole program comes
// to an end. Programs that close one link GatedDisk.cpp.
[[nodiscard]] Gate& WriteGate();
[[nodiscard]] Gate& CopyGate();

/// Closes a gate while it lives.
class Stall {
public:
    explicit Stall(Gate& disk) : gate(disk) { gate.Close(); }
    ~Stall() { gate.Open(); }
    Stall(const Stall&) = delete;
    Stall& operator=(const Stall&) = delete;

private:
    Gate& gate;
};

} // namespace tracelet
