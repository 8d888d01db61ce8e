#include "core/drivers/comedi/ComediAnalogBoard.h"

#include "core/base/NumberText.h"
#include "core/drivers/comedi/ComediMapping.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <limits>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tracelet {
namespace {

constexpr int LongestWait = 50; // milliseconds
constexpr std::uint64_t Endless = std::numeric_limits<std::uint64_t>::max();
constexpr double SlowestRate = 1e-300; // hertz, below and above what any board can do
constexpr double FastestRate = 1e300;

RangeUnit UnitOf(const comedi_range& range) {
    return range.unit == UNIT_volt ? RangeUnit::Volts
           : range.unit == UNIT_mA ? RangeUnit::Milliamperes
                                   : RangeUnit::Unstated;
}

bool HasLimits(const InputRange& range, const InputRange& wanted) {
    return range.first == wanted.first && range.second == wanted.second;
}

SampleForm FormOf(const StreamBuffer& buffer) {
    return std::holds_alternative<std::span<float>>(buffer) ? AnalogValues : RawCounts;
}

std::size_t SizeOf(const StreamBuffer& buffer) {
    return std::visit([](const auto& span) { return span.size(); }, buffer);
}

} // namespace

ComediAnalogBoard::ComediAnalogBoard(const std::string& node, comedi_t* probed, unsigned int subdeviceNumber)
    : subdevice(subdeviceNumber), wakeUp(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)),
      device(node, comedi_get_driver_name(probed), comedi_get_board_name(probed)) {
    info.name = comedi_get_board_name(probed);
    info.noFamily = true;
    info.driver = comedi_get_driver_name(probed);
    info.channelCount = std::max(comedi_get_n_channels(probed, subdevice), 0);
    bits = BitsOf(comedi_get_maxdata(probed, subdevice, 0));
    info.resolution = std::min(bits, 16);
    info.mayBlock = true;
    FindRanges(probed);
    FindWiring(probed);
    FindPacing();
}

ComediAnalogBoard::~ComediAnalogBoard() {
    StopStream();
}

void ComediAnalogBoard::FindRanges(comedi_t* probed) {
    const int count = comedi_get_n_ranges(probed, subdevice, 0);
    for (int code = 0; code < count; ++code) {
        const comedi_range* range = comedi_get_range(probed, subdevice, 0, static_cast<unsigned int>(code));
        if (!range)
            continue;
        const auto usable = InputRangeOf(code, range->min, range->max, UnitOf(*range));
        if (usable &&
            std::ranges::none_of(info.ranges, [&](const auto& known) { return HasLimits(known, *usable); }))
            info.ranges.push_back(*usable);
    }
    if (info.ranges.empty() || info.channelCount == 0)
        throw RunTimeError("The board has no input range in volts or milliamperes");
}

void ComediAnalogBoard::FindWiring(comedi_t* probed) {
    const int flags = comedi_get_subdevice_flags(probed, subdevice);
    info.differential = (flags & SDF_DIFF) != 0;
    info.singleEnded = (flags & (SDF_GROUND | SDF_COMMON)) != 0 || !info.differential;
    const bool onlyCommon = (flags & (SDF_GROUND | SDF_COMMON)) == SDF_COMMON;
    singleEndedReference = onlyCommon ? AREF_COMMON : AREF_GROUND;
    streams = (flags & (SDF_CMD_READ | SDF_CMD)) != 0;
    sampleBytes = (flags & SDF_LSAMPL) != 0 ? sizeof(lsampl_t) : sizeof(sampl_t);
}

// What the board offers is what its driver takes in a test; a board that takes no command is polled only.
void ComediAnalogBoard::FindPacing() {
    CommandWish wish = PlainWish(FastestRate, 1);
    if (!streams || !Takes(wish)) {
        streams = false;
        return;
    }
    info.lowestRate = SettledRate(SlowestRate, 1);
    info.highestRate = SettledRate(FastestRate, 1);
    for (std::int32_t count = 2; count <= info.channelCount; ++count)
        info.highestRate = std::max(info.highestRate, SettledRate(FastestRate, count));
    wish.sampleRate = info.lowestRate;
    wish.externalPacer = true;
    info.externalPacer = Takes(wish);
    wish.externalPacer = false;
    wish.externalStart = true;
    info.hardwareTrigger = Takes(wish);
}

