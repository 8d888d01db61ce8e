#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

/// What every chart of the comparison is fed: 16 plots, one second of samples a frame's 2,500 scans apart.
namespace chart_bench {

constexpr int Plots = 16;
constexpr int BlockScans = 2500;
constexpr int Width = 1200;
constexpr int Height = 600;
constexpr double Step = 1e-4; ///< seconds between scans

/// An endless stream of scans, computed beforehand so that making it costs no chart anything: a sine with
/// noise on its own level for each plot.
class Stream {
public:
    Stream() : values(static_cast<std::size_t>(Blocks) * BlockScans * Plots) {
        std::uint32_t noise = 1;
        std::size_t cell = 0;
        for (int scan = 0; scan < Blocks * BlockScans; ++scan)
            for (int plot = 0; plot < Plots; ++plot) {
                noise = noise * 1664525U + 1013904223U;
                const double jitter = static_cast<double>(noise >> 8) / (1U << 24) - 0.5;
                const double turn = 2 * M_PI * scan * (plot + 1) / (Blocks * BlockScans) * 4;
                values[cell++] = static_cast<float>(9 - 1.2 * plot + 0.4 * std::sin(turn) + 0.3 * jitter);
            }
    }

    /// The next 2,500 scans, channel-interleaved.
    [[nodiscard]] const float* Next() {
        const float* block = values.data() + static_cast<std::size_t>(next) * BlockScans * Plots;
        next = (next + 1) % Blocks;
        return block;
    }

private:
    static constexpr int Blocks = 40;
    std::vector<float> values;
    int next = 0;
};

inline Stream& TheStream() {
    static Stream stream;
    return stream;
}

/// Colour of a plot, 0x00RRGGBB.
inline std::uint32_t PlotColor(int plot) {
    return 0x40a0ffU + static_cast<std::uint32_t>(plot) * 0x70503U;
}

/// Blocks that fill a chart of so many points a plot.
inline int BlocksFor(std::int64_t points) {
    return static_cast<int>((points + BlockScans - 1) / BlockScans);
}

} // namespace chart_bench
