#pragma once

#include "core/base/LooseThread.h"
#include "core/base/UniqueFd.h"
#include "core/input/StreamReader.h"

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tracelet {

/// Hardware-paced input of one board: a thread reads it into a deep queue, the event loop hands the halves
/// over one at a time. While a handler of one of the signals runs, a message box inside it too, no other
/// signal comes, unless it stops the input; what has come meanwhile follows afterwards.
///
/// A board that does not come back within two seconds from a call that stops it, or from its reading, is left
/// to itself: it counts as gone until both have come back.
class BufferedInput : public QObject {
    Q_OBJECT

public:
    explicit BufferedInput(QObject* parent = nullptr);
    ~BufferedInput() override;

    /// Starts the board and the reading thread. Halves of `queueBytes` in all may wait. Raises when the input
    /// runs already or is being stopped, when the board refuses or is gone, or when there is no memory.
    void Start(const std::shared_ptr<AnalogBoard>& board, const StreamSetup& setup, std::size_t halfSamples,
               std::size_t queueBytes);
    /// Stops the board, then hands over what it had delivered: all that waits, and last the whole scans of
    /// the half that is not full. No signal comes after it returned. From inside a signal that a stop hands
    /// over it does nothing: that stop goes on. "", or why the input had failed, or that the board is gone
    /// now, if nobody was told of it yet.
    std::string Stop();
    /// Ends the input; nothing more is handed over.
    void Drop();
    /// True from the start until the input was stopped or has ended by itself.
    [[nodiscard]] bool IsRunning() const { return reader != nullptr; }
    /// Raises while a board is gone.
    void RequireAnswer(const AnalogBoard& board);

signals:
    /// A half of the buffer, `first` or second, or what came of it before a stop; its samples are valid
    /// during the call.
    void Half(bool first, std::span<const std::byte> samples);
    /// Samples were lost behind the halves so far.
    void Lost();
    /// The board failed; nothing more comes but, at a stop, what it had delivered of the next half.
    void Failed(const QString& text);

private:
    /// A board that was left to itself.
    struct Gone {
        const AnalogBoard* board;
        LooseThread stopper;
        LooseThread reading;
    };

    void EndReading();
    void HandOn();
    void HandRestOver();
    void HandOver(const SampleQueue::Item& item);
    void HandHalfOver(std::span<const std::byte> samples);

    const std::shared_ptr<const UniqueFd> wakeUp; // eventfd that counts the items in the queue
    QSocketNotifier notifier;
    bool handingOver = false;
    bool stopping = false;      // the rest is being handed over
    std::string fault;          // what Stop will tell
    std::uint64_t halves = 0;   // handed over since the start
    std::uint64_t lastHalf = 0; // number of the half that ends the input, 0 none
    std::size_t scanBytes = 1;
    std::shared_ptr<SampleQueue> queue;
    std::shared_ptr<StreamReader> reader;
    LooseThread reading; // of `reader`
    std::vector<Gone> gone;
};

} // namespace tracelet