bool ComediAnalogBoard::Takes(const CommandWish& wish) const {
    try {
        (void)SettleCommand(device, subdevice, wish);
        return true;
    } catch (const RunTimeError&) {
        return false;
    }
}

CommandWish ComediAnalogBoard::PlainWish(double rate, std::int32_t channelCount) const {
    CommandWish wish;
    wish.sampleRate = rate;
    const auto range = static_cast<unsigned int>(info.ranges.front().code);
    const unsigned int reference = Reference(info.singleEnded ? SingleEnded : Differential);
    for (unsigned int channel = 0; channel < static_cast<unsigned int>(channelCount); ++channel)
        wish.channels.push_back(CR_PACK(channel, range, reference));
    return wish;
}

double ComediAnalogBoard::SettledRate(double rate, std::int32_t channelCount) const {
    return SampleRateOf(SettleCommand(device, subdevice, PlainWish(rate, channelCount)));
}

void ComediAnalogBoard::Open() {
    const std::lock_guard lock(mutex);
    (void)device.Get();
    isOpen = true;
}

comedi_t* ComediAnalogBoard::Opened() const {
    if (!isOpen)
        throw RunTimeError("The board is not open");
    return device.Get();
}

double ComediAnalogBoard::SettleSampleRate(double rate, std::int32_t channelCount) const {
    if (!(rate > 0.0))
        throw RunTimeError("The sample rate must be above zero");
    if (channelCount < 1 || channelCount > info.channelCount)
        throw RunTimeError("The board cannot scan " + NumberText(channelCount) + " channels");
    if (!streams)
        return info.highestRate;
    const std::lock_guard lock(mutex);
    return SettledRate(rate, channelCount);
}

unsigned int ComediAnalogBoard::Reference(std::int32_t connection) const {
    if (connection == SingleEnded && info.singleEnded)
        return singleEndedReference;
    if (connection == Differential && info.differential)
        return AREF_DIFF;
    throw RunTimeError("The board has no such signal connection");
}

// Range numbers may differ from channel to channel, so the limits decide.
ComediAnalogBoard::DriverChannel ComediAnalogBoard::ToDriver(const ChannelSetup& channel) const {
    if (channel.channel < 0 || channel.channel >= info.channelCount)
        throw RunTimeError("The board has no analog channel " + NumberText(channel.channel));
    const auto number = static_cast<unsigned int>(channel.channel);
    const unsigned int reference = Reference(channel.connection);
    comedi_t* const handle = Opened();
    const int count = comedi_get_n_ranges(handle, subdevice, number);
    for (int code = 0; code < count; ++code) {
        const auto place = static_cast<unsigned int>(code);
        const comedi_range* range = comedi_get_range(handle, subdevice, number, place);
        if (!range)
            continue;
        const auto usable = InputRangeOf(code, range->min, range->max, UnitOf(*range));
        if (usable && usable->unit == channel.range.unit && HasLimits(*usable, channel.range))
            return {CR_PACK(number, place, reference), *range, comedi_get_maxdata(handle, subdevice, number)};
    }
    throw RunTimeError("The board has no such input range");
}

std::vector<ComediAnalogBoard::DriverChannel>
ComediAnalogBoard::ToDriver(std::span<const ChannelSetup> channels) const {
    if (channels.empty() || channels.size() > static_cast<std::size_t>(info.channelCount))
        throw RunTimeError("The board cannot scan " + std::to_string(channels.size()) + " channels");
    std::vector<DriverChannel> result;
    for (const ChannelSetup& channel : channels)
        result.push_back(ToDriver(channel));
    return result;
}

