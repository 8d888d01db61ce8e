#pragma once

#include "core/input/PollPlan.h"

#include <chrono>
#include <functional>
#include <memory>

namespace tracelet {

/// Reads the ticks of a plan on a thread of its own, for boards whose reads may block. The thread owns all
/// that it touches: it is let go at once, even while a read never returns. All calls come from one other
/// thread.
class PollReader {
public:
    /// `announce` is called on the reading thread, once a tick that Wait gave up has been read. Raises when
    /// there is no thread to be had.
    PollReader(PollPlan plan, PollBoards boards, std::function<void()> announce);
    ~PollReader() { LetGo(); }
    PollReader(const PollReader&) = delete;
    PollReader& operator=(const PollReader&) = delete;

    [[nodiscard]] bool IsIdle() const; ///< Begin may be called
    void Begin();
    [[nodiscard]] bool Wait(std::chrono::milliseconds longest); ///< False when the read takes longer
    [[nodiscard]] bool HasRead() const;
    [[nodiscard]] PolledTick& Tick(); ///< what was read; from HasRead to End
    void End();                       ///< the tick has been handled

    /// No tick is begun and none announced any more.
    void LetGo();
    /// True while a read of one of these boards is under way, after LetGo too.
    [[nodiscard]] bool IsReading(const PollBoards& boards) const;

private:
    struct Work;
    static void Run(const std::shared_ptr<Work>& work);

    std::shared_ptr<Work> work;
};

} // namespace tracelet
