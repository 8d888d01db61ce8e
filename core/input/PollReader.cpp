#include "core/input/PollReader.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace tracelet {

struct PollReader::Work {
    enum class State { Idle, Reading, Read };

    const PollPlan plan;
    const PollBoards boards;
    PolledTick tick{}; // the thread's while Reading, else the caller's

    mutable std::mutex mutex{}; // of all below
    std::condition_variable changed{};
    std::function<void()> announce;
    State state = State::Idle;
    bool isLate = false; // nobody waits for the read any more
    bool isLetGo = false;

    [[nodiscard]] bool Is(State wanted) const {
        const std::lock_guard lock(mutex);
        return state == wanted;
    }
};

PollReader::PollReader(PollPlan plan, PollBoards boards, std::function<void()> announce)
    : work(new Work{.plan = std::move(plan), .boards = std::move(boards), .announce = std::move(announce)}) {
    std::thread([present = work] { Run(present); }).detach();
}

void PollReader::Run(const std::shared_ptr<Work>& work) {
    std::unique_lock lock(work->mutex);
    for (;;) {
        work->changed.wait(lock, [&] { return work->isLetGo || work->state == Work::State::Reading; });
        if (work->isLetGo) {
            work->state = Work::State::Idle;
            return;
        }
        lock.unlock();
        ReadTick(work->plan, work->boards, work->tick);
        lock.lock();
        work->state = Work::State::Read;
        work->changed.notify_all();
        if (work->isLate && !work->isLetGo)
            work->announce();
    }
}

bool PollReader::IsIdle() const {
    return work->Is(Work::State::Idle);
}

void PollReader::Begin() {
    const std::lock_guard lock(work->mutex);
    work->state = Work::State::Reading;
    work->isLate = false;
    work->changed.notify_all();
}

bool PollReader::Wait(std::chrono::milliseconds longest) {
    std::unique_lock lock(work->mutex);
    work->isLate =
        !work->changed.wait_for(lock, longest, [this] { return work->state == Work::State::Read; });
    return !work->isLate;
}

bool PollReader::HasRead() const {
    return work->Is(Work::State::Read);
}

PolledTick& PollReader::Tick() {
    return work->tick;
}

void PollReader::End() {
    const std::lock_guard lock(work->mutex);
    work->state = Work::State::Idle;
}

void PollReader::LetGo() {
    const std::lock_guard lock(work->mutex);
    work->isLetGo = true;
    if (work->state == Work::State::Read) // nobody shall take what was read any more
        work->state = Work::State::Idle;
    work->changed.notify_all();
}

bool PollReader::IsReading(const PollBoards& boards) const {
    const PollBoards& held = work->boards;
    const auto holds = [&](const std::shared_ptr<AnalogBoard>& board) {
        return board && (board == held.analog || board == held.thermocouple);
    };
    return work->Is(Work::State::Reading) && (holds(boards.analog) || holds(boards.thermocouple) ||
                                              (boards.digital && boards.digital == held.digital));
}

} // namespace tracelet
