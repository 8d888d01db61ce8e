#pragma once

#include "core/boards/Board.h"
#include "core/drivers/serial/LineReader.h"

#include <optional>
#include <string>

namespace tracelet {

/// What prints lines of numbers: a microcontroller on a serial line, or the same over the network. Channels
/// are the numbers of a line; a reading is the newest line. It is read from the moment on that it is opened,
/// by a thread of its own, so that a reading never waits.
class SerialBoard : public AnalogBoard {
public:
    SerialBoard(std::string name, LineSource source);

    [[nodiscard]] const AnalogBoardInfo& Info() const override { return info; }
    void Open() override;
    [[nodiscard]] double SettleSampleRate(double rate, std::int32_t channelCount) const override;
    /// NaN for a channel that the newest line has not.
    void ReadScan(std::span<const ChannelSetup> channels, std::span<double> values) override;
    [[nodiscard]] ThermocoupleReading ReadThermocouple(const ChannelSetup& channel, std::int32_t expansion,
                                                       ThermocoupleType type) override;
    void StartStream(const StreamSetup& setup) override;
    [[nodiscard]] StreamRead ReadStream(StreamBuffer buffer) override;
    void StopStream() override {}

private:
    void CheckChannel(const ChannelSetup& channel) const;

    AnalogBoardInfo info;
    LineSource source;
    std::optional<LineReader> reader; // once open
};

} // namespace tracelet
