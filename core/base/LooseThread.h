#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <thread>

namespace tracelet {

/// A thread that is waited for a while and then let go: what it calls may never return. What its body
/// touches, the body has to own.
class LooseThread {
public:
    LooseThread() = default; ///< has returned
    /// Starts `body`, which must not throw. Raises std::system_error when there is no thread to be had.
    explicit LooseThread(std::function<void()> body);
    ~LooseThread();
    LooseThread(LooseThread&& other) noexcept = default;
    LooseThread& operator=(LooseThread&& other) noexcept;

    /// Waits for the body; false when it has not returned by then.
    [[nodiscard]] bool HasReturnedBy(std::chrono::steady_clock::time_point deadline);
    [[nodiscard]] bool HasReturned() { return HasReturnedBy({}); }

private:
    std::future<void> returned;
    std::thread thread;
};

} // namespace tracelet
