#include "window/controls/BufferedInput.h"

#include "core/base/RunTimeError.h"
#include "core/input/DriverCall.h"

#include <QPointer>

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace tracelet {
namespace {

// How long halves are handed over before other events get their turn, unless one half takes longer.
constexpr std::chrono::milliseconds Turn{5};
// How long a board may take to stop.
constexpr std::chrono::seconds Patience{2};
constexpr const char* NoAnswer = "The board does not answer; it can be used again once it does";

// Takes one from the count; false when it is 0.
bool TakeOne(int descriptor) {
    std::uint64_t one = 0;
    return read(descriptor, &one, sizeof one) == sizeof one;
}

void Add(int descriptor, std::uint64_t items) {
    [[maybe_unused]] const auto written = write(descriptor, &items, sizeof items);
}

// Stopping calls the driver, which may take its time; where there is no thread left, it is called all the
// same.
LooseThread StopOnAThread(const std::shared_ptr<StreamReader>& reader) {
    try {
        return LooseThread([reader] { reader->Stop(); });
    } catch (const std::system_error&) {
        reader->Stop();
        return {};
    }
}

} // namespace

BufferedInput::BufferedInput(QObject* parent)
    : QObject(parent),
      wakeUp(std::make_shared<const UniqueFd>(eventfd(0, EFD_SEMAPHORE | EFD_NONBLOCK | EFD_CLOEXEC))),
      notifier(wakeUp->Get(), QSocketNotifier::Read) {
    notifier.setEnabled(false);
    connect(&notifier, &QSocketNotifier::activated, this, &BufferedInput::HandOn);
}

BufferedInput::~BufferedInput() {
    Drop();
}

void BufferedInput::Start(const std::shared_ptr<AnalogBoard>& board, const StreamSetup& setup,
                          std::size_t halfSamples, std::size_t queueBytes) {
    if (IsRunning() || stopping)
        throw RunTimeError("The analog input is running already");
    RequireAnswer(*board);
    Drop();
    StreamPlan plan;
    plan.form = setup.form;
    plan.scanSamples = setup.channels.size();
    plan.halfSamples = halfSamples;
    plan.totalSamples = setup.totalSamples;
    auto fresh =
        std::make_shared<SampleQueue>(halfSamples * plan.SampleBytes(), queueBytes, plan.totalSamples != 0);
    CallDriver([&] { board->StartStream(setup); });
    try {
        auto started = std::make_shared<StreamReader>(
            board, fresh, plan, [shared = wakeUp](std::uint64_t items) { Add(shared->Get(), items); });
        reading = LooseThread([started] { started->Run(); });
        reader = std::move(started);
    } catch (const std::exception&) {
        CallDriver([&] { board->StopStream(); });
        throw Fault::OutOfMemory();
    }
    queue = std::move(fresh);
    scanBytes = plan.scanSamples * plan.SampleBytes();
    halves = 0;
    lastHalf = plan.totalSamples / halfSamples;
    notifier.setEnabled(true);
}

void BufferedInput::RequireAnswer(const AnalogBoard& board) {
    std::erase_if(gone, [](Gone& one) { return one.stopper.HasReturned() && one.reading.HasReturned(); });
    if (std::ranges::any_of(gone, [&](const Gone& one) { return one.board == &board; }))
        throw RunTimeError(NoAnswer);
}

void BufferedInput::EndReading() {
    if (!reader)
        return;
    const auto deadline = std::chrono::steady_clock::now() + Patience;
    LooseThread stopper = StopOnAThread(reader);
    const bool stopped = stopper.HasReturnedBy(deadline);
    if (!reading.HasReturnedBy(deadline) || !stopped) {
        fault = NoAnswer;
        gone.push_back({&reader->Board(), std::move(stopper), std::move(reading)});
    }
    reader.reset();
}

std::string BufferedInput::Stop() {
    if (stopping)
        return {};
    notifier.setEnabled(false);
    EndReading();
    stopping = true;
    const QPointer<BufferedInput> self(this);
    HandRestOver();
    if (!self)
        return {};
    stopping = false;
    std::string untold = std::move(fault);
    Drop();
    return untold;
}

void BufferedInput::Drop() {
    notifier.setEnabled(false);
    EndReading();
    queue.reset();
    fault.clear();
    while (TakeOne(wakeUp->Get())) {
    }
}

// A handler may drop the rest, or this.
void BufferedInput::HandRestOver() {
    const QPointer<BufferedInput> self(this);
    const std::shared_ptr<SampleQueue> present = queue;
    while (self && present && queue == present) {
        const SampleQueue::Item item = present->Take();
        if (item.kind == SampleQueue::Kind::None) {
            const std::span<const std::byte> rest = present->Rest();
            if (rest.size() >= scanBytes)
                HandHalfOver(rest.first(rest.size() - rest.size() % scanBytes));
            return;
        }
        if (item.kind != SampleQueue::Kind::Failure)
            HandOver(item);
        else if (fault.empty())
            fault = item.text;
    }
}

void BufferedInput::HandOn() {
    if (handingOver) {
        notifier.setEnabled(false); // until the handler is done
        return;
    }
    const QPointer<BufferedInput> self(this);
    const auto end = std::chrono::steady_clock::now() + Turn;
    do {
        if (!queue || !TakeOne(wakeUp->Get()))
            break;
        const std::shared_ptr<SampleQueue> present = queue; // the samples outlive a stop by their receiver
        handingOver = true;
        HandOver(present->Take());
        if (!self)
            return;
        handingOver = false;
    } while (std::chrono::steady_clock::now() < end);
    notifier.setEnabled(queue != nullptr);
}

void BufferedInput::HandOver(const SampleQueue::Item& item) {
    switch (item.kind) {
    case SampleQueue::Kind::Half:
        HandHalfOver(item.half);
        return;
    case SampleQueue::Kind::Loss:
        emit Lost();
        return;
    case SampleQueue::Kind::Failure:
        EndReading();
        emit Failed(QString::fromStdString(item.text));
        return;
    case SampleQueue::Kind::None:
        return;
    }
}

void BufferedInput::HandHalfOver(std::span<const std::byte> samples) {
    ++halves;
    if (halves == lastHalf)
        EndReading();
    emit Half(halves % 2 == 1, samples);
}

} // namespace tracelet
