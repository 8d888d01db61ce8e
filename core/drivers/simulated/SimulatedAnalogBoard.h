#pragma once

#include "core/boards/Board.h"
#include "core/drivers/simulated/Faults.h"
#include "core/drivers/simulated/SampleTables.h"
#include "core/drivers/simulated/SimulatedSignals.h"
#include "core/drivers/simulated/SimulatedStream.h"

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

namespace tracelet {

/// A simulated board as its catalogue describes it.
struct SimulatedAnalogKind {
    std::int32_t number = 0; ///< place in the catalogue, from 0; the signals follow from it
    AnalogBoardInfo info;
    double dividedClock = 0.0; ///< hertz; rates are this by a whole number, or with 0 whole millihertz
    bool taggedCounts = false; ///< see Converter
    SignalClock clock = {};    ///< that polled readings follow
};

/// A board without hardware. Its samples are those of SimulatedSignals.h: a polled scan is that of the clock
/// or, without one, of the number of scans read before it since the board was made, a thermocouple reading
/// then that of the number of readings of its channel; a stream begins at FirstScan. Readings that fail are
/// not counted.
class SimulatedAnalogBoard final : public AnalogBoard {
public:
    explicit SimulatedAnalogBoard(SimulatedAnalogKind described);

    [[nodiscard]] const AnalogBoardInfo& Info() const override { return kind.info; }
    void Open() override;
    [[nodiscard]] double SettleSampleRate(double rate, std::int32_t channelCount) const override;
    void ReadScan(std::span<const ChannelSetup> channels, std::span<double> values) override;
    [[nodiscard]] ThermocoupleReading ReadThermocouple(const ChannelSetup& channel, std::int32_t expansion,
                                                       ThermocoupleType type) override;
    void StartStream(const StreamSetup& setup) override;
    [[nodiscard]] StreamRead ReadStream(StreamBuffer buffer) override;
    void StopStream() override;

    // For tests. Faults may be set on any thread.

    /// Number of the board, as the functions of SimulatedSignals.h take it.
    [[nodiscard]] std::int32_t Number() const { return kind.number; }
    [[nodiscard]] Converter ConverterOf() const { return {kind.info.resolution, kind.taggedCounts}; }
    /// Scans that were read, so the ordinal of the next one.
    [[nodiscard]] std::uint64_t ScansRead() const { return scansRead; }
    /// Value that ReadScan gives for a channel in the scan of this ordinal.
    [[nodiscard]] double PolledValue(const ChannelSetup& channel, SignalPlace ordinal) const;
    void SetFaults(const Faults& value) { faults.Set(value); }
    /// Whether streams that are started from now on keep real time (as made) or come as fast as they are
    /// read.
    void SetPaced(bool value) { paced = value; }
    /// Streams that are started from now on bring so many scans and then nothing, as if their clock stood
    /// still.
    void StandStillAfter(std::uint64_t scans) { mostScans = scans; }

private:
    void CheckOpen() const;
    void CheckChannel(const ChannelSetup& channel) const;
    void CheckScan(std::span<const ChannelSetup> channels) const;
    void CheckStart(const StreamSetup& setup) const;
    [[nodiscard]] double SettledRate(double rate) const;

    const SimulatedAnalogKind kind;
    bool isOpen = false;
    bool paced = true;
    std::optional<std::uint64_t> mostScans;
    std::uint64_t scansRead = 0;
    std::map<std::pair<std::int32_t, std::int32_t>, std::uint64_t> thermocoupleReadings; // channel, expansion
    FaultSwitch faults;
    SimulatedStream stream;
};

} // namespace tracelet
