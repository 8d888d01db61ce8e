#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace tracelet {

// What a driver offers and what the device controls ask of it. Boards know nothing of widgets, settings or
// files: every call carries the set-up that it works with.
//
// Threads: everything is called on the user-interface thread, but for three cases. ReadStream and StopStream
// have a thread each; StopStream may be called while ReadStream waits, and makes it return, else the board
// counts as gone. A board that says `mayBlock` has ReadScan, ReadThermocouple and ReadPorts called on a
// polling thread, one at a time; while such a read does not return, other calls may come on the
// user-interface thread. Errors: RunTimeError with a text that a user understands.

/// What the limits of a range are in. Unstated, which only boards of a family may leave it, it follows from
/// the limits (BoardFamily.h). Numbers are in whatever the device that sends them says.
enum class RangeUnit : std::uint8_t { Unstated, Volts, Milliamperes, Numbers };

/// One input range. `first` and `second` are its lower and upper limit; no two ranges of a board share both.
struct InputRange {
    std::int32_t code = 0;
    double first = 0.0;
    double second = 0.0;
    RangeUnit unit = RangeUnit::Unstated;

    bool operator==(const InputRange&) const = default;
};

/// Wiring codes of a channel.
enum Connection : std::int32_t { SingleEnded = 0, Differential = 1 };

/// Pacer codes. A board with an external pacer takes 1 and 2, and both mean it.
enum Pacer : std::int32_t { InternalPacer = 0, ExternalPacer = 1, ExternalPacerProbe = 2 };

/// Form in which samples are handed over; ConverterCounts.h tells what a raw count is.
enum SampleForm : std::int32_t { RawCounts = 1, AnalogValues = 2 };

/// Thermocouple types, in the order of the choice list.
enum class ThermocoupleType : std::uint8_t { J, K, S, T, B, R, E };

/// What an analog board is and can do; constant while the program runs.
struct AnalogBoardInfo {
    std::string name;               ///< device name; family rules look for "05", "6601" … in it
    bool noFamily = false;          ///< whatever its name holds, no family's rules are made for it
    std::string driver;             ///< driver name, as the picker shows it
    bool simulated = false;         ///< the picker marks it
    std::int32_t resolution = 0;    ///< bits of the converter
    std::int32_t channelCount = 0;  ///< analog channels
    std::vector<InputRange> ranges; ///< in enumeration order; the first is the power-up range
    bool singleEnded = true;        ///< channels can be wired single-ended
    bool differential = true;       ///< channels can be wired differentially
    bool externalPacer = false;
    bool hardwareTrigger = false;
    bool paced = true;          ///< StartStream works: the board has a pacer of some kind
    bool thermocouples = false; ///< ReadThermocouple works
    double lowestRate = 1.0;    ///< hertz, conversions of all channels together
    double highestRate = 1.0;   ///< hertz
    bool mayBlock = false;      ///< ReadScan or ReadThermocouple may take long, or never return
};

/// How one channel of a scan is read.
struct ChannelSetup {
    std::int32_t channel = 0; ///< physical channel, 0 upward
    InputRange range;
    std::int32_t connection = SingleEnded;
};

/// Start of a trigger-controlled acquisition; all zero means "start at once".
struct TriggerSetup {
    std::int32_t mode = 0;   ///< 0 none, 1 post, 2 delay, 3 about
    std::int32_t edge = 0;   ///< 0 rising, 1 falling
    std::int32_t source = 0; ///< 0 digital, 1 AI or AI0, 2 AI1, 3 AI2, 4 AI3
    double voltage = 0.0;    ///< volts
    double delayTime = 0.0;  ///< milliseconds, mode delay
    double afterTime = 0.0;  ///< milliseconds, mode about
};

/// A hardware-paced acquisition.
struct StreamSetup {
    std::vector<ChannelSetup> channels; ///< scan order
    double sampleRate = 0.0; ///< conversions a second, all channels together, as SettleSampleRate gave it
    std::int32_t pacer = InternalPacer;
    TriggerSetup trigger;
    SampleForm form = AnalogValues;
    std::uint64_t totalSamples = 0; ///< conversions after which the stream ends by itself; 0 never
};

/// Where ReadStream puts samples, channel-interleaved: 16-bit converter counts or scaled values.
using StreamBuffer = std::variant<std::span<std::int16_t>, std::span<float>>;

enum class StreamState {
    Running, ///< more will come
    Ended,   ///< totalSamples were delivered, or StopStream was called
    Overrun, ///< the board lost whole scans behind the samples delivered; it goes on when asked again
};

struct StreamRead {
    std::size_t count = 0; ///< samples put into the buffer, 0 when none came in time
    StreamState state = StreamState::Running;
};

/// One thermocouple reading: the voltage of the couple and the temperature of its cold junction.
struct ThermocoupleReading {
    double millivolts = 0.0;
    double coldJunctionCelsius = 0.0;
};

class AnalogBoard {
public:
    virtual ~AnalogBoard() = default;

    [[nodiscard]] virtual const AnalogBoardInfo& Info() const = 0;

    /// Takes the board into use; called when it is selected. A second call while open does nothing.
    virtual void Open() = 0;

    /// Rate in hertz that the board will run at when `rate` is asked for with this many channels a scan:
    /// rounded to its clock and clamped to what it can do. `rate` is positive.
    [[nodiscard]] virtual double SettleSampleRate(double rate, std::int32_t channelCount) const = 0;

    /// Reads one scan. `values` has one element a channel: volts (or milliamperes).
    virtual void ReadScan(std::span<const ChannelSetup> channels, std::span<double> values) = 0;

    /// Reads a thermocouple behind expansion channel `expansion` (0 to 15) of `channel`. `type` says which
    /// couple the user has wired. A board that is wired differentially only counts its thermocouple inputs in
    /// steps of two, so up to twice its channels. An open couple is no error but a voltage outside the type's
    /// range, NaN for want of a better one: it costs this channel's value alone, an error the whole scan.
    [[nodiscard]] virtual ThermocoupleReading
    ReadThermocouple(const ChannelSetup& channel, std::int32_t expansion, ThermocoupleType type) = 0;

    /// Starts a hardware-paced acquisition; one at a time. A board without a pacer raises.
    virtual void StartStream(const StreamSetup& setup) = 0;

    /// Waits up to about 50 ms for samples and puts what came into `buffer`. Reading thread only.
    [[nodiscard]] virtual StreamRead ReadStream(StreamBuffer buffer) = 0;

    /// Ends the acquisition at once; does nothing when none runs.
    virtual void StopStream() = 0;
};

/// What a digital board is; constant while the program runs.
struct DigitalBoardInfo {
    std::string name;
    std::string driver;
    bool simulated = false;
    std::int32_t portCount = 0; ///< 8-bit ports
    bool mayBlock = false;      ///< ReadPorts may take long, or never return
};

class DigitalBoard {
public:
    virtual ~DigitalBoard() = default;

    [[nodiscard]] virtual const DigitalBoardInfo& Info() const = 0;

    /// As AnalogBoard::Open.
    virtual void Open() = 0;

    /// Reads ports `start` … `start` + `states.size()` - 1, bit n = line n.
    virtual void ReadPorts(std::int32_t start, std::span<std::uint8_t> states) = 0;
};

} // namespace tracelet
