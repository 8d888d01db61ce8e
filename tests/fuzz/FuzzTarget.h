#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What a fuzz target consists of. FuzzMain.cpp, or libFuzzer, calls the first.

/// Takes any bytes; must neither crash nor hang nor take much more memory than the input has bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace tracelet {

/// Good and nearly good inputs that FuzzMain.cpp cuts and changes.
[[nodiscard]] std::vector<std::string> FuzzSeeds();

/// Ends the program with `claim` unless it holds.
void Require(bool holds, std::string_view claim);

/// Path of a file in memory that holds `bytes`, for readers that open files; good until the next call.
[[nodiscard]] std::string FileInMemory(std::span<const std::byte> bytes);

} // namespace tracelet
