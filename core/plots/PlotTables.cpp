#include "core/plots/PlotTables.h"

#include "core/base/NumberText.h"

namespace tracelet {
namespace {

constexpr std::int32_t ChannelsPerStyle = 16;
constexpr std::int32_t LinesPerPort = 8;
constexpr std::uint32_t White = 0xFFFFFF;
constexpr std::uint32_t Yellow = 0x00FFFF;

} // namespace

void AttributeTables::Resize(std::int64_t count) const {
    lineStyle.Resize(count);
    color.Resize(count);
    name.Resize(count);
}

std::array<std::uint32_t, 16> DefaultColors() {
    return {0x0000FF,   0xFFC0FF, 0xFF8080, 0xFF00FF, 0xC0C0FF, 0x00FFFF, 0x0080FF, 0xFFFFFF,
            0x80000016, // the desktop's light 3-D colour
            0x000080,   0xC0FFC0, 0x00FF00, 0x008000, 0xFFFF00, 0x008080, 0xFF0000};
}

void FillAnalogDefaults(const AttributeTables& tables, std::int32_t channelCount,
                        const std::array<std::uint32_t, 16>& colors) {
    tables.Resize(std::int64_t{channelCount} + 1);
    for (std::int32_t channel = 0; channel < channelCount; ++channel) {
        tables.lineStyle[channel] = channel / ChannelsPerStyle;
        tables.color[channel] = colors[static_cast<std::size_t>(channel % ChannelsPerStyle)];
        tables.name[channel] = "AI " + NumberText(channel);
    }
}

void FillDigitalDefaults(const AttributeTables& tables, std::int32_t portCount) {
    tables.Resize(std::int64_t{portCount} * LinesPerPort + 1);
    for (std::int32_t port = 0; port < portCount; ++port) {
        for (std::int32_t line = 0; line < LinesPerPort; ++line) {
            const std::int64_t index = std::int64_t{port} * LinesPerPort + line;
            tables.lineStyle[index] = 0;
            tables.color[index] = port % 2 == 0 ? White : Yellow;
            tables.name[index] = "DI " + NumberText(port) + ":" + NumberText(line);
        }
    }
}

std::vector<std::int32_t> SelectedLines(const Table<std::uint8_t>& portMask, std::int32_t portStart,
                                        std::int32_t portCount) {
    std::vector<std::int32_t> lines;
    for (std::int64_t port = portStart; port < std::int64_t{portStart} + portCount; ++port) {
        if (port < 0 || port >= portMask.Count())
            continue;
        for (std::int32_t line = 0; line < LinesPerPort; ++line) {
            if ((portMask[port] >> line & 1) != 0)
                lines.push_back(static_cast<std::int32_t>(port) * LinesPerPort + line);
        }
    }
    return lines;
}

std::string_view LineStyleGlyph(std::int32_t lineStyle) {
    static constexpr std::array<std::string_view, 5> Glyphs = {"-------", "- - - -", ". . . .", "- . - .",
                                                               "- . . -"};
    if (lineStyle < 0 || lineStyle >= static_cast<std::int32_t>(Glyphs.size()))
        return "";
    return Glyphs[static_cast<std::size_t>(lineStyle)];
}

double DigitalLevel(std::int32_t port, std::int32_t line, bool high) {
    return (high ? 1.0 : 0.0) + 1.5 * (double{8} * port + line) + 3.0 * port;
}

double LowLevel(std::int32_t index) {
    return DigitalLevel(index / LinesPerPort, index % LinesPerPort, false);
}

double LineLevel(std::int32_t index, std::span<const std::uint8_t> states, std::int32_t portStart) {
    const std::int32_t port = index / LinesPerPort;
    const std::int32_t line = index % LinesPerPort;
    const std::int64_t at = std::int64_t{port} - portStart;
    if (at < 0 || at >= static_cast<std::int64_t>(states.size()))
        throw Fault::SubscriptOutOfRange();
    return DigitalLevel(port, line, (states[static_cast<std::size_t>(at)] >> line & 1) != 0);
}

AxisRange DigitalAxisRange(std::int32_t portStart, std::int32_t portCount) {
    const double first = 15.0 * portStart;
    return {first - 1.0, first + 30.0 * portCount - 1.0};
}

} // namespace tracelet
