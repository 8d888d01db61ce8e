#pragma once

#include "core/boards/BoardList.h"
#include "core/boards/ChannelSettings.h"
#include "window/controls/BoardSelection.h"

#include <QObject>
#include <QString>

#include <memory>
#include <span>
#include <vector>

namespace tracelet {

class BufferedInput;

/// Analog input control: holds the settings of the selected board and passes work to it.
///
/// Properties that a board lacks are ignored when written and read back unchanged; a value out of range
/// raises RunTimeError. Without a board `DeviceNumber` is -1, `DeviceName` "No Device" and counts are 0.
class ZelAI : public QObject {
    Q_OBJECT
    Q_PROPERTY(int DeviceNumber READ DeviceNumber WRITE SetDeviceNumber)
    Q_PROPERTY(QString DeviceName READ DeviceName)
    Q_PROPERTY(int MaxChannelCount READ MaxChannelCount)
    Q_PROPERTY(int ScanStartChannel READ ScanStartChannel WRITE SetScanStartChannel)
    Q_PROPERTY(int ScanChannelCount READ ScanChannelCount WRITE SetScanChannelCount)
    Q_PROPERTY(double SampleRate READ SampleRate WRITE SetSampleRate)
    Q_PROPERTY(int DataType READ DataType WRITE SetDataType)

public:
    explicit ZelAI(QObject* parent = nullptr);
    ~ZelAI() override;

    /// Boards to choose from; deselects whatever was selected.
    void SetBoards(const BoardList& boards);
    /// The boards so far in their places, and those that were found since; the selection stays.
    void AddBoards(const BoardList& boards);

    [[nodiscard]] std::int32_t DeviceNumber() const;
    /// Selects a board and puts all its settings to their defaults (scan start 0, one channel, 1000 Hz,
    /// analog values, no trigger, every channel single-ended if it can be, first range); any other number
    /// than that of a usable board deselects. Selecting the selected board again changes nothing.
    void SetDeviceNumber(std::int32_t number);
    [[nodiscard]] QString DeviceName() const;
    /// What the selected board is, for the rules of its family; without a board, that of "No Device". Valid
    /// until the selection changes.
    [[nodiscard]] const AnalogBoardInfo& BoardInfo() const;
    /// Shows the board picker; Cancel keeps the selection.
    void SelectDevice(QWidget* owner);

    [[nodiscard]] std::int32_t Resolution() const;      ///< bits
    [[nodiscard]] std::int32_t MaxChannelCount() const; ///< channels of the board

    /// Channel that the per-channel properties refer to, 0 to MaxChannelCount inclusive (the last one is
    /// accepted and keeps the wiring that the board starts with); others raise.
    [[nodiscard]] std::int32_t Channel() const;
    void SetChannel(std::int32_t channel);
    [[nodiscard]] std::int32_t SignalConnection() const; ///< 0 single-ended, 1 differential
    /// On a board whose channels pair up, sets both members of the pair. Ignored when the board cannot be
    /// wired so.
    void SetSignalConnection(std::int32_t code);

    [[nodiscard]] std::int32_t ScanStartChannel() const;
    /// Physical channel that a scan begins with; -1 or beyond the last raises. Whether the scan fits is seen
    /// when the count is set, and when a scan is read: so a scan is moved by setting start, then count.
    void SetScanStartChannel(std::int32_t channel);
    [[nodiscard]] std::int32_t ScanChannelCount() const; ///< 0 only on a board without channels
    /// Channels of a scan, a differential pair being one; a scan beyond the last channel raises.
    void SetScanChannelCount(std::int32_t count);

    [[nodiscard]] double SampleRate() const; ///< hertz, conversions of all channels together
    void SetSampleRate(double hertz);        ///< 0, negative or not finite raises; else clamped and rounded
    /// 0 internal; 1 and 2 external, ignored by a board without external pacer, as are all other codes.
    [[nodiscard]] std::int32_t PacerSource() const;
    void SetPacerSource(std::int32_t code);
    [[nodiscard]] std::int32_t DataType() const; ///< 1 raw counts, 2 analog values; others are ignored
    void SetDataType(std::int32_t code);

    // The trigger properties are ignored by a board without hardware trigger, as are unknown codes. Volts
    // that are not finite, and times that are not or are negative, raise.

    [[nodiscard]] std::int32_t TriggerMode() const; ///< 0 none, 1 post, 2 delay, 3 about
    void SetTriggerMode(std::int32_t code);
    [[nodiscard]] std::int32_t TriggerEdge() const; ///< 0 rising, 1 falling
    void SetTriggerEdge(std::int32_t code);
    [[nodiscard]] std::int32_t TriggerSource() const; ///< 0 digital, 1 AI or AI0, 2 AI1, 3 AI2, 4 AI3
    void SetTriggerSource(std::int32_t code);
    [[nodiscard]] double TriggerVoltage() const; ///< volts
    void SetTriggerVoltage(double volts);
    [[nodiscard]] double TriggerDelayTime() const; ///< milliseconds
    void SetTriggerDelayTime(double milliseconds);
    [[nodiscard]] double TriggerAfterTime() const; ///< milliseconds
    void SetTriggerAfterTime(double milliseconds);

