#include "core/drivers/comedi/ComediCommand.h"

#include "core/drivers/comedi/ComediMapping.h"

#include <algorithm>
#include <initializer_list>
#include <limits>

namespace tracelet {
namespace {

constexpr int MostPasses = 10;        // tests until a command must have settled
constexpr int ChannelListRefused = 5; // answer of a test

// The first of the sources that is offered.
unsigned int Pick(unsigned int offered, std::initializer_list<unsigned int> preferred) {
    for (const unsigned int source : preferred) {
        if ((offered & source) != 0)
            return source;
    }
    throw RunTimeError("The board cannot pace its input like this");
}

void PickPacer(comedi_cmd& command, const comedi_cmd& offered, bool external) {
    if (!external) {
        command.scan_begin_src = Pick(offered.scan_begin_src, {TRIG_TIMER, TRIG_FOLLOW});
        if (command.scan_begin_src == TRIG_TIMER)
            command.convert_src = Pick(offered.convert_src, {TRIG_TIMER, TRIG_NOW});
        else
            command.convert_src = Pick(offered.convert_src, {TRIG_TIMER});
        return;
    }
    // A pacer clocks single conversions, or whole scans where the board cannot do that.
    const bool clocksConversions = (offered.convert_src & TRIG_EXT) != 0;
    if (clocksConversions && (offered.scan_begin_src & TRIG_FOLLOW) != 0) {
        command.convert_src = TRIG_EXT;
        command.scan_begin_src = TRIG_FOLLOW;
        return;
    }
    command.scan_begin_src = Pick(offered.scan_begin_src, {TRIG_EXT});
    command.convert_src = Pick(offered.convert_src, {TRIG_TIMER, TRIG_NOW});
}

void SetPeriods(comedi_cmd& command, const CommandWish& wish) {
    const auto channels = static_cast<std::int32_t>(wish.channels.size());
    const std::uint32_t period = PeriodOf(wish.sampleRate, channels);
    if (command.scan_begin_src == TRIG_TIMER)
        command.scan_begin_arg = period;
    if (command.convert_src == TRIG_TIMER)
        command.convert_arg = command.scan_begin_src == TRIG_FOLLOW ? PeriodOf(wish.sampleRate, 1)
                                                                    : period / command.chanlist_len;
}

bool HasSourcesOf(const comedi_cmd& command, const comedi_cmd& wanted) {
    return command.start_src == wanted.start_src && command.scan_begin_src == wanted.scan_begin_src &&
           command.convert_src == wanted.convert_src && command.scan_end_src == wanted.scan_end_src &&
           command.stop_src == wanted.stop_src;
}

// The driver corrects one kind of argument a test, until there is nothing left to correct.
comedi_cmd Settled(ComediDevice& device, comedi_cmd command, std::vector<unsigned int> channels) {
    const comedi_cmd wanted = command;
    command.chanlist = channels.data();
    for (int pass = 0; pass < MostPasses; ++pass) {
        const int answer = comedi_command_test(device.Get(), &command);
        if (answer < 0)
            device.Fail();
        if (answer == ChannelListRefused)
            throw RunTimeError("The board cannot scan these channels together");
        if (!HasSourcesOf(command, wanted))
            throw RunTimeError("The board cannot pace its input like this");
        if (answer == 0) {
            command.chanlist = nullptr;
            return command;
        }
    }
    throw RunTimeError("The board takes no such sample rate");
}

// Conversions are spread evenly over the scan, unless the board's clock then makes the scan longer.
comedi_cmd SettledPeriods(ComediDevice& device, const comedi_cmd& command, const CommandWish& wish) {
    const comedi_cmd spread = Settled(device, command, wish.channels);
    if (command.scan_begin_src != TRIG_TIMER || command.convert_src != TRIG_TIMER)
        return spread;
    comedi_cmd packed = command;
    packed.convert_arg = 0;
    packed = Settled(device, packed, wish.channels);
    return spread.scan_begin_arg == packed.scan_begin_arg ? spread : packed;
}

} // namespace

comedi_cmd SettleCommand(ComediDevice& device, unsigned int subdevice, const CommandWish& wish) {
    comedi_cmd offered{};
    if (comedi_get_cmd_src_mask(device.Get(), subdevice, &offered) < 0)
        throw RunTimeError("The board has no hardware-paced input");
    comedi_cmd command{};
    command.subdev = subdevice;
    command.chanlist_len = static_cast<unsigned int>(wish.channels.size());
    if (wish.externalStart) {
        command.start_src = Pick(offered.start_src, {TRIG_EXT});
        command.start_arg = CR_EDGE | (wish.fallingEdge ? CR_INVERT : 0U);
    } else {
        command.start_src = Pick(offered.start_src, {TRIG_NOW, TRIG_INT});
    }
    PickPacer(command, offered, wish.externalPacer);
    SetPeriods(command, wish);
    command.scan_end_src = TRIG_COUNT;
    command.scan_end_arg = command.chanlist_len;
    SetTotal(command, (offered.stop_src & TRIG_COUNT) != 0, wish.totalSamples);
    return SettledPeriods(device, command, wish);
}

double SampleRateOf(const comedi_cmd& command) {
    if (command.scan_begin_src == TRIG_TIMER)
        return RateOf(command.scan_begin_arg, static_cast<std::int32_t>(command.chanlist_len));
    return RateOf(command.convert_arg, 1);
}

void SetTotal(comedi_cmd& command, bool canCount, std::uint64_t totalSamples) {
    const std::uint64_t scans = (totalSamples + command.chanlist_len - 1) / command.chanlist_len;
    const bool counts = canCount && totalSamples != 0 && scans <= std::numeric_limits<unsigned int>::max();
    command.stop_src = counts ? TRIG_COUNT : TRIG_NONE;
    command.stop_arg = counts ? static_cast<unsigned int>(scans) : 0;
}

void RunCommand(ComediDevice& device, comedi_cmd command, std::vector<unsigned int>& channels) {
    command.chanlist = channels.data();
    if (comedi_command(device.Get(), &command) < 0)
        device.Fail();
    if (command.start_src != TRIG_INT)
        return;
    if (comedi_internal_trigger(device.Get(), command.subdev, 0) < 0) {
        const int error = comedi_errno();
        comedi_cancel(device.Get(), command.subdev);
        device.Fail(error);
    }
}

} // namespace tracelet
