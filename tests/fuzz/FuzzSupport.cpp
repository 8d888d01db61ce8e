#include "tests/fuzz/FuzzTarget.h"

#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

namespace tracelet {

void Require(bool holds, std::string_view claim) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %.*s\n", static_cast<int>(claim.size()), claim.data());
    std::abort();
}

std::string FileInMemory(std::span<const std::byte> bytes) {
    static const int File = memfd_create("fuzz", MFD_CLOEXEC);
    Require(File >= 0, "a file in memory can be made");
    Require(ftruncate(File, 0) == 0, "it can be emptied");
    const ssize_t written = pwrite(File, bytes.data(), bytes.size(), 0);
    Require(written == static_cast<ssize_t>(bytes.size()), "it takes the bytes");
    return "/proc/self/fd/" + std::to_string(File);
}

} // namespace tracelet
