#include "window/controls/ZelThermo.h"

#include "core/base/NumberText.h"
#include "core/base/RunTimeError.h"
#include "core/boards/BoardFamily.h"
#include "core/input/DriverCall.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tracelet {
namespace {

void RequireCode(std::int32_t code, std::int32_t last, const char* what) {
    if (code < 0 || code > last)
        throw RunTimeError(std::string("There is no ") + what + " " + NumberText(code));
}

bool Covers(const InputRange& range, double low, double high) {
    return !IsMilliamperes(range) && range.first <= low && high <= range.second;
}

} // namespace

ZelThermo::ZelThermo(QObject* parent) : QObject(parent) {}
ZelThermo::~ZelThermo() = default;

void ZelThermo::SetBoards(const BoardList& boards) {
    selection.SetBoards(boards.analog);
    settings = {};
}

void ZelThermo::AddBoards(const BoardList& boards) {
    selection.AddBoards(boards.analog);
}

std::int32_t ZelThermo::DeviceNumber() const {
    return selection.Number();
}

void ZelThermo::SetDeviceNumber(std::int32_t number) {
    std::shared_ptr<AnalogBoard> board = selection.Find(number);
    if (board && number == selection.Number())
        return;
    if (board && !board->Info().thermocouples)
        board.reset();
    Settings fresh;
    if (board) {
        CallDriver([&] { board->Open(); });
        fresh.channels = ChannelSettings(board->Info(), 2 * board->Info().channelCount);
    }
    selection.Select(board ? number : -1);
    settings = std::move(fresh);
}

QString ZelThermo::DeviceName() const {
    return QString::fromStdString(BoardInfo().name);
}

const AnalogBoardInfo& ZelThermo::BoardInfo() const {
    return selection.Info();
}

void ZelThermo::RequireChannel(std::int32_t channel) const {
    if (!settings.channels.Has(channel))
        throw RunTimeError("The device has no thermocouple channel " + NumberText(channel));
}

std::int32_t ZelThermo::Channel() const {
    return settings.channel;
}

void ZelThermo::SetChannel(std::int32_t channel) {
    if (!selection)
        return;
    RequireChannel(channel);
    settings.channel = channel;
}

std::int32_t ZelThermo::SignalConnection() const {
    return selection ? settings.channels.ConnectionOf(settings.channel) : std::int32_t{SingleEnded};
}

void ZelThermo::SetSignalConnection(std::int32_t code) {
    if (selection)
        settings.channels.Connect(settings.channel, code);
}

std::int32_t ZelThermo::ThermoType() const {
    return static_cast<std::int32_t>(settings.type);
}

void ZelThermo::SetThermoType(std::int32_t code) {
    if (!selection)
        return;
    RequireCode(code, static_cast<std::int32_t>(ThermocoupleType::E), "thermocouple type");
    settings.type = static_cast<ThermocoupleType>(code);
}

std::int32_t ZelThermo::ThermoScale() const {
    return static_cast<std::int32_t>(settings.scale);
}

void ZelThermo::SetThermoScale(std::int32_t code) {
    if (!selection)
        return;
    RequireCode(code, static_cast<std::int32_t>(TemperatureScale::Kelvin), "temperature scale");
    settings.scale = static_cast<TemperatureScale>(code);
}

std::int32_t ZelThermo::ExpChannel() const {
    return settings.expansion;
}

void ZelThermo::SetExpChannel(std::int32_t channel) {
    if (!selection)
        return;
    RequireCode(channel, 15, "expansion channel");
    settings.expansion = channel;
}

void ZelThermo::SetInputLimits(std::int32_t channel, double low, double high) {
    if (!selection)
        return;
    RequireChannel(channel);
    const InputRange* narrowest = nullptr;
    for (const InputRange& range : selection->Info().ranges) {
        const bool narrower =
            narrowest == nullptr || range.second - range.first < narrowest->second - narrowest->first;
        if (narrower && Covers(range, low, high))
            narrowest = &range;
    }
    if (narrowest == nullptr)
        throw RunTimeError("The device has no input range from " + NumberText(low) + " to " +
                           NumberText(high) + " V");
    settings.channels.SetRange(channel, *narrowest);
}

ChannelSetup ZelThermo::SetupOf(std::int32_t channel) const {
    RequireChannel(channel);
    return settings.channels.SetupOf(channel);
}

double ZelThermo::Temperature() {
    if (!selection)
        throw RunTimeError("No thermocouple device is selected");
    const ThermocoupleReading reading = CallDriver([this] {
        return selection->ReadThermocouple(settings.channels.SetupOf(settings.channel), settings.expansion,
                                           settings.type);
    });
    return InScale(ThermocoupleCelsius(settings.type, reading), settings.scale);
}

} // namespace tracelet
