#include "core/drivers/simulated/SimulatedSignals.h"

#include "core/base/Convert.h"
#include "core/base/RunTimeError.h"
#include "core/boards/BoardFamily.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tracelet {
namespace {

constexpr std::int64_t NoisePeriod = 16384;

Signal ChannelSignal(std::int32_t board, std::int32_t channel, std::int64_t wavePeriod,
                     std::int64_t spikePeriod) {
    Signal signal;
    signal.shape = static_cast<SignalShape>((channel + board) % 5);
    signal.amplitude = 5.0 - 0.5 * ((channel / 5) % 8);
    signal.seed = 65536U * static_cast<std::uint32_t>(board) + 1024U * static_cast<std::uint32_t>(channel);
    signal.period = signal.shape == SignalShape::Noise   ? NoisePeriod
                    : signal.shape == SignalShape::Spike ? spikePeriod
                                                         : wavePeriod;
    return signal;
}

double TriangleLevel(double q, double period) {
    return 1.0 - std::abs(4.0 * q / period - 2.0);
}

bool Passes(double before, double now, const TriggerSetup& trigger) {
    if (trigger.edge == 0)
        return before < trigger.voltage && now >= trigger.voltage;
    return before > trigger.voltage && now <= trigger.voltage;
}

std::optional<std::uint64_t> TriggerScan(std::int32_t board, const TriggerSetup& trigger, double scanRate) {
    if (trigger.source == 0)
        return 0;
    const Signal signal = StreamSignal(board, trigger.source - 1, scanRate);
    double before = signal.amplitude * SignalLevel(signal, 0);
    for (std::int64_t scan = 1; scan <= signal.period; ++scan) {
        const double now = signal.amplitude * SignalLevel(signal, scan);
        if (Passes(before, now, trigger))
            return static_cast<std::uint64_t>(scan);
        before = now;
    }
    return std::nullopt;
}

std::uint64_t ScansIn(double milliseconds, double scanRate) {
    const double scans = std::ceil(milliseconds / 1000.0 * scanRate);
    if (!(scans >= 0.0 && scans < 9.0e15))
        throw RunTimeError("The trigger time is out of range");
    return static_cast<std::uint64_t>(scans);
}

} // namespace

SignalPlace PolledOrdinal(const SignalClock& clock, std::uint64_t readings) {
    return clock ? SignalPlace(clock() / PolledStep) : SignalPlace(readings);
}

Signal StreamSignal(std::int32_t board, std::int32_t channel, double scanRate) {
    const double frequency = 10.0 + 5.0 * (channel % 7);
    return ChannelSignal(board, channel, std::max(20, CLng(scanRate / frequency)), 100000);
}

Signal PolledSignal(std::int32_t board, std::int32_t channel) {
    return ChannelSignal(board, channel, 40 + 10 * (channel % 7), 100);
}

std::uint32_t Scramble(std::uint32_t x) {
    x ^= x >> 16;
    x *= 0x7FEB352DU;
    x ^= x >> 15;
    x *= 0x846CA68BU;
    x ^= x >> 16;
    return x;
}

double SignalLevel(const Signal& signal, SignalPlace index) {
    const auto period = static_cast<double>(signal.period);
    const double q = std::fmod(index.at, period);
    const auto whole = static_cast<std::int64_t>(q);
    switch (signal.shape) {
    case SignalShape::Sine:
        return std::sin(2.0 * std::numbers::pi * q / period);
    case SignalShape::Square:
        return 2 * q < period ? 1.0 : -1.0;
    case SignalShape::Triangle:
        return TriangleLevel(q, period);
    case SignalShape::Noise:
        return Scramble(signal.seed + static_cast<std::uint32_t>(whole)) / 2147483648.0 - 1.0;
    case SignalShape::Spike:
        return whole == signal.period / 2 ? 1.0 : 0.0;
    }
    return 0.0;
}

double SignalValue(const Signal& signal, const InputRange& range, SignalPlace index) {
    const double level = SignalLevel(signal, index);
    return IsMilliamperes(range) ? 12.0 + 8.0 * level : signal.amplitude * level;
}

std::optional<std::uint64_t> FirstScan(std::int32_t board, const StreamSetup& setup) {
    const TriggerSetup& trigger = setup.trigger;
    if (trigger.mode == 0)
        return 0;
    const double scanRate = setup.sampleRate / static_cast<double>(setup.channels.size());
    const std::optional<std::uint64_t> scan = TriggerScan(board, trigger, scanRate);
    if (!scan || trigger.mode == 1)
        return scan;
    if (trigger.mode == 2)
        return *scan + ScansIn(trigger.delayTime, scanRate);
    const std::uint64_t end = *scan + ScansIn(trigger.afterTime, scanRate);
    const std::uint64_t length = setup.totalSamples / setup.channels.size();
    return setup.totalSamples == 0 || end < length ? 0 : end - length;
}

double SimulatedCelsius(std::int32_t channel, std::int32_t expansion, SignalPlace ordinal) {
    return 100.0 + 2.0 * channel + 5.0 * expansion +
           50.0 * TriangleLevel(std::fmod(ordinal.at, 200.0), 200.0);
}

double SimulatedColdJunction(std::int32_t channel) {
    return 24.0 + 0.5 * (channel % 4);
}

std::uint8_t SimulatedPort(std::int32_t port, SignalPlace ordinal) {
    return static_cast<std::uint8_t>(
        (static_cast<std::uint64_t>(ordinal.at) + 16U * static_cast<std::uint64_t>(port)) % 256U);
}

} // namespace tracelet
