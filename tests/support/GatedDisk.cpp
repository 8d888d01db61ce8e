#include "tests/support/GatedDisk.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace tracelet {

Gate& WriteGate() {
    static Gate gate;
    return gate;
}

Gate& CopyGate() {
    static Gate gate;
    return gate;
}

} // namespace tracelet

// These stand in for the system library's.

extern "C" ssize_t pwrite(int file, const void* bytes, size_t count, off_t offset) {
    tracelet::WriteGate().Pass();
    return syscall(SYS_pwrite64, file, bytes, count, offset);
}

extern "C" ssize_t copy_file_range(int from, off_t* fromOffset, int to, off_t* toOffset, size_t count,
                                   unsigned flags) {
    tracelet::CopyGate().Pass();
    return syscall(SYS_copy_file_range, from, fromOffset, to, toOffset, count, flags);
}
