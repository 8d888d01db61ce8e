#include "bench/Measure.h"

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <unistd.h>

namespace {

std::atomic<std::int64_t> allocations{0};

double Seconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

} // namespace

// The C library's own allocator stands behind these; Qt calls malloc itself, so counting operator new is not
// enough.
extern "C" {
void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* memory, std::size_t bytes);

void* malloc(std::size_t bytes) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(bytes);
}
void* calloc(std::size_t count, std::size_t bytes) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_calloc(count, bytes);
}
void* realloc(void* memory, std::size_t bytes) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_realloc(memory, bytes);
}
}

namespace measure {

double CpuSeconds() {
    return Seconds(CLOCK_PROCESS_CPUTIME_ID);
}

double WallSeconds() {
    return Seconds(CLOCK_MONOTONIC);
}

double ResidentMiB() {
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return static_cast<double>(resident * sysconf(_SC_PAGESIZE)) / (1 << 20);
}

std::int64_t Allocations() {
    return allocations;
}

} // namespace measure
