#pragma once

#include "bench/ChartData.h"

#include <QApplication>
#include <QImage>
#include <QWidget>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <initializer_list>
#include <malloc.h>

/// The rounds that every chart of the comparison goes through. A chart is made with its number of points a
/// plot and offers
///   Append(count)          so many new scans, the time axis following the newest one
///   Paint()                one frame, done when it returns
///   SetSpan(seconds)       length of the time axis, which ends at the newest scan
///   Span()                 that length, `points` * step at first
///   Widget()               that is on the screen
///   Canvas()               where traces are drawn, in its pixels
///   IsTrace(color)         whether a pixel of that colour belongs to a trace
namespace chart_bench {

/// Scans that come with each frame: 2,500, but none that would have left the picture before it is painted.
inline int FrameScans(std::int64_t points) {
    return static_cast<int>(std::min<std::int64_t>(points, BlockScans));
}

template <typename Chart>
void Fill(Chart& chart, std::int64_t points) {
    for (int i = 0; i < BlocksFor(points); ++i)
        chart.Append(BlockScans);
    chart.Paint();
}

template <typename Chart>
void ScrollFrames(benchmark::State& bench, Chart& chart, std::int64_t points) {
    Fill(chart, points);
    const int scans = FrameScans(points);
    for (auto _ : bench) {
        chart.Append(scans);
        chart.Paint();
    }
}

/// Append and paint, the picture moving on by the new scans.
template <typename Chart>
void Scroll(benchmark::State& bench) {
    Chart chart(bench.range(0));
    ScrollFrames(bench, chart, bench.range(0));
}

/// The same at given settings of a chart; the second argument is the number of points.
template <typename Chart, typename Settings>
void ScrollSetting(benchmark::State& bench, const Settings& settings) {
    Chart chart(bench.range(1), settings);
    ScrollFrames(bench, chart, bench.range(1));
    bench.SetLabel(settings.name);
}

/// Everything drawn anew at another scale, as by a zoom.
template <typename Chart>
void Redraw(benchmark::State& bench) {
    Chart chart(bench.range(0));
    Fill(chart, bench.range(0));
    const double full = chart.Span();
    bool wide = false;
    for (auto _ : bench) {
        chart.SetSpan(wide ? full : 0.9 * full);
        wide = !wide;
        chart.Paint();
    }
}

/// Everything drawn anew at another size.
template <typename Chart>
void Resize(benchmark::State& bench) {
    Chart chart(bench.range(0));
    Fill(chart, bench.range(0));
    bool large = false;
    for (auto _ : bench) {
        chart.Widget().resize(large ? Width : Width - 8, large ? Height : Height - 8);
        large = !large;
        chart.Paint();
    }
}

/// Bytes.
inline double HeapInUse() {
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// Bytes of the heap that a held sample takes, all that belongs to it counted.
template <typename Chart>
void Memory(benchmark::State& bench) {
    for (auto _ : bench) {
        (void)TheStream();
        Chart chart(bench.range(0));
        chart.Paint();
        const double before = HeapInUse();
        for (int i = 0; i < 2 * BlocksFor(bench.range(0)); ++i)
            chart.Append(BlockScans);
        bench.counters["bytes_a_sample"] =
            (HeapInUse() - before) / static_cast<double>(bench.range(0)) / static_cast<double>(Plots);
    }
}

struct Comparison {
    std::int64_t trace = 0;   ///< pixels that show a trace in one of the pictures
    std::int64_t changed = 0; ///< those of them that differ

    [[nodiscard]] double Percent() const {
        return trace == 0 ? 100.0 : 100.0 * static_cast<double>(changed) / static_cast<double>(trace);
    }
};

/// Compares the later picture, moved back to the right by `shift`, with the earlier one. Some columns at both
/// ends are left out: what leaves or enters the picture there is cut by it.
template <typename Chart>
Comparison Compare(const Chart& chart, const QImage& earlier, const QImage& later, int shift) {
    constexpr int Cut = 4;
    const QRect canvas = chart.Canvas();
    Comparison result;
    for (int y = canvas.top() + Cut; y <= canvas.bottom() - Cut; ++y) {
        const auto* before = reinterpret_cast<const QRgb*>(earlier.constScanLine(y));
        const auto* after = reinterpret_cast<const QRgb*>(later.constScanLine(y));
        for (int x = canvas.left() + Cut; x + shift <= canvas.right() - Cut; ++x) {
            if (!Chart::IsTrace(before[x + shift]) && !Chart::IsTrace(after[x]))
                continue;
            ++result.trace;
            result.changed += before[x + shift] != after[x] ? 1 : 0;
        }
    }
    return result;
}

template <typename Chart>
double ChangedPercent(Chart& chart, double pixels) {
    const auto picture = [&] {
        return chart.Widget().grab().toImage().convertToFormat(QImage::Format_RGB32);
    };
    double sum = 0;
    constexpr int Frames = 10;
    QImage earlier = picture();
    for (int i = 0; i < Frames; ++i) {
        chart.Append(BlockScans);
        chart.Paint();
        const QImage later = picture();
        double least = 100;
        for (const int shift : {-1, 0, 1}) // charts round as they like
            least =
                std::min(least, Compare(chart, earlier, later, static_cast<int>(pixels) + shift).Percent());
        sum += least;
        earlier = later;
    }
    return sum / Frames;
}

/// Trace pixels that differ when a scrolled frame is moved back, in percent: on the time axis of the scrolled
/// frames, and on one where 2,500 scans are a whole number of pixels, which suits charts that do not tie
/// their columns to time.
template <typename Chart>
void Shift(benchmark::State& bench) {
    for (auto _ : bench) {
        Chart chart(bench.range(0));
        Fill(chart, bench.range(0));
        const double frame = BlockScans * Step;
        const double pixels = chart.Canvas().width() * frame / chart.Span();
        bench.counters["changed_percent"] = ChangedPercent(chart, pixels);
        const double whole = std::ceil(pixels);
        chart.SetSpan(chart.Canvas().width() * frame / whole);
        chart.Append(BlockScans);
        chart.Paint();
        bench.counters["changed_percent_whole_shift"] = ChangedPercent(chart, whole);
    }
}

/// How all are measured: processor time of the process, medians of five rounds.
inline void Measured(benchmark::internal::Benchmark* bench) {
    bench->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->Repetitions(5)->ReportAggregatesOnly();
}

inline void Sizes(benchmark::internal::Benchmark* bench) {
    for (const int points : {1000, 100000, 1000000})
        bench->Arg(points);
    Measured(bench);
}

inline void Large(benchmark::internal::Benchmark* bench) {
    Measured(bench->Arg(100000));
}

/// For figures that are no times.
inline void Once(benchmark::internal::Benchmark* bench) {
    Measured(bench->Arg(100000)->Iterations(1));
}

inline void Show(QWidget& widget) {
    widget.resize(Width, Height);
    widget.show();
    QApplication::processEvents();
}

inline int Main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

} // namespace chart_bench
