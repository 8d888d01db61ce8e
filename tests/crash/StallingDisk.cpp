// Loaded in front of the system's library: a disk that hangs. STALL_AFTER milliseconds after the first write
// to a work folder's file nothing that is written or synced there comes back, for STALL_FOR milliseconds.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

#include <dlfcn.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

std::chrono::milliseconds Setting(const char* name) {
    const char* text = std::getenv(name);
    return std::chrono::milliseconds(text != nullptr ? std::atoll(text) : 0);
}

bool IsWorkFile(int descriptor) {
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    std::array<char, 512> path{};
    const ssize_t length = readlink(link.c_str(), path.data(), path.size());
    const std::string_view text(path.data(), static_cast<std::size_t>(std::max<ssize_t>(0, length)));
    return text.find("/home/tl") != std::string_view::npos;
}

void Hang(int descriptor) {
    if (!IsWorkFile(descriptor))
        return;
    static const Clock::time_point begin = Clock::now() + Setting("STALL_AFTER");
    static const Clock::time_point end = begin + Setting("STALL_FOR");
    if (Clock::now() < begin || Clock::now() >= end)
        return;
    static const bool isTold = std::fputs("stalled\n", stderr) >= 0;
    (void)isTold;
    std::this_thread::sleep_until(end);
}

} // namespace

extern "C" {

ssize_t pwrite(int descriptor, const void* bytes, size_t count, off_t offset) {
    static auto* const real =
        reinterpret_cast<ssize_t (*)(int, const void*, size_t, off_t)>(dlsym(RTLD_NEXT, "pwrite"));
    Hang(descriptor);
    return real(descriptor, bytes, count, offset);
}

int fdatasync(int descriptor) {
    static auto* const real = reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "fdatasync"));
    Hang(descriptor);
    return real(descriptor);
}
}
