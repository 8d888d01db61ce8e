#include "devices/controls/BufferedInput.h"

#include "base/RunTimeError.h"

#include <QPointer>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace tracelet {
namespace {

// How long halves are handed over before other events get their turn, unless one half takes longer.
constexpr std::chrono::milliseconds Turn{5};

int NewWakeUp() {
    const int descriptor = eventfd(0, EFD_SEMAPHORE | EFD_NONBLOCK | EFD_CLOEXEC);
    if (descriptor < 0)
        throw Fault::FromErrno(errno);
    return descriptor;
}

// Takes one from the count; false when it is 0.
bool TakeOne(int descriptor) {
    std::uint64_t one = 0;
    return read(descriptor, &one, sizeof one) == sizeof one;
}

void Add(int descriptor, std::uint64_t items) {
    [[maybe_unused]] const auto written = write(descriptor, &items, sizeof items);
}

} // namespace

BufferedInput::BufferedInput(QObject* parent)
    : QObject(parent), wakeUp(NewWakeUp()), notifier(wakeUp, QSocketNotifier::Read) {
    notifier.setEnabled(false);
    connect(&notifier, &QSocketNotifier::activated, this, &BufferedInput::HandOn);
}

BufferedInput::~BufferedInput() {
    Stop();
    close(wakeUp);
}

void BufferedInput::Start(const std::shared_ptr<AnalogBoard>& board, const StreamSetup& setup,
                          std::size_t halfSamples, std::size_t queueBytes) {
    if (IsRunning())
        throw RunTimeError("The analog input is running already");
    Stop();
    StreamPlan plan;
    plan.form = setup.form;
    plan.scanSamples = setup.channels.size();
    plan.halfSamples = halfSamples;
    plan.totalSamples = setup.totalSamples;
    auto fresh =
        std::make_shared<SampleQueue>(halfSamples * plan.SampleBytes(), queueBytes, plan.totalSamples != 0);
    board->StartStream(setup);
    try {
        reader = std::make_unique<StreamReader>(
            board, fresh, plan, [descriptor = wakeUp](std::uint64_t items) { Add(descriptor, items); });
    } catch (const std::exception&) {
        board->StopStream();
        throw Fault::OutOfMemory();
    }
    queue = std::move(fresh);
    halves = 0;
    lastHalf = plan.totalSamples / halfSamples;
    notifier.setEnabled(true);
}

void BufferedInput::Stop() {
    notifier.setEnabled(false);
    reader.reset();
    queue.reset();
    while (TakeOne(wakeUp)) {
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
        if (!queue || !TakeOne(wakeUp))
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
        reader.reset();
        emit Failed(QString::fromStdString(item.text));
        return;
    case SampleQueue::Kind::None:
        return;
    }
}

void BufferedInput::HandHalfOver(std::span<const std::byte> samples) {
    ++halves;
    if (halves == lastHalf)
        reader.reset();
    emit Half(halves % 2 == 1, samples);
}

} // namespace tracelet
