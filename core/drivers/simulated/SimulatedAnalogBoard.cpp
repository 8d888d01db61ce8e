#include "core/drivers/simulated/SimulatedAnalogBoard.h"

#include "core/base/Convert.h"
#include "core/base/NumberText.h"
#include "core/base/RunTimeError.h"
#include "core/boards/Thermocouple.h"
#include "core/drivers/simulated/SimulatedSignals.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <thread>

namespace tracelet {
namespace {

bool HasLimits(const InputRange& range, const InputRange& wanted) {
    return range.first == wanted.first && range.second == wanted.second;
}

RunTimeError NoSuchChannel(std::int32_t channel) {
    return RunTimeError("The board has no analog channel " + NumberText(channel));
}

} // namespace

SimulatedAnalogBoard::SimulatedAnalogBoard(SimulatedAnalogKind described) : kind(std::move(described)) {}

void SimulatedAnalogBoard::Open() {
    CheckPlugged(faults.Get());
    isOpen = true;
}

double SimulatedAnalogBoard::SettleSampleRate(double rate, std::int32_t channelCount) const {
    const Faults now = faults.Get();
    CheckPlugged(now);
    CheckRefusal(now.refusedRate);
    if (channelCount < 1 || channelCount > kind.info.channelCount)
        throw RunTimeError("The board cannot scan " + NumberText(channelCount) + " channels");
    return SettledRate(rate);
}

double SimulatedAnalogBoard::SettledRate(double rate) const {
    if (!(rate > 0.0))
        throw RunTimeError("The sample rate must be above zero");
    const double wanted = std::clamp(rate, kind.info.lowestRate, kind.info.highestRate);
    if (kind.dividedClock == 0.0)
        return CLng(wanted * 1000.0) / 1000.0;
    return kind.dividedClock / CLng(kind.dividedClock / wanted);
}

void SimulatedAnalogBoard::CheckOpen() const {
    if (!isOpen)
        throw RunTimeError("The board is not open");
}

void SimulatedAnalogBoard::CheckChannel(const ChannelSetup& channel) const {
    if (channel.channel < 0 || channel.channel >= kind.info.channelCount)
        throw NoSuchChannel(channel.channel);
    if (std::ranges::none_of(kind.info.ranges, [&](const auto& r) { return HasLimits(r, channel.range); }))
        throw RunTimeError("The board has no such input range");
    const bool wired = channel.connection == SingleEnded    ? kind.info.singleEnded
                       : channel.connection == Differential ? kind.info.differential
                                                            : false;
    if (!wired)
        throw RunTimeError("The board has no such signal connection");
}

void SimulatedAnalogBoard::CheckScan(std::span<const ChannelSetup> channels) const {
    if (channels.empty() || channels.size() > static_cast<std::size_t>(kind.info.channelCount))
        throw RunTimeError("The board cannot scan " + std::to_string(channels.size()) + " channels");
    for (const ChannelSetup& channel : channels)
        CheckChannel(channel);
}

double SimulatedAnalogBoard::PolledValue(const ChannelSetup& channel, SignalPlace ordinal) const {
    return SampledValue(ConverterOf(), channel, PolledSignal(kind.number, channel.channel), ordinal);
}

void SimulatedAnalogBoard::ReadScan(std::span<const ChannelSetup> channels, std::span<double> values) {
    const Faults now = faults.Get();
    CheckReading(now);
    CheckOpen();
    CheckScan(channels);
    if (values.size() != channels.size())
        throw Fault::SubscriptOutOfRange();
    std::this_thread::sleep_for(now.slow);
    const SignalPlace ordinal = PolledOrdinal(kind.clock, scansRead);
    for (std::size_t i = 0; i < channels.size(); ++i)
        values[i] = PolledValue(channels[i], ordinal);
    ++scansRead;
}

ThermocoupleReading SimulatedAnalogBoard::ReadThermocouple(const ChannelSetup& channel,
                                                           std::int32_t expansion, ThermocoupleType type) {
    const Faults now = faults.Get();
    CheckReading(now);
    CheckOpen();
    if (!kind.info.thermocouples)
        throw RunTimeError("The board has no thermocouple inputs");
    const std::int32_t step = kind.info.singleEnded ? 1 : 2;
    if (channel.channel < 0 || channel.channel >= step * kind.info.channelCount)
        throw NoSuchChannel(channel.channel);
    if (expansion < 0 || expansion > 15)
        throw RunTimeError("The board has no expansion channel " + NumberText(expansion));
    std::this_thread::sleep_for(now.slow);
    std::uint64_t& readings = thermocoupleReadings[{channel.channel, expansion}];
    const double celsius = SimulatedCelsius(channel.channel, expansion, PolledOrdinal(kind.clock, readings));
    const double junction = SimulatedColdJunction(channel.channel);
    const double millivolts = ThermocoupleMillivolts(type, celsius) - ThermocoupleMillivolts(type, junction);
    ++readings;
    return {millivolts, junction};
}

void SimulatedAnalogBoard::CheckStart(const StreamSetup& setup) const {
    CheckScan(setup.channels);
    if (setup.pacer != InternalPacer && !kind.info.externalPacer)
        throw RunTimeError("The board has no external pacer");
    if (setup.trigger.mode != 0 && !kind.info.hardwareTrigger)
        throw RunTimeError("The board has no hardware trigger");
    if (setup.trigger.mode < 0 || setup.trigger.mode > 3 || setup.trigger.source < 0 ||
        setup.trigger.source > 4)
        throw RunTimeError("The board has no such trigger");
    if (setup.trigger.source > kind.info.channelCount)
        throw NoSuchChannel(setup.trigger.source - 1);
}

void SimulatedAnalogBoard::StartStream(const StreamSetup& setup) {
    const Faults now = faults.Get();
    CheckPlugged(now);
    CheckRefusal(now.refusedStart);
    CheckOpen();
    if (stream.IsRunning())
        throw RunTimeError("The board is acquiring already");
    CheckStart(setup);
    StreamSetup settled = setup;
    settled.sampleRate = SettledRate(setup.sampleRate);
    auto tables = std::make_shared<const SampleTables>(kind.number, ConverterOf(), settled);
    stream.Start(settled, std::move(tables), FirstScan(kind.number, settled), paced, mostScans);
}

StreamRead SimulatedAnalogBoard::ReadStream(StreamBuffer buffer) {
    return stream.Read(buffer, faults);
}

void SimulatedAnalogBoard::StopStream() {
    stream.Stop();
}

} // namespace tracelet
