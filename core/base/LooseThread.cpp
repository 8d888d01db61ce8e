#include "core/base/LooseThread.h"

#include <utility>

namespace tracelet {

LooseThread::LooseThread(std::function<void()> body) {
    std::promise<void> promise;
    returned = promise.get_future();
    thread = std::thread([work = std::move(body), done = std::move(promise)]() mutable {
        work();
        work = nullptr; // what it owns goes before anyone learns that it has returned
        done.set_value();
    });
}

LooseThread::~LooseThread() {
    if (thread.joinable())
        thread.detach();
}

LooseThread& LooseThread::operator=(LooseThread&& other) noexcept {
    std::swap(returned, other.returned);
    std::swap(thread, other.thread);
    return *this;
}

bool LooseThread::HasReturnedBy(std::chrono::steady_clock::time_point deadline) {
    if (!thread.joinable())
        return true;
    if (returned.wait_until(deadline) != std::future_status::ready)
        return false;
    thread.join();
    return true;
}

} // namespace tracelet
