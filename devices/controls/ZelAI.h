#pragma once

#include "devices/drivers/BoardList.h"

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

    [[nodiscard]] std::int32_t DeviceNumber() const;
    /// Selects a board and puts all its settings to their defaults (scan start 0, one channel, 1000 Hz,
    /// analog values, no trigger, every channel single-ended if it can be, first range); any other number
    /// than that of a usable board deselects. Selecting the selected board again changes nothing.
    void SetDeviceNumber(std::int32_t number);
    [[nodiscard]] QString DeviceName() const;
    /// Shows the board picker; Cancel keeps the selection.
    void SelectDevice(QWidget* owner);

    [[nodiscard]] std::int32_t Resolution() const;      ///< bits
    [[nodiscard]] std::int32_t MaxChannelCount() const; ///< channels of the board

    /// Channel that the per-channel properties refer to, 0 to MaxChannelCount inclusive (the last one is
    /// accepted and has no settings of its own: SignalConnection reads 0).
    [[nodiscard]] std::int32_t Channel() const;
    void SetChannel(std::int32_t channel);
    [[nodiscard]] std::int32_t SignalConnection() const; ///< 0 single-ended, 1 differential
    /// On a board whose channels pair up, sets both members of the pair.
    void SetSignalConnection(std::int32_t code);

    [[nodiscard]] std::int32_t ScanStartChannel() const;
    void SetScanStartChannel(std::int32_t channel); ///< logical channel; -1 or beyond the last raises
    [[nodiscard]] std::int32_t ScanChannelCount() const;
    void SetScanChannelCount(std::int32_t count);

    [[nodiscard]] double SampleRate() const; ///< hertz, conversions of all channels together
    void SetSampleRate(double hertz);        ///< 0, negative or not finite raises; else clamped and rounded
    [[nodiscard]] std::int32_t PacerSource() const;
    void SetPacerSource(std::int32_t code);
    [[nodiscard]] std::int32_t DataType() const; ///< 1 raw counts, 2 analog values
    void SetDataType(std::int32_t code);

    [[nodiscard]] std::int32_t TriggerMode() const;
    void SetTriggerMode(std::int32_t code);
    [[nodiscard]] std::int32_t TriggerEdge() const;
    void SetTriggerEdge(std::int32_t code);
    [[nodiscard]] std::int32_t TriggerSource() const;
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
    /// An unknown range or channel raises.
    void SetChannelRange(double first, double second, std::int32_t channel);
    void GetChannelRange(std::int32_t& code, double& first, double& second, std::int32_t channel) const;

    /// One scan: ScanChannelCount values, volts (or milliamperes), when `scaled`; converter counts
    /// otherwise. Scan position i reads the physical channel that the wiring gives it. Failures raise and
    /// leave their text in ErrorText. Empty without a board.
    [[nodiscard]] std::vector<double> ReadChannels(bool scaled);

    /// Starts hardware-paced input of `count` conversions a buffer. Each half, rounded down to whole scans,
    /// is handed over by OnFirstBufferChange and OnSecondBufferChange in turn; a one-shot buffer ends with
    /// the second. `values`, `reserved` and `wait` are not used. Raises (and sets ErrorText) when the board
    /// refuses or the buffer cannot be held.
    void StartBufferedAI(std::int32_t count, bool cyclic);
    /// Ends hardware-paced input; no notification comes after it returned. Halves not handed over yet are
    /// dropped.
    void StopBufferedAI(std::int32_t reserved);

    [[nodiscard]] QString ErrorText() const; ///< text of the last failure since the last start, "" when none

signals:
    /// A half of the buffer, channel-interleaved: `rawData` when DataType is 1, `analogData` when it is 2;
    /// the other is empty. The spans are valid during the call.
    void OnFirstBufferChange(std::span<const std::int16_t> rawData, std::span<const float> analogData,
                             std::int32_t dataCount);
    void OnSecondBufferChange(std::span<const std::int16_t> rawData, std::span<const float> analogData,
                              std::int32_t dataCount);
    /// Samples were lost: by the board, or because the queue of 256 MiB was full.
    void OnOverrunNotice();
    /// The board stopped delivering by itself (unplugged, read error); ErrorText says why. Every half that
    /// came before was handed over.
    void OnInputFailed();

private:
    friend class BufferedInput;
};

} // namespace tracelet
