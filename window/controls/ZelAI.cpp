#include "window/controls/ZelAI.h"

#include "core/base/NumberText.h"
#include "core/base/RunTimeError.h"
#include "core/boards/ChannelNumbers.h"
#include "core/input/DriverCall.h"
#include "window/controls/BufferedInput.h"
#include "window/controls/DevicePicker.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace tracelet {
namespace {

bool IsOneOf(std::int32_t code, std::int32_t first, std::int32_t last) {
    return code >= first && code <= last;
}

void RequireTime(double milliseconds) {
    if (!std::isfinite(milliseconds) || milliseconds < 0.0)
        throw RunTimeError("A trigger time must be 0 or more milliseconds");
}

} // namespace

ZelAI::ZelAI(QObject* parent) : QObject(parent), input(new BufferedInput(this)) {
    connect(input, &BufferedInput::Half, this, &ZelAI::HandOver);
    connect(input, &BufferedInput::Lost, this, &ZelAI::OnOverrunNotice);
    connect(input, &BufferedInput::Failed, this, [this](const QString& text) {
        errorText = text;
        emit OnInputFailed();
    });
}

ZelAI::~ZelAI() {
    input->Drop();
}

// ---- Board

void ZelAI::SetBoards(const BoardList& boards) {
    SetDeviceNumber(-1);
    selection.SetBoards(boards.analog);
}

void ZelAI::AddBoards(const BoardList& boards) {
    selection.AddBoards(boards.analog);
}

std::int32_t ZelAI::DeviceNumber() const {
    return selection.Number();
}

void ZelAI::SetDeviceNumber(std::int32_t number) {
    const std::shared_ptr<AnalogBoard> board = selection.Find(number);
    if (board && number == selection.Number())
        return;
    Settings fresh;
    if (board) {
        input->RequireAnswer(*board);
        CallDriver([&] { board->Open(); });
        fresh = DefaultsOf(*board);
    }
    input->Drop();
    selection.Select(number);
    settings = std::move(fresh);
    errorText.clear();
}

ZelAI::Settings ZelAI::DefaultsOf(const AnalogBoard& board) const {
    const AnalogBoardInfo& info = board.Info();
    Settings defaults;
    defaults.channels = ChannelSettings(info, info.channelCount);
    defaults.scanCount = std::min(info.channelCount, 1);
    defaults.sampleRate = SettledRate(board, defaults.wantedRate, defaults.scanCount);
    return defaults;
}

QString ZelAI::DeviceName() const {
    return QString::fromStdString(BoardInfo().name);
}

const AnalogBoardInfo& ZelAI::BoardInfo() const {
    return selection.Info();
}

void ZelAI::SelectDevice(QWidget* owner) {
    emit Picking();
    if (const auto picked = PickBoard(selection.Entries(), selection.Number(), owner))
        SetDeviceNumber(*picked);
}

std::int32_t ZelAI::Resolution() const {
    return BoardInfo().resolution;
}

std::int32_t ZelAI::MaxChannelCount() const {
    return BoardInfo().channelCount;
}

// ---- Channels

void ZelAI::RequireChannel(std::int32_t channel) const {
    if (!settings.channels.Has(channel))
        throw RunTimeError("The device has no channel " + NumberText(channel));
}

std::int32_t ZelAI::Channel() const {
    return settings.channel;
}

void ZelAI::SetChannel(std::int32_t channel) {
    if (!selection)
        return;
    RequireChannel(channel);
    settings.channel = channel;
}

std::int32_t ZelAI::SignalConnection() const {
    return selection ? settings.channels.ConnectionOf(settings.channel) : std::int32_t{SingleEnded};
}

void ZelAI::SetSignalConnection(std::int32_t code) {
    if (!selection)
        return;
    settings.channels.Connect(settings.channel, code);
    settings.scan.clear();
}

void ZelAI::FirstRange(std::int32_t& code, double& first, double& second) {
    settings.nextRange = 0;
    NextRange(code, first, second);
}

void ZelAI::NextRange(std::int32_t& code, double& first, double& second) {
    InputRange range;
    if (settings.nextRange < BoardInfo().ranges.size())
        range = BoardInfo().ranges[settings.nextRange++];
    code = range.code;
    first = range.first;
    second = range.second;
}

void ZelAI::SetChannelRange(double first, double second, std::int32_t channel) {
    if (!selection)
        return;
    RequireChannel(channel);
    const std::vector<InputRange>& ranges = selection->Info().ranges;
    const auto range = std::ranges::find_if(
        ranges, [&](const InputRange& r) { return r.first == first && r.second == second; });
    if (range == ranges.end())
        throw RunTimeError("The device has no input range " + OptionalDecimalsText(first) + " ~ " +
                           OptionalDecimalsText(second));
    settings.channels.SetRange(channel, *range);
    settings.scan.clear();
}

void ZelAI::GetChannelRange(std::int32_t& code, double& first, double& second, std::int32_t channel) const {
    const InputRange range = RangeOf(channel);
    code = range.code;
    first = range.first;
    second = range.second;
}

