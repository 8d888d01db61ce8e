#pragma once

#include "core/base/Table.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tracelet {

/// Kind of input that a plot shows.
enum class PlotKind { Voltage, Temperature, Digital };

/// A plot as it stands on the graph: what it shows and how it looks.
struct PlotLook {
    PlotKind kind = PlotKind::Voltage;
    bool history = false;   ///< of a recording, not live
    std::int32_t index = 0; ///< physical channel, or port × 8 + line; in history the position among its kind
    std::string name;
    std::uint32_t color = 0; ///< raw colour value
    std::int32_t lineStyle = 0;
    double level = 0.0; ///< of a digital line while it is low, on the digital axis

    /// Both show the same input; their looks may differ.
    [[nodiscard]] bool ShowsSame(const PlotLook& other) const {
        return kind == other.kind && history == other.history && index == other.index;
    }
};

/// The three attribute tables of one kind of input.
struct AttributeTables {
    Table<std::int32_t>& lineStyle;
    Table<std::uint32_t>& color;
    Table<std::string>& name;

    void Resize(std::int64_t count) const;
};

/// The 16 default colours of analog plots.
[[nodiscard]] std::array<std::uint32_t, 16> DefaultColors();

/// Resizes the tables of analog channels to `channelCount` + 1 and fills all but the last: colours from
/// `colors` in turn, the next line style after every 16 channels, names "AI 0", "AI 1", …
void FillAnalogDefaults(const AttributeTables& tables, std::int32_t channelCount,
                        const std::array<std::uint32_t, 16>& colors);

/// Resizes the tables of digital lines to 8 × `portCount` + 1 and fills all but the last: solid, white on
/// even ports, yellow on odd ones, names "DI 0:0" … "DI 0:7", "DI 1:0", …
void FillDigitalDefaults(const AttributeTables& tables, std::int32_t portCount);

/// Selected lines of `portCount` ports from `portStart` on, as port × 8 + line, ascending. Ports beyond the
/// mask table have none.
[[nodiscard]] std::vector<std::int32_t> SelectedLines(const Table<std::uint8_t>& portMask,
                                                      std::int32_t portStart, std::int32_t portCount);

/// Glyph of a line style in the plot list; "" for a code without one.
[[nodiscard]] std::string_view LineStyleGlyph(std::int32_t lineStyle);

/// Level of a digital line on the digital axis: 1.5 apart within a port, 3 more between ports; `high` adds 1.
[[nodiscard]] double DigitalLevel(std::int32_t port, std::int32_t line, bool high);

/// Level of line `index` (port × 8 + line) while it is low.
[[nodiscard]] double LowLevel(std::int32_t index);

/// Level of line `index` (port × 8 + line) in a scan of ports from `portStart` on. "Subscript out of range"
/// for a port that `states` does not hold.
[[nodiscard]] double LineLevel(std::int32_t index, std::span<const std::uint8_t> states,
                               std::int32_t portStart);

/// Range of the digital axis that shows `portCount` ports from `portStart` on.
struct AxisRange {
    double minimum = 0.0;
    double maximum = 0.0;
};
[[nodiscard]] AxisRange DigitalAxisRange(std::int32_t portStart, std::int32_t portCount);

} // namespace tracelet
