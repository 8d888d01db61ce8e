#pragma once

namespace tracelet {

/// Lets the calling thread run before the ordinary ones of a busy machine, as far as the system permits: at
/// the lowest real-time priority (RLIMIT_RTPRIO), else at a raised nice value (RLIMIT_NICE), else as it was.
/// Threads that it starts do not inherit real time. For threads that mostly wait.
void RaiseThreadPriority() noexcept;

} // namespace tracelet
