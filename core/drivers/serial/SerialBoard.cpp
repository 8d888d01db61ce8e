#include "core/drivers/serial/SerialBoard.h"

#include "core/base/NumberText.h"
#include "core/base/RunTimeError.h"

#include <algorithm>
#include <utility>

namespace tracelet {
namespace {

constexpr InputRange AnyNumber{0, -1e6, 1e6, RangeUnit::Numbers}; // a frame for axes; none is cut off

} // namespace

SerialBoard::SerialBoard(std::string name, LineSource given) : source(std::move(given)) {
    info.name = std::move(name);
    info.noFamily = true;
    info.driver = "Lines of numbers";
    info.resolution = 16;
    info.channelCount = NumberLines::MostChannels;
    info.ranges = {AnyNumber};
    info.differential = false;
    info.paced = false;
    info.lowestRate = 0.001;
    info.highestRate = 1000.0;
}

void SerialBoard::Open() {
    if (!reader)
        reader.emplace(source);
}

double SerialBoard::SettleSampleRate(double rate, std::int32_t channelCount) const {
    if (!(rate > 0.0))
        throw RunTimeError("The sample rate must be above zero");
    if (channelCount < 1 || channelCount > info.channelCount)
        throw RunTimeError("The board cannot scan " + NumberText(channelCount) + " channels");
    return std::clamp(rate, info.lowestRate, info.highestRate);
}

void SerialBoard::CheckChannel(const ChannelSetup& channel) const {
    if (channel.channel < 0 || channel.channel >= info.channelCount)
        throw RunTimeError("The board has no channel " + NumberText(channel.channel));
    if (channel.range.first != AnyNumber.first || channel.range.second != AnyNumber.second)
        throw RunTimeError("The board has no such input range");
    if (channel.connection != SingleEnded)
        throw RunTimeError("The board has no such signal connection");
}

void SerialBoard::ReadScan(std::span<const ChannelSetup> channels, std::span<double> values) {
    if (!reader)
        throw RunTimeError("The board is not open");
    if (channels.empty() || channels.size() > NumberLines::MostChannels)
        throw RunTimeError("The board cannot scan " + std::to_string(channels.size()) + " channels");
    if (values.size() != channels.size())
        throw Fault::SubscriptOutOfRange();
    for (const ChannelSetup& channel : channels)
        CheckChannel(channel);
    const NumberLines::Scan scan = reader->Newest();
    for (std::size_t i = 0; i < channels.size(); ++i)
        values[i] = scan[static_cast<std::size_t>(channels[i].channel)];
}

ThermocoupleReading SerialBoard::ReadThermocouple(const ChannelSetup&, std::int32_t, ThermocoupleType) {
    throw RunTimeError("The board has no thermocouple inputs");
}

void SerialBoard::StartStream(const StreamSetup&) {
    throw RunTimeError("Lines of numbers come at their own pace: use software polling");
}

StreamRead SerialBoard::ReadStream(StreamBuffer) {
    return {0, StreamState::Ended};
}

} // namespace tracelet
