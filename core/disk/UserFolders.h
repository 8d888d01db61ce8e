#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tracelet {

class UniqueFd;

/// The user's folder for what the program keeps between two runs, a native path: "tracelet" in
/// XDG_STATE_HOME, by default in ~/.local/state. It is made where it is not there; "" where it cannot be.
[[nodiscard]] std::string StateFolder();

/// Holds a folder for this process, until the object goes or the process ends: nothing while another one
/// holds it, or when it is not there.
[[nodiscard]] std::unique_ptr<UniqueFd> HoldFolder(std::string_view path) noexcept;

/// What tells this run of the system from every other; "" where it cannot be told.
[[nodiscard]] std::string BootId();

/// Bytes that the user may still write to the disk of this folder; -1 when it cannot be told.
[[nodiscard]] std::int64_t FreeBytes(std::string_view folder) noexcept;

/// Whether both are there and on the same disk.
[[nodiscard]] bool AreOnOneDisk(std::string_view a, std::string_view b) noexcept;

} // namespace tracelet
