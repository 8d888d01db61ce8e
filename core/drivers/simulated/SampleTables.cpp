#include "core/drivers/simulated/SampleTables.h"

#include "core/boards/ConverterCounts.h"

#include <algorithm>

namespace tracelet {
namespace {

std::int32_t SampledCode(const Converter& converter, const ChannelSetup& channel, const Signal& signal,
                         SignalPlace index) {
    return CodeOf(SignalValue(signal, channel.range, index), channel.range, converter.resolution);
}

// One period of every channel of a set-up, each sample made by `sampled`.
template <typename Sample, typename Sampled>
std::vector<std::vector<Sample>> MakePeriods(std::int32_t board, const StreamSetup& setup, Sampled sampled) {
    const double scanRate = setup.sampleRate / static_cast<double>(setup.channels.size());
    std::vector<std::vector<Sample>> periods;
    periods.reserve(setup.channels.size());
    for (const ChannelSetup& channel : setup.channels) {
        const Signal signal = StreamSignal(board, channel.channel, scanRate);
        std::vector<Sample>& period = periods.emplace_back(static_cast<std::size_t>(signal.period));
        for (std::size_t i = 0; i < period.size(); ++i)
            period[i] = sampled(channel, signal, i);
    }
    return periods;
}

// Writes `scans` whole scans of one channel, every `stride`-th sample of `out`.
template <typename Sample>
void FillChannel(const std::vector<Sample>& period, std::uint64_t firstScan, std::size_t scans,
                 std::size_t stride, Sample* out) {
    auto at = static_cast<std::size_t>(firstScan % period.size());
    while (scans > 0) {
        const std::size_t run = std::min(scans, period.size() - at);
        const Sample* const from = period.data() + at;
        for (std::size_t i = 0; i < run; ++i)
            out[i * stride] = from[i];
        out += run * stride;
        scans -= run;
        at = 0;
    }
}

template <typename Sample>
void FillWholeScans(const std::vector<std::vector<Sample>>& periods, std::uint64_t firstScan,
                    std::span<Sample> out) {
    constexpr std::size_t BlockSamples = 8192; // what is written stays in the first-level cache
    const std::size_t stride = periods.size();
    const std::size_t block = std::max<std::size_t>(1, BlockSamples / stride);
    std::size_t scans = out.size() / stride;
    Sample* at = out.data();
    while (scans > 0) {
        const std::size_t now = std::min(scans, block);
        for (std::size_t position = 0; position < stride; ++position)
            FillChannel(periods[position], firstScan, now, stride, at + position);
        at += now * stride;
        firstScan += now;
        scans -= now;
    }
}

template <typename Sample>
void FillSingly(const std::vector<std::vector<Sample>>& periods, std::uint64_t firstSample,
                std::span<Sample> out) {
    for (Sample& sample : out) {
        const std::vector<Sample>& period = periods[static_cast<std::size_t>(firstSample % periods.size())];
        sample = period[static_cast<std::size_t>(firstSample / periods.size() % period.size())];
        ++firstSample;
    }
}

// Buffers may begin and end inside a scan.
template <typename Sample>
void FillSpan(const std::vector<std::vector<Sample>>& periods, std::uint64_t firstSample,
              std::span<Sample> out) {
    const std::size_t stride = periods.size();
    const std::size_t head =
        std::min(out.size(), static_cast<std::size_t>((stride - firstSample % stride) % stride));
    const std::size_t whole = (out.size() - head) / stride * stride;
    FillSingly(periods, firstSample, out.first(head));
    FillWholeScans(periods, (firstSample + head) / stride, out.subspan(head, whole));
    FillSingly(periods, firstSample + head + whole, out.subspan(head + whole));
}

} // namespace

std::int16_t SampledCount(const Converter& converter, const ChannelSetup& channel, const Signal& signal,
                          SignalPlace index) {
    const std::int16_t count = CountOf(SampledCode(converter, channel, signal, index), converter.resolution);
    const std::int32_t tag = converter.taggedCounts ? (channel.channel & 15) << 12 : 0;
    return static_cast<std::int16_t>(count | tag);
}

double SampledValue(const Converter& converter, const ChannelSetup& channel, const Signal& signal,
                    SignalPlace index) {
    return ValueOf(SampledCode(converter, channel, signal, index), channel.range, converter.resolution);
}

SampleForm FormOf(const StreamBuffer& buffer) {
    return std::holds_alternative<std::span<float>>(buffer) ? AnalogValues : RawCounts;
}

std::size_t SizeOf(const StreamBuffer& buffer) {
    return std::visit([](auto span) { return span.size(); }, buffer);
}

SampleTables::SampleTables(std::int32_t board, const Converter& converter, const StreamSetup& setup) {
    if (setup.form == RawCounts) {
        periods =
            MakePeriods<std::int16_t>(board, setup, [&](const auto& channel, const auto& signal, auto index) {
                return SampledCount(converter, channel, signal, index);
            });
    } else {
        periods = MakePeriods<float>(board, setup, [&](const auto& channel, const auto& signal, auto index) {
            return static_cast<float>(SampledValue(converter, channel, signal, index));
        });
    }
}

void SampleTables::Fill(std::uint64_t firstSample, StreamBuffer buffer) const {
    if (const auto* counts = std::get_if<std::span<std::int16_t>>(&buffer))
        FillSpan(std::get<Periods<std::int16_t>>(periods), firstSample, *counts);
    else
        FillSpan(std::get<Periods<float>>(periods), firstSample, std::get<std::span<float>>(buffer));
}

} // namespace tracelet
