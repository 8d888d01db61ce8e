#include "core/base/ThreadPriority.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tracelet {
namespace {

struct Standing {
    int policy = -1;
    int priority = -1;
    int nice = 0;
    bool operator==(const Standing&) const = default;
};

// How a thread stands that has run `body`.
Standing After(const std::function<void()>& body) {
    Standing standing;
    std::thread([&] {
        body();
        sched_param param{};
        sched_getparam(0, &param);
        standing = {sched_getscheduler(0) & ~SCHED_RESET_ON_FORK, param.sched_priority,
                    getpriority(PRIO_PROCESS, 0)};
    }).join();
    return standing;
}

Standing Ordinary() {
    return After([] {});
}

bool MayTakeRealTime() {
    bool may = false;
    std::thread([&] {
        sched_param param{};
        param.sched_priority = sched_get_priority_min(SCHED_RR);
        may = sched_setscheduler(0, SCHED_RR, &param) == 0;
    }).join();
    return may;
}

// Runs `body` in a process of its own, as an ordinary user with these limits; gives what it returned, or -1
// where this user may not set them.
int WithLimits(rlim_t realTime, rlim_t nice, const std::function<int()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t Nobody = 65534;
        const rlimit rtprio{realTime, realTime};
        const rlimit niceness{nice, nice};
        const bool set = setrlimit(RLIMIT_RTPRIO, &rtprio) == 0 && setrlimit(RLIMIT_NICE, &niceness) == 0 &&
                         setresuid(Nobody, Nobody, Nobody) == 0;
        _exit(set ? body() : 255);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) != 255 ? WEXITSTATUS(status) : -1;
}

TEST(ThreadPriority, IsRealTimeWhereThatIsPermitted) {
    if (!MayTakeRealTime())
        GTEST_SKIP() << "real time is not permitted here";
    const Standing raised = After(RaiseThreadPriority);
    EXPECT_EQ(raised.policy, SCHED_RR);
    EXPECT_EQ(raised.priority, sched_get_priority_min(SCHED_RR));
    EXPECT_EQ(Ordinary().policy, SCHED_OTHER) << "only the thread that asked";
    Standing child;
    (void)After([&] {
        RaiseThreadPriority();
        child = Ordinary();
    });
    EXPECT_EQ(child.policy, SCHED_OTHER) << "a driver's own threads";
}

TEST(ThreadPriority, IsNotRealTimeWhereThatIsMeasuredOut) {
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_RTTIME, &before), 0);
    rlimit limited = before;
    limited.rlim_cur = 10'000'000; // microseconds
    ASSERT_EQ(setrlimit(RLIMIT_RTTIME, &limited), 0);
    const bool mayRaise = After([] { setpriority(PRIO_PROCESS, 0, -10); }).nice == -10;
    EXPECT_EQ(After(RaiseThreadPriority), (Standing{SCHED_OTHER, 0, mayRaise ? -10 : Ordinary().nice}));
    ASSERT_EQ(setrlimit(RLIMIT_RTTIME, &before), 0);
}

TEST(ThreadPriority, TakesWhatAnOrdinaryUserIsGranted) {
    const Standing before = Ordinary();
    const struct {
        rlim_t realTime;
        rlim_t nice;
        Standing expected;
    } cases[] = {{0, 0, before},                      // nothing
                 {0, 15, before},                     // nice 5 would be no gain
                 {0, 25, {SCHED_OTHER, 0, -5}},       // all that is granted
                 {0, 40, {SCHED_OTHER, 0, -10}},      // no more than is needed
                 {1, 0, {SCHED_RR, 1, before.nice}}}; // real time
    int skipped = 0;
    for (const auto& c : cases) {
        const int same =
            WithLimits(c.realTime, c.nice, [&] { return After(RaiseThreadPriority) == c.expected ? 1 : 0; });
        EXPECT_NE(same, 0) << c.realTime << " " << c.nice;
        skipped += same == -1 ? 1 : 0;
    }
    if (skipped != 0)
        GTEST_SKIP() << skipped << " cases: this user may not grant so much";
}

} // namespace
} // namespace tracelet
