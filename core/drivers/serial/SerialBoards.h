#pragma once

#include "core/boards/BoardList.h"
#include "core/drivers/serial/LineReader.h"

#include <string>
#include <vector>

namespace tracelet {

/// Appends the serial lines of this machine, which `folder` lists, and what `file` names beside them, those
/// that are not in the list yet. None of them is opened, and none is ever selected by itself.
void FindSerialBoards(BoardList& boards, const std::string& folder = "/dev/serial/by-id",
                      const std::string& file = "/etc/tracelet/serial.conf");

/// What the driver's file names: an address a line, a path or "tcp:HOST:PORT", and behind it the rate of a
/// serial line where it is known ("/dev/ttyUSB0 9600"). "#" begins a comment. Lines that say anything else
/// count as absent.
[[nodiscard]] std::vector<LineSource> SourcesIn(const std::string& text);

/// The name for people of an entry of /dev/serial/by-id: "usb-Maker_Thing_123-if00-port0" is "Maker Thing
/// 123".
[[nodiscard]] std::string NameOfLine(const std::string& entry);

} // namespace tracelet
