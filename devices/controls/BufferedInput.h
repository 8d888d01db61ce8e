#pragma once

#include "devices/controls/StreamReader.h"

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>
#include <span>

namespace tracelet {

/// Hardware-paced input of one board: a thread reads it into a deep queue, the event loop hands the halves
/// over one at a time. While a handler of one of the signals runs, a message box inside it too, no other
/// signal comes; what has come meanwhile follows afterwards.
class BufferedInput : public QObject {
    Q_OBJECT

public:
    explicit BufferedInput(QObject* parent = nullptr);
    ~BufferedInput() override;

    /// Starts the board and the reading thread. Halves of `queueBytes` in all may wait. Raises when the input
    /// runs already, when the board refuses or when there is no memory.
    void Start(const std::shared_ptr<AnalogBoard>& board, const StreamSetup& setup, std::size_t halfSamples,
               std::size_t queueBytes);
    /// Ends the input; no signal comes after it returned. Does nothing when there is none.
    void Stop();
    /// True from the start until the input was stopped or has ended by itself.
    [[nodiscard]] bool IsRunning() const { return reader != nullptr; }

signals:
    /// A half of the buffer, `first` or second; its samples are valid during the call.
    void Half(bool first, std::span<const std::byte> samples);
    /// Samples were lost behind the halves so far.
    void Lost();
    /// The board failed; nothing more comes.
    void Failed(const QString& text);

private:
    void HandOn();
    void HandOver(const SampleQueue::Item& item);
    void HandHalfOver(std::span<const std::byte> samples);

    const int wakeUp; // eventfd that counts the items in the queue
    QSocketNotifier notifier;
    bool handingOver = false;
    std::uint64_t halves = 0;   // handed over since the start
    std::uint64_t lastHalf = 0; // number of the half that ends the input, 0 none
    std::shared_ptr<SampleQueue> queue;
    std::unique_ptr<StreamReader> reader;
};

} // namespace tracelet