InputRange ZelAI::RangeOf(std::int32_t channel) const {
    if (!selection)
        return {};
    RequireChannel(channel);
    return settings.channels.RangeOf(channel);
}

// ---- Scan

void ZelAI::RequireScan(std::int32_t start, std::int32_t count) const {
    const ChannelNumbers numbers{BoardInfo(), settings.channels.Connections()};
    if (numbers.PhysToLogical(start) > numbers.LogicalCount() - count)
        throw RunTimeError("A scan of " + NumberText(count) + " channels from channel " + NumberText(start) +
                           " goes beyond the device's last channel");
}

std::int32_t ZelAI::ScanStartChannel() const {
    return settings.scanStart;
}

void ZelAI::SetScanStartChannel(std::int32_t channel) {
    if (!selection || channel == settings.scanStart)
        return;
    if (channel < 0 || channel >= MaxChannelCount())
        throw RunTimeError("A scan cannot begin with channel " + NumberText(channel) +
                           ": the device has no such channel");
    settings.scanStart = channel;
    settings.scan.clear();
}

std::int32_t ZelAI::ScanChannelCount() const {
    return settings.scanCount;
}

void ZelAI::SetScanChannelCount(std::int32_t count) {
    if (!selection || (count == 0 && MaxChannelCount() == 0))
        return;
    if (count < 1 || count > MaxChannelCount())
        throw RunTimeError("A scan of " + NumberText(count) + " channels is not possible: the device has " +
                           NumberText(MaxChannelCount()));
    RequireScan(settings.scanStart, count);
    settings.sampleRate = SettledRate(*selection.Board(), settings.wantedRate, count);
    settings.scanCount = count;
    settings.scan.clear();
}

const std::vector<ChannelSetup>& ZelAI::ScannedChannels() {
    if (!settings.scan.empty())
        return settings.scan;
    RequireScan(settings.scanStart, settings.scanCount);
    const ChannelNumbers numbers{BoardInfo(), settings.channels.Connections()};
    std::vector<ChannelSetup> channels;
    channels.reserve(static_cast<std::size_t>(settings.scanCount));
    for (std::int32_t position = 0; position < settings.scanCount; ++position)
        channels.push_back(settings.channels.SetupOf(numbers.ScannedChannel(settings.scanStart, position)));
    settings.scan = std::move(channels);
    return settings.scan;
}

// ---- Pacer, form and trigger

// Rate that the board settles on; a board without channels has none to be asked for.
double ZelAI::SettledRate(const AnalogBoard& board, double hertz, std::int32_t channelCount) const {
    input->RequireAnswer(board);
    const AnalogBoardInfo& info = board.Info();
    const double wanted = std::min(std::max(hertz, info.lowestRate), info.highestRate);
    const double settled =
        channelCount < 1 ? wanted : CallDriver([&] { return board.SettleSampleRate(wanted, channelCount); });
    if (!std::isfinite(settled) || settled <= 0.0)
        throw RunTimeError("The board settles on a sample rate of " + NumberText(settled) +
                           " Hz, at which nothing can be measured");
    return settled;
}

double ZelAI::SampleRate() const {
    return settings.sampleRate;
}

void ZelAI::SetSampleRate(double hertz) {
    if (!selection)
        return;
    if (!std::isfinite(hertz) || hertz <= 0.0)
        throw RunTimeError("The sample rate must be above 0 Hz");
    settings.sampleRate = SettledRate(*selection.Board(), hertz, settings.scanCount);
    settings.wantedRate = hertz;
}

std::int32_t ZelAI::PacerSource() const {
    return settings.pacer;
}

void ZelAI::SetPacerSource(std::int32_t code) {
    if (!selection)
        return;
    const std::int32_t last = selection->Info().externalPacer ? ExternalPacerProbe : InternalPacer;
    if (IsOneOf(code, InternalPacer, last))
        settings.pacer = code;
}

std::int32_t ZelAI::DataType() const {
    return settings.form;
}

void ZelAI::SetDataType(std::int32_t code) {
    if (selection && IsOneOf(code, RawCounts, AnalogValues))
        settings.form = code;
}

bool ZelAI::HasTrigger() const {
    return BoardInfo().hardwareTrigger;
}

std::int32_t ZelAI::TriggerMode() const {
    return settings.trigger.mode;
}

void ZelAI::SetTriggerMode(std::int32_t code) {
    if (HasTrigger() && IsOneOf(code, 0, 3))
        settings.trigger.mode = code;
}

std::int32_t ZelAI::TriggerEdge() const {
    return settings.trigger.edge;
}

void ZelAI::SetTriggerEdge(std::int32_t code) {
    if (HasTrigger() && IsOneOf(code, 0, 1))
        settings.trigger.edge = code;
}

std::int32_t ZelAI::TriggerSource() const {
    return settings.trigger.source;
}

