#pragma once

#include "core/boards/Board.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace tracelet {

// What the simulated boards measure. Everything is a pure function of the board's number (its place among the
// simulated boards of its kind, from 0), the channel and a number: the index of the scan in a hardware-paced
// stream, or the ordinal of a polled reading, which need not be whole when the board follows a clock. The
// arithmetic is kept simple enough for a few lines in any language.

/// Where in a signal: the index of a scan or the ordinal of a reading.
struct SignalPlace {
    template <typename Number>
    constexpr SignalPlace(Number number) : at(static_cast<double>(number)) {}

    double at;
};

/// Seconds of a clock that polled signals follow, from 0; called on any thread.
using SignalClock = std::function<double()>;

/// Ordinals of polled readings are so many seconds apart.
inline constexpr double PolledStep = 0.1;

/// The ordinal of a reading: by the clock, or else the number of readings before it.
[[nodiscard]] SignalPlace PolledOrdinal(const SignalClock& clock, std::uint64_t readings);

enum class SignalShape : std::uint8_t { Sine, Square, Triangle, Noise, Spike };

/// The signal at a channel, as a level from -1 to 1 that repeats every `period` scans.
struct Signal {
    SignalShape shape = SignalShape::Sine;
    std::int64_t period = 1; ///< scans
    double amplitude = 0.0;  ///< volts
    std::uint32_t seed = 0;  ///< of the noise
};

/// Signal of a channel in a stream of `scanRate` scans a second.
///   shape:     Sine, Square, Triangle, Noise, Spike for (channel + board) mod 5 = 0, 1, 2, 3, 4
///   amplitude: 5 - 0.5 * ((channel div 5) mod 8) volts
///   period:    scanRate / (10 + 5 * (channel mod 7)) rounded, at least 20; Noise 16384, Spike 100000
///   seed:      65536 * board + 1024 * channel
[[nodiscard]] Signal StreamSignal(std::int32_t board, std::int32_t channel, double scanRate);

/// Signal of a channel when it is polled: as above, with the period 40 + 10 * (channel mod 7); Noise 16384,
/// Spike 100.
[[nodiscard]] Signal PolledSignal(std::int32_t board, std::int32_t channel);

/// Level at a scan. With q = index mod period, rounded down for noise and spike:
///   Sine:     sin(2 * pi * q / period)
///   Square:   1 while 2 * q < period, then -1
///   Triangle: 1 - |4 * q / period - 2|, so -1 at q = 0 and 1 in the middle
///   Noise:    Scramble(seed + q) / 2^31 - 1
///   Spike:    1 at q = period div 2, else 0
[[nodiscard]] double SignalLevel(const Signal& signal, SignalPlace index);

/// Mixes 32 bits: x ^= x >> 16; x *= 0x7FEB352D; x ^= x >> 15; x *= 0x846CA68B; x ^= x >> 16.
[[nodiscard]] std::uint32_t Scramble(std::uint32_t x);

/// What the converter is given: amplitude * level in volts, or 12 + 8 * level milliamperes in a range of
/// milliamperes. The converter (ConverterCounts.h) then rounds it to its steps and clamps it to the range.
[[nodiscard]] double SignalValue(const Signal& signal, const InputRange& range, SignalPlace index);

/// First scan of a stream: 0 without a trigger. A trigger on channel AI0 to AI3 waits for its volts to pass
/// `voltage` in the direction of `edge`; a digital trigger comes at once. "Post" starts at the trigger's
/// scan; "delay" `delayTime` later; "about" early enough that a one-shot stream ends `afterTime` after the
/// trigger (never before scan 0; at scan 0 when the stream has no end). Nothing when the trigger never comes.
[[nodiscard]] std::optional<std::uint64_t> FirstScan(std::int32_t board, const StreamSetup& setup);

/// Temperature in °C at expansion channel `expansion` of `channel`, at the ordinal of the reading: 100 + 2 *
/// channel + 5 * expansion + 50 * triangle of period 200.
[[nodiscard]] double SimulatedCelsius(std::int32_t channel, std::int32_t expansion, SignalPlace ordinal);

/// Temperature of a channel's cold junction: 24 + 0.5 * (channel mod 4) °C.
[[nodiscard]] double SimulatedColdJunction(std::int32_t channel);

/// State of a port: (ordinal rounded down + 16 * port) mod 256.
[[nodiscard]] std::uint8_t SimulatedPort(std::int32_t port, SignalPlace ordinal);

} // namespace tracelet