void ComediAnalogBoard::ReadScan(std::span<const ChannelSetup> channels, std::span<double> values) {
    const std::lock_guard lock(mutex);
    std::vector<DriverChannel> scan = ToDriver(channels);
    if (values.size() != scan.size())
        throw Fault::SubscriptOutOfRange();
    std::vector<lsampl_t> codes(scan.size());
    std::vector<comedi_insn> readings(scan.size());
    for (std::size_t i = 0; i < scan.size(); ++i) {
        readings[i].insn = INSN_READ;
        readings[i].n = 1;
        readings[i].data = &codes[i];
        readings[i].subdev = subdevice;
        readings[i].chanspec = scan[i].packed;
    }
    comedi_insnlist list{};
    list.n_insns = static_cast<unsigned int>(readings.size());
    list.insns = readings.data();
    const int done = comedi_do_insnlist(device.Get(), &list);
    if (done < 0)
        device.Fail();
    if (static_cast<unsigned int>(done) != list.n_insns)
        throw RunTimeError("The board did not read the whole scan");
    for (std::size_t i = 0; i < scan.size(); ++i)
        values[i] = comedi_to_phys(codes[i], &scan[i].range, scan[i].maxdata);
}

ThermocoupleReading ComediAnalogBoard::ReadThermocouple(const ChannelSetup&, std::int32_t, ThermocoupleType) {
    throw RunTimeError("The board has no thermocouple inputs");
}

CommandWish ComediAnalogBoard::WishOf(const StreamSetup& setup,
                                      std::span<const DriverChannel> channels) const {
    if (!streams)
        throw RunTimeError("The board has no hardware-paced input");
    if (setup.pacer != InternalPacer && !info.externalPacer)
        throw RunTimeError("The board has no external pacer");
    const TriggerSetup& trigger = setup.trigger;
    if (trigger.mode != 0 && !info.hardwareTrigger)
        throw RunTimeError("The board has no hardware trigger");
    if (trigger.mode < 0 || trigger.mode > 1 || (trigger.mode == 1 && trigger.source != 0))
        throw RunTimeError("The board can only start at an edge of its digital trigger");
    CommandWish wish;
    for (const DriverChannel& channel : channels)
        wish.channels.push_back(channel.packed);
    wish.sampleRate = setup.sampleRate;
    wish.externalPacer = setup.pacer != InternalPacer;
    wish.externalStart = trigger.mode == 1;
    wish.fallingEdge = trigger.edge == 1;
    wish.totalSamples = setup.totalSamples;
    return wish;
}

void ComediAnalogBoard::StartStream(const StreamSetup& setup) {
    const std::lock_guard lock(mutex);
    if (run)
        throw RunTimeError("The board is acquiring already");
    std::vector<DriverChannel> channels = ToDriver(setup.channels);
    const CommandWish wish = WishOf(setup, channels);
    if (!(setup.sampleRate > 0.0))
        throw RunTimeError("The sample rate must be above zero");
    const comedi_cmd command = SettleCommand(device, subdevice, wish);
    PrepareReading();
    Run fresh{command, wish.channels, std::move(channels), ScanStage(setup.channels.size(), sampleBytes),
              setup.form};
    fresh.left = setup.totalSamples == 0 ? Endless : setup.totalSamples;
    RunCommand(device, fresh.command, fresh.packed);
    ++runNumber;
    run.emplace(std::move(fresh));
}

// Reading must not block, comes from this subdevice, and has the largest buffer behind it that the driver
// allows; a smaller one is no error.
void ComediAnalogBoard::PrepareReading() {
    comedi_t* const handle = device.Get();
    if (comedi_get_read_subdevice(handle) != static_cast<int>(subdevice) &&
        comedi_set_read_subdevice(handle, subdevice) < 0)
        device.Fail();
    const int descriptor = comedi_fileno(handle);
    if (fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK) < 0)
        device.Fail(errno);
    const int largest = comedi_get_max_buffer_size(handle, subdevice);
    if (largest > 0)
        comedi_set_buffer_size(handle, subdevice, static_cast<unsigned int>(largest));
    DrainWakeUp();
}