void ZelAI::SetTriggerSource(std::int32_t code) {
    if (HasTrigger() && IsOneOf(code, 0, 4))
        settings.trigger.source = code;
}

double ZelAI::TriggerVoltage() const {
    return settings.trigger.voltage;
}

void ZelAI::SetTriggerVoltage(double volts) {
    if (!HasTrigger())
        return;
    if (!std::isfinite(volts))
        throw RunTimeError("The trigger voltage must be a number");
    settings.trigger.voltage = volts;
}

double ZelAI::TriggerDelayTime() const {
    return settings.trigger.delayTime;
}

void ZelAI::SetTriggerDelayTime(double milliseconds) {
    if (!HasTrigger())
        return;
    RequireTime(milliseconds);
    settings.trigger.delayTime = milliseconds;
}

double ZelAI::TriggerAfterTime() const {
    return settings.trigger.afterTime;
}

void ZelAI::SetTriggerAfterTime(double milliseconds) {
    if (!HasTrigger())
        return;
    RequireTime(milliseconds);
    settings.trigger.afterTime = milliseconds;
}

// ---- Acquisition

template <typename Action>
void ZelAI::KeepingErrorText(Action action) {
    errorText.clear();
    try {
        action();
    } catch (const std::bad_alloc&) {
        errorText = QString::fromStdString(Fault::OutOfMemory().what());
        throw Fault::OutOfMemory();
    } catch (const std::exception& error) {
        errorText = QString::fromStdString(error.what());
        throw;
    }
}

const std::vector<ChannelSetup>& ZelAI::ScanSetup() {
    if (selection && settings.scanCount > 0)
        KeepingErrorText([this] {
            (void)ScannedChannels();
            input->RequireAnswer(*selection.Board());
        });
    return settings.scan;
}

const std::vector<double>& ZelAI::ReadChannels() {
    readValues.resize(static_cast<std::size_t>(settings.scanCount));
    if (readValues.empty())
        return readValues;
    KeepingErrorText([&] {
        const std::vector<ChannelSetup>& channels = ScannedChannels();
        input->RequireAnswer(*selection.Board());
        CallDriver([&] { selection->ReadScan(channels, readValues); });
    });
    return readValues;
}

// Whole scans that half a buffer of `count` conversions holds, one at least.
std::size_t ZelAI::HalfSamples(std::int32_t count) const {
    if (count < 1)
        throw RunTimeError("The data count must be above 0");
    const std::int32_t channels = settings.scanCount;
    const auto samples = static_cast<std::size_t>(std::max(count / 2 / channels, 1) * channels);
    const std::size_t sampleBytes = settings.form == RawCounts ? sizeof(std::int16_t) : sizeof(float);
    if (samples > queueLimit / sampleBytes)
        throw RunTimeError("A data count of " + NumberText(count) +
                           " is too large: half of it must fit into " +
                           GroupedText(static_cast<double>(queueLimit >> 10)) + " KiB");
    return samples;
}

StreamSetup ZelAI::Stream(std::uint64_t totalSamples) {
    StreamSetup setup;
    setup.channels = ScannedChannels();
    setup.sampleRate = settings.sampleRate;
    setup.pacer = settings.pacer == InternalPacer ? InternalPacer : ExternalPacer;
    setup.trigger = settings.trigger;
    setup.form = static_cast<SampleForm>(settings.form);
    setup.totalSamples = totalSamples;
    return setup;
}

void ZelAI::StartBufferedAI(std::int32_t count, bool cyclic) {
    KeepingErrorText([&] {
        if (!selection)
            throw RunTimeError("No analog device is selected");
        if (settings.scanCount < 1)
            throw RunTimeError("No analog channel is selected");
        const std::size_t half = HalfSamples(count);
        input->Start(selection.Board(), Stream(cyclic ? 0 : 2 * half), half, queueLimit);
        streamForm = settings.form;
    });
}

bool ZelAI::StopBufferedAI(std::int32_t /*reserved*/) {
    const std::string fault = input->Stop();
    if (!fault.empty())
        errorText = QString::fromStdString(fault);
    return fault.empty();
}

void ZelAI::SetQueueLimit(std::size_t bytes) {
    queueLimit = bytes;
}

void ZelAI::HandOver(bool first, std::span<const std::byte> samples) {
    const auto signal = first ? &ZelAI::OnFirstBufferChange : &ZelAI::OnSecondBufferChange;
    if (streamForm == RawCounts) {
        const auto* data = reinterpret_cast<const std::int16_t*>(samples.data());
        const std::size_t count = samples.size() / sizeof(std::int16_t);
        emit(this->*signal)({data, count}, {}, static_cast<std::int32_t>(count));
        return;
    }
    const auto* data = reinterpret_cast<const float*>(samples.data());
    const std::size_t count = samples.size() / sizeof(float);
    emit(this->*signal)({}, {data, count}, static_cast<std::int32_t>(count));
}

QString ZelAI::ErrorText() const {
    return errorText;
}

} // namespace tracelet