    /// Enumeration of the board's ranges; both limits 0.0 mark the end.
    void FirstRange(std::int32_t& code, double& first, double& second);
    void NextRange(std::int32_t& code, double& first, double& second);
    /// An unknown range raises, and so does a channel above MaxChannelCount.
    void SetChannelRange(double first, double second, std::int32_t channel);
    void GetChannelRange(std::int32_t& code, double& first, double& second, std::int32_t channel) const;
    /// The same with its unit.
    [[nodiscard]] InputRange RangeOf(std::int32_t channel) const;

    /// One scan: ScanChannelCount values, volts or milliamperes. Scan position i reads the physical channel
    /// that the wiring gives it. Failures raise and leave their text in ErrorText. Empty without a board. The
    /// values stand until the next reading.
    const std::vector<double>& ReadChannels();

    /// Set-up of the scanned channels by scan position, for one who reads the board by itself; it stands
    /// until a setting changes. A scan beyond the last channel raises and leaves its text in ErrorText. Empty
    /// without a board.
    [[nodiscard]] const std::vector<ChannelSetup>& ScanSetup();
    [[nodiscard]] const std::shared_ptr<AnalogBoard>& Board() const { return selection.Board(); }

    /// Starts hardware-paced input of `count` conversions a buffer. Each half, rounded down to whole scans
    /// (one scan at least), is handed over by OnFirstBufferChange and OnSecondBufferChange in turn, from the
    /// event loop; not `cyclic`, the input ends with the second. Raises (and sets ErrorText) without a board,
    /// when one is running already, when the board refuses, or when half the buffer is more than the queue
    /// holds.
    void StartBufferedAI(std::int32_t count, bool cyclic);
    /// Ends hardware-paced input, also from inside a notification. What the board had delivered is handed
    /// over before it returns, last the whole scans of the half that is not full; no notification comes
    /// afterwards. From inside a notification that a stop hands over it does nothing: that stop goes on.
    /// False, and ErrorText says why, when the board had failed, which no notification told yet, or does not
    /// stop within two seconds; it then cannot be used until it answers again. `reserved` is not used.
    bool StopBufferedAI(std::int32_t reserved);
    /// Bytes of halves that may wait to be handed over, for inputs started from now on; 256 MiB unless set.
    void SetQueueLimit(std::size_t bytes);

    /// Text of the last failed ReadChannels, ScanSetup or buffered input; "" once another has begun or a
    /// board was selected.
    [[nodiscard]] QString ErrorText() const;

signals:
    /// Before the board picker is shown: the moment to look for boards.
    void Picking();
    /// A half of the buffer, or at a stop what came of it, channel-interleaved: `rawData` when DataType is 1,
    /// `analogData` when it is 2; the other is empty. The spans are valid during the call.
    void OnFirstBufferChange(std::span<const std::int16_t> rawData, std::span<const float> analogData,
                             std::int32_t dataCount);
    void OnSecondBufferChange(std::span<const std::int16_t> rawData, std::span<const float> analogData,
                              std::int32_t dataCount);
    /// Samples were lost behind the halves so far: by the board, or whole halves because the queue was full.
    /// Once for each loss; the halves that follow are whole.
    void OnOverrunNotice();
    /// The board stopped delivering by itself (unplugged, read error); ErrorText says why. Every half that
    /// came before was handed over; a stop hands over the scans behind them.
    void OnInputFailed();

private:
    const std::vector<ChannelSetup>& ScannedChannels();
    void RequireScan(std::int32_t start, std::int32_t count) const;
    void RequireChannel(std::int32_t channel) const;
    [[nodiscard]] double SettledRate(const AnalogBoard& board, double hertz, std::int32_t channelCount) const;
    [[nodiscard]] bool HasTrigger() const;
    [[nodiscard]] std::size_t HalfSamples(std::int32_t count) const;
    [[nodiscard]] StreamSetup Stream(std::uint64_t totalSamples);
    void HandOver(bool first, std::span<const std::byte> samples);
    template <typename Action>
    void KeepingErrorText(Action action);

    /// What is set anew when a board is selected.
    struct Settings {
        std::int32_t channel = 0;
        ChannelSettings channels;
        std::int32_t scanStart = 0;
        std::int32_t scanCount = 0;
        std::vector<ChannelSetup> scan; // by position; empty until it is worked out from the above
        double wantedRate = 1000.0;     // hertz, as it was asked for
        double sampleRate = 0.0;        // hertz, as the board settled it
        std::int32_t pacer = InternalPacer;
        std::int32_t form = AnalogValues;
        TriggerSetup trigger;
        std::size_t nextRange = 0; // position of the range enumeration
    };
    [[nodiscard]] Settings DefaultsOf(const AnalogBoard& board) const;

    BoardSelection<AnalogBoard> selection;
    Settings settings;
    std::vector<double> readValues; // of the last scan read
    QString errorText;
    std::size_t queueLimit = std::size_t{256} << 20;
    std::int32_t streamForm = AnalogValues; // of the running input
    BufferedInput* const input;             // a child
};

} // namespace tracelet