void ComediAnalogBoard::DrainWakeUp() const {
    std::uint64_t stops = 0;
    [[maybe_unused]] const auto drained = read(wakeUp.Get(), &stops, sizeof stops);
}

void ComediAnalogBoard::StopStream() {
    const std::lock_guard lock(mutex);
    if (!run)
        return;
    Cancel();
    const std::uint64_t stop = 1;
    [[maybe_unused]] const auto written = write(wakeUp.Get(), &stop, sizeof stop);
}

void ComediAnalogBoard::Cancel() {
    run.reset();
    if (device.IsOpen())
        comedi_cancel(device.Get(), subdevice);
}

StreamRead ComediAnalogBoard::ReadStream(StreamBuffer buffer) {
    std::unique_lock lock(mutex);
    if (!run)
        return {0, StreamState::Ended};
    if (FormOf(buffer) != run->form)
        throw Fault::TypeMismatch();
    if (SizeOf(buffer) == 0)
        return {0, StreamState::Running};
    try {
        if (run->stage.Ready() == 0) {
            if (!Wait(lock))
                return {0, StreamState::Ended};
            Fetch();
        }
        const std::size_t count = HandOver(buffer);
        return {count, StateBehind()};
    } catch (const RunTimeError&) {
        Cancel();
        throw;
    }
}

// Waits for samples, unlocked. False when the stream was stopped meanwhile.
bool ComediAnalogBoard::Wait(std::unique_lock<std::mutex>& lock) {
    const std::uint64_t awaited = runNumber;
    std::array<pollfd, 2> events{{{comedi_fileno(device.Get()), POLLIN, 0}, {wakeUp.Get(), POLLIN, 0}}};
    lock.unlock();
    poll(events.data(), events.size(), LongestWait);
    lock.lock();
    return run && runNumber == awaited;
}

void ComediAnalogBoard::Fetch() {
    while (true) {
        const std::span<std::byte> room = run->stage.Room();
        if (room.empty())
            return;
        const ssize_t got = read(comedi_fileno(device.Get()), room.data(), room.size());
        if (got > 0) {
            run->stage.Commit(static_cast<std::size_t>(got));
        } else if (got == 0) {
            run->over = true;
            return;
        } else if (errno == EPIPE) {
            run->overrun = true;
            run->stage.DropPartialScan();
            return;
        } else if (errno == EAGAIN || errno == EINTR) {
            return;
        } else {
            device.Fail(errno);
        }
    }
}

std::size_t ComediAnalogBoard::HandOver(const StreamBuffer& buffer) {
    ScanStage& stage = run->stage;
    const auto count =
        static_cast<std::size_t>(std::min<std::uint64_t>({SizeOf(buffer), stage.Ready(), run->left}));
    if (const auto* counts = std::get_if<std::span<std::int16_t>>(&buffer)) {
        for (std::int16_t& sample : counts->first(count))
            sample = CountOfWideCode(stage.Take(), bits);
    } else {
        for (float& sample : std::get<std::span<float>>(buffer).first(count)) {
            DriverChannel& channel = run->channels[stage.Position()];
            sample = static_cast<float>(comedi_to_phys(stage.Take(), &channel.range, channel.maxdata));
        }
    }
    if (run->left != Endless)
        run->left -= count;
    return count;
}

// What comes behind the samples handed over so far.
StreamState ComediAnalogBoard::StateBehind() {
    const bool drained = run->stage.Ready() == 0;
    if (run->left == 0 || (drained && run->over)) {
        Cancel();
        return StreamState::Ended;
    }
    if (!drained || !run->overrun)
        return StreamState::Running;
    Restart();
    return StreamState::Overrun;
}

void ComediAnalogBoard::Restart() {
    run->overrun = false;
    comedi_cancel(device.Get(), subdevice);
    SetTotal(run->command, run->command.stop_src == TRIG_COUNT, run->left == Endless ? 0 : run->left);
    RunCommand(device, run->command, run->packed);
}

} // namespace tracelet
