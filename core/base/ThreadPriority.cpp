#include "core/base/ThreadPriority.h"

#include <algorithm>

#include <sched.h>
#include <sys/resource.h>

namespace tracelet {
namespace {

constexpr int RaisedNice = -10; // as other programs take for sound

rlim_t SoftLimit(__rlimit_resource resource) {
    rlimit limit{};
    return getrlimit(resource, &limit) == 0 ? limit.rlim_cur : 0;
}

// Where the time in real time is limited, the system ends a program that uses it up; better to lose samples.
bool TakeRealTime() {
    if (SoftLimit(RLIMIT_RTTIME) != RLIM_INFINITY)
        return false;
    sched_param lowest{};
    lowest.sched_priority = sched_get_priority_min(SCHED_RR);
    return sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &lowest) == 0;
}

// The limit counts from nice value 20 down. Here id 0 stands for the calling thread alone.
void RaiseNiceness() {
    const int permitted = 20 - static_cast<int>(std::min<rlim_t>(SoftLimit(RLIMIT_NICE), 40));
    for (const int nice : {RaisedNice, permitted}) {
        if (nice >= getpriority(PRIO_PROCESS, 0) || setpriority(PRIO_PROCESS, 0, nice) == 0)
            return;
    }
}

} // namespace

void RaiseThreadPriority() noexcept {
    if (!TakeRealTime())
        RaiseNiceness();
}

} // namespace tracelet
